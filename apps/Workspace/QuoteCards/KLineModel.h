#pragma once

// The numbers behind the chart card, as plain functions on the feed's value types: minute
// candles merged into longer periods, moving averages of the closes, a price axis on round
// values, and which candles fit the plot. No widget code here.

#include "apps/Workspace/MarketData/MarketTypes.h"

#include <vector>

namespace vx_ws::kline {

// The periods the chart offers, in minutes.
inline constexpr int kPeriods[] = {1, 5, 15};
bool IsSupportedPeriod(int periodMinutes);

// Minute candles (oldest first) merged into candles of `periodMinutes`. A merged candle starts on
// a multiple of the period counted from midnight (so 09:30 starts a 5- and a 15-minute candle),
// carries that start minute, the first open, the last close, the extremes and the summed volume.
// A period below 1 logs and gives an empty series.
std::vector<vx_md::Candle> Aggregate(const std::vector<vx_md::Candle>& minutes, int periodMinutes);

// The simple moving average of the closes over `length` candles, one value per candle; NaN where
// fewer than `length` candles lead up to it. A length below 1 logs and gives all NaN.
std::vector<double> MovingAverage(const std::vector<vx_md::Candle>& candles, int length);

struct AxisTicks
{
    double step = 0.0;
    std::vector<double> values; // ascending, each a whole multiple of step
};

// Round axis values inside [low, high]: the smallest step of 1, 2, 2.5 or 5 times a power of ten
// that gives at most `maxCount` values (maxCount is raised to 2). An inverted range is swapped, a
// flat one widened around its value. Non-finite input gives no ticks.
AxisTicks NiceTicks(double low, double high, int maxCount);

// Candles [first, first + count) of a series.
struct CandleRange
{
    int first = 0;
    int count = 0;
};

// The newest candles of a series of `candleCount` that fit into `slots` slots.
CandleRange NewestThatFit(int candleCount, int slots);

// The horizontal room of one candle (gap included) on a plot `plotWidth` wide: `minSlot` while
// the candles outnumber the room, otherwise as wide as they can share the plot, up to `maxSlot`,
// so that a short series still fills the chart.
int SlotWidth(int candleCount, int plotWidth, int minSlot, int maxSlot);

struct PriceSpan
{
    double low = 0.0;
    double high = 0.0;
    bool valid = false;
};

// The lowest low and highest high of the candles in `range`, widened to include the finite
// values of each series in `lines` over the same candles.
PriceSpan SpanOf(const std::vector<vx_md::Candle>& candles, CandleRange range,
                 const std::vector<const std::vector<double>*>& lines = {});

} // namespace vx_ws::kline
