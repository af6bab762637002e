#pragma once

// CVXOrderTableCard: the table half the orders and history cards share. A card names its columns
// as order fields (with the priority each keeps when the card is narrow) and hands over the
// orders to list; one row per order, keyed by the order id, the cells in the order's own
// security's decimals and colours. A click on a row shows the order's security in the card's
// linkage group.

#include "apps/Workspace/Trade/SimTradeService.h"
#include "apps/Workspace/TradeCards/TradeTableCard.h"

#include <QDate>

#include <vector>

namespace vx_ws {

// What a column of an order table shows.
enum class EnOrderField
{
    Date,       // calendar day of the last update, counted back from "today"
    SubmitTime, // time of day the order was placed
    UpdateTime, // time of day of its last change
    Code,
    Side,
    Type,
    Price, // the type's name for a market order
    Quantity,
    Filled,
    AverageFill, // "--" until something filled
    Status,
    Cancel, // a cancel action on working orders, empty otherwise
};

struct OrderColumn
{
    EnOrderField field;
    int priority; // TradeTableColumn::priority
};

// The table column of `field` (id, title, alignment, widths).
TradeTableColumn OrderFieldColumn(const OrderColumn& column);
// The row of `order` with one cell per column, in `columns`' order.
TradeTableRow OrderTableRow(const vx_trade::Order& order, const std::vector<OrderColumn>& columns,
                            const QDate& today);

class CVXOrderTableCard : public CVXTradeTableCard
{
    Q_OBJECT
public:
    CVXOrderTableCard(EnVXCardPos pos, QWidget* parent, std::vector<OrderColumn> columns);
    ~CVXOrderTableCard() override;

    // The orders listed, in the order given (the table may show them sorted).
    const std::vector<vx_trade::Order>& ListedOrders() const { return m_orders; }
    // Index of the first column that shows `field`, -1 when none does.
    int ColumnOf(EnOrderField field) const;

protected:
    // Replaces the rows; `today` is the day the date column counts from.
    void SetListedOrders(std::vector<vx_trade::Order> orders, const QDate& today = QDate());
    void OnRowClicked(unsigned long long key) override;

private:
    std::vector<OrderColumn> m_columns;
    std::vector<vx_trade::Order> m_orders;
};

} // namespace vx_ws
