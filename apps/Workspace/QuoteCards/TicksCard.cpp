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

// Time at the left, price right-aligned near the middle, volume right-aligned before the side
// marker at the right edge.
struct CVXTicksCard::Columns
{
    struct Cells
    {
        QRect time, price, volume, marker;
    };
    static constexpr int kMarkerWidth = 16;
    static constexpr int kTimeLeft = 8;
    int timeWidth;
    int volumeRight;
    int priceRight;

    Columns(const QFont& font, int cardWidth)
        : timeWidth(QFontMetrics(font).horizontalAdvance(QStringLiteral("00:00:00")) + 4),
          volumeRight(cardWidth - kMarkerWidth - 8),
          priceRight(kTimeLeft + timeWidth + (volumeRight - kTimeLeft - timeWidth) / 2)
    {
    }

    Cells Row(int top, int h) const
    {
        return {QRect(kTimeLeft, top, priceRight - kTimeLeft, h),
                QRect(kTimeLeft, top, priceRight - kTimeLeft, h),
                QRect(priceRight, top, volumeRight - priceRight, h),
                QRect(volumeRight + 4, top, kMarkerWidth, h)};
    }
};

void CVXTicksCard::paintEvent(QPaintEvent* /*event*/)
{
    QPainter p(this);
    p.fillRect(rect(), ThemeColor("ct_bg_primary"));
    QFont font = this->font();
    font.setPixelSize(11);
    p.setFont(font);

    vx_md::CVXSimMarketData* md = MarketData();
    const unsigned long id = ShownStockID();
    if (!md || !md->Contains(id)) {
        p.setPen(ThemeColor("ct_text_secondary"));
        p.drawText(rect(), Qt::AlignCenter, core::langx::tr(970110, "暂无数据"));
        return;
    }
    const vx_md::SecurityInfo info = md->GetSecurity(id);
    const Columns columns(font, width());
    PaintHeader(p, columns, font);

    const std::vector<vx_md::Tick> ticks = ShownTicks();
    if (ticks.empty()) {
        p.setPen(ThemeColor("ct_text_secondary"));
        p.drawText(rect().adjusted(0, kHeaderHeight, 0, 0), Qt::AlignCenter,
                   core::langx::tr(970110, "暂无数据"));
        return;
    }
    for (int row = 0; row < static_cast<int>(ticks.size()); ++row)
        PaintTick(p, columns, kHeaderHeight + row * kRowHeight, ticks[row], info, font);
}

void CVXTicksCard::PaintHeader(QPainter& p, const Columns& columns, const QFont& font)
{
    const Columns::Cells header = columns.Row(0, kHeaderHeight);
    const QFontMetrics fm(font);
    const int priceColumn = columns.priceRight - Columns::kTimeLeft - columns.timeWidth;
    p.setPen(ThemeColor("ct_text_secondary"));
    p.drawText(header.time, Qt::AlignLeft | Qt::AlignVCenter, core::langx::tr(970109, "时间"));
    p.drawText(header.price, Qt::AlignRight | Qt::AlignVCenter,
               fm.elidedText(core::langx::tr(970117, "价格"), Qt::ElideRight, priceColumn));
    p.drawText(header.volume, Qt::AlignRight | Qt::AlignVCenter,
               fm.elidedText(core::langx::tr(970118, "成交量"), Qt::ElideRight, header.volume.width() - 4));
    p.setPen(ThemeColor("ct_divider"));
    p.drawLine(0, kHeaderHeight - 1, width(), kHeaderHeight - 1);
}

// One trade: time, price in the colour of its change, volume and the aggressor side (B/S).
void CVXTicksCard::PaintTick(QPainter& p, const Columns& columns, int top, const vx_md::Tick& tick,
                             const vx_md::SecurityInfo& info, const QFont& font)
{
    const Columns::Cells cells = columns.Row(top, kRowHeight);
    QFont numberFont = font;
    numberFont.setPixelSize(12);
    p.setFont(font);
    p.setPen(ThemeColor("ct_text_secondary"));
    p.drawText(cells.time, Qt::AlignLeft | Qt::AlignVCenter, FormatTime(tick.time));
    p.setFont(numberFont);
    p.setPen(ChangeColor(tick.price - info.prevClose));
    p.drawText(cells.price, Qt::AlignRight | Qt::AlignVCenter, FormatPrice(tick.price, info.tickSize));
    p.setPen(ThemeColor("ct_text_primary"));
    p.drawText(cells.volume, Qt::AlignRight | Qt::AlignVCenter, FormatVolume(tick.volume));
    if (tick.side != 0) {
        p.setFont(font);
        p.setPen(tick.side > 0 ? ThemeColor("ct_buy") : ThemeColor("ct_sell"));
        p.drawText(cells.marker, Qt::AlignCenter,
                   tick.side > 0 ? core::langx::tr(970125, "B") : core::langx::tr(970126, "S"));
    }
}

} // namespace vx_ws
