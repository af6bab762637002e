#include "apps/Workspace/TradeCards/HistoryOrdersCard.h"

#include "apps/Workspace/Cards/WorkspaceContext.h"
#include "apps/Workspace/TradeCards/OrderCells.h"

#include "UIFrame/VariantMapTreeAccess.h"

#include "Platform/Core/Langx.h"

#include <QLocale>

namespace vx_ws {

namespace {

const QString kPeriodKey = QStringLiteral("HistoryPeriod");

enum EnColumn
{
    kDate,
    kTime,
    kCode,
    kSide,
    kPrice,
    kQuantity,
    kFilled,
    kAverageFill,
    kStatus,
    kColumnCount
};

std::vector<TradeTableColumn> HistoryColumns()
{
    const Qt::Alignment right = Qt::AlignRight;
    return {
        {QStringLiteral("date"), core::langx::tr(970435, "日期"), Qt::AlignLeft, 80, 1, 0, true},
        {QStringLiteral("time"), core::langx::tr(970414, "时间"), Qt::AlignLeft, 64, 1, 3, true},
        {QStringLiteral("code"), core::langx::tr(970404, "代码"), Qt::AlignLeft, 58, 1, 0, true},
        {QStringLiteral("side"), core::langx::tr(970415, "方向"), Qt::AlignLeft, 40, 0, 1, true},
        {QStringLiteral("price"), core::langx::tr(970417, "价格"), right, 58, 1, 2, true},
        {QStringLiteral("quantity"), core::langx::tr(970406, "数量"), right, 52, 1, 1, true},
        {QStringLiteral("filled"), core::langx::tr(970418, "已成交"), right, 52, 1, 3, true},
        {QStringLiteral("averageFill"), core::langx::tr(970419, "成交均价"), right, 64, 1, 4, true},
        {QStringLiteral("status"), core::langx::tr(970420, "状态"), Qt::AlignLeft, 66, 1, 1, true},
    };
}

TradeTableRow TableRow(const vx_trade::Order& order, const QDate& today)
{
    const QLocale english(QLocale::English);
    const OrderSecurityText security = SecurityTextOf(order.stockId, MarketData());
    const QDate date = OrderDate(order, today);
    TradeTableRow row;
    row.key = order.orderId;
    row.cells.resize(kColumnCount);
    // Day and time together so that a sort by date keeps the day's orders in time order.
    row.cells[kDate] = MakeCell(date.toString(QStringLiteral("yyyy-MM-dd")),
                                static_cast<qlonglong>(order.dayOffset) * 86400 + order.updateTime);
    row.cells[kTime] = MakeCell(CVXWorkspaceCardBase::FormatTime(order.updateTime), order.updateTime);
    row.cells[kCode] = MakeCell(security.code, security.code);
    row.cells[kSide] = MakeCell(
        OrderSideText(order.side), static_cast<int>(order.side),
        CVXWorkspaceCardBase::ThemeColor(order.side == vx_trade::EnOrderSide::Buy ? "ct_buy" : "ct_sell"));
    row.cells[kPrice] = MakeCell(order.type == vx_trade::EnOrderType::Market
                                     ? OrderTypeText(order.type)
                                     : CVXWorkspaceCardBase::FormatPrice(order.price, security.tickSize),
                                 order.price);
    row.cells[kQuantity] = MakeCell(english.toString(order.quantity), static_cast<qlonglong>(order.quantity));
    row.cells[kFilled] =
        MakeCell(english.toString(order.filledQuantity), static_cast<qlonglong>(order.filledQuantity));
    row.cells[kAverageFill] =
        MakeCell(order.filledQuantity > 0
                     ? CVXWorkspaceCardBase::FormatPrice(order.averageFillPrice, security.tickSize / 10)
                     : QStringLiteral("--"),
                 order.averageFillPrice);
    row.cells[kStatus] = MakeCell(OrderStatusText(order.status), static_cast<int>(order.status),
                                  OrderStatusColor(order.status));
    return row;
}

} // namespace

CVXCardBaseStyle CVXHistoryOrdersCard::StaticCardStyle()
{
    CVXCardBaseStyle style;
    style.idealSize = QSize(560, 240);
    style.minSize = QSize(260, 120);
    style.maxSize = QSize(4000, 4000);
    style.title = core::langx::tr(236244, "历史订单");
    return style;
}

CVXHistoryOrdersCard::CVXHistoryOrdersCard(EnVXCardPos pos, QWidget* parent) : CVXTradeTableCard(pos, parent)
{
    MutableTable().SetColumns(HistoryColumns());
    SetEmptyText(core::langx::tr(970448, "暂无订单"));
    RefreshIfStale();
}

CVXHistoryOrdersCard::~CVXHistoryOrdersCard() = default;

QString CVXHistoryOrdersCard::GetCardObjType()
{
    return QString::fromLatin1(kCardType);
}

QString CVXHistoryOrdersCard::GetCardStaticTitle()
{
    return StaticCardStyle().title;
}

QSize CVXHistoryOrdersCard::GetCardMinSize()
{
    return StaticCardStyle().minSize;
}

QSize CVXHistoryOrdersCard::GetCardIdealSize()
{
    return StaticCardStyle().idealSize;
}

void CVXHistoryOrdersCard::GetCardObjRestoreData(CVXVariantMapTree* data) const
{
    CVXTradeTableCard::GetCardObjRestoreData(data);
    data->Set<int>(kPeriodKey, static_cast<int>(m_enPeriod));
}

void CVXHistoryOrdersCard::SetCardObjRestoreData(const CVXVariantMapTree& data)
{
    CVXTradeTableCard::SetCardObjRestoreData(data);
    const int period = data.Get<int>(kPeriodKey, static_cast<int>(EnHistoryPeriod::Week));
    SetPeriod(period >= 0 && period <= static_cast<int>(EnHistoryPeriod::All)
                  ? static_cast<EnHistoryPeriod>(period)
                  : EnHistoryPeriod::Week);
}

void CVXHistoryOrdersCard::SetPeriod(EnHistoryPeriod period)
{
    if (period == m_enPeriod)
        return;
    m_enPeriod = period;
    Rebuild();
}

void CVXHistoryOrdersCard::OnAccountDataChanged()
{
    Rebuild();
}

void CVXHistoryOrdersCard::Rebuild()
{
    m_today = QDate::currentDate();
    vx_trade::CVXSimTradeService* service = Service();
    const unsigned long long account = AccountID();
    m_orders = FilterHistory(service && account != 0 ? service->HistoryOrders(account)
                                                     : std::vector<vx_trade::Order>(),
                             m_enPeriod);
    std::vector<TradeTableRow> table;
    table.reserve(m_orders.size());
    for (const vx_trade::Order& order : m_orders)
        table.push_back(TableRow(order, m_today));
    MutableTable().SetRows(std::move(table));
    SetSegments(
        {core::langx::tr(970436, "今日"), core::langx::tr(970437, "近7日"), core::langx::tr(970422, "全部")},
        static_cast<int>(m_enPeriod));
    update();
}

void CVXHistoryOrdersCard::OnSegmentClicked(int index)
{
    SetPeriod(static_cast<EnHistoryPeriod>(index));
}

void CVXHistoryOrdersCard::OnRowClicked(unsigned long long key)
{
    for (const vx_trade::Order& order : m_orders) {
        if (order.orderId == key) {
            RaiseStockChange(order.stockId);
            return;
        }
    }
}

} // namespace vx_ws
