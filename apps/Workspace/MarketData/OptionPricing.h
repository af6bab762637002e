#pragma once

// European option prices by Black-Scholes without dividends. Inputs: spot and strike > 0,
// annual rate, annual volatility >= 0 and years to expiry >= 0. At zero time or volatility the
// price is the discounted intrinsic value. Invalid spot or strike returns 0.

#include "apps/Workspace/MarketData/MarketTypes.h"

namespace vx_md {

double BlackScholesPrice(EnOptionRight right, double spot, double strike, double rate, double volatility,
                         double years);

} // namespace vx_md
