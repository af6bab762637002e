#include "apps/Workspace/TradeCards/TradeTablePainter.h"

#include "apps/Workspace/Cards/WorkspaceCardBase.h"
#include "apps/Workspace/TradeCards/TradeTable.h"

#include <QPainter>
#include <QPainterPath>

namespace vx_ws {

namespace {

constexpr int kPad = CVXTradeTableModel::kCellPadding;

void PaintSortMark(QPainter& painter, const QRect& cell, bool rightAligned, int textWidth,
                   Qt::SortOrder order, const QColor& color)
{
    const int x = rightAligned ? cell.right() - kPad - textWidth - 9 : cell.left() + kPad + textWidth + 4;
    const double cy = cell.center().y() + 0.5;
    QPainterPath mark;
    if (order == Qt::AscendingOrder) {
        mark.moveTo(x, cy + 2);
        mark.lineTo(x + 6, cy + 2);
        mark.lineTo(x + 3, cy - 2);
    } else {
        mark.moveTo(x, cy - 2);
        mark.lineTo(x + 6, cy - 2);
        mark.lineTo(x + 3, cy + 2);
    }
    mark.closeSubpath();
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawPath(mark);
    painter.restore();
}

void PaintCells(QPainter& painter, const CVXTradeTableModel& model, const TradeTableRow& row,
                const QRect& band, const TradeTableLook& look, bool actionHover)
{
    const QFontMetrics fm(painter.font());
    for (int c : model.VisibleColumns()) {
        if (c >= static_cast<int>(row.cells.size()))
            continue;
        const TradeTableCell& cell = row.cells[static_cast<size_t>(c)];
        if (cell.text.isEmpty())
            continue;
        const QRect span = model.ColumnSpan(c);
        const QRect textRect(span.left() + kPad, band.top(), span.width() - 2 * kPad, band.height());
        const Qt::Alignment align = model.Columns()[static_cast<size_t>(c)].alignment | Qt::AlignVCenter;
        const QString text = CVXTradeTableModel::Elide(fm, cell.text, textRect.width());
        if (cell.kind == TradeTableCell::EnKind::Action) {
            QFont font = painter.font();
            font.setUnderline(actionHover);
            painter.save();
            painter.setFont(font);
            painter.setPen(cell.color.isValid() ? cell.color : look.link);
            painter.drawText(textRect, static_cast<int>(align), text);
            painter.restore();
            continue;
        }
        painter.setPen(cell.color.isValid() ? cell.color : look.text);
        painter.drawText(textRect, static_cast<int>(align), text);
    }
}

} // namespace

TradeTableLook TradeTableLook::FromTheme(const QFont& base)
{
    TradeTableLook look;
    look.font = base;
    look.headerFont = base;
    if (base.pixelSize() > 0)
        look.headerFont.setPixelSize(std::max(9, base.pixelSize() - 1));
    else
        look.headerFont.setPointSizeF(std::max(7.0, base.pointSizeF() - 0.75));
    look.text = CVXWorkspaceCardBase::ThemeColor("ct_text_primary");
    look.secondaryText = CVXWorkspaceCardBase::ThemeColor("ct_text_secondary");
    look.headerBackground = CVXWorkspaceCardBase::ThemeColor("ct_bg_secondary");
    look.divider = CVXWorkspaceCardBase::ThemeColor("ct_divider");
    look.hover = CVXWorkspaceCardBase::ThemeColor("ct_hover");
    // The accent at low strength, so that rise / fall colours stay readable on a selected row.
    look.selected = CVXWorkspaceCardBase::ThemeColor("ct_selected");
    look.selected.setAlpha(48);
    look.link = CVXWorkspaceCardBase::ThemeColor("ct_link");
    look.totalsBackground = CVXWorkspaceCardBase::ThemeColor("ct_bg_tertiary");
    return look;
}

void PaintTradeTable(QPainter& painter, const CVXTradeTableModel& model, const TradeTableLook& look,
                     const TradeTableHighlight& highlight)
{
    const QRect area = model.Area();
    if (area.isEmpty())
        return;
    painter.save();
    painter.setClipRect(area);

    // Header.
    const QRect header = model.HeaderRect();
    painter.fillRect(header, look.headerBackground);
    painter.setFont(look.headerFont);
    const QFontMetrics headerMetrics(look.headerFont);
    for (int c : model.VisibleColumns()) {
        const TradeTableColumn& column = model.Columns()[static_cast<size_t>(c)];
        const QRect span = model.ColumnSpan(c);
        const bool sorted = model.SortColumn() == c;
        const QRect cell(span.left(), header.top(), span.width(), header.height());
        const int markRoom = sorted ? 10 : 0;
        const QRect textRect = cell.adjusted(kPad + ((column.alignment & Qt::AlignRight) ? markRoom : 0), 0,
                                             -kPad - ((column.alignment & Qt::AlignRight) ? 0 : markRoom), 0);
        const QString title = CVXTradeTableModel::Elide(headerMetrics, column.title, textRect.width());
        painter.setPen(sorted ? look.text : look.secondaryText);
        painter.drawText(textRect, static_cast<int>(column.alignment | Qt::AlignVCenter), title);
        if (sorted && !title.isEmpty())
            PaintSortMark(painter, cell, (column.alignment & Qt::AlignRight) != 0,
                          headerMetrics.horizontalAdvance(title), model.SortOrder(), look.link);
    }
    painter.fillRect(QRect(header.left(), header.bottom(), header.width(), 1), look.divider);

    // Rows.
    painter.setFont(look.font);
    const QRect body = model.BodyRect();
    const int last = std::min(model.RowCount(), model.FirstRow() + model.VisibleRowCapacity());
    for (int r = model.FirstRow(); r < last; ++r) {
        const int top = body.top() + (r - model.FirstRow()) * CVXTradeTableModel::kRowHeight;
        const QRect band(body.left(), top, body.width(), CVXTradeTableModel::kRowHeight);
        if (r == highlight.selectedRow)
            painter.fillRect(band, look.selected);
        else if (r == highlight.hoverRow)
            painter.fillRect(band, look.hover);
        PaintCells(painter, model, model.Row(r), band, look, r == highlight.hoverActionRow);
        painter.fillRect(QRect(band.left(), band.bottom(), band.width(), 1), look.divider);
    }

    // Totals.
    const QRect totals = model.TotalsRect();
    if (!totals.isEmpty() && model.Totals()) {
        painter.fillRect(totals, look.totalsBackground);
        painter.fillRect(QRect(totals.left(), totals.top(), totals.width(), 1), look.divider);
        QFont bold = look.font;
        bold.setBold(true);
        painter.setFont(bold);
        PaintCells(painter, model, *model.Totals(), totals, look, false);
    }
    painter.restore();
}

} // namespace vx_ws
