#pragma once

// What the order-book card shows of a book: the levels of the chosen depth with their volume
// bars, the spread and the balance between the shown bid and ask volume. Pure arithmetic on the
// feed's book; the card only paints the result.

#include "apps/Workspace/MarketData/MarketTypes.h"

#include <vector>

namespace vx_ws {

struct OrderBookLevelView
{
    int level = 0; // 1: the best price of its side
    double price = 0.0;
    long long volume = 0;
    // The volume against the largest volume shown on either side, 0..1, so that both sides
    // share one scale.
    double barFraction = 0.0;
};

struct OrderBookView
{
    std::vector<OrderBookLevelView> bids; // best (highest) first
    std::vector<OrderBookLevelView> asks; // best (lowest) first
    bool hasSpread = false;               // both sides have a level
    double spread = 0.0;                  // best ask - best bid
    int spreadTicks = 0;                  // the spread in price ticks
    long long bidVolume = 0;              // the shown levels only
    long long askVolume = 0;
    // (bid - ask) / (bid + ask) of the shown volume, -1..1; 0 when nothing is shown.
    double imbalance = 0.0;
    // bid / (bid + ask) of the shown volume; 0.5 when nothing is shown.
    double bidShare = 0.5;
};

// The depths the card offers; anything else becomes the nearest of them.
int NormalizeOrderBookDepth(int depth);

// The first `depth` levels of each side (fewer when the book is thinner).
OrderBookView MakeOrderBookView(const vx_md::OrderBook& book, int depth, double tickSize);

} // namespace vx_ws
