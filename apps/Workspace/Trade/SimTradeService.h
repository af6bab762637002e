#pragma once

// CVXSimTradeService: the simulated broker behind the workspace program's trade cards. It holds
// a few accounts (cash, positions, today's orders, fills, finished orders of earlier days),
// checks and accepts orders, and fills working orders against the simulated feed: a market
// order at once at the best opposite price, a limit order when the feed's last price reaches
// its limit (buy: last <= limit, sell: last >= limit), at the limit; a limit order that already
// crosses the book when it arrives fills at once at the best opposite price. It follows bus message
// 30203 for the securities that have working orders (and keeps those subscribed while they
// work). Everything runs on the main thread.
//
// Rejections are orders too: PlaceOrder always returns the order, with status Rejected and a
// reason text when a rule refuses it (unknown account or security, quantity not a positive
// multiple of the lot, limit price not on the tick grid or <= 0, not enough cash for a buy,
// not enough position for a sell in a cash account). Rejections are logged at info level and,
// in a known account, recorded with its orders (so AccountChanged fires for them too).

#include <QObject>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

class CVXVariantMapTree;

namespace vx_md {
class CVXSimMarketData;
}

namespace vx_trade {

enum class EnOrderSide : int
{
    Buy = 1,
    Sell = 2,
};

enum class EnOrderType : int
{
    Limit = 1,
    Market = 2,
};

enum class EnOrderStatus : int
{
    Working = 1, // accepted, nothing filled yet
    PartFilled = 2,
    Filled = 3,
    Cancelled = 4,
    Rejected = 5,
};

struct AccountInfo
{
    unsigned long long id = 0;
    std::string name;
    std::string currency;
    bool margin = false; // a margin account may sell short and buy up to twice its cash
};

struct AccountSummary
{
    double cash = 0.0;
    double marketValue = 0.0;   // positions at the last price
    double totalAssets = 0.0;   // cash + market value
    double unrealizedPnL = 0.0; // positions: (last - average cost) * quantity
    double realizedPnL = 0.0;   // today
    double buyingPower = 0.0;   // cash (x2 in a margin account) less what working buys hold
    double frozenCash = 0.0;    // held by working buy orders
};

struct Position
{
    unsigned long stockId = 0;
    long long quantity = 0; // negative: short
    double averageCost = 0.0;
};

// Why an order was refused; None for an accepted one.
enum class EnRejectReason : int
{
    None = 0,
    UnknownAccount,
    UnknownSecurity,
    NotTradable,   // an index
    BadQuantity,   // not a positive multiple of the lot
    BadPrice,      // limit <= 0
    OffTickGrid,   // limit not a multiple of the tick size
    NoBuyingPower, // a buy costs more than the buying power
    NoPosition,    // a cash account sells more than it holds (less what working sells hold)
    NoMarket,      // a market order and no opposite price
    EmptyCombo,    // a combo order without legs
};

struct Order
{
    unsigned long long orderId = 0;
    unsigned long long accountId = 0;
    unsigned long stockId = 0;
    EnOrderSide side = EnOrderSide::Buy;
    EnOrderType type = EnOrderType::Limit;
    double price = 0.0; // limit price; 0 for a market order
    long long quantity = 0;
    long long filledQuantity = 0;
    double averageFillPrice = 0.0;
    EnOrderStatus status = EnOrderStatus::Working;
    int submitTime = 0; // simulated seconds since midnight
    int updateTime = 0;
    int dayOffset = 0;              // 0 today, -1 yesterday, ... (history)
    unsigned long long comboId = 0; // the legs of one combo order share a non-zero id
    std::string rejectReason;
    EnRejectReason rejectCode = EnRejectReason::None;
};

struct Fill
{
    unsigned long long orderId = 0;
    unsigned long stockId = 0;
    EnOrderSide side = EnOrderSide::Buy;
    double price = 0.0;
    long long quantity = 0;
    int time = 0;
};

struct ComboLeg
{
    unsigned long optionId = 0;
    EnOrderSide side = EnOrderSide::Buy;
    int ratio = 1;
};

class CVXSimTradeService : public QObject
{
    Q_OBJECT
public:
    // The feed must outlive the service. The accounts and their history are the same for every
    // service (fixed, not random).
    explicit CVXSimTradeService(vx_md::CVXSimMarketData* marketData, QObject* parent = nullptr);
    ~CVXSimTradeService() override;

    std::vector<AccountInfo> Accounts() const;
    bool HasAccount(unsigned long long accountId) const;
    AccountInfo GetAccount(unsigned long long accountId) const;
    // The account a card uses before it is told one: the first account.
    unsigned long long DefaultAccountID() const;
    // {"AccountID": id} (vx_ws::keys::kAccountID) and back; 0 when the tree names no account.
    static CVXVariantMapTree MakeAccountTree(unsigned long long accountId);
    static unsigned long long AccountIDFromTree(const CVXVariantMapTree& tree);

    AccountSummary Summary(unsigned long long accountId) const;
    // Positions with a non-zero quantity, in the order they were opened.
    std::vector<Position> Positions(unsigned long long accountId) const;
    // Today's orders, newest first.
    std::vector<Order> Orders(unsigned long long accountId) const;
    // Orders of earlier days and today's finished ones (filled, cancelled, rejected), newest first.
    std::vector<Order> HistoryOrders(unsigned long long accountId) const;
    // Today's fills, newest first.
    std::vector<Fill> Fills(unsigned long long accountId) const;
    // What a sell may still take from the position: its quantity less what working sells of the
    // account hold (0 for a short or no position).
    long long SellableQuantity(unsigned long long accountId, unsigned long stockId) const;
    // The quantity of one security in an account (negative: short; 0 when none).
    long long PositionQuantity(unsigned long long accountId, unsigned long stockId) const;
    // The working (and part-filled) orders of today of one security, newest first.
    std::vector<Order> WorkingOrders(unsigned long long accountId, unsigned long stockId) const;
    // True when price is a positive whole multiple of tickSize (within rounding noise).
    static bool IsOnTickGrid(double price, double tickSize);

    Order PlaceOrder(unsigned long long accountId, unsigned long stockId, EnOrderSide side, EnOrderType type,
                     double price, long long quantity);
    // One market order per leg (quantity * ratio contracts), all or none: when a leg would be
    // rejected every leg is returned rejected with that reason and nothing is placed.
    std::vector<Order> PlaceComboOrder(unsigned long long accountId, const std::vector<ComboLeg>& legs,
                                       long long quantity);
    // False (logged) for an unknown order or one that no longer works.
    bool CancelOrder(unsigned long long accountId, unsigned long long orderId);

Q_SIGNALS:
    // Orders, fills, positions or cash of the account changed. Emitted once per change.
    void AccountChanged(unsigned long long accountId);

private:
    struct Impl;
    std::unique_ptr<Impl> d;
};

} // namespace vx_trade
