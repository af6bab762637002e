// The numbers behind the book cards: the order-book view, the broker queue, the watch-list rows
// and their sort, and the option chain. Hand-worked books and securities, plus the real seeded
// feed where the rows come from it.

#include "apps/Workspace/MarketData/SimMarketData.h"
#include "apps/Workspace/QuoteCards/BrokerQueueModel.h"
#include "apps/Workspace/QuoteCards/OptionChainModel.h"
#include "apps/Workspace/QuoteCards/OrderBookModel.h"
#include "apps/Workspace/QuoteCards/WatchlistModel.h"

#include "UIFrame/VariantMapTreeAccess.h"

#include "tests/common/TestSupport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

using namespace vx_ws;

namespace {

vx_md::BookLevel Level(double price, long long volume, std::vector<unsigned int> brokers = {})
{
    vx_md::BookLevel level;
    level.price = price;
    level.volume = volume;
    level.brokers = std::move(brokers);
    return level;
}

vx_md::SecurityInfo Option(unsigned long id, unsigned long underlying, vx_md::EnOptionRight right,
                           double strike, int expiry)
{
    vx_md::SecurityInfo info;
    info.id = id;
    info.kind = vx_md::EnSecurityKind::Option;
    info.underlyingId = underlying;
    info.right = right;
    info.strike = strike;
    info.expiryDays = expiry;
    return info;
}

} // namespace

TEST(BookCardsOrderBookModel, LevelsBarsSpreadAndBalanceOfAHandWorkedBook)
{
    vx_md::OrderBook book;
    book.bids = {Level(10.00, 300), Level(9.99, 600), Level(9.98, 100)};
    book.asks = {Level(10.02, 200), Level(10.03, 400), Level(10.04, 1200),
                 Level(10.05, 100), Level(10.06, 100), Level(10.07, 900)};

    const OrderBookView five = MakeOrderBookView(book, 5, 0.01);
    ASSERT_EQ(five.bids.size(), 3u);
    ASSERT_EQ(five.asks.size(), 5u); // the sixth ask is beyond the depth
    EXPECT_EQ(five.asks[0].level, 1);
    EXPECT_DOUBLE_EQ(five.asks[0].price, 10.02);
    EXPECT_EQ(five.bids[2].level, 3);
    EXPECT_DOUBLE_EQ(five.bids[2].price, 9.98);
    // One scale for both sides: the 1200 ask is the full bar.
    EXPECT_DOUBLE_EQ(five.asks[2].barFraction, 1.0);
    EXPECT_DOUBLE_EQ(five.bids[1].barFraction, 0.5);
    EXPECT_DOUBLE_EQ(five.bids[2].barFraction, 100.0 / 1200.0);
    EXPECT_TRUE(five.hasSpread);
    EXPECT_NEAR(five.spread, 0.02, 1e-9);
    EXPECT_EQ(five.spreadTicks, 2);
    EXPECT_EQ(five.bidVolume, 1000);
    EXPECT_EQ(five.askVolume, 2000);
    EXPECT_DOUBLE_EQ(five.imbalance, -1000.0 / 3000.0);
    EXPECT_DOUBLE_EQ(five.bidShare, 1.0 / 3.0);

    // Ten levels take in the 900 ask; the largest bar stays the 1200 one.
    const OrderBookView ten = MakeOrderBookView(book, 10, 0.01);
    EXPECT_EQ(ten.asks.size(), 6u);
    EXPECT_EQ(ten.askVolume, 2900);
    EXPECT_DOUBLE_EQ(ten.asks[5].barFraction, 0.75);

    // Other depths become the nearest offered one.
    EXPECT_EQ(NormalizeOrderBookDepth(1), 5);
    EXPECT_EQ(NormalizeOrderBookDepth(7), 5);
    EXPECT_EQ(NormalizeOrderBookDepth(8), 10);
    EXPECT_EQ(NormalizeOrderBookDepth(40), 10);
}

TEST(BookCardsOrderBookModel, OneSidedAndEmptyBooksHaveNoSpreadAndANeutralBalance)
{
    vx_md::OrderBook bidsOnly;
    bidsOnly.bids = {Level(5.0, 100)};
    const OrderBookView oneSided = MakeOrderBookView(bidsOnly, 5, 0.01);
    EXPECT_FALSE(oneSided.hasSpread);
    EXPECT_DOUBLE_EQ(oneSided.imbalance, 1.0);
    EXPECT_DOUBLE_EQ(oneSided.bidShare, 1.0);
    EXPECT_DOUBLE_EQ(oneSided.bids[0].barFraction, 1.0);

    const OrderBookView empty = MakeOrderBookView(vx_md::OrderBook(), 10, 0.01);
    EXPECT_TRUE(empty.bids.empty());
    EXPECT_TRUE(empty.asks.empty());
    EXPECT_FALSE(empty.hasSpread);
    EXPECT_DOUBLE_EQ(empty.imbalance, 0.0);
    EXPECT_DOUBLE_EQ(empty.bidShare, 0.5);
}

TEST(BookCardsBrokerQueue, MarkersPrecedeTheirBrokersAndTheQueueIsCutWhereItStopsFitting)
{
    const std::vector<vx_md::BookLevel> levels = {Level(10.0, 1, {11, 12}), Level(9.9, 1, {}),
                                                  Level(9.8, 1, {31, 32, 33})};
    const auto describe = [](const std::vector<BrokerQueueCell>& cells) {
        std::vector<std::pair<int, unsigned int>> out; // (level, broker or 0 for a marker)
        for (const BrokerQueueCell& c : cells) {
            EXPECT_EQ(c.isMarker, c.broker == 0u);
            out.emplace_back(c.level, c.broker);
        }
        return out;
    };
    using Cells = std::vector<std::pair<int, unsigned int>>;
    // A level without brokers has no marker either.
    EXPECT_EQ(describe(MakeBrokerQueue(levels, 20)),
              (Cells{{1, 0}, {1, 11}, {1, 12}, {3, 0}, {3, 31}, {3, 32}, {3, 33}}));
    EXPECT_EQ(describe(MakeBrokerQueue(levels, 5)), (Cells{{1, 0}, {1, 11}, {1, 12}, {3, 0}, {3, 31}}));
    // One free cell is no room for a marker and a broker: the queue ends with level 1.
    EXPECT_EQ(describe(MakeBrokerQueue(levels, 4)), (Cells{{1, 0}, {1, 11}, {1, 12}}));
    EXPECT_EQ(describe(MakeBrokerQueue(levels, 2)), (Cells{{1, 0}, {1, 11}}));
    EXPECT_TRUE(MakeBrokerQueue(levels, 1).empty());
    EXPECT_TRUE(MakeBrokerQueue(levels, 0).empty());
    EXPECT_TRUE(MakeBrokerQueue({}, 10).empty());
}

TEST(BookCardsBrokerQueue, ShortNamesAreStablePerNumberAndTellNeighboursApart)
{
    std::set<QString> names;
    for (unsigned int broker = 1000; broker < 1016; ++broker) {
        const QString name = BrokerShortName(broker);
        EXPECT_FALSE(name.isEmpty());
        EXPECT_LE(name.size(), 4);
        EXPECT_EQ(name, BrokerShortName(broker));
        names.insert(name);
    }
    EXPECT_EQ(names.size(), 16u);
}

class BookCardsWatchlistModel : public ::testing::Test
{
protected:
    void SetUp() override
    {
        for (unsigned long id : {1000ul, 1001ul, 1002ul, 1003ul, 1004ul, 500ul})
            feed.Subscribe(id);
        for (int i = 0; i < 30; ++i)
            feed.Step();
    }

    // The ids in order of the change the feed reports, largest first; ties keep list order.
    std::vector<unsigned long> ByFeedChange(std::vector<unsigned long> ids) const
    {
        const auto change = [this](unsigned long id) {
            const vx_md::Quote q = feed.GetQuote(id);
            return (q.last - q.prevClose) / q.prevClose;
        };
        std::stable_sort(ids.begin(), ids.end(),
                         [&](unsigned long a, unsigned long b) { return change(a) > change(b); });
        return ids;
    }

    static std::vector<unsigned long> Shown(const CVXWatchlistModel& model)
    {
        std::vector<unsigned long> ids;
        for (const auto& row : model.Rows())
            ids.push_back(row.id);
        return ids;
    }

    vx_md::CVXSimMarketData feed{11};
};

TEST_F(BookCardsWatchlistModel, RowsCarryTheFeedsValuesAndSortCyclesDescendingAscendingNone)
{
    CVXWatchlistModel model;
    const std::vector<unsigned long> list{1000, 1001, 1002, 1003, 1004, 500};
    model.SetIDs(list, &feed);
    ASSERT_EQ(model.Rows().size(), list.size());
    const CVXWatchlistModel::Row& first = model.Rows()[0];
    EXPECT_EQ(first.code, QString::fromStdString(feed.GetSecurity(1000).code));
    EXPECT_DOUBLE_EQ(first.last, feed.GetQuote(1000).last);
    EXPECT_EQ(first.volume, feed.GetQuote(1000).day.volume);
    EXPECT_GT(first.volume, 0);

    const std::vector<unsigned long> descending = ByFeedChange(list);
    ASSERT_NE(descending, list) << "the seed should move the rows out of list order";
    model.CycleSort(CVXWatchlistModel::EnColumn::ChangePercent);
    EXPECT_EQ(model.SortOrder(), CVXWatchlistModel::EnSortOrder::Descending);
    EXPECT_EQ(Shown(model), descending);

    model.CycleSort(CVXWatchlistModel::EnColumn::ChangePercent);
    EXPECT_EQ(model.SortOrder(), CVXWatchlistModel::EnSortOrder::Ascending);
    EXPECT_EQ(Shown(model), std::vector<unsigned long>(descending.rbegin(), descending.rend()));

    model.CycleSort(CVXWatchlistModel::EnColumn::ChangePercent);
    EXPECT_EQ(model.SortColumn(), CVXWatchlistModel::EnColumn::None);
    EXPECT_EQ(Shown(model), list);

    // Another column starts again at descending; the feed moving re-sorts on refresh.
    model.CycleSort(CVXWatchlistModel::EnColumn::ChangePercent);
    model.CycleSort(CVXWatchlistModel::EnColumn::Volume);
    EXPECT_EQ(model.SortColumn(), CVXWatchlistModel::EnColumn::Volume);
    EXPECT_EQ(model.SortOrder(), CVXWatchlistModel::EnSortOrder::Descending);
    for (std::size_t i = 1; i < model.Rows().size(); ++i)
        EXPECT_GE(model.Rows()[i - 1].volume, model.Rows()[i].volume);
    model.SetSort(CVXWatchlistModel::EnColumn::ChangePercent, CVXWatchlistModel::EnSortOrder::Descending);
    for (int i = 0; i < 20; ++i)
        feed.Step();
    model.Refresh(&feed);
    EXPECT_EQ(Shown(model), ByFeedChange(list));
}

TEST_F(BookCardsWatchlistModel, AddingAndRemovingKeepsTheListFreeOfDuplicatesAndUnknownIds)
{
    CVXWatchlistModel model;
    EXPECT_EQ(model.IDs(), CVXWatchlistModel::DefaultIDs());
    EXPECT_EQ(model.IDs().size(), 19u);
    model.SetIDs({1003, 1001, 1003, 1002}, &feed);
    EXPECT_EQ(model.IDs(), (std::vector<unsigned long>{1003, 1001, 1002}));

    EXPECT_FALSE(model.Add(1001, &feed));
    EXPECT_FALSE(model.Add(987654, &feed));
    EXPECT_TRUE(model.Add(1030, &feed));
    EXPECT_EQ(model.RowOf(1030), 3);
    EXPECT_TRUE(model.Remove(1001, &feed));
    EXPECT_FALSE(model.Remove(1001, &feed));
    EXPECT_EQ(model.IDs(), (std::vector<unsigned long>{1003, 1002, 1030}));
    EXPECT_EQ(model.RowOf(1001), -1);

    // Without a feed an id cannot be checked: it is kept and shows no values, sorted last.
    CVXWatchlistModel offline;
    offline.SetIDs({1000, 1001}, nullptr);
    EXPECT_TRUE(offline.Add(555555, nullptr));
    offline.Refresh(&feed);
    offline.SetSort(CVXWatchlistModel::EnColumn::Last, CVXWatchlistModel::EnSortOrder::Ascending);
    EXPECT_FALSE(offline.Rows().back().known);
    EXPECT_EQ(offline.Rows().back().id, 555555u);
}

TEST_F(BookCardsWatchlistModel, SavedStateRoundTripsAndMalformedStateIsRefusedWhole)
{
    CVXWatchlistModel model;
    model.SetIDs({1004, 500, 1002}, &feed);
    model.SetSort(CVXWatchlistModel::EnColumn::Name, CVXWatchlistModel::EnSortOrder::Ascending);
    CVXVariantMapTree saved;
    model.Save(&saved);

    CVXWatchlistModel restored;
    ASSERT_TRUE(restored.Restore(saved, &feed));
    EXPECT_EQ(restored.IDs(), (std::vector<unsigned long>{1004, 500, 1002}));
    EXPECT_EQ(restored.SortColumn(), CVXWatchlistModel::EnColumn::Name);
    EXPECT_EQ(restored.SortOrder(), CVXWatchlistModel::EnSortOrder::Ascending);
    EXPECT_EQ(Shown(restored), Shown(model));

    // A tree without a list (a card saved before it had one) leaves the model as it is.
    EXPECT_TRUE(restored.Restore(CVXVariantMapTree(), &feed));
    EXPECT_EQ(restored.IDs().size(), 3u);

    struct Case
    {
        const char* name;
        CVXVariantMapTree tree;
        const char* log;
    };
    std::vector<Case> cases;
    {
        CVXVariantMapTree t;
        t.Set<QVector<qlonglong>>(QStringLiteral("IDs"), {1000, -4});
        cases.push_back({"negative id", t, "bad security id -4"});
    }
    {
        CVXVariantMapTree t;
        t.Set<QVector<qlonglong>>(QStringLiteral("IDs"), {1000});
        t.Set<int>(QStringLiteral("SortColumn"), 9);
        cases.push_back({"unknown column", t, "bad sort column 9"});
    }
    {
        CVXVariantMapTree t;
        t.Set<QVector<qlonglong>>(QStringLiteral("IDs"), {1000});
        t.Set<int>(QStringLiteral("SortOrder"), 3);
        cases.push_back({"unknown order", t, "or order 3"});
    }
    {
        CVXVariantMapTree t;
        t.Set<QString>(QStringLiteral("IDs"), QStringLiteral("1000,1001"));
        cases.push_back({"list of the wrong type", t, "not a list of numbers"});
    }
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_FALSE(restored.Restore(c.tree, &feed));
        EXPECT_TRUE(vxtest::HasLog(c.log));
        EXPECT_EQ(restored.IDs(), (std::vector<unsigned long>{1004, 500, 1002}));
        EXPECT_EQ(restored.SortColumn(), CVXWatchlistModel::EnColumn::Name);
    }
}

TEST(BookCardsOptionChainModel, PairsCallsAndPutsByStrikeWithinEachExpiry)
{
    using R = vx_md::EnOptionRight;
    vx_md::SecurityInfo stock;
    stock.id = 7;
    std::vector<vx_md::SecurityInfo> securities{
        stock,
        Option(21, 7, R::Put, 11.0, 90),
        Option(11, 7, R::Call, 10.0, 30),
        Option(12, 7, R::Put, 10.0, 30),
        Option(13, 7, R::Call, 9.0, 30),        // no put at 9
        Option(14, 8, R::Call, 10.0, 30),       // another underlying
        Option(15, 7, R::Call, 10.0000001, 30), // the same strike after rounding: the first call stays
    };
    const OptionChain chain = MakeOptionChain(securities, 7);
    ASSERT_EQ(chain.expiries.size(), 2u);
    EXPECT_EQ(chain.expiries[0].expiryDays, 30);
    EXPECT_EQ(chain.expiries[1].expiryDays, 90);
    ASSERT_EQ(chain.expiries[0].rows.size(), 2u);
    EXPECT_DOUBLE_EQ(chain.expiries[0].rows[0].strike, 9.0);
    EXPECT_EQ(chain.expiries[0].rows[0].callId, 13u);
    EXPECT_EQ(chain.expiries[0].rows[0].putId, 0u);
    EXPECT_EQ(chain.expiries[0].rows[1].callId, 11u);
    EXPECT_EQ(chain.expiries[0].rows[1].putId, 12u);
    ASSERT_EQ(chain.expiries[1].rows.size(), 1u);
    EXPECT_EQ(chain.expiries[1].rows[0].putId, 21u);
    EXPECT_EQ(chain.OptionIDs(), (std::vector<unsigned long>{13, 11, 12, 21}));

    int expiry = -1;
    int row = -1;
    R right = R::None;
    ASSERT_TRUE(chain.Locate(12, &expiry, &row, &right));
    EXPECT_EQ(expiry, 0);
    EXPECT_EQ(row, 1);
    EXPECT_EQ(right, R::Put);
    EXPECT_FALSE(chain.Locate(14, &expiry, &row, &right));
    EXPECT_FALSE(chain.Locate(0, nullptr, nullptr, nullptr));
    EXPECT_EQ(chain.ExpiryIndex(90), 1);
    EXPECT_EQ(chain.ExpiryIndex(60), -1);

    EXPECT_TRUE(MakeOptionChain(securities, 9).IsEmpty());
    EXPECT_TRUE(MakeOptionChain(securities, 0).IsEmpty());
}

TEST(BookCardsOptionChainModel, InTheMoneyIsBelowTheSpotForCallsAndAboveItForPuts)
{
    using R = vx_md::EnOptionRight;
    EXPECT_TRUE(IsInTheMoney(R::Call, 9.5, 10.0));
    EXPECT_FALSE(IsInTheMoney(R::Call, 10.5, 10.0));
    EXPECT_FALSE(IsInTheMoney(R::Put, 9.5, 10.0));
    EXPECT_TRUE(IsInTheMoney(R::Put, 10.5, 10.0));
    // At the money, and without a price, neither side is.
    EXPECT_FALSE(IsInTheMoney(R::Call, 10.0, 10.0));
    EXPECT_FALSE(IsInTheMoney(R::Put, 10.0, 10.0));
    EXPECT_FALSE(IsInTheMoney(R::Put, 10.5, 0.0));
}

TEST(BookCardsOptionChainModel, TheFeedsChainsResolveFromTheUnderlyingOrAnyOfItsOptions)
{
    vx_md::CVXSimMarketData feed(11);
    for (unsigned long underlying : {500ul, 1000ul, 1001ul}) {
        SCOPED_TRACE(underlying);
        const std::vector<unsigned long> options = feed.OptionChain(underlying);
        ASSERT_FALSE(options.empty());
        EXPECT_EQ(OptionChainUnderlying(feed, underlying), underlying);
        EXPECT_EQ(OptionChainUnderlying(feed, options.back()), underlying);

        const OptionChain chain = MakeOptionChain(feed.Securities(), underlying);
        std::vector<unsigned long> listed = chain.OptionIDs();
        std::vector<unsigned long> expected = options;
        std::sort(listed.begin(), listed.end());
        std::sort(expected.begin(), expected.end());
        EXPECT_EQ(listed, expected);
        for (const OptionChainExpiry& expiry : chain.expiries) {
            for (const OptionChainRow& row : expiry.rows) {
                for (unsigned long id : {row.callId, row.putId}) {
                    ASSERT_NE(id, 0u) << "the feed lists a call and a put at every strike";
                    const vx_md::SecurityInfo info = feed.GetSecurity(id);
                    EXPECT_DOUBLE_EQ(info.strike, row.strike);
                    EXPECT_EQ(info.expiryDays, expiry.expiryDays);
                    EXPECT_EQ(info.right,
                              id == row.callId ? vx_md::EnOptionRight::Call : vx_md::EnOptionRight::Put);
                }
            }
        }
    }
    EXPECT_EQ(OptionChainUnderlying(feed, 1), 1u);
    EXPECT_TRUE(MakeOptionChain(feed.Securities(), 1).IsEmpty());
    vxtest::ExpectError("");
    EXPECT_EQ(OptionChainUnderlying(feed, 424242), 0u);
}
