#include "apps/Workspace/MarketData/OptionPricing.h"

#include <algorithm>
#include <cmath>

namespace vx_md {

namespace {
double NormalCdf(double x)
{
    return 0.5 * std::erfc(-x / std::sqrt(2.0));
}
} // namespace

double BlackScholesPrice(EnOptionRight right, double spot, double strike, double rate, double volatility,
                         double years)
{
    if (!(spot > 0.0) || !(strike > 0.0) || right == EnOptionRight::None)
        return 0.0;
    const double discount = std::exp(-rate * std::max(years, 0.0));
    const double sigmaRootT = volatility * std::sqrt(std::max(years, 0.0));
    if (sigmaRootT <= 1e-12) {
        const double forwardIntrinsic = spot - strike * discount;
        return right == EnOptionRight::Call ? std::max(forwardIntrinsic, 0.0)
                                            : std::max(-forwardIntrinsic, 0.0);
    }
    const double d1 = (std::log(spot / strike) + (rate + 0.5 * volatility * volatility) * years) / sigmaRootT;
    const double d2 = d1 - sigmaRootT;
    if (right == EnOptionRight::Call)
        return spot * NormalCdf(d1) - strike * discount * NormalCdf(d2);
    return strike * discount * NormalCdf(-d2) - spot * NormalCdf(-d1);
}

} // namespace vx_md
