#include "apps/Workspace/TradeCards/BookTraderModel.h"

#include <algorithm>
#include <cmath>
#include <map>

namespace vx_ws {

namespace {

// Column shares of the width in percent, left to right; the price column is the widest.
constexpr int kColumnShares[] = {16, 21, 26, 21, 16};

int ColumnIndex(CVXBookTraderModel::EnColumn column)
{
    return static_cast<int>(column) - static_cast<int>(CVXBookTraderModel::EnColumn::OwnBuy);
}

} // namespace

void CVXBookTraderModel::SetTickSize(double tickSize)
{
    m_tickSize = tickSize > 0.0 ? tickSize : 0.01;
}

void CVXBookTraderModel::SetGeometry(int width, int height, int headerHeight, int rowHeight)
{
    m_width = std::max(0, width);
    m_height = std::max(0, height);
    m_headerHeight = std::max(0, headerHeight);
    m_rowHeight = std::max(1, rowHeight);
}

int CVXBookTraderModel::VisibleRows() const
{
    const int body = m_height - m_headerHeight;
    return body <= 0 ? 0 : (body + m_rowHeight - 1) / m_rowHeight;
}

void CVXBookTraderModel::CentreOn(long long ticks)
{
    const int fullRows = std::max(1, (m_height - m_headerHeight) / m_rowHeight);
    m_topTicks = ticks + fullRows / 2;
}

void CVXBookTraderModel::ScrollRows(int rows)
{
    // The top row never goes below one tick: there is nothing to show under it.
    m_topTicks = std::max(1LL, m_topTicks - rows);
}

int CVXBookTraderModel::RowOfTicks(long long ticks) const
{
    const long long row = m_topTicks - ticks;
    return row >= 0 && row < VisibleRows() ? static_cast<int>(row) : -1;
}

int CVXBookTraderModel::RowAt(int y) const
{
    if (y < m_headerHeight || y >= m_height)
        return -1;
    const int row = (y - m_headerHeight) / m_rowHeight;
    return row < VisibleRows() ? row : -1;
}

int CVXBookTraderModel::ColumnLeft(EnColumn column) const
{
    if (column == EnColumn::None)
        return 0;
    int share = 0;
    for (int i = 0; i < ColumnIndex(column); ++i)
        share += kColumnShares[i];
    return m_width * share / 100;
}

int CVXBookTraderModel::ColumnWidth(EnColumn column) const
{
    if (column == EnColumn::None)
        return 0;
    if (column == EnColumn::OwnSell)
        return m_width - ColumnLeft(column);
    return ColumnLeft(static_cast<EnColumn>(static_cast<int>(column) + 1)) - ColumnLeft(column);
}

CVXBookTraderModel::EnColumn CVXBookTraderModel::ColumnAt(int x) const
{
    if (x < 0 || x >= m_width)
        return EnColumn::None;
    for (EnColumn column :
         {EnColumn::OwnBuy, EnColumn::Bid, EnColumn::Price, EnColumn::Ask, EnColumn::OwnSell})
        if (x < ColumnLeft(column) + ColumnWidth(column))
            return column;
    return EnColumn::None;
}

long long CVXBookTraderModel::TicksOf(double price) const
{
    return std::llround(price / m_tickSize);
}

std::vector<BookTraderRow>
CVXBookTraderModel::BuildRows(const vx_md::OrderBook& book, double last,
                              const std::vector<vx_trade::Order>& workingOrders) const
{
    std::map<long long, long long> bids;
    std::map<long long, long long> asks;
    std::map<long long, long long> ownBuys;
    std::map<long long, long long> ownSells;
    for (const vx_md::BookLevel& level : book.bids)
        bids[TicksOf(level.price)] += level.volume;
    for (const vx_md::BookLevel& level : book.asks)
        asks[TicksOf(level.price)] += level.volume;
    for (const vx_trade::Order& order : workingOrders) {
        if (order.type != vx_trade::EnOrderType::Limit)
            continue;
        auto& side = order.side == vx_trade::EnOrderSide::Buy ? ownBuys : ownSells;
        side[TicksOf(order.price)] += order.quantity - order.filledQuantity;
    }
    const long long lastTicks = last > 0.0 ? TicksOf(last) : -1;
    auto valueAt = [](const std::map<long long, long long>& map, long long ticks) {
        auto it = map.find(ticks);
        return it == map.end() ? 0LL : it->second;
    };

    std::vector<BookTraderRow> rows;
    const int count = VisibleRows();
    for (int row = 0; row < count; ++row) {
        const long long ticks = TicksAtRow(row);
        if (ticks < 1)
            break;
        BookTraderRow out;
        out.ticks = ticks;
        out.price = PriceOf(ticks);
        out.bidVolume = valueAt(bids, ticks);
        out.askVolume = valueAt(asks, ticks);
        out.ownBuy = valueAt(ownBuys, ticks);
        out.ownSell = valueAt(ownSells, ticks);
        out.isLast = ticks == lastTicks;
        rows.push_back(out);
    }
    return rows;
}

} // namespace vx_ws
