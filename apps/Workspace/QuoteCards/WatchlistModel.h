#pragma once

// CVXWatchlistModel: the rows of a watch list. It keeps the user's list of security ids (in the
// order they were added), builds a row per id from the feed, and orders the rows by one column.
// Clicking a column header cycles that column through descending, ascending and unsorted; ties
// and the unsorted state keep the list's own order. Ids the feed does not know stay in the list
// and show empty values (they sort last).

#include <QString>

#include <vector>

class CVXVariantMapTree;

namespace vx_md {
class CVXSimMarketData;
}

namespace vx_ws {

class CVXWatchlistModel
{
public:
    enum class EnColumn : int
    {
        None = -1,
        Code = 0,
        Name = 1,
        Last = 2,
        ChangePercent = 3,
        Volume = 4,
    };
    static constexpr int kColumnCount = 5;

    enum class EnSortOrder : int
    {
        None = 0,
        Descending = 1,
        Ascending = 2,
    };

    struct Row
    {
        unsigned long id = 0;
        bool known = false; // the feed knows the id
        QString code;
        QString name;
        double last = 0.0;
        double prevClose = 0.0;
        double changeRatio = 0.0; // (last - prevClose) / prevClose
        long long volume = 0;
        double tickSize = 0.01;
    };

    // The list a new watch list starts with: the index, the ETFs and the first 15 stocks.
    static std::vector<unsigned long> DefaultIDs();

    CVXWatchlistModel();

    const std::vector<unsigned long>& IDs() const { return m_ids; }
    // Replaces the list (duplicates dropped, first kept) and rebuilds the rows.
    void SetIDs(const std::vector<unsigned long>& ids, const vx_md::CVXSimMarketData* feed);
    // False when the id is listed already, or the feed is there and does not know it.
    bool Add(unsigned long id, const vx_md::CVXSimMarketData* feed);
    // False when the id is not listed.
    bool Remove(unsigned long id, const vx_md::CVXSimMarketData* feed);
    bool Contains(unsigned long id) const;

    EnColumn SortColumn() const { return m_sortColumn; }
    EnSortOrder SortOrder() const { return m_sortOrder; }
    // Column None or order None: unsorted.
    void SetSort(EnColumn column, EnSortOrder order);
    // A click on a column header.
    void CycleSort(EnColumn column);

    // Re-reads every row from the feed (no feed: rows without values) and re-sorts.
    void Refresh(const vx_md::CVXSimMarketData* feed);
    // The rows in display order.
    const std::vector<Row>& Rows() const { return m_rows; }
    // The display index of an id; -1 when not listed.
    int RowOf(unsigned long id) const;

    // The list and the sort under "IDs" (QVector<qlonglong>), "SortColumn" and "SortOrder".
    void Save(CVXVariantMapTree* data) const;
    // Reads and checks everything first; a tree without the list is left alone (true), a
    // malformed one (negative or zero ids, unknown sort values) is refused whole (false, logged).
    bool Restore(const CVXVariantMapTree& data, const vx_md::CVXSimMarketData* feed);

private:
    void Sort();

    std::vector<unsigned long> m_ids;
    std::vector<Row> m_rows;
    EnColumn m_sortColumn = EnColumn::None;
    EnSortOrder m_sortOrder = EnSortOrder::None;
};

} // namespace vx_ws
