#include "apps/Workspace/TradeCards/OrdersCard.h"

#include "apps/Workspace/Cards/WorkspaceContext.h"
#include "apps/Workspace/MarketData/SimMarketData.h"
#include "apps/Workspace/TradeCards/OrderCells.h"

#include "UIFrame/Canvas/PanelTradeRequests.h"
#include "UIFrame/VariantMapTreeAccess.h"

#include "Platform/Core/Langx.h"

namespace vx_ws {

namespace {

const QString kFilterKey = QStringLiteral("OrderFilter");
const QString kFilterStockKey = QStringLiteral("FilterStockID");

const std::vector<OrderColumn> kColumns = {
    {EnOrderField::SubmitTime, 1}, {EnOrderField::Code, 0},        {EnOrderField::Side, 0},
    {EnOrderField::Type, 4},       {EnOrderField::Price, 2},       {EnOrderField::Quantity, 1},
    {EnOrderField::Filled, 3},     {EnOrderField::AverageFill, 4}, {EnOrderField::Status, 0},
    {EnOrderField::Cancel, 0},
};

} // namespace

CVXCardBaseStyle CVXOrdersCard::StaticCardStyle()
{
    return MakeCardStyle(core::langx::tr(236241, "订单"), QSize(560, 240), QSize(260, 120),
                         QSize(4000, 4000));
}

CVXOrdersCard::CVXOrdersCard(EnVXCardPos pos, QWidget* parent) : TplVXWorkspaceCard(pos, parent, kColumns)
{
    RefreshIfStale();
}

CVXOrdersCard::~CVXOrdersCard() = default;

int CVXOrdersCard::CancelColumn() const
{
    return ColumnOf(EnOrderField::Cancel);
}

void CVXOrdersCard::SetObjProperty(const QString& cardType, const CVXVariantMapTree& property)
{
    CVXOrderTableCard::SetObjProperty(cardType, property);
    const QString key = QString::fromLatin1(panel_trade_request::kStockID);
    // A request without a security shows all orders again.
    SetFilterStockID(static_cast<unsigned long>(property.Get<qulonglong>(key, 0)));
}

void CVXOrdersCard::InitWithData(CVXVariantMapTree data)
{
    const QString key = QString::fromLatin1(panel_trade_request::kStockID);
    if (data.Contains(key))
        SetFilterStockID(static_cast<unsigned long>(data.Get<qulonglong>(key, 0)));
    CVXOrderTableCard::InitWithData(std::move(data));
}

void CVXOrdersCard::GetCardObjRestoreData(CVXVariantMapTree* data) const
{
    CVXOrderTableCard::GetCardObjRestoreData(data);
    data->Set<int>(kFilterKey, static_cast<int>(m_enFilter));
    data->Set<qulonglong>(kFilterStockKey, m_ulFilterStock);
}

void CVXOrdersCard::SetCardObjRestoreData(const CVXVariantMapTree& data)
{
    CVXOrderTableCard::SetCardObjRestoreData(data);
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
    SetListedOrders(FilterOrders(ofStock, m_enFilter, 0));

    std::vector<unsigned long> ids;
    for (const vx_trade::Order& order : ListedOrders())
        ids.push_back(order.stockId);
    SetExtraSubscriptions(ids);

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

void CVXOrdersCard::OnActionClicked(unsigned long long key, int column)
{
    if (column != CancelColumn())
        return;
    if (vx_trade::CVXSimTradeService* service = Service())
        service->CancelOrder(AccountID(), key);
}

} // namespace vx_ws
