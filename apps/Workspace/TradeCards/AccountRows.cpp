#include "apps/Workspace/TradeCards/AccountRows.h"

#include "apps/Workspace/MarketData/SimMarketData.h"

#include <algorithm>
#include <cmath>

namespace vx_ws {

std::vector<PositionRow> BuildPositionRows(const std::vector<vx_trade::Position>& positions,
                                           const PositionSecurityLookup& lookup)
{
    std::vector<PositionRow> rows;
    rows.reserve(positions.size());
    for (const vx_trade::Position& position : positions) {
        const PositionSecurity security = lookup ? lookup(position.stockId) : PositionSecurity();
        PositionRow row;
        row.stockId = position.stockId;
        row.quantity = position.quantity;
        row.averageCost = position.averageCost;
        row.code = security.known ? security.code : QString::number(position.stockId);
        row.name = security.name;
        row.tickSize = security.tickSize > 0 ? security.tickSize : 0.01;
        row.last = security.known && security.last > 0 ? security.last : position.averageCost;
        const double quantity = static_cast<double>(position.quantity);
        row.marketValue = row.last * quantity;
        row.unrealizedPnL = (row.last - row.averageCost) * quantity;
        const double cost = std::fabs(quantity) * row.averageCost;
        row.pnlRatio = cost > 0 ? row.unrealizedPnL / cost : 0.0;
        rows.push_back(row);
    }
    return rows;
}

std::vector<PositionRow> BuildPositionRows(const std::vector<vx_trade::Position>& positions,
                                           const vx_md::CVXSimMarketData* marketData)
{
    return BuildPositionRows(positions, [marketData](unsigned long stockId) {
        PositionSecurity security;
        if (!marketData || !marketData->Contains(stockId))
            return security;
        const vx_md::SecurityInfo info = marketData->GetSecurity(stockId);
        security.known = true;
        security.code = QString::fromStdString(info.code);
        security.name = QString::fromStdString(info.name);
        security.tickSize = info.tickSize;
        security.last = marketData->GetQuote(stockId).last;
        return security;
    });
}

PositionTotals SumPositions(const std::vector<PositionRow>& rows)
{
    PositionTotals totals;
    double cost = 0.0;
    for (const PositionRow& row : rows) {
        totals.marketValue += row.marketValue;
        totals.unrealizedPnL += row.unrealizedPnL;
        cost += std::fabs(static_cast<double>(row.quantity)) * row.averageCost;
    }
    totals.pnlRatio = cost > 0 ? totals.unrealizedPnL / cost : 0.0;
    return totals;
}

bool IsWorking(const vx_trade::Order& order)
{
    return order.status == vx_trade::EnOrderStatus::Working ||
           order.status == vx_trade::EnOrderStatus::PartFilled;
}

std::vector<vx_trade::Order> FilterOrders(const std::vector<vx_trade::Order>& orders, EnOrderFilter filter,
                                          unsigned long stockId)
{
    std::vector<vx_trade::Order> kept;
    for (const vx_trade::Order& order : orders) {
        if (stockId != 0 && order.stockId != stockId)
            continue;
        bool pass = true;
        switch (filter) {
        case EnOrderFilter::All:
            break;
        case EnOrderFilter::Working:
            pass = IsWorking(order);
            break;
        case EnOrderFilter::Filled:
            pass = order.status == vx_trade::EnOrderStatus::Filled;
            break;
        case EnOrderFilter::Cancelled:
            pass = order.status == vx_trade::EnOrderStatus::Cancelled ||
                   order.status == vx_trade::EnOrderStatus::Rejected;
            break;
        }
        if (pass)
            kept.push_back(order);
    }
    return kept;
}

std::vector<vx_trade::Order> FilterHistory(const std::vector<vx_trade::Order>& orders, EnHistoryPeriod period)
{
    std::vector<vx_trade::Order> kept;
    for (const vx_trade::Order& order : orders) {
        if ((period == EnHistoryPeriod::Today && order.dayOffset != 0) ||
            (period == EnHistoryPeriod::Week && order.dayOffset < -6))
            continue;
        kept.push_back(order);
    }
    std::stable_sort(kept.begin(), kept.end(), [](const vx_trade::Order& a, const vx_trade::Order& b) {
        if (a.dayOffset != b.dayOffset)
            return a.dayOffset > b.dayOffset;
        if (a.updateTime != b.updateTime)
            return a.updateTime > b.updateTime;
        return a.orderId > b.orderId;
    });
    return kept;
}

QDate OrderDate(const vx_trade::Order& order, const QDate& today)
{
    return today.addDays(order.dayOffset);
}

double CashShare(const vx_trade::AccountSummary& summary)
{
    const double cash = std::max(0.0, summary.cash);
    const double whole = cash + std::fabs(summary.marketValue);
    return whole > 0 ? cash / whole : 0.0;
}

} // namespace vx_ws
