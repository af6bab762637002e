#include "apps/Workspace/QuoteCards/OrderBookModel.h"

#include <algorithm>
#include <cmath>

namespace vx_ws {

namespace {

std::vector<OrderBookLevelView> TakeLevels(const std::vector<vx_md::BookLevel>& levels, int depth,
                                           long long* total)
{
    std::vector<OrderBookLevelView> out;
    const int count = std::min<int>(depth, static_cast<int>(levels.size()));
    out.reserve(count);
    for (int i = 0; i < count; ++i) {
        OrderBookLevelView view;
        view.level = i + 1;
        view.price = levels[i].price;
        view.volume = std::max<long long>(0, levels[i].volume);
        *total += view.volume;
        out.push_back(view);
    }
    return out;
}

} // namespace

int NormalizeOrderBookDepth(int depth)
{
    return depth > 7 ? 10 : 5;
}

OrderBookView MakeOrderBookView(const vx_md::OrderBook& book, int depth, double tickSize)
{
    OrderBookView view;
    const int shown = NormalizeOrderBookDepth(depth);
    view.bids = TakeLevels(book.bids, shown, &view.bidVolume);
    view.asks = TakeLevels(book.asks, shown, &view.askVolume);

    long long largest = 0;
    for (const auto* side : {&view.bids, &view.asks})
        for (const OrderBookLevelView& level : *side)
            largest = std::max(largest, level.volume);
    if (largest > 0) {
        for (auto* side : {&view.bids, &view.asks})
            for (OrderBookLevelView& level : *side)
                level.barFraction = static_cast<double>(level.volume) / static_cast<double>(largest);
    }

    if (!view.bids.empty() && !view.asks.empty()) {
        view.hasSpread = true;
        view.spread = view.asks.front().price - view.bids.front().price;
        if (tickSize > 0)
            view.spreadTicks = static_cast<int>(std::lround(view.spread / tickSize));
    }
    const long long total = view.bidVolume + view.askVolume;
    if (total > 0) {
        view.imbalance = static_cast<double>(view.bidVolume - view.askVolume) / static_cast<double>(total);
        view.bidShare = static_cast<double>(view.bidVolume) / static_cast<double>(total);
    }
    return view;
}

} // namespace vx_ws
