#pragma once

// CVXBookTraderModel: the arithmetic of a price ladder, without widgets. Prices are whole ticks
// (price = ticks * tickSize); the ladder shows rows of one tick each, highest price on top,
// below a header strip. It knows which tick sits on which row and which row and column a point
// is in, keeps the view centred on a price or scrolled by whole rows, and builds the rows' cells
// from a book and the account's working orders.

#include "apps/Workspace/MarketData/MarketTypes.h"
#include "apps/Workspace/Trade/SimTradeService.h"

#include <vector>

namespace vx_ws {

struct BookTraderRow
{
    long long ticks = 0;
    double price = 0.0;
    long long bidVolume = 0; // 0: no bid at this price
    long long askVolume = 0;
    long long ownBuy = 0; // remaining quantity of the account's working buys at this price
    long long ownSell = 0;
    bool isLast = false; // the last traded price
};

class CVXBookTraderModel
{
public:
    enum class EnColumn
    {
        None,
        OwnBuy,
        Bid,
        Price,
        Ask,
        OwnSell,
    };

    void SetTickSize(double tickSize);
    double TickSize() const { return m_tickSize; }
    // Geometry: the header height and row height in pixels, the ladder's size.
    void SetGeometry(int width, int height, int headerHeight, int rowHeight);
    int RowHeight() const { return m_rowHeight; }
    int HeaderHeight() const { return m_headerHeight; }
    // Rows that fit below the header (a partly visible last row counts).
    int VisibleRows() const;

    // Puts `ticks` on the middle row.
    void CentreOn(long long ticks);
    // Positive: towards lower prices (what the wheel turning towards the user does).
    void ScrollRows(int rows);
    long long TopTicks() const { return m_topTicks; }
    long long TicksAtRow(int row) const { return m_topTicks - row; }
    // -1 when the tick is above or below the visible rows.
    int RowOfTicks(long long ticks) const;
    // The row under a y coordinate, -1 in the header or below the last visible row.
    int RowAt(int y) const;
    EnColumn ColumnAt(int x) const;
    // Left edge and width of a column, in pixels.
    int ColumnLeft(EnColumn column) const;
    int ColumnWidth(EnColumn column) const;
    // The nearest tick of a price (prices from the feed are on the grid up to rounding noise).
    long long TicksOf(double price) const;
    double PriceOf(long long ticks) const { return static_cast<double>(ticks) * m_tickSize; }

    // The visible rows, top first, with the book's volumes, the orders' remaining quantities and
    // the last price marked. Rows below one tick are left out.
    std::vector<BookTraderRow> BuildRows(const vx_md::OrderBook& book, double last,
                                         const std::vector<vx_trade::Order>& workingOrders) const;

private:
    double m_tickSize = 0.01;
    int m_width = 0;
    int m_height = 0;
    int m_headerHeight = 0;
    int m_rowHeight = 18;
    long long m_topTicks = 0;
};

} // namespace vx_ws
