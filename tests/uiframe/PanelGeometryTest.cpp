// The canvas's geometry rules: placement (worked examples and a comparison with the plain raster
// search on thousands of random canvases), edge snapping against boxes and walls, the items'
// rectangle and the extent arithmetic. Expected values are worked out by hand in the comments.

#include "UIFrame/Canvas/PanelGeometry.h"

#include "tests/reference/PlacementReference.h"

#include <gtest/gtest.h>

#include <random>

using namespace panel_geometry;

namespace {

// ---------------------------------------------------------------------------------------------
// Placement: one example per step of the search.

TEST(PanelPlacementTest, EachStepOfTheSearchOnWorkedExamples)
{
    // An empty canvas starts at the margin, whatever the page; also when the box is larger than
    // the page (nothing fits, and with no boxes the fallback is (4, 4) as well).
    EXPECT_EQ(FindPlacement({}, QSize(200, 100), 800, 600), QPoint(4, 4));
    EXPECT_EQ(FindPlacement({}, QSize(900, 700), 800, 600), QPoint(4, 4));

    // Right of a box: A covers 4..103, so (108, 4) leaves pixels 104..107 free: a 4 px gap.
    const QRect a(4, 4, 100, 100);
    EXPECT_EQ(FindPlacement({a}, QSize(100, 100), 800, 600), QPoint(108, 4));

    // The right-hand candidates are tried in (top, left) order: A's (108, 4) meets B widened to
    // 106..., B's own (214, 4) fits. B comes first in the input to show that the order is sorted.
    const QRect b(110, 4, 100, 100);
    EXPECT_EQ(FindPlacement({b, a}, QSize(100, 100), 800, 600), QPoint(214, 4));

    // Below a box: on a 210 px page A's right-hand candidate (208, 4) would end at 307, so the
    // candidate under A, (4, 104 + 4), is taken.
    const QRect wide(4, 4, 200, 100);
    EXPECT_EQ(FindPlacement({wide}, QSize(100, 50), 210, 600), QPoint(4, 108));

    // The raster: L (widened 0..47 x 0..299) and T (widened 42..299 x 0..47) leave a free corner
    // at (48, 48). L's (48, 4) meets T, T's (300, 4) leaves the page, L's (4, 300) too, T's
    // (46, 48) meets L. The rows 4..44 all meet T; row 48 is free from column 48.
    const QRect left(4, 4, 40, 292);
    const QRect top(46, 4, 250, 40);
    EXPECT_EQ(FindPlacement({left, top}, QSize(50, 50), 300, 300), QPoint(48, 48));
}

TEST(PanelPlacementTest, PageWideBoxFitsAtTheMarginAndOnePixelMoreCascades)
{
    // On an 800 px page a box 797 wide spans 4..800 and fits; 798 spans 4..801 and fits nowhere,
    // so it goes 50/50 past the only box.
    const QVector<QRect> boxes{QRect(4, 300, 100, 100)};
    EXPECT_EQ(FindPlacement(boxes, QSize(797, 100), 800, 600), QPoint(4, 4));
    EXPECT_EQ(FindPlacement(boxes, QSize(798, 100), 800, 600), QPoint(54, 350));
}

TEST(PanelPlacementTest, CascadeFollowsTheRightMostBoxAndThenTheLowest)
{
    // Nothing fits on a 100 x 100 page for a 200 x 200 box. Two boxes share the greatest left
    // (300); the lower one (top 80) wins: (350, 130).
    const QVector<QRect> boxes{QRect(10, 10, 20, 20), QRect(300, 80, 10, 10), QRect(300, 5, 10, 10),
                               QRect(250, 500, 5, 5)};
    EXPECT_EQ(FindPlacement(boxes, QSize(200, 200), 100, 100), QPoint(350, 130));

    // A full page (a grid of boxes whose gaps are too narrow) cascades from its last column and
    // lowest row: (4 + 19 * 96 + 50, 4 + 9 * 108 + 50).
    EXPECT_EQ(FindPlacement(placement_reference::DenseGrid(20, 10), QSize(150, 100), 1920, 1080),
              QPoint(1878, 1026));
}

// Random canvases of every density. Boxes come from four sources: scattered anywhere (also off
// the page and overlapping), filled by repeated placement (dense pages that need the raster),
// grids with narrow gaps, and a free corner that only the raster finds. Sizes include boxes
// larger than the page and tiny ones.
class RandomCanvas
{
public:
    explicit RandomCanvas(unsigned seed) : m_random(seed) {}

    int Between(int low, int high) { return std::uniform_int_distribution<int>(low, high)(m_random); }

    QRect ScatteredBox(int pageWidth, int pageHeight)
    {
        return QRect(Between(-40, pageWidth + 20), Between(-40, pageHeight + 20), Between(1, 160),
                     Between(1, 120));
    }

    QSize NewBoxSize(int pageWidth, int pageHeight)
    {
        switch (Between(0, 9)) {
        case 0: // larger than the page
            return QSize(pageWidth + Between(-3, 40), pageHeight + Between(-3, 40));
        case 1: // tiny
            return QSize(Between(1, 6), Between(1, 6));
        default:
            return QSize(Between(8, 220), Between(8, 160));
        }
    }

private:
    std::mt19937 m_random;
};

// Also counts the answers that only the raster can give, to show that the cases reach it.
::testing::AssertionResult SameAsReference(const QVector<QRect>& boxes, const QSize& size, int pageWidth,
                                           int pageHeight, int* raster)
{
    const QPoint expected = placement_reference::PlainRasterPlacement(boxes, size, pageWidth, pageHeight);
    const QPoint actual = FindPlacement(boxes, size, pageWidth, pageHeight);
    if (actual != expected) {
        return ::testing::AssertionFailure()
               << "page " << pageWidth << "x" << pageHeight << ", size " << size.width() << "x"
               << size.height() << ", " << boxes.size() << " boxes: expected (" << expected.x() << ", "
               << expected.y() << "), got (" << actual.x() << ", " << actual.y() << ")";
    }
    const auto isNeighbour = [&](const QPoint& p) {
        for (const QRect& box : boxes) {
            if (p == QPoint(box.right() + 5, box.top()) || p == QPoint(box.left(), box.bottom() + 5))
                return true;
        }
        return p == QPoint(4, 4);
    };
    if (!isNeighbour(expected) && placement_reference::Fits(boxes, expected, size, pageWidth, pageHeight))
        ++*raster;
    return ::testing::AssertionSuccess();
}

TEST(PanelPlacementTest, SameAsThePlainRasterSearchOnRandomCanvases)
{
    RandomCanvas random(20240611u);
    int raster = 0;
    int cases = 0;

    // Scattered boxes, pages from empty to 420 x 320, including pages smaller than the box.
    for (int i = 0; i < 2500; ++i) {
        const int pageWidth = random.Between(0, 420);
        const int pageHeight = random.Between(0, 320);
        QVector<QRect> boxes;
        const int count = random.Between(0, 30);
        for (int n = 0; n < count; ++n)
            boxes.append(random.ScatteredBox(pageWidth, pageHeight));
        ASSERT_TRUE(
            SameAsReference(boxes, random.NewBoxSize(pageWidth, pageHeight), pageWidth, pageHeight, &raster));
        ++cases;
    }

    // Pages filled box by box with the reference's own answers until they overflow.
    for (int page = 0; page < 60; ++page) {
        const int pageWidth = random.Between(150, 600);
        const int pageHeight = random.Between(120, 400);
        QVector<QRect> boxes;
        for (int n = 0; n < 40; ++n) {
            const QSize size(random.Between(20, 140), random.Between(20, 110));
            ASSERT_TRUE(SameAsReference(boxes, size, pageWidth, pageHeight, &raster));
            ++cases;
            boxes.append(
                QRect(placement_reference::PlainRasterPlacement(boxes, size, pageWidth, pageHeight), size));
        }
    }

    // Grids with gaps just too narrow or just wide enough, with random holes.
    for (int i = 0; i < 300; ++i) {
        const int pitchX = random.Between(30, 80);
        const int pitchY = random.Between(30, 80);
        const int gapX = random.Between(2, 12);
        const int gapY = random.Between(2, 12);
        const int pageWidth = random.Between(200, 500);
        const int pageHeight = random.Between(150, 400);
        QVector<QRect> boxes;
        for (int y = random.Between(0, 8); y < pageHeight; y += pitchY) {
            for (int x = random.Between(0, 8); x < pageWidth; x += pitchX) {
                if (random.Between(0, 9) != 0)
                    boxes.append(QRect(x, y, pitchX - gapX, pitchY - gapY));
            }
        }
        const QSize size(random.Between(4, 2 * pitchX), random.Between(4, 2 * pitchY));
        ASSERT_TRUE(SameAsReference(boxes, size, pageWidth, pageHeight, &raster));
        ++cases;
    }

    // A column on the left and a row along the top, at most 4 px apart so that neither box's
    // neighbour candidate fits: the free corner is found by the raster, at a column and row that
    // depend on the rounding to the 4 px step. Some scattered boxes in the free part add variety.
    for (int i = 0; i < 600; ++i) {
        const int pageWidth = random.Between(150, 500);
        const int pageHeight = random.Between(150, 400);
        const QRect column(4, 4, random.Between(10, 80), pageHeight - 3 - random.Between(0, 3));
        const int rowLeft = column.right() + random.Between(1, 4);
        const QRect row(rowLeft, 4, pageWidth - rowLeft + 1 - random.Between(0, 3), random.Between(10, 80));
        QVector<QRect> boxes{column, row};
        const int extra = random.Between(0, 2) == 0 ? random.Between(1, 6) : 0;
        for (int n = 0; n < extra; ++n)
            boxes.append(random.ScatteredBox(pageWidth, pageHeight));
        ASSERT_TRUE(SameAsReference(boxes, QSize(random.Between(4, 150), random.Between(4, 150)), pageWidth,
                                    pageHeight, &raster));
        ++cases;
    }

    EXPECT_EQ(cases, 2500 + 60 * 40 + 300 + 600);
    // The raster phase decided a good share of them (it is the part with its own algorithm).
    EXPECT_GT(raster, 500);
}

TEST(PanelPlacementTest, SameAsThePlainRasterSearchForDegenerateRectangles)
{
    // Zero and negative extents follow QRect::intersects exactly: a null rectangle (0 x 0) meets
    // nothing, a zero-width one still meets a wider one that reaches past it on both sides, and
    // a negative extent is normalised.
    RandomCanvas random(7u);
    int raster = 0;
    for (int i = 0; i < 1500; ++i) {
        const int pageWidth = random.Between(0, 200);
        const int pageHeight = random.Between(0, 160);
        QVector<QRect> boxes;
        const int count = random.Between(0, 12);
        for (int n = 0; n < count; ++n) {
            boxes.append(QRect(random.Between(-20, pageWidth), random.Between(-20, pageHeight),
                               random.Between(-12, 60), random.Between(-12, 60)));
        }
        const QSize size(random.Between(-10, 80), random.Between(-10, 80));
        ASSERT_TRUE(SameAsReference(boxes, size, pageWidth, pageHeight, &raster));
    }
    // Hand-picked: an 8 x 8 widened null box is skipped only when both extents are -8.
    ASSERT_TRUE(SameAsReference({QRect(QPoint(10, 10), QSize(-8, -8))}, QSize(0, 0), 50, 50, &raster));
    ASSERT_TRUE(SameAsReference({QRect(QPoint(4, 4), QSize(-8, -8))}, QSize(10, 10), 50, 50, &raster));
    ASSERT_TRUE(SameAsReference({QRect(4, 4, 0, 40)}, QSize(0, 10), 50, 50, &raster));
}

// ---------------------------------------------------------------------------------------------
// Edge snap. Target A covers 100..199 in both axes; widened by the 2 px gap it is 98..201.

const QRect kTarget(100, 100, 100, 100);

// `box` after a snap against `target` in a move or resize that started at `atPress`.
static QRect SnappedMove(const QRect& target, QRect box, const QRect& atPress)
{
    SnapEdges(target, box, atPress, true);
    return box;
}

TEST(PanelSnapTest, MoveSnapsAtFourteenAndNotAtFifteen)
{
    // B moved to start at 217 (a 17 px gap): widened left 215, 14 from A's widened right 201 ->
    // widened left becomes 202, B starts at 204 leaving 200..203 free (4 px); the width is kept.
    EXPECT_EQ(SnappedMove(kTarget, QRect(217, 100, 80, 100), QRect(400, 100, 80, 100)),
              QRect(204, 100, 80, 100));

    // At 218 the widened edges are 15 apart: nothing happens.
    EXPECT_EQ(SnappedMove(kTarget, QRect(218, 100, 80, 100), QRect(400, 100, 80, 100)),
              QRect(218, 100, 80, 100));

    // The same from the left: B ending at 82 is 14 from A's widened left (84 vs 98) and ends at 95.
    EXPECT_EQ(SnappedMove(kTarget, QRect(3, 100, 80, 100), QRect(0, 300, 80, 100)), QRect(16, 100, 80, 100));

    // Below A: B's widened top 215 is 14 from 201 -> B starts at 204; its left (105, widened 103)
    // is then aligned with A's left (98 widened): B starts at x 100.
    EXPECT_EQ(SnappedMove(kTarget, QRect(105, 217, 100, 60), QRect(105, 400, 100, 60)),
              QRect(100, 204, 100, 60));

    // Above A: B's widened bottom 86 is 12 from 98 -> B ends at 95.
    EXPECT_EQ(SnappedMove(kTarget, QRect(100, 25, 100, 60), QRect(100, 0, 100, 60)), QRect(100, 36, 100, 60));
}

TEST(PanelSnapTest, AlignmentAfterASideSnapWithBottomOverTop)
{
    // Same height, 10 px lower: after the side snap the top (108 vs 98 widened) aligns.
    EXPECT_EQ(SnappedMove(kTarget, QRect(217, 110, 80, 100), QRect(400, 110, 80, 100)),
              QRect(204, 100, 80, 100));

    // 90 high at 108: widened 106..199. The top aligns first (98..191), then the bottom is 10
    // from 201 and aligns too, moving the box to 108..201 widened: bottom alignment wins, the
    // box ends at A's bottom (199) instead of starting at A's top.
    EXPECT_EQ(SnappedMove(kTarget, QRect(217, 108, 80, 90), QRect(400, 108, 80, 90)),
              QRect(204, 110, 80, 90));

    // Without a side snap there is no alignment: 40 px to the right, 5 px lower stays put.
    EXPECT_EQ(SnappedMove(kTarget, QRect(240, 105, 80, 100), QRect(400, 105, 80, 100)),
              QRect(240, 105, 80, 100));

    // Vertical overlap is required for a side snap: entirely below A (widened top 228 is not
    // above A's widened bottom 201) the left edge 14 from A's right does not snap.
    EXPECT_EQ(SnappedMove(kTarget, QRect(217, 230, 80, 100), QRect(400, 230, 80, 100)),
              QRect(217, 230, 80, 100));
}

TEST(PanelSnapTest, ResizeMovesOnlyTheSnappedEdge)
{
    // The left edge was dragged from 230 to 217 (the size differs from the press-time size):
    // only the left edge snaps to 204, the right edge stays at 296.
    QRect resized(217, 100, 80, 100);
    SnapEdges(kTarget, resized, QRect(230, 100, 67, 100), true);
    EXPECT_EQ(resized.left(), 204);
    EXPECT_EQ(resized.right(), 296);
    EXPECT_EQ(resized.top(), 100);
    EXPECT_EQ(resized.bottom(), 199);

    // Bottom edge dragged down to 290 under a box below: B's widened bottom 292 is 8 from the
    // target's widened top 300 -> bottom 297, top unchanged.
    EXPECT_EQ(SnappedMove(QRect(100, 302, 100, 100), QRect(100, 100, 100, 191), QRect(100, 100, 100, 150)),
              QRect(QPoint(100, 100), QPoint(199, 297)));
}

TEST(PanelSnapTest, InsideTargetShrinksByTheGapAndInvalidInputIsIgnored)
{
    // Inside: A shrunk to 102..197. B starting at 211 (widened 209, 12 from 197) moves to a
    // widened left of 198: B starts at 200, touching A. Its widened top 98 is 4 from 102 ->
    // 102..205; the widened bottom 205 is 8 from 197 -> 94..197: B ends up at 96..195.
    QRect touching(211, 100, 80, 100);
    SnapEdges(kTarget, touching, QRect(400, 100, 80, 100), false);
    EXPECT_EQ(touching, QRect(200, 96, 80, 100));

    // Any invalid rectangle: nothing at all.
    QRect untouched(217, 100, 80, 100);
    SnapEdges(QRect(), untouched, QRect(400, 100, 80, 100), true);
    SnapEdges(kTarget, untouched, QRect(), true);
    EXPECT_EQ(untouched, QRect(217, 100, 80, 100));
    EXPECT_EQ(SnappedMove(kTarget, QRect(QPoint(217, 100), QPoint(200, 199)), QRect(400, 100, 80, 100)),
              QRect(QPoint(217, 100), QPoint(200, 199)));
}

TEST(PanelSnapTest, WallsKeepABoxFourPixelsInsideTheVisibleArea)
{
    const QRect visible(0, 0, 800, 600);
    EXPECT_EQ(LeftWall(visible), QRect(QPoint(-50000, -50000), QPoint(-1, 50599)));
    EXPECT_EQ(TopWall(visible), QRect(QPoint(-50000, -50000), QPoint(50799, -1)));
    const QRect scrolled(120, 300, 800, 600);
    EXPECT_EQ(LeftWall(scrolled), QRect(QPoint(-49880, -49700), QPoint(119, 50899)));
    EXPECT_EQ(TopWall(scrolled), QRect(QPoint(-49880, -49700), QPoint(50919, 299)));

    // At x 17 the widened left (15) is 14 from the wall's widened right (1): the box settles at 4.
    EXPECT_EQ(SnappedMove(LeftWall(visible), QRect(17, 300, 100, 100), QRect(60, 300, 100, 100)),
              QRect(4, 300, 100, 100));
    EXPECT_EQ(SnappedMove(LeftWall(visible), QRect(18, 300, 100, 100), QRect(60, 300, 100, 100)),
              QRect(18, 300, 100, 100));

    // A box dragged past the top edge (y -6) comes back to 4.
    EXPECT_EQ(SnappedMove(TopWall(visible), QRect(300, -6, 100, 100), QRect(300, 60, 100, 100)),
              QRect(300, 4, 100, 100));
}

// ---------------------------------------------------------------------------------------------
// Items' rectangle and extent.

TEST(PanelExtentTest, ItemsRectIsTheBoundsWithTheMarginLeftAndTop)
{
    const QRect none = ItemsRect({});
    EXPECT_EQ(none.left(), 0);
    EXPECT_EQ(none.top(), 0);
    EXPECT_EQ(none.right(), -1);
    EXPECT_EQ(none.bottom(), -1);

    EXPECT_EQ(ItemsRect({QRect(10, 20, 30, 40), QRect(100, 5, 50, 50)}),
              QRect(QPoint(6, 1), QPoint(149, 59)));
    EXPECT_EQ(ItemsRect({QRect(-30, 8, 10, 10)}), QRect(QPoint(-34, 4), QPoint(-21, 17)));
}

TEST(PanelExtentTest, EmptyCanvasIsAsLargeAsThePage)
{
    const ExtentUpdate first = ComputeExtent(ItemsRect({}), 0, 0, 800, 600, QSize(0, 0));
    EXPECT_TRUE(first.changed);
    EXPECT_EQ(first.contentSize, QSize(800, 600));
    EXPECT_EQ(first.shift, QPoint(0, 0));
    EXPECT_EQ(first.h, 0);
    EXPECT_EQ(first.v, 0);

    const ExtentUpdate again = ComputeExtent(ItemsRect({}), 0, 0, 800, 600, QSize(800, 600));
    EXPECT_FALSE(again.changed);
}

TEST(PanelExtentTest, EachCaseOfBothAxes)
{
    // Start < 0 horizontally (a box dragged to x -26, items from -30): everything moves right by
    // 30 and h grows by 30, so nothing moves on screen; far edge 500 + 30, width max(830, 531).
    // Vertically the top 10 is beyond v = 0: shift -0, v 0, far edge 400, height max(600, 401).
    ExtentUpdate u = ComputeExtent(QRect(QPoint(-30, 10), QPoint(500, 400)), 0, 0, 800, 600, QSize(800, 600));
    EXPECT_TRUE(u.changed);
    EXPECT_EQ(u.shift, QPoint(30, 0));
    EXPECT_EQ(u.h, 30);
    EXPECT_EQ(u.v, 0);
    EXPECT_EQ(u.contentSize, QSize(830, 600));

    // Start beyond the value on both axes: L 200 > h 100 -> shift -100, h 0, far 900, width
    // max(800, 901); T 150 > v 50 -> shift -50, v 0, far 650, height max(600, 651).
    u = ComputeExtent(QRect(QPoint(200, 150), QPoint(1000, 700)), 100, 50, 800, 600, QSize(1000, 700));
    EXPECT_TRUE(u.changed);
    EXPECT_EQ(u.shift, QPoint(-100, -50));
    EXPECT_EQ(u.h, 0);
    EXPECT_EQ(u.v, 0);
    EXPECT_EQ(u.contentSize, QSize(901, 651));

    // Start 0 on both axes: no shift, values kept, far edges R and B.
    u = ComputeExtent(QRect(QPoint(0, 0), QPoint(500, 300)), 30, 0, 800, 600, QSize(800, 600));
    EXPECT_TRUE(u.changed);
    EXPECT_EQ(u.shift, QPoint(0, 0));
    EXPECT_EQ(u.h, 30);
    EXPECT_EQ(u.v, 0);
    EXPECT_EQ(u.contentSize, QSize(830, 600));
}

TEST(PanelExtentTest, ThirdCaseDiffersBetweenTheAxes)
{
    // Scrolled past the items' start on both axes, L = T = 40, h = v = 100, R = B = 900.
    // Horizontal: shift -40, h 100 - 40 = 60, far 900 - 100 = 800 -> width max(800 + 60, 801).
    // Vertical:   shift -40, v = T = 40,     far 900 - 100 = 800 -> height max(600 + 40, 801).
    ExtentUpdate u =
        ComputeExtent(QRect(QPoint(40, 40), QPoint(900, 900)), 100, 100, 800, 600, QSize(1000, 1000));
    EXPECT_TRUE(u.changed);
    EXPECT_EQ(u.shift, QPoint(-40, -40));
    EXPECT_EQ(u.h, 60);
    EXPECT_EQ(u.v, 40);
    EXPECT_EQ(u.contentSize, QSize(860, 801));

    // At the boundary start == value (100): h becomes 0, v becomes 100.
    u = ComputeExtent(QRect(QPoint(100, 100), QPoint(400, 400)), 100, 100, 800, 600, QSize(1000, 1000));
    EXPECT_TRUE(u.changed);
    EXPECT_EQ(u.shift, QPoint(-100, -100));
    EXPECT_EQ(u.h, 0);
    EXPECT_EQ(u.v, 100);
    EXPECT_EQ(u.contentSize, QSize(800, 700));
}

TEST(PanelExtentTest, NothingIsDoneWhenTheWantedSizeIsTheCurrentOne)
{
    // The first case would shift by 30, but the content already has the wanted 830 x 600.
    const ExtentUpdate u =
        ComputeExtent(QRect(QPoint(-30, 10), QPoint(500, 400)), 0, 0, 800, 600, QSize(830, 600));
    EXPECT_FALSE(u.changed);
    EXPECT_EQ(u.shift, QPoint(0, 0));
    EXPECT_EQ(u.h, 0);
    EXPECT_EQ(u.v, 0);
    EXPECT_EQ(u.contentSize, QSize(830, 600));
}

} // namespace
