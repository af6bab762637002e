#pragma once

// Volume by price from a day's ticks: per price level the volume bought (the buyer took the
// ask), sold (a seller hit the bid) and neither, the day's totals, and the level that traded the
// most. Plain code on the feed's ticks; the statistics card only paints it.

#include "apps/Workspace/MarketData/MarketTypes.h"

#include <vector>

namespace vx_ws {

enum class EnTickStatSort : int
{
    ByPrice = 0,  // highest price first
    ByVolume = 1, // most volume first, the higher price first on a tie
};

struct PriceVolumeLevel
{
    double price = 0.0;
    long long buy = 0;
    long long sell = 0;
    long long neutral = 0;

    long long Total() const { return buy + sell + neutral; }
};

struct TickStatistic
{
    std::vector<PriceVolumeLevel> levels;
    long long buy = 0;
    long long sell = 0;
    long long neutral = 0;
    // Index in `levels` of the level with the most volume (the higher price on a tie); -1 when
    // there are no levels.
    int busiestLevel = -1;

    long long Total() const { return buy + sell + neutral; }
    // Part of the total volume, 0 when nothing traded.
    double BuyShare() const;
    double SellShare() const;
    double NeutralShare() const;
    double ShareOf(const PriceVolumeLevel& level) const;
};

// Ticks on the same point of the tick grid (tickSize > 0) share a level, whatever rounding noise
// their prices carry. A non-positive tick size logs and gives an empty statistic.
TickStatistic BuildTickStatistic(const std::vector<vx_md::Tick>& ticks, double tickSize, EnTickStatSort sort);

} // namespace vx_ws
