#include "apps/Workspace/TradeCards/OrderTableCard.h"

#include "apps/Workspace/Cards/WorkspaceContext.h"
#include "apps/Workspace/TradeCards/AccountRows.h"
#include "apps/Workspace/TradeCards/OrderCells.h"

#include "Platform/Core/Langx.h"

#include <QLocale>

namespace vx_ws {

TradeTableColumn OrderFieldColumn(const OrderColumn& column)
{
    const Qt::Alignment left = Qt::AlignLeft;
    const Qt::Alignment right = Qt::AlignRight;
    const int priority = column.priority;
    switch (column.field) {
    case EnOrderField::Date:
        return {QStringLiteral("date"), core::langx::tr(970435, "日期"), left, 80, 1, priority, true};
    case EnOrderField::SubmitTime:
    case EnOrderField::UpdateTime:
        return {QStringLiteral("time"), core::langx::tr(970414, "时间"), left, 64, 1, priority, true};
    case EnOrderField::Code:
        return {QStringLiteral("code"), core::langx::tr(970404, "代码"), left, 58, 1, priority, true};
    case EnOrderField::Side:
        return {QStringLiteral("side"), core::langx::tr(970415, "方向"), left, 40, 0, priority, true};
    case EnOrderField::Type:
        return {QStringLiteral("type"), core::langx::tr(970416, "类型"), left, 40, 0, priority, true};
    case EnOrderField::Price:
        return {QStringLiteral("price"), core::langx::tr(970417, "价格"), right, 58, 1, priority, true};
    case EnOrderField::Quantity:
        return {QStringLiteral("quantity"), core::langx::tr(970406, "数量"), right, 52, 1, priority, true};
    case EnOrderField::Filled:
        return {QStringLiteral("filled"), core::langx::tr(970418, "已成交"), right, 52, 1, priority, true};
    case EnOrderField::AverageFill:
        return {
            QStringLiteral("averageFill"), core::langx::tr(970419, "成交均价"), right, 64, 1, priority, true};
    case EnOrderField::Status:
        return {QStringLiteral("status"), core::langx::tr(970420, "状态"), left, 66, 1, priority, true};
    case EnOrderField::Cancel:
        return {QStringLiteral("cancel"), QString(), Qt::AlignCenter, 48, 0, priority, false};
    }
    return {};
}

namespace {

TradeTableCell FieldCell(EnOrderField field, const vx_trade::Order& order, const OrderSecurityText& security,
                         const QDate& today)
{
    const QLocale english(QLocale::English);
    switch (field) {
    case EnOrderField::Date:
        // Day and time together so that a sort by date keeps the day's orders in time order.
        return MakeCell(OrderDate(order, today).toString(QStringLiteral("yyyy-MM-dd")),
                        static_cast<qlonglong>(order.dayOffset) * 86400 + order.updateTime);
    case EnOrderField::SubmitTime:
        return MakeCell(CVXWorkspaceCardBase::FormatTime(order.submitTime), order.submitTime);
    case EnOrderField::UpdateTime:
        return MakeCell(CVXWorkspaceCardBase::FormatTime(order.updateTime), order.updateTime);
    case EnOrderField::Code:
        return MakeCell(security.code, security.code);
    case EnOrderField::Side:
        return MakeCell(OrderSideText(order.side), static_cast<int>(order.side),
                        CVXWorkspaceCardBase::ThemeColor(
                            order.side == vx_trade::EnOrderSide::Buy ? "ct_buy" : "ct_sell"));
    case EnOrderField::Type:
        return MakeCell(OrderTypeText(order.type), static_cast<int>(order.type));
    case EnOrderField::Price:
        return MakeCell(order.type == vx_trade::EnOrderType::Market
                            ? OrderTypeText(order.type)
                            : CVXWorkspaceCardBase::FormatPrice(order.price, security.tickSize),
                        order.price);
    case EnOrderField::Quantity:
        return MakeCell(english.toString(order.quantity), static_cast<qlonglong>(order.quantity));
    case EnOrderField::Filled:
        return MakeCell(english.toString(order.filledQuantity), static_cast<qlonglong>(order.filledQuantity));
    case EnOrderField::AverageFill:
        // One decimal more than the tick: an average of several fills falls between ticks.
        return MakeCell(order.filledQuantity > 0 ? CVXWorkspaceCardBase::FormatPrice(order.averageFillPrice,
                                                                                     security.tickSize / 10)
                                                 : QStringLiteral("--"),
                        order.averageFillPrice);
    case EnOrderField::Status:
        return MakeCell(OrderStatusText(order.status), static_cast<int>(order.status),
                        OrderStatusColor(order.status));
    case EnOrderField::Cancel: {
        TradeTableCell cell;
        if (IsWorking(order)) {
            cell.text = core::langx::tr(970421, "撤单");
            cell.kind = TradeTableCell::EnKind::Action;
        }
        return cell;
    }
    }
    return {};
}

} // namespace

TradeTableRow OrderTableRow(const vx_trade::Order& order, const std::vector<OrderColumn>& columns,
                            const QDate& today)
{
    const OrderSecurityText security = SecurityTextOf(order.stockId, MarketData());
    TradeTableRow row;
    row.key = order.orderId;
    row.cells.reserve(columns.size());
    for (const OrderColumn& column : columns)
        row.cells.push_back(FieldCell(column.field, order, security, today));
    return row;
}

CVXOrderTableCard::CVXOrderTableCard(EnVXCardPos pos, QWidget* parent, std::vector<OrderColumn> columns)
    : CVXTradeTableCard(pos, parent), m_columns(std::move(columns))
{
    std::vector<TradeTableColumn> tableColumns;
    tableColumns.reserve(m_columns.size());
    for (const OrderColumn& column : m_columns)
        tableColumns.push_back(OrderFieldColumn(column));
    MutableTable().SetColumns(std::move(tableColumns));
    SetEmptyText(core::langx::tr(970448, "暂无订单"));
}

CVXOrderTableCard::~CVXOrderTableCard() = default;

int CVXOrderTableCard::ColumnOf(EnOrderField field) const
{
    for (size_t i = 0; i < m_columns.size(); ++i) {
        if (m_columns[i].field == field)
            return static_cast<int>(i);
    }
    return -1;
}

void CVXOrderTableCard::SetListedOrders(std::vector<vx_trade::Order> orders, const QDate& today)
{
    m_orders = std::move(orders);
    std::vector<TradeTableRow> table;
    table.reserve(m_orders.size());
    for (const vx_trade::Order& order : m_orders)
        table.push_back(OrderTableRow(order, m_columns, today));
    MutableTable().SetRows(std::move(table));
}

void CVXOrderTableCard::OnRowClicked(unsigned long long key)
{
    for (const vx_trade::Order& order : m_orders) {
        if (order.orderId == key) {
            RaiseStockChange(order.stockId);
            return;
        }
    }
}

} // namespace vx_ws
