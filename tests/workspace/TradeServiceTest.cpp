// The simulated broker: its fixed accounts, each reason to refuse an order, fills and the cash and
// position arithmetic, working limit orders filled by the real feed, cancelling and combo orders.
// Expected values are worked out here from the feed's own book and quotes.

#include "apps/Workspace/MarketData/SimMarketData.h"
#include "apps/Workspace/Trade/SimTradeService.h"

#include "UIFrame/VariantMapTreeAccess.h"

#include "tests/common/TestSupport.h"

#include <QSignalSpy>

#include <gtest/gtest.h>

#include <cmath>
#include <map>

using namespace vx_trade;

namespace {

constexpr unsigned long kStock = 1006; // held by no account at the start
constexpr unsigned long kIndex = 1;
constexpr unsigned long kOptionA = 100000; // first option of the first ETF
constexpr unsigned long kOptionB = 100002;

class TradeServiceTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_EQ(service.Accounts().size(), 2u);
        cashAccount = service.Accounts()[0].id;
        marginAccount = service.Accounts()[1].id;
    }

    double BestAsk(unsigned long id) const { return feed.GetOrderBook(id).asks.at(0).price; }
    double BestBid(unsigned long id) const { return feed.GetOrderBook(id).bids.at(0).price; }
    double Tick(unsigned long id) const { return feed.GetSecurity(id).tickSize; }
    long long Lot(unsigned long id) const { return feed.GetSecurity(id).lotSize; }
    const Position* Find(const std::vector<Position>& positions, unsigned long id)
    {
        for (const Position& p : positions)
            if (p.stockId == id) {
                held = p;
                return &held;
            }
        return nullptr;
    }

    vx_md::CVXSimMarketData feed{7};
    CVXSimTradeService service{&feed};
    unsigned long long cashAccount = 0;
    unsigned long long marginAccount = 0;
    Position held;
};

} // namespace

TEST_F(TradeServiceTest, FixedAccountsStartWithHistoryAndThePositionsItLeft)
{
    const std::vector<AccountInfo> accounts = service.Accounts();
    EXPECT_FALSE(accounts[0].margin);
    EXPECT_TRUE(accounts[1].margin);
    EXPECT_EQ(service.DefaultAccountID(), cashAccount);
    EXPECT_TRUE(service.HasAccount(marginAccount));
    EXPECT_FALSE(service.HasAccount(12345));
    EXPECT_EQ(service.GetAccount(marginAccount).name, accounts[1].name);
    EXPECT_NE(accounts[0].name, accounts[1].name);

    // A second service over another feed of the same seed has the same accounts and history.
    vx_md::CVXSimMarketData otherFeed{7};
    CVXSimTradeService other{&otherFeed};
    EXPECT_EQ(other.Accounts()[1].id, marginAccount);
    EXPECT_EQ(other.HistoryOrders(cashAccount).size(), service.HistoryOrders(cashAccount).size());

    for (unsigned long long account : {cashAccount, marginAccount}) {
        SCOPED_TRACE(account);
        EXPECT_TRUE(service.Orders(account).empty()); // nothing today yet
        const std::vector<Order> history = service.HistoryOrders(account);
        ASSERT_GE(history.size(), 3u);
        // Newest first: days then times never go forward.
        for (std::size_t i = 1; i < history.size(); ++i) {
            EXPECT_GE(history[i - 1].dayOffset, history[i].dayOffset);
            if (history[i - 1].dayOffset == history[i].dayOffset) {
                EXPECT_GE(history[i - 1].submitTime, history[i].submitTime);
            }
        }
        // The positions are exactly what the filled orders of earlier days left.
        std::map<unsigned long, long long> fromHistory;
        for (const Order& order : history) {
            EXPECT_LT(order.dayOffset, 0);
            if (order.status == EnOrderStatus::Filled)
                fromHistory[order.stockId] +=
                    order.side == EnOrderSide::Buy ? order.quantity : -order.quantity;
        }
        std::map<unsigned long, long long> positions;
        for (const Position& p : service.Positions(account)) {
            positions[p.stockId] = p.quantity;
            EXPECT_GT(p.averageCost, 0.0);
        }
        for (auto it = fromHistory.begin(); it != fromHistory.end();)
            it = it->second == 0 ? fromHistory.erase(it) : std::next(it);
        EXPECT_EQ(positions, fromHistory);
        EXPECT_FALSE(positions.empty());
        EXPECT_EQ(service.Summary(account).realizedPnL, 0.0);
    }
    // The margin account starts with a short position.
    bool hasShort = false;
    for (const Position& p : service.Positions(marginAccount))
        hasShort = hasShort || p.quantity < 0;
    EXPECT_TRUE(hasShort);

    const CVXVariantMapTree tree = CVXSimTradeService::MakeAccountTree(marginAccount);
    EXPECT_EQ(tree.Get<qulonglong>(QStringLiteral("AccountID")), marginAccount);
    EXPECT_EQ(CVXSimTradeService::AccountIDFromTree(tree), marginAccount);
    EXPECT_EQ(CVXSimTradeService::AccountIDFromTree(CVXVariantMapTree()), 0u);
}

TEST_F(TradeServiceTest, EachRuleRefusesAnOrderAndTheRefusalIsRecorded)
{
    const double last = feed.GetQuote(kStock).last;
    const double tick = Tick(kStock);
    const long long lot = Lot(kStock);
    ASSERT_EQ(lot, 100);
    ASSERT_EQ(tick, 0.01);
    // Cash for 5 lots at most of a stock at ~1e6 / price.
    const long long tooMany = (static_cast<long long>(1000000.0 / last / lot) + 5) * lot;

    struct Row
    {
        const char* what;
        unsigned long long account;
        unsigned long stock;
        EnOrderSide side;
        EnOrderType type;
        double price;
        long long quantity;
        EnRejectReason expected;
    };
    const Row rows[] = {
        {"index", 0, kIndex, EnOrderSide::Buy, EnOrderType::Market, 0.0, 100, EnRejectReason::NotTradable},
        {"unknown security", 0, 424242, EnOrderSide::Buy, EnOrderType::Market, 0.0, 100,
         EnRejectReason::UnknownSecurity},
        {"odd lot", 0, kStock, EnOrderSide::Buy, EnOrderType::Limit, last, 150, EnRejectReason::BadQuantity},
        {"zero quantity", 0, kStock, EnOrderSide::Buy, EnOrderType::Market, 0.0, 0,
         EnRejectReason::BadQuantity},
        {"negative quantity", 0, kStock, EnOrderSide::Sell, EnOrderType::Market, 0.0, -100,
         EnRejectReason::BadQuantity},
        {"zero price", 0, kStock, EnOrderSide::Buy, EnOrderType::Limit, 0.0, 100, EnRejectReason::BadPrice},
        {"negative price", 0, kStock, EnOrderSide::Buy, EnOrderType::Limit, -1.0, 100,
         EnRejectReason::BadPrice},
        {"half a tick", 0, kStock, EnOrderSide::Buy, EnOrderType::Limit, last + tick / 2, 100,
         EnRejectReason::OffTickGrid},
        {"too expensive", 0, kStock, EnOrderSide::Buy, EnOrderType::Limit, last, tooMany,
         EnRejectReason::NoBuyingPower},
        {"sell what is not held", 0, kStock, EnOrderSide::Sell, EnOrderType::Market, 0.0, 100,
         EnRejectReason::NoPosition},
    };

    QSignalSpy changed(&service, &CVXSimTradeService::AccountChanged);
    const AccountSummary before = service.Summary(cashAccount);
    std::size_t recorded = 0;
    for (const Row& row : rows) {
        SCOPED_TRACE(row.what);
        const Order order = service.PlaceOrder(row.account ? row.account : cashAccount, row.stock, row.side,
                                               row.type, row.price, row.quantity);
        EXPECT_EQ(order.status, EnOrderStatus::Rejected);
        EXPECT_EQ(order.rejectCode, row.expected);
        EXPECT_FALSE(order.rejectReason.empty());
        EXPECT_NE(order.orderId, 0u);
        ++recorded;
        ASSERT_EQ(changed.count(), static_cast<int>(recorded));
        EXPECT_EQ(changed.last().at(0).toULongLong(), cashAccount);
        EXPECT_EQ(service.Orders(cashAccount).front().orderId, order.orderId);
        EXPECT_EQ(service.HistoryOrders(cashAccount).front().orderId, order.orderId);
    }
    // The lot size is named in its reason, and different rules give different texts.
    const Order oddLot =
        service.PlaceOrder(cashAccount, kStock, EnOrderSide::Buy, EnOrderType::Limit, last, 150);
    EXPECT_NE(oddLot.rejectReason.find("100"), std::string::npos) << oddLot.rejectReason;
    const Order noCash =
        service.PlaceOrder(cashAccount, kStock, EnOrderSide::Buy, EnOrderType::Limit, last, tooMany);
    EXPECT_NE(noCash.rejectReason, oddLot.rejectReason);

    // Nothing moved: cash, frozen cash, positions and subscriptions are as before.
    const AccountSummary after = service.Summary(cashAccount);
    EXPECT_EQ(after.cash, before.cash);
    EXPECT_EQ(after.frozenCash, 0.0);
    EXPECT_EQ(feed.SubscriptionCount(kStock), 0);

    // An unknown account gets its rejected order back, but no account changed.
    changed.clear();
    const Order orphan = service.PlaceOrder(999, kStock, EnOrderSide::Buy, EnOrderType::Market, 0.0, 100);
    EXPECT_EQ(orphan.rejectCode, EnRejectReason::UnknownAccount);
    EXPECT_EQ(changed.count(), 0);

    // A margin account may sell what it does not hold; a margin buy may use twice its cash.
    const Order shortSale =
        service.PlaceOrder(marginAccount, kStock, EnOrderSide::Sell, EnOrderType::Market, 0.0, 100);
    EXPECT_EQ(shortSale.status, EnOrderStatus::Filled);
    const double power = service.Summary(marginAccount).buyingPower;
    EXPECT_DOUBLE_EQ(power, 2.0 * service.Summary(marginAccount).cash);
    const double ask = BestAsk(kStock);
    const long long justFits = static_cast<long long>(power / ask / lot) * lot;
    EXPECT_GT(justFits * ask, service.Summary(marginAccount).cash); // more than the cash alone
    EXPECT_EQ(
        service.PlaceOrder(marginAccount, kStock, EnOrderSide::Buy, EnOrderType::Limit, ask, justFits + lot)
            .rejectCode,
        EnRejectReason::NoBuyingPower);
    EXPECT_EQ(
        service.PlaceOrder(marginAccount, kStock, EnOrderSide::Buy, EnOrderType::Limit, ask, justFits).status,
        EnOrderStatus::Filled);
}

TEST_F(TradeServiceTest, MarketOrdersFillAtTheBestOppositePriceAndKeepCashAndAverageCost)
{
    QSignalSpy changed(&service, &CVXSimTradeService::AccountChanged);
    ASSERT_TRUE(feed.Subscribe(kStock)); // keeps the book moving between orders
    const double cash0 = service.Summary(cashAccount).cash;

    const double a1 = BestAsk(kStock);
    Order buy = service.PlaceOrder(cashAccount, kStock, EnOrderSide::Buy, EnOrderType::Market, 0.0, 300);
    EXPECT_EQ(buy.status, EnOrderStatus::Filled);
    EXPECT_EQ(buy.filledQuantity, 300);
    EXPECT_DOUBLE_EQ(buy.averageFillPrice, a1);
    EXPECT_EQ(changed.count(), 1);
    EXPECT_NEAR(service.Summary(cashAccount).cash, cash0 - 300 * a1, 1e-6);
    ASSERT_TRUE(Find(service.Positions(cashAccount), kStock));
    EXPECT_EQ(held.quantity, 300);
    EXPECT_DOUBLE_EQ(held.averageCost, a1);
    // The newest position comes last.
    EXPECT_EQ(service.Positions(cashAccount).back().stockId, kStock);

    for (int i = 0; i < 5; ++i)
        feed.Step();
    const double a2 = BestAsk(kStock);
    service.PlaceOrder(cashAccount, kStock, EnOrderSide::Buy, EnOrderType::Market, 0.0, 100);
    const double average = (300 * a1 + 100 * a2) / 400;
    ASSERT_TRUE(Find(service.Positions(cashAccount), kStock));
    EXPECT_EQ(held.quantity, 400);
    EXPECT_NEAR(held.averageCost, average, 1e-9);

    for (int i = 0; i < 5; ++i)
        feed.Step();
    const double b1 = BestBid(kStock);
    const Order sell =
        service.PlaceOrder(cashAccount, kStock, EnOrderSide::Sell, EnOrderType::Market, 0.0, 300);
    EXPECT_DOUBLE_EQ(sell.averageFillPrice, b1);
    ASSERT_TRUE(Find(service.Positions(cashAccount), kStock));
    EXPECT_EQ(held.quantity, 100);
    EXPECT_NEAR(held.averageCost, average, 1e-9); // selling does not change the cost of the rest
    EXPECT_NEAR(service.Summary(cashAccount).realizedPnL, (b1 - average) * 300, 1e-6);
    EXPECT_EQ(service.SellableQuantity(cashAccount, kStock), 100);

    const double b2 = BestBid(kStock);
    service.PlaceOrder(cashAccount, kStock, EnOrderSide::Sell, EnOrderType::Market, 0.0, 100);
    EXPECT_FALSE(Find(service.Positions(cashAccount), kStock));
    EXPECT_NEAR(service.Summary(cashAccount).realizedPnL, (b1 - average) * 300 + (b2 - average) * 100, 1e-6);
    EXPECT_NEAR(service.Summary(cashAccount).cash, cash0 - 300 * a1 - 100 * a2 + 300 * b1 + 100 * b2, 1e-6);
    EXPECT_EQ(changed.count(), 4);
    const std::vector<Fill> fills = service.Fills(cashAccount);
    ASSERT_EQ(fills.size(), 4u);
    EXPECT_EQ(fills.front().quantity, 100); // newest first
    EXPECT_DOUBLE_EQ(fills.back().price, a1);

    // A short covered by a larger buy: the cover realises, the rest opens long at the fill price.
    const double shortPrice = BestBid(kStock);
    service.PlaceOrder(marginAccount, kStock, EnOrderSide::Sell, EnOrderType::Market, 0.0, 200);
    ASSERT_TRUE(Find(service.Positions(marginAccount), kStock));
    EXPECT_EQ(held.quantity, -200);
    EXPECT_DOUBLE_EQ(held.averageCost, shortPrice);
    for (int i = 0; i < 3; ++i)
        feed.Step();
    const double cover = BestAsk(kStock);
    service.PlaceOrder(marginAccount, kStock, EnOrderSide::Buy, EnOrderType::Market, 0.0, 500);
    ASSERT_TRUE(Find(service.Positions(marginAccount), kStock));
    EXPECT_EQ(held.quantity, 300);
    EXPECT_DOUBLE_EQ(held.averageCost, cover);
    EXPECT_NEAR(service.Summary(marginAccount).realizedPnL, (shortPrice - cover) * 200, 1e-6);

    // The summary values the positions at the feed's last prices.
    double marketValue = 0.0;
    double unrealized = 0.0;
    for (const Position& p : service.Positions(marginAccount)) {
        marketValue += feed.GetQuote(p.stockId).last * p.quantity;
        unrealized += (feed.GetQuote(p.stockId).last - p.averageCost) * p.quantity;
    }
    const AccountSummary summary = service.Summary(marginAccount);
    EXPECT_NEAR(summary.marketValue, marketValue, 1e-6);
    EXPECT_NEAR(summary.unrealizedPnL, unrealized, 1e-6);
    EXPECT_NEAR(summary.totalAssets, summary.cash + marketValue, 1e-6);
    feed.Unsubscribe(kStock);
}

TEST_F(TradeServiceTest, ALimitOrderWorksUntilTheFeedReachesItsPriceThenFillsAtTheLimit)
{
    const double tick = Tick(kStock);
    const double last = feed.GetQuote(kStock).last;
    const double limit = std::round((last - 3 * tick) / tick) * tick;
    QSignalSpy changed(&service, &CVXSimTradeService::AccountChanged);
    const double cash0 = service.Summary(cashAccount).cash;

    // Two buys at the same limit: they fill in one step, which is one change of the account.
    const Order first =
        service.PlaceOrder(cashAccount, kStock, EnOrderSide::Buy, EnOrderType::Limit, limit, 200);
    const Order second =
        service.PlaceOrder(cashAccount, kStock, EnOrderSide::Buy, EnOrderType::Limit, limit, 100);
    EXPECT_EQ(first.status, EnOrderStatus::Working);
    EXPECT_EQ(second.status, EnOrderStatus::Working);
    EXPECT_EQ(changed.count(), 2);
    EXPECT_NEAR(service.Summary(cashAccount).frozenCash, 300 * limit, 1e-6);
    EXPECT_NEAR(service.Summary(cashAccount).buyingPower, cash0 - 300 * limit, 1e-6);
    EXPECT_EQ(service.Summary(cashAccount).cash, cash0);
    EXPECT_EQ(feed.SubscriptionCount(kStock), 1); // the service keeps the security moving
    EXPECT_EQ(service.WorkingOrders(cashAccount, kStock).size(), 2u);

    // A sell above the market on a held position works as well.
    const unsigned long heldStock = service.Positions(cashAccount).front().stockId;
    const double heldCost = service.Positions(cashAccount).front().averageCost;
    const long long heldQuantity = service.Positions(cashAccount).front().quantity;
    const double heldTick = Tick(heldStock);
    const double sellLimit = std::round((feed.GetQuote(heldStock).last + 3 * heldTick) / heldTick) * heldTick;
    const Order sell = service.PlaceOrder(cashAccount, heldStock, EnOrderSide::Sell, EnOrderType::Limit,
                                          sellLimit, Lot(heldStock));
    EXPECT_EQ(sell.status, EnOrderStatus::Working);
    EXPECT_EQ(service.SellableQuantity(cashAccount, heldStock), heldQuantity - Lot(heldStock));
    changed.clear();

    bool buyFilled = false;
    bool sellFilled = false;
    for (int step = 0; step < 20000 && !(buyFilled && sellFilled); ++step) {
        feed.Step();
        const int emitted = changed.count();
        changed.clear();
        const bool buyReached = feed.GetQuote(kStock).last <= limit + 1e-9;
        const bool sellReached = feed.GetQuote(heldStock).last >= sellLimit - 1e-9;
        const bool buyNow = !buyFilled && buyReached;
        const bool sellNow = !sellFilled && sellReached;
        // One signal per step that filled anything, none otherwise.
        EXPECT_EQ(emitted, (buyNow || sellNow) ? 1 : 0) << "step " << step;
        const std::vector<Order> working = service.WorkingOrders(cashAccount, kStock);
        EXPECT_EQ(working.size(), buyFilled || buyNow ? 0u : 2u) << "step " << step;
        buyFilled = buyFilled || buyNow;
        sellFilled = sellFilled || sellNow;
    }
    ASSERT_TRUE(buyFilled && sellFilled) << "the feed never reached the limits";

    for (const Order& order : service.Orders(cashAccount)) {
        EXPECT_EQ(order.status, EnOrderStatus::Filled);
        EXPECT_DOUBLE_EQ(order.averageFillPrice, order.side == EnOrderSide::Buy ? limit : sellLimit);
        EXPECT_GT(order.updateTime, order.submitTime);
    }
    const AccountSummary summary = service.Summary(cashAccount);
    EXPECT_NEAR(summary.frozenCash, 0.0, 1e-9);
    EXPECT_NEAR(summary.cash, cash0 - 300 * limit + Lot(heldStock) * sellLimit, 1e-6);
    EXPECT_NEAR(summary.realizedPnL, (sellLimit - heldCost) * Lot(heldStock), 1e-6);
    ASSERT_TRUE(Find(service.Positions(cashAccount), kStock));
    EXPECT_EQ(held.quantity, 300);
    EXPECT_DOUBLE_EQ(held.averageCost, limit);
    // Nothing works any more: the service let go of both securities.
    EXPECT_EQ(feed.SubscriptionCount(kStock), 0);
    EXPECT_EQ(feed.SubscriptionCount(heldStock), 0);
}

TEST_F(TradeServiceTest, ALimitOrderThatCrossesFillsAtOnceAtTheBetterBookPrice)
{
    const double ask = BestAsk(kStock);
    const Order order = service.PlaceOrder(cashAccount, kStock, EnOrderSide::Buy, EnOrderType::Limit,
                                           ask + 5 * Tick(kStock), 200);
    EXPECT_EQ(order.status, EnOrderStatus::Filled);
    EXPECT_DOUBLE_EQ(order.averageFillPrice, ask);
    EXPECT_DOUBLE_EQ(order.price, ask + 5 * Tick(kStock));
    EXPECT_NEAR(service.Summary(cashAccount).frozenCash, 0.0, 1e-9);
    EXPECT_EQ(feed.SubscriptionCount(kStock), 0);
}

TEST_F(TradeServiceTest, CancellingReleasesHeldCashAndPositionOnlyOnce)
{
    const double tick = Tick(kStock);
    const double limit = std::round((feed.GetQuote(kStock).last - 10 * tick) / tick) * tick;
    const double cash0 = service.Summary(cashAccount).cash;
    const Order buy =
        service.PlaceOrder(cashAccount, kStock, EnOrderSide::Buy, EnOrderType::Limit, limit, 500);
    const Position first = service.Positions(cashAccount).front();
    const Order sell = service.PlaceOrder(
        cashAccount, first.stockId, EnOrderSide::Sell, EnOrderType::Limit,
        std::round(feed.GetQuote(first.stockId).last * 1.09 / Tick(first.stockId)) * Tick(first.stockId),
        first.quantity);
    ASSERT_EQ(sell.status, EnOrderStatus::Working);
    EXPECT_EQ(service.SellableQuantity(cashAccount, first.stockId), 0);
    // With all of it held by the working sell, even one more lot is refused.
    EXPECT_EQ(service
                  .PlaceOrder(cashAccount, first.stockId, EnOrderSide::Sell, EnOrderType::Market, 0.0,
                              Lot(first.stockId))
                  .rejectCode,
              EnRejectReason::NoPosition);

    QSignalSpy changed(&service, &CVXSimTradeService::AccountChanged);
    EXPECT_TRUE(service.CancelOrder(cashAccount, buy.orderId));
    EXPECT_EQ(changed.count(), 1);
    EXPECT_NEAR(service.Summary(cashAccount).frozenCash, 0.0, 1e-9);
    EXPECT_NEAR(service.Summary(cashAccount).buyingPower, cash0, 1e-6);
    EXPECT_EQ(feed.SubscriptionCount(kStock), 0);
    EXPECT_EQ(service.Orders(cashAccount).back().orderId, buy.orderId);
    EXPECT_EQ(service.Orders(cashAccount).back().status, EnOrderStatus::Cancelled);

    EXPECT_TRUE(service.CancelOrder(cashAccount, sell.orderId));
    EXPECT_EQ(service.SellableQuantity(cashAccount, first.stockId), first.quantity);
    EXPECT_EQ(changed.count(), 2);

    // Twice, an order of another account, an unknown order: refused, nothing changes.
    EXPECT_FALSE(service.CancelOrder(cashAccount, buy.orderId));
    EXPECT_FALSE(service.CancelOrder(marginAccount, sell.orderId));
    EXPECT_FALSE(service.CancelOrder(cashAccount, 987654));
    EXPECT_FALSE(service.CancelOrder(4242, buy.orderId));
    EXPECT_EQ(changed.count(), 2);
    EXPECT_TRUE(vxtest::HasLog("CancelOrder"));
}

TEST_F(TradeServiceTest, ComboLegsFillTogetherOrAreAllRefused)
{
    QSignalSpy changed(&service, &CVXSimTradeService::AccountChanged);
    const double askA = BestAsk(kOptionA);
    const double bidB = BestBid(kOptionB);
    const double cash0 = service.Summary(marginAccount).cash;
    const long long heldA = service.PositionQuantity(marginAccount, kOptionA);

    const std::vector<Order> legs = service.PlaceComboOrder(
        marginAccount, {{kOptionA, EnOrderSide::Buy, 1}, {kOptionB, EnOrderSide::Sell, 2}}, 3);
    ASSERT_EQ(legs.size(), 2u);
    EXPECT_EQ(changed.count(), 1);
    EXPECT_NE(legs[0].comboId, 0u);
    EXPECT_EQ(legs[0].comboId, legs[1].comboId);
    EXPECT_EQ(legs[0].quantity, 3);
    EXPECT_EQ(legs[1].quantity, 6);
    EXPECT_EQ(legs[0].status, EnOrderStatus::Filled);
    EXPECT_EQ(legs[1].status, EnOrderStatus::Filled);
    EXPECT_DOUBLE_EQ(legs[0].averageFillPrice, askA);
    EXPECT_DOUBLE_EQ(legs[1].averageFillPrice, bidB);
    EXPECT_EQ(service.PositionQuantity(marginAccount, kOptionA), heldA + 3);
    EXPECT_EQ(service.PositionQuantity(marginAccount, kOptionB), -6);
    EXPECT_NEAR(service.Summary(marginAccount).cash, cash0 - 3 * askA + 6 * bidB, 1e-6);

    // The cash account holds no option B: the sell leg is refused, and with it the buy leg.
    changed.clear();
    const AccountSummary before = service.Summary(cashAccount);
    const std::vector<Order> refused = service.PlaceComboOrder(
        cashAccount, {{kOptionA, EnOrderSide::Buy, 1}, {kOptionB, EnOrderSide::Sell, 1}}, 1);
    ASSERT_EQ(refused.size(), 2u);
    for (const Order& order : refused) {
        EXPECT_EQ(order.status, EnOrderStatus::Rejected);
        EXPECT_EQ(order.rejectCode, EnRejectReason::NoPosition);
        EXPECT_EQ(order.rejectReason, refused[1].rejectReason);
    }
    EXPECT_EQ(changed.count(), 1);
    EXPECT_EQ(service.PositionQuantity(cashAccount, kOptionA), 0);
    EXPECT_EQ(service.Summary(cashAccount).cash, before.cash);

    // An unknown leg refuses the whole strategy; so does a zero quantity; no legs places nothing.
    EXPECT_EQ(
        service
            .PlaceComboOrder(marginAccount, {{kOptionA, EnOrderSide::Buy, 1}, {99, EnOrderSide::Buy, 1}}, 1)
            .front()
            .rejectCode,
        EnRejectReason::UnknownSecurity);
    EXPECT_EQ(service.PlaceComboOrder(marginAccount, {{kOptionA, EnOrderSide::Buy, 1}}, 0).front().rejectCode,
              EnRejectReason::BadQuantity);
    changed.clear();
    EXPECT_TRUE(service.PlaceComboOrder(marginAccount, {}, 1).empty());
    EXPECT_EQ(changed.count(), 0);
    EXPECT_EQ(service.PositionQuantity(marginAccount, kOptionA), heldA + 3);
}
