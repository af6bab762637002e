#pragma once

// Small painting helpers the workspace cards share: fonts sized in pixels (the cards lay out in
// pixels), translucent shades of theme colours and elided cell text.

#include <QColor>
#include <QFont>
#include <QFontMetrics>
#include <QPainter>
#include <QRect>
#include <QString>

#include <algorithm>

namespace vx_ws::card_paint {

inline QColor WithAlpha(QColor color, int alpha)
{
    color.setAlpha(alpha);
    return color;
}

// `base` at `pixelSize` pixels, bold or not.
inline QFont PixelFont(const QFont& base, int pixelSize, bool bold = false)
{
    QFont font = base;
    font.setPixelSize(pixelSize);
    font.setBold(bold);
    return font;
}

// The card's font a pixel or two smaller, for labels and column titles.
inline QFont SmallerFont(const QFont& base, int delta = 1)
{
    QFont font = base;
    if (font.pixelSize() > 0)
        font.setPixelSize(std::max(8, font.pixelSize() - delta));
    else
        font.setPointSizeF(std::max(6.0, font.pointSizeF() - delta * 0.75));
    return font;
}

// Text in a cell with 3 px of padding, elided when it does not fit.
inline void DrawCellText(QPainter& painter, const QRect& cell, const QString& text, Qt::Alignment align,
                         const QColor& color)
{
    const QRect inner = cell.adjusted(3, 0, -3, 0);
    painter.setPen(color);
    const QString shown = painter.fontMetrics().elidedText(text, Qt::ElideRight, inner.width());
    painter.drawText(inner, static_cast<int>(align | Qt::AlignVCenter), shown);
}

} // namespace vx_ws::card_paint
