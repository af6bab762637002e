#include "apps/Workspace/TradeCards/OrdersCard.h"

#include "apps/Workspace/Cards/WorkspaceContext.h"
#include "apps/Workspace/MarketData/SimMarketData.h"
#include "apps/Workspace/TradeCards/OrderCells.h"

#include "UIFrame/Canvas/PanelTradeRequests.h"
#include "UIFrame/VariantMapTreeAccess.h"

#include "Platform/Core/Langx.h"

#include <QLocale>

namespace vx_ws {

namespace {

const QString kFilterKey = QStringLiteral("OrderFilter");
const QString kFilterStockKey = QStringLiteral("FilterStockID");

enum EnColumn
{
    kTime,
    kCode,
    kSide,
    kType,
    kPrice,
    kQuantity,
    kFilled,
    kAverageFill,
    kStatus,
    kCancel,
    kColumnCount
};

std::vector<TradeTableColumn> OrderColumns()
{
    const Qt::Alignment right = Qt::AlignRight;
    return {
        {QStringLiteral("time"), core::langx::tr(970414, "时间"), Qt::AlignLeft, 64, 1, 1, true},
        {QStringLiteral("code"), core::langx::tr(970404, "代码"), Qt::AlignLeft, 58, 1, 0, true},
        {QStringLiteral("side"), core::langx::tr(970415, "方向"), Qt::AlignLeft, 40, 0, 0, true},
        {QStringLiteral("type"), core::langx::tr(970416, "类型"), Qt::AlignLeft, 40, 0, 4, true},
        {QStringLiteral("price"), core::langx::tr(970417, "价格"), right, 58, 1, 2, true},
        {QStringLiteral("quantity"), core::langx::tr(970406, "数量"), right, 52, 1, 1, true},
        {QStringLiteral("filled"), core::langx::tr(970418, "已成交"), right, 52, 1, 3, true},
        {QStringLiteral("averageFill"), core::langx::tr(970419, "成交均价"), right, 64, 1, 4, true},
        {QStringLiteral("status"), core::langx::tr(970420, "状态"), Qt::AlignLeft, 66, 1, 0, true},
        {QStringLiteral("cancel"), QString(), Qt::AlignCenter, 48, 0, 0, false},
    };
}

TradeTableRow TableRow(const vx_trade::Order& order)
{
    const QLocale english(QLocale::English);
    const OrderSecurityText security = SecurityTextOf(order.stockId, MarketData());
    TradeTableRow row;
    row.key = order.orderId;
    row.cells.resize(kColumnCount);
    row.cells[kTime] = MakeCell(CVXWorkspaceCardBase::FormatTime(order.submitTime), order.submitTime);
    row.cells[kCode] = MakeCell(security.code, security.code);
    row.cells[kSide] = MakeCell(
        OrderSideText(order.side), static_cast<int>(order.side),
        CVXWorkspaceCardBase::ThemeColor(order.side == vx_trade::EnOrderSide::Buy ? "ct_buy" : "ct_sell"));
    row.cells[kType] = MakeCell(OrderTypeText(order.type), static_cast<int>(order.type));
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
    if (IsWorking(order)) {
        row.cells[kCancel].text = core::langx::tr(970421, "撤单");
        row.cells[kCancel].kind = TradeTableCell::EnKind::Action;
    }
    return row;
}

} // namespace

CVXCardBaseStyle CVXOrdersCard::StaticCardStyle()
{
    CVXCardBaseStyle style;
    style.idealSize = QSize(560, 240);
    style.minSize = QSize(260, 120);
    style.maxSize = QSize(4000, 4000);
    style.title = core::langx::tr(236241, "订单");
    return style;
}

CVXOrdersCard::CVXOrdersCard(EnVXCardPos pos, QWidget* parent) : CVXTradeTableCard(pos, parent)
{
    MutableTable().SetColumns(OrderColumns());
    SetEmptyText(core::langx::tr(970448, "暂无订单"));
    RefreshIfStale();
}

CVXOrdersCard::~CVXOrdersCard() = default;

QString CVXOrdersCard::GetCardObjType()
{
    return QString::fromLatin1(kCardType);
}

QString CVXOrdersCard::GetCardStaticTitle()
{
    return StaticCardStyle().title;
}

QSize CVXOrdersCard::GetCardMinSize()
{
    return StaticCardStyle().minSize;
}

QSize CVXOrdersCard::GetCardIdealSize()
{
    return StaticCardStyle().idealSize;
}

int CVXOrdersCard::CancelColumn() const
{
    return kCancel;
}

void CVXOrdersCard::SetObjProperty(const QString& cardType, const CVXVariantMapTree& property)
{
    CVXTradeTableCard::SetObjProperty(cardType, property);
    const QString key = QString::fromLatin1(panel_trade_request::kStockID);
    // A request without a security shows all orders again.
    SetFilterStockID(static_cast<unsigned long>(property.Get<qulonglong>(key, 0)));
}

void CVXOrdersCard::InitWithData(CVXVariantMapTree data)
{
    const QString key = QString::fromLatin1(panel_trade_request::kStockID);
    if (data.Contains(key))
        SetFilterStockID(static_cast<unsigned long>(data.Get<qulonglong>(key, 0)));
    CVXTradeTableCard::InitWithData(std::move(data));
}

void CVXOrdersCard::GetCardObjRestoreData(CVXVariantMapTree* data) const
{
    CVXTradeTableCard::GetCardObjRestoreData(data);
    data->Set<int>(kFilterKey, static_cast<int>(m_enFilter));
    data->Set<qulonglong>(kFilterStockKey, m_ulFilterStock);
}

void CVXOrdersCard::SetCardObjRestoreData(const CVXVariantMapTree& data)
{
    CVXTradeTableCard::SetCardObjRestoreData(data);
    const int filter = data.Get<int>(kFilterKey, 0);
    SetFilter(filter >= 0 && filter <= static_cast<int>(EnOrderFilter::Cancelled)
                  ? static_cast<EnOrderFilter>(filter)
                  : EnOrderFilter::All);
    SetFilterStockID(static_cast<unsigned long>(data.Get<qulonglong>(kFilterStockKey, 0)));
}

void CVXOrdersCard::SetFilter(EnOrderFilter filter)
{
    if (filter == m_enFilter)
        return;
    m_enFilter = filter;
    Rebuild();
}

void CVXOrdersCard::SetFilterStockID(unsigned long stockId)
{
    if (stockId == m_ulFilterStock)
        return;
    m_ulFilterStock = stockId;
    Rebuild();
}

void CVXOrdersCard::OnAccountDataChanged()
{
    Rebuild();
}

void CVXOrdersCard::Rebuild()
{
    vx_trade::CVXSimTradeService* service = Service();
    const unsigned long long account = AccountID();
    const std::vector<vx_trade::Order> all =
        service && account != 0 ? service->Orders(account) : std::vector<vx_trade::Order>();
    const std::vector<vx_trade::Order> ofStock = FilterOrders(all, EnOrderFilter::All, m_ulFilterStock);
    m_orders = FilterOrders(ofStock, m_enFilter, 0);

    std::vector<unsigned long> ids;
    std::vector<TradeTableRow> table;
    for (const vx_trade::Order& order : m_orders) {
        ids.push_back(order.stockId);
        table.push_back(TableRow(order));
    }
    SetExtraSubscriptions(ids);
    MutableTable().SetRows(std::move(table));

    // Tab captions carry their counts so that the user sees what each tab holds.
    const QStringList names = {core::langx::tr(970422, "全部"), core::langx::tr(970423, "未完成"),
                               core::langx::tr(970424, "已成交"), core::langx::tr(970425, "已撤销")};
    QStringList texts;
    for (int i = 0; i < names.size(); ++i) {
        const size_t count = FilterOrders(ofStock, static_cast<EnOrderFilter>(i), 0).size();
        texts << QStringLiteral("%1 %2").arg(names[i]).arg(count);
    }
    SetSegments(texts, static_cast<int>(m_enFilter));
    SetChip(m_ulFilterStock != 0 ? SecurityTextOf(m_ulFilterStock, MarketData()).code : QString());
    update();
}

void CVXOrdersCard::OnSegmentClicked(int index)
{
    SetFilter(static_cast<EnOrderFilter>(index));
}

void CVXOrdersCard::OnChipClosed()
{
    SetFilterStockID(0);
}

void CVXOrdersCard::OnRowClicked(unsigned long long key)
{
    for (const vx_trade::Order& order : m_orders) {
        if (order.orderId == key) {
            RaiseStockChange(order.stockId);
            return;
        }
    }
}

void CVXOrdersCard::OnActionClicked(unsigned long long key, int column)
{
    if (column != kCancel)
        return;
    if (vx_trade::CVXSimTradeService* service = Service())
        service->CancelOrder(AccountID(), key);
}

} // namespace vx_ws
