#pragma once

// CVXOrderTicketModel: the numbers of an order ticket, without widgets. It is told the security
// (lot and tick), the market (last, best bid and ask) and the account's limits (buying power,
// sellable quantity, margin), and holds what the user chose (side, type, price, quantity).
// Prices live on the tick grid and quantities on the lot grid; the setters snap to them.
//
// Until the user types a price, the price is the best opposite price (buy: ask, sell: bid, else
// the last) and follows the market; a typed price stays until ResetPrice() or another security.

#include "apps/Workspace/Trade/SimTradeService.h"

#include <QString>

namespace vx_md {
struct SecurityInfo;
struct OrderBook;
} // namespace vx_md

namespace vx_ws {

class CVXOrderTicketModel
{
public:
    // What keeps the ticket from being sent, in the order it is checked.
    enum class EnIssue
    {
        None,
        NoAccount,
        NoSecurity,
        NoPrice,     // a limit order without a positive price
        NoQuantity,  // quantity 0
        OverMaximum, // more than the account can buy or sell (the broker has the last word)
    };

    void SetSecurity(unsigned long stockId, int lotSize, double tickSize);
    void SetMarket(double last, double bestBid, double bestAsk);
    // From the feed's book and quote; empty sides count as "no price".
    void SetMarketFromBook(double last, const vx_md::OrderBook& book);
    void SetAccountLimits(bool hasAccount, bool margin, double buyingPower, long long sellable);

    void SetSide(vx_trade::EnOrderSide side);
    void SetType(vx_trade::EnOrderType type);
    // Snapped to the nearest tick (at least one tick); marks the price as the user's.
    void SetPrice(double price);
    // Snapped down to whole lots (never below 0).
    void SetQuantity(long long quantity);
    // Prefill: the best opposite price, forgetting a price the user typed.
    void ResetPrice();

    unsigned long StockID() const { return m_stockId; }
    int LotSize() const { return m_lotSize; }
    double TickSize() const { return m_tickSize; }
    vx_trade::EnOrderSide Side() const { return m_side; }
    vx_trade::EnOrderType Type() const { return m_type; }
    double Price() const { return m_price; }
    long long Quantity() const { return m_quantity; }
    bool IsPriceFromUser() const { return m_priceFromUser; }
    double Last() const { return m_last; }
    double BestBid() const { return m_bid; }
    double BestAsk() const { return m_ask; }

    // The best price on the other side of the book for the current side (0 when none).
    double OppositePrice() const;
    // The price an amount is estimated at: the limit, or the opposite price for a market order.
    double EffectivePrice() const;
    double EstimatedAmount() const;
    // Whole lots the account can buy at the effective price, or sell (a margin account may sell
    // its position plus what its buying power covers as a short). 0 without an account or price.
    long long MaxQuantity() const;
    EnIssue Issue() const;
    // The issue stops the ticket (OverMaximum does not: the broker refuses or accepts).
    bool CanPlace() const;

    static QString IssueText(EnIssue issue);

private:
    double Snap(double price) const;

    unsigned long m_stockId = 0;
    int m_lotSize = 1;
    double m_tickSize = 0.01;
    double m_last = 0.0;
    double m_bid = 0.0;
    double m_ask = 0.0;
    bool m_hasAccount = false;
    bool m_margin = false;
    double m_buyingPower = 0.0;
    long long m_sellable = 0;
    vx_trade::EnOrderSide m_side = vx_trade::EnOrderSide::Buy;
    vx_trade::EnOrderType m_type = vx_trade::EnOrderType::Limit;
    double m_price = 0.0;
    long long m_quantity = 0;
    bool m_priceFromUser = false;
};

} // namespace vx_ws
