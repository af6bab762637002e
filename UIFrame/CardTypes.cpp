#include "UIFrame/CardTypes.h"

#include <QSet>

namespace card_types {

const QStringList& QuoteCardTypes()
{
    static const QStringList types = {
        QString::fromLatin1(quote_card_type::StockHeader),
        QString::fromLatin1(quote_card_type::Watchlist),
        QString::fromLatin1(quote_card_type::Recent),
        QString::fromLatin1(quote_card_type::KLine),
        QString::fromLatin1(quote_card_type::RelatedFutures),
        QString::fromLatin1(quote_card_type::Ticks),
        QString::fromLatin1(quote_card_type::TicksStatistic),
        QString::fromLatin1(quote_card_type::OrderBook),
        QString::fromLatin1(quote_card_type::ConstituentStocks),
        QString::fromLatin1(quote_card_type::PlateGridView),
        QString::fromLatin1(quote_card_type::RelativeYield),
        QString::fromLatin1(quote_card_type::FutureContractInfo),
        QString::fromLatin1(quote_card_type::Clock),
        QString::fromLatin1(quote_card_type::Brokers),
        QString::fromLatin1(quote_card_type::ConceptPlate),
        QString::fromLatin1(quote_card_type::Overview),
        QString::fromLatin1(quote_card_type::HotIndexFrame),
        QString::fromLatin1(quote_card_type::CryptoHomePage),
        QString::fromLatin1(quote_card_type::CryptoExchange),
        QString::fromLatin1(quote_card_type::RelativeETF),
        QString::fromLatin1(quote_card_type::RelativeETFHoding),
        QString::fromLatin1(quote_card_type::RelatedQuotes),
        QString::fromLatin1(quote_card_type::RelatedExchangeRates),
        QString::fromLatin1(quote_card_type::ConstituentExchangeRates),
        QString::fromLatin1(quote_card_type::IPOs),
        QString::fromLatin1(quote_card_type::Forex),
        QString::fromLatin1(quote_card_type::StockConnect),
        QString::fromLatin1(quote_card_type::WatchlistListChart),
        QString::fromLatin1(quote_card_type::RecentListChart),
        QString::fromLatin1(quote_card_type::ETFConstituents),
        QString::fromLatin1(quote_card_type::FundConstituents),
        QString::fromLatin1(quote_card_type::HeatMap),
        QString::fromLatin1(quote_card_type::HeatMapDetail),
        QString::fromLatin1(quote_card_type::MarketHomePage),
        QString::fromLatin1(quote_card_type::RankingList),
        QString::fromLatin1(quote_card_type::OptionCalculator),
        QString::fromLatin1(quote_card_type::SoloOptions),
        QString::fromLatin1(quote_card_type::OptionChains),
        QString::fromLatin1(quote_card_type::OptionChainsPanel),
        QString::fromLatin1(quote_card_type::OptionExerciseProbability),
        QString::fromLatin1(quote_card_type::OptionLeftBarRecent),
        QString::fromLatin1(quote_card_type::OptionLeftBarWatchlist),
        QString::fromLatin1(quote_card_type::OptionRanking),
        QString::fromLatin1(quote_card_type::OptionRankingPanel),
        QString::fromLatin1(quote_card_type::UnderlyingRanking),
        QString::fromLatin1(quote_card_type::UnderlyingRankingPanel),
        QString::fromLatin1(quote_card_type::OptionVolatilityAnalysis),
        QString::fromLatin1(quote_card_type::ScreenCustomPanelContainer),
        QString::fromLatin1(quote_card_type::ScreenTabFrame),
        QString::fromLatin1(quote_card_type::ScreenOptionTabFrame),
        QString::fromLatin1(quote_card_type::CompanyInformation),
        QString::fromLatin1(quote_card_type::FinancialAnalysis),
        QString::fromLatin1(quote_card_type::ShareholdersEquity),
        QString::fromLatin1(quote_card_type::Estimate),
        QString::fromLatin1(quote_card_type::Dividends),
        QString::fromLatin1(quote_card_type::ETFCompanyInformation),
        QString::fromLatin1(quote_card_type::ETFDividends),
        QString::fromLatin1(quote_card_type::RelatedWarrant),
        QString::fromLatin1(quote_card_type::TopTenBuySellBrokers),
        QString::fromLatin1(quote_card_type::CapitalDistributionFlows),
        QString::fromLatin1(quote_card_type::CapitalDistribution),
        QString::fromLatin1(quote_card_type::CapitalFlows),
        QString::fromLatin1(quote_card_type::ShortSaleAnalysis),
        QString::fromLatin1(quote_card_type::OptionVolumeStatistic),
        QString::fromLatin1(quote_card_type::OptionVolatilityTermStructure),
        QString::fromLatin1(quote_card_type::OptionVolatilitySmile),
        QString::fromLatin1(quote_card_type::OptionPriceProbability),
        QString::fromLatin1(quote_card_type::OptionAnalysis),
        QString::fromLatin1(quote_card_type::UnderlyingVolatilityAnalysis),
        QString::fromLatin1(quote_card_type::OptionVolumeDistribution),
        QString::fromLatin1(quote_card_type::OptionInterestDistribution),
        QString::fromLatin1(quote_card_type::OptionActivity),
        QString::fromLatin1(quote_card_type::OptionActivityPanel),
        QString::fromLatin1(quote_card_type::OptionEarningAnalysis),
        QString::fromLatin1(quote_card_type::Shikiho),
        QString::fromLatin1(quote_card_type::ETFHomePage),
        QString::fromLatin1(quote_card_type::ETFHeatMap),
        QString::fromLatin1(quote_card_type::ETFHeatMapDetail),
        QString::fromLatin1(quote_card_type::InstitutionTracker),
        QString::fromLatin1(quote_card_type::PatternPickingCard),
        QString::fromLatin1(quote_card_type::EarningsCalendar),
        QString::fromLatin1(quote_card_type::EconomicCalendar),
        QString::fromLatin1(quote_card_type::JapanMarginPosition),
        QString::fromLatin1(quote_card_type::JapanMarginLoans),
        QString::fromLatin1(quote_card_type::OptionOverview),
        QString::fromLatin1(quote_card_type::OptionStrategy),
        QString::fromLatin1(quote_card_type::OptionZeroDTE),
        QString::fromLatin1(quote_card_type::FundsProfile),
        QString::fromLatin1(quote_card_type::EarningsUnderlying),
        QString::fromLatin1(quote_card_type::StockETF),
        QString::fromLatin1(quote_card_type::PortfolioTransactionHistory),
        QString::fromLatin1(quote_card_type::BundsProfile),
        QString::fromLatin1(quote_card_type::CalendarFuture),
    };
    return types;
}

const QStringList& TradeCardTypes()
{
    static const QStringList types = {
        QString::fromLatin1(trade_card_type::TradePlaceOrderSecuritiesPanel),
        QString::fromLatin1(trade_card_type::TradePlaceOrderComboOptionPanel),
        QString::fromLatin1(trade_card_type::TradePlaceOrderBookTraderPanel),
        QString::fromLatin1(trade_card_type::SecuritiesTradeOrders),
        QString::fromLatin1(trade_card_type::TradeHistoryOrders),
        QString::fromLatin1(trade_card_type::TradeROAPosition),
        QString::fromLatin1(trade_card_type::SecuritiesTradePosition),
        QString::fromLatin1(trade_card_type::SecuritiesAccInfo),
        QString::fromLatin1(trade_card_type::SecuritiesTodayStatistic),
        QString::fromLatin1(trade_card_type::AccountPageCardList),
        QString::fromLatin1(trade_card_type::AccountPageAssetBox),
        QString::fromLatin1(trade_card_type::SecuritiesTradeUnlock),
        QString::fromLatin1(trade_card_type::PositionDetail),
        QString::fromLatin1(trade_card_type::ROAEntrustOrder),
        QString::fromLatin1(trade_card_type::ROAFavouriteAccount),
        QString::fromLatin1(trade_card_type::ROADangerousAccount),
        QString::fromLatin1(trade_card_type::ROADangerousAccountFutures),
        QString::fromLatin1(trade_card_type::ROAPINAccountPanel),
        QString::fromLatin1(trade_card_type::TradeRiskSummaryPanelSecurities),
        QString::fromLatin1(trade_card_type::TradeRiskSummaryPanelFutures),
        QString::fromLatin1(trade_card_type::TradeAccountDetailsPanelSecurities),
        QString::fromLatin1(trade_card_type::TradeAccountDetailsPanelFutures),
        QString::fromLatin1(trade_card_type::TradeDeliveryRiskDisposalPanel),
        QString::fromLatin1(trade_card_type::TradeCorporateActionDisposalPanel),
        QString::fromLatin1(trade_card_type::TradeRiskSummaryCombinationPanelSecurities),
        QString::fromLatin1(trade_card_type::TradeRiskSummaryCombinationPanelFutures),
    };
    return types;
}

const QStringList& PlatformCardTypes()
{
    static const QStringList types = {
        QString::fromLatin1(platform_card_type::Web),
        QString::fromLatin1(platform_card_type::Web_JP),
        QString::fromLatin1(platform_card_type::Web_Bloomberg),
        QString::fromLatin1(platform_card_type::Web_Fox),
    };
    return types;
}

QStringList AllCardTypes()
{
    return QuoteCardTypes() + TradeCardTypes() + PlatformCardTypes();
}

bool IsKnownCardType(const QString& cardType)
{
    static const QSet<QString> known = [] {
        const QStringList all = AllCardTypes();
        return QSet<QString>(all.begin(), all.end());
    }();
    return known.contains(cardType);
}

} // namespace card_types
