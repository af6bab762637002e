// The demo cards' base: which securities it keeps moving in the feed, which updates it passes
// on, and the number formats every card shares. Real feed, real bus, real canvas linkage.

#include "apps/Workspace/Cards/WorkspaceCardBase.h"
#include "apps/Workspace/Cards/WorkspaceContext.h"
#include "apps/Workspace/MarketData/SimMarketData.h"

#include "tests/common/TestSupport.h"
#include "tests/workspace/WorkspaceTestSupport.h"

#include <gtest/gtest.h>

#include <memory>

using vx_ws::CVXWorkspaceCardBase;

namespace {

class CCountingCard : public CVXWorkspaceCardBase
{
public:
    using CVXWorkspaceCardBase::CVXWorkspaceCardBase;
    using CVXWorkspaceCardBase::SetExtraSubscriptions;

    int updates = 0;
    std::vector<unsigned long> shown;

protected:
    void OnMarketDataChanged(const std::set<unsigned long>&) override { ++updates; }
    void OnShownStockChanged(unsigned long id) override { shown.push_back(id); }
};

class WorkspaceCardBaseTest : public workspace_test::CFeedTest
{
protected:
    WorkspaceCardBaseTest() : CFeedTest(7) {}
};

} // namespace

TEST_F(WorkspaceCardBaseTest, KeepsItsSecuritiesSubscribedOnceAndReleasesThem)
{
    {
        CCountingCard card(CardPos_PanelBox);
        EXPECT_EQ(card.ShownStockID(), vx_ws::kDefaultStockID);
        EXPECT_EQ(feed.SubscriptionCount(vx_ws::kDefaultStockID), 1);

        card.SetStockID(1003);
        EXPECT_EQ(feed.SubscriptionCount(vx_ws::kDefaultStockID), 0);
        EXPECT_EQ(feed.SubscriptionCount(1003), 1);
        EXPECT_EQ(card.shown, std::vector<unsigned long>{1003});

        // Extra ids: duplicates and unknown ids are dropped; a new set replaces the old one.
        card.SetExtraSubscriptions({1005, 1005, 999999, 1006});
        EXPECT_EQ(card.SubscribedIDs(), (std::vector<unsigned long>{1003, 1005, 1006}));
        card.SetExtraSubscriptions({1006, 1007});
        EXPECT_EQ(feed.SubscriptionCount(1005), 0);
        EXPECT_EQ(feed.SubscriptionCount(1006), 1);
        EXPECT_EQ(feed.SubscriptionCount(1007), 1);

        // An id the feed does not know is kept as the stock id but holds no subscription.
        card.SetStockID(424242);
        EXPECT_EQ(card.ShownStockID(), 424242u);
        EXPECT_EQ(feed.SubscriptionCount(1003), 0);
    }
    EXPECT_EQ(feed.SubscriptionCount(1006), 0);
    EXPECT_EQ(feed.SubscriptionCount(1007), 0);
}

TEST_F(WorkspaceCardBaseTest, PassesOnOnlyUpdatesOfWatchedSecuritiesWithoutReloadingTheStock)
{
    CCountingCard card(CardPos_PanelBox);
    card.SetStockID(1002);
    card.shown.clear();
    CCountingCard other(CardPos_PanelBox);
    other.SetStockID(1010);

    feed.Step(); // both move: each card hears about its own security
    EXPECT_EQ(card.updates, 1);
    EXPECT_EQ(other.updates, 1);
    // The base card would reload through a 0-and-back stock change; the demo card does not.
    EXPECT_TRUE(card.shown.empty());
    EXPECT_EQ(card.GetStockID(), 1002u);

    other.SetStockID(1011);
    card.updates = 0;
    other.updates = 0;
    std::set<unsigned long> changed{1010};
    std::set<unsigned long> fields{1};
    card.OnStockDataUpdate(changed, fields);
    other.OnStockDataUpdate(changed, fields);
    EXPECT_EQ(card.updates, 0);
    EXPECT_EQ(other.updates, 0);
}

TEST(WorkspaceCardFormats, PricesPercentagesVolumesAndTimes)
{
    EXPECT_EQ(CVXWorkspaceCardBase::FormatPrice(12.5, 0.01), QStringLiteral("12.50"));
    EXPECT_EQ(CVXWorkspaceCardBase::FormatPrice(3.1, 0.001), QStringLiteral("3.100"));
    EXPECT_EQ(CVXWorkspaceCardBase::FormatPrice(250.0, 0.2), QStringLiteral("250.0"));
    EXPECT_EQ(CVXWorkspaceCardBase::FormatPrice(88.0, 1.0), QStringLiteral("88"));
    EXPECT_EQ(CVXWorkspaceCardBase::FormatPercent(0.0123), QStringLiteral("+1.23%"));
    EXPECT_EQ(CVXWorkspaceCardBase::FormatPercent(-0.005), QStringLiteral("-0.50%"));
    EXPECT_EQ(CVXWorkspaceCardBase::FormatPercent(0.00001), QStringLiteral("0.00%"));
    EXPECT_EQ(CVXWorkspaceCardBase::FormatVolume(1234), QStringLiteral("1,234"));
    EXPECT_EQ(CVXWorkspaceCardBase::FormatVolume(1234567), QStringLiteral("1.23M"));
    EXPECT_EQ(CVXWorkspaceCardBase::FormatVolume(2500000000LL), QStringLiteral("2.50B"));
    EXPECT_EQ(CVXWorkspaceCardBase::FormatTime(9 * 3600 + 30 * 60 + 5), QStringLiteral("09:30:05"));
}
