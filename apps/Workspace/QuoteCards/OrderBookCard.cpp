#include "apps/Workspace/QuoteCards/OrderBookCard.h"

#include "apps/Workspace/Cards/CardPaint.h"
#include "apps/Workspace/Cards/WorkspaceContext.h"
#include "apps/Workspace/MarketData/SimMarketData.h"

#include "UIFrame/CardEvents.h"
#include "UIFrame/VariantMapTreeAccess.h"

#include "Platform/Core/Langx.h"
#include "Platform/StdUI/Menu.h"

#include <QAction>
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>

namespace vx_ws {

using namespace card_paint;

namespace {

const QString kDepthKey = QStringLiteral("Depth");
constexpr int kHeaderHeight = 24;
constexpr int kRatioBarHeight = 3;
constexpr int kMaxRowHeight = 22;
constexpr int kMinRowHeight = 14;
// From this width the two sides stand next to each other.
constexpr int kSideBySideWidth = 400;

QString DepthText(int depth)
{
    return depth == 10 ? core::langx::tr(970207, "10档") : core::langx::tr(970206, "5档");
}

QString LevelLabel(CVXOrderBookCard::EnBookSide side, int level)
{
    const QString pattern = side == CVXOrderBookCard::EnBookSide::Bid ? core::langx::tr(970204, "买%1")
                                                                      : core::langx::tr(970205, "卖%1");
    return pattern.arg(level);
}

} // namespace

struct CVXOrderBookCard::Geometry
{
    QRect header;
    QRect depthSwitch;
    QRect ratioBar;
    QRect levels; // the area of the rows
    struct Level
    {
        EnBookSide side;
        int level;
        QRect rect;
    };
    std::vector<Level> rows;
};

CVXCardBaseStyle CVXOrderBookCard::StaticCardStyle()
{
    return MakeCardStyle(core::langx::tr(970200, "盘口"), QSize(240, 300), QSize(160, 120),
                         QSize(1200, 1200));
}

CVXOrderBookCard::CVXOrderBookCard(EnVXCardPos pos, QWidget* parent) : TplVXWorkspaceCard(pos, parent) {}

CVXOrderBookCard::~CVXOrderBookCard() = default;

void CVXOrderBookCard::GetCardMenu(vx_std_ui::VMenu* menu)
{
    if (!menu)
        return;
    const QString group = QStringLiteral("OrderBookDepth");
    QAction* five = menu->addRadioAction(group, DepthText(5), 5, m_depth == 5);
    QAction* ten = menu->addRadioAction(group, DepthText(10), 10, m_depth == 10);
    connect(menu, &vx_std_ui::VMenu::Triggered, this, [this, five, ten](QAction* action) {
        if (action == five)
            SetDepth(5);
        else if (action == ten)
            SetDepth(10);
    });
}

void CVXOrderBookCard::GetCardObjRestoreData(CVXVariantMapTree* data) const
{
    CVXWorkspaceCardBase::GetCardObjRestoreData(data);
    if (data)
        data->Set<int>(kDepthKey, m_depth);
}

void CVXOrderBookCard::SetCardObjRestoreData(const CVXVariantMapTree& data)
{
    CVXWorkspaceCardBase::SetCardObjRestoreData(data);
    SetDepth(data.Get<int>(kDepthKey, m_depth));
}

void CVXOrderBookCard::SetDepth(int depth)
{
    const int normalized = NormalizeOrderBookDepth(depth);
    if (normalized == m_depth)
        return;
    m_depth = normalized;
    m_hover = {};
    update();
}

OrderBookView CVXOrderBookCard::CurrentView() const
{
    vx_md::CVXSimMarketData* feed = MarketData();
    const unsigned long id = ShownStockID();
    if (!feed || !feed->Contains(id))
        return {};
    return MakeOrderBookView(feed->GetOrderBook(id), m_depth, feed->GetSecurity(id).tickSize);
}

bool CVXOrderBookCard::IsSideBySide() const
{
    return width() >= kSideBySideWidth;
}

CVXOrderBookCard::Geometry CVXOrderBookCard::ComputeGeometry(const OrderBookView& view) const
{
    Geometry g;
    const QRect all = rect();
    g.header = QRect(all.left(), all.top(), all.width(), kHeaderHeight);
    const int switchWidth = fontMetrics().horizontalAdvance(DepthText(10)) + 14;
    g.depthSwitch =
        QRect(g.header.right() - switchWidth - 5, g.header.top() + 4, switchWidth, kHeaderHeight - 8);
    g.ratioBar = QRect(all.left(), g.header.bottom() + 1, all.width(), kRatioBarHeight);
    g.levels =
        QRect(all.left(), g.ratioBar.bottom() + 3, all.width(), all.bottom() - g.ratioBar.bottom() - 3);

    const bool sideBySide = IsSideBySide();
    const int rowsPerColumn = sideBySide ? m_depth : 2 * m_depth;
    int rowHeight = std::clamp(g.levels.height() / std::max(1, rowsPerColumn), kMinRowHeight, kMaxRowHeight);
    // When even the smallest rows do not fit, the levels nearest the spread stay.
    const int fitting = std::max(0, g.levels.height() / rowHeight);
    const int levelsShown = std::min(m_depth, sideBySide ? fitting : fitting / 2);

    if (sideBySide) {
        const int half = g.levels.width() / 2;
        const QRect bidColumn(g.levels.left(), g.levels.top(), half - 1, g.levels.height());
        const QRect askColumn(g.levels.left() + half + 1, g.levels.top(), g.levels.width() - half - 1,
                              g.levels.height());
        for (int i = 0; i < levelsShown; ++i) {
            if (i < static_cast<int>(view.bids.size()))
                g.rows.push_back(
                    {EnBookSide::Bid, i + 1,
                     QRect(bidColumn.left(), bidColumn.top() + i * rowHeight, bidColumn.width(), rowHeight)});
            if (i < static_cast<int>(view.asks.size()))
                g.rows.push_back(
                    {EnBookSide::Ask, i + 1,
                     QRect(askColumn.left(), askColumn.top() + i * rowHeight, askColumn.width(), rowHeight)});
        }
        return g;
    }
    // Asks from the deepest shown down to the best, then the bids from the best: the spread sits
    // in the middle of the card where the eye looks first.
    const int middle = g.levels.top() + levelsShown * rowHeight;
    for (int i = 0; i < levelsShown; ++i) {
        if (i < static_cast<int>(view.asks.size()))
            g.rows.push_back(
                {EnBookSide::Ask, i + 1,
                 QRect(g.levels.left(), middle - (i + 1) * rowHeight, g.levels.width(), rowHeight)});
        if (i < static_cast<int>(view.bids.size()))
            g.rows.push_back(
                {EnBookSide::Bid, i + 1,
                 QRect(g.levels.left(), middle + 1 + i * rowHeight, g.levels.width(), rowHeight)});
    }
    return g;
}

QRect CVXOrderBookCard::LevelRect(EnBookSide side, int level) const
{
    const Geometry g = ComputeGeometry(CurrentView());
    for (const Geometry::Level& row : g.rows)
        if (row.side == side && row.level == level)
            return row.rect;
    return {};
}

QRect CVXOrderBookCard::DepthSwitchRect() const
{
    return ComputeGeometry(OrderBookView()).depthSwitch;
}

CVXOrderBookCard::Hit CVXOrderBookCard::HitTest(const QPoint& pos) const
{
    const Geometry g = ComputeGeometry(CurrentView());
    for (const Geometry::Level& row : g.rows)
        if (row.rect.contains(pos))
            return {row.side, row.level};
    return {};
}

void CVXOrderBookCard::RequestOrder(const Hit& hit)
{
    const OrderBookView view = CurrentView();
    const auto& levels = hit.side == EnBookSide::Ask ? view.asks : view.bids;
    if (hit.level < 1 || hit.level > static_cast<int>(levels.size()))
        return;
    CardEventPostionsOpenPlaceOrder event;
    event.request.u64StockID = ShownStockID();
    // Taking an ask is a buy, hitting a bid a sell.
    event.request.enSide = hit.side == EnBookSide::Ask ? EnVXOrderSide::Buy : EnVXOrderSide::Sell;
    event.request.dPrice = levels[hit.level - 1].price;
    core::ui_event::DispatchCardEvent(this, &event);
}

void CVXOrderBookCard::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton) {
        CVXWorkspaceCardBase::mousePressEvent(event);
        return;
    }
    if (DepthSwitchRect().contains(event->pos())) {
        SetDepth(m_depth == 5 ? 10 : 5);
        m_pressed = {};
        return;
    }
    m_pressed = HitTest(event->pos());
}

void CVXOrderBookCard::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton) {
        CVXWorkspaceCardBase::mouseReleaseEvent(event);
        return;
    }
    const Hit pressed = m_pressed;
    m_pressed = {};
    const Hit released = HitTest(event->pos());
    if (pressed.level != 0 && pressed.level == released.level && pressed.side == released.side)
        RequestOrder(pressed);
}

void CVXOrderBookCard::mouseMoveEvent(QMouseEvent* event)
{
    const Hit hit = HitTest(event->pos());
    if (hit.level != m_hover.level || hit.side != m_hover.side) {
        m_hover = hit;
        setCursor(hit.level != 0 ? Qt::PointingHandCursor : Qt::ArrowCursor);
        update();
    }
    CVXWorkspaceCardBase::mouseMoveEvent(event);
}

void CVXOrderBookCard::leaveEvent(QEvent* event)
{
    if (m_hover.level != 0) {
        m_hover = {};
        update();
    }
    CVXWorkspaceCardBase::leaveEvent(event);
}

void CVXOrderBookCard::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    painter.fillRect(rect(), ThemeColor("ct_bg_primary"));

    vx_md::CVXSimMarketData* feed = MarketData();
    const unsigned long id = ShownStockID();
    const bool known = feed && feed->Contains(id);
    const OrderBookView view = CurrentView();
    const Geometry g = ComputeGeometry(view);
    const double tick = known ? feed->GetSecurity(id).tickSize : 0.01;
    const double prevClose = known ? feed->GetQuote(id).prevClose : 0.0;

    PaintHeader(painter, view, g, tick);
    PaintRatioBar(painter, view, g);
    if (!known || (view.bids.empty() && view.asks.empty())) {
        painter.setFont(font());
        painter.setPen(ThemeColor("ct_text_secondary"));
        painter.drawText(g.levels, Qt::AlignCenter, core::langx::tr(970208, "暂无盘口"));
        return;
    }
    for (const Geometry::Level& row : g.rows) {
        const OrderBookLevelView& level =
            (row.side == EnBookSide::Ask ? view.asks : view.bids)[row.level - 1];
        PaintLevel(painter, row.rect, row.side, row.level, level, tick, prevClose);
    }
    PaintSpreadLine(painter, g);
}

// Spread and imbalance (when there is room) left of the depth switch.
void CVXOrderBookCard::PaintHeader(QPainter& painter, const OrderBookView& view, const Geometry& g,
                                   double tick)
{
    const QColor textSecondary = ThemeColor("ct_text_secondary");
    painter.setFont(SmallerFont(font()));
    QRect headerText = g.header.adjusted(6, 0, -(g.depthSwitch.width() + 12), 0);
    if (view.hasSpread) {
        const QString spread = core::langx::tr(970202, "价差") + QLatin1Char(' ') +
                               FormatPrice(view.spread, tick) + QStringLiteral(" (") +
                               QString::number(view.spreadTicks) + QLatin1Char(')');
        painter.setPen(textSecondary);
        painter.drawText(headerText, Qt::AlignLeft | Qt::AlignVCenter, spread);
        if (headerText.width() > painter.fontMetrics().horizontalAdvance(spread) + 90) {
            const QString label = core::langx::tr(970203, "委比") + QLatin1Char(' ');
            const QString value = FormatPercent(view.imbalance);
            const int valueWidth = painter.fontMetrics().horizontalAdvance(value);
            painter.setPen(ChangeColor(view.imbalance));
            painter.drawText(headerText, Qt::AlignRight | Qt::AlignVCenter, value);
            painter.setPen(textSecondary);
            painter.drawText(headerText.adjusted(0, 0, -valueWidth, 0), Qt::AlignRight | Qt::AlignVCenter,
                             label);
        }
    }
    painter.setPen(ThemeColor("ct_border"));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(QRectF(g.depthSwitch).adjusted(0.5, 0.5, -0.5, -0.5), 3, 3);
    painter.setPen(ThemeColor("ct_text_primary"));
    painter.drawText(g.depthSwitch, Qt::AlignCenter, DepthText(m_depth));
}

// The share of bid volume against ask volume.
void CVXOrderBookCard::PaintRatioBar(QPainter& painter, const OrderBookView& view, const Geometry& g)
{
    if (view.bidVolume + view.askVolume > 0) {
        const int bidWidth = static_cast<int>(g.ratioBar.width() * view.bidShare + 0.5);
        painter.fillRect(QRect(g.ratioBar.left(), g.ratioBar.top(), bidWidth, g.ratioBar.height()),
                         ThemeColor("ct_buy"));
        painter.fillRect(QRect(g.ratioBar.left() + bidWidth, g.ratioBar.top(), g.ratioBar.width() - bidWidth,
                               g.ratioBar.height()),
                         ThemeColor("ct_sell"));
    } else {
        painter.fillRect(g.ratioBar, ThemeColor("ct_divider"));
    }
}

void CVXOrderBookCard::PaintLevel(QPainter& painter, const QRect& r, EnBookSide side, int levelNumber,
                                  const OrderBookLevelView& level, double tick, double prevClose)
{
    const bool ask = side == EnBookSide::Ask;
    if (m_hover.level == levelNumber && m_hover.side == side)
        painter.fillRect(r, ThemeColor("ct_hover"));
    // The volume bar, at most 60% of the row, grows from the row's outer edge; side by side
    // both sides grow from the middle so the two depths face each other.
    const int barWidth = static_cast<int>(r.width() * 0.6 * level.barFraction + 0.5);
    const bool fromLeft = ask && IsSideBySide();
    const int barLeft = fromLeft ? r.left() : r.right() - barWidth + 1;
    painter.fillRect(QRect(barLeft, r.top() + 2, barWidth, r.height() - 3),
                     WithAlpha(ask ? ThemeColor("ct_sell") : ThemeColor("ct_buy"), 34));

    const QColor textPrimary = ThemeColor("ct_text_primary");
    const int labelWidth = std::max(40, r.width() / 5);
    const QRect labelRect(r.left() + 2, r.top(), labelWidth, r.height());
    const QRect volumeRect(r.left() + r.width() / 2, r.top(), r.width() / 2 - 2, r.height());
    const QRect priceRect(labelRect.right(), r.top(), volumeRect.left() - labelRect.right(), r.height());
    painter.setFont(SmallerFont(font()));
    DrawCellText(painter, labelRect, LevelLabel(side, levelNumber), Qt::AlignLeft,
                 ThemeColor("ct_text_secondary"));
    painter.setFont(font());
    DrawCellText(painter, priceRect, FormatPrice(level.price, tick), Qt::AlignRight,
                 prevClose > 0 ? ChangeColor(level.price - prevClose) : textPrimary);
    DrawCellText(painter, volumeRect, FormatVolume(level.volume), Qt::AlignRight, textPrimary);
}

// The line between the two sides: down the middle side by side, else under ask 1.
void CVXOrderBookCard::PaintSpreadLine(QPainter& painter, const Geometry& g)
{
    painter.setPen(ThemeColor("ct_divider"));
    if (IsSideBySide()) {
        const int x = g.levels.left() + g.levels.width() / 2;
        painter.drawLine(x, g.levels.top(), x, g.levels.bottom());
        return;
    }
    QRect ask1;
    QRect bid1;
    for (const Geometry::Level& row : g.rows) {
        if (row.level == 1)
            (row.side == EnBookSide::Ask ? ask1 : bid1) = row.rect;
    }
    const int y = !ask1.isEmpty() ? ask1.bottom() + 1 : (!bid1.isEmpty() ? bid1.top() - 1 : -1);
    if (y >= 0)
        painter.drawLine(g.levels.left(), y, g.levels.right(), y);
}

} // namespace vx_ws
