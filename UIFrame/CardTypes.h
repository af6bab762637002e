#pragma once

// The card-type catalogue: every card type is a plain ASCII string, the key of the card factory
// registry and the value saved under card-type keys of restore data. Constants are named after
// their text, in three groups, each also available as a list in catalogue order.
// Also the keys of card static properties, of jump / init data and of trade context.

#include "UIFrame/UIFrameExport.h"

#include <QStringList>

// Cards of the quote module (93).
namespace quote_card_type {
inline constexpr const char* StockHeader = "StockHeader";
inline constexpr const char* Watchlist = "Watchlist";
inline constexpr const char* Recent = "Recent";
inline constexpr const char* KLine = "KLine";
inline constexpr const char* RelatedFutures = "RelatedFutures";
inline constexpr const char* Ticks = "Ticks";
inline constexpr const char* TicksStatistic = "TicksStatistic";
inline constexpr const char* OrderBook = "OrderBook";
inline constexpr const char* ConstituentStocks = "ConstituentStocks";
inline constexpr const char* PlateGridView = "PlateGridView";
inline constexpr const char* RelativeYield = "RelativeYield";
inline constexpr const char* FutureContractInfo = "FutureContractInfo";
inline constexpr const char* Clock = "Clock";
inline constexpr const char* Brokers = "Brokers";
inline constexpr const char* ConceptPlate = "ConceptPlate";
inline constexpr const char* Overview = "Overview";
inline constexpr const char* HotIndexFrame = "HotIndexFrame";
inline constexpr const char* CryptoHomePage = "CryptoHomePage";
inline constexpr const char* CryptoExchange = "CryptoExchange";
inline constexpr const char* RelativeETF = "RelativeETF";
inline constexpr const char* RelativeETFHoding = "RelativeETFHoding";
inline constexpr const char* RelatedQuotes = "RelatedQuotes";
inline constexpr const char* RelatedExchangeRates = "RelatedExchangeRates";
inline constexpr const char* ConstituentExchangeRates = "ConstituentExchangeRates";
inline constexpr const char* IPOs = "IPOs";
inline constexpr const char* Forex = "Forex";
inline constexpr const char* StockConnect = "StockConnect";
inline constexpr const char* WatchlistListChart = "WatchlistListChart";
inline constexpr const char* RecentListChart = "RecentListChart";
inline constexpr const char* ETFConstituents = "ETFConstituents";
inline constexpr const char* FundConstituents = "FundConstituents";
inline constexpr const char* HeatMap = "HeatMap";
inline constexpr const char* HeatMapDetail = "HeatMapDetail";
inline constexpr const char* MarketHomePage = "MarketHomePage";
inline constexpr const char* RankingList = "RankingList";
inline constexpr const char* OptionCalculator = "OptionCalculator";
inline constexpr const char* SoloOptions = "SoloOptions";
inline constexpr const char* OptionChains = "OptionChains";
inline constexpr const char* OptionChainsPanel = "OptionChainsPanel";
inline constexpr const char* OptionExerciseProbability = "OptionExerciseProbability";
inline constexpr const char* OptionLeftBarRecent = "OptionLeftBarRecent";
inline constexpr const char* OptionLeftBarWatchlist = "OptionLeftBarWatchlist";
inline constexpr const char* OptionRanking = "OptionRanking";
inline constexpr const char* OptionRankingPanel = "OptionRankingPanel";
inline constexpr const char* UnderlyingRanking = "UnderlyingRanking";
inline constexpr const char* UnderlyingRankingPanel = "UnderlyingRankingPanel";
inline constexpr const char* OptionVolatilityAnalysis = "OptionVolatilityAnalysis";
inline constexpr const char* ScreenCustomPanelContainer = "ScreenCustomPanelContainer";
inline constexpr const char* ScreenTabFrame = "ScreenTabFrame";
inline constexpr const char* ScreenOptionTabFrame = "ScreenOptionTabFrame";
inline constexpr const char* CompanyInformation = "CompanyInformation";
inline constexpr const char* FinancialAnalysis = "FinancialAnalysis";
inline constexpr const char* ShareholdersEquity = "ShareholdersEquity";
inline constexpr const char* Estimate = "Estimate";
inline constexpr const char* Dividends = "Dividends";
inline constexpr const char* ETFCompanyInformation = "ETFCompanyInformation";
inline constexpr const char* ETFDividends = "ETFDividends";
inline constexpr const char* RelatedWarrant = "RelatedWarrant";
inline constexpr const char* TopTenBuySellBrokers = "TopTenBuySellBrokers";
inline constexpr const char* CapitalDistributionFlows = "CapitalDistributionFlows";
inline constexpr const char* CapitalDistribution = "CapitalDistribution";
inline constexpr const char* CapitalFlows = "CapitalFlows";
inline constexpr const char* ShortSaleAnalysis = "ShortSaleAnalysis";
inline constexpr const char* OptionVolumeStatistic = "OptionVolumeStatistic";
inline constexpr const char* OptionVolatilityTermStructure = "OptionVolatilityTermStructure";
inline constexpr const char* OptionVolatilitySmile = "OptionVolatilitySmile";
inline constexpr const char* OptionPriceProbability = "OptionPriceProbability";
inline constexpr const char* OptionAnalysis = "OptionAnalysis";
inline constexpr const char* UnderlyingVolatilityAnalysis = "UnderlyingVolatilityAnalysis";
inline constexpr const char* OptionVolumeDistribution = "OptionVolumeDistribution";
inline constexpr const char* OptionInterestDistribution = "OptionInterestDistribution";
inline constexpr const char* OptionActivity = "OptionActivity";
inline constexpr const char* OptionActivityPanel = "OptionActivityPanel";
inline constexpr const char* OptionEarningAnalysis = "OptionEarningAnalysis";
inline constexpr const char* Shikiho = "Shikiho";
inline constexpr const char* ETFHomePage = "ETFHomePage";
inline constexpr const char* ETFHeatMap = "ETFHeatMap";
inline constexpr const char* ETFHeatMapDetail = "ETFHeatMapDetail";
inline constexpr const char* InstitutionTracker = "InstitutionTracker";
inline constexpr const char* PatternPickingCard = "PatternPickingCard";
inline constexpr const char* EarningsCalendar = "EarningsCalendar";
inline constexpr const char* EconomicCalendar = "EconomicCalendar";
inline constexpr const char* JapanMarginPosition = "JapanMarginPosition";
inline constexpr const char* JapanMarginLoans = "JapanMarginLoans";
inline constexpr const char* OptionOverview = "OptionOverview";
inline constexpr const char* OptionStrategy = "OptionStrategy";
inline constexpr const char* OptionZeroDTE = "OptionZeroDTE";
inline constexpr const char* FundsProfile = "FundsProfile";
inline constexpr const char* EarningsUnderlying = "EarningsUnderlying";
inline constexpr const char* StockETF = "StockETF";
inline constexpr const char* PortfolioTransactionHistory = "PortfolioTransactionHistory";
inline constexpr const char* BundsProfile = "BundsProfile";
inline constexpr const char* CalendarFuture = "CalendarFuture";
} // namespace quote_card_type

// Cards of the trade module (26).
namespace trade_card_type {
inline constexpr const char* TradePlaceOrderSecuritiesPanel = "TradePlaceOrderSecuritiesPanel";
inline constexpr const char* TradePlaceOrderComboOptionPanel = "TradePlaceOrderComboOptionPanel";
inline constexpr const char* TradePlaceOrderBookTraderPanel = "TradePlaceOrderBookTraderPanel";
inline constexpr const char* SecuritiesTradeOrders = "SecuritiesTradeOrders";
inline constexpr const char* TradeHistoryOrders = "TradeHistoryOrders";
inline constexpr const char* TradeROAPosition = "TradeROAPosition";
inline constexpr const char* SecuritiesTradePosition = "SecuritiesTradePosition";
inline constexpr const char* SecuritiesAccInfo = "SecuritiesAccInfo";
inline constexpr const char* SecuritiesTodayStatistic = "SecuritiesTodayStatistic";
inline constexpr const char* AccountPageCardList = "AccountPageCardList";
inline constexpr const char* AccountPageAssetBox = "AccountPageAssetBox";
inline constexpr const char* SecuritiesTradeUnlock = "SecuritiesTradeUnlock";
inline constexpr const char* PositionDetail = "PositionDetail";
inline constexpr const char* ROAEntrustOrder = "ROAEntrustOrder";
inline constexpr const char* ROAFavouriteAccount = "ROAFavouriteAccount";
inline constexpr const char* ROADangerousAccount = "ROADangerousAccount";
inline constexpr const char* ROADangerousAccountFutures = "ROADangerousAccountFutures";
inline constexpr const char* ROAPINAccountPanel = "ROAPINAccountPanel";
inline constexpr const char* TradeRiskSummaryPanelSecurities = "TradeRiskSummaryPanelSecurities";
inline constexpr const char* TradeRiskSummaryPanelFutures = "TradeRiskSummaryPanelFutures";
inline constexpr const char* TradeAccountDetailsPanelSecurities = "TradeAccountDetailsPanelSecurities";
inline constexpr const char* TradeAccountDetailsPanelFutures = "TradeAccountDetailsPanelFutures";
inline constexpr const char* TradeDeliveryRiskDisposalPanel = "TradeDeliveryRiskDisposalPanel";
inline constexpr const char* TradeCorporateActionDisposalPanel = "TradeCorporateActionDisposalPanel";
inline constexpr const char* TradeRiskSummaryCombinationPanelSecurities =
    "TradeRiskSummaryCombinationPanelSecurities";
inline constexpr const char* TradeRiskSummaryCombinationPanelFutures =
    "TradeRiskSummaryCombinationPanelFutures";
} // namespace trade_card_type

// Web cards of the platform (4).
namespace platform_card_type {
inline constexpr const char* Web = "Web";
inline constexpr const char* Web_JP = "Web_JP";
inline constexpr const char* Web_Bloomberg = "Web_Bloomberg";
inline constexpr const char* Web_Fox = "Web_Fox";
} // namespace platform_card_type

// Static property keys (CardStaticProperty) and jump / init data keys.
namespace card_property_key {
inline constexpr const char* CanShowStockID = "CanShowStockID";
inline constexpr const char* CanShowTabButton = "CanShowTabButton";
inline constexpr const char* TabIconResource = "TabIconResource";
inline constexpr const char* TabRedDot = "TabRedDot";
inline constexpr const char* OpenPageType = "OpenPageType";
inline constexpr const char* StockID = "StockID";
inline constexpr const char* JumpData = "JumpData";
inline constexpr const char* ShowMarketSecondTab = "ShowMarketSecondTab";
inline constexpr const char* RecentStock = "RecentStock";
inline constexpr const char* RecentStockResetIndex = "RecentStockResetIndex";
inline constexpr const char* IntradayPeriod = "IntradayPeriod";
inline constexpr const char* ContentPageType = "ContentPageType";
inline constexpr const char* OptionIndexType = "OptionIndexType";
inline constexpr const char* KlinePeriodType = "KlinePeriodType";
inline constexpr const char* KlinePeriodID = "KlinePeriodID";
inline constexpr const char* WatchlistPageMidTabType = "WatchlistPageMidTabType";
inline constexpr const char* OptionCardType = "OptionCardType";
inline constexpr const char* ScreenModuleType = "ScreenModuleType";
} // namespace card_property_key

// Trade context keys.
namespace trade_context_key {
inline constexpr const char* TradeRestoreKey = "TradeRestoreKey";
inline constexpr const char* TradeOrdersHotKeyInfoQByteArray = "TradeOrdersHotKeyInfoQByteArray";
} // namespace trade_context_key

namespace card_types {
// Each group in catalogue order.
UIFRAME_EXPORT const QStringList& QuoteCardTypes();
UIFRAME_EXPORT const QStringList& TradeCardTypes();
UIFRAME_EXPORT const QStringList& PlatformCardTypes();
// The three groups, in that order.
UIFRAME_EXPORT QStringList AllCardTypes();
UIFRAME_EXPORT bool IsKnownCardType(const QString& cardType);
} // namespace card_types
