#pragma once

// The card modules of the workspace program register their card factories here. Registering
// twice keeps the first factories (the registry refuses duplicates); tests unregister through
// the registry's UnRegisterFactory when they need a clean slate.

#include <QStringList>

namespace vx_ws {

// StockHeader, KLine, Ticks, TicksStatistic (QuoteCards/).
void RegisterMarketCards();
// OrderBook, Brokers, Watchlist, OptionChainsPanel (QuoteCards/).
void RegisterBookCards();
// TradePlaceOrderSecuritiesPanel, TradePlaceOrderComboOptionPanel, TradePlaceOrderBookTraderPanel
// (TradeCards/).
void RegisterOrderEntryCards();
// SecuritiesTradePosition, SecuritiesTradeOrders, TradeHistoryOrders, SecuritiesAccInfo
// (TradeCards/).
void RegisterAccountCards();

// The market and book cards.
void RegisterQuoteCards();
// The order-entry and account cards.
void RegisterTradeCards();
// Both of the above.
void RegisterWorkspaceCards();
// The card types the two modules supply, quote cards first.
QStringList WorkspaceCardTypes();

} // namespace vx_ws
