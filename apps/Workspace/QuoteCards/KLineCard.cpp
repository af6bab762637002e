#include "apps/Workspace/QuoteCards/KLineCard.h"

#include "apps/Workspace/Cards/WorkspaceContext.h"
#include "apps/Workspace/MarketData/SimMarketData.h"

#include "UIFrame/VariantMapTreeAccess.h"

#include "Platform/Core/Langx.h"
#include "Platform/Core/Log.h"

#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>

namespace vx_ws {

namespace {

constexpr int kToolHeight = 26;
constexpr int kTimeAxisHeight = 18;
// Horizontal room of one candle, gap included: the narrowest when the series is long, the widest
// a short series is drawn with.
constexpr int kMinSlot = 8;
constexpr int kMaxSlot = 16;
constexpr int kSegmentWidth = 34;
constexpr int kButtonHeight = 18;
constexpr int kMAShort = 5;
constexpr int kMALong = 10;

QString PeriodLabel(int period)
{
    switch (period) {
    case 1:
        return core::langx::tr(970113, "1分");
    case 5:
        return core::langx::tr(970114, "5分");
    case 15:
        return core::langx::tr(970115, "15分");
    default:
        return QString::number(period);
    }
}

// Decimals a value on a grid of `step` needs (0.01 -> 2, 0.025 -> 3, 5 -> 0).
int DecimalsOf(double step)
{
    int decimals = 0;
    double scaled = step;
    while (decimals < 6 && std::fabs(scaled - std::round(scaled)) > 1e-9 * std::max(1.0, scaled)) {
        scaled *= 10.0;
        ++decimals;
    }
    return decimals;
}

QString MinuteText(int minute)
{
    return CVXWorkspaceCardBase::FormatTime(minute * 60).left(5);
}

QColor CandleColor(const vx_md::Candle& candle)
{
    if (candle.close > candle.open)
        return CVXWorkspaceCardBase::ThemeColor("ct_rise");
    if (candle.close < candle.open)
        return CVXWorkspaceCardBase::ThemeColor("ct_fall");
    return CVXWorkspaceCardBase::ThemeColor("ct_flat");
}

} // namespace

struct CVXKLineCard::Impl
{
    int period = 1;
    bool showMA = true;
    std::vector<vx_md::Candle> candles;
    std::vector<double> maShort;
    std::vector<double> maLong;
    double tickSize = 0.01;
    double prevClose = 0.0;
    bool hasSecurity = false;

    QPoint mouse{-1, -1};
    bool mouseInside = false;
    int hovered = -1;

    // Geometry, recomputed by Layout().
    QRect tool;
    QRect plot;
    QRect volume;
    QRect axis;
    QRect timeAxis;
    kline::CandleRange range;
    int slot = kMinSlot;

    void Reload(unsigned long stockID)
    {
        candles.clear();
        hasSecurity = false;
        vx_md::CVXSimMarketData* md = MarketData();
        if (md && md->Contains(stockID)) {
            const vx_md::SecurityInfo info = md->GetSecurity(stockID);
            tickSize = info.tickSize;
            prevClose = info.prevClose;
            hasSecurity = true;
            candles = kline::Aggregate(md->GetCandles(stockID), period);
        }
        maShort = kline::MovingAverage(candles, kMAShort);
        maLong = kline::MovingAverage(candles, kMALong);
    }

    void Layout(const QSize& size, const QFontMetrics& fm)
    {
        tool = QRect(0, 0, size.width(), kToolHeight);
        double widest = prevClose;
        for (const vx_md::Candle& c : candles)
            widest = std::max(widest, c.high);
        const int axisWidth =
            std::max(44, fm.horizontalAdvance(FormatPrice(widest * 1.1, tickSize / 10.0)) + 10);
        const int left = 4;
        const int right = size.width() - axisWidth;
        const int top = kToolHeight + 4;
        const int bottom = size.height() - kTimeAxisHeight;
        const int total = std::max(0, bottom - top);
        const int volumeHeight = std::max(20, total * 22 / 100);
        plot = QRect(QPoint(left, top), QPoint(right - 1, bottom - volumeHeight - 6));
        volume = QRect(QPoint(left, bottom - volumeHeight), QPoint(right - 1, bottom - 1));
        axis = QRect(QPoint(right, top), QPoint(size.width() - 1, bottom - 1));
        timeAxis = QRect(QPoint(left, bottom), QPoint(right - 1, size.height() - 1));
        slot = kline::SlotWidth(static_cast<int>(candles.size()), plot.width(), kMinSlot, kMaxSlot);
        range = kline::NewestThatFit(static_cast<int>(candles.size()), std::max(0, plot.width()) / slot);
        UpdateHover();
    }

    void UpdateHover()
    {
        hovered = -1;
        if (!mouseInside)
            return;
        const bool inColumn = mouse.x() >= plot.left() && mouse.x() <= plot.right();
        const bool inRows = (mouse.y() >= plot.top() && mouse.y() <= volume.bottom());
        if (!inColumn || !inRows)
            return;
        const int index = range.first + (mouse.x() - plot.left()) / slot;
        if (index < range.first + range.count)
            hovered = index;
    }

    int CenterX(int index) const
    {
        if (index < range.first || index >= range.first + range.count)
            return -1;
        return plot.left() + (index - range.first) * slot + slot / 2;
    }

    QRect SegmentRect(int period) const
    {
        int i = 0;
        for (int p : kline::kPeriods) {
            if (p == period)
                return QRect(6 + i * kSegmentWidth, (kToolHeight - kButtonHeight) / 2, kSegmentWidth,
                             kButtonHeight);
            ++i;
        }
        return {};
    }

    QRect MARect() const
    {
        const int n = static_cast<int>(std::size(kline::kPeriods));
        return QRect(6 + n * kSegmentWidth + 8, (kToolHeight - kButtonHeight) / 2, 34, kButtonHeight);
    }
};

CVXCardBaseStyle CVXKLineCard::StaticCardStyle()
{
    return MakeCardStyle(core::langx::tr(236232, "走势图"), QSize(480, 300), QSize(240, 160),
                         QSize(5000, 5000));
}

CVXKLineCard::CVXKLineCard(EnVXCardPos pos, QWidget* parent)
    : TplVXWorkspaceCard(pos, parent), d(std::make_unique<Impl>())
{
    d->Reload(ShownStockID());
}

CVXKLineCard::~CVXKLineCard() = default;

void CVXKLineCard::GetCardObjRestoreData(CVXVariantMapTree* data) const
{
    if (!data)
        return;
    data->Set<int>(QString::fromLatin1(kKeyPeriod), d->period);
    data->Set<bool>(QString::fromLatin1(kKeyShowMA), d->showMA);
}

void CVXKLineCard::SetCardObjRestoreData(const CVXVariantMapTree& data)
{
    std::optional<int> period;
    data.GetImp(QString::fromLatin1(kKeyPeriod), &period);
    std::optional<bool> showMA;
    data.GetImp(QString::fromLatin1(kKeyShowMA), &showMA);
    if (period)
        SetPeriod(*period);
    if (showMA)
        SetMAShown(*showMA);
}

int CVXKLineCard::Period() const
{
    return d->period;
}

void CVXKLineCard::SetPeriod(int periodMinutes)
{
    if (!kline::IsSupportedPeriod(periodMinutes)) {
        VXLOG_WARN("CVXKLineCard::SetPeriod: unsupported period {} minutes", periodMinutes);
        return;
    }
    if (periodMinutes == d->period)
        return;
    d->period = periodMinutes;
    d->Reload(ShownStockID());
    d->Layout(size(), fontMetrics());
    update();
}

bool CVXKLineCard::IsMAShown() const
{
    return d->showMA;
}

void CVXKLineCard::SetMAShown(bool shown)
{
    if (shown == d->showMA)
        return;
    d->showMA = shown;
    update();
}

const std::vector<vx_md::Candle>& CVXKLineCard::Candles() const
{
    return d->candles;
}

kline::CandleRange CVXKLineCard::VisibleRange() const
{
    return d->range;
}

int CVXKLineCard::HoveredCandleIndex() const
{
    return d->hovered;
}

QStringList CVXKLineCard::CrosshairLines() const
{
    if (d->hovered < 0 || d->hovered >= static_cast<int>(d->candles.size()))
        return {};
    const vx_md::Candle& c = d->candles[d->hovered];
    const double tick = d->tickSize;
    return {MinuteText(c.minute),
            core::langx::tr(970102, "开") + QLatin1Char(' ') + FormatPrice(c.open, tick),
            core::langx::tr(970103, "高") + QLatin1Char(' ') + FormatPrice(c.high, tick),
            core::langx::tr(970104, "低") + QLatin1Char(' ') + FormatPrice(c.low, tick),
            core::langx::tr(970116, "收") + QLatin1Char(' ') + FormatPrice(c.close, tick),
            core::langx::tr(970106, "量") + QLatin1Char(' ') + FormatVolume(c.volume)};
}

QRect CVXKLineCard::PeriodButtonRect(int periodMinutes) const
{
    return d->SegmentRect(periodMinutes);
}

QRect CVXKLineCard::MAButtonRect() const
{
    return d->MARect();
}

QRect CVXKLineCard::PricePlotRect() const
{
    return d->plot;
}

int CVXKLineCard::CandleCenterX(int index) const
{
    return d->CenterX(index);
}

void CVXKLineCard::OnMarketDataChanged(const std::set<unsigned long>& stockIDs)
{
    if (stockIDs.count(ShownStockID()) == 0)
        return;
    d->Reload(ShownStockID());
    d->Layout(size(), fontMetrics());
    update();
}

void CVXKLineCard::OnShownStockChanged(unsigned long stockID)
{
    d->Reload(stockID);
    d->Layout(size(), fontMetrics());
    update();
}

void CVXKLineCard::resizeEvent(QResizeEvent* event)
{
    CVXWorkspaceCardBase::resizeEvent(event);
    d->Layout(size(), fontMetrics());
}

void CVXKLineCard::mouseMoveEvent(QMouseEvent* event)
{
    d->mouse = event->pos();
    d->mouseInside = true;
    const int before = d->hovered;
    d->UpdateHover();
    // The horizontal line follows the mouse even within one candle.
    if (d->hovered >= 0 || before != d->hovered)
        update();
    CVXWorkspaceCardBase::mouseMoveEvent(event);
}

void CVXKLineCard::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton) {
        for (int period : kline::kPeriods) {
            if (d->SegmentRect(period).contains(event->pos())) {
                SetPeriod(period);
                event->accept();
                return;
            }
        }
        if (d->MARect().contains(event->pos())) {
            SetMAShown(!d->showMA);
            event->accept();
            return;
        }
    }
    CVXWorkspaceCardBase::mousePressEvent(event);
}

void CVXKLineCard::leaveEvent(QEvent* event)
{
    d->mouseInside = false;
    if (d->hovered >= 0) {
        d->hovered = -1;
        update();
    }
    CVXWorkspaceCardBase::leaveEvent(event);
}

// What every step of one paint shares: the font, its metrics and the theme's colours.
struct CVXKLineCard::PaintKit
{
    QFontMetrics fm;
    QColor textSecondary = ThemeColor("ct_text_secondary");
    QColor textPrimary = ThemeColor("ct_text_primary");
    QColor divider = ThemeColor("ct_divider");
    QColor maShort = ThemeColor("ck_orange500");
    QColor maLong = ThemeColor("ck_purple500");
};

// The vertical price scale of the plot, padded so that nothing touches its edges.
struct CVXKLineCard::PriceScale
{
    double low = 0.0;
    double high = 0.0;
    QRect plot;

    double Y(double price) const { return plot.bottom() - (price - low) / (high - low) * plot.height(); }
    double PriceAt(int y) const { return low + (plot.bottom() - y) * (high - low) / plot.height(); }
};

void CVXKLineCard::paintEvent(QPaintEvent* /*event*/)
{
    QPainter p(this);
    p.fillRect(rect(), ThemeColor("ct_bg_primary"));
    QFont small = font();
    small.setPixelSize(11);
    p.setFont(small);
    const PaintKit kit{QFontMetrics(small)};

    PaintToolStrip(p, kit);
    if (d->candles.empty() || d->plot.height() < 10) {
        p.setPen(kit.textSecondary);
        p.drawText(rect().adjusted(0, kToolHeight, 0, 0), Qt::AlignCenter,
                   core::langx::tr(970110, "暂无数据"));
        return;
    }
    const PriceScale scale = VisibleScale();
    PaintPriceAxis(p, kit, scale);
    PaintTimeAxis(p, kit);
    PaintCandlesAndVolume(p, kit, scale);
    if (d->showMA)
        PaintMovingAverages(p, kit, scale);
    PaintLastPrice(p, scale);
    if (d->hovered >= 0)
        PaintCrosshair(p, kit, scale);
}

// Period segments, the MA switch and the MA legend (of the hovered candle, else the newest).
void CVXKLineCard::PaintToolStrip(QPainter& p, const PaintKit& kit)
{
    const QRect first = d->SegmentRect(kline::kPeriods[0]);
    const QRect last = d->SegmentRect(kline::kPeriods[std::size(kline::kPeriods) - 1]);
    const QRect segments = first.united(last);
    p.setRenderHint(QPainter::Antialiasing, true);
    p.setPen(ThemeColor("ct_border"));
    p.setBrush(Qt::NoBrush);
    p.drawRoundedRect(QRectF(segments).adjusted(0.5, 0.5, -0.5, -0.5), 3, 3);
    for (int period : kline::kPeriods) {
        const QRect r = d->SegmentRect(period);
        if (period == d->period) {
            p.setPen(Qt::NoPen);
            p.setBrush(ThemeColor("ct_selected"));
            p.drawRoundedRect(QRectF(r).adjusted(1, 1, -1, -1), 2, 2);
            p.setPen(ThemeColor("ct_text_on_accent"));
        } else {
            p.setPen(kit.textSecondary);
        }
        p.drawText(r, Qt::AlignCenter, PeriodLabel(period));
    }
    const QRect maRect = d->MARect();
    p.setPen(d->showMA ? ThemeColor("ct_selected") : ThemeColor("ct_border"));
    p.setBrush(d->showMA ? ThemeColor("ct_hover") : QColor(Qt::transparent));
    p.drawRoundedRect(QRectF(maRect).adjusted(0.5, 0.5, -0.5, -0.5), 3, 3);
    p.setPen(d->showMA ? ThemeColor("ct_selected") : kit.textSecondary);
    p.drawText(maRect, Qt::AlignCenter, QStringLiteral("MA"));
    p.setRenderHint(QPainter::Antialiasing, false);

    const int legendIndex = d->hovered >= 0 ? d->hovered : static_cast<int>(d->candles.size()) - 1;
    if (d->showMA && legendIndex >= 0) {
        int x = maRect.right() + 10;
        auto legend = [&](const char* name, const std::vector<double>& line, const QColor& color) {
            const double value = line[legendIndex];
            const QString text =
                QString::fromLatin1(name) + QLatin1Char(' ') +
                (std::isfinite(value) ? FormatPrice(value, d->tickSize / 10.0) : QStringLiteral("--"));
            if (x + kit.fm.horizontalAdvance(text) > width() - 4)
                return;
            p.setPen(color);
            p.drawText(QRect(x, 0, width() - x, kToolHeight), Qt::AlignVCenter | Qt::AlignLeft, text);
            x += kit.fm.horizontalAdvance(text) + 10;
        };
        legend("MA5", d->maShort, kit.maShort);
        legend("MA10", d->maLong, kit.maLong);
    }
    p.setPen(kit.divider);
    p.drawLine(0, kToolHeight, width(), kToolHeight);
}

CVXKLineCard::PriceScale CVXKLineCard::VisibleScale() const
{
    // The moving averages count only while they are drawn.
    std::vector<const std::vector<double>*> lines;
    if (d->showMA)
        lines = {&d->maShort, &d->maLong};
    const kline::PriceSpan span = kline::SpanOf(d->candles, d->range, lines);
    const double pad = std::max((span.high - span.low) * 0.08, d->tickSize);
    return PriceScale{span.low - pad, span.high + pad, d->plot};
}

void CVXKLineCard::PaintPriceAxis(QPainter& p, const PaintKit& kit, const PriceScale& scale)
{
    const QRect& plot = d->plot;
    const kline::AxisTicks ticks = kline::NiceTicks(scale.low, scale.high, std::max(2, plot.height() / 32));
    const int decimals = std::max(DecimalsOf(d->tickSize), DecimalsOf(ticks.step));
    for (double value : ticks.values) {
        const int y = qRound(scale.Y(value));
        p.setPen(kit.divider);
        p.drawLine(plot.left(), y, plot.right(), y);
        p.setPen(kit.textSecondary);
        p.drawText(QRect(d->axis.left() + 6, y - 8, d->axis.width() - 6, 16),
                   Qt::AlignVCenter | Qt::AlignLeft, QString::number(value, 'f', decimals));
    }
}

// Labels on round clock times, at least a label's width apart, with their grid lines.
void CVXKLineCard::PaintTimeAxis(QPainter& p, const PaintKit& kit)
{
    const QRect& plot = d->plot;
    const int labelWidth = kit.fm.horizontalAdvance(QStringLiteral("00:00")) + 14;
    int interval = 0;
    for (int minutes : {5, 10, 15, 30, 60, 120, 240}) {
        if (minutes % d->period == 0 && minutes / d->period * d->slot >= labelWidth) {
            interval = minutes;
            break;
        }
    }
    p.setPen(kit.divider);
    p.drawLine(d->timeAxis.topLeft(), d->timeAxis.topRight());
    p.drawLine(d->axis.left(), d->axis.top(), d->axis.left(), d->timeAxis.top());
    for (int i = d->range.first; interval > 0 && i < d->range.first + d->range.count; ++i) {
        if (d->candles[i].minute % interval != 0)
            continue;
        const int x = d->CenterX(i);
        p.setPen(kit.divider);
        p.drawLine(x, plot.top(), x, plot.bottom());
        p.drawLine(x, d->volume.top(), x, d->volume.bottom());
        const QRect label(x - labelWidth / 2, d->timeAxis.top() + 1, labelWidth, d->timeAxis.height() - 1);
        if (label.left() >= 0 && label.right() <= d->timeAxis.right() + labelWidth / 2) {
            p.setPen(kit.textSecondary);
            p.drawText(label, Qt::AlignCenter, MinuteText(d->candles[i].minute));
        }
    }
}

void CVXKLineCard::PaintCandlesAndVolume(QPainter& p, const PaintKit& kit, const PriceScale& scale)
{
    long long maxVolume = 1;
    for (int i = d->range.first; i < d->range.first + d->range.count; ++i)
        maxVolume = std::max(maxVolume, d->candles[i].volume);
    const int bodyWidth = d->slot - std::max(2, d->slot / 4);
    for (int i = d->range.first; i < d->range.first + d->range.count; ++i) {
        const vx_md::Candle& c = d->candles[i];
        const QColor color = CandleColor(c);
        const int x = d->CenterX(i);
        p.setPen(color);
        p.drawLine(x, qRound(scale.Y(c.high)), x, qRound(scale.Y(c.low)));
        const int top = qRound(scale.Y(std::max(c.open, c.close)));
        const int bottom = qRound(scale.Y(std::min(c.open, c.close)));
        p.fillRect(QRect(x - bodyWidth / 2, top, bodyWidth, std::max(1, bottom - top + 1)), color);
        const int barHeight =
            static_cast<int>(static_cast<double>(c.volume) / maxVolume * (d->volume.height() - 12));
        QColor barColor = color;
        barColor.setAlpha(200);
        p.fillRect(
            QRect(x - bodyWidth / 2, d->volume.bottom() - barHeight + 1, bodyWidth, std::max(1, barHeight)),
            barColor);
    }
    p.setPen(kit.textSecondary);
    p.drawText(QRect(d->volume.left() + 2, d->volume.top(), d->volume.width(), 12),
               Qt::AlignLeft | Qt::AlignVCenter, QStringLiteral("VOL ") + FormatVolume(maxVolume));
    p.setPen(kit.divider);
    p.drawLine(d->volume.left(), d->volume.top() - 3, d->axis.right(), d->volume.top() - 3);
}

void CVXKLineCard::PaintMovingAverages(QPainter& p, const PaintKit& kit, const PriceScale& scale)
{
    p.setRenderHint(QPainter::Antialiasing, true);
    auto drawLine = [&](const std::vector<double>& line, const QColor& color) {
        QPainterPath path;
        bool started = false;
        for (int i = d->range.first; i < d->range.first + d->range.count; ++i) {
            if (!std::isfinite(line[i]))
                continue;
            const QPointF point(d->CenterX(i), scale.Y(line[i]));
            if (started) {
                path.lineTo(point);
            } else {
                path.moveTo(point);
                started = true;
            }
        }
        p.setPen(QPen(color, 1.2));
        p.setBrush(Qt::NoBrush);
        p.drawPath(path);
    };
    drawLine(d->maShort, kit.maShort);
    drawLine(d->maLong, kit.maLong);
    p.setRenderHint(QPainter::Antialiasing, false);
}

// The dashed line at the last price and its tag on the axis.
void CVXKLineCard::PaintLastPrice(QPainter& p, const PriceScale& scale)
{
    const QRect& plot = d->plot;
    const double lastPrice = d->candles.back().close;
    const QColor lastColor = ChangeColor(lastPrice - d->prevClose);
    const int lastY = qRound(scale.Y(lastPrice));
    p.setPen(QPen(lastColor, 1, Qt::DashLine));
    p.drawLine(plot.left(), lastY, plot.right(), lastY);
    const QRect lastTag(d->axis.left() + 1, lastY - 8, d->axis.width() - 2, 16);
    p.fillRect(lastTag, lastColor);
    p.setPen(ThemeColor("ct_text_on_accent"));
    p.drawText(lastTag.adjusted(5, 0, 0, 0), Qt::AlignVCenter | Qt::AlignLeft,
               FormatPrice(lastPrice, d->tickSize));
}

// The lines through the hovered candle and the mouse, their tags on the axes and the info box.
void CVXKLineCard::PaintCrosshair(QPainter& p, const PaintKit& kit, const PriceScale& scale)
{
    const QRect& plot = d->plot;
    const QColor lineColor = ThemeColor("ct_text_secondary");
    const int x = d->CenterX(d->hovered);
    p.setPen(QPen(lineColor, 1, Qt::DotLine));
    p.drawLine(x, plot.top(), x, d->volume.bottom());
    const QColor tagBg = ThemeColor("ct_bg_tooltip");
    const QColor tagText = ThemeColor("ct_text_tooltip");
    if (d->mouse.y() >= plot.top() && d->mouse.y() <= plot.bottom()) {
        p.setPen(QPen(lineColor, 1, Qt::DotLine));
        p.drawLine(plot.left(), d->mouse.y(), plot.right(), d->mouse.y());
        const QRect tag(d->axis.left() + 1, d->mouse.y() - 8, d->axis.width() - 2, 16);
        p.fillRect(tag, tagBg);
        p.setPen(tagText);
        p.drawText(tag.adjusted(5, 0, 0, 0), Qt::AlignVCenter | Qt::AlignLeft,
                   QString::number(scale.PriceAt(d->mouse.y()), 'f', DecimalsOf(d->tickSize)));
    }
    const QString timeText = MinuteText(d->candles[d->hovered].minute);
    const int tw = kit.fm.horizontalAdvance(timeText) + 10;
    const QRect timeTag(std::clamp(x - tw / 2, d->timeAxis.left(), d->timeAxis.right() - tw),
                        d->timeAxis.top() + 1, tw, d->timeAxis.height() - 2);
    p.fillRect(timeTag, tagBg);
    p.setPen(tagText);
    p.drawText(timeTag, Qt::AlignCenter, timeText);
    PaintCrosshairInfo(p, kit, x);
}

// The hovered candle's lines in a box in the plot's corner away from the mouse.
void CVXKLineCard::PaintCrosshairInfo(QPainter& p, const PaintKit& kit, int crosshairX)
{
    const QRect& plot = d->plot;
    const QStringList info = CrosshairLines();
    int boxWidth = 0;
    for (const QString& line : info)
        boxWidth = std::max(boxWidth, kit.fm.horizontalAdvance(line));
    boxWidth += 12;
    const int lineHeight = kit.fm.height() + 1;
    const int boxHeight = lineHeight * info.size() + 6;
    const bool onLeft = crosshairX > plot.center().x();
    const QRect box(onLeft ? plot.left() + 2 : plot.right() - boxWidth - 2, plot.top() + 2, boxWidth,
                    boxHeight);
    if (box.height() > plot.height())
        return;
    QColor boxBg = ThemeColor("ct_bg_secondary");
    boxBg.setAlpha(235);
    p.fillRect(box, boxBg);
    p.setPen(ThemeColor("ct_border"));
    p.drawRect(box.adjusted(0, 0, -1, -1));
    const QColor valueColor = CandleColor(d->candles[d->hovered]);
    for (int i = 0; i < info.size(); ++i) {
        p.setPen(i == 0 ? kit.textPrimary : (i == info.size() - 1 ? kit.textSecondary : valueColor));
        p.drawText(QRect(box.left() + 6, box.top() + 3 + i * lineHeight, boxWidth - 8, lineHeight),
                   Qt::AlignLeft | Qt::AlignVCenter, info[i]);
    }
}

} // namespace vx_ws
