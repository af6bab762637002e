#pragma once

// The numbers the account cards show, worked out from the trade service's value types and the
// feed's quotes: position rows and their totals, the order filters of the orders and history
// cards, and the cash / positions split of the account card. Pure functions: no widgets.

#include "apps/Workspace/Trade/SimTradeService.h"

#include <QDate>
#include <QString>

#include <functional>
#include <vector>

namespace vx_md {
class CVXSimMarketData;
}

namespace vx_ws {

struct PositionRow
{
    unsigned long stockId = 0;
    QString code;
    QString name;
    double tickSize = 0.01;
    long long quantity = 0; // negative: short
    double averageCost = 0.0;
    double last = 0.0;
    double marketValue = 0.0;   // last * quantity (negative for a short)
    double unrealizedPnL = 0.0; // (last - average cost) * quantity
    double pnlRatio = 0.0;      // P&L over the cost, |quantity| * average cost; 0 without a cost
};

struct PositionTotals
{
    double marketValue = 0.0;
    double unrealizedPnL = 0.0;
    double pnlRatio = 0.0; // total P&L over the total cost
};

// What a position row needs to know about its security; known false: the id is shown as the
// code and the last price is taken as the average cost (no P&L).
struct PositionSecurity
{
    bool known = false;
    QString code;
    QString name;
    double tickSize = 0.01;
    double last = 0.0; // <= 0: no trade yet, the average cost stands in
};
using PositionSecurityLookup = std::function<PositionSecurity(unsigned long stockId)>;

// One row per position, in the service's order.
std::vector<PositionRow> BuildPositionRows(const std::vector<vx_trade::Position>& positions,
                                           const PositionSecurityLookup& lookup);
// The same with the feed's securities and last prices (null feed: nothing is known).
std::vector<PositionRow> BuildPositionRows(const std::vector<vx_trade::Position>& positions,
                                           const vx_md::CVXSimMarketData* marketData);
PositionTotals SumPositions(const std::vector<PositionRow>& rows);

// The tabs of the orders card.
enum class EnOrderFilter : int
{
    All = 0,
    Working = 1, // working and part filled
    Filled = 2,
    Cancelled = 3, // cancelled and rejected: ended without being filled
};

// Orders passing the filter and, when stockId != 0, of that security; order kept.
std::vector<vx_trade::Order> FilterOrders(const std::vector<vx_trade::Order>& orders, EnOrderFilter filter,
                                          unsigned long stockId);
bool IsWorking(const vx_trade::Order& order);

// The periods of the history card.
enum class EnHistoryPeriod : int
{
    Today = 0,
    Week = 1, // today and the six days before
    All = 2,
};

// Orders of the period, newest first (day, then last update, then order id).
std::vector<vx_trade::Order> FilterHistory(const std::vector<vx_trade::Order>& orders,
                                           EnHistoryPeriod period);
// The calendar day of an order: today shifted by its day offset.
QDate OrderDate(const vx_trade::Order& order, const QDate& today);

// The account card's bar: the share of cash in cash + |market value| (0..1); 1 with no
// positions, 0 with nothing at all or negative cash.
double CashShare(const vx_trade::AccountSummary& summary);

} // namespace vx_ws
