#pragma once

// A box's own geometry rules as plain functions: hit testing of edges and title strip, the
// cursor of a hit position, and the clamping of a resize against the box's limits.

#include "UIFrame/UIFrameExport.h"

#include <QRect>
#include <QSize>

#include <Qt>

namespace panelbox_geometry {

// Hit position bits (CVXPanelBaseBox::HitPos) for a point in box coordinates. The top band is one
// pixel deeper than the left band (y <= 8 against x <= 7): intended.
UIFRAME_EXPORT int HitTest(const QSize& boxSize, const QPoint& local);
UIFRAME_EXPORT Qt::CursorShape CursorForHitPos(int hitPos);

// Per axis: a box already below its minimum may not shrink further but is not forced to grow;
// above its maximum likewise; the edge opposite the dragged one stays put. A negative limit means
// none.
UIFRAME_EXPORT QRect AdjustRectByDrag(const QRect& proposed, const QRect& current, int hitPos, const QSize& minSize,
                                      const QSize& maxSize);

// A card size plus the box border (2 x 33); a negative dimension stays -1 (no limit).
UIFRAME_EXPORT QSize CardSizeAddBoxBorder(const QSize& cardSize);

} // namespace panelbox_geometry
