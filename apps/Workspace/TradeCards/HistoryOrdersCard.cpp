#include "apps/Workspace/TradeCards/HistoryOrdersCard.h"

#include "UIFrame/VariantMapTreeAccess.h"

#include "Platform/Core/Langx.h"

namespace vx_ws {

namespace {

const QString kPeriodKey = QStringLiteral("HistoryPeriod");

const std::vector<OrderColumn> kColumns = {
    {EnOrderField::Date, 0},   {EnOrderField::UpdateTime, 3},  {EnOrderField::Code, 0},
    {EnOrderField::Side, 1},   {EnOrderField::Price, 2},       {EnOrderField::Quantity, 1},
    {EnOrderField::Filled, 3}, {EnOrderField::AverageFill, 4}, {EnOrderField::Status, 1},
};

} // namespace

CVXCardBaseStyle CVXHistoryOrdersCard::StaticCardStyle()
{
    return MakeCardStyle(core::langx::tr(236244, "交易历史"), QSize(560, 240), QSize(260, 120),
                         QSize(4000, 4000));
}

CVXHistoryOrdersCard::CVXHistoryOrdersCard(EnVXCardPos pos, QWidget* parent)
    : TplVXWorkspaceCard(pos, parent, kColumns)
{
    RefreshIfStale();
}

CVXHistoryOrdersCard::~CVXHistoryOrdersCard() = default;

void CVXHistoryOrdersCard::GetCardObjRestoreData(CVXVariantMapTree* data) const
{
    CVXOrderTableCard::GetCardObjRestoreData(data);
    data->Set<int>(kPeriodKey, static_cast<int>(m_enPeriod));
}

void CVXHistoryOrdersCard::SetCardObjRestoreData(const CVXVariantMapTree& data)
{
    CVXOrderTableCard::SetCardObjRestoreData(data);
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
    SetListedOrders(FilterHistory(service && account != 0 ? service->HistoryOrders(account)
                                                          : std::vector<vx_trade::Order>(),
                                  m_enPeriod),
                    m_today);
    SetSegments(
        {core::langx::tr(970436, "今日"), core::langx::tr(970437, "近7日"), core::langx::tr(970422, "全部")},
        static_cast<int>(m_enPeriod));
    update();
}

void CVXHistoryOrdersCard::OnSegmentClicked(int index)
{
    SetPeriod(static_cast<EnHistoryPeriod>(index));
}

} // namespace vx_ws
