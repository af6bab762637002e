#include "apps/Workspace/MarketData/SimUniverse.h"

#include "apps/Workspace/MarketData/OptionPricing.h"

#include <cmath>
#include <random>

namespace vx_md {

namespace {

double RoundToTick(double price, double tick)
{
    return std::max(tick, std::round(price / tick) * tick);
}

std::string StockName(std::mt19937_64& rng)
{
    static const char* const kHeads[] = {"远", "华", "辰", "泰", "宁", "恒",
                                         "嘉", "盛", "川", "岳", "明", "瑞"};
    static const char* const kTails[] = {"科技", "能源", "银行", "制药", "电子",
                                         "物流", "食品", "材料", "证券", "汽车"};
    std::uniform_int_distribution<int> head(0, 11);
    std::uniform_int_distribution<int> tail(0, 9);
    return std::string(kHeads[head(rng)]) + kHeads[head(rng)] + kTails[tail(rng)];
}

// `underlying` is a copy: it is usually an element of `out`, which the push_backs below reallocate.
void AddOptions(std::vector<SecurityInfo>& out, const SecurityInfo underlying, unsigned long& nextId)
{
    static const double kStrikeSteps[] = {-0.10, -0.05, 0.0, 0.05, 0.10};
    static const int kExpiries[] = {30, 90};
    const double strikeTick = underlying.prevClose < 10.0 ? 0.05 : 0.5;
    for (int expiry : kExpiries) {
        for (double step : kStrikeSteps) {
            const double strike = RoundToTick(underlying.prevClose * (1.0 + step), strikeTick);
            for (EnOptionRight right : {EnOptionRight::Call, EnOptionRight::Put}) {
                SecurityInfo option;
                option.id = nextId++;
                const char rightLetter = right == EnOptionRight::Call ? 'C' : 'P';
                option.code = underlying.code + rightLetter + std::to_string(expiry) + "D" +
                              std::to_string(static_cast<long long>(std::lround(strike * 100)));
                option.name = underlying.name + (right == EnOptionRight::Call ? "购" : "沽") +
                              std::to_string(expiry) + "天";
                option.market = underlying.market;
                option.kind = EnSecurityKind::Option;
                option.lotSize = 1;
                option.tickSize = 0.001;
                option.volatility = underlying.volatility;
                option.underlyingId = underlying.id;
                option.right = right;
                option.strike = strike;
                option.expiryDays = expiry;
                option.prevClose =
                    RoundToTick(BlackScholesPrice(right, underlying.prevClose, strike, kRiskFreeRate,
                                                  underlying.volatility, expiry / 365.0),
                                option.tickSize);
                out.push_back(option);
            }
        }
    }
}

} // namespace

std::vector<SecurityInfo> BuildSimUniverse(std::uint64_t seed)
{
    std::mt19937_64 rng(seed);
    std::uniform_real_distribution<double> vol(0.15, 0.55);
    std::vector<SecurityInfo> out;

    SecurityInfo index;
    index.id = kIndexId;
    index.code = "SIM50";
    index.name = "模拟50指数";
    index.market = "SH";
    index.kind = EnSecurityKind::Index;
    index.lotSize = 1;
    index.prevClose = RoundToTick(std::uniform_real_distribution<double>(2500.0, 4000.0)(rng), 0.01);
    index.volatility = 0.15;
    out.push_back(index);

    for (int i = 0; i < kEtfCount; ++i) {
        SecurityInfo etf;
        etf.id = kFirstEtfId + i;
        etf.code = std::to_string(510100 + i * 10);
        etf.name = "模拟ETF" + std::to_string(i + 1);
        etf.market = "SH";
        etf.kind = EnSecurityKind::Etf;
        etf.lotSize = 100;
        etf.tickSize = 0.001;
        etf.prevClose = RoundToTick(std::uniform_real_distribution<double>(1.0, 5.0)(rng), etf.tickSize);
        etf.volatility = std::uniform_real_distribution<double>(0.12, 0.25)(rng);
        out.push_back(etf);
    }

    static const char* const kMarkets[] = {"SH", "SZ", "HK"};
    static const int kHkLots[] = {100, 200, 500, 1000};
    for (int i = 0; i < kStockCount; ++i) {
        SecurityInfo stock;
        stock.id = kFirstStockId + i;
        stock.market = kMarkets[i % 3];
        stock.code = stock.market == "SH"   ? std::to_string(600000 + i * 7)
                     : stock.market == "SZ" ? std::to_string(1000000 + i * 7).substr(1)
                                            : std::to_string(100000 + i * 11).substr(1);
        stock.name = StockName(rng);
        stock.kind = EnSecurityKind::Stock;
        stock.lotSize = stock.market == "HK" ? kHkLots[std::uniform_int_distribution<int>(0, 3)(rng)] : 100;
        stock.tickSize = 0.01;
        stock.prevClose =
            RoundToTick(std::exp(std::uniform_real_distribution<double>(std::log(3.0), std::log(300.0))(rng)),
                        stock.tickSize);
        stock.volatility = vol(rng);
        out.push_back(stock);
    }

    unsigned long nextOptionId = kFirstOptionId;
    AddOptions(out, out[1], nextOptionId);             // the first ETF
    AddOptions(out, out[1 + kEtfCount], nextOptionId); // the first two stocks
    AddOptions(out, out[2 + kEtfCount], nextOptionId);
    return out;
}

} // namespace vx_md
