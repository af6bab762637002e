#include "apps/Workspace/QuoteCards/BrokersCard.h"

#include "apps/Workspace/Cards/CardPaint.h"
#include "apps/Workspace/Cards/WorkspaceContext.h"
#include "apps/Workspace/MarketData/SimMarketData.h"

#include "Platform/Core/Langx.h"

#include <QPainter>

#include <algorithm>

namespace vx_ws {

using namespace card_paint;

namespace {

constexpr int kHeaderHeight = 24;
constexpr int kCellHeight = 20;
constexpr int kMinCellWidth = 58;
constexpr int kGap = 1;

} // namespace

CVXCardBaseStyle CVXBrokersCard::StaticCardStyle()
{
    return MakeCardStyle(core::langx::tr(970201, "经纪队列"), QSize(300, 200), QSize(200, 100),
                         QSize(1600, 1200));
}

CVXBrokersCard::CVXBrokersCard(EnVXCardPos pos, QWidget* parent) : TplVXWorkspaceCard(pos, parent) {}

CVXBrokersCard::~CVXBrokersCard() = default;

QRect CVXBrokersCard::SideRect(bool bidSide) const
{
    const QRect body = rect().adjusted(4, kHeaderHeight, -4, -4);
    const int half = (body.width() - 6) / 2;
    return bidSide ? QRect(body.left(), body.top(), half, body.height())
                   : QRect(body.right() - half + 1, body.top(), half, body.height());
}

int CVXBrokersCard::Columns() const
{
    return std::max(1, (SideRect(true).width() + kGap) / (kMinCellWidth + kGap));
}

int CVXBrokersCard::CellCapacity() const
{
    const int rows = std::max(0, (SideRect(true).height() + kGap) / (kCellHeight + kGap));
    return rows * Columns();
}

QRect CVXBrokersCard::CellRect(bool bidSide, int index) const
{
    const QRect side = SideRect(bidSide);
    const int columns = Columns();
    const int cellWidth = (side.width() - (columns - 1) * kGap) / columns;
    const int row = index / columns;
    const int column = index % columns;
    return QRect(side.left() + column * (cellWidth + kGap), side.top() + row * (kCellHeight + kGap),
                 cellWidth, kCellHeight);
}

std::vector<BrokerQueueCell> CVXBrokersCard::VisibleCells(bool bidSide) const
{
    vx_md::CVXSimMarketData* feed = MarketData();
    const unsigned long id = ShownStockID();
    if (!feed || !feed->Contains(id))
        return {};
    const vx_md::OrderBook book = feed->GetOrderBook(id);
    return MakeBrokerQueue(bidSide ? book.bids : book.asks, CellCapacity());
}

void CVXBrokersCard::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    painter.fillRect(rect(), ThemeColor("ct_bg_primary"));
    const QColor textPrimary = ThemeColor("ct_text_primary");
    const QColor textSecondary = ThemeColor("ct_text_secondary");

    vx_md::CVXSimMarketData* feed = MarketData();
    const unsigned long id = ShownStockID();
    const bool known = feed && feed->Contains(id);
    const vx_md::OrderBook book = known ? feed->GetOrderBook(id) : vx_md::OrderBook();
    const double tick = known ? feed->GetSecurity(id).tickSize : 0.01;

    const QFont small = SmallerFont(font());
    for (bool bidSide : {true, false}) {
        const QColor sideColor = ThemeColor(bidSide ? "ct_buy" : "ct_sell");
        const QRect side = SideRect(bidSide);
        const auto& levels = bidSide ? book.bids : book.asks;

        // Side title with the best price of the side.
        const QRect title(side.left(), 0, side.width(), kHeaderHeight);
        painter.fillRect(QRect(side.left(), kHeaderHeight - 4, side.width(), 2), sideColor);
        painter.setFont(font());
        QString caption = bidSide ? core::langx::tr(970209, "买盘") : core::langx::tr(970210, "卖盘");
        if (!levels.empty())
            caption += QLatin1Char(' ') + FormatPrice(levels.front().price, tick);
        DrawCellText(painter, title.adjusted(-4, -2, 4, -4), caption,
                     bidSide ? Qt::AlignLeft : Qt::AlignRight, sideColor);

        const std::vector<BrokerQueueCell> cells =
            known ? MakeBrokerQueue(levels, CellCapacity()) : std::vector<BrokerQueueCell>();
        if (cells.empty()) {
            painter.setFont(small);
            painter.setPen(textSecondary);
            painter.drawText(side, Qt::AlignCenter, core::langx::tr(970211, "暂无经纪队列"));
            continue;
        }
        for (std::size_t i = 0; i < cells.size(); ++i) {
            const BrokerQueueCell& cell = cells[i];
            const QRect r = CellRect(bidSide, static_cast<int>(i));
            if (cell.isMarker) {
                painter.fillRect(r, WithAlpha(sideColor, 200));
                painter.setFont(small);
                DrawCellText(painter, r, QString::number(cell.level), Qt::AlignCenter,
                             ThemeColor("ct_text_on_accent"));
                continue;
            }
            // Deeper levels fade: the front of the best level is where fills happen first.
            const int alpha = std::max(14, 44 - 8 * (cell.level - 1));
            painter.fillRect(r, WithAlpha(sideColor, alpha));
            painter.setFont(font());
            const QString name = BrokerShortName(cell.broker);
            const bool roomForNumber =
                r.width() >= painter.fontMetrics().horizontalAdvance(name + QStringLiteral(" 0000")) + 8;
            const QString text =
                roomForNumber ? QString::number(cell.broker) + QLatin1Char(' ') + name : name;
            DrawCellText(painter, r, text, Qt::AlignCenter, textPrimary);
        }
    }
}

} // namespace vx_ws
