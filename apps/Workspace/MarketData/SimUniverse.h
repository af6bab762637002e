#pragma once

// The fictitious securities of the simulated feed, built only from the seed: the same seed gives
// the same list in the same order. Ids: 1 the index, 500.. ETFs, 1000.. stocks, 100000.. options
// (calls and puts on a few underlyings, five strikes around the underlying's previous close and
// two expiries).

#include "apps/Workspace/MarketData/MarketTypes.h"

#include <cstdint>
#include <vector>

namespace vx_md {

constexpr unsigned long kIndexId = 1;
constexpr unsigned long kFirstEtfId = 500;
constexpr unsigned long kFirstStockId = 1000;
constexpr unsigned long kFirstOptionId = 100000;
constexpr int kStockCount = 40;
constexpr int kEtfCount = 3;
// The risk-free rate the option prices use.
constexpr double kRiskFreeRate = 0.02;

std::vector<SecurityInfo> BuildSimUniverse(std::uint64_t seed);

} // namespace vx_md
