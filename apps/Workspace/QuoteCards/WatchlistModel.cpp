#include "apps/Workspace/QuoteCards/WatchlistModel.h"

#include "apps/Workspace/MarketData/SimMarketData.h"

#include "UIFrame/VariantMapTreeAccess.h"

#include "Platform/Core/Log.h"

#include <algorithm>
#include <optional>

namespace vx_ws {

namespace {

const QString kIDsKey = QStringLiteral("IDs");
const QString kSortColumnKey = QStringLiteral("SortColumn");
const QString kSortOrderKey = QStringLiteral("SortOrder");

std::vector<unsigned long> Unique(const std::vector<unsigned long>& ids)
{
    std::vector<unsigned long> out;
    out.reserve(ids.size());
    for (unsigned long id : ids)
        if (std::find(out.begin(), out.end(), id) == out.end())
            out.push_back(id);
    return out;
}

CVXWatchlistModel::Row MakeRow(unsigned long id, const vx_md::CVXSimMarketData* feed)
{
    CVXWatchlistModel::Row row;
    row.id = id;
    if (!feed || !feed->Contains(id))
        return row;
    const vx_md::SecurityInfo info = feed->GetSecurity(id);
    const vx_md::Quote quote = feed->GetQuote(id);
    row.known = true;
    row.code = QString::fromStdString(info.code);
    row.name = QString::fromStdString(info.name);
    row.last = quote.last;
    row.prevClose = quote.prevClose;
    row.changeRatio = quote.prevClose > 0 ? (quote.last - quote.prevClose) / quote.prevClose : 0.0;
    row.volume = quote.day.volume;
    row.tickSize = info.tickSize;
    return row;
}

// Negative: a before b in ascending order.
int Compare(const CVXWatchlistModel::Row& a, const CVXWatchlistModel::Row& b,
            CVXWatchlistModel::EnColumn column)
{
    using C = CVXWatchlistModel::EnColumn;
    const auto cmp = [](auto x, auto y) { return x < y ? -1 : (y < x ? 1 : 0); };
    switch (column) {
    case C::Code:
        return a.code.compare(b.code);
    case C::Name:
        return a.name.localeAwareCompare(b.name);
    case C::Last:
        return cmp(a.last, b.last);
    case C::ChangePercent:
        return cmp(a.changeRatio, b.changeRatio);
    case C::Volume:
        return cmp(a.volume, b.volume);
    case C::None:
        break;
    }
    return 0;
}

} // namespace

std::vector<unsigned long> CVXWatchlistModel::DefaultIDs()
{
    std::vector<unsigned long> ids{1, 500, 501, 502};
    for (unsigned long id = 1000; id < 1015; ++id)
        ids.push_back(id);
    return ids;
}

CVXWatchlistModel::CVXWatchlistModel() : m_ids(DefaultIDs()) {}

void CVXWatchlistModel::SetIDs(const std::vector<unsigned long>& ids, const vx_md::CVXSimMarketData* feed)
{
    m_ids = Unique(ids);
    Refresh(feed);
}

bool CVXWatchlistModel::Add(unsigned long id, const vx_md::CVXSimMarketData* feed)
{
    if (id == 0 || Contains(id) || (feed && !feed->Contains(id)))
        return false;
    m_ids.push_back(id);
    Refresh(feed);
    return true;
}

bool CVXWatchlistModel::Remove(unsigned long id, const vx_md::CVXSimMarketData* feed)
{
    const auto it = std::find(m_ids.begin(), m_ids.end(), id);
    if (it == m_ids.end())
        return false;
    m_ids.erase(it);
    Refresh(feed);
    return true;
}

bool CVXWatchlistModel::Contains(unsigned long id) const
{
    return std::find(m_ids.begin(), m_ids.end(), id) != m_ids.end();
}

void CVXWatchlistModel::SetSort(EnColumn column, EnSortOrder order)
{
    if (column == EnColumn::None || order == EnSortOrder::None) {
        column = EnColumn::None;
        order = EnSortOrder::None;
    }
    m_sortColumn = column;
    m_sortOrder = order;
    Sort();
}

void CVXWatchlistModel::CycleSort(EnColumn column)
{
    if (column == EnColumn::None)
        return;
    if (column != m_sortColumn)
        SetSort(column, EnSortOrder::Descending);
    else if (m_sortOrder == EnSortOrder::Descending)
        SetSort(column, EnSortOrder::Ascending);
    else
        SetSort(EnColumn::None, EnSortOrder::None);
}

void CVXWatchlistModel::Refresh(const vx_md::CVXSimMarketData* feed)
{
    m_rows.clear();
    m_rows.reserve(m_ids.size());
    for (unsigned long id : m_ids)
        m_rows.push_back(MakeRow(id, feed));
    Sort();
}

int CVXWatchlistModel::RowOf(unsigned long id) const
{
    for (std::size_t i = 0; i < m_rows.size(); ++i)
        if (m_rows[i].id == id)
            return static_cast<int>(i);
    return -1;
}

void CVXWatchlistModel::Sort()
{
    // Unsorting follows a sorted state without a rebuild: put the rows back in list order.
    if (m_sortColumn == EnColumn::None) {
        std::stable_sort(m_rows.begin(), m_rows.end(), [this](const Row& a, const Row& b) {
            const auto pos = [this](unsigned long id) { return std::find(m_ids.begin(), m_ids.end(), id); };
            return pos(a.id) < pos(b.id);
        });
        return;
    }
    const bool descending = m_sortOrder == EnSortOrder::Descending;
    std::stable_sort(m_rows.begin(), m_rows.end(), [&](const Row& a, const Row& b) {
        if (a.known != b.known)
            return a.known; // rows without values last in either order
        const int c = Compare(a, b, m_sortColumn);
        return descending ? c > 0 : c < 0;
    });
}

void CVXWatchlistModel::Save(CVXVariantMapTree* data) const
{
    if (!data)
        return;
    QVector<qlonglong> ids;
    ids.reserve(static_cast<int>(m_ids.size()));
    for (unsigned long id : m_ids)
        ids.push_back(static_cast<qlonglong>(id));
    data->Set<QVector<qlonglong>>(kIDsKey, ids);
    data->Set<int>(kSortColumnKey, static_cast<int>(m_sortColumn));
    data->Set<int>(kSortOrderKey, static_cast<int>(m_sortOrder));
}

bool CVXWatchlistModel::Restore(const CVXVariantMapTree& data, const vx_md::CVXSimMarketData* feed)
{
    std::optional<QVector<qlonglong>> ids;
    data.GetImp<QVector<qlonglong>>(kIDsKey, &ids);
    if (!ids) {
        if (data.Contains(kIDsKey)) {
            VXLOG_WARN("CVXWatchlistModel::Restore: the id list is not a list of numbers");
            return false;
        }
        return true;
    }
    std::vector<unsigned long> list;
    for (qlonglong id : *ids) {
        if (id <= 0) {
            VXLOG_WARN("CVXWatchlistModel::Restore: bad security id {}", id);
            return false;
        }
        list.push_back(static_cast<unsigned long>(id));
    }
    const int column = data.Get<int>(kSortColumnKey, static_cast<int>(EnColumn::None));
    const int order = data.Get<int>(kSortOrderKey, static_cast<int>(EnSortOrder::None));
    if (column < static_cast<int>(EnColumn::None) || column >= kColumnCount || order < 0 ||
        order > static_cast<int>(EnSortOrder::Ascending)) {
        VXLOG_WARN("CVXWatchlistModel::Restore: bad sort column {} or order {}", column, order);
        return false;
    }
    m_ids = Unique(list);
    m_sortColumn = static_cast<EnColumn>(column);
    m_sortOrder = static_cast<EnSortOrder>(order);
    SetSort(m_sortColumn, m_sortOrder);
    Refresh(feed);
    return true;
}

} // namespace vx_ws
