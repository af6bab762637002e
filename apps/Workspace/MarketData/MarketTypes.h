#pragma once

// Plain value types of the simulated market-data feed. Prices are in the security's currency;
// times are seconds since midnight of the simulated trading day.

#include <cstdint>
#include <string>
#include <vector>

namespace vx_md {

enum class EnSecurityKind
{
    Stock,
    Index,
    Etf,
    Option,
};

enum class EnOptionRight
{
    None,
    Call,
    Put,
};

// The data fields a step can change; carried in the second set of bus message 30203.
enum VXMarketField : unsigned long
{
    kFieldPrice = 1,
    kFieldVolume = 2,
    kFieldBook = 3,
    kFieldTicks = 4,
    kFieldCandles = 5,
    kFieldDayStats = 6,
};

struct SecurityInfo
{
    unsigned long id = 0;
    std::string code;
    std::string name;
    std::string market; // "SH", "SZ", "HK"
    EnSecurityKind kind = EnSecurityKind::Stock;
    int lotSize = 0;
    double tickSize = 0.01;
    double prevClose = 0.0;
    // Annual volatility used for the walk and, for an underlying, its options.
    double volatility = 0.0;
    // Options only.
    unsigned long underlyingId = 0;
    EnOptionRight right = EnOptionRight::None;
    double strike = 0.0;
    int expiryDays = 0;
};

struct Tick
{
    int time = 0;
    double price = 0.0;
    long long volume = 0;
    // +1 a buyer took the ask, -1 a seller hit the bid.
    int side = 0;
};

struct Candle
{
    int minute = 0; // minutes since midnight
    double open = 0.0;
    double high = 0.0;
    double low = 0.0;
    double close = 0.0;
    long long volume = 0;
};

struct BookLevel
{
    double price = 0.0;
    long long volume = 0;
    std::vector<unsigned int> brokers; // broker numbers queued at this level, front first
};

// Bids best (highest) first, asks best (lowest) first; up to 10 levels each side.
struct OrderBook
{
    std::vector<BookLevel> bids;
    std::vector<BookLevel> asks;
};

struct DayStats
{
    double open = 0.0;
    double high = 0.0;
    double low = 0.0;
    long long volume = 0;
    double turnover = 0.0;
    int tradeCount = 0;
};

struct Quote
{
    unsigned long id = 0;
    int time = 0;
    double last = 0.0;
    double prevClose = 0.0;
    DayStats day;
};

} // namespace vx_md
