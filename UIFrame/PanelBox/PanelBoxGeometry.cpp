#include "UIFrame/PanelBox/PanelBoxGeometry.h"

#include <QPoint>

#include <algorithm>

namespace panelbox_geometry {
namespace {

// The bits of CVXPanelBaseBox::HitPos, repeated here so that this unit needs no widget header.
constexpr int kHitTitle = 1;
constexpr int kHitLeft = 2;
constexpr int kHitRight = 4;
constexpr int kHitTop = 8;
constexpr int kHitBottom = 16;

constexpr int kTopBand = 8;     // y <= 8: one pixel deeper than the other bands
constexpr int kEdgeBand = 7;    // x <= 7, x >= W - 7, y >= H - 7
constexpr int kTitleDepth = 31; // y <= 31: the title strip moves the box

constexpr int kBorderWidth = 2;
constexpr int kBorderHeight = 33; // frame and title strip

// One axis of a resize clamp: the new extent for a proposed extent, the current one and the limits.
int ClampExtent(int proposed, int current, int minimum, int maximum)
{
    int extent = proposed;
    if (minimum >= 0 && extent < minimum)
        extent = current < minimum ? std::max(extent, current) : minimum;
    if (maximum >= 0 && extent > maximum)
        extent = current > maximum ? std::min(current, extent) : maximum;
    return extent;
}

} // namespace

int HitTest(const QSize& boxSize, const QPoint& local)
{
    int vertical = 0;
    if (local.y() <= kTopBand)
        vertical = kHitTop;
    else if (local.y() >= boxSize.height() - kEdgeBand)
        vertical = kHitBottom;

    if (local.x() <= kEdgeBand)
        return vertical + kHitLeft;
    if (local.x() >= boxSize.width() - kEdgeBand)
        return vertical + kHitRight;
    if (vertical != 0)
        return vertical;
    return local.y() <= kTitleDepth ? kHitTitle : 0;
}

Qt::CursorShape CursorForHitPos(int hitPos)
{
    switch (hitPos) {
    case kHitLeft:
    case kHitRight:
        return Qt::SizeHorCursor;
    case kHitTop:
    case kHitBottom:
        return Qt::SizeVerCursor;
    case kHitTop + kHitLeft:
    case kHitBottom + kHitRight:
        return Qt::SizeFDiagCursor;
    case kHitTop + kHitRight:
    case kHitBottom + kHitLeft:
        return Qt::SizeBDiagCursor;
    default:
        return Qt::ArrowCursor;
    }
}

QRect AdjustRectByDrag(const QRect& proposed, const QRect& current, int hitPos, const QSize& minSize,
                       const QSize& maxSize)
{
    QRect rect = proposed;
    const int width = ClampExtent(proposed.width(), current.width(), minSize.width(), maxSize.width());
    if (width != proposed.width()) {
        if (hitPos & kHitLeft)
            rect.setLeft(rect.right() - width + 1);
        else if (hitPos & kHitRight)
            rect.setRight(rect.left() + width - 1);
    }
    const int height = ClampExtent(proposed.height(), current.height(), minSize.height(), maxSize.height());
    if (height != proposed.height()) {
        if (hitPos & kHitTop)
            rect.setTop(rect.bottom() - height + 1);
        else if (hitPos & kHitBottom)
            rect.setBottom(rect.top() + height - 1);
    }
    return rect;
}

QSize CardSizeAddBoxBorder(const QSize& cardSize)
{
    return QSize(cardSize.width() < 0 ? -1 : cardSize.width() + kBorderWidth,
                 cardSize.height() < 0 ? -1 : cardSize.height() + kBorderHeight);
}

} // namespace panelbox_geometry
