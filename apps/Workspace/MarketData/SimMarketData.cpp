#include "apps/Workspace/MarketData/SimMarketData.h"

#include "apps/Workspace/MarketData/OptionPricing.h"
#include "apps/Workspace/MarketData/SimSecurity.h"
#include "apps/Workspace/MarketData/SimUniverse.h"
#include "apps/Workspace/MarketData/market_snapshot.pb.h"

#include "Platform/Core/Log.h"
#include "Platform/Core/MessageDispatch.h"
#include "Platform/Core/message_body.pb.h"

#include <QTimer>

#include <map>
#include <set>
#include <unordered_map>

namespace vx_md {

struct CVXSimMarketData::Impl
{
    std::vector<SecurityInfo> universe;
    std::vector<std::unique_ptr<CVXSimSecurity>> securities;
    std::unordered_map<unsigned long, std::size_t> indexOf;
    // References held by callers, and references that make a security move (callers' plus
    // those its subscribed options hold on it).
    std::map<unsigned long, int> subscriptions;
    std::map<unsigned long, int> moving;
    QTimer timer;
    int time = kOpenTime;

    const CVXSimSecurity* Find(unsigned long id) const
    {
        auto it = indexOf.find(id);
        return it == indexOf.end() ? nullptr : securities[it->second].get();
    }
    CVXSimSecurity* Find(unsigned long id)
    {
        auto it = indexOf.find(id);
        return it == indexOf.end() ? nullptr : securities[it->second].get();
    }
    void AddMoving(unsigned long id, int delta)
    {
        int& count = moving[id];
        count += delta;
        if (count <= 0)
            moving.erase(id);
    }
    double ModelPrice(const SecurityInfo& option) const
    {
        const CVXSimSecurity* underlying = Find(option.underlyingId);
        if (!underlying)
            return 0.0;
        return BlackScholesPrice(option.right, underlying->Last(), option.strike, kRiskFreeRate,
                                 underlying->Info().volatility, option.expiryDays / 365.0);
    }
};

CVXSimMarketData::CVXSimMarketData(std::uint64_t seed, QObject* parent)
    : QObject(parent), d(std::make_unique<Impl>())
{
    d->universe = BuildSimUniverse(seed);
    for (const SecurityInfo& info : d->universe) {
        d->indexOf[info.id] = d->securities.size();
        d->securities.push_back(std::make_unique<CVXSimSecurity>(info, seed));
    }
    connect(&d->timer, &QTimer::timeout, this, [this] { Step(); });
}

CVXSimMarketData::~CVXSimMarketData() = default;

void CVXSimMarketData::Start(int intervalMs)
{
    if (intervalMs <= 0) {
        VXLOG_WARN("CVXSimMarketData::Start: interval must be positive, got {}", intervalMs);
        return;
    }
    d->timer.start(intervalMs);
}

void CVXSimMarketData::Stop()
{
    d->timer.stop();
}

bool CVXSimMarketData::IsRunning() const
{
    return d->timer.isActive();
}

void CVXSimMarketData::Step()
{
    ++d->time;
    std::set<unsigned long> changedIds;
    // Underlyings move before the options priced from them.
    for (const auto& [id, count] : d->moving) {
        CVXSimSecurity* security = d->Find(id);
        if (security->Info().kind == EnSecurityKind::Option)
            continue;
        security->Step(d->time);
        changedIds.insert(id);
    }
    for (const auto& [id, count] : d->moving) {
        CVXSimSecurity* security = d->Find(id);
        if (security->Info().kind != EnSecurityKind::Option)
            continue;
        security->StepTo(d->time, d->ModelPrice(security->Info()));
        changedIds.insert(id);
    }
    if (changedIds.empty())
        return;

    // Every trade changes all of these; a finer set would only matter for a partial update.
    std::set<unsigned long> changedFields{kFieldPrice, kFieldVolume,  kFieldBook,
                                          kFieldTicks, kFieldCandles, kFieldDayStats};
    core::CMessageBody body;
    body.set_p1(reinterpret_cast<std::uintptr_t>(&changedIds));
    body.set_p2(reinterpret_cast<std::uintptr_t>(&changedFields));
    core::__CMessageDispatch::Instance().Send(kMsgStockDataUpdate, 0, body, true);
}

void CVXSimMarketData::WarmUp(int seconds)
{
    for (int i = 0; i < seconds; ++i) {
        ++d->time;
        for (const auto& security : d->securities) {
            if (security->Info().kind != EnSecurityKind::Option)
                security->Step(d->time);
        }
        for (const auto& security : d->securities) {
            if (security->Info().kind == EnSecurityKind::Option)
                security->StepTo(d->time, d->ModelPrice(security->Info()));
        }
    }
}

bool CVXSimMarketData::Subscribe(unsigned long id)
{
    const CVXSimSecurity* security = d->Find(id);
    if (!security) {
        VXLOG_ERROR("CVXSimMarketData::Subscribe: unknown security {}", id);
        return false;
    }
    ++d->subscriptions[id];
    d->AddMoving(id, 1);
    if (security->Info().kind == EnSecurityKind::Option)
        d->AddMoving(security->Info().underlyingId, 1);
    return true;
}

bool CVXSimMarketData::Unsubscribe(unsigned long id)
{
    auto it = d->subscriptions.find(id);
    if (it == d->subscriptions.end()) {
        VXLOG_ERROR("CVXSimMarketData::Unsubscribe: security {} is not subscribed", id);
        return false;
    }
    if (--it->second == 0)
        d->subscriptions.erase(it);
    d->AddMoving(id, -1);
    const CVXSimSecurity* security = d->Find(id);
    if (security->Info().kind == EnSecurityKind::Option)
        d->AddMoving(security->Info().underlyingId, -1);
    return true;
}

int CVXSimMarketData::SubscriptionCount(unsigned long id) const
{
    auto it = d->subscriptions.find(id);
    return it == d->subscriptions.end() ? 0 : it->second;
}

const std::vector<SecurityInfo>& CVXSimMarketData::Securities() const
{
    return d->universe;
}

bool CVXSimMarketData::Contains(unsigned long id) const
{
    return d->Find(id) != nullptr;
}

#define VX_MD_FIND_OR_RETURN(method, value)                                                                  \
    const CVXSimSecurity* security = d->Find(id);                                                            \
    if (!security) {                                                                                         \
        VXLOG_ERROR("CVXSimMarketData::" method ": unknown security {}", id);                                \
        return value;                                                                                        \
    }

SecurityInfo CVXSimMarketData::GetSecurity(unsigned long id) const
{
    VX_MD_FIND_OR_RETURN("GetSecurity", SecurityInfo{})
    return security->Info();
}

Quote CVXSimMarketData::GetQuote(unsigned long id) const
{
    VX_MD_FIND_OR_RETURN("GetQuote", Quote{})
    return security->GetQuote();
}

OrderBook CVXSimMarketData::GetOrderBook(unsigned long id) const
{
    VX_MD_FIND_OR_RETURN("GetOrderBook", OrderBook{})
    return security->Book();
}

std::vector<Tick> CVXSimMarketData::GetTicks(unsigned long id, int count) const
{
    VX_MD_FIND_OR_RETURN("GetTicks", std::vector<Tick>{})
    const auto& ticks = security->Ticks();
    const std::size_t n = count <= 0 ? ticks.size() : std::min(ticks.size(), static_cast<std::size_t>(count));
    return std::vector<Tick>(ticks.end() - static_cast<std::ptrdiff_t>(n), ticks.end());
}

std::vector<Candle> CVXSimMarketData::GetCandles(unsigned long id) const
{
    VX_MD_FIND_OR_RETURN("GetCandles", std::vector<Candle>{})
    return std::vector<Candle>(security->Candles().begin(), security->Candles().end());
}

double CVXSimMarketData::OptionTheoreticalPrice(unsigned long id) const
{
    VX_MD_FIND_OR_RETURN("OptionTheoreticalPrice", 0.0)
    if (security->Info().kind != EnSecurityKind::Option)
        return 0.0;
    return d->ModelPrice(security->Info());
}

std::vector<unsigned long> CVXSimMarketData::OptionChain(unsigned long underlyingId) const
{
    std::vector<unsigned long> ids;
    for (const SecurityInfo& info : d->universe) {
        if (info.kind == EnSecurityKind::Option && info.underlyingId == underlyingId)
            ids.push_back(info.id);
    }
    return ids;
}

std::string CVXSimMarketData::SnapshotBytes(unsigned long id) const
{
    VX_MD_FIND_OR_RETURN("SnapshotBytes", std::string{})
    const SecurityInfo& info = security->Info();
    const Quote quote = security->GetQuote();
    vx_md_pb::MarketSnapshot snapshot;
    snapshot.set_id(info.id);
    snapshot.set_code(info.code);
    snapshot.set_name(info.name);
    snapshot.set_market(info.market);
    snapshot.set_time(quote.time);
    snapshot.set_last(quote.last);
    snapshot.set_prev_close(quote.prevClose);
    snapshot.set_open(quote.day.open);
    snapshot.set_high(quote.day.high);
    snapshot.set_low(quote.day.low);
    snapshot.set_volume(quote.day.volume);
    snapshot.set_turnover(quote.day.turnover);
    for (const auto& level : security->Book().bids) {
        auto* out = snapshot.add_bids();
        out->set_price(level.price);
        out->set_volume(level.volume);
        for (unsigned int broker : level.brokers)
            out->add_brokers(broker);
    }
    for (const auto& level : security->Book().asks) {
        auto* out = snapshot.add_asks();
        out->set_price(level.price);
        out->set_volume(level.volume);
        for (unsigned int broker : level.brokers)
            out->add_brokers(broker);
    }
    return snapshot.SerializeAsString();
}

#undef VX_MD_FIND_OR_RETURN

int CVXSimMarketData::Time() const
{
    return d->time;
}

} // namespace vx_md
