#pragma once

// The cells the orders and history cards share for one order: side, type, status texts and
// colours, prices with the security's decimals.

#include "apps/Workspace/Trade/SimTradeService.h"
#include "apps/Workspace/TradeCards/TradeTable.h"

namespace vx_md {
class CVXSimMarketData;
}

namespace vx_ws {

QString OrderSideText(vx_trade::EnOrderSide side);
QString OrderTypeText(vx_trade::EnOrderType type);
QString OrderStatusText(vx_trade::EnOrderStatus status);
QColor OrderStatusColor(vx_trade::EnOrderStatus status);

// Security code and price formatting for an order's security; the id as text when unknown.
struct OrderSecurityText
{
    QString code;
    QString name;
    double tickSize = 0.01;
};
OrderSecurityText SecurityTextOf(unsigned long stockId, const vx_md::CVXSimMarketData* marketData);

TradeTableCell MakeCell(const QString& text, const QVariant& sortKey, const QColor& color = QColor());

} // namespace vx_ws
