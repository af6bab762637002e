#include "apps/Workspace/TradeCards/PositionCard.h"

#include "apps/Workspace/Cards/WorkspaceContext.h"
#include "apps/Workspace/MarketData/SimMarketData.h"
#include "apps/Workspace/Trade/SimTradeService.h"
#include "apps/Workspace/TradeCards/OrderCells.h"

#include "UIFrame/CardEvents.h"

#include "Platform/Core/Langx.h"

#include <QLocale>

namespace vx_ws {

namespace {

enum EnColumn
{
    kCode,
    kName,
    kQuantity,
    kAverageCost,
    kLast,
    kMarketValue,
    kPnL,
    kPnLRatio,
    kColumnCount
};

std::vector<TradeTableColumn> PositionColumns()
{
    const Qt::Alignment right = Qt::AlignRight;
    return {
        {QStringLiteral("code"), core::langx::tr(970404, "代码"), Qt::AlignLeft, 58, 1, 0, true},
        {QStringLiteral("name"), core::langx::tr(970405, "名称"), Qt::AlignLeft, 72, 2, 4, true},
        {QStringLiteral("quantity"), core::langx::tr(970406, "数量"), right, 56, 1, 1, true},
        {QStringLiteral("cost"), core::langx::tr(970407, "成本价"), right, 64, 1, 3, true},
        {QStringLiteral("last"), core::langx::tr(970408, "现价"), right, 60, 1, 2, true},
        {QStringLiteral("value"), core::langx::tr(970409, "市值"), right, 88, 1, 3, true},
        {QStringLiteral("pnl"), core::langx::tr(970410, "盈亏"), right, 84, 1, 1, true},
        {QStringLiteral("pnlRatio"), core::langx::tr(970411, "盈亏比例"), right, 62, 1, 2, true},
    };
}

TradeTableRow TableRow(const PositionRow& row)
{
    const QLocale english(QLocale::English);
    const QColor pnlColor = CVXWorkspaceCardBase::ChangeColor(row.unrealizedPnL);
    TradeTableRow out;
    out.key = row.stockId;
    out.cells.resize(kColumnCount);
    out.cells[kCode] = MakeCell(row.code, row.code);
    out.cells[kName] = MakeCell(row.name, row.name);
    out.cells[kQuantity] = MakeCell(english.toString(row.quantity), static_cast<qlonglong>(row.quantity));
    out.cells[kAverageCost] =
        MakeCell(CVXWorkspaceCardBase::FormatPrice(row.averageCost, row.tickSize / 10), row.averageCost);
    out.cells[kLast] = MakeCell(CVXWorkspaceCardBase::FormatPrice(row.last, row.tickSize), row.last,
                                CVXWorkspaceCardBase::ChangeColor(row.last - row.averageCost));
    out.cells[kMarketValue] = MakeCell(CVXAccountCardBase::FormatMoney(row.marketValue), row.marketValue);
    out.cells[kPnL] =
        MakeCell(CVXAccountCardBase::FormatSignedMoney(row.unrealizedPnL), row.unrealizedPnL, pnlColor);
    out.cells[kPnLRatio] =
        MakeCell(CVXWorkspaceCardBase::FormatPercent(row.pnlRatio), row.pnlRatio, pnlColor);
    return out;
}

} // namespace

CVXCardBaseStyle CVXPositionCard::StaticCardStyle()
{
    return MakeCardStyle(core::langx::tr(250217, "持仓"), QSize(560, 240), QSize(240, 120),
                         QSize(4000, 4000));
}

CVXPositionCard::CVXPositionCard(EnVXCardPos pos, QWidget* parent) : TplVXWorkspaceCard(pos, parent)
{
    MutableTable().SetColumns(PositionColumns());
    SetEmptyText(core::langx::tr(970447, "暂无持仓"));
    RefreshIfStale();
}

CVXPositionCard::~CVXPositionCard() = default;

void CVXPositionCard::OnAccountDataChanged()
{
    Rebuild(true);
}

void CVXPositionCard::OnMarketDataChanged(const std::set<unsigned long>& /*stockIDs*/)
{
    Rebuild(false);
}

void CVXPositionCard::Rebuild(bool resubscribe)
{
    vx_trade::CVXSimTradeService* service = Service();
    const unsigned long long account = AccountID();
    m_rows = service && account != 0 ? BuildPositionRows(service->Positions(account), MarketData())
                                     : std::vector<PositionRow>();
    if (resubscribe) {
        std::vector<unsigned long> ids;
        for (const PositionRow& row : m_rows)
            ids.push_back(row.stockId);
        SetExtraSubscriptions(ids);
    }

    std::vector<TradeTableRow> table;
    table.reserve(m_rows.size());
    for (const PositionRow& row : m_rows)
        table.push_back(TableRow(row));
    MutableTable().SetRows(std::move(table));

    if (m_rows.empty()) {
        MutableTable().SetTotals(std::nullopt);
    } else {
        const PositionTotals totals = SumPositions(m_rows);
        const QColor color = ChangeColor(totals.unrealizedPnL);
        TradeTableRow row;
        row.cells.resize(kColumnCount);
        row.cells[kCode].text = core::langx::tr(970412, "合计");
        row.cells[kMarketValue].text = FormatMoney(totals.marketValue);
        row.cells[kPnL] = MakeCell(FormatSignedMoney(totals.unrealizedPnL), QVariant(), color);
        row.cells[kPnLRatio] = MakeCell(FormatPercent(totals.pnlRatio), QVariant(), color);
        MutableTable().SetTotals(row);
    }
    SetCaption(core::langx::tr(970413, "%1 个持仓").arg(m_rows.size()));
    update();
}

void CVXPositionCard::OnRowClicked(unsigned long long key)
{
    RaiseStockChange(static_cast<unsigned long>(key));
}

void CVXPositionCard::OnRowDoubleClicked(unsigned long long key)
{
    for (const PositionRow& row : m_rows) {
        if (row.stockId != key)
            continue;
        CardEventPostionsOpenPlaceOrder event;
        event.request.u64StockID = row.stockId;
        event.request.enSide = row.quantity > 0 ? EnVXOrderSide::Sell : EnVXOrderSide::Buy;
        event.request.llQuantity = row.quantity > 0 ? row.quantity : -row.quantity;
        event.request.accountInfo = vx_trade::CVXSimTradeService::MakeAccountTree(AccountID());
        core::ui_event::DispatchCardEvent(this, &event, true);
        return;
    }
}

} // namespace vx_ws
