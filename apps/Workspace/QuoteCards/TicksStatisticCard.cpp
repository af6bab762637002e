#include "apps/Workspace/QuoteCards/TicksStatisticCard.h"

#include "apps/Workspace/Cards/CardPaint.h"
#include "apps/Workspace/Cards/WorkspaceContext.h"
#include "apps/Workspace/MarketData/SimMarketData.h"

#include "UIFrame/VariantMapTreeAccess.h"

#include "Platform/Core/Langx.h"
#include "Platform/Core/Log.h"

#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

namespace vx_ws {

using card_paint::PixelFont;

namespace {

constexpr int kTotalsHeight = 36;
constexpr int kHeaderHeight = 18;
constexpr int kMargin = 8;

QString ShareText(double share)
{
    return QString::number(share * 100.0, 'f', 1) + QLatin1Char('%');
}

} // namespace

struct CVXTicksStatisticCard::Impl
{
    EnTickStatSort sort = EnTickStatSort::ByPrice;
    TickStatistic stat;
    double tickSize = 0.01;
    double prevClose = 0.0;
    double last = 0.0;
    bool hasSecurity = false;
    int first = 0;
    // Until the user scrolls, the view follows the last price (by price) or the top (by volume).
    bool userScrolled = false;
};

CVXCardBaseStyle CVXTicksStatisticCard::StaticCardStyle()
{
    return MakeCardStyle(core::langx::tr(970101, "分价统计"), QSize(240, 240), QSize(200, 120),
                         QSize(5000, 5000));
}

CVXTicksStatisticCard::CVXTicksStatisticCard(EnVXCardPos pos, QWidget* parent)
    : TplVXWorkspaceCard(pos, parent), d(std::make_unique<Impl>())
{
    Rebuild();
}

CVXTicksStatisticCard::~CVXTicksStatisticCard() = default;

void CVXTicksStatisticCard::GetCardObjRestoreData(CVXVariantMapTree* data) const
{
    if (data)
        data->Set<int>(QString::fromLatin1(kKeySortBy), static_cast<int>(d->sort));
}

void CVXTicksStatisticCard::SetCardObjRestoreData(const CVXVariantMapTree& data)
{
    std::optional<int> sort;
    data.GetImp(QString::fromLatin1(kKeySortBy), &sort);
    if (!sort)
        return;
    if (*sort != static_cast<int>(EnTickStatSort::ByPrice) &&
        *sort != static_cast<int>(EnTickStatSort::ByVolume)) {
        VXLOG_WARN("CVXTicksStatisticCard::SetCardObjRestoreData: unknown sort {}", *sort);
        return;
    }
    SetSort(static_cast<EnTickStatSort>(*sort));
}

EnTickStatSort CVXTicksStatisticCard::Sort() const
{
    return d->sort;
}

void CVXTicksStatisticCard::SetSort(EnTickStatSort sort)
{
    if (sort == d->sort)
        return;
    d->sort = sort;
    d->userScrolled = false;
    Rebuild();
    update();
}

const TickStatistic& CVXTicksStatisticCard::Statistic() const
{
    return d->stat;
}

QRect CVXTicksStatisticCard::SortToggleRect() const
{
    const QString text = d->sort == EnTickStatSort::ByPrice ? core::langx::tr(970122, "按价格")
                                                            : core::langx::tr(970123, "按成交量");
    const int textWidth = QFontMetrics(PixelFont(font(), 11)).horizontalAdvance(text + QStringLiteral(" ⇅"));
    return QRect(width() - kMargin - textWidth - 10, 3, textWidth + 10, 18);
}

int CVXTicksStatisticCard::FirstShownRow() const
{
    return d->first;
}

int CVXTicksStatisticCard::RowCapacity() const
{
    return std::max(0, (height() - kTotalsHeight - kHeaderHeight) / kRowHeight);
}

void CVXTicksStatisticCard::Rebuild()
{
    d->stat = TickStatistic();
    d->hasSecurity = false;
    vx_md::CVXSimMarketData* md = MarketData();
    const unsigned long id = ShownStockID();
    if (md && md->Contains(id)) {
        const vx_md::SecurityInfo info = md->GetSecurity(id);
        d->tickSize = info.tickSize;
        d->prevClose = info.prevClose;
        d->last = md->GetQuote(id).last;
        d->hasSecurity = true;
        d->stat = BuildTickStatistic(md->GetTicks(id), info.tickSize, d->sort);
    }
    const int count = static_cast<int>(d->stat.levels.size());
    const int capacity = RowCapacity();
    int first = d->first;
    if (!d->userScrolled) {
        first = 0;
        if (d->sort == EnTickStatSort::ByPrice && count > capacity) {
            // Levels run from the highest price down: the last price's level sits at the centre.
            int lastRow = 0;
            while (lastRow < count - 1 && d->stat.levels[lastRow].price > d->last + d->tickSize / 2)
                ++lastRow;
            first = lastRow - capacity / 2;
        }
    }
    d->first = std::clamp(first, 0, std::max(0, count - capacity));
}

void CVXTicksStatisticCard::OnMarketDataChanged(const std::set<unsigned long>& stockIDs)
{
    if (stockIDs.count(ShownStockID()) == 0)
        return;
    Rebuild();
    update();
}

void CVXTicksStatisticCard::OnShownStockChanged(unsigned long /*stockID*/)
{
    d->userScrolled = false;
    Rebuild();
    update();
}

void CVXTicksStatisticCard::resizeEvent(QResizeEvent* event)
{
    CVXWorkspaceCardBase::resizeEvent(event);
    Rebuild();
}

void CVXTicksStatisticCard::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton && SortToggleRect().contains(event->pos())) {
        SetSort(d->sort == EnTickStatSort::ByPrice ? EnTickStatSort::ByVolume : EnTickStatSort::ByPrice);
        event->accept();
        return;
    }
    CVXWorkspaceCardBase::mousePressEvent(event);
}

void CVXTicksStatisticCard::wheelEvent(QWheelEvent* event)
{
    const int steps = event->angleDelta().y() / 40;
    const int count = static_cast<int>(d->stat.levels.size());
    const int capacity = RowCapacity();
    if (steps == 0 || count <= capacity) {
        event->ignore();
        return;
    }
    d->first = std::clamp(d->first - steps, 0, count - capacity);
    d->userScrolled = true;
    event->accept();
    update();
}

// What every step of one paint shares: fonts, colours and the columns of the ladder.
struct CVXTicksStatisticCard::PaintKit
{
    QFont small;
    QFont number;
    QFontMetrics fm;
    QColor textPrimary = ThemeColor("ct_text_primary");
    QColor textSecondary = ThemeColor("ct_text_secondary");
    QColor buyColor = ThemeColor("ct_buy");
    QColor sellColor = ThemeColor("ct_sell");
    QColor neutralColor;

    // Buy and sell volumes get a column each when the card is wide enough, else one for both.
    bool split = false;
    QRect priceCol;
    QRect firstVolume;
    QRect secondVolume;
    int shareWidth = 0;
    int barLeft = 0;
    int barRight = 0;

    PaintKit(const QFont& base, int cardWidth)
        : small(PixelFont(base, 11)), number(PixelFont(base, 12)), fm(small)
    {
        neutralColor = ThemeColor("ct_flat");
        neutralColor.setAlpha(140);
        split = cardWidth >= kSplitColumnsWidth;
        const int priceWidth = QFontMetrics(number).horizontalAdvance(QStringLiteral("0000.00")) + 4;
        const int volumeWidth = QFontMetrics(number).horizontalAdvance(QStringLiteral("00.00M")) + 8;
        shareWidth = fm.horizontalAdvance(QStringLiteral("100.0%")) + 4;
        priceCol = QRect(kMargin, 0, priceWidth, 0);
        firstVolume = QRect(priceCol.right() + 1, 0, volumeWidth, 0);
        secondVolume = QRect(firstVolume.right() + 1, 0, split ? volumeWidth : 0, 0);
        barLeft = (split ? secondVolume.right() : firstVolume.right()) + 10;
        barRight = cardWidth - kMargin - shareWidth - 4;
    }

    static QRect Cell(const QRect& column, int top)
    {
        return QRect(column.left(), top, column.width(), kRowHeight);
    }
};

void CVXTicksStatisticCard::paintEvent(QPaintEvent* /*event*/)
{
    QPainter p(this);
    p.fillRect(rect(), ThemeColor("ct_bg_primary"));
    const PaintKit kit(font(), width());
    p.setFont(kit.small);

    if (!d->hasSecurity) {
        p.setPen(kit.textSecondary);
        p.drawText(rect(), Qt::AlignCenter, core::langx::tr(970110, "暂无数据"));
        return;
    }
    PaintTotals(p, kit);
    PaintColumnHeader(p, kit);
    const TickStatistic& stat = d->stat;
    if (stat.levels.empty()) {
        p.setPen(kit.textSecondary);
        p.drawText(rect().adjusted(0, kTotalsHeight + kHeaderHeight, 0, 0), Qt::AlignCenter,
                   core::langx::tr(970110, "暂无数据"));
        return;
    }
    // Bars are scaled to the busiest level so the ladder uses the room it has.
    const double busiestShare = stat.ShareOf(stat.levels[stat.busiestLevel]);
    const int end = std::min(static_cast<int>(stat.levels.size()), d->first + RowCapacity());
    for (int i = d->first; i < end; ++i)
        PaintLevelRow(p, kit, i, kTotalsHeight + kHeaderHeight + (i - d->first) * kRowHeight, busiestShare);
}

// Shares by side, the sort toggle, and one bar of the whole day's split.
void CVXTicksStatisticCard::PaintTotals(QPainter& p, const PaintKit& kit)
{
    const TickStatistic& stat = d->stat;
    int x = kMargin;
    auto share = [&](const QString& label, double value, const QColor& color) {
        const QString text = label + QLatin1Char(' ') + ShareText(value);
        p.setPen(color);
        p.drawText(QRect(x, 3, kit.fm.horizontalAdvance(text) + 2, 18), Qt::AlignLeft | Qt::AlignVCenter,
                   text);
        x += kit.fm.horizontalAdvance(text) + 10;
    };
    share(core::langx::tr(970119, "买"), stat.BuyShare(), kit.buyColor);
    share(core::langx::tr(970120, "卖"), stat.SellShare(), kit.sellColor);
    const QRect toggle = SortToggleRect();
    if (x + kit.fm.horizontalAdvance(QStringLiteral("中性 00.0%")) < toggle.left())
        share(core::langx::tr(970121, "中性"), stat.NeutralShare(), kit.textSecondary);
    p.setRenderHint(QPainter::Antialiasing, true);
    p.setPen(ThemeColor("ct_border"));
    p.setBrush(ThemeColor("ct_bg_secondary"));
    p.drawRoundedRect(QRectF(toggle).adjusted(0.5, 0.5, -0.5, -0.5), 3, 3);
    p.setRenderHint(QPainter::Antialiasing, false);
    p.setPen(kit.textPrimary);
    p.drawText(toggle, Qt::AlignCenter,
               (d->sort == EnTickStatSort::ByPrice ? core::langx::tr(970122, "按价格")
                                                   : core::langx::tr(970123, "按成交量")) +
                   QStringLiteral(" ⇅"));
    const QRect totalBar(kMargin, 25, width() - 2 * kMargin, 5);
    if (stat.Total() > 0) {
        const int buyWidth = qRound(totalBar.width() * stat.BuyShare());
        const int neutralWidth = qRound(totalBar.width() * stat.NeutralShare());
        p.fillRect(QRect(totalBar.left(), totalBar.top(), buyWidth, totalBar.height()), kit.buyColor);
        p.fillRect(QRect(totalBar.left() + buyWidth, totalBar.top(), neutralWidth, totalBar.height()),
                   kit.neutralColor);
        p.fillRect(QRect(totalBar.left() + buyWidth + neutralWidth, totalBar.top(),
                         totalBar.width() - buyWidth - neutralWidth, totalBar.height()),
                   kit.sellColor);
    } else {
        p.fillRect(totalBar, ThemeColor("ct_bg_tertiary"));
    }
}

void CVXTicksStatisticCard::PaintColumnHeader(QPainter& p, const PaintKit& kit)
{
    const int headerTop = kTotalsHeight;
    p.setPen(kit.textSecondary);
    p.drawText(PaintKit::Cell(kit.priceCol, headerTop), Qt::AlignLeft | Qt::AlignVCenter,
               core::langx::tr(970117, "价格"));
    if (kit.split) {
        p.drawText(PaintKit::Cell(kit.firstVolume, headerTop), Qt::AlignRight | Qt::AlignVCenter,
                   core::langx::tr(970119, "买"));
        p.drawText(PaintKit::Cell(kit.secondVolume, headerTop), Qt::AlignRight | Qt::AlignVCenter,
                   core::langx::tr(970120, "卖"));
    } else {
        p.drawText(PaintKit::Cell(kit.firstVolume, headerTop), Qt::AlignRight | Qt::AlignVCenter,
                   kit.fm.elidedText(core::langx::tr(970118, "成交量"), Qt::ElideRight,
                                     kit.firstVolume.width() - 4));
    }
    p.drawText(QRect(kit.barLeft, headerTop, width() - kMargin - kit.barLeft, kRowHeight),
               Qt::AlignRight | Qt::AlignVCenter, core::langx::tr(970124, "占比"));
    p.setPen(ThemeColor("ct_divider"));
    p.drawLine(0, headerTop + kHeaderHeight - 1, width(), headerTop + kHeaderHeight - 1);
}

// One price level at `top`: price, volumes, its bar split by side and its share of the day.
void CVXTicksStatisticCard::PaintLevelRow(QPainter& p, const PaintKit& kit, int index, int top,
                                          double busiestShare)
{
    const TickStatistic& stat = d->stat;
    const PriceVolumeLevel& level = stat.levels[index];
    const bool busiest = index == stat.busiestLevel;
    if (busiest) {
        p.fillRect(QRect(0, top, width(), kRowHeight), ThemeColor("ct_hover"));
        p.fillRect(QRect(0, top + 3, 3, kRowHeight - 6), ThemeColor("ct_selected"));
    }
    p.setFont(PixelFont(font(), 12, busiest));
    p.setPen(ChangeColor(level.price - d->prevClose));
    p.drawText(PaintKit::Cell(kit.priceCol, top), Qt::AlignLeft | Qt::AlignVCenter,
               FormatPrice(level.price, d->tickSize));
    p.setFont(kit.number);
    if (kit.split) {
        p.setPen(kit.buyColor);
        p.drawText(PaintKit::Cell(kit.firstVolume, top), Qt::AlignRight | Qt::AlignVCenter,
                   FormatVolume(level.buy));
        p.setPen(kit.sellColor);
        p.drawText(PaintKit::Cell(kit.secondVolume, top), Qt::AlignRight | Qt::AlignVCenter,
                   FormatVolume(level.sell));
    } else {
        p.setPen(kit.textPrimary);
        p.drawText(PaintKit::Cell(kit.firstVolume, top), Qt::AlignRight | Qt::AlignVCenter,
                   FormatVolume(level.Total()));
    }
    const double levelShare = stat.ShareOf(level);
    const int barWidth =
        busiestShare > 0 ? qRound((kit.barRight - kit.barLeft) * levelShare / busiestShare) : 0;
    if (barWidth > 0 && level.Total() > 0) {
        const int buyWidth = qRound(barWidth * static_cast<double>(level.buy) / level.Total());
        const int neutralWidth = qRound(barWidth * static_cast<double>(level.neutral) / level.Total());
        const QRect bar(kit.barLeft, top + 5, barWidth, kRowHeight - 10);
        p.fillRect(QRect(bar.left(), bar.top(), buyWidth, bar.height()), kit.buyColor);
        p.fillRect(QRect(bar.left() + buyWidth, bar.top(), neutralWidth, bar.height()), kit.neutralColor);
        p.fillRect(QRect(bar.left() + buyWidth + neutralWidth, bar.top(), barWidth - buyWidth - neutralWidth,
                         bar.height()),
                   kit.sellColor);
    }
    p.setFont(kit.small);
    p.setPen(kit.textSecondary);
    p.drawText(QRect(kit.barRight + 4, top, kit.shareWidth, kRowHeight), Qt::AlignRight | Qt::AlignVCenter,
               ShareText(levelShare));
}

} // namespace vx_ws
