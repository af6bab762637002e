#include "apps/Workspace/TradeCards/AccInfoCard.h"

#include "apps/Workspace/Cards/WorkspaceContext.h"
#include "apps/Workspace/TradeCards/AccountRows.h"
#include "apps/Workspace/TradeCards/AccountSelector.h"
#include "apps/Workspace/TradeCards/TradeTable.h"

#include "Platform/Core/Langx.h"

#include <QPainter>
#include <QPainterPath>

#include <cmath>

namespace vx_ws {

namespace {

constexpr int kMargin = 10;
constexpr int kTopStrip = 34;
constexpr int kSelectorHeight = 22;

struct FieldEntry
{
    CVXAccInfoCard::EnField field;
    int textId;
    const char* fallback;
};

// The grid under the total, read row by row.
const FieldEntry kGrid[] = {
    {CVXAccInfoCard::EnField::Cash, 970440, "现金"},
    {CVXAccInfoCard::EnField::MarketValue, 970441, "持仓市值"},
    {CVXAccInfoCard::EnField::BuyingPower, 970442, "购买力"},
    {CVXAccInfoCard::EnField::FrozenCash, 970443, "冻结资金"},
    {CVXAccInfoCard::EnField::RealizedPnL, 970444, "今日已实现盈亏"},
    {CVXAccInfoCard::EnField::UnrealizedPnL, 970445, "未实现盈亏"},
};

} // namespace

CVXCardBaseStyle CVXAccInfoCard::StaticCardStyle()
{
    return MakeCardStyle(core::langx::tr(250218, "账户"), QSize(300, 220), QSize(200, 140),
                         QSize(2000, 2000));
}

CVXAccInfoCard::CVXAccInfoCard(EnVXCardPos pos, QWidget* parent) : TplVXWorkspaceCard(pos, parent)
{
    RefreshIfStale();
}

CVXAccInfoCard::~CVXAccInfoCard() = default;

QString CVXAccInfoCard::FieldText(EnField field) const
{
    if (!m_bHasAccount)
        return QStringLiteral("--");
    switch (field) {
    case EnField::TotalAssets:
        return FormatMoney(m_summary.totalAssets);
    case EnField::Cash:
        return FormatMoney(m_summary.cash);
    case EnField::MarketValue:
        return FormatMoney(m_summary.marketValue);
    case EnField::BuyingPower:
        return FormatMoney(m_summary.buyingPower);
    case EnField::FrozenCash:
        return FormatMoney(m_summary.frozenCash);
    case EnField::RealizedPnL:
        return FormatSignedMoney(m_summary.realizedPnL);
    case EnField::UnrealizedPnL:
        return FormatSignedMoney(m_summary.unrealizedPnL);
    case EnField::Count:
        break;
    }
    return QString();
}

void CVXAccInfoCard::OnAccountDataChanged()
{
    Reload(true);
}

void CVXAccInfoCard::OnMarketDataChanged(const std::set<unsigned long>& /*stockIDs*/)
{
    Reload(false);
}

void CVXAccInfoCard::Reload(bool resubscribe)
{
    vx_trade::CVXSimTradeService* service = Service();
    const unsigned long long account = AccountID();
    m_bHasAccount = service && account != 0;
    m_summary = m_bHasAccount ? service->Summary(account) : vx_trade::AccountSummary();
    m_dCashShare = m_bHasAccount ? CashShare(m_summary) : 0.0;
    if (m_bHasAccount) {
        const vx_trade::AccountInfo info = service->GetAccount(account);
        m_bMargin = info.margin;
        m_currency = QString::fromStdString(info.currency);
    } else {
        m_bMargin = false;
        m_currency.clear();
    }
    if (resubscribe) {
        std::vector<unsigned long> ids;
        if (m_bHasAccount) {
            for (const vx_trade::Position& position : service->Positions(account))
                ids.push_back(position.stockId);
        }
        SetExtraSubscriptions(ids);
    }
    update();
}

void CVXAccInfoCard::resizeEvent(QResizeEvent* event)
{
    CVXAccountCardBase::resizeEvent(event);
    const int selectorWidth = std::min(AccountSelector()->sizeHint().width(), width() - 2 * kMargin - 70);
    AccountSelector()->setGeometry(kMargin, (kTopStrip - kSelectorHeight) / 2, std::max(80, selectorWidth),
                                   kSelectorHeight);
}

void CVXAccInfoCard::paintEvent(QPaintEvent* /*event*/)
{
    PostRefreshIfStale();
    QPainter painter(this);
    painter.fillRect(rect(), ThemeColor("ct_bg_primary"));
    const QFont base = font();
    QFont small = base;
    if (base.pixelSize() > 0)
        small.setPixelSize(std::max(9, base.pixelSize() - 1));
    else
        small.setPointSizeF(std::max(7.0, base.pointSizeF() - 0.75));

    if (m_bHasAccount)
        PaintAccountKind(painter, small);
    const int gridTop = PaintTotalAssets(painter, small, kTopStrip + 4);
    const bool showBar = height() >= 190;
    const int barHeight = showBar ? 30 : 0;
    PaintFieldGrid(painter, small, gridTop, barHeight);
    if (showBar)
        PaintBar(painter, QRect(kMargin, height() - barHeight - 2, width() - 2 * kMargin, barHeight));
}

// The account kind as a tag at the right of the selector strip, when the selector leaves room.
void CVXAccInfoCard::PaintAccountKind(QPainter& painter, const QFont& small)
{
    painter.setFont(small);
    const QString tag =
        m_bMargin ? core::langx::tr(970451, "保证金账户") : core::langx::tr(970452, "现金账户");
    const int tagWidth = QFontMetrics(small).horizontalAdvance(tag) + 12;
    const QRect tagRect(width() - kMargin - tagWidth, (kTopStrip - 18) / 2, tagWidth, 18);
    if (tagRect.left() > AccountSelector()->geometry().right() + 4) {
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(ThemeColor("ct_bg_tertiary"));
        painter.drawRoundedRect(QRectF(tagRect), 3, 3);
        painter.setRenderHint(QPainter::Antialiasing, false);
        painter.setPen(ThemeColor("ct_text_secondary"));
        painter.drawText(tagRect, Qt::AlignCenter, tag);
    }
}

// The total assets label and the large number under it, from `top`; returns the y below them.
int CVXAccInfoCard::PaintTotalAssets(QPainter& painter, const QFont& small, int top)
{
    int y = top;
    painter.setFont(small);
    painter.setPen(ThemeColor("ct_text_secondary"));
    const QFontMetrics smallMetrics(small);
    QString totalLabel = core::langx::tr(970439, "总资产");
    if (!m_currency.isEmpty())
        totalLabel += QStringLiteral(" (%1)").arg(m_currency);
    painter.drawText(QRect(kMargin, y, width() - 2 * kMargin, smallMetrics.height()),
                     Qt::AlignLeft | Qt::AlignVCenter, totalLabel);
    y += smallMetrics.height() + 2;
    QFont large = font();
    large.setPixelSize(std::clamp(height() / 9, 18, 28));
    large.setBold(true);
    painter.setFont(large);
    painter.setPen(ThemeColor("ct_text_primary"));
    const QFontMetrics largeMetrics(large);
    painter.drawText(
        QRect(kMargin, y, width() - 2 * kMargin, largeMetrics.height()), Qt::AlignLeft | Qt::AlignVCenter,
        CVXTradeTableModel::Elide(largeMetrics, FieldText(EnField::TotalAssets), width() - 2 * kMargin));
    return y + largeMetrics.height() + 6;
}

// The grid: two columns when there is room for both numbers, else one; rows that would reach
// into the bar are left out rather than overlap it.
void CVXAccInfoCard::PaintFieldGrid(QPainter& painter, const QFont& small, int y, int barHeight)
{
    const QFont base = font();
    const QColor primary = ThemeColor("ct_text_primary");
    const QFontMetrics smallMetrics(small);
    const int columns = width() >= 260 ? 2 : 1;
    const int rows = (static_cast<int>(std::size(kGrid)) + columns - 1) / columns;
    const int rowHeight = std::max(smallMetrics.height() + QFontMetrics(base).height() + 2,
                                   (height() - y - barHeight - 6) / std::max(1, rows));
    const int columnWidth = (width() - 2 * kMargin - (columns - 1) * 12) / columns;
    const QFontMetrics valueMetrics(base);
    for (int i = 0; i < static_cast<int>(std::size(kGrid)); ++i) {
        const FieldEntry& entry = kGrid[i];
        const int x = kMargin + (i % columns) * (columnWidth + 12);
        const int top = y + (i / columns) * rowHeight;
        if (top + smallMetrics.height() + valueMetrics.height() > height() - barHeight)
            break;
        painter.setFont(small);
        painter.setPen(ThemeColor("ct_text_secondary"));
        painter.drawText(QRect(x, top, columnWidth, smallMetrics.height()), Qt::AlignLeft | Qt::AlignVCenter,
                         CVXTradeTableModel::Elide(
                             smallMetrics, core::langx::tr(entry.textId, entry.fallback), columnWidth));
        const bool pnl = entry.field == EnField::RealizedPnL || entry.field == EnField::UnrealizedPnL;
        QColor color = primary;
        if (pnl && m_bHasAccount)
            color = ChangeColor(entry.field == EnField::RealizedPnL ? m_summary.realizedPnL
                                                                    : m_summary.unrealizedPnL);
        painter.setFont(base);
        painter.setPen(color);
        painter.drawText(QRect(x, top + smallMetrics.height(), columnWidth, valueMetrics.height()),
                         Qt::AlignLeft | Qt::AlignVCenter,
                         CVXTradeTableModel::Elide(valueMetrics, FieldText(entry.field), columnWidth));
    }
}

void CVXAccInfoCard::PaintBar(QPainter& painter, const QRect& area)
{
    const QRect bar(area.left(), area.top(), area.width(), 6);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(ThemeColor("ct_bg_tertiary"));
    painter.drawRoundedRect(QRectF(bar), 3, 3);
    if (m_bHasAccount) {
        const int cashWidth = static_cast<int>(std::lround(bar.width() * m_dCashShare));
        QPainterPath clip;
        clip.addRoundedRect(QRectF(bar), 3, 3);
        painter.save();
        painter.setClipPath(clip);
        painter.fillRect(QRect(bar.left(), bar.top(), cashWidth, bar.height()), ThemeColor("ct_link"));
        painter.fillRect(QRect(bar.left() + cashWidth, bar.top(), bar.width() - cashWidth, bar.height()),
                         ThemeColor("ct_focus").lighter(140));
        painter.restore();
    }
    painter.setRenderHint(QPainter::Antialiasing, false);

    QFont small = font();
    if (small.pixelSize() > 0)
        small.setPixelSize(std::max(9, small.pixelSize() - 1));
    painter.setFont(small);
    const QRect legend(area.left(), bar.bottom() + 4, area.width(), area.bottom() - bar.bottom() - 4);
    const QString cash = QStringLiteral("%1 %2%")
                             .arg(core::langx::tr(970440, "现金"))
                             .arg(m_bHasAccount ? std::lround(m_dCashShare * 100) : 0);
    const QString positions = QStringLiteral("%1 %2%")
                                  .arg(core::langx::tr(970453, "持仓"))
                                  .arg(m_bHasAccount ? 100 - std::lround(m_dCashShare * 100) : 0);
    painter.setPen(ThemeColor("ct_text_secondary"));
    painter.drawText(legend, Qt::AlignLeft | Qt::AlignVCenter, cash);
    painter.drawText(legend, Qt::AlignRight | Qt::AlignVCenter, positions);
}

} // namespace vx_ws
