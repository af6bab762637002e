#include "apps/Workspace/Cards/WorkspaceContext.h"

namespace vx_ws {

namespace {
vx_md::CVXSimMarketData* g_marketData = nullptr;
vx_trade::CVXSimTradeService* g_tradeService = nullptr;
} // namespace

void SetMarketData(vx_md::CVXSimMarketData* marketData) { g_marketData = marketData; }
vx_md::CVXSimMarketData* MarketData() { return g_marketData; }

void SetTradeService(vx_trade::CVXSimTradeService* tradeService) { g_tradeService = tradeService; }
vx_trade::CVXSimTradeService* TradeService() { return g_tradeService; }

} // namespace vx_ws
