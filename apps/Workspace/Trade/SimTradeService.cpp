#include "apps/Workspace/Trade/SimTradeService.h"

#include "apps/Workspace/Cards/WorkspaceContext.h"
#include "apps/Workspace/MarketData/SimMarketData.h"

#include "UIFrame/VariantMapTreeAccess.h"

#include "Platform/Core/Langx.h"
#include "Platform/Core/Log.h"
#include "Platform/Core/MessageDispatch.h"
#include "Platform/Core/message_body.pb.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <map>
#include <set>

namespace vx_trade {

namespace {

constexpr unsigned long long kCashAccountID = 60012287;
constexpr unsigned long long kMarginAccountID = 60015410;
constexpr double kCashAccountStartCash = 1000000.0;
constexpr double kMarginAccountStartCash = 500000.0;

struct AccountState
{
    AccountInfo info;
    double cash = 0.0;
    double frozenCash = 0.0;
    double realizedPnL = 0.0;
    std::vector<Position> positions; // in the order they were opened
    std::vector<Order> orders;       // oldest first, earlier days before today
    std::vector<Fill> fills;         // today's, oldest first
};

bool IsWorking(const Order& order)
{
    return order.dayOffset == 0 &&
           (order.status == EnOrderStatus::Working || order.status == EnOrderStatus::PartFilled);
}

double RoundToTick(double price, double tick)
{
    return std::max(tick, std::round(price / tick) * tick);
}

std::string ReasonText(EnRejectReason reason, const vx_md::SecurityInfo& info)
{
    QString text;
    switch (reason) {
    case EnRejectReason::None:
        break;
    case EnRejectReason::UnknownAccount:
        text = core::langx::tr(970301, "未知的交易账户");
        break;
    case EnRejectReason::UnknownSecurity:
        text = core::langx::tr(970302, "未知的证券");
        break;
    case EnRejectReason::NotTradable:
        text = core::langx::tr(970303, "该证券不可交易");
        break;
    case EnRejectReason::BadQuantity:
        text = core::langx::tr(970304, "数量须为每手股数（%1）的正整数倍").arg(info.lotSize);
        break;
    case EnRejectReason::BadPrice:
        text = core::langx::tr(970305, "价格须大于零");
        break;
    case EnRejectReason::OffTickGrid:
        text = core::langx::tr(970306, "价格须为最小变动价位（%1）的整数倍").arg(info.tickSize);
        break;
    case EnRejectReason::NoBuyingPower:
        text = core::langx::tr(970307, "购买力不足");
        break;
    case EnRejectReason::NoPosition:
        text = core::langx::tr(970308, "可卖数量不足");
        break;
    case EnRejectReason::NoMarket:
        text = core::langx::tr(970309, "暂无对手价，市价单无法成交");
        break;
    case EnRejectReason::EmptyCombo:
        text = core::langx::tr(970310, "组合没有任何腿");
        break;
    }
    return text.toStdString();
}

} // namespace

struct CVXSimTradeService::Impl
{
    CVXSimTradeService* q = nullptr;
    vx_md::CVXSimMarketData* marketData = nullptr;
    std::vector<AccountState> accounts;
    unsigned long long nextOrderId = 1;
    unsigned long long nextComboId = 1;
    // Securities held subscribed in the feed: the number of working orders on each.
    std::map<unsigned long, int> watched;

    AccountState* Find(unsigned long long id)
    {
        for (AccountState& account : accounts)
            if (account.info.id == id)
                return &account;
        return nullptr;
    }
    const AccountState* Find(unsigned long long id) const { return const_cast<Impl*>(this)->Find(id); }

    int Now() const { return marketData ? marketData->Time() : vx_md::CVXSimMarketData::kOpenTime; }

    double Last(unsigned long stockId) const
    {
        return marketData && marketData->Contains(stockId) ? marketData->GetQuote(stockId).last : 0.0;
    }

    static Position* PositionOf(AccountState& account, unsigned long stockId)
    {
        for (Position& position : account.positions)
            if (position.stockId == stockId)
                return &position;
        return nullptr;
    }

    static long long HeldBySells(const AccountState& account, unsigned long stockId)
    {
        long long held = 0;
        for (const Order& order : account.orders)
            if (IsWorking(order) && order.stockId == stockId && order.side == EnOrderSide::Sell)
                held += order.quantity - order.filledQuantity;
        return held;
    }

    static long long Sellable(const AccountState& account, unsigned long stockId)
    {
        long long quantity = 0;
        for (const Position& position : account.positions)
            if (position.stockId == stockId)
                quantity = position.quantity;
        return std::max(0LL, quantity - HeldBySells(account, stockId));
    }

    static double BuyingPower(const AccountState& account)
    {
        const double base = account.info.margin ? account.cash * 2.0 : account.cash;
        return base - account.frozenCash;
    }

    // The price a market order (or a crossing limit order) takes: the best opposite level; 0
    // when that side of the book is empty.
    double OppositePrice(unsigned long stockId, EnOrderSide side) const
    {
        const vx_md::OrderBook book = marketData->GetOrderBook(stockId);
        const std::vector<vx_md::BookLevel>& levels = side == EnOrderSide::Buy ? book.asks : book.bids;
        return levels.empty() ? 0.0 : levels.front().price;
    }

    // The checks every order passes. `pendingBuyCost` is what earlier legs of the same combo
    // already take from the buying power.
    EnRejectReason Check(const AccountState* account, unsigned long stockId, EnOrderSide side,
                         EnOrderType type, double price, long long quantity, double pendingBuyCost,
                         vx_md::SecurityInfo* info, double* fillPrice) const
    {
        *fillPrice = 0.0;
        if (!account)
            return EnRejectReason::UnknownAccount;
        if (!marketData || !marketData->Contains(stockId))
            return EnRejectReason::UnknownSecurity;
        *info = marketData->GetSecurity(stockId);
        if (info->kind == vx_md::EnSecurityKind::Index)
            return EnRejectReason::NotTradable;
        const int lot = std::max(1, info->lotSize);
        if (quantity <= 0 || quantity % lot != 0)
            return EnRejectReason::BadQuantity;
        if (type == EnOrderType::Limit) {
            if (!(price > 0.0))
                return EnRejectReason::BadPrice;
            if (!IsOnTickGrid(price, info->tickSize))
                return EnRejectReason::OffTickGrid;
        }
        const double opposite = OppositePrice(stockId, side);
        if (type == EnOrderType::Market && opposite <= 0.0)
            return EnRejectReason::NoMarket;
        if (type == EnOrderType::Market)
            *fillPrice = opposite;
        else if (opposite > 0.0 && (side == EnOrderSide::Buy ? price >= opposite : price <= opposite))
            *fillPrice = opposite;

        if (side == EnOrderSide::Buy) {
            // A limit buy holds its limit value even when it fills lower at once.
            const double cost =
                (type == EnOrderType::Market ? opposite : price) * static_cast<double>(quantity);
            if (cost + pendingBuyCost > BuyingPower(*account) + 1e-6)
                return EnRejectReason::NoBuyingPower;
        } else if (!account->info.margin && quantity > Sellable(*account, stockId)) {
            return EnRejectReason::NoPosition;
        }
        return EnRejectReason::None;
    }

    Order NewOrder(unsigned long long accountId, unsigned long stockId, EnOrderSide side, EnOrderType type,
                   double price, long long quantity)
    {
        Order order;
        order.orderId = nextOrderId++;
        order.accountId = accountId;
        order.stockId = stockId;
        order.side = side;
        order.type = type;
        order.price = type == EnOrderType::Market ? 0.0 : price;
        order.quantity = quantity;
        order.submitTime = Now();
        order.updateTime = order.submitTime;
        return order;
    }

    void Reject(Order& order, EnRejectReason reason, const vx_md::SecurityInfo& info)
    {
        order.status = EnOrderStatus::Rejected;
        order.rejectCode = reason;
        order.rejectReason = ReasonText(reason, info);
        VXLOG_INFO("CVXSimTradeService: order on {} in account {} rejected: {}", order.stockId,
                   order.accountId, order.rejectReason);
    }

    // Fills the rest of the order at `price`: cash, frozen cash, position and realised P&L.
    static void ApplyFill(AccountState& account, Order& order, double price, int time)
    {
        const long long quantity = order.quantity - order.filledQuantity;
        const double value = price * static_cast<double>(quantity);
        if (order.side == EnOrderSide::Buy) {
            account.cash -= value;
            if (order.type == EnOrderType::Limit)
                account.frozenCash =
                    std::max(0.0, account.frozenCash - order.price * static_cast<double>(quantity));
        } else {
            account.cash += value;
        }
        ApplyToPosition(account, order.stockId, order.side == EnOrderSide::Buy ? quantity : -quantity, price);

        order.averageFillPrice =
            (order.averageFillPrice * static_cast<double>(order.filledQuantity) + value) /
            static_cast<double>(order.filledQuantity + quantity);
        order.filledQuantity = order.quantity;
        order.status = EnOrderStatus::Filled;
        order.updateTime = time;
        account.fills.push_back(Fill{order.orderId, order.stockId, order.side, price, quantity, time});
    }

    // delta > 0 bought, < 0 sold. The part that closes the position realises P&L against the
    // average cost; the part beyond zero opens the other way at the fill price.
    static void ApplyToPosition(AccountState& account, unsigned long stockId, long long delta, double price)
    {
        Position* position = PositionOf(account, stockId);
        if (!position) {
            account.positions.push_back(Position{stockId, delta, price});
            return;
        }
        const long long held = position->quantity;
        if (held == 0 || (held > 0) == (delta > 0)) {
            const double cost = position->averageCost * static_cast<double>(std::llabs(held)) +
                                price * static_cast<double>(std::llabs(delta));
            position->quantity = held + delta;
            position->averageCost = cost / static_cast<double>(std::llabs(position->quantity));
        } else {
            const long long closing = std::min(std::llabs(delta), std::llabs(held));
            const double perShare = held > 0 ? price - position->averageCost : position->averageCost - price;
            account.realizedPnL += perShare * static_cast<double>(closing);
            position->quantity = held + delta;
            if (std::llabs(delta) > closing)
                position->averageCost = price;
        }
        if (position->quantity == 0)
            account.positions.erase(account.positions.begin() + (position - account.positions.data()));
    }

    void Watch(unsigned long stockId)
    {
        if (watched[stockId]++ == 0)
            marketData->Subscribe(stockId);
    }

    void Unwatch(unsigned long stockId)
    {
        auto it = watched.find(stockId);
        if (it == watched.end())
            return;
        if (--it->second == 0) {
            watched.erase(it);
            marketData->Unsubscribe(stockId);
        }
    }

    // Accepts a checked order: fills it at once or lets it work (holding cash for a buy).
    void Accept(AccountState& account, Order& order, double fillPrice)
    {
        if (fillPrice > 0.0) {
            if (order.side == EnOrderSide::Buy && order.type == EnOrderType::Limit)
                account.frozenCash += order.price * static_cast<double>(order.quantity);
            ApplyFill(account, order, fillPrice, order.submitTime);
            return;
        }
        if (order.side == EnOrderSide::Buy)
            account.frozenCash += order.price * static_cast<double>(order.quantity);
        Watch(order.stockId);
    }

    void OnFeed(const std::set<unsigned long>& changed)
    {
        std::vector<unsigned long long> changedAccounts;
        std::vector<unsigned long> released;
        for (AccountState& account : accounts) {
            bool any = false;
            for (Order& order : account.orders) {
                if (!IsWorking(order) || changed.count(order.stockId) == 0)
                    continue;
                const double last = Last(order.stockId);
                const bool reached =
                    order.side == EnOrderSide::Buy ? last <= order.price + 1e-9 : last >= order.price - 1e-9;
                if (!reached || last <= 0.0)
                    continue;
                ApplyFill(account, order, order.price, Now());
                released.push_back(order.stockId);
                any = true;
            }
            if (any)
                changedAccounts.push_back(account.info.id);
        }
        for (unsigned long id : released)
            Unwatch(id);
        for (unsigned long long id : changedAccounts)
            Q_EMIT q->AccountChanged(id);
    }

    void AddHistory(AccountState& account, int dayOffset, int time, unsigned long stockId, EnOrderSide side,
                    long long lots, double priceFactor, EnOrderStatus status)
    {
        if (!marketData || !marketData->Contains(stockId))
            return;
        const vx_md::SecurityInfo info = marketData->GetSecurity(stockId);
        const double price = RoundToTick(info.prevClose * priceFactor, info.tickSize);
        Order order = NewOrder(account.info.id, stockId, side, EnOrderType::Limit, price,
                               lots * std::max(1, info.lotSize));
        order.dayOffset = dayOffset;
        order.submitTime = time;
        order.updateTime = time + 37;
        order.status = status;
        if (status == EnOrderStatus::Filled) {
            order.filledQuantity = order.quantity;
            order.averageFillPrice = price;
            ApplyToPosition(account, stockId, side == EnOrderSide::Buy ? order.quantity : -order.quantity,
                            price);
        } else if (status == EnOrderStatus::Rejected) {
            order.updateTime = time;
            order.rejectCode = EnRejectReason::NoBuyingPower;
            order.rejectReason = ReasonText(order.rejectCode, info);
        }
        account.orders.push_back(order);
    }

    // Fixed accounts and two earlier days of orders; the positions are what those orders left.
    void Seed()
    {
        AccountState cash;
        cash.info = AccountInfo{kCashAccountID, "Cash ****2287", "CNY", false};
        cash.cash = kCashAccountStartCash;
        AccountState margin;
        margin.info = AccountInfo{kMarginAccountID, "Margin ****5410", "CNY", true};
        margin.cash = kMarginAccountStartCash;

        constexpr int kH = 3600;
        AddHistory(cash, -2, 9 * kH + 41 * 60, 1000, EnOrderSide::Buy, 20, 0.94, EnOrderStatus::Filled);
        AddHistory(cash, -2, 10 * kH + 5 * 60, 500, EnOrderSide::Buy, 100, 0.98, EnOrderStatus::Filled);
        AddHistory(cash, -2, 13 * kH + 12 * 60, 1001, EnOrderSide::Buy, 10, 1.05, EnOrderStatus::Filled);
        AddHistory(cash, -1, 9 * kH + 58 * 60, 1002, EnOrderSide::Buy, 5, 0.95, EnOrderStatus::Cancelled);
        AddHistory(cash, -1, 14 * kH + 20 * 60, 1001, EnOrderSide::Sell, 4, 1.02, EnOrderStatus::Filled);
        AddHistory(margin, -2, 9 * kH + 35 * 60, 1003, EnOrderSide::Buy, 30, 0.97, EnOrderStatus::Filled);
        AddHistory(margin, -2, 11 * kH + 2 * 60, 100000, EnOrderSide::Buy, 5, 0.90, EnOrderStatus::Filled);
        AddHistory(margin, -1, 10 * kH + 16 * 60, 1004, EnOrderSide::Sell, 10, 1.02, EnOrderStatus::Filled);
        AddHistory(margin, -1, 13 * kH + 47 * 60, 1005, EnOrderSide::Buy, 400, 1.00, EnOrderStatus::Rejected);
        // What closed on earlier days is not today's P&L.
        cash.realizedPnL = 0.0;
        margin.realizedPnL = 0.0;
        accounts.push_back(std::move(cash));
        accounts.push_back(std::move(margin));
    }
};

CVXSimTradeService::CVXSimTradeService(vx_md::CVXSimMarketData* marketData, QObject* parent)
    : QObject(parent), d(std::make_unique<Impl>())
{
    d->q = this;
    d->marketData = marketData;
    if (!marketData)
        VXLOG_WARN("CVXSimTradeService: no market data; every order will be rejected");
    d->Seed();
    core::__CMessageDispatch::Instance().Bind(
        vx_md::CVXSimMarketData::kMsgStockDataUpdate,
        [this](unsigned int, unsigned long long, const core::CMessageBody& body) {
            if (body.p1() == 0 || d->watched.empty())
                return;
            d->OnFeed(
                *reinterpret_cast<const std::set<unsigned long>*>(static_cast<std::uintptr_t>(body.p1())));
        },
        this);
}

CVXSimTradeService::~CVXSimTradeService()
{
    core::__CMessageDispatch::Instance().UnBind(vx_md::CVXSimMarketData::kMsgStockDataUpdate, this);
    if (d->marketData) {
        // Watch() holds one subscription per security, however many orders work on it.
        for (const auto& entry : d->watched)
            d->marketData->Unsubscribe(entry.first);
    }
}

std::vector<AccountInfo> CVXSimTradeService::Accounts() const
{
    std::vector<AccountInfo> out;
    for (const AccountState& account : d->accounts)
        out.push_back(account.info);
    return out;
}

bool CVXSimTradeService::HasAccount(unsigned long long accountId) const
{
    return d->Find(accountId) != nullptr;
}

AccountInfo CVXSimTradeService::GetAccount(unsigned long long accountId) const
{
    const AccountState* account = d->Find(accountId);
    return account ? account->info : AccountInfo{};
}

unsigned long long CVXSimTradeService::DefaultAccountID() const
{
    return d->accounts.empty() ? 0 : d->accounts.front().info.id;
}

CVXVariantMapTree CVXSimTradeService::MakeAccountTree(unsigned long long accountId)
{
    CVXVariantMapTree tree;
    tree.Set<qulonglong>(QString::fromLatin1(vx_ws::keys::kAccountID), accountId);
    return tree;
}

unsigned long long CVXSimTradeService::AccountIDFromTree(const CVXVariantMapTree& tree)
{
    return tree.Get<qulonglong>(QString::fromLatin1(vx_ws::keys::kAccountID), 0);
}

AccountSummary CVXSimTradeService::Summary(unsigned long long accountId) const
{
    AccountSummary summary;
    const AccountState* account = d->Find(accountId);
    if (!account)
        return summary;
    summary.cash = account->cash;
    summary.frozenCash = account->frozenCash;
    summary.realizedPnL = account->realizedPnL;
    summary.buyingPower = Impl::BuyingPower(*account);
    for (const Position& position : account->positions) {
        const double last = d->Last(position.stockId);
        summary.marketValue += last * static_cast<double>(position.quantity);
        summary.unrealizedPnL += (last - position.averageCost) * static_cast<double>(position.quantity);
    }
    summary.totalAssets = summary.cash + summary.marketValue;
    return summary;
}

std::vector<Position> CVXSimTradeService::Positions(unsigned long long accountId) const
{
    const AccountState* account = d->Find(accountId);
    return account ? account->positions : std::vector<Position>{};
}

std::vector<Order> CVXSimTradeService::Orders(unsigned long long accountId) const
{
    std::vector<Order> out;
    if (const AccountState* account = d->Find(accountId))
        for (auto it = account->orders.rbegin(); it != account->orders.rend(); ++it)
            if (it->dayOffset == 0)
                out.push_back(*it);
    return out;
}

std::vector<Order> CVXSimTradeService::HistoryOrders(unsigned long long accountId) const
{
    std::vector<Order> out;
    if (const AccountState* account = d->Find(accountId))
        for (auto it = account->orders.rbegin(); it != account->orders.rend(); ++it)
            if (!IsWorking(*it))
                out.push_back(*it);
    return out;
}

std::vector<Fill> CVXSimTradeService::Fills(unsigned long long accountId) const
{
    std::vector<Fill> out;
    if (const AccountState* account = d->Find(accountId))
        out.assign(account->fills.rbegin(), account->fills.rend());
    return out;
}

long long CVXSimTradeService::SellableQuantity(unsigned long long accountId, unsigned long stockId) const
{
    const AccountState* account = d->Find(accountId);
    return account ? Impl::Sellable(*account, stockId) : 0;
}

long long CVXSimTradeService::PositionQuantity(unsigned long long accountId, unsigned long stockId) const
{
    const AccountState* account = d->Find(accountId);
    if (!account)
        return 0;
    for (const Position& position : account->positions)
        if (position.stockId == stockId)
            return position.quantity;
    return 0;
}

std::vector<Order> CVXSimTradeService::WorkingOrders(unsigned long long accountId,
                                                     unsigned long stockId) const
{
    std::vector<Order> out;
    if (const AccountState* account = d->Find(accountId))
        for (auto it = account->orders.rbegin(); it != account->orders.rend(); ++it)
            if (IsWorking(*it) && it->stockId == stockId)
                out.push_back(*it);
    return out;
}

bool CVXSimTradeService::IsOnTickGrid(double price, double tickSize)
{
    if (!(tickSize > 0.0) || !(price > 0.0))
        return false;
    const double ticks = price / tickSize;
    return std::fabs(ticks - std::round(ticks)) < 1e-6;
}

Order CVXSimTradeService::PlaceOrder(unsigned long long accountId, unsigned long stockId, EnOrderSide side,
                                     EnOrderType type, double price, long long quantity)
{
    AccountState* account = d->Find(accountId);
    vx_md::SecurityInfo info;
    double fillPrice = 0.0;
    const EnRejectReason reason =
        d->Check(account, stockId, side, type, price, quantity, 0.0, &info, &fillPrice);
    Order order = d->NewOrder(accountId, stockId, side, type, price, quantity);
    if (reason != EnRejectReason::None) {
        d->Reject(order, reason, info);
        if (!account)
            return order;
        account->orders.push_back(order);
        Q_EMIT AccountChanged(accountId);
        return order;
    }
    d->Accept(*account, order, fillPrice);
    account->orders.push_back(order);
    Q_EMIT AccountChanged(accountId);
    return order;
}

std::vector<Order> CVXSimTradeService::PlaceComboOrder(unsigned long long accountId,
                                                       const std::vector<ComboLeg>& legs, long long quantity)
{
    std::vector<Order> out;
    AccountState* account = d->Find(accountId);
    if (legs.empty()) {
        VXLOG_INFO("CVXSimTradeService::PlaceComboOrder: {}", ReasonText(EnRejectReason::EmptyCombo, {}));
        return out;
    }
    const unsigned long long comboId = d->nextComboId++;
    EnRejectReason reason = EnRejectReason::None;
    vx_md::SecurityInfo failedInfo;
    std::vector<double> fillPrices;
    double pendingBuyCost = 0.0;
    for (const ComboLeg& leg : legs) {
        const long long legQuantity = quantity * std::max(1, leg.ratio);
        vx_md::SecurityInfo info;
        double fillPrice = 0.0;
        reason = d->Check(account, leg.optionId, leg.side, EnOrderType::Market, 0.0, legQuantity,
                          pendingBuyCost, &info, &fillPrice);
        if (reason != EnRejectReason::None) {
            failedInfo = info;
            break;
        }
        fillPrices.push_back(fillPrice);
        if (leg.side == EnOrderSide::Buy)
            pendingBuyCost += fillPrice * static_cast<double>(legQuantity);
    }
    for (std::size_t i = 0; i < legs.size(); ++i) {
        const ComboLeg& leg = legs[i];
        Order order = d->NewOrder(accountId, leg.optionId, leg.side, EnOrderType::Market, 0.0,
                                  quantity * std::max(1, leg.ratio));
        order.comboId = comboId;
        if (reason != EnRejectReason::None)
            d->Reject(order, reason, failedInfo);
        else
            d->Accept(*account, order, fillPrices[i]);
        out.push_back(order);
        if (account)
            account->orders.push_back(order);
    }
    if (account)
        Q_EMIT AccountChanged(accountId);
    return out;
}

bool CVXSimTradeService::CancelOrder(unsigned long long accountId, unsigned long long orderId)
{
    AccountState* account = d->Find(accountId);
    if (!account) {
        VXLOG_WARN("CVXSimTradeService::CancelOrder: unknown account {}", accountId);
        return false;
    }
    for (Order& order : account->orders) {
        if (order.orderId != orderId)
            continue;
        if (!IsWorking(order)) {
            VXLOG_WARN("CVXSimTradeService::CancelOrder: order {} no longer works", orderId);
            return false;
        }
        if (order.side == EnOrderSide::Buy)
            account->frozenCash =
                std::max(0.0, account->frozenCash -
                                  order.price * static_cast<double>(order.quantity - order.filledQuantity));
        order.status = EnOrderStatus::Cancelled;
        order.updateTime = d->Now();
        d->Unwatch(order.stockId);
        Q_EMIT AccountChanged(accountId);
        return true;
    }
    VXLOG_WARN("CVXSimTradeService::CancelOrder: unknown order {} in account {}", orderId, accountId);
    return false;
}

} // namespace vx_trade
