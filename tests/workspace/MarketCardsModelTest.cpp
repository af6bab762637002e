// The numbers behind the market cards: candles merged into periods, moving averages, the price
// axis, the visible window of candles, volume by price, and what the quote summary shows. Hand-
// worked values, and the real feed checked against plain recomputations kept here.

#include "apps/Workspace/Cards/WorkspaceCardBase.h"
#include "apps/Workspace/MarketData/SimMarketData.h"
#include "apps/Workspace/QuoteCards/KLineModel.h"
#include "apps/Workspace/QuoteCards/StockHeaderModel.h"
#include "apps/Workspace/QuoteCards/TicksStatisticModel.h"

#include "tests/common/TestSupport.h"

#include <gtest/gtest.h>

#include <cmath>
#include <map>

using vx_md::Candle;
using vx_md::Tick;
using vx_ws::CVXWorkspaceCardBase;
namespace kline = vx_ws::kline;

namespace {

void ExpectCandle(const Candle& actual, const Candle& expected)
{
    EXPECT_EQ(actual.minute, expected.minute);
    EXPECT_DOUBLE_EQ(actual.open, expected.open) << "minute " << expected.minute;
    EXPECT_DOUBLE_EQ(actual.high, expected.high) << "minute " << expected.minute;
    EXPECT_DOUBLE_EQ(actual.low, expected.low) << "minute " << expected.minute;
    EXPECT_DOUBLE_EQ(actual.close, expected.close) << "minute " << expected.minute;
    EXPECT_EQ(actual.volume, expected.volume) << "minute " << expected.minute;
}

// Minute candles with a gap (572, 573 and 576..583 did not trade).
const std::vector<Candle> kMinutes = {
    {570, 10.00, 11.00, 9.50, 10.50, 100}, {571, 10.50, 12.00, 10.00, 11.50, 200},
    {574, 11.50, 11.80, 11.00, 11.20, 50}, {575, 11.20, 11.30, 10.80, 11.00, 10},
    {584, 11.00, 11.10, 10.90, 11.05, 5},  {585, 11.05, 11.20, 11.00, 11.10, 7},
};

bool IsNiceStep(double step)
{
    const double magnitude = std::pow(10.0, std::floor(std::log10(step) + 1e-9));
    for (double multiplier : {1.0, 2.0, 2.5, 5.0, 10.0}) {
        if (std::fabs(step - multiplier * magnitude) < 1e-9 * magnitude)
            return true;
    }
    return false;
}

} // namespace

TEST(KLineModel, MinuteCandlesMergeIntoClockAlignedPeriods)
{
    // 5 minutes: 09:30-09:34 holds three minutes, 09:35 one, 09:40 only 09:44, 09:45 one.
    const std::vector<Candle> five = kline::Aggregate(kMinutes, 5);
    ASSERT_EQ(five.size(), 4u);
    ExpectCandle(five[0], {570, 10.00, 12.00, 9.50, 11.20, 350});
    ExpectCandle(five[1], {575, 11.20, 11.30, 10.80, 11.00, 10});
    ExpectCandle(five[2], {580, 11.00, 11.10, 10.90, 11.05, 5});
    ExpectCandle(five[3], {585, 11.05, 11.20, 11.00, 11.10, 7});

    // 15 minutes: 09:30-09:44 and 09:45.
    const std::vector<Candle> fifteen = kline::Aggregate(kMinutes, 15);
    ASSERT_EQ(fifteen.size(), 2u);
    ExpectCandle(fifteen[0], {570, 10.00, 12.00, 9.50, 11.05, 365});
    ExpectCandle(fifteen[1], {585, 11.05, 11.20, 11.00, 11.10, 7});

    // One minute changes nothing; no period gives nothing.
    const std::vector<Candle> one = kline::Aggregate(kMinutes, 1);
    ASSERT_EQ(one.size(), kMinutes.size());
    for (std::size_t i = 0; i < one.size(); ++i)
        ExpectCandle(one[i], kMinutes[i]);
    EXPECT_TRUE(kline::Aggregate(kMinutes, 0).empty());
    EXPECT_TRUE(kline::Aggregate({}, 5).empty());
}

TEST(KLineModel, FeedCandlesMergedIntoFiveMinutesKeepEveryMinutesTrades)
{
    vx_md::CVXSimMarketData feed(21);
    ASSERT_TRUE(feed.Subscribe(1004));
    for (int i = 0; i < 27 * 60; ++i)
        feed.Step();
    const std::vector<Candle> minutes = feed.GetCandles(1004);
    const std::vector<Candle> five = kline::Aggregate(minutes, 5);

    // Reference: group the minutes by their five-minute start in a map.
    std::map<int, std::vector<Candle>> groups;
    for (const Candle& c : minutes)
        groups[c.minute / 5 * 5].push_back(c);
    ASSERT_EQ(five.size(), groups.size());
    std::size_t i = 0;
    long long total = 0;
    for (const auto& [start, members] : groups) {
        Candle expected{
            start, members.front().open, members.front().high, members.front().low, members.back().close, 0};
        for (const Candle& m : members) {
            expected.high = std::max(expected.high, m.high);
            expected.low = std::min(expected.low, m.low);
            expected.volume += m.volume;
        }
        ExpectCandle(five[i++], expected);
        total += expected.volume;
    }
    EXPECT_EQ(total, feed.GetQuote(1004).day.volume);
    EXPECT_EQ(five.back().close, feed.GetQuote(1004).last);
    feed.Unsubscribe(1004);
}

TEST(KLineModel, MovingAveragesStartOnceTheirWindowIsFull)
{
    // Closes 1, 2, ..., 12.
    std::vector<Candle> candles;
    for (int i = 1; i <= 12; ++i)
        candles.push_back({569 + i, 0.0, 0.0, 0.0, static_cast<double>(i), 0});
    const std::vector<double> ma5 = kline::MovingAverage(candles, 5);
    const std::vector<double> ma10 = kline::MovingAverage(candles, 10);
    ASSERT_EQ(ma5.size(), 12u);
    for (int i = 0; i < 4; ++i)
        EXPECT_TRUE(std::isnan(ma5[i])) << i;
    EXPECT_DOUBLE_EQ(ma5[4], 3.0);   // (1+2+3+4+5)/5
    EXPECT_DOUBLE_EQ(ma5[11], 10.0); // (8+...+12)/5
    for (int i = 0; i < 9; ++i)
        EXPECT_TRUE(std::isnan(ma10[i])) << i;
    EXPECT_DOUBLE_EQ(ma10[9], 5.5);
    EXPECT_DOUBLE_EQ(ma10[11], 7.5);
    // Fewer candles than the window: no value at all.
    const std::vector<double> short10 = kline::MovingAverage({candles.begin(), candles.begin() + 3}, 10);
    EXPECT_EQ(short10.size(), 3u);
    EXPECT_TRUE(std::all_of(short10.begin(), short10.end(), [](double v) { return std::isnan(v); }));
}

TEST(KLineModel, AxisTicksAreRoundAndCoverTheRange)
{
    // By hand: 0.74 over at most 5 ticks -> 0.1 gives 7, 0.2 gives 12.2 .. 12.8.
    kline::AxisTicks ticks = kline::NiceTicks(12.13, 12.87, 5);
    EXPECT_DOUBLE_EQ(ticks.step, 0.2);
    ASSERT_EQ(ticks.values.size(), 4u);
    EXPECT_NEAR(ticks.values.front(), 12.2, 1e-9);
    EXPECT_NEAR(ticks.values.back(), 12.8, 1e-9);
    // 20 would give six ticks over 0..100, 25 gives five.
    ticks = kline::NiceTicks(0.0, 100.0, 5);
    EXPECT_DOUBLE_EQ(ticks.step, 25.0);
    EXPECT_EQ(ticks.values.size(), 5u);

    struct Row
    {
        double low, high;
        int maxCount;
    };
    const Row rows[] = {{12.13, 12.87, 5},   {0.0, 100.0, 5},   {2.981, 3.117, 8},
                        {3012.4, 3388.9, 6}, {0.051, 0.063, 5}, {99.99, 100.01, 4},
                        {57.3, 61.02, 12},   {5.0, 5.0, 5},     {1.5, 1.2, 6}};
    for (const Row& row : rows) {
        SCOPED_TRACE(testing::Message() << row.low << " .. " << row.high << " max " << row.maxCount);
        const kline::AxisTicks t = kline::NiceTicks(row.low, row.high, row.maxCount);
        ASSERT_GT(t.step, 0.0);
        EXPECT_TRUE(IsNiceStep(t.step)) << t.step;
        ASSERT_FALSE(t.values.empty());
        EXPECT_LE(static_cast<int>(t.values.size()), row.maxCount);
        EXPECT_GE(t.values.size(), 2u);
        const double low = std::min(row.low, row.high);
        const double high = std::max(row.low, row.high);
        if (high > low) {
            // Inside the range, and no gap of a whole step left at either end.
            EXPECT_GE(t.values.front(), low - 1e-9);
            EXPECT_LE(t.values.back(), high + 1e-9);
            EXPECT_LT(t.values.front() - low, t.step + 1e-9);
            EXPECT_LT(high - t.values.back(), t.step + 1e-9);
        } else {
            // A flat range is widened around its value.
            EXPECT_LT(t.values.front(), low + 1e-9);
            EXPECT_GT(t.values.back(), high - 1e-9);
        }
        for (std::size_t i = 1; i < t.values.size(); ++i)
            EXPECT_NEAR(t.values[i] - t.values[i - 1], t.step, t.step * 1e-6);
        for (double v : t.values)
            EXPECT_NEAR(v / t.step, std::round(v / t.step), 1e-6) << v;
    }
    EXPECT_TRUE(kline::NiceTicks(std::nan(""), 1.0, 5).values.empty());
}

TEST(KLineModel, TheNewestCandlesFillThePlotAndSetThePriceSpan)
{
    kline::CandleRange range = kline::NewestThatFit(100, 30);
    EXPECT_EQ(range.first, 70);
    EXPECT_EQ(range.count, 30);
    range = kline::NewestThatFit(10, 30);
    EXPECT_EQ(range.first, 0);
    EXPECT_EQ(range.count, 10);
    range = kline::NewestThatFit(5, 0);
    EXPECT_EQ(range.first, 5);
    EXPECT_EQ(range.count, 0);

    // Candle width: a long series gets the narrowest slot (and scrolls its oldest candles off);
    // a short one shares the plot up to the widest slot.
    EXPECT_EQ(kline::SlotWidth(500, 800, 8, 16), 8);
    EXPECT_EQ(kline::SlotWidth(61, 880, 8, 16), 14); // 880 / 61 = 14.4
    EXPECT_EQ(kline::SlotWidth(10, 880, 8, 16), 16);
    EXPECT_EQ(kline::SlotWidth(0, 880, 8, 16), 8);
    EXPECT_EQ(kline::SlotWidth(61, 0, 8, 16), 8);

    // Only the candles in the window count; a moving average outside the candles widens the
    // span, its missing values do not.
    const std::vector<double> line = {std::nan(""), 9.0, 12.5, 11.0, 10.0, 99.0};
    const kline::PriceSpan candlesOnly = kline::SpanOf(kMinutes, {1, 3});
    ASSERT_TRUE(candlesOnly.valid);
    EXPECT_DOUBLE_EQ(candlesOnly.low, 10.00);
    EXPECT_DOUBLE_EQ(candlesOnly.high, 12.00);
    const kline::PriceSpan withLine = kline::SpanOf(kMinutes, {0, 3}, {&line});
    EXPECT_DOUBLE_EQ(withLine.low, 9.0);
    EXPECT_DOUBLE_EQ(withLine.high, 12.5);
    EXPECT_FALSE(kline::SpanOf(kMinutes, {0, 0}).valid);
}

TEST(TicksStatisticModel, VolumeByPriceFromHandWorkedTicks)
{
    // 10.01 written two ways lands on one level; side 0 is neutral.
    const std::vector<Tick> ticks = {
        {34201, 10.00, 100, +1}, {34202, 10.01, 200, -1},      {34203, 10.00, 300, -1},
        {34204, 10.02, 50, 0},   {34205, 1001 * 0.01, 40, +1},
    };
    vx_ws::TickStatistic stat = vx_ws::BuildTickStatistic(ticks, 0.01, vx_ws::EnTickStatSort::ByPrice);
    ASSERT_EQ(stat.levels.size(), 3u);
    EXPECT_NEAR(stat.levels[0].price, 10.02, 1e-9);
    EXPECT_EQ(stat.levels[0].neutral, 50);
    EXPECT_NEAR(stat.levels[1].price, 10.01, 1e-9);
    EXPECT_EQ(stat.levels[1].buy, 40);
    EXPECT_EQ(stat.levels[1].sell, 200);
    EXPECT_NEAR(stat.levels[2].price, 10.00, 1e-9);
    EXPECT_EQ(stat.levels[2].buy, 100);
    EXPECT_EQ(stat.levels[2].sell, 300);
    EXPECT_EQ(stat.buy, 140);
    EXPECT_EQ(stat.sell, 500);
    EXPECT_EQ(stat.neutral, 50);
    EXPECT_EQ(stat.Total(), 690);
    EXPECT_DOUBLE_EQ(stat.BuyShare(), 140.0 / 690.0);
    EXPECT_DOUBLE_EQ(stat.ShareOf(stat.levels[2]), 400.0 / 690.0);
    EXPECT_EQ(stat.busiestLevel, 2);

    stat = vx_ws::BuildTickStatistic(ticks, 0.01, vx_ws::EnTickStatSort::ByVolume);
    ASSERT_EQ(stat.levels.size(), 3u);
    EXPECT_EQ(stat.levels[0].Total(), 400);
    EXPECT_EQ(stat.levels[1].Total(), 240);
    EXPECT_EQ(stat.levels[2].Total(), 50);
    EXPECT_EQ(stat.busiestLevel, 0);

    // A tie goes to the higher price, whichever sort.
    const std::vector<Tick> tie = {
        {1, 5.00, 70, +1}, {2, 5.05, 30, -1}, {3, 5.05, 40, +1}, {4, 4.95, 10, -1}};
    for (auto sort : {vx_ws::EnTickStatSort::ByPrice, vx_ws::EnTickStatSort::ByVolume}) {
        stat = vx_ws::BuildTickStatistic(tie, 0.01, sort);
        ASSERT_GE(stat.busiestLevel, 0);
        EXPECT_NEAR(stat.levels[stat.busiestLevel].price, 5.05, 1e-9);
    }

    stat = vx_ws::BuildTickStatistic({}, 0.01, vx_ws::EnTickStatSort::ByPrice);
    EXPECT_EQ(stat.busiestLevel, -1);
    EXPECT_EQ(stat.BuyShare(), 0.0);
    EXPECT_TRUE(vx_ws::BuildTickStatistic(ticks, 0.0, vx_ws::EnTickStatSort::ByPrice).levels.empty());
}

TEST(TicksStatisticModel, FeedTicksAddUpToTheirOwnTotalsPerPrice)
{
    vx_md::CVXSimMarketData feed(33);
    ASSERT_TRUE(feed.Subscribe(500)); // an ETF: a 0.001 grid
    for (int i = 0; i < 400; ++i)
        feed.Step();
    const vx_md::SecurityInfo info = feed.GetSecurity(500);
    const std::vector<Tick> ticks = feed.GetTicks(500);
    const vx_ws::TickStatistic stat =
        vx_ws::BuildTickStatistic(ticks, info.tickSize, vx_ws::EnTickStatSort::ByVolume);

    // Reference: the ticks grouped by their printed price.
    std::map<QString, std::pair<long long, long long>> byText;
    long long total = 0;
    for (const Tick& t : ticks) {
        auto& entry = byText[CVXWorkspaceCardBase::FormatPrice(t.price, info.tickSize)];
        (t.side > 0 ? entry.first : entry.second) += t.volume;
        total += t.volume;
    }
    EXPECT_EQ(stat.Total(), total);
    ASSERT_EQ(stat.levels.size(), byText.size());
    long long previous = std::numeric_limits<long long>::max();
    for (const vx_ws::PriceVolumeLevel& level : stat.levels) {
        const auto it = byText.find(CVXWorkspaceCardBase::FormatPrice(level.price, info.tickSize));
        ASSERT_NE(it, byText.end()) << level.price;
        EXPECT_EQ(level.buy, it->second.first);
        EXPECT_EQ(level.sell, it->second.second);
        EXPECT_LE(level.Total(), previous);
        previous = level.Total();
    }
    feed.Unsubscribe(500);
}

TEST(StockHeaderModel, SummaryTextsAndTheCodeSearch)
{
    vx_md::SecurityInfo info;
    info.id = 1000;
    info.code = "600000";
    info.name = "远华科技";
    info.market = "SH";
    info.tickSize = 0.01;
    vx_md::Quote quote;
    quote.prevClose = 20.00;
    quote.last = 20.50;
    quote.time = 9 * 3600 + 31 * 60 + 7;
    quote.day = {20.10, 20.80, 19.90, 123400, 2.5e6, 57};

    vx_ws::StockHeaderView wide = vx_ws::BuildStockHeaderView(info, quote, true);
    EXPECT_EQ(wide.last, QStringLiteral("20.50"));
    EXPECT_EQ(wide.change, QStringLiteral("+0.50"));
    EXPECT_EQ(wide.changePercent, QStringLiteral("+2.50%"));
    EXPECT_GT(wide.direction, 0.0);
    ASSERT_EQ(wide.stats.size(), 8u);
    EXPECT_EQ(wide.stats[0].value, QStringLiteral("20.10")); // open, above the close: rise
    EXPECT_GT(wide.stats[0].direction, 0.0);
    EXPECT_LT(wide.stats[2].direction, 0.0); // low 19.90
    EXPECT_EQ(wide.stats[3].value, QStringLiteral("20.00"));
    EXPECT_TRUE(wide.stats[3].neutral);
    EXPECT_EQ(wide.stats[4].value, QStringLiteral("123,400"));
    EXPECT_EQ(wide.stats[5].value, QStringLiteral("2.50M"));
    EXPECT_EQ(wide.stats[6].value, QStringLiteral("57"));
    EXPECT_EQ(wide.stats[7].value, QStringLiteral("4.50%")); // (20.80 - 19.90) / 20.00
    EXPECT_EQ(wide.time, QStringLiteral("09:31:07"));
    const vx_ws::StockHeaderView narrow = vx_ws::BuildStockHeaderView(info, quote, false);
    EXPECT_EQ(narrow.stats.size(), 4u);

    quote.last = 19.70;
    EXPECT_EQ(vx_ws::BuildStockHeaderView(info, quote, true).change, QStringLiteral("-0.30"));
    quote.last = 20.00;
    quote.day = {};
    const vx_ws::StockHeaderView quiet = vx_ws::BuildStockHeaderView(info, quote, true);
    EXPECT_EQ(quiet.change, QStringLiteral("0.00"));
    EXPECT_EQ(quiet.direction, 0.0);
    EXPECT_EQ(quiet.stats[0].value, QStringLiteral("--")); // no trade, no open
    EXPECT_EQ(quiet.stats[7].value, QStringLiteral("--"));
    EXPECT_EQ(quiet.time, QStringLiteral("--"));

    vx_md::CVXSimMarketData feed(5);
    const auto& universe = feed.Securities();
    const vx_md::SecurityInfo third = feed.GetSecurity(1002);
    const QString entry = vx_ws::CompletionEntries(universe).at(static_cast<int>(
        std::find_if(universe.begin(), universe.end(), [](const auto& s) { return s.id == 1002; }) -
        universe.begin()));
    EXPECT_EQ(vx_ws::FindSecurityByInput(universe, QString::fromStdString(third.code)), 1002u);
    EXPECT_EQ(vx_ws::FindSecurityByInput(universe, QStringLiteral("  ") + QString::fromStdString(third.code)),
              1002u);
    EXPECT_EQ(vx_ws::FindSecurityByInput(universe, entry), 1002u);
    EXPECT_EQ(vx_ws::FindSecurityByInput(universe, QStringLiteral("sim50")), 1u);
    EXPECT_EQ(vx_ws::FindSecurityByInput(universe, QString::fromStdString(feed.GetSecurity(500).name)), 500u);
    EXPECT_EQ(vx_ws::FindSecurityByInput(universe, QStringLiteral("999999")), 0u);
    EXPECT_EQ(vx_ws::FindSecurityByInput(universe, QString()), 0u);
    // A part of a code is not a code.
    EXPECT_EQ(vx_ws::FindSecurityByInput(universe, QString::fromStdString(third.code).left(3)), 0u);
}
