#include "apps/Workspace/TradeCards/OrderTicketModel.h"

#include "apps/Workspace/MarketData/MarketTypes.h"

#include "Platform/Core/Langx.h"

#include <algorithm>
#include <cmath>

namespace vx_ws {

using vx_trade::EnOrderSide;
using vx_trade::EnOrderType;

void CVXOrderTicketModel::SetSecurity(unsigned long stockId, int lotSize, double tickSize)
{
    const bool changed = stockId != m_stockId;
    m_stockId = stockId;
    m_lotSize = std::max(1, lotSize);
    m_tickSize = tickSize > 0.0 ? tickSize : 0.01;
    m_quantity = std::max<long long>(m_lotSize, m_quantity / m_lotSize * m_lotSize);
    if (changed) {
        m_last = m_bid = m_ask = 0.0;
        ResetPrice();
    }
}

void CVXOrderTicketModel::SetMarket(double last, double bestBid, double bestAsk)
{
    m_last = std::max(0.0, last);
    m_bid = std::max(0.0, bestBid);
    m_ask = std::max(0.0, bestAsk);
    if (!m_priceFromUser)
        m_price = Snap(OppositePrice());
}

void CVXOrderTicketModel::SetMarketFromBook(double last, const vx_md::OrderBook& book)
{
    SetMarket(last, book.bids.empty() ? 0.0 : book.bids.front().price,
              book.asks.empty() ? 0.0 : book.asks.front().price);
}

void CVXOrderTicketModel::SetAccountLimits(bool hasAccount, bool margin, double buyingPower,
                                           long long sellable)
{
    m_hasAccount = hasAccount;
    m_margin = margin;
    m_buyingPower = buyingPower;
    m_sellable = std::max(0LL, sellable);
}

void CVXOrderTicketModel::SetSide(EnOrderSide side)
{
    if (side == m_side)
        return;
    m_side = side;
    if (!m_priceFromUser)
        ResetPrice();
}

void CVXOrderTicketModel::SetType(EnOrderType type)
{
    m_type = type;
}

void CVXOrderTicketModel::SetPrice(double price)
{
    m_price = price > 0.0 ? Snap(price) : 0.0;
    m_priceFromUser = true;
}

void CVXOrderTicketModel::SetQuantity(long long quantity)
{
    m_quantity = std::max(0LL, quantity / m_lotSize * m_lotSize);
}

void CVXOrderTicketModel::ResetPrice()
{
    m_priceFromUser = false;
    const double opposite = OppositePrice();
    m_price = opposite > 0.0 ? Snap(opposite) : 0.0;
}

double CVXOrderTicketModel::OppositePrice() const
{
    const double opposite = m_side == EnOrderSide::Buy ? m_ask : m_bid;
    return opposite > 0.0 ? opposite : m_last;
}

double CVXOrderTicketModel::EffectivePrice() const
{
    return m_type == EnOrderType::Market ? OppositePrice() : m_price;
}

double CVXOrderTicketModel::EstimatedAmount() const
{
    return EffectivePrice() * static_cast<double>(m_quantity);
}

long long CVXOrderTicketModel::MaxQuantity() const
{
    const double price = EffectivePrice();
    if (!m_hasAccount || m_stockId == 0 || price <= 0.0)
        return 0;
    const double lotValue = price * m_lotSize;
    // A hair over a whole lot count is that count, not one less (prices are on a decimal grid).
    const long long affordableLots =
        m_buyingPower > 0.0 ? static_cast<long long>(m_buyingPower / lotValue + 1e-9) : 0;
    if (m_side == EnOrderSide::Buy)
        return affordableLots * m_lotSize;
    const long long sellable = m_sellable / m_lotSize * m_lotSize;
    return m_margin ? sellable + affordableLots * m_lotSize : sellable;
}

CVXOrderTicketModel::EnIssue CVXOrderTicketModel::Issue() const
{
    if (!m_hasAccount)
        return EnIssue::NoAccount;
    if (m_stockId == 0)
        return EnIssue::NoSecurity;
    if (m_type == EnOrderType::Limit && m_price <= 0.0)
        return EnIssue::NoPrice;
    if (m_quantity <= 0)
        return EnIssue::NoQuantity;
    if (m_quantity > MaxQuantity())
        return EnIssue::OverMaximum;
    return EnIssue::None;
}

bool CVXOrderTicketModel::CanPlace() const
{
    const EnIssue issue = Issue();
    return issue == EnIssue::None || issue == EnIssue::OverMaximum;
}

QString CVXOrderTicketModel::IssueText(EnIssue issue)
{
    switch (issue) {
    case EnIssue::None:
        return QString();
    case EnIssue::NoAccount:
        return core::langx::tr(970311, "请选择交易账户");
    case EnIssue::NoSecurity:
        return core::langx::tr(970312, "请选择证券");
    case EnIssue::NoPrice:
        return core::langx::tr(970313, "请输入价格");
    case EnIssue::NoQuantity:
        return core::langx::tr(970314, "请输入数量");
    case EnIssue::OverMaximum:
        return core::langx::tr(970315, "数量超过最大可交易数量");
    }
    return QString();
}

double CVXOrderTicketModel::Snap(double price) const
{
    if (price <= 0.0)
        return 0.0;
    return std::max(m_tickSize, std::round(price / m_tickSize) * m_tickSize);
}

} // namespace vx_ws
