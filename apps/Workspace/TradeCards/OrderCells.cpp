#include "apps/Workspace/TradeCards/OrderCells.h"

#include "apps/Workspace/Cards/WorkspaceCardBase.h"
#include "apps/Workspace/MarketData/SimMarketData.h"

#include "Platform/Core/Langx.h"

namespace vx_ws {

QString OrderSideText(vx_trade::EnOrderSide side)
{
    return side == vx_trade::EnOrderSide::Buy ? core::langx::tr(970426, "买入")
                                              : core::langx::tr(970427, "卖出");
}

QString OrderTypeText(vx_trade::EnOrderType type)
{
    return type == vx_trade::EnOrderType::Limit ? core::langx::tr(970428, "限价")
                                                : core::langx::tr(970429, "市价");
}

QString OrderStatusText(vx_trade::EnOrderStatus status)
{
    switch (status) {
    case vx_trade::EnOrderStatus::Working:
        return core::langx::tr(970430, "待成交");
    case vx_trade::EnOrderStatus::PartFilled:
        return core::langx::tr(970431, "部分成交");
    case vx_trade::EnOrderStatus::Filled:
        return core::langx::tr(970432, "全部成交");
    case vx_trade::EnOrderStatus::Cancelled:
        return core::langx::tr(970433, "已撤单");
    case vx_trade::EnOrderStatus::Rejected:
        return core::langx::tr(970434, "已拒绝");
    }
    return QString();
}

QColor OrderStatusColor(vx_trade::EnOrderStatus status)
{
    switch (status) {
    case vx_trade::EnOrderStatus::Working:
        return CVXWorkspaceCardBase::ThemeColor("ct_link");
    case vx_trade::EnOrderStatus::PartFilled:
        return CVXWorkspaceCardBase::ThemeColor("ct_focus");
    case vx_trade::EnOrderStatus::Filled:
        return CVXWorkspaceCardBase::ThemeColor("ct_text_primary");
    case vx_trade::EnOrderStatus::Cancelled:
        return CVXWorkspaceCardBase::ThemeColor("ct_text_disabled");
    case vx_trade::EnOrderStatus::Rejected:
        return CVXWorkspaceCardBase::ThemeColor("ct_rise");
    }
    return QColor();
}

OrderSecurityText SecurityTextOf(unsigned long stockId, const vx_md::CVXSimMarketData* marketData)
{
    OrderSecurityText text;
    if (marketData && marketData->Contains(stockId)) {
        const vx_md::SecurityInfo info = marketData->GetSecurity(stockId);
        text.code = QString::fromStdString(info.code);
        text.name = QString::fromStdString(info.name);
        text.tickSize = info.tickSize;
    } else {
        text.code = QString::number(stockId);
    }
    return text;
}

TradeTableCell MakeCell(const QString& text, const QVariant& sortKey, const QColor& color)
{
    TradeTableCell cell;
    cell.text = text;
    cell.sortKey = sortKey;
    cell.color = color;
    return cell;
}

} // namespace vx_ws
