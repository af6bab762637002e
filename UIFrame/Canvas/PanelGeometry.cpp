#include "UIFrame/Canvas/PanelGeometry.h"

#include <algorithm>
#include <cstdlib>
#include <vector>

namespace panel_geometry {
namespace {

using Coord = long long; // room for page + size sums without overflow

struct Interval
{
    Coord lo = 0;
    Coord hi = -1;
    bool Contains(Coord v) const { return lo <= v && v <= hi; }
};

// The pixels a rectangle covers along one axis as QRect::intersects sees them: a negative
// extent is normalised, a zero extent gives lo > hi (such a rectangle still meets wider ones
// that reach past it on both sides, and the search must agree with QRect on that).
Interval AxisOf(Coord start, Coord extent)
{
    const Coord end = start + extent - 1;
    return extent < 0 ? Interval{end, start} : Interval{start, end};
}

// The region of top-left candidates that a box (already widened by the margin) rules out for a
// new box of the given extent: along one axis, x blocks when [x + a, x + b] meets [lo, hi].
Interval BlockedStarts(const Interval& widened, Coord extent)
{
    const Coord a = extent < 0 ? extent - 1 : 0;
    const Coord b = extent < 0 ? 0 : extent - 1;
    return {widened.lo - b, widened.hi - a};
}

struct Region
{
    Interval x;
    Interval y;
};

// The smallest raster coordinate (4, 8, 12, ...) at or above v.
Coord RasterAtOrAbove(Coord v)
{
    if (v <= kEdgeMargin)
        return kEdgeMargin;
    return (v + kScanStep - 1) / kScanStep * kScanStep;
}

// The search over candidate top-lefts. A candidate is ruled out by a box when the new box would
// meet the box widened by the margin; each box becomes one rectangle of ruled-out top-lefts.
class PlacementSearch
{
public:
    PlacementSearch(const QVector<QRect>& boxes, const QSize& size, int pageWidth, int pageHeight)
        : m_size(size), m_pageWidth(pageWidth), m_pageHeight(pageHeight)
    {
        // QRect::intersects ignores null rectangles (0 x 0), the candidate's and the boxes'.
        if (size.width() == 0 && size.height() == 0)
            return;
        m_regions.reserve(size_t(boxes.size()));
        for (const QRect& box : boxes) {
            const Coord left = Coord(box.left()) - kEdgeMargin;
            const Coord top = Coord(box.top()) - kEdgeMargin;
            const Coord width = Coord(box.width()) + 2 * kEdgeMargin;
            const Coord height = Coord(box.height()) + 2 * kEdgeMargin;
            if (width == 0 && height == 0)
                continue;
            m_regions.push_back({BlockedStarts(AxisOf(left, width), size.width()),
                                 BlockedStarts(AxisOf(top, height), size.height())});
        }
    }

    bool Fits(Coord x, Coord y) const
    {
        if (x < kEdgeMargin || y < kEdgeMargin || x + m_size.width() - 1 > m_pageWidth ||
            y + m_size.height() - 1 > m_pageHeight)
            return false;
        return std::none_of(m_regions.begin(), m_regions.end(),
                            [&](const Region& r) { return r.x.Contains(x) && r.y.Contains(y); });
    }

    // The first raster point in row-major order that fits. The set of regions crossing a row
    // only changes where a region starts or ends, so only those rows are looked at; within a
    // row the sweep jumps past each blocking region to the next raster column.
    bool RasterScan(QPoint* found) const
    {
        const Coord xLast = std::min<Coord>(m_pageWidth, Coord(m_pageWidth) - m_size.width() + 1);
        const Coord yLast = std::min<Coord>(m_pageHeight, Coord(m_pageHeight) - m_size.height() + 1);
        if (xLast < kEdgeMargin || yLast < kEdgeMargin)
            return false;

        std::vector<Coord> rows{kEdgeMargin};
        rows.reserve(2 * m_regions.size() + 1);
        for (const Region& r : m_regions) {
            if (r.y.lo > r.y.hi)
                continue;
            rows.push_back(RasterAtOrAbove(r.y.lo));
            rows.push_back(RasterAtOrAbove(r.y.hi + 1));
        }
        std::sort(rows.begin(), rows.end());
        rows.erase(std::unique(rows.begin(), rows.end()), rows.end());

        std::vector<const Region*> byLeft;
        byLeft.reserve(m_regions.size());
        for (const Region& r : m_regions) {
            if (r.x.lo <= r.x.hi)
                byLeft.push_back(&r);
        }
        std::sort(byLeft.begin(), byLeft.end(),
                  [](const Region* a, const Region* b) { return a->x.lo < b->x.lo; });

        for (const Coord y : rows) {
            if (y > yLast)
                break;
            Coord x = kEdgeMargin;
            for (const Region* r : byLeft) {
                if (r->x.lo > x)
                    break; // sorted by left: nothing further covers x
                if (!r->y.Contains(y) || r->x.hi < x)
                    continue;
                x = (r->x.hi / kScanStep + 1) * kScanStep; // x >= 4 here, so hi > 0
                if (x > xLast)
                    break;
            }
            if (x <= xLast) {
                *found = QPoint(int(x), int(y));
                return true;
            }
        }
        return false;
    }

private:
    QSize m_size;
    int m_pageWidth;
    int m_pageHeight;
    std::vector<Region> m_regions;
};

} // namespace

QPoint FindPlacement(const QVector<QRect>& boxes, const QSize& size, int pageWidth, int pageHeight)
{
    const PlacementSearch search(boxes, size, pageWidth, pageHeight);
    if (search.Fits(kEdgeMargin, kEdgeMargin))
        return QPoint(kEdgeMargin, kEdgeMargin);

    // Stable, so that boxes with the same top-left keep the caller's order.
    QVector<QRect> sorted = boxes;
    std::stable_sort(sorted.begin(), sorted.end(), [](const QRect& a, const QRect& b) {
        return a.top() != b.top() ? a.top() < b.top() : a.left() < b.left();
    });
    for (const QRect& box : sorted) {
        const Coord x = Coord(box.right()) + kNeighbourOffset;
        if (search.Fits(x, box.top()))
            return QPoint(int(x), box.top());
    }
    for (const QRect& box : sorted) {
        const Coord y = Coord(box.bottom()) + kNeighbourOffset;
        if (search.Fits(box.left(), y))
            return QPoint(box.left(), int(y));
    }

    QPoint found;
    if (search.RasterScan(&found))
        return found;

    if (boxes.isEmpty())
        return QPoint(kEdgeMargin, kEdgeMargin);
    const QRect* last = &boxes.front();
    for (const QRect& box : boxes) {
        if (box.left() > last->left() || (box.left() == last->left() && box.top() > last->top()))
            last = &box;
    }
    return QPoint(last->left() + kCascadeOffset, last->top() + kCascadeOffset);
}

void SnapEdges(const QRect& target, QRect& proposed, const QRect& pressRect, bool outside)
{
    if (!target.isValid() || !proposed.isValid() || !pressRect.isValid())
        return;

    QRect w = proposed.adjusted(-kSnapGap, -kSnapGap, kSnapGap, kSnapGap);
    const QRect t = outside ? target.adjusted(-kSnapGap, -kSnapGap, kSnapGap, kSnapGap)
                            : target.adjusted(kSnapGap, kSnapGap, -kSnapGap, -kSnapGap);
    const QRect press = pressRect.adjusted(-kSnapGap, -kSnapGap, kSnapGap, kSnapGap);
    const bool move = w.width() == press.width() && w.height() == press.height();
    // Taken once: the overlap tests of both passes use the extent the drag proposed.
    const int width = w.width();
    const int height = w.height();
    const auto near = [](int a, int b) { return std::abs(a - b) <= kSnapDistance; };

    // On a move the opposite edge follows so that the size is kept; on a resize only this edge.
    const auto putLeft = [&](int v) { move ? w.moveLeft(v) : w.setLeft(v); };
    const auto putRight = [&](int v) { move ? w.moveRight(v) : w.setRight(v); };
    const auto putTop = [&](int v) { move ? w.moveTop(v) : w.setTop(v); };
    const auto putBottom = [&](int v) { move ? w.moveBottom(v) : w.setBottom(v); };

    if (w.top() > t.top() - height && w.top() < t.bottom()) {
        bool snapped = true;
        if (near(w.right(), t.left()))
            putRight(t.left() - 1);
        else if (near(w.left(), t.right()))
            putLeft(t.right() + 1);
        else
            snapped = false;
        if (snapped) {
            // Bottom second, so that it wins when both edges are in reach.
            if (near(w.top(), t.top()))
                putTop(t.top());
            if (near(w.bottom(), t.bottom()))
                putBottom(t.bottom());
        }
    }

    if (w.left() > t.left() - width && w.left() < t.right()) {
        bool snapped = true;
        if (near(w.bottom(), t.top()))
            putBottom(t.top() - 1);
        else if (near(t.bottom(), w.top()))
            putTop(t.bottom() + 1);
        else
            snapped = false;
        if (snapped) {
            if (near(w.left(), t.left()))
                putLeft(t.left());
            if (near(w.right(), t.right()))
                putRight(t.right());
        }
    }

    proposed = w.adjusted(kSnapGap, kSnapGap, -kSnapGap, -kSnapGap);
}

QRect LeftWall(const QRect& visible)
{
    return QRect(QPoint(visible.left() - kWallDepth, visible.top() - kWallDepth),
                 QPoint(visible.left() - 1, visible.bottom() + kWallDepth));
}

QRect TopWall(const QRect& visible)
{
    return QRect(QPoint(visible.left() - kWallDepth, visible.top() - kWallDepth),
                 QPoint(visible.right() + kWallDepth, visible.top() - 1));
}

QRect ItemsRect(const QVector<QRect>& boxes)
{
    if (boxes.isEmpty())
        return QRect();
    int left = boxes.front().left();
    int top = boxes.front().top();
    int right = boxes.front().right();
    int bottom = boxes.front().bottom();
    for (const QRect& box : boxes) {
        left = std::min(left, box.left());
        top = std::min(top, box.top());
        right = std::max(right, box.right());
        bottom = std::max(bottom, box.bottom());
    }
    return QRect(QPoint(left - kEdgeMargin, top - kEdgeMargin), QPoint(right, bottom));
}

namespace {

struct AxisExtent
{
    int shift = 0;
    int value = 0;
    int farEdge = 0;
};

// The first three cases of both axes; the vertical third case differs and is handled by the caller.
AxisExtent HorizontalAxis(int start, int end, int value)
{
    if (start < 0)
        return {-start, value - start, end - start};
    if (start > value)
        return {-value, 0, end - value};
    if (start != 0)
        return {-start, value - start, end - value};
    return {0, value, end};
}

AxisExtent VerticalAxis(int start, int end, int value)
{
    // Unlike the horizontal axis, the third case sets the value to the items' top itself.
    if (start < 0)
        return {-start, value - start, end - start};
    if (start > value)
        return {-value, 0, end - value};
    if (start != 0)
        return {-start, start, end - value};
    return {0, value, end};
}

} // namespace

ExtentUpdate ComputeExtent(const QRect& items, int h, int v, int pageWidth, int pageHeight,
                           const QSize& currentContentSize)
{
    const AxisExtent horizontal = HorizontalAxis(items.left(), items.right(), h);
    const AxisExtent vertical = VerticalAxis(items.top(), items.bottom(), v);
    const QSize wanted(std::max(pageWidth + horizontal.value, horizontal.farEdge + 1),
                       std::max(pageHeight + vertical.value, vertical.farEdge + 1));

    ExtentUpdate update;
    update.h = h;
    update.v = v;
    update.contentSize = currentContentSize;
    if (wanted == currentContentSize)
        return update;
    update.changed = true;
    update.shift = QPoint(horizontal.shift, vertical.shift);
    update.h = horizontal.value;
    update.v = vertical.value;
    update.contentSize = wanted;
    return update;
}

} // namespace panel_geometry
