#pragma once

// Paints a CVXTradeTableModel: header with sort marks, zebra-free rows with hover and selection
// bands, action cells as links, the totals row on a tinted band, dividers in theme colours.
// Reads the model's geometry; decides nothing.

#include <QColor>
#include <QFont>

class QPainter;

namespace vx_ws {

class CVXTradeTableModel;

struct TradeTableLook
{
    QFont font;
    QFont headerFont;
    QColor text;
    QColor secondaryText;
    QColor headerBackground;
    QColor divider;
    QColor hover;
    QColor selected;
    QColor link;
    QColor totalsBackground;

    // The current theme's colours over `base` (header one pixel smaller).
    static TradeTableLook FromTheme(const QFont& base);
};

struct TradeTableHighlight
{
    int hoverRow = -1; // view rows; -1 none
    int selectedRow = -1;
    int hoverActionRow = -1; // the row whose action cell is under the mouse
};

void PaintTradeTable(QPainter& painter, const CVXTradeTableModel& model, const TradeTableLook& look,
                     const TradeTableHighlight& highlight);

} // namespace vx_ws
