#include "apps/Workspace/QuoteCards/TicksStatisticModel.h"

#include "Platform/Core/Log.h"

#include <algorithm>
#include <cmath>
#include <map>

namespace vx_ws {

namespace {

double Share(long long part, long long total)
{
    return total > 0 ? static_cast<double>(part) / static_cast<double>(total) : 0.0;
}

} // namespace

double TickStatistic::BuyShare() const
{
    return Share(buy, Total());
}

double TickStatistic::SellShare() const
{
    return Share(sell, Total());
}

double TickStatistic::NeutralShare() const
{
    return Share(neutral, Total());
}

double TickStatistic::ShareOf(const PriceVolumeLevel& level) const
{
    return Share(level.Total(), Total());
}

TickStatistic BuildTickStatistic(const std::vector<vx_md::Tick>& ticks, double tickSize, EnTickStatSort sort)
{
    TickStatistic stat;
    if (!(tickSize > 0.0)) {
        VXLOG_WARN("BuildTickStatistic: tick size must be positive, got {}", tickSize);
        return stat;
    }
    // Keyed by whole ticks, highest first, so 10.01 and 1001 * 0.01 land on one level.
    std::map<long long, PriceVolumeLevel, std::greater<long long>> byTicks;
    for (const vx_md::Tick& tick : ticks) {
        const long long key = std::llround(tick.price / tickSize);
        PriceVolumeLevel& level = byTicks[key];
        level.price = static_cast<double>(key) * tickSize;
        if (tick.side > 0) {
            level.buy += tick.volume;
            stat.buy += tick.volume;
        } else if (tick.side < 0) {
            level.sell += tick.volume;
            stat.sell += tick.volume;
        } else {
            level.neutral += tick.volume;
            stat.neutral += tick.volume;
        }
    }
    stat.levels.reserve(byTicks.size());
    for (const auto& entry : byTicks)
        stat.levels.push_back(entry.second);
    if (sort == EnTickStatSort::ByVolume) {
        std::stable_sort(
            stat.levels.begin(), stat.levels.end(),
            [](const PriceVolumeLevel& a, const PriceVolumeLevel& b) { return a.Total() > b.Total(); });
    }
    for (int i = 0; i < static_cast<int>(stat.levels.size()); ++i) {
        const PriceVolumeLevel& level = stat.levels[i];
        if (stat.busiestLevel < 0) {
            stat.busiestLevel = i;
            continue;
        }
        const PriceVolumeLevel& best = stat.levels[stat.busiestLevel];
        if (level.Total() > best.Total() || (level.Total() == best.Total() && level.price > best.price))
            stat.busiestLevel = i;
    }
    return stat;
}

} // namespace vx_ws
