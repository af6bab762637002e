#include "apps/Workspace/MarketData/SimSecurity.h"

#include "Platform/Core/Assert.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace vx_md {

namespace {
// Seconds of one simulated trading year: the walk's volatility is annual.
constexpr double kSecondsPerYear = 252.0 * 4.0 * 3600.0;
} // namespace

CVXSimSecurity::CVXSimSecurity(const SecurityInfo& info, std::uint64_t seed)
    : m_info(info), m_rng(seed ^ (0x9E3779B97F4A7C15ULL * (info.id + 1)))
{
    VX_ASSERT(info.tickSize > 0.0);
    const long long prevTicks = std::max(1LL, std::llround(info.prevClose / info.tickSize));
    m_lastTicks = prevTicks;
    if (info.kind == EnSecurityKind::Option) {
        // An option follows its model value, which can move far more than 10% in a day.
        m_lowerTicks = 1;
        m_upperTicks = std::numeric_limits<long long>::max() / 4;
    } else {
        m_lowerTicks = std::max(1LL, prevTicks * (100 - kBoundPercent) / 100);
        m_upperTicks = std::max(m_lowerTicks, (prevTicks * (100 + kBoundPercent) + 99) / 100);
    }
    RebuildBook(1);
}

void CVXSimSecurity::Step(int time)
{
    // Eight times livelier than the volatility says, so a screen of quotes visibly moves; the
    // standard deviation is at least ~half a tick so cheap securities move too.
    const double sigmaPerStep = m_info.volatility * std::sqrt(1.0 / kSecondsPerYear) * 8.0;
    std::normal_distribution<double> move(0.0,
                                          std::max(sigmaPerStep * static_cast<double>(m_lastTicks), 0.6));
    long long next = m_lastTicks + std::llround(move(m_rng));
    next = std::clamp(next, m_lowerTicks, m_upperTicks);
    const int side = next > m_lastTicks ? 1 : next < m_lastTicks ? -1 : (m_rng() & 1 ? 1 : -1);
    Trade(time, next, side);
}

void CVXSimSecurity::StepTo(int time, double price)
{
    long long next = std::max(1LL, std::llround(price / m_info.tickSize));
    next = std::clamp(next, m_lowerTicks, m_upperTicks);
    const int side = next > m_lastTicks ? 1 : next < m_lastTicks ? -1 : (m_rng() & 1 ? 1 : -1);
    Trade(time, next, side);
}

void CVXSimSecurity::Trade(int time, long long priceTicks, int side)
{
    m_time = time;
    m_lastTicks = priceTicks;
    const double price = Last();
    const long long lots = std::uniform_int_distribution<long long>(1, 50)(m_rng);
    const long long volume = lots * std::max(1, m_info.lotSize);

    m_ticks.push_back(Tick{time, price, volume, side});
    if (m_ticks.size() > kMaxTicks)
        m_ticks.pop_front();

    const int minute = time / 60;
    if (m_candles.empty() || m_candles.back().minute != minute) {
        m_candles.push_back(Candle{minute, price, price, price, price, 0});
        if (m_candles.size() > kMaxCandles)
            m_candles.pop_front();
    }
    Candle& candle = m_candles.back();
    candle.high = std::max(candle.high, price);
    candle.low = std::min(candle.low, price);
    candle.close = price;
    candle.volume += volume;

    if (m_day.tradeCount == 0) {
        m_day.open = m_day.high = m_day.low = price;
    }
    m_day.high = std::max(m_day.high, price);
    m_day.low = std::min(m_day.low, price);
    m_day.volume += volume;
    m_day.turnover += price * static_cast<double>(volume);
    ++m_day.tradeCount;

    RebuildBook(side);
}

void CVXSimSecurity::RebuildBook(int side)
{
    // The last trade took one side's best level: a buy leaves the ask at the trade price, a sell
    // leaves the bid there; the other side sits one or two ticks away.
    const long long gap = std::uniform_int_distribution<long long>(1, 2)(m_rng);
    long long bestBid = side > 0 ? m_lastTicks - gap : m_lastTicks;
    long long bestAsk = side > 0 ? m_lastTicks : m_lastTicks + gap;
    if (bestBid < 1) {
        // Near the one-tick floor the bid cannot go lower; the ask moves up so the book stays uncrossed.
        bestBid = 0;
        bestAsk = std::max(bestAsk, m_lastTicks);
    }
    std::uniform_int_distribution<long long> lots(1, 200);
    std::uniform_int_distribution<int> brokerCount(1, 4);
    std::uniform_int_distribution<unsigned int> broker(1000, 9999);
    auto makeLevel = [&](long long ticks) {
        BookLevel level;
        level.price = ticks * m_info.tickSize;
        level.volume = lots(m_rng) * std::max(1, m_info.lotSize);
        const int n = brokerCount(m_rng);
        for (int i = 0; i < n; ++i)
            level.brokers.push_back(broker(m_rng));
        return level;
    };
    m_book.bids.clear();
    m_book.asks.clear();
    for (int i = 0; i < kBookDepth; ++i) {
        if (bestBid - i >= 1)
            m_book.bids.push_back(makeLevel(bestBid - i));
        m_book.asks.push_back(makeLevel(bestAsk + i));
    }
}

Quote CVXSimSecurity::GetQuote() const
{
    Quote quote;
    quote.id = m_info.id;
    quote.time = m_time;
    quote.last = Last();
    quote.prevClose = m_info.prevClose;
    quote.day = m_day;
    return quote;
}

} // namespace vx_md
