// The simulated market-data feed: universe, price paths, books, candles, options, subscriptions,
// the 30203 bus message and the protobuf snapshot, all on a real feed and the real bus.

#include "apps/Workspace/MarketData/SimMarketData.h"
#include "apps/Workspace/MarketData/OptionPricing.h"
#include "apps/Workspace/MarketData/SimUniverse.h"
#include "apps/Workspace/MarketData/market_snapshot.pb.h"

#include "Platform/Core/MessageDispatch.h"
#include "Platform/Core/message_body.pb.h"
#include "tests/common/TestSupport.h"

#include <QTest>

#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <set>

using namespace vx_md;

namespace {

bool OnTickGrid(double price, double tick)
{
    const double steps = price / tick;
    return std::fabs(steps - std::round(steps)) < 1e-6;
}

std::vector<unsigned long> IdsOfKind(const CVXSimMarketData& feed, EnSecurityKind kind)
{
    std::vector<unsigned long> ids;
    for (const SecurityInfo& info : feed.Securities()) {
        if (info.kind == kind)
            ids.push_back(info.id);
    }
    return ids;
}

// Checks one security's book, candles and day statistics against the rules of the feed.
void CheckSecuritySanity(const CVXSimMarketData& feed, unsigned long id)
{
    const SecurityInfo info = feed.GetSecurity(id);
    const Quote quote = feed.GetQuote(id);
    const OrderBook book = feed.GetOrderBook(id);
    ASSERT_GT(quote.last, 0.0) << id;
    ASSERT_TRUE(OnTickGrid(quote.last, info.tickSize)) << id << " " << quote.last;
    ASSERT_FALSE(book.asks.empty()) << id;
    ASSERT_LE(book.asks.size(), 10u);
    ASSERT_LE(book.bids.size(), 10u);
    if (!book.bids.empty()) {
        ASSERT_LT(book.bids.front().price, book.asks.front().price) << id;
        ASSERT_LE(book.bids.front().price, quote.last + 1e-9) << id;
    }
    ASSERT_GE(book.asks.front().price, quote.last - 1e-9) << id;
    for (std::size_t i = 1; i < book.bids.size(); ++i)
        ASSERT_LT(book.bids[i].price, book.bids[i - 1].price) << id;
    for (std::size_t i = 1; i < book.asks.size(); ++i)
        ASSERT_GT(book.asks[i].price, book.asks[i - 1].price) << id;
    for (const auto* side : {&book.bids, &book.asks}) {
        for (const BookLevel& level : *side) {
            ASSERT_GT(level.price, 0.0);
            ASSERT_TRUE(OnTickGrid(level.price, info.tickSize));
            ASSERT_GT(level.volume, 0);
            ASSERT_FALSE(level.brokers.empty());
        }
    }
    for (const Candle& candle : feed.GetCandles(id)) {
        ASSERT_LE(candle.low, std::min(candle.open, candle.close)) << id;
        ASSERT_GE(candle.high, std::max(candle.open, candle.close)) << id;
    }
    if (quote.day.tradeCount > 0) {
        ASSERT_LE(quote.day.low, quote.last);
        ASSERT_GE(quote.day.high, quote.last);
    }
}

} // namespace

TEST(SimMarketDataUniverse, SameSeedSameUniverseOtherSeedDiffers)
{
    const auto a = BuildSimUniverse(7);
    const auto b = BuildSimUniverse(7);
    const auto c = BuildSimUniverse(8);
    ASSERT_EQ(a.size(), b.size());
    bool anyDifference = false;
    for (std::size_t i = 0; i < a.size(); ++i) {
        EXPECT_EQ(a[i].id, b[i].id);
        EXPECT_EQ(a[i].code, b[i].code);
        EXPECT_EQ(a[i].name, b[i].name);
        EXPECT_EQ(a[i].prevClose, b[i].prevClose);
        EXPECT_EQ(a[i].lotSize, b[i].lotSize);
        EXPECT_EQ(a[i].volatility, b[i].volatility);
        if (i < c.size() && (a[i].prevClose != c[i].prevClose || a[i].name != c[i].name))
            anyDifference = true;
    }
    EXPECT_TRUE(anyDifference);
}

TEST(SimMarketDataUniverse, HoldsEveryKindWithConsistentOptions)
{
    CVXSimMarketData feed(42);
    EXPECT_EQ(IdsOfKind(feed, EnSecurityKind::Index).size(), 1u);
    EXPECT_EQ(IdsOfKind(feed, EnSecurityKind::Etf).size(), static_cast<std::size_t>(kEtfCount));
    EXPECT_EQ(IdsOfKind(feed, EnSecurityKind::Stock).size(), static_cast<std::size_t>(kStockCount));
    // Three underlyings x five strikes x two expiries x call and put.
    EXPECT_EQ(IdsOfKind(feed, EnSecurityKind::Option).size(), 60u);

    std::set<unsigned long> ids;
    std::set<std::string> codes;
    for (const SecurityInfo& info : feed.Securities()) {
        EXPECT_TRUE(ids.insert(info.id).second) << info.id;
        EXPECT_TRUE(codes.insert(info.code).second) << info.code;
        EXPECT_GT(info.prevClose, 0.0);
        EXPECT_GT(info.lotSize, 0);
        EXPECT_TRUE(OnTickGrid(info.prevClose, info.tickSize)) << info.code;
        if (info.kind == EnSecurityKind::Option) {
            ASSERT_TRUE(feed.Contains(info.underlyingId));
            EXPECT_NE(feed.GetSecurity(info.underlyingId).kind, EnSecurityKind::Option);
            EXPECT_GT(info.strike, 0.0);
            EXPECT_TRUE(info.expiryDays == 30 || info.expiryDays == 90);
        }
    }
    const auto chain = feed.OptionChain(kFirstStockId);
    ASSERT_EQ(chain.size(), 20u);
    std::set<double> strikes;
    for (unsigned long id : chain)
        strikes.insert(feed.GetSecurity(id).strike);
    EXPECT_EQ(strikes.size(), 5u);
    const double prev = feed.GetSecurity(kFirstStockId).prevClose;
    EXPECT_LT(*strikes.begin(), prev);
    EXPECT_GT(*strikes.rbegin(), prev);
}

TEST(SimMarketDataPath, SameSeedSamePathOtherSeedDiffers)
{
    CVXSimMarketData a(99), b(99), c(100);
    for (CVXSimMarketData* feed : {&a, &b, &c}) {
        feed->Subscribe(kFirstStockId);
        feed->Subscribe(kIndexId);
    }
    bool differs = false;
    for (int i = 0; i < 300; ++i) {
        a.Step();
        b.Step();
        c.Step();
        ASSERT_EQ(a.GetQuote(kFirstStockId).last, b.GetQuote(kFirstStockId).last) << i;
        ASSERT_EQ(a.GetQuote(kIndexId).last, b.GetQuote(kIndexId).last) << i;
        ASSERT_EQ(a.SnapshotBytes(kFirstStockId), b.SnapshotBytes(kFirstStockId)) << i;
        if (a.GetQuote(kIndexId).last != c.GetQuote(kIndexId).last)
            differs = true;
    }
    EXPECT_TRUE(differs);
}

TEST(SimMarketDataPath, PricesStayPositiveOnGridAndBoundedWithSaneBooks)
{
    CVXSimMarketData feed(2024);
    std::vector<unsigned long> walked;
    for (const SecurityInfo& info : feed.Securities()) {
        if (info.kind != EnSecurityKind::Option) {
            feed.Subscribe(info.id);
            walked.push_back(info.id);
        }
    }
    const auto chain = feed.OptionChain(kFirstEtfId);
    for (unsigned long id : chain)
        feed.Subscribe(id);

    std::map<unsigned long, std::pair<double, double>> seenRange;
    for (int step = 0; step < 10000; ++step) {
        feed.Step();
        for (unsigned long id : walked) {
            const SecurityInfo info = feed.GetSecurity(id);
            const double last = feed.GetQuote(id).last;
            // Ten per cent either side of the previous close, widened by one tick for rounding.
            ASSERT_GE(last, info.prevClose * 0.9 - info.tickSize) << id << " step " << step;
            ASSERT_LE(last, info.prevClose * 1.1 + info.tickSize) << id << " step " << step;
            auto& range = seenRange.try_emplace(id, last, last).first->second;
            range.first = std::min(range.first, last);
            range.second = std::max(range.second, last);
            if (step % 97 == 0)
                CheckSecuritySanity(feed, id);
        }
        if (step % 97 == 0) {
            for (unsigned long id : chain)
                CheckSecuritySanity(feed, id);
        }
    }
    for (unsigned long id : walked) {
        CheckSecuritySanity(feed, id);
        // The walk moves: over 10,000 steps no security sits still.
        EXPECT_LT(seenRange[id].first, seenRange[id].second) << id;
        const Quote quote = feed.GetQuote(id);
        EXPECT_EQ(quote.day.tradeCount, 10000);
        EXPECT_DOUBLE_EQ(quote.day.high, seenRange[id].second);
        EXPECT_DOUBLE_EQ(quote.day.low, seenRange[id].first);
    }
    for (unsigned long id : chain)
        CheckSecuritySanity(feed, id);
}

TEST(SimMarketDataPath, TicksAndMinuteCandlesAgree)
{
    CVXSimMarketData feed(5);
    feed.Subscribe(kFirstStockId + 3);
    for (int i = 0; i < 150; ++i)
        feed.Step();
    const auto ticks = feed.GetTicks(kFirstStockId + 3);
    ASSERT_EQ(ticks.size(), 150u);
    EXPECT_EQ(feed.GetTicks(kFirstStockId + 3, 10).size(), 10u);
    EXPECT_EQ(feed.GetTicks(kFirstStockId + 3, 10).back().time, ticks.back().time);
    // One step is one second from 09:30:00, so 09:30:01..09:32:30 spans minutes 570, 571, 572.
    const auto candles = feed.GetCandles(kFirstStockId + 3);
    ASSERT_EQ(candles.size(), 3u);
    EXPECT_EQ(candles[0].minute, 570);
    EXPECT_EQ(candles[2].minute, 572);
    // Rebuild the candles from the ticks independently.
    std::map<int, Candle> rebuilt;
    long long totalVolume = 0;
    for (const Tick& tick : ticks) {
        EXPECT_TRUE(tick.side == 1 || tick.side == -1);
        EXPECT_EQ(tick.volume % feed.GetSecurity(kFirstStockId + 3).lotSize, 0);
        totalVolume += tick.volume;
        auto [it, fresh] = rebuilt.try_emplace(
            tick.time / 60, Candle{tick.time / 60, tick.price, tick.price, tick.price, tick.price, 0});
        Candle& c = it->second;
        c.high = std::max(c.high, tick.price);
        c.low = std::min(c.low, tick.price);
        c.close = tick.price;
        c.volume += tick.volume;
        (void)fresh;
    }
    for (const Candle& candle : candles) {
        const Candle& expected = rebuilt.at(candle.minute);
        EXPECT_EQ(candle.open, expected.open);
        EXPECT_EQ(candle.high, expected.high);
        EXPECT_EQ(candle.low, expected.low);
        EXPECT_EQ(candle.close, expected.close);
        EXPECT_EQ(candle.volume, expected.volume);
    }
    EXPECT_EQ(feed.GetQuote(kFirstStockId + 3).day.volume, totalVolume);
}

TEST(SimMarketDataOptions, BlackScholesMatchesTextbookValues)
{
    // S = K = 100, r = 5%, sigma = 20%, one year: call 10.4506, put 5.5735 (standard table values).
    EXPECT_NEAR(BlackScholesPrice(EnOptionRight::Call, 100, 100, 0.05, 0.2, 1.0), 10.4506, 1e-4);
    EXPECT_NEAR(BlackScholesPrice(EnOptionRight::Put, 100, 100, 0.05, 0.2, 1.0), 5.5735, 1e-4);
    // No volatility: the discounted intrinsic value, 110 - 100 e^-0.05 = 14.8771.
    EXPECT_NEAR(BlackScholesPrice(EnOptionRight::Call, 110, 100, 0.05, 0.0, 1.0), 14.8771, 1e-4);
    EXPECT_EQ(BlackScholesPrice(EnOptionRight::Put, 110, 100, 0.05, 0.0, 1.0), 0.0);
    EXPECT_EQ(BlackScholesPrice(EnOptionRight::Call, 0, 100, 0.05, 0.2, 1.0), 0.0);
}

TEST(SimMarketDataOptions, PricesRiseWithVolatility)
{
    for (EnOptionRight right : {EnOptionRight::Call, EnOptionRight::Put}) {
        for (double strike : {80.0, 100.0, 120.0}) {
            double previous = -1.0;
            for (double vol : {0.05, 0.1, 0.2, 0.4, 0.8}) {
                const double price = BlackScholesPrice(right, 100, strike, 0.02, vol, 0.25);
                EXPECT_GT(price, previous) << strike << " " << vol;
                previous = price;
            }
        }
    }
}

TEST(SimMarketDataOptions, ChainKeepsPutCallParityAsTheUnderlyingMoves)
{
    CVXSimMarketData feed(11);
    const unsigned long underlying = kFirstStockId + 1;
    const auto chain = feed.OptionChain(underlying);
    ASSERT_EQ(chain.size(), 20u);
    for (unsigned long id : chain)
        feed.Subscribe(id);
    for (int round = 0; round < 5; ++round) {
        for (int i = 0; i < 200; ++i)
            feed.Step();
        const double spot = feed.GetQuote(underlying).last;
        // Calls and puts come in pairs of the same strike and expiry.
        for (std::size_t i = 0; i + 1 < chain.size(); i += 2) {
            const SecurityInfo call = feed.GetSecurity(chain[i]);
            const SecurityInfo put = feed.GetSecurity(chain[i + 1]);
            ASSERT_EQ(call.right, EnOptionRight::Call);
            ASSERT_EQ(put.right, EnOptionRight::Put);
            ASSERT_EQ(call.strike, put.strike);
            const double forward = spot - call.strike * std::exp(-kRiskFreeRate * call.expiryDays / 365.0);
            EXPECT_NEAR(feed.OptionTheoreticalPrice(call.id) - feed.OptionTheoreticalPrice(put.id), forward,
                        1e-9);
            // Traded prices are rounded to 0.001 and never below one tick.
            EXPECT_NEAR(feed.GetQuote(call.id).last - feed.GetQuote(put.id).last, forward, 0.0025);
            CheckSecuritySanity(feed, call.id);
            CheckSecuritySanity(feed, put.id);
        }
    }
}

TEST(SimMarketDataSubscription, OnlySubscribedSecuritiesMoveWithReferenceCounts)
{
    CVXSimMarketData feed(3);
    const unsigned long a = kFirstStockId, b = kFirstStockId + 5;
    const std::string idleBefore = feed.SnapshotBytes(b);

    EXPECT_TRUE(feed.Subscribe(a));
    EXPECT_TRUE(feed.Subscribe(a));
    EXPECT_EQ(feed.SubscriptionCount(a), 2);
    feed.Step();
    EXPECT_EQ(feed.GetQuote(a).day.tradeCount, 1);
    EXPECT_EQ(feed.SnapshotBytes(b), idleBefore);

    EXPECT_TRUE(feed.Unsubscribe(a));
    feed.Step();
    EXPECT_EQ(feed.GetQuote(a).day.tradeCount, 2) << "one reference left keeps it moving";
    EXPECT_TRUE(feed.Unsubscribe(a));
    EXPECT_EQ(feed.SubscriptionCount(a), 0);
    const std::string stopped = feed.SnapshotBytes(a);
    feed.Step();
    EXPECT_EQ(feed.SnapshotBytes(a), stopped);

    vxtest::ExpectError("CVXSimMarketData::Unsubscribe: security");
    EXPECT_FALSE(feed.Unsubscribe(a));
    vxtest::ExpectError("CVXSimMarketData::Subscribe: unknown security");
    EXPECT_FALSE(feed.Subscribe(424242));
    vxtest::ExpectError("CVXSimMarketData::GetQuote: unknown security");
    EXPECT_EQ(feed.GetQuote(424242).id, 0u);
    vxtest::ExpectError("CVXSimMarketData::SnapshotBytes: unknown security");
    EXPECT_TRUE(feed.SnapshotBytes(424242).empty());
}

TEST(SimMarketDataSubscription, AnOptionKeepsItsUnderlyingMovingUntilReleased)
{
    CVXSimMarketData feed(3);
    const unsigned long option = feed.OptionChain(kFirstEtfId).front();
    feed.Subscribe(option);
    feed.Step();
    EXPECT_EQ(feed.GetQuote(kFirstEtfId).day.tradeCount, 1);
    EXPECT_EQ(feed.SubscriptionCount(kFirstEtfId), 0) << "the caller did not subscribe the underlying";
    feed.Unsubscribe(option);
    feed.Step();
    EXPECT_EQ(feed.GetQuote(kFirstEtfId).day.tradeCount, 1);
    EXPECT_EQ(feed.GetQuote(option).day.tradeCount, 1);
}

TEST(SimMarketDataBus, StepSendsExactlyTheChangedIds)
{
    CVXSimMarketData feed(8);
    int messages = 0;
    std::set<unsigned long> lastIds, lastFields;
    const int tag = 0;
    core::__CMessageDispatch::Instance().Bind(
        CVXSimMarketData::kMsgStockDataUpdate,
        [&](unsigned int, unsigned long long, const core::CMessageBody& body) {
            ++messages;
            ASSERT_NE(body.p1(), 0u);
            ASSERT_NE(body.p2(), 0u);
            lastIds =
                *reinterpret_cast<const std::set<unsigned long>*>(static_cast<std::uintptr_t>(body.p1()));
            lastFields =
                *reinterpret_cast<const std::set<unsigned long>*>(static_cast<std::uintptr_t>(body.p2()));
        },
        &tag);

    feed.Step();
    EXPECT_EQ(messages, 0) << "nothing subscribed, nothing sent";

    const auto chain = feed.OptionChain(kFirstStockId + 1);
    ASSERT_FALSE(chain.empty());
    const unsigned long option = chain.back();
    feed.Subscribe(kIndexId);
    feed.Subscribe(kFirstStockId + 7);
    feed.Subscribe(option);
    for (int round = 0; round < 3; ++round) {
        std::map<unsigned long, std::string> before;
        for (const SecurityInfo& info : feed.Securities())
            before[info.id] = feed.SnapshotBytes(info.id);
        feed.Step();
        std::set<unsigned long> changed;
        for (const SecurityInfo& info : feed.Securities()) {
            if (feed.SnapshotBytes(info.id) != before[info.id])
                changed.insert(info.id);
        }
        EXPECT_EQ(messages, round + 1);
        EXPECT_EQ(lastIds, changed);
        EXPECT_EQ(lastIds, (std::set<unsigned long>{kIndexId, kFirstStockId + 1, kFirstStockId + 7, option}));
        EXPECT_TRUE(lastFields.count(kFieldPrice));
        EXPECT_TRUE(lastFields.count(kFieldBook));
    }
    core::__CMessageDispatch::Instance().UnBindAll(&tag);
}

TEST(SimMarketDataBus, WarmUpGivesEverySecurityHistoryWithoutAMessage)
{
    CVXSimMarketData feed(8);
    int messages = 0;
    const int tag = 0;
    core::__CMessageDispatch::Instance().Bind(
        CVXSimMarketData::kMsgStockDataUpdate,
        [&](unsigned int, unsigned long long, const core::CMessageBody&) { ++messages; }, &tag);

    feed.WarmUp(30 * 60);
    EXPECT_EQ(messages, 0);
    EXPECT_EQ(feed.Time(), CVXSimMarketData::kOpenTime + 30 * 60);
    for (const SecurityInfo& info : feed.Securities()) {
        // One trade a second from 09:30:01 to 10:00:00: minutes 09:30 .. 10:00.
        const std::vector<Candle> candles = feed.GetCandles(info.id);
        ASSERT_EQ(candles.size(), 31u) << info.code;
        EXPECT_EQ(candles.front().minute, 9 * 60 + 30);
        EXPECT_EQ(feed.GetQuote(info.id).day.tradeCount, 30 * 60) << info.code;
    }
    // Nothing is subscribed after the warm-up: a step moves nothing and says nothing.
    feed.Step();
    EXPECT_EQ(messages, 0);
    core::__CMessageDispatch::Instance().UnBindAll(&tag);
}

TEST(SimMarketDataBus, TimerStepsUntilStopped)
{
    CVXSimMarketData feed(8);
    feed.Subscribe(kFirstStockId);
    int messages = 0;
    const int tag = 0;
    core::__CMessageDispatch::Instance().Bind(
        CVXSimMarketData::kMsgStockDataUpdate,
        [&](unsigned int, unsigned long long, const core::CMessageBody&) { ++messages; }, &tag);
    feed.Start(0);
    EXPECT_FALSE(feed.IsRunning());
    feed.Start(1);
    EXPECT_TRUE(feed.IsRunning());
    EXPECT_TRUE(QTest::qWaitFor([&] { return messages >= 3; }, 5000));
    feed.Stop();
    EXPECT_FALSE(feed.IsRunning());
    const int stoppedAt = messages;
    QTest::qWait(20);
    EXPECT_EQ(messages, stoppedAt);
    EXPECT_EQ(feed.GetQuote(kFirstStockId).day.tradeCount, stoppedAt);
    core::__CMessageDispatch::Instance().UnBindAll(&tag);
}

TEST(SimMarketDataSnapshot, BytesParseBackIntoTheSameValues)
{
    CVXSimMarketData feed(21);
    const unsigned long id = kFirstStockId + 4;
    feed.Subscribe(id);
    for (int i = 0; i < 25; ++i)
        feed.Step();
    vx_md_pb::MarketSnapshot snapshot;
    ASSERT_TRUE(snapshot.ParseFromString(feed.SnapshotBytes(id)));
    const SecurityInfo info = feed.GetSecurity(id);
    const Quote quote = feed.GetQuote(id);
    const OrderBook book = feed.GetOrderBook(id);
    EXPECT_EQ(snapshot.id(), id);
    EXPECT_EQ(snapshot.code(), info.code);
    EXPECT_EQ(snapshot.name(), info.name);
    EXPECT_EQ(snapshot.market(), info.market);
    EXPECT_EQ(snapshot.time(), CVXSimMarketData::kOpenTime + 25);
    EXPECT_EQ(snapshot.last(), quote.last);
    EXPECT_EQ(snapshot.prev_close(), info.prevClose);
    EXPECT_EQ(snapshot.open(), quote.day.open);
    EXPECT_EQ(snapshot.high(), quote.day.high);
    EXPECT_EQ(snapshot.low(), quote.day.low);
    EXPECT_EQ(snapshot.volume(), quote.day.volume);
    EXPECT_EQ(snapshot.turnover(), quote.day.turnover);
    ASSERT_EQ(snapshot.bids_size(), static_cast<int>(book.bids.size()));
    ASSERT_EQ(snapshot.asks_size(), static_cast<int>(book.asks.size()));
    EXPECT_EQ(snapshot.asks_size(), 10);
    for (int i = 0; i < snapshot.asks_size(); ++i) {
        EXPECT_EQ(snapshot.asks(i).price(), book.asks[i].price);
        EXPECT_EQ(snapshot.asks(i).volume(), book.asks[i].volume);
        ASSERT_EQ(snapshot.asks(i).brokers_size(), static_cast<int>(book.asks[i].brokers.size()));
        for (int j = 0; j < snapshot.asks(i).brokers_size(); ++j)
            EXPECT_EQ(snapshot.asks(i).brokers(j), book.asks[i].brokers[j]);
    }
    for (int i = 0; i < snapshot.bids_size(); ++i) {
        EXPECT_EQ(snapshot.bids(i).price(), book.bids[i].price);
        EXPECT_EQ(snapshot.bids(i).volume(), book.bids[i].volume);
    }
}
