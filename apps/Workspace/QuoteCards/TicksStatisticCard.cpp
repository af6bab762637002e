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

void CVXTicksStatisticCard::paintEvent(QPaintEvent* /*event*/)
{
    QPainter p(this);
    p.fillRect(rect(), ThemeColor("ct_bg_primary"));
    const QFont small = PixelFont(font(), 11);
    const QFont number = PixelFont(font(), 12);
    const QFontMetrics fm(small);
    const QColor textPrimary = ThemeColor("ct_text_primary");
    const QColor textSecondary = ThemeColor("ct_text_secondary");
    const QColor buyColor = ThemeColor("ct_buy");
    const QColor sellColor = ThemeColor("ct_sell");
    QColor neutralColor = ThemeColor("ct_flat");
    neutralColor.setAlpha(140);
    p.setFont(small);

    if (!d->hasSecurity) {
        p.setPen(textSecondary);
        p.drawText(rect(), Qt::AlignCenter, core::langx::tr(970110, "暂无数据"));
        return;
    }
    const TickStatistic& stat = d->stat;

    // Totals: shares by side, the sort toggle, and one bar of the whole day's split.
    int x = kMargin;
    auto share = [&](const QString& label, double value, const QColor& color) {
        const QString text = label + QLatin1Char(' ') + ShareText(value);
        p.setPen(color);
        p.drawText(QRect(x, 3, fm.horizontalAdvance(text) + 2, 18), Qt::AlignLeft | Qt::AlignVCenter, text);
        x += fm.horizontalAdvance(text) + 10;
    };
    share(core::langx::tr(970119, "买"), stat.BuyShare(), buyColor);
    share(core::langx::tr(970120, "卖"), stat.SellShare(), sellColor);
    const QRect toggle = SortToggleRect();
    if (x + fm.horizontalAdvance(QStringLiteral("中性 00.0%")) < toggle.left())
        share(core::langx::tr(970121, "中性"), stat.NeutralShare(), textSecondary);
    p.setRenderHint(QPainter::Antialiasing, true);
    p.setPen(ThemeColor("ct_border"));
    p.setBrush(ThemeColor("ct_bg_secondary"));
    p.drawRoundedRect(QRectF(toggle).adjusted(0.5, 0.5, -0.5, -0.5), 3, 3);
    p.setRenderHint(QPainter::Antialiasing, false);
    p.setPen(textPrimary);
    p.drawText(toggle, Qt::AlignCenter,
               (d->sort == EnTickStatSort::ByPrice ? core::langx::tr(970122, "按价格")
                                                   : core::langx::tr(970123, "按成交量")) +
                   QStringLiteral(" ⇅"));
    const QRect totalBar(kMargin, 25, width() - 2 * kMargin, 5);
    if (stat.Total() > 0) {
        const int buyWidth = qRound(totalBar.width() * stat.BuyShare());
        const int neutralWidth = qRound(totalBar.width() * stat.NeutralShare());
        p.fillRect(QRect(totalBar.left(), totalBar.top(), buyWidth, totalBar.height()), buyColor);
        p.fillRect(QRect(totalBar.left() + buyWidth, totalBar.top(), neutralWidth, totalBar.height()),
                   neutralColor);
        p.fillRect(QRect(totalBar.left() + buyWidth + neutralWidth, totalBar.top(),
                         totalBar.width() - buyWidth - neutralWidth, totalBar.height()),
                   sellColor);
    } else {
        p.fillRect(totalBar, ThemeColor("ct_bg_tertiary"));
    }

    // Columns.
    const bool split = width() >= kSplitColumnsWidth;
    const int priceWidth = QFontMetrics(number).horizontalAdvance(QStringLiteral("0000.00")) + 4;
    const int volumeWidth = QFontMetrics(number).horizontalAdvance(QStringLiteral("00.00M")) + 8;
    const int shareWidth = fm.horizontalAdvance(QStringLiteral("100.0%")) + 4;
    const QRect priceCol(kMargin, 0, priceWidth, 0);
    const QRect firstVolume(priceCol.right() + 1, 0, volumeWidth, 0);
    const QRect secondVolume(firstVolume.right() + 1, 0, split ? volumeWidth : 0, 0);
    const int barLeft = (split ? secondVolume.right() : firstVolume.right()) + 10;
    const int barRight = width() - kMargin - shareWidth - 4;
    auto cell = [](const QRect& column, int top) {
        return QRect(column.left(), top, column.width(), kRowHeight);
    };

    const int headerTop = kTotalsHeight;
    p.setPen(textSecondary);
    p.drawText(cell(priceCol, headerTop), Qt::AlignLeft | Qt::AlignVCenter, core::langx::tr(970117, "价格"));
    if (split) {
        p.drawText(cell(firstVolume, headerTop), Qt::AlignRight | Qt::AlignVCenter,
                   core::langx::tr(970119, "买"));
        p.drawText(cell(secondVolume, headerTop), Qt::AlignRight | Qt::AlignVCenter,
                   core::langx::tr(970120, "卖"));
    } else {
        p.drawText(cell(firstVolume, headerTop), Qt::AlignRight | Qt::AlignVCenter,
                   fm.elidedText(core::langx::tr(970118, "成交量"), Qt::ElideRight, firstVolume.width() - 4));
    }
    p.drawText(QRect(barLeft, headerTop, width() - kMargin - barLeft, kRowHeight),
               Qt::AlignRight | Qt::AlignVCenter, core::langx::tr(970124, "占比"));
    p.setPen(ThemeColor("ct_divider"));
    p.drawLine(0, headerTop + kHeaderHeight - 1, width(), headerTop + kHeaderHeight - 1);

    if (stat.levels.empty()) {
        p.setPen(textSecondary);
        p.drawText(rect().adjusted(0, headerTop + kHeaderHeight, 0, 0), Qt::AlignCenter,
                   core::langx::tr(970110, "暂无数据"));
        return;
    }

    // Bars are scaled to the busiest level so the ladder uses the room it has.
    const double busiestShare = stat.ShareOf(stat.levels[stat.busiestLevel]);
    const int end = std::min(static_cast<int>(stat.levels.size()), d->first + RowCapacity());
    for (int i = d->first; i < end; ++i) {
        const PriceVolumeLevel& level = stat.levels[i];
        const int top = headerTop + kHeaderHeight + (i - d->first) * kRowHeight;
        const bool busiest = i == stat.busiestLevel;
        if (busiest) {
            p.fillRect(QRect(0, top, width(), kRowHeight), ThemeColor("ct_hover"));
            p.fillRect(QRect(0, top + 3, 3, kRowHeight - 6), ThemeColor("ct_selected"));
        }
        p.setFont(PixelFont(font(), 12, busiest));
        p.setPen(ChangeColor(level.price - d->prevClose));
        p.drawText(cell(priceCol, top), Qt::AlignLeft | Qt::AlignVCenter,
                   FormatPrice(level.price, d->tickSize));
        p.setFont(number);
        if (split) {
            p.setPen(buyColor);
            p.drawText(cell(firstVolume, top), Qt::AlignRight | Qt::AlignVCenter, FormatVolume(level.buy));
            p.setPen(sellColor);
            p.drawText(cell(secondVolume, top), Qt::AlignRight | Qt::AlignVCenter, FormatVolume(level.sell));
        } else {
            p.setPen(textPrimary);
            p.drawText(cell(firstVolume, top), Qt::AlignRight | Qt::AlignVCenter,
                       FormatVolume(level.Total()));
        }
        const double levelShare = stat.ShareOf(level);
        const int barWidth = busiestShare > 0 ? qRound((barRight - barLeft) * levelShare / busiestShare) : 0;
        if (barWidth > 0 && level.Total() > 0) {
            const int buyWidth = qRound(barWidth * static_cast<double>(level.buy) / level.Total());
            const int neutralWidth = qRound(barWidth * static_cast<double>(level.neutral) / level.Total());
            const QRect bar(barLeft, top + 5, barWidth, kRowHeight - 10);
            p.fillRect(QRect(bar.left(), bar.top(), buyWidth, bar.height()), buyColor);
            p.fillRect(QRect(bar.left() + buyWidth, bar.top(), neutralWidth, bar.height()), neutralColor);
            p.fillRect(QRect(bar.left() + buyWidth + neutralWidth, bar.top(),
                             barWidth - buyWidth - neutralWidth, bar.height()),
                       sellColor);
        }
        p.setFont(small);
        p.setPen(textSecondary);
        p.drawText(QRect(barRight + 4, top, shareWidth, kRowHeight), Qt::AlignRight | Qt::AlignVCenter,
                   ShareText(levelShare));
    }
}

} // namespace vx_ws
