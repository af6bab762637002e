// The shared visibility tracker behind the cards' exposure reports.

#include "UIFrame/VisibilityTracker.h"

#include <QWidget>

#include <gtest/gtest.h>

#include <memory>
#include <vector>

TEST(VisibilityTracker, ReportsEachChangeOnceIncludingThoseCausedByTheParent)
{
    CVXVisibilityTracker& tracker = CVXVisibilityTracker::Instance();
    const int watchedBefore = tracker.WatchedCount();
    std::vector<bool> seen;
    auto parent = std::make_unique<QWidget>();
    auto* child = new QWidget(parent.get());
    tracker.Watch(child, [&seen](bool visible) { seen.push_back(visible); });
    EXPECT_TRUE(tracker.IsWatched(child));
    EXPECT_EQ(tracker.WatchedCount(), watchedBefore + 1);

    parent->show();
    parent->show();
    child->hide();
    child->show();
    parent->hide();
    EXPECT_EQ(seen, (std::vector<bool>{true, false, true, false}));

    tracker.Unwatch(child);
    parent->show();
    EXPECT_EQ(seen.size(), 4u);
    EXPECT_FALSE(tracker.IsWatched(child));

    // A destroyed widget is forgotten without Unwatch.
    tracker.Watch(child, [&seen](bool visible) { seen.push_back(visible); });
    parent.reset();
    EXPECT_EQ(tracker.WatchedCount(), watchedBefore);
}
