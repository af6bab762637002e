// The numbers behind the order-entry cards: the order ticket (prefill, snapping, amount, most the
// account can trade, what stops a ticket), the price ladder (rows, centring, scrolling, hit
// testing, cells) and an options strategy (legs from the linkage tree, net price). Expected values
// are worked out by hand in the comments.

#include "apps/Workspace/MarketData/SimMarketData.h"
#include "apps/Workspace/TradeCards/BookTraderModel.h"
#include "apps/Workspace/TradeCards/ComboOptionPanelModel.h"
#include "apps/Workspace/TradeCards/OrderTicketModel.h"

#include "apps/Workspace/Cards/WorkspaceContext.h"

#include "UIFrame/VariantMapTreeAccess.h"

#include "tests/common/TestSupport.h"
#include "tests/workspace/WorkspaceTestSupport.h"

#include <gtest/gtest.h>

using namespace vx_ws;
using vx_trade::EnOrderSide;
using vx_trade::EnOrderType;
using workspace_test::Leg;
using Issue = CVXOrderTicketModel::EnIssue;
using Column = CVXBookTraderModel::EnColumn;

TEST(OrderTicketModel, PrefillsTheOppositePriceUntilTheUserTypesOneAndSnapsToTheGrids)
{
    CVXOrderTicketModel ticket;
    ticket.SetSecurity(1000, 100, 0.01);
    EXPECT_EQ(ticket.Quantity(), 100); // one lot to start with
    EXPECT_EQ(ticket.Price(), 0.0);    // nothing known yet
    ticket.SetMarket(10.00, 9.99, 10.01);
    EXPECT_DOUBLE_EQ(ticket.Price(), 10.01); // a buy starts at the ask
    ticket.SetSide(EnOrderSide::Sell);
    EXPECT_DOUBLE_EQ(ticket.Price(), 9.99); // a sell at the bid
    // An untouched price follows the market, so that it never goes stale.
    ticket.SetMarket(10.05, 10.04, 10.06);
    EXPECT_DOUBLE_EQ(ticket.Price(), 10.04);

    ticket.SetPrice(9.957); // 995.7 ticks -> 996
    EXPECT_NEAR(ticket.Price(), 9.96, 1e-9);
    EXPECT_TRUE(ticket.IsPriceFromUser());
    ticket.SetSide(EnOrderSide::Buy); // the typed price stays, whatever the market does
    ticket.SetMarket(10.06, 10.05, 10.07);
    EXPECT_NEAR(ticket.Price(), 9.96, 1e-9);
    ticket.SetMarket(10.05, 10.04, 10.06);
    ticket.ResetPrice();
    EXPECT_DOUBLE_EQ(ticket.Price(), 10.06);
    EXPECT_FALSE(ticket.IsPriceFromUser());

    ticket.SetQuantity(250); // down to whole lots
    EXPECT_EQ(ticket.Quantity(), 200);
    ticket.SetQuantity(-5);
    EXPECT_EQ(ticket.Quantity(), 0);
    ticket.SetQuantity(600);

    // Another security: the price waits for its market; the quantity keeps whole new lots.
    ticket.SetPrice(10.0);
    ticket.SetSecurity(1002, 500, 0.05);
    EXPECT_EQ(ticket.Price(), 0.0);
    EXPECT_FALSE(ticket.IsPriceFromUser());
    EXPECT_EQ(ticket.Quantity(), 500); // 600 -> one lot of 500
    ticket.SetMarket(20.00, 19.95, 20.05);
    EXPECT_DOUBLE_EQ(ticket.Price(), 20.05);
    ticket.SetPrice(20.12); // 402.4 ticks of 0.05 -> 402 -> 20.10
    EXPECT_NEAR(ticket.Price(), 20.10, 1e-9);

    // An empty book side falls back to the last price.
    CVXOrderTicketModel thin;
    thin.SetSecurity(7, 1, 0.001);
    thin.SetSide(EnOrderSide::Sell);
    thin.SetMarket(0.123, 0.0, 0.125);
    EXPECT_DOUBLE_EQ(thin.Price(), 0.123);
}

TEST(OrderTicketModel, AmountMaximumAndWhatStopsATicket)
{
    CVXOrderTicketModel ticket;
    EXPECT_EQ(ticket.Issue(), Issue::NoAccount);
    ticket.SetAccountLimits(true, false, 10000.0, 1250);
    EXPECT_EQ(ticket.Issue(), Issue::NoSecurity);
    ticket.SetSecurity(1000, 100, 0.01);
    EXPECT_EQ(ticket.Issue(), Issue::NoPrice); // no market, no price yet
    EXPECT_FALSE(ticket.CanPlace());
    ticket.SetMarket(10.00, 9.99, 10.01);
    ticket.SetQuantity(300);

    // 300 at 10.01 = 3003.00. A lot costs 1001.00: 10000 buys 9 lots.
    EXPECT_NEAR(ticket.EstimatedAmount(), 3003.0, 1e-9);
    EXPECT_EQ(ticket.MaxQuantity(), 900);
    EXPECT_EQ(ticket.Issue(), Issue::None);
    ticket.SetQuantity(1000);
    EXPECT_EQ(ticket.Issue(), Issue::OverMaximum);
    EXPECT_TRUE(ticket.CanPlace()); // the broker decides
    // Exactly ten lots of buying power buy ten lots.
    ticket.SetAccountLimits(true, false, 10010.0, 1250);
    EXPECT_EQ(ticket.MaxQuantity(), 1000);
    EXPECT_EQ(ticket.Issue(), Issue::None);

    // A market order is estimated at the opposite price; a limit at its limit.
    ticket.SetType(EnOrderType::Market);
    ticket.SetPrice(9.50);
    EXPECT_NEAR(ticket.EstimatedAmount(), 1000 * 10.01, 1e-9);
    ticket.SetType(EnOrderType::Limit);
    EXPECT_NEAR(ticket.EstimatedAmount(), 1000 * 9.50, 1e-9);
    EXPECT_EQ(ticket.MaxQuantity(), 1000); // 10010 / 950 = 10.5 lots -> 10

    // A cash account sells whole lots of what it may sell; a margin account may go short for what
    // its buying power covers: 1200 + 10010 / (100 * 9.99) = 1200 + 10 lots.
    ticket.SetSide(EnOrderSide::Sell);
    ticket.ResetPrice();
    EXPECT_EQ(ticket.MaxQuantity(), 1200);
    ticket.SetAccountLimits(true, true, 10010.0, 1250);
    EXPECT_EQ(ticket.MaxQuantity(), 2200);

    ticket.SetQuantity(0);
    EXPECT_EQ(ticket.Issue(), Issue::NoQuantity);
    EXPECT_FALSE(CVXOrderTicketModel::IssueText(Issue::NoQuantity).isEmpty());
    EXPECT_NE(CVXOrderTicketModel::IssueText(Issue::NoQuantity),
              CVXOrderTicketModel::IssueText(Issue::NoPrice));
    ticket.SetAccountLimits(false, false, 0.0, 0);
    EXPECT_EQ(ticket.MaxQuantity(), 0);
}

TEST(BookTraderModel, RowsCentringScrollingAndHitTesting)
{
    CVXBookTraderModel ladder;
    ladder.SetTickSize(0.01);
    // 200 px high, 20 px header, 18 px rows: 180 px of rows = 10 rows.
    ladder.SetGeometry(300, 200, 20, 18);
    EXPECT_EQ(ladder.VisibleRows(), 10);
    ladder.CentreOn(1000);
    EXPECT_EQ(ladder.TopTicks(), 1005); // the middle row (5) holds 10.00
    EXPECT_EQ(ladder.TicksAtRow(5), 1000);
    EXPECT_EQ(ladder.RowOfTicks(1000), 5);
    EXPECT_EQ(ladder.RowOfTicks(1006), -1);
    EXPECT_EQ(ladder.RowOfTicks(996), 9);
    EXPECT_EQ(ladder.RowOfTicks(995), -1);
    EXPECT_EQ(ladder.TicksOf(9.99), 999);

    EXPECT_EQ(ladder.RowAt(19), -1); // header
    EXPECT_EQ(ladder.RowAt(20), 0);
    EXPECT_EQ(ladder.RowAt(37), 0);
    EXPECT_EQ(ladder.RowAt(38), 1);
    EXPECT_EQ(ladder.RowAt(199), 9);
    EXPECT_EQ(ladder.RowAt(200), -1);

    // Shares 16/21/26/21/16 % of 300 px: edges at 48, 111, 189, 252.
    EXPECT_EQ(ladder.ColumnAt(-1), Column::None);
    EXPECT_EQ(ladder.ColumnAt(0), Column::OwnBuy);
    EXPECT_EQ(ladder.ColumnAt(47), Column::OwnBuy);
    EXPECT_EQ(ladder.ColumnAt(48), Column::Bid);
    EXPECT_EQ(ladder.ColumnAt(110), Column::Bid);
    EXPECT_EQ(ladder.ColumnAt(111), Column::Price);
    EXPECT_EQ(ladder.ColumnAt(189), Column::Ask);
    EXPECT_EQ(ladder.ColumnAt(251), Column::Ask);
    EXPECT_EQ(ladder.ColumnAt(252), Column::OwnSell);
    EXPECT_EQ(ladder.ColumnAt(299), Column::OwnSell);
    EXPECT_EQ(ladder.ColumnAt(300), Column::None);
    EXPECT_EQ(ladder.ColumnWidth(Column::OwnSell), 48);

    ladder.ScrollRows(3); // towards lower prices
    EXPECT_EQ(ladder.TopTicks(), 1002);
    EXPECT_EQ(ladder.RowOfTicks(1000), 2);
    ladder.ScrollRows(-10);
    EXPECT_EQ(ladder.TopTicks(), 1012);
    EXPECT_EQ(ladder.RowOfTicks(1000), -1);

    // A partly visible last row counts; centring uses the whole rows only: 190 px = 10 + 1.
    ladder.SetGeometry(300, 210, 20, 18);
    EXPECT_EQ(ladder.VisibleRows(), 11);
    ladder.CentreOn(1000);
    EXPECT_EQ(ladder.TopTicks(), 1005);

    // Nothing under one tick: the top stops at 1 and the rows end there.
    ladder.CentreOn(3);
    ladder.ScrollRows(20);
    EXPECT_EQ(ladder.TopTicks(), 1);
    EXPECT_EQ(ladder.BuildRows({}, 0.0, {}).size(), 1u);
}

TEST(BookTraderModel, RowsCarryTheBookTheAccountsOrdersAndTheLastPrice)
{
    CVXBookTraderModel ladder;
    ladder.SetTickSize(0.01);
    ladder.SetGeometry(300, 200, 20, 18);
    ladder.CentreOn(1000); // rows 10.05 .. 9.96

    vx_md::OrderBook book;
    book.bids = {{9.99, 500, {}}, {9.98, 300, {}}, {9.90, 100, {}}};
    book.asks = {{10.01, 200, {}}, {10.02, 700, {}}};
    auto order = [](EnOrderSide side, EnOrderType type, double price, long long quantity, long long filled) {
        vx_trade::Order o;
        o.side = side;
        o.type = type;
        o.price = price;
        o.quantity = quantity;
        o.filledQuantity = filled;
        return o;
    };
    const std::vector<vx_trade::Order> working = {
        order(EnOrderSide::Buy, EnOrderType::Limit, 9.98, 300, 100), // 200 left
        order(EnOrderSide::Buy, EnOrderType::Limit, 9.98, 100, 0),
        order(EnOrderSide::Sell, EnOrderType::Limit, 10.02, 500, 0),
        order(EnOrderSide::Buy, EnOrderType::Market, 0.0, 900, 0), // has no price level
    };
    const std::vector<BookTraderRow> rows = ladder.BuildRows(book, 10.00, working);
    ASSERT_EQ(rows.size(), 10u);
    EXPECT_EQ(rows[0].ticks, 1005);
    EXPECT_NEAR(rows[0].price, 10.05, 1e-9);
    for (const BookTraderRow& row : rows) {
        SCOPED_TRACE(row.ticks);
        EXPECT_EQ(row.isLast, row.ticks == 1000);
        EXPECT_EQ(row.bidVolume, row.ticks == 999 ? 500 : row.ticks == 998 ? 300 : 0);
        EXPECT_EQ(row.askVolume, row.ticks == 1001 ? 200 : row.ticks == 1002 ? 700 : 0);
        EXPECT_EQ(row.ownBuy, row.ticks == 998 ? 300 : 0);
        EXPECT_EQ(row.ownSell, row.ticks == 1002 ? 500 : 0);
    }
}

namespace {

ComboLegQuote LegQuote(EnOrderSide side, int ratio, double bid, double ask, double theoretical)
{
    ComboLegQuote quote;
    quote.leg.side = side;
    quote.leg.ratio = ratio;
    quote.bid = bid;
    quote.ask = ask;
    quote.theoretical = theoretical;
    return quote;
}

} // namespace

TEST(ComboOptionPanelModel, LegsComeFromTheLinkageTreeAndGoBackUnchanged)
{
    CVXVariantMapTree tree;
    tree.Set<qulonglong>(QString::fromLatin1(keys::kUnderlyingID), 500);
    tree.Set<QVector<CVXVariantMapTree>>(
        QString::fromLatin1(keys::kLegs),
        {Leg(100000, 1, 1), Leg(100002, 2, 2), Leg(0, 1, 1), Leg(100000, 2, 3), Leg(100004, 7, 0)});
    CVXComboOptionPanelModel model;
    model.SetFromTree(tree);
    EXPECT_EQ(model.UnderlyingID(), 500u);
    // No option id and a repeated option are dropped; side 7 is a buy, ratio 0 is 1.
    ASSERT_EQ(model.Legs().size(), 3u);
    EXPECT_EQ(model.Legs()[0].optionId, 100000u);
    EXPECT_EQ(model.Legs()[0].side, EnOrderSide::Buy);
    EXPECT_EQ(model.Legs()[1].optionId, 100002u);
    EXPECT_EQ(model.Legs()[1].side, EnOrderSide::Sell);
    EXPECT_EQ(model.Legs()[1].ratio, 2);
    EXPECT_EQ(model.Legs()[2].side, EnOrderSide::Buy);
    EXPECT_EQ(model.Legs()[2].ratio, 1);

    EXPECT_TRUE(model.ToggleSide(2));
    EXPECT_TRUE(model.SetRatio(0, 4));
    EXPECT_FALSE(model.SetRatio(0, 0));
    EXPECT_FALSE(model.ToggleSide(3));
    EXPECT_FALSE(model.SetRatio(-1, 2));

    CVXComboOptionPanelModel copy;
    copy.SetFromTree(model.ToTree());
    EXPECT_EQ(copy.UnderlyingID(), 500u);
    ASSERT_EQ(copy.Legs().size(), 3u);
    EXPECT_EQ(copy.Legs()[0].ratio, 4);
    EXPECT_EQ(copy.Legs()[2].side, EnOrderSide::Sell);

    copy.SetFromTree(CVXVariantMapTree());
    EXPECT_TRUE(copy.IsEmpty());
    EXPECT_EQ(copy.UnderlyingID(), 0u);
}

TEST(ComboOptionPanelModel, NetPriceIsADebitOrACreditAtTheBookPricesTheLegsTradeAt)
{
    // Buy 1 at the ask 0.50, sell 2 at the bid 0.20: 0.50 - 0.40 = 0.10 debit; model 0.49 - 0.42.
    ComboNetPrice net = CVXComboOptionPanelModel::NetPrice(
        {LegQuote(EnOrderSide::Buy, 1, 0.48, 0.50, 0.49), LegQuote(EnOrderSide::Sell, 2, 0.20, 0.22, 0.21)});
    EXPECT_TRUE(net.complete);
    EXPECT_NEAR(net.market, 0.10, 1e-12);
    EXPECT_NEAR(net.theoretical, 0.07, 1e-12);
    // Sell 1 at 0.48, buy 1 at 0.22: a credit of 0.26.
    net = CVXComboOptionPanelModel::NetPrice(
        {LegQuote(EnOrderSide::Sell, 1, 0.48, 0.50, 0.49), LegQuote(EnOrderSide::Buy, 1, 0.20, 0.22, 0.21)});
    EXPECT_NEAR(net.market, -0.26, 1e-12);
    // A sell leg without a bid leaves the price incomplete; no legs is no price.
    EXPECT_FALSE(
        CVXComboOptionPanelModel::NetPrice({LegQuote(EnOrderSide::Sell, 1, 0.0, 0.5, 0.4)}).complete);
    EXPECT_TRUE(CVXComboOptionPanelModel::NetPrice({LegQuote(EnOrderSide::Buy, 1, 0.0, 0.5, 0.4)}).complete);
    EXPECT_FALSE(CVXComboOptionPanelModel::NetPrice({}).complete);

    // Quotes from the real feed: codes and best prices are the feed's; unknown options are left out.
    vx_md::CVXSimMarketData feed{7};
    CVXVariantMapTree tree;
    tree.Set<QVector<CVXVariantMapTree>>(QString::fromLatin1(keys::kLegs),
                                         {Leg(100000, 1, 1), Leg(999999, 1, 1), Leg(100003, 2, 1)});
    CVXComboOptionPanelModel model;
    model.SetFromTree(tree);
    const std::vector<ComboLegQuote> quotes = model.Quote(feed);
    ASSERT_EQ(quotes.size(), 2u);
    EXPECT_EQ(quotes[0].code, feed.GetSecurity(100000).code);
    EXPECT_DOUBLE_EQ(quotes[0].ask, feed.GetOrderBook(100000).asks.front().price);
    EXPECT_DOUBLE_EQ(quotes[1].bid, feed.GetOrderBook(100003).bids.front().price);
    EXPECT_FALSE(quotes[1].call);
    EXPECT_DOUBLE_EQ(quotes[1].theoretical, feed.OptionTheoreticalPrice(100003));

    // The panel shows each leg's code: every option's code starts with its underlying's, on every
    // underlying with a chain (the stocks' chains too, built after the first ETF's).
    for (unsigned long underlying : {500ul, 1000ul, 1001ul}) {
        const std::string prefix = feed.GetSecurity(underlying).code;
        for (unsigned long option : feed.OptionChain(underlying))
            EXPECT_EQ(feed.GetSecurity(option).code.rfind(prefix, 0), 0u) << feed.GetSecurity(option).code;
    }
}
