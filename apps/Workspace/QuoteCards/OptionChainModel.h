#pragma once

// The option chain of an underlying as the option-chain card lays it out: one group per expiry
// (nearest first), in each a row per strike (lowest first) pairing the call and the put of that
// strike; a side without an option at a strike has id 0. Plus the per-option numbers a row shows
// and the in-the-money rule. Pure code on the feed's securities and quotes.

#include "apps/Workspace/MarketData/MarketTypes.h"

#include <vector>

namespace vx_md {
class CVXSimMarketData;
}

namespace vx_ws {

struct OptionChainRow
{
    double strike = 0.0;
    unsigned long callId = 0;
    unsigned long putId = 0;
};

struct OptionChainExpiry
{
    int expiryDays = 0;
    std::vector<OptionChainRow> rows;
};

struct OptionChain
{
    unsigned long underlyingId = 0;
    std::vector<OptionChainExpiry> expiries;

    bool IsEmpty() const { return expiries.empty(); }
    // The group of an expiry; -1 when the chain has none.
    int ExpiryIndex(int expiryDays) const;
    // Where an option sits; false when it is not in the chain.
    bool Locate(unsigned long optionId, int* expiryIndex, int* rowIndex, vx_md::EnOptionRight* right) const;
    // Every option of the chain, group by group, calls before puts within a row.
    std::vector<unsigned long> OptionIDs() const;
};

// The options among `securities` written on `underlyingId`, arranged as above.
OptionChain MakeOptionChain(const std::vector<vx_md::SecurityInfo>& securities, unsigned long underlyingId);

// The underlying whose chain a card showing `shownId` lists: the option's underlying for an
// option, else the security itself (0 for an id the feed does not know).
unsigned long OptionChainUnderlying(const vx_md::CVXSimMarketData& feed, unsigned long shownId);

// A call is in the money below the spot, a put above it; at the money is neither.
bool IsInTheMoney(vx_md::EnOptionRight right, double strike, double spot);

struct OptionSideQuote
{
    bool valid = false;
    double bid = 0.0; // 0 when that side of the book is empty
    double ask = 0.0;
    double last = 0.0;
    double change = 0.0; // last - previous close
    double theoretical = 0.0;
};

OptionSideQuote MakeOptionSideQuote(const vx_md::CVXSimMarketData& feed, unsigned long optionId);

} // namespace vx_ws
