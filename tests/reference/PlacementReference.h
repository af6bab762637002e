#pragma once

// The plain placement search, written straight from the rule and kept deliberately naive: every
// candidate point is tried against every box with QRect::intersects. Tests compare the canvas's
// own search with it, and the benchmark measures the canvas's search against it.

#include <QPoint>
#include <QRect>
#include <QSize>
#include <QVector>

#include <algorithm>

namespace placement_reference {

// A top-left fits when the new box lies in the first page, at least 4 px from its left and top,
// and meets none of the boxes widened by 4 px on every side.
inline bool Fits(const QVector<QRect>& boxes, const QPoint& topLeft, const QSize& size, int pageWidth,
                 int pageHeight)
{
    const QRect candidate(topLeft, size);
    if (candidate.left() < 4 || candidate.top() < 4 || candidate.right() > pageWidth ||
        candidate.bottom() > pageHeight)
        return false;
    for (const QRect& box : boxes) {
        if (candidate.intersects(box.adjusted(-4, -4, 4, 4)))
            return false;
    }
    return true;
}

inline QPoint PlainRasterPlacement(const QVector<QRect>& boxes, const QSize& size, int pageWidth,
                                   int pageHeight)
{
    const auto fits = [&](int x, int y) { return Fits(boxes, QPoint(x, y), size, pageWidth, pageHeight); };

    if (fits(4, 4))
        return QPoint(4, 4);

    QVector<QRect> sorted = boxes;
    std::stable_sort(sorted.begin(), sorted.end(), [](const QRect& a, const QRect& b) {
        if (a.top() != b.top())
            return a.top() < b.top();
        return a.left() < b.left();
    });
    for (const QRect& box : sorted) {
        if (fits(box.right() + 5, box.top()))
            return QPoint(box.right() + 5, box.top());
    }
    for (const QRect& box : sorted) {
        if (fits(box.left(), box.bottom() + 5))
            return QPoint(box.left(), box.bottom() + 5);
    }

    for (int y = 4; y <= pageHeight; y += 4) {
        for (int x = 4; x <= pageWidth; x += 4) {
            if (fits(x, y))
                return QPoint(x, y);
        }
    }

    if (boxes.isEmpty())
        return QPoint(4, 4);
    QRect rightMost = boxes.front();
    for (const QRect& box : boxes) {
        if (box.left() > rightMost.left() || (box.left() == rightMost.left() && box.top() > rightMost.top()))
            rightMost = box;
    }
    return QPoint(rightMost.left() + 50, rightMost.top() + 50);
}

// A page full of boxes: a grid of 90 x 100 boxes on a 96 x 108 pitch leaves gaps of 6 and 8 px,
// too narrow for any box, so the search runs its whole raster before it falls back to the cascade.
inline QVector<QRect> DenseGrid(int columns, int rows)
{
    QVector<QRect> boxes;
    boxes.reserve(columns * rows);
    for (int row = 0; row < rows; ++row) {
        for (int column = 0; column < columns; ++column)
            boxes.append(QRect(4 + column * 96, 4 + row * 108, 90, 100));
    }
    return boxes;
}

} // namespace placement_reference
