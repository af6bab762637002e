#include "apps/Workspace/QuoteCards/KLineModel.h"

#include "Platform/Core/Log.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace vx_ws::kline {

bool IsSupportedPeriod(int periodMinutes)
{
    return std::find(std::begin(kPeriods), std::end(kPeriods), periodMinutes) != std::end(kPeriods);
}

std::vector<vx_md::Candle> Aggregate(const std::vector<vx_md::Candle>& minutes, int periodMinutes)
{
    std::vector<vx_md::Candle> out;
    if (periodMinutes < 1) {
        VXLOG_WARN("kline::Aggregate: period must be at least one minute, got {}", periodMinutes);
        return out;
    }
    for (const vx_md::Candle& candle : minutes) {
        const int start = candle.minute - candle.minute % periodMinutes;
        if (out.empty() || out.back().minute != start) {
            vx_md::Candle merged = candle;
            merged.minute = start;
            out.push_back(merged);
            continue;
        }
        vx_md::Candle& merged = out.back();
        merged.high = std::max(merged.high, candle.high);
        merged.low = std::min(merged.low, candle.low);
        merged.close = candle.close;
        merged.volume += candle.volume;
    }
    return out;
}

std::vector<double> MovingAverage(const std::vector<vx_md::Candle>& candles, int length)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    std::vector<double> out(candles.size(), nan);
    if (length < 1) {
        VXLOG_WARN("kline::MovingAverage: length must be at least 1, got {}", length);
        return out;
    }
    // A running sum drifts over a long day; re-adding the window each time costs little at
    // chart sizes and stays exact to the last digit.
    const std::size_t window = static_cast<std::size_t>(length);
    for (std::size_t i = window - 1; i < candles.size(); ++i) {
        double sum = 0.0;
        for (std::size_t j = i + 1 - window; j <= i; ++j)
            sum += candles[j].close;
        out[i] = sum / length;
    }
    return out;
}

namespace {

long long TickCount(double low, double high, double step)
{
    const double eps = 1e-9;
    const double first = std::ceil(low / step - eps);
    const double last = std::floor(high / step + eps);
    return static_cast<long long>(last - first) + 1;
}

} // namespace

AxisTicks NiceTicks(double low, double high, int maxCount)
{
    AxisTicks ticks;
    if (!std::isfinite(low) || !std::isfinite(high))
        return ticks;
    maxCount = std::max(2, maxCount);
    if (low > high)
        std::swap(low, high);
    if (high - low <= 1e-12) {
        const double mid = (low + high) / 2.0;
        const double half = std::max(std::fabs(mid) * 0.005, 0.005);
        low = mid - half;
        high = mid + half;
    }
    const double span = high - low;
    double magnitude = std::pow(10.0, std::floor(std::log10(span / maxCount)));
    static const double kMultipliers[] = {1.0, 2.0, 2.5, 5.0};
    double step = 0.0;
    for (int decade = 0; decade < 4 && step == 0.0; ++decade, magnitude *= 10.0) {
        for (double multiplier : kMultipliers) {
            if (TickCount(low, high, multiplier * magnitude) <= maxCount) {
                step = multiplier * magnitude;
                break;
            }
        }
    }
    if (step == 0.0)
        return ticks;
    ticks.step = step;
    const double eps = 1e-9;
    const long long first = static_cast<long long>(std::ceil(low / step - eps));
    const long long last = static_cast<long long>(std::floor(high / step + eps));
    for (long long k = first; k <= last; ++k)
        ticks.values.push_back(static_cast<double>(k) * step);
    return ticks;
}

CandleRange NewestThatFit(int candleCount, int slots)
{
    CandleRange range;
    range.count = std::clamp(slots, 0, std::max(0, candleCount));
    range.first = std::max(0, candleCount) - range.count;
    return range;
}

int SlotWidth(int candleCount, int plotWidth, int minSlot, int maxSlot)
{
    if (candleCount <= 0 || plotWidth <= 0)
        return minSlot;
    return std::clamp(plotWidth / candleCount, minSlot, std::max(minSlot, maxSlot));
}

PriceSpan SpanOf(const std::vector<vx_md::Candle>& candles, CandleRange range,
                 const std::vector<const std::vector<double>*>& lines)
{
    PriceSpan span;
    const int end = std::min(static_cast<int>(candles.size()), range.first + range.count);
    auto include = [&span](double low, double high) {
        if (!span.valid) {
            span = {low, high, true};
            return;
        }
        span.low = std::min(span.low, low);
        span.high = std::max(span.high, high);
    };
    for (int i = std::max(0, range.first); i < end; ++i) {
        include(candles[i].low, candles[i].high);
        for (const std::vector<double>* line : lines) {
            if (line && i < static_cast<int>(line->size()) && std::isfinite((*line)[i]))
                include((*line)[i], (*line)[i]);
        }
    }
    return span;
}

} // namespace vx_ws::kline
