// A box's own geometry: hit testing of edges, corners and the title strip, the cursor of each
// hit position, the clamping of a resize against the box's limits and the box border.

#include "UIFrame/PanelBox/PanelBoxGeometry.h"

#include <gtest/gtest.h>

using namespace panelbox_geometry;

namespace {

// The hit bits as the box declares them: title 1, left 2, right 4, top 8, bottom 16.
enum : int
{
    None = 0,
    Title = 1,
    Left = 2,
    Right = 4,
    Top = 8,
    Bottom = 16,
};

TEST(PanelBoxHitTest, WorkedExamplesInA300By200Box)
{
    const QSize box(300, 200);
    struct Row
    {
        QPoint point;
        int expected;
    };
    const Row rows[] = {
        {{3, 3}, Top + Left},         // 10
        {{150, 20}, Title},           // 1
        {{150, 40}, None},            // 0
        {{296, 196}, Bottom + Right}, // 20
        {{150, 8}, Top},              // the top band reaches y 8 ...
        {{7, 100}, Left},             // ... the left band only x 7
        {{8, 100}, None},
        {{296, 3}, Top + Right},   // 12
        {{3, 196}, Bottom + Left}, // 18
        {{150, 9}, Title},         // below the top band, inside the title strip
        {{150, 31}, Title},
        {{150, 32}, None},
        {{150, 193}, Bottom}, // 200 - 7
        {{150, 192}, None},
        {{293, 100}, Right}, // 300 - 7
        {{292, 100}, None},
        {{7, 20}, Left}, // an edge wins over the title strip
        {{293, 8}, Top + Right},
    };
    for (const Row& row : rows)
        EXPECT_EQ(HitTest(box, row.point), row.expected) << row.point.x() << "," << row.point.y();
}

TEST(PanelBoxHitTest, CursorOfEachHitPosition)
{
    EXPECT_EQ(CursorForHitPos(None), Qt::ArrowCursor);
    EXPECT_EQ(CursorForHitPos(Title), Qt::ArrowCursor);
    EXPECT_EQ(CursorForHitPos(Left), Qt::SizeHorCursor);
    EXPECT_EQ(CursorForHitPos(Right), Qt::SizeHorCursor);
    EXPECT_EQ(CursorForHitPos(Top), Qt::SizeVerCursor);
    EXPECT_EQ(CursorForHitPos(Bottom), Qt::SizeVerCursor);
    EXPECT_EQ(CursorForHitPos(Top + Left), Qt::SizeFDiagCursor);
    EXPECT_EQ(CursorForHitPos(Bottom + Right), Qt::SizeFDiagCursor);
    EXPECT_EQ(CursorForHitPos(Top + Right), Qt::SizeBDiagCursor);
    EXPECT_EQ(CursorForHitPos(Bottom + Left), Qt::SizeBDiagCursor);
}

TEST(PanelBoxSizeTest, CardSizeAddBoxBorder)
{
    EXPECT_EQ(CardSizeAddBoxBorder(QSize(200, 100)), QSize(202, 133));
    EXPECT_EQ(CardSizeAddBoxBorder(QSize(50, 50)), QSize(52, 83));
    EXPECT_EQ(CardSizeAddBoxBorder(QSize(5000, 5000)), QSize(5002, 5033));
    EXPECT_EQ(CardSizeAddBoxBorder(QSize(0, 0)), QSize(2, 33));
    // No limit stays no limit, whatever negative number said so.
    EXPECT_EQ(CardSizeAddBoxBorder(QSize(-1, 100)), QSize(-1, 133));
    EXPECT_EQ(CardSizeAddBoxBorder(QSize(300, -1)), QSize(302, -1));
    EXPECT_EQ(CardSizeAddBoxBorder(QSize(-5, -7)), QSize(-1, -1));
}

// A single card of minimum 200 x 100 gives the box a minimum of 202 x 133; no maximum.
const QSize kMin(202, 133);
const QSize kNoLimit(-1, -1);

TEST(PanelBoxSizeTest, ShrinkStopsAtTheMinimumWithTheOppositeEdgeFixed)
{
    const QRect current(10, 10, 300, 200); // 10..309 x 10..209

    // Right edge dragged to width 150: the width becomes 202, the left edge stays at 10.
    EXPECT_EQ(AdjustRectByDrag(QRect(10, 10, 150, 200), current, Right, kMin, kNoLimit),
              QRect(10, 10, 202, 200));
    // Left edge dragged to 160 (width 150): the right edge stays at 309, left = 309 - 202 + 1.
    EXPECT_EQ(AdjustRectByDrag(QRect(160, 10, 150, 200), current, Left, kMin, kNoLimit),
              QRect(108, 10, 202, 200));
    // Bottom edge dragged up to height 50: 133 high from the top 10.
    EXPECT_EQ(AdjustRectByDrag(QRect(10, 10, 300, 50), current, Bottom, kMin, kNoLimit),
              QRect(10, 10, 300, 133));
    // Top-left corner dragged in on both axes: right 309 and bottom 209 stay.
    EXPECT_EQ(AdjustRectByDrag(QRect(250, 180, 60, 30), current, Top + Left, kMin, kNoLimit),
              QRect(QPoint(108, 77), QPoint(309, 209)));
    // Within the limits nothing changes.
    EXPECT_EQ(AdjustRectByDrag(QRect(10, 10, 250, 150), current, Bottom + Right, kMin, kNoLimit),
              QRect(10, 10, 250, 150));
}

TEST(PanelBoxSizeTest, BoxAlreadyBelowItsMinimumKeepsItsWidthButMayGrow)
{
    const QRect narrow(10, 10, 180, 200); // narrower than 202 already

    // Shrinking further keeps the current width, it does not snap up to the minimum.
    EXPECT_EQ(AdjustRectByDrag(QRect(10, 10, 170, 200), narrow, Right, kMin, kNoLimit),
              QRect(10, 10, 180, 200));
    EXPECT_EQ(AdjustRectByDrag(QRect(30, 10, 160, 200), narrow, Left, kMin, kNoLimit),
              QRect(10, 10, 180, 200));
    // Growing, still below the minimum, is allowed as proposed.
    EXPECT_EQ(AdjustRectByDrag(QRect(10, 10, 190, 200), narrow, Right, kMin, kNoLimit),
              QRect(10, 10, 190, 200));
}

TEST(PanelBoxSizeTest, MaximumLikewise)
{
    const QSize max(500, 400);
    // From 450 wide, dragged to 600: held at 500.
    EXPECT_EQ(AdjustRectByDrag(QRect(0, 0, 600, 300), QRect(0, 0, 450, 300), Right, kMin, max),
              QRect(0, 0, 500, 300));
    // Already 550 wide (above the maximum): growing to 600 keeps 550, shrinking to 520 is allowed.
    EXPECT_EQ(AdjustRectByDrag(QRect(0, 0, 600, 300), QRect(0, 0, 550, 300), Right, kMin, max),
              QRect(0, 0, 550, 300));
    EXPECT_EQ(AdjustRectByDrag(QRect(0, 0, 520, 300), QRect(0, 0, 550, 300), Right, kMin, max),
              QRect(0, 0, 520, 300));
    // Top edge of a 300 high box dragged up to height 700 with the bottom at 599: 400 high,
    // top = 599 - 400 + 1.
    EXPECT_EQ(AdjustRectByDrag(QRect(QPoint(0, -100), QPoint(299, 599)), QRect(0, 300, 300, 300), Top, kMin,
                               QSize(500, 400)),
              QRect(QPoint(0, 200), QPoint(299, 599)));
    // Negative limits are no limits.
    EXPECT_EQ(
        AdjustRectByDrag(QRect(0, 0, 20, 9000), QRect(0, 0, 300, 300), Bottom + Right, kNoLimit, kNoLimit),
        QRect(0, 0, 20, 9000));
}

} // namespace
