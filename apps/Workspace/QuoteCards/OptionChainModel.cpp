#include "apps/Workspace/QuoteCards/OptionChainModel.h"

#include "apps/Workspace/MarketData/SimMarketData.h"

#include <algorithm>
#include <cmath>

namespace vx_ws {

namespace {

// Strikes come from rounding, so equal strikes may differ in the last bits.
bool SameStrike(double a, double b)
{
    return std::fabs(a - b) < 1e-6;
}

} // namespace

int OptionChain::ExpiryIndex(int expiryDays) const
{
    for (std::size_t i = 0; i < expiries.size(); ++i)
        if (expiries[i].expiryDays == expiryDays)
            return static_cast<int>(i);
    return -1;
}

bool OptionChain::Locate(unsigned long optionId, int* expiryIndex, int* rowIndex,
                         vx_md::EnOptionRight* right) const
{
    if (optionId == 0)
        return false;
    for (std::size_t e = 0; e < expiries.size(); ++e) {
        const auto& rows = expiries[e].rows;
        for (std::size_t r = 0; r < rows.size(); ++r) {
            const bool call = rows[r].callId == optionId;
            if (!call && rows[r].putId != optionId)
                continue;
            if (expiryIndex)
                *expiryIndex = static_cast<int>(e);
            if (rowIndex)
                *rowIndex = static_cast<int>(r);
            if (right)
                *right = call ? vx_md::EnOptionRight::Call : vx_md::EnOptionRight::Put;
            return true;
        }
    }
    return false;
}

std::vector<unsigned long> OptionChain::OptionIDs() const
{
    std::vector<unsigned long> ids;
    for (const OptionChainExpiry& expiry : expiries) {
        for (const OptionChainRow& row : expiry.rows) {
            if (row.callId != 0)
                ids.push_back(row.callId);
            if (row.putId != 0)
                ids.push_back(row.putId);
        }
    }
    return ids;
}

OptionChain MakeOptionChain(const std::vector<vx_md::SecurityInfo>& securities, unsigned long underlyingId)
{
    OptionChain chain;
    chain.underlyingId = underlyingId;
    if (underlyingId == 0)
        return chain;
    for (const vx_md::SecurityInfo& info : securities) {
        if (info.kind != vx_md::EnSecurityKind::Option || info.underlyingId != underlyingId ||
            info.right == vx_md::EnOptionRight::None)
            continue;
        int e = chain.ExpiryIndex(info.expiryDays);
        if (e < 0) {
            chain.expiries.push_back({info.expiryDays, {}});
            e = static_cast<int>(chain.expiries.size()) - 1;
        }
        auto& rows = chain.expiries[e].rows;
        auto row = std::find_if(rows.begin(), rows.end(),
                                [&](const OptionChainRow& r) { return SameStrike(r.strike, info.strike); });
        if (row == rows.end()) {
            rows.push_back({info.strike, 0, 0});
            row = rows.end() - 1;
        }
        // A second option of the same right and strike would be a feed error; the first stays.
        unsigned long& slot = info.right == vx_md::EnOptionRight::Call ? row->callId : row->putId;
        if (slot == 0)
            slot = info.id;
    }
    std::sort(
        chain.expiries.begin(), chain.expiries.end(),
        [](const OptionChainExpiry& a, const OptionChainExpiry& b) { return a.expiryDays < b.expiryDays; });
    for (OptionChainExpiry& expiry : chain.expiries)
        std::sort(expiry.rows.begin(), expiry.rows.end(),
                  [](const OptionChainRow& a, const OptionChainRow& b) { return a.strike < b.strike; });
    return chain;
}

unsigned long OptionChainUnderlying(const vx_md::CVXSimMarketData& feed, unsigned long shownId)
{
    if (!feed.Contains(shownId))
        return 0;
    const vx_md::SecurityInfo info = feed.GetSecurity(shownId);
    if (info.kind == vx_md::EnSecurityKind::Option)
        return info.underlyingId;
    return shownId;
}

bool IsInTheMoney(vx_md::EnOptionRight right, double strike, double spot)
{
    if (spot <= 0)
        return false;
    if (right == vx_md::EnOptionRight::Call)
        return strike < spot;
    if (right == vx_md::EnOptionRight::Put)
        return strike > spot;
    return false;
}

OptionSideQuote MakeOptionSideQuote(const vx_md::CVXSimMarketData& feed, unsigned long optionId)
{
    OptionSideQuote out;
    if (optionId == 0 || !feed.Contains(optionId))
        return out;
    const vx_md::Quote quote = feed.GetQuote(optionId);
    const vx_md::OrderBook book = feed.GetOrderBook(optionId);
    out.valid = true;
    out.bid = book.bids.empty() ? 0.0 : book.bids.front().price;
    out.ask = book.asks.empty() ? 0.0 : book.asks.front().price;
    out.last = quote.last;
    out.change = quote.last - quote.prevClose;
    out.theoretical = feed.OptionTheoreticalPrice(optionId);
    return out;
}

} // namespace vx_ws
