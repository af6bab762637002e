#include "apps/Workspace/QuoteCards/TicksCard.h"

#include "apps/Workspace/Cards/WorkspaceContext.h"
#include "apps/Workspace/MarketData/SimMarketData.h"

#include "Platform/Core/Langx.h"

#include <QPainter>

#include <algorithm>

namespace vx_ws {

CVXCardBaseStyle CVXTicksCard::StaticCardStyle()
{
    return MakeCardStyle(core::langx::tr(236233, "逐笔明细"), QSize(240, 240), QSize(160, 120),
                         QSize(5000, 5000));
}

CVXTicksCard::CVXTicksCard(EnVXCardPos pos, QWidget* parent) : TplVXWorkspaceCard(pos, parent) {}

CVXTicksCard::~CVXTicksCard() = default;

int CVXTicksCard::RowCapacity() const
{
    return std::max(0, (height() - kHeaderHeight) / kRowHeight);
}

std::vector<vx_md::Tick> CVXTicksCard::ShownTicks() const
{
    vx_md::CVXSimMarketData* md = MarketData();
    const unsigned long id = ShownStockID();
    const int capacity = RowCapacity();
    if (!md || !md->Contains(id) || capacity == 0)
        return {};
    std::vector<vx_md::Tick> ticks = md->GetTicks(id, capacity);
    std::reverse(ticks.begin(), ticks.end());
    return ticks;
}

void CVXTicksCard::paintEvent(QPaintEvent* /*event*/)
{
    QPainter p(this);
    p.fillRect(rect(), ThemeColor("ct_bg_primary"));
    QFont font = this->font();
    font.setPixelSize(11);
    p.setFont(font);
    const QColor textSecondary = ThemeColor("ct_text_secondary");

    vx_md::CVXSimMarketData* md = MarketData();
    const unsigned long id = ShownStockID();
    if (!md || !md->Contains(id)) {
        p.setPen(textSecondary);
        p.drawText(rect(), Qt::AlignCenter, core::langx::tr(970110, "暂无数据"));
        return;
    }
    const vx_md::SecurityInfo info = md->GetSecurity(id);

    // Columns: time at the left, price right-aligned near the middle, volume right-aligned before
    // the side marker at the right edge.
    const int markerWidth = 16;
    const int timeLeft = 8;
    const int timeWidth = QFontMetrics(font).horizontalAdvance(QStringLiteral("00:00:00")) + 4;
    const int volumeRight = width() - markerWidth - 8;
    const int priceRight = timeLeft + timeWidth + (volumeRight - timeLeft - timeWidth) / 2;
    auto columns = [&](int top, int h) {
        struct
        {
            QRect time, price, volume, marker;
        } c{QRect(timeLeft, top, priceRight - timeLeft, h), QRect(timeLeft, top, priceRight - timeLeft, h),
            QRect(priceRight, top, volumeRight - priceRight, h), QRect(volumeRight + 4, top, markerWidth, h)};
        return c;
    };

    const auto header = columns(0, kHeaderHeight);
    const QFontMetrics fm(font);
    const int priceColumn = priceRight - timeLeft - timeWidth;
    p.setPen(textSecondary);
    p.drawText(header.time, Qt::AlignLeft | Qt::AlignVCenter, core::langx::tr(970109, "时间"));
    p.drawText(header.price, Qt::AlignRight | Qt::AlignVCenter,
               fm.elidedText(core::langx::tr(970117, "价格"), Qt::ElideRight, priceColumn));
    p.drawText(header.volume, Qt::AlignRight | Qt::AlignVCenter,
               fm.elidedText(core::langx::tr(970118, "成交量"), Qt::ElideRight, header.volume.width() - 4));
    p.setPen(ThemeColor("ct_divider"));
    p.drawLine(0, kHeaderHeight - 1, width(), kHeaderHeight - 1);

    const std::vector<vx_md::Tick> ticks = ShownTicks();
    if (ticks.empty()) {
        p.setPen(textSecondary);
        p.drawText(rect().adjusted(0, kHeaderHeight, 0, 0), Qt::AlignCenter,
                   core::langx::tr(970110, "暂无数据"));
        return;
    }
    const QColor textPrimary = ThemeColor("ct_text_primary");
    const QColor buy = ThemeColor("ct_buy");
    const QColor sell = ThemeColor("ct_sell");
    QFont numberFont = font;
    numberFont.setPixelSize(12);
    for (int row = 0; row < static_cast<int>(ticks.size()); ++row) {
        const vx_md::Tick& tick = ticks[row];
        const auto cells = columns(kHeaderHeight + row * kRowHeight, kRowHeight);
        p.setFont(font);
        p.setPen(textSecondary);
        p.drawText(cells.time, Qt::AlignLeft | Qt::AlignVCenter, FormatTime(tick.time));
        p.setFont(numberFont);
        p.setPen(ChangeColor(tick.price - info.prevClose));
        p.drawText(cells.price, Qt::AlignRight | Qt::AlignVCenter, FormatPrice(tick.price, info.tickSize));
        p.setPen(textPrimary);
        p.drawText(cells.volume, Qt::AlignRight | Qt::AlignVCenter, FormatVolume(tick.volume));
        if (tick.side != 0) {
            p.setFont(font);
            p.setPen(tick.side > 0 ? buy : sell);
            p.drawText(cells.marker, Qt::AlignCenter,
                       tick.side > 0 ? core::langx::tr(970125, "B") : core::langx::tr(970126, "S"));
        }
    }
}

} // namespace vx_ws
