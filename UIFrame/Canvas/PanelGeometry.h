#pragma once

// The canvas's geometry rules as plain functions on rectangles (inclusive convention:
// right = left + width - 1). No widgets: the canvas and the boxes delegate here.

#include "UIFrame/UIFrameExport.h"

#include <QPoint>
#include <QRect>
#include <QSize>
#include <QVector>

namespace panel_geometry {

inline constexpr int kEdgeMargin = 4;       // first placement point, margin around boxes
inline constexpr int kScanStep = 4;         // raster step of the placement search
inline constexpr int kNeighbourOffset = 5;  // right + 5 / bottom + 5 leaves a 4 px gap
inline constexpr int kCascadeOffset = 50;   // fallback relative to the right-most box
inline constexpr int kSnapDistance = 14;    // an edge within 14 px snaps
inline constexpr int kSnapGap = 2;          // both rectangles widened by 2 per side
inline constexpr int kWallDepth = 50000;    // the half-planes left of and above the view

// Placement: the top-left for a new box of `size` among `boxes` on a first page of
// pageWidth x pageHeight (the scroll area's page steps). Never fails: falls back to the cascade
// point next to the right-most box, or (4, 4) on an empty canvas. Same result as the plain raster
// scan over every candidate point, found much faster.
UIFRAME_EXPORT QPoint FindPlacement(const QVector<QRect>& boxes, const QSize& size, int pageWidth, int pageHeight);

// Edge snap of `proposed` against `target` (outside: boxes and walls; false shrinks the target by
// the gap instead of widening it). `pressRect` tells a move (same size) from a resize. Does nothing
// unless all three rectangles are valid.
UIFRAME_EXPORT void SnapEdges(const QRect& target, QRect& proposed, const QRect& pressRect, bool outside);
UIFRAME_EXPORT QRect LeftWall(const QRect& visible);
UIFRAME_EXPORT QRect TopWall(const QRect& visible);

// The bounding rectangle of the boxes with its left and top moved out by 4 px; QRect() (0,0 to
// -1,-1) when there are none.
UIFRAME_EXPORT QRect ItemsRect(const QVector<QRect>& boxes);

// What the canvas does to follow its boxes: shift every box, set new scroll values, resize the
// content. `changed` false means nothing at all is to be done.
struct ExtentUpdate
{
    bool changed = false;
    QPoint shift;     // added to every box's position
    int h = 0;        // new horizontal scroll value
    int v = 0;        // new vertical scroll value
    QSize contentSize;
};
UIFRAME_EXPORT ExtentUpdate ComputeExtent(const QRect& items, int h, int v, int pageWidth, int pageHeight,
                                          const QSize& currentContentSize);

} // namespace panel_geometry
