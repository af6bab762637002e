#pragma once

// The workspace program's simulated market-data feed. Owned by the program (tests make their
// own; there is no instance). Only subscribed securities move: Subscribe/Unsubscribe count
// references, and a subscribed option also keeps its underlying moving. Step() advances the
// simulated clock by one second and every moving security by one trade, then sends bus message
// 30203 immediately on the main thread with p1 -> std::set<unsigned long> of changed ids and
// p2 -> std::set<unsigned long> of changed VXMarketField values (valid only during delivery);
// nothing is sent when nothing moved. Accessors for unknown ids log and return empty values.

#include "apps/Workspace/MarketData/MarketTypes.h"

#include <QObject>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace vx_md {

class CVXSimMarketData : public QObject
{
    Q_OBJECT
public:
    static constexpr unsigned int kMsgStockDataUpdate = 30203;
    // The simulated clock starts at 09:30:00.
    static constexpr int kOpenTime = 9 * 3600 + 30 * 60;

    explicit CVXSimMarketData(std::uint64_t seed, QObject* parent = nullptr);
    ~CVXSimMarketData() override;

    // Steps every intervalMs on this object's thread; intervalMs <= 0 logs and does nothing.
    void Start(int intervalMs);
    void Stop();
    bool IsRunning() const;
    void Step();
    // Trading history before the program opens: advances the clock by `seconds`, moving every
    // security of the universe (subscribed or not) one trade per second, and sends nothing.
    void WarmUp(int seconds);

    // False (and logged) for an unknown id or an Unsubscribe without a matching Subscribe.
    bool Subscribe(unsigned long id);
    bool Unsubscribe(unsigned long id);
    int SubscriptionCount(unsigned long id) const;

    const std::vector<SecurityInfo>& Securities() const;
    bool Contains(unsigned long id) const;
    SecurityInfo GetSecurity(unsigned long id) const;
    Quote GetQuote(unsigned long id) const;
    OrderBook GetOrderBook(unsigned long id) const;
    // The most recent trades, oldest first; at most `count` (count <= 0: all kept).
    std::vector<Tick> GetTicks(unsigned long id, int count = 0) const;
    std::vector<Candle> GetCandles(unsigned long id) const;
    // The option's model price now (not rounded to the tick grid); 0 for a non-option.
    double OptionTheoreticalPrice(unsigned long id) const;
    // The option ids on an underlying, in universe order.
    std::vector<unsigned long> OptionChain(unsigned long underlyingId) const;
    // Serialised vx_md_pb::MarketSnapshot; empty for an unknown id.
    std::string SnapshotBytes(unsigned long id) const;
    int Time() const;

private:
    struct Impl;
    std::unique_ptr<Impl> d;
};

} // namespace vx_md
