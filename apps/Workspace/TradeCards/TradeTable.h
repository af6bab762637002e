#pragma once

// CVXTradeTableModel: the table behind the account cards (positions, orders, history): columns
// with a minimum width, a share of the spare width and a priority, rows of display cells with
// sort keys, an optional totals row pinned under the body, sorting by a column, a scroll
// offset, and the geometry of it all for a given rectangle (which columns fit, where each cell
// is, what a point hits). Pure code: no widget; the painter and the cards use it.

#include <QColor>
#include <QRect>
#include <QString>
#include <QVariant>

#include <optional>
#include <vector>

class QFontMetrics;

class QFontMetrics;

namespace vx_ws {

struct TradeTableColumn
{
    QString id; // stable name, used for the saved sort column
    QString title;
    Qt::Alignment alignment = Qt::AlignLeft;
    int minWidth = 60;
    int stretch = 1;  // share of the spare width
    int priority = 0; // when the width is short, the highest priority numbers are dropped first
    bool sortable = true;
};

struct TradeTableCell
{
    enum class EnKind
    {
        Text,
        Action, // a clickable cell (e.g. cancel)
    };

    QString text;
    QVariant sortKey; // numbers sort numerically, anything else by its text; invalid: by text
    QColor color;     // invalid: the table's text colour
    EnKind kind = EnKind::Text;
};

struct TradeTableRow
{
    unsigned long long key = 0; // what the row stands for (stock id, order id)
    std::vector<TradeTableCell> cells;
};

class CVXTradeTableModel
{
public:
    struct Hit
    {
        enum class EnArea
        {
            None,
            Header,
            Row,
            Totals,
        };
        EnArea area = EnArea::None;
        int row = -1;    // view row (sorted order) for Row
        int column = -1; // column index, -1 between columns or outside
    };

    static constexpr int kHeaderHeight = 24;
    static constexpr int kRowHeight = 22;
    static constexpr int kCellPadding = 6;

    void SetColumns(std::vector<TradeTableColumn> columns);
    const std::vector<TradeTableColumn>& Columns() const { return m_columns; }
    int ColumnIndex(const QString& id) const; // -1 when unknown

    // Replaces the rows; the current sort applies; the scroll offset is clamped.
    void SetRows(std::vector<TradeTableRow> rows);
    void SetTotals(std::optional<TradeTableRow> totals);
    const std::optional<TradeTableRow>& Totals() const { return m_totals; }
    int RowCount() const { return static_cast<int>(m_order.size()); }
    // A row in view (sorted) order; index must be < RowCount().
    const TradeTableRow& Row(int viewRow) const;
    // The view row of the row with this key; -1 when none.
    int ViewRowOfKey(unsigned long long key) const;
    // The text of a cell in view order; empty for an index out of range.
    QString CellText(int viewRow, int column) const;

    // Sorting: column -1 keeps the rows in the order they were given. Equal keys keep that order.
    void SetSort(int column, Qt::SortOrder order);
    int SortColumn() const { return m_sortColumn; }
    Qt::SortOrder SortOrder() const { return m_sortOrder; }
    // A header click: a new column sorts descending first when right-aligned (numbers) and
    // ascending otherwise;
    // the same column flips; a third click on it goes back to the given order.
    void ToggleSort(int column);

    // Number columns (right-aligned) and the first column (the row's identity, e.g. a code) are
    // never narrower than their widest text (header, rows, totals) plus the cell padding,
    // measured with `metrics` (the totals row with `totalsMetrics`): a short card drops a less important
    // column rather than cut a number or a code. Other text columns keep their minimum and elide.
    void FitNumberColumnsToContent(const QFontMetrics& metrics, const QFontMetrics& totalsMetrics);

    // Geometry for the table drawn in `area`.
    void SetArea(const QRect& area);
    QRect Area() const { return m_area; }
    QRect HeaderRect() const;
    QRect BodyRect() const;
    QRect TotalsRect() const; // empty without totals
    // Columns shown at the current width, in column order; their x extents.
    const std::vector<int>& VisibleColumns() const { return m_visible; }
    // Empty for a hidden column.
    QRect ColumnSpan(int column) const;
    // The cell of a view row (scrolled); empty when the row is not in view or the column hidden.
    QRect CellRect(int viewRow, int column) const;
    Hit HitTest(const QPoint& point) const;

    // Scrolling by whole rows.
    int FirstRow() const { return m_firstRow; }
    int VisibleRowCapacity() const;
    void ScrollTo(int firstRow);
    void ScrollBy(int rows) { ScrollTo(m_firstRow + rows); }

    // `text` cut on the right with an ellipsis to fit `width`; empty when not even the ellipsis
    // fits.
    static QString Elide(const QFontMetrics& metrics, const QString& text, int width);

private:
    void ApplySort();
    void LayoutColumns();
    int EffectiveMinWidth(int column) const;
    void ClampScroll();
    bool ColumnIsNumeric(int column) const;

    std::vector<TradeTableColumn> m_columns;
    std::vector<TradeTableRow> m_rows;
    std::vector<int> m_order; // view row -> index in m_rows
    std::optional<TradeTableRow> m_totals;
    int m_sortColumn = -1;
    Qt::SortOrder m_sortOrder = Qt::AscendingOrder;
    QRect m_area;
    std::vector<int> m_visible;
    std::vector<std::pair<int, int>> m_spans; // per column: left, width (width 0 when hidden)
    std::vector<int> m_contentWidths;         // per column, 0 where the minimum rules
    int m_firstRow = 0;
};

} // namespace vx_ws
