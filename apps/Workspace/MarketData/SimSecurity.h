#pragma once

// One security's simulated state: last price (held in whole ticks, so it is always on the tick
// grid), ticks, minute candles, the 10-level book and the day statistics. Step() moves a stock,
// ETF or index by a bounded random walk (within 10% of the previous close); StepTo() sets an
// option's price from its model value. Each security has its own generator derived from the feed
// seed and its id, so its path does not depend on which other securities move.

#include "apps/Workspace/MarketData/MarketTypes.h"

#include <cstdint>
#include <deque>
#include <random>

namespace vx_md {

class CVXSimSecurity
{
public:
    static constexpr int kBookDepth = 10;
    static constexpr int kBoundPercent = 10;
    static constexpr std::size_t kMaxTicks = 500;
    static constexpr std::size_t kMaxCandles = 480;

    CVXSimSecurity(const SecurityInfo& info, std::uint64_t seed);

    // Random walk by one step at the given time.
    void Step(int time);
    // A new trade at `price` (rounded to the tick grid, at least one tick) at the given time.
    void StepTo(int time, double price);

    const SecurityInfo& Info() const { return m_info; }
    double Last() const { return m_lastTicks * m_info.tickSize; }
    long long LastTicks() const { return m_lastTicks; }
    long long LowerBoundTicks() const { return m_lowerTicks; }
    long long UpperBoundTicks() const { return m_upperTicks; }
    Quote GetQuote() const;
    const OrderBook& Book() const { return m_book; }
    const std::deque<Tick>& Ticks() const { return m_ticks; }
    const std::deque<Candle>& Candles() const { return m_candles; }
    const DayStats& Day() const { return m_day; }
    int Time() const { return m_time; }

private:
    void Trade(int time, long long priceTicks, int side);
    void RebuildBook(int side);

    SecurityInfo m_info;
    std::mt19937_64 m_rng;
    long long m_lastTicks = 0;
    long long m_lowerTicks = 1;
    long long m_upperTicks = 1;
    int m_time = 0;
    OrderBook m_book;
    std::deque<Tick> m_ticks;
    std::deque<Candle> m_candles;
    DayStats m_day;
};

} // namespace vx_md
