#include "apps/Workspace/TradeCards/TradeTable.h"

#include "Platform/Core/Log.h"

#include <QFontMetrics>

#include <algorithm>
#include <numeric>

namespace vx_ws {

namespace {

bool IsNumber(const QVariant& value)
{
    switch (static_cast<QMetaType::Type>(value.userType())) {
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Double:
    case QMetaType::Float:
    case QMetaType::Long:
    case QMetaType::ULong:
        return true;
    default:
        return false;
    }
}

// <0, 0, >0 like strcmp; numbers before texts so that a mixed column stays grouped.
int CompareCells(const TradeTableCell& a, const TradeTableCell& b)
{
    const bool aNumber = IsNumber(a.sortKey);
    const bool bNumber = IsNumber(b.sortKey);
    if (aNumber && bNumber) {
        const double x = a.sortKey.toDouble();
        const double y = b.sortKey.toDouble();
        return x < y ? -1 : (x > y ? 1 : 0);
    }
    if (aNumber != bNumber)
        return aNumber ? -1 : 1;
    const QString x = a.sortKey.isValid() ? a.sortKey.toString() : a.text;
    const QString y = b.sortKey.isValid() ? b.sortKey.toString() : b.text;
    return QString::compare(x, y, Qt::CaseInsensitive);
}

} // namespace

void CVXTradeTableModel::SetColumns(std::vector<TradeTableColumn> columns)
{
    m_columns = std::move(columns);
    if (m_sortColumn >= static_cast<int>(m_columns.size()))
        m_sortColumn = -1;
    LayoutColumns();
    ApplySort();
}

int CVXTradeTableModel::ColumnIndex(const QString& id) const
{
    for (size_t i = 0; i < m_columns.size(); ++i) {
        if (m_columns[i].id == id)
            return static_cast<int>(i);
    }
    return -1;
}

void CVXTradeTableModel::SetRows(std::vector<TradeTableRow> rows)
{
    m_rows = std::move(rows);
    ApplySort();
    ClampScroll();
}

void CVXTradeTableModel::SetTotals(std::optional<TradeTableRow> totals)
{
    m_totals = std::move(totals);
    ClampScroll();
}

const TradeTableRow& CVXTradeTableModel::Row(int viewRow) const
{
    return m_rows[static_cast<size_t>(m_order[static_cast<size_t>(viewRow)])];
}

int CVXTradeTableModel::ViewRowOfKey(unsigned long long key) const
{
    for (int i = 0; i < RowCount(); ++i) {
        if (Row(i).key == key)
            return i;
    }
    return -1;
}

QString CVXTradeTableModel::CellText(int viewRow, int column) const
{
    if (viewRow < 0 || viewRow >= RowCount() || column < 0)
        return QString();
    const TradeTableRow& row = Row(viewRow);
    return column < static_cast<int>(row.cells.size()) ? row.cells[static_cast<size_t>(column)].text
                                                       : QString();
}

void CVXTradeTableModel::SetSort(int column, Qt::SortOrder order)
{
    if (column < -1 || column >= static_cast<int>(m_columns.size())) {
        VXLOG_WARN("CVXTradeTableModel::SetSort: no column {}", column);
        column = -1;
    }
    if (column >= 0 && !m_columns[static_cast<size_t>(column)].sortable)
        column = -1;
    m_sortColumn = column;
    m_sortOrder = order;
    ApplySort();
}

void CVXTradeTableModel::ToggleSort(int column)
{
    if (column < 0 || column >= static_cast<int>(m_columns.size()) ||
        !m_columns[static_cast<size_t>(column)].sortable)
        return;
    const Qt::SortOrder first = ColumnIsNumeric(column) ? Qt::DescendingOrder : Qt::AscendingOrder;
    if (column != m_sortColumn)
        SetSort(column, first);
    else if (m_sortOrder == first)
        SetSort(column, first == Qt::AscendingOrder ? Qt::DescendingOrder : Qt::AscendingOrder);
    else
        SetSort(-1, Qt::AscendingOrder);
}

bool CVXTradeTableModel::ColumnIsNumeric(int column) const
{
    return (m_columns[static_cast<size_t>(column)].alignment & Qt::AlignRight) != 0;
}

void CVXTradeTableModel::ApplySort()
{
    m_order.resize(m_rows.size());
    std::iota(m_order.begin(), m_order.end(), 0);
    if (m_sortColumn < 0)
        return;
    const size_t column = static_cast<size_t>(m_sortColumn);
    const bool descending = m_sortOrder == Qt::DescendingOrder;
    static const TradeTableCell kEmpty;
    std::stable_sort(m_order.begin(), m_order.end(), [&](int a, int b) {
        const auto& ca = m_rows[static_cast<size_t>(a)].cells;
        const auto& cb = m_rows[static_cast<size_t>(b)].cells;
        const int c =
            CompareCells(column < ca.size() ? ca[column] : kEmpty, column < cb.size() ? cb[column] : kEmpty);
        return descending ? c > 0 : c < 0;
    });
}

void CVXTradeTableModel::SetArea(const QRect& area)
{
    m_area = area;
    LayoutColumns();
    ClampScroll();
}

QRect CVXTradeTableModel::HeaderRect() const
{
    return QRect(m_area.left(), m_area.top(), m_area.width(), std::min(kHeaderHeight, m_area.height()));
}

QRect CVXTradeTableModel::TotalsRect() const
{
    if (!m_totals || m_area.height() < kHeaderHeight + 2 * kRowHeight)
        return QRect();
    return QRect(m_area.left(), m_area.bottom() - kRowHeight + 1, m_area.width(), kRowHeight);
}

QRect CVXTradeTableModel::BodyRect() const
{
    const int top = m_area.top() + kHeaderHeight;
    const QRect totals = TotalsRect();
    const int bottom = totals.isEmpty() ? m_area.bottom() : totals.top() - 1;
    if (bottom < top)
        return QRect();
    return QRect(m_area.left(), top, m_area.width(), bottom - top + 1);
}

void CVXTradeTableModel::FitNumberColumnsToContent(const QFontMetrics& metrics,
                                                   const QFontMetrics& totalsMetrics)
{
    std::vector<int> widths(m_columns.size(), 0);
    auto widen = [&](size_t column, const QString& text, const QFontMetrics& fm) {
        if (!text.isEmpty())
            widths[column] = std::max(widths[column], fm.horizontalAdvance(text) + 2 * kCellPadding);
    };
    for (size_t c = 0; c < m_columns.size(); ++c) {
        if (c != 0 && !(m_columns[c].alignment & Qt::AlignRight))
            continue;
        widen(c, m_columns[c].title, metrics);
        for (const TradeTableRow& row : m_rows) {
            if (c < row.cells.size())
                widen(c, row.cells[c].text, metrics);
        }
        if (m_totals && c < m_totals->cells.size())
            widen(c, m_totals->cells[c].text, totalsMetrics);
    }
    if (widths == m_contentWidths)
        return;
    m_contentWidths = std::move(widths);
    LayoutColumns();
}

int CVXTradeTableModel::EffectiveMinWidth(int column) const
{
    const int minimum = m_columns[static_cast<size_t>(column)].minWidth;
    return column < static_cast<int>(m_contentWidths.size())
               ? std::max(minimum, m_contentWidths[static_cast<size_t>(column)])
               : minimum;
}

void CVXTradeTableModel::LayoutColumns()
{
    m_visible.clear();
    m_spans.assign(m_columns.size(), {0, 0});
    if (m_columns.empty() || m_area.width() <= 0)
        return;

    // Drop the least important columns until the minimum widths fit; the first column always stays.
    std::vector<int> shown(m_columns.size());
    std::iota(shown.begin(), shown.end(), 0);
    auto minTotal = [&] {
        int total = 0;
        for (int c : shown)
            total += EffectiveMinWidth(c);
        return total;
    };
    while (shown.size() > 1 && minTotal() > m_area.width()) {
        auto worst = std::max_element(shown.begin() + 1, shown.end(), [&](int a, int b) {
            const int pa = m_columns[static_cast<size_t>(a)].priority;
            const int pb = m_columns[static_cast<size_t>(b)].priority;
            return pa != pb ? pa < pb : a < b; // equal priority: the rightmost goes first
        });
        shown.erase(worst);
    }

    int stretchTotal = 0;
    for (int c : shown)
        stretchTotal += std::max(0, m_columns[static_cast<size_t>(c)].stretch);
    const int spare = std::max(0, m_area.width() - minTotal());
    int x = m_area.left();
    int given = 0;
    int stretchSoFar = 0;
    for (size_t i = 0; i < shown.size(); ++i) {
        const TradeTableColumn& column = m_columns[static_cast<size_t>(shown[i])];
        int extra = 0;
        if (stretchTotal > 0) {
            stretchSoFar += std::max(0, column.stretch);
            // Cumulative rounding so that the columns end exactly at the right edge.
            extra = spare * stretchSoFar / stretchTotal - given;
            given += extra;
        }
        int width = EffectiveMinWidth(shown[i]) + extra;
        if (i + 1 == shown.size() && stretchTotal == 0)
            width = std::max(width, m_area.right() + 1 - x);
        width = std::min(width, m_area.right() + 1 - x);
        m_spans[static_cast<size_t>(shown[i])] = {x, std::max(0, width)};
        x += width;
    }
    m_visible = shown;
}

QRect CVXTradeTableModel::ColumnSpan(int column) const
{
    if (column < 0 || column >= static_cast<int>(m_spans.size()) ||
        m_spans[static_cast<size_t>(column)].second <= 0)
        return QRect();
    const auto& span = m_spans[static_cast<size_t>(column)];
    return QRect(span.first, m_area.top(), span.second, m_area.height());
}

QRect CVXTradeTableModel::CellRect(int viewRow, int column) const
{
    const QRect span = ColumnSpan(column);
    if (span.isEmpty() || viewRow < m_firstRow || viewRow >= RowCount())
        return QRect();
    const int slot = viewRow - m_firstRow;
    if (slot >= VisibleRowCapacity())
        return QRect();
    const QRect body = BodyRect();
    return QRect(span.left(), body.top() + slot * kRowHeight, span.width(), kRowHeight);
}

CVXTradeTableModel::Hit CVXTradeTableModel::HitTest(const QPoint& point) const
{
    Hit hit;
    if (!m_area.contains(point))
        return hit;
    for (int c : m_visible) {
        if (ColumnSpan(c).contains(point)) {
            hit.column = c;
            break;
        }
    }
    if (HeaderRect().contains(point)) {
        hit.area = Hit::EnArea::Header;
        return hit;
    }
    const QRect totals = TotalsRect();
    if (!totals.isEmpty() && totals.contains(point)) {
        hit.area = Hit::EnArea::Totals;
        return hit;
    }
    const QRect body = BodyRect();
    if (body.contains(point)) {
        const int row = m_firstRow + (point.y() - body.top()) / kRowHeight;
        if (row < RowCount() && row - m_firstRow < VisibleRowCapacity()) {
            hit.area = Hit::EnArea::Row;
            hit.row = row;
            return hit;
        }
    }
    hit.column = -1;
    return hit;
}

int CVXTradeTableModel::VisibleRowCapacity() const
{
    const QRect body = BodyRect();
    return body.isEmpty() ? 0 : body.height() / kRowHeight;
}

void CVXTradeTableModel::ScrollTo(int firstRow)
{
    m_firstRow = firstRow;
    ClampScroll();
}

void CVXTradeTableModel::ClampScroll()
{
    const int maxFirst = std::max(0, RowCount() - VisibleRowCapacity());
    m_firstRow = std::clamp(m_firstRow, 0, maxFirst);
}

QString CVXTradeTableModel::Elide(const QFontMetrics& metrics, const QString& text, int width)
{
    if (width <= 0)
        return QString();
    if (metrics.horizontalAdvance(text) <= width)
        return text;
    if (metrics.horizontalAdvance(QChar(0x2026)) > width)
        return QString();
    return metrics.elidedText(text, Qt::ElideRight, width);
}

} // namespace vx_ws
