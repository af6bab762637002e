#include "apps/Workspace/Cards/RegisterCards.h"

namespace vx_ws {

void RegisterQuoteCards()
{
    RegisterMarketCards();
    RegisterBookCards();
}

void RegisterTradeCards()
{
    RegisterOrderEntryCards();
    RegisterAccountCards();
}

void RegisterWorkspaceCards()
{
    RegisterQuoteCards();
    RegisterTradeCards();
}

QStringList WorkspaceCardTypes()
{
    return {QStringLiteral("StockHeader"),
            QStringLiteral("KLine"),
            QStringLiteral("Ticks"),
            QStringLiteral("TicksStatistic"),
            QStringLiteral("OrderBook"),
            QStringLiteral("Brokers"),
            QStringLiteral("Watchlist"),
            QStringLiteral("OptionChainsPanel"),
            QStringLiteral("TradePlaceOrderSecuritiesPanel"),
            QStringLiteral("TradePlaceOrderComboOptionPanel"),
            QStringLiteral("TradePlaceOrderBookTraderPanel"),
            QStringLiteral("SecuritiesTradePosition"),
            QStringLiteral("SecuritiesTradeOrders"),
            QStringLiteral("TradeHistoryOrders"),
            QStringLiteral("SecuritiesAccInfo")};
}

} // namespace vx_ws
