// The order-entry cards with the real feed, the real broker and real widgets: a ticket filled in
// with clicks and keys and placed; a refusal shown in the card; requests prefilling the ticket;
// an account picked in one card reaching the other box of its linkage group on a canvas; price
// ladder clicks placing and cancelling at the clicked price; an options strategy arriving by the
// combo option event, edited and placed, and the option chain asked for through the canvas; both
// tickets keep their rows together from their smallest size to a large one.

#include "apps/Workspace/Cards/RegisterCards.h"
#include "apps/Workspace/Trade/SimTradeService.h"
#include "apps/Workspace/TradeCards/AccountSelector.h"
#include "apps/Workspace/TradeCards/BookTraderCard.h"
#include "apps/Workspace/TradeCards/ComboOptionPanelCard.h"
#include "apps/Workspace/TradeCards/OrderTicketButton.h"
#include "apps/Workspace/TradeCards/PlaceOrderSecuritiesPanelCard.h"

#include "UIFrame/Canvas/PanelScrollView.h"
#include "UIFrame/CardEvents.h"
#include "UIFrame/CardFactoryMgr.h"
#include "UIFrame/PanelBox/PanelAtomizationBox.h"
#include "UIFrame/VariantMapTreeAccess.h"

#include "Platform/StdUI/Menu.h"

#include "tests/common/TestSupport.h"
#include "tests/workspace/WorkspaceTestSupport.h"

#include <QAction>
#include <QApplication>
#include <QDoubleSpinBox>
#include <QSpinBox>
#include <QTest>
#include <QWheelEvent>

#include <gtest/gtest.h>

#include <cmath>
#include <memory>

using namespace vx_ws;
using vx_trade::EnOrderSide;
using vx_trade::EnOrderStatus;
using vx_trade::Order;
using workspace_test::Leg;

namespace {

constexpr unsigned long kStock = 1006; // lot 100, tick 0.01, held by no account
const QStringList kOrderEntryTypes = {QStringLiteral("TradePlaceOrderSecuritiesPanel"),
                                      QStringLiteral("TradePlaceOrderComboOptionPanel"),
                                      QStringLiteral("TradePlaceOrderBookTraderPanel")};

class OrderEntryTest : public workspace_test::CFeedTest
{
protected:
    OrderEntryTest() : CFeedTest(7) {}

    void SetUp() override
    {
        CFeedTest::SetUp();
        SetTradeService(&service);
        cashAccount = service.Accounts()[0].id;
        marginAccount = service.Accounts()[1].id;
    }

    void TearDown() override
    {
        if (board) {
            board.reset();
            workspace_test::UnregisterCards(kOrderEntryTypes);
        }
        workspace_test::FlushDeletes();
        CFeedTest::TearDown();
    }

    template <typename Card> std::unique_ptr<Card> Show(QSize size)
    {
        auto card = std::make_unique<Card>(CardPos_PanelBox);
        card->resize(size);
        card->show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(card.get()));
        return card;
    }

    // The canvas is made (and the cards registered) by the first box a test asks for.
    CVXPanelAtomizationBox* AddBox(const QString& type, const QString& group)
    {
        if (!board) {
            RegisterOrderEntryCards();
            board = std::make_unique<workspace_test::CTestCanvas>(QSize(1200, 800));
        }
        return board->AddBox(type, group);
    }

    template <typename Card> static Card* CardOf(CVXPanelAtomizationBox* box)
    {
        return workspace_test::CTestCanvas::CardOf<Card>(box);
    }

    // Opens the card's account menu with a click and picks an account from it.
    static void PickAccount(CVXOrderTicketCardBase* card, unsigned long long accountId)
    {
        QTest::mouseClick(card->AccountSelector(), Qt::LeftButton);
        vx_std_ui::VMenu* menu = card->AccountSelector()->OpenMenu();
        ASSERT_NE(menu, nullptr);
        QAction* wanted = nullptr;
        for (QAction* action : menu->actions())
            if (action->data().toULongLong() == accountId)
                wanted = action;
        ASSERT_NE(wanted, nullptr);
        wanted->trigger();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    static void TypeInto(QAbstractSpinBox* box, const QString& text)
    {
        QTest::keyClick(box, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClicks(box, text);
        QTest::keyClick(box, Qt::Key_Return);
    }

    double BestAsk(unsigned long id) const { return feed.GetOrderBook(id).asks.at(0).price; }
    double BestBid(unsigned long id) const { return feed.GetOrderBook(id).bids.at(0).price; }

    vx_trade::CVXSimTradeService service{&feed};
    unsigned long long cashAccount = 0;
    unsigned long long marginAccount = 0;
    std::unique_ptr<workspace_test::CTestCanvas> board;
};

} // namespace

TEST_F(OrderEntryTest, ATicketFilledInWithClicksAndKeysIsPlacedAndTheAnswerShowsInTheCard)
{
    auto card = Show<CVXPlaceOrderSecuritiesPanelCard>(QSize(280, 380));
    card->SetStockID(kStock);
    EXPECT_EQ(card->AccountID(), cashAccount);
    EXPECT_EQ(card->AccountSelector()->AccountID(), cashAccount);
    // A buy is prefilled at the feed's best ask, a sell at its best bid.
    EXPECT_DOUBLE_EQ(card->Model().Price(), BestAsk(kStock));
    QTest::mouseClick(card->SellButton(), Qt::LeftButton);
    EXPECT_EQ(card->Model().Side(), EnOrderSide::Sell);
    EXPECT_DOUBLE_EQ(card->PriceBox()->value(), BestBid(kStock));
    QTest::mouseClick(card->BuyButton(), Qt::LeftButton);
    EXPECT_EQ(card->Model().Side(), EnOrderSide::Buy);
    const double ask = BestAsk(kStock);
    EXPECT_DOUBLE_EQ(card->PriceBox()->value(), ask);

    TypeInto(card->QuantityBox(), QStringLiteral("300"));
    EXPECT_EQ(card->Model().Quantity(), 300);
    EXPECT_NEAR(card->Model().EstimatedAmount(), 300 * ask, 1e-6);
    // 1,000,000 of cash buys whole lots of 100 at the ask.
    EXPECT_EQ(card->Model().MaxQuantity(), static_cast<long long>(1000000.0 / (100 * ask)) * 100);

    const QImage before = card->grab().toImage();
    QTest::mouseClick(card->PlaceButton(), Qt::LeftButton);
    const std::vector<Order> orders = service.Orders(cashAccount);
    ASSERT_EQ(orders.size(), 1u);
    EXPECT_EQ(orders[0].stockId, kStock);
    EXPECT_EQ(orders[0].side, EnOrderSide::Buy);
    EXPECT_EQ(orders[0].quantity, 300);
    EXPECT_EQ(orders[0].status, EnOrderStatus::Filled); // a limit at the ask crosses
    EXPECT_FALSE(card->IsResultError());
    EXPECT_TRUE(card->ResultText().contains(QStringLiteral("300"))) << card->ResultText().toStdString();
    EXPECT_NE(card->grab().toImage(), before);
    // The account now holds 300 to sell.
    QTest::mouseClick(card->SellButton(), Qt::LeftButton);
    EXPECT_EQ(card->Model().MaxQuantity(), 300);

    // Selling more than the account holds: the broker refuses and the card says why.
    TypeInto(card->QuantityBox(), QStringLiteral("500"));
    QTest::mouseClick(card->PlaceButton(), Qt::LeftButton);
    const Order refused = service.Orders(cashAccount).front();
    EXPECT_EQ(refused.rejectCode, vx_trade::EnRejectReason::NoPosition);
    EXPECT_TRUE(card->IsResultError());
    EXPECT_TRUE(card->ResultText().contains(QString::fromStdString(refused.rejectReason)));

    // A typed odd quantity shows as whole lots once typed; a market order has no price to type.
    TypeInto(card->QuantityBox(), QStringLiteral("250"));
    EXPECT_EQ(card->QuantityBox()->value(), 200);
    QTest::mouseClick(card->MarketButton(), Qt::LeftButton);
    EXPECT_FALSE(card->PriceBox()->isEnabled());
    QTest::mouseClick(card->PlaceButton(), Qt::LeftButton);
    EXPECT_EQ(service.Orders(cashAccount).front().type, vx_trade::EnOrderType::Market);
    EXPECT_EQ(service.PositionQuantity(cashAccount, kStock), 100);

    // The quote follows the feed.
    for (int i = 0; i < 3; ++i)
        feed.Step();
    EXPECT_DOUBLE_EQ(card->Model().BestBid(), BestBid(kStock));
    EXPECT_DOUBLE_EQ(card->Model().Last(), feed.GetQuote(kStock).last);
    // A price the user never typed follows the opposite side of the book.
    EXPECT_DOUBLE_EQ(card->PriceBox()->value(), BestBid(kStock));
}

TEST_F(OrderEntryTest, ARequestPrefillsTheTicketAndTheTicketKeepsItsChoices)
{
    auto card = Show<CVXPlaceOrderSecuritiesPanelCard>(QSize(280, 380));
    // What the order book card's click on a bid level turns into at the canvas.
    CVXVariantMapTree request;
    request.Set<qulonglong>(QStringLiteral("StockID"), 1003);
    request.Set<int>(QStringLiteral("OrderSide"), 2);
    request.Set<qlonglong>(QStringLiteral("Quantity"), 500);
    const double bid = BestBid(1003);
    request.Set<double>(QStringLiteral("Price"), bid);
    card->SetObjProperty(card->GetCardObjType(), request);
    EXPECT_EQ(card->ShownStockID(), 1003u);
    EXPECT_EQ(card->Model().Side(), EnOrderSide::Sell);
    EXPECT_EQ(card->Model().Quantity(), 500);
    EXPECT_DOUBLE_EQ(card->Model().Price(), bid);
    EXPECT_DOUBLE_EQ(card->PriceBox()->value(), bid);
    EXPECT_TRUE(card->SellButton()->isChecked());
    EXPECT_EQ(card->QuantityBox()->value(), 500);

    // An option chain request names the underlying; a strategy without one trades its first leg.
    CVXVariantMapTree chain;
    chain.Set<qulonglong>(QStringLiteral("UnderlyingStockID"), 500);
    card->SetObjProperty(card->GetCardObjType(), chain);
    EXPECT_EQ(card->ShownStockID(), 500u);
    CVXVariantMapTree combo;
    combo.Set<QVector<CVXVariantMapTree>>(QString::fromLatin1(keys::kLegs), {Leg(100001, 1, 1)});
    CVXVariantMapTree strategy;
    strategy.Set<CVXVariantMapTree>(QStringLiteral("ComboOptionInfo"), combo);
    card->SetObjProperty(card->GetCardObjType(), strategy);
    EXPECT_EQ(card->ShownStockID(), 100001u);
    EXPECT_EQ(card->Model().Side(), EnOrderSide::Buy);
    EXPECT_EQ(card->Model().LotSize(), 1);

    // Side, order type and quantity survive a save and restore into a new card.
    card->SetStockID(1003);
    QTest::mouseClick(card->MarketButton(), Qt::LeftButton);
    QTest::mouseClick(card->SellButton(), Qt::LeftButton);
    TypeInto(card->QuantityBox(), QStringLiteral("700"));
    CVXVariantMapTree saved;
    card->GetCardObjRestoreData(&saved);
    auto restored = Show<CVXPlaceOrderSecuritiesPanelCard>(QSize(280, 380));
    EXPECT_EQ(restored->Model().Side(), EnOrderSide::Buy);
    restored->SetCardObjRestoreData(saved);
    EXPECT_EQ(restored->Model().Side(), EnOrderSide::Sell);
    EXPECT_EQ(restored->Model().Type(), vx_trade::EnOrderType::Market);
    EXPECT_EQ(restored->Model().Quantity(), 700);
    EXPECT_EQ(restored->QuantityBox()->value(), 700);
    EXPECT_TRUE(restored->MarketButton()->isChecked());
}

TEST_F(OrderEntryTest, AnAccountPickedInOneCardReachesTheOtherBoxOfItsLinkageGroup)
{
    CVXPanelAtomizationBox* ticketBox = AddBox(kOrderEntryTypes[0], QStringLiteral("1"));
    CVXPanelAtomizationBox* ladderBox = AddBox(kOrderEntryTypes[2], QStringLiteral("1"));
    CVXPanelAtomizationBox* otherBox = AddBox(kOrderEntryTypes[1], QStringLiteral("2"));
    auto* ticket = CardOf<CVXPlaceOrderSecuritiesPanelCard>(ticketBox);
    auto* ladder = CardOf<CVXBookTraderCard>(ladderBox);
    auto* other = CardOf<CVXComboOptionPanelCard>(otherBox);
    ASSERT_TRUE(ticket && ladder && other);
    EXPECT_EQ(ladder->AccountID(), cashAccount);

    PickAccount(ticket, marginAccount);
    EXPECT_EQ(ticket->AccountID(), marginAccount);
    EXPECT_EQ(vx_trade::CVXSimTradeService::AccountIDFromTree(ladderBox->GetAccountInfo()), marginAccount);
    EXPECT_EQ(ladder->AccountID(), marginAccount);
    EXPECT_EQ(ladder->AccountSelector()->AccountID(), marginAccount);
    // Another group keeps its account.
    EXPECT_EQ(other->AccountID(), cashAccount);

    // And back from the ladder: the ticket follows, its limits now the cash account's.
    PickAccount(ladder, cashAccount);
    EXPECT_EQ(ticket->AccountID(), cashAccount);
    EXPECT_EQ(ticket->AccountSelector()->AccountID(), cashAccount);
}

TEST_F(OrderEntryTest, LadderClicksPlaceAndCancelAtTheClickedPrice)
{
    auto card = Show<CVXBookTraderCard>(QSize(300, 420));
    card->SetStockID(kStock);
    // The ladder is 360 px high under a 20 px header: 18 whole rows of 18 px, the last price on
    // the middle one (row 9). Columns of 300 px: bid 48..110, ask 189..251, own orders outside.
    const long long lastTicks = std::llround(feed.GetQuote(kStock).last / 0.01);
    ASSERT_EQ(card->Model().RowOfTicks(lastTicks), 9);
    const int ladderTop = card->LadderRect().top();
    auto rowY = [&](int row) { return ladderTop + 20 + row * 18 + 9; };
    EXPECT_EQ(card->OrderQuantity(), 100);

    // A click on the bid cell three rows under the last price: a buy limit three ticks lower.
    QTest::mouseClick(card.get(), Qt::LeftButton, Qt::NoModifier, QPoint(80, rowY(12)));
    std::vector<Order> working = service.WorkingOrders(cashAccount, kStock);
    ASSERT_EQ(working.size(), 1u);
    EXPECT_EQ(working[0].side, EnOrderSide::Buy);
    EXPECT_NEAR(working[0].price, (lastTicks - 3) * 0.01, 1e-9);
    EXPECT_EQ(working[0].quantity, 100);
    EXPECT_FALSE(card->IsResultError());
    EXPECT_EQ(card->Rows().at(12).ownBuy, 100);
    EXPECT_EQ(card->Rows().at(12).ticks, lastTicks - 3);
    EXPECT_TRUE(card->Rows().at(9).isLast);

    // A larger quantity, typed, and a second click on the same price: both show on the row.
    QTest::keyClick(card->QuantityBox(), Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(card->QuantityBox(), QStringLiteral("300"));
    QTest::keyClick(card->QuantityBox(), Qt::Key_Return);
    EXPECT_EQ(card->OrderQuantity(), 300);
    QTest::mouseClick(card.get(), Qt::LeftButton, Qt::NoModifier, QPoint(60, rowY(12)));
    EXPECT_EQ(card->Rows().at(12).ownBuy, 400);

    // A right click on the own-buy cell of that row cancels both; elsewhere it does nothing.
    const QImage withOrders = card->grab().toImage();
    QTest::mouseClick(card.get(), Qt::RightButton, Qt::NoModifier, QPoint(20, rowY(11)));
    EXPECT_EQ(service.WorkingOrders(cashAccount, kStock).size(), 2u);
    QTest::mouseClick(card.get(), Qt::RightButton, Qt::NoModifier, QPoint(20, rowY(12)));
    EXPECT_TRUE(service.WorkingOrders(cashAccount, kStock).empty());
    EXPECT_EQ(card->Rows().at(12).ownBuy, 0);
    EXPECT_EQ(service.Orders(cashAccount).front().status, EnOrderStatus::Cancelled);
    EXPECT_NE(card->grab().toImage(), withOrders);

    // The ask cell three rows above: a sell limit, refused in the cash account that holds none...
    QTest::mouseClick(card.get(), Qt::LeftButton, Qt::NoModifier, QPoint(220, rowY(6)));
    EXPECT_EQ(service.Orders(cashAccount).front().rejectCode, vx_trade::EnRejectReason::NoPosition);
    EXPECT_TRUE(card->IsResultError());
    // ...and working in the margin account, shown in the own-sell column.
    PickAccount(card.get(), marginAccount);
    QTest::mouseClick(card.get(), Qt::LeftButton, Qt::NoModifier, QPoint(220, rowY(6)));
    working = service.WorkingOrders(marginAccount, kStock);
    ASSERT_EQ(working.size(), 1u);
    EXPECT_EQ(working[0].side, EnOrderSide::Sell);
    EXPECT_NEAR(working[0].price, (lastTicks + 3) * 0.01, 1e-9);
    EXPECT_EQ(card->Rows().at(6).ownSell, 300);

    // One notch of the wheel towards the user shows three ticks lower; the button centres again.
    const long long top = card->Model().TopTicks();
    const QPoint at(150, rowY(5));
    QWheelEvent wheel(at, card->mapToGlobal(at), QPoint(), QPoint(0, -120), Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(card.get(), &wheel);
    EXPECT_EQ(card->Model().TopTicks(), top - 3);
    EXPECT_EQ(card->Model().RowOfTicks(lastTicks), 6);
    // A scrolled ladder stays put while the market moves.
    feed.Step();
    EXPECT_EQ(card->Model().TopTicks(), top - 3);
    QTest::mouseClick(card->CentreButton(), Qt::LeftButton);
    EXPECT_EQ(card->Model().RowOfTicks(std::llround(feed.GetQuote(kStock).last / 0.01)), 9);
}

TEST_F(OrderEntryTest, AStrategyArrivesByTheComboEventAndIsPlacedAsOneComboOrder)
{
    CVXPanelAtomizationBox* ticketBox = AddBox(kOrderEntryTypes[0], QStringLiteral("3"));
    CVXPanelAtomizationBox* comboBox = AddBox(kOrderEntryTypes[1], QStringLiteral("3"));
    auto* ticket = CardOf<CVXPlaceOrderSecuritiesPanelCard>(ticketBox);
    auto* combo = CardOf<CVXComboOptionPanelCard>(comboBox);
    ASSERT_TRUE(ticket && combo);
    comboBox->resize(380, 360);
    QApplication::processEvents();

    // Without legs the card says what to do and offers nothing to place.
    EXPECT_TRUE(combo->Model().IsEmpty());
    EXPECT_FALSE(combo->PlaceButton()->isVisible());
    EXPECT_TRUE(combo->PlaceOrder().empty());
    const QImage empty = combo->grab().toImage();

    // Buy one call, sell two of another, raised by a card of the same linkage group.
    CVXVariantMapTree strategy;
    strategy.Set<qulonglong>(QString::fromLatin1(keys::kUnderlyingID), 500);
    strategy.Set<QVector<CVXVariantMapTree>>(QString::fromLatin1(keys::kLegs),
                                             {Leg(100000, 1, 1), Leg(100002, 2, 2)});
    CardEventComboOptionChanged event(strategy);
    core::ui_event::DispatchCardEvent(ticket, &event);
    ASSERT_EQ(combo->Model().Legs().size(), 2u);
    ASSERT_EQ(combo->SideButtons().size(), 2u);
    EXPECT_TRUE(combo->PlaceButton()->isVisible());
    EXPECT_NE(combo->grab().toImage(), empty);
    // The net price per combo: the first leg's ask less twice the second leg's bid.
    EXPECT_NEAR(combo->NetPrice().market, BestAsk(100000) - 2 * BestBid(100002), 1e-9);
    EXPECT_TRUE(combo->NetPrice().complete);
    EXPECT_EQ(combo->Quotes().at(1).code, feed.GetSecurity(100002).code);

    // Flipping the second leg to a buy makes both pay their asks.
    QTest::mouseClick(combo->SideButtons()[1], Qt::LeftButton);
    EXPECT_EQ(combo->Model().Legs()[1].side, EnOrderSide::Buy);
    EXPECT_NEAR(combo->NetPrice().market, BestAsk(100000) + 2 * BestAsk(100002), 1e-9);
    QTest::mouseClick(combo->SideButtons()[1], Qt::LeftButton);
    // A ratio typed in the leg's box.
    QTest::keyClick(combo->RatioBoxes()[1], Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(combo->RatioBoxes()[1], QStringLiteral("3"));
    EXPECT_EQ(combo->Model().Legs()[1].ratio, 3);

    // The cash account cannot sell options it does not hold: both legs refused, said in the card.
    QTest::mouseClick(combo->PlaceButton(), Qt::LeftButton);
    EXPECT_TRUE(combo->IsResultError());
    EXPECT_EQ(service.PositionQuantity(cashAccount, 100000), 0);
    // In the margin account, two combos: 2 and 6 contracts, one combo id.
    PickAccount(combo, marginAccount);
    EXPECT_EQ(ticket->AccountID(), marginAccount); // the group followed
    const long long heldBefore = service.PositionQuantity(marginAccount, 100000);
    QTest::keyClick(combo->QuantityBox(), Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(combo->QuantityBox(), QStringLiteral("2"));
    QTest::mouseClick(combo->PlaceButton(), Qt::LeftButton);
    const std::vector<Order> orders = service.Orders(marginAccount);
    ASSERT_EQ(orders.size(), 2u);
    EXPECT_NE(orders[0].comboId, 0u);
    EXPECT_EQ(orders[0].comboId, orders[1].comboId);
    EXPECT_EQ(service.PositionQuantity(marginAccount, 100000), heldBefore + 2);
    EXPECT_EQ(service.PositionQuantity(marginAccount, 100002), -6);
    EXPECT_FALSE(combo->IsResultError());

    // "Option chain" goes up to the canvas, which hands the group's order panel the underlying.
    QTest::mouseClick(combo->OptionChainButton(), Qt::LeftButton);
    EXPECT_EQ(ticket->ShownStockID(), feed.GetSecurity(100000).underlyingId);
}

TEST_F(OrderEntryTest, TheTicketsKeepTheirRowsTogetherAndInsideTheCardAtEverySize)
{
    // Every child the user can reach lies inside the card, none over another.
    auto expectTidy = [](QWidget* card) {
        std::vector<QRect> taken;
        for (QWidget* child : card->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly)) {
            if (!child->isVisible())
                continue;
            EXPECT_TRUE(card->rect().contains(child->geometry()))
                << child->metaObject()->className() << " at " << child->x() << "," << child->y() << " "
                << child->width() << "x" << child->height() << " in " << card->width() << "x"
                << card->height();
            for (const QRect& other : taken)
                EXPECT_FALSE(other.intersects(child->geometry())) << child->metaObject()->className();
            taken.push_back(child->geometry());
        }
    };

    // The strategy ticket: the quantity is a compact box with its label outside it, the order
    // button beside it on the same row, right under the legs; a taller card leaves its extra
    // room below the rows instead of opening a gap between them.
    auto combo = Show<CVXComboOptionPanelCard>(QSize(300, 260));
    CVXVariantMapTree strategy;
    strategy.Set<qulonglong>(QString::fromLatin1(keys::kUnderlyingID), 500);
    strategy.Set<QVector<CVXVariantMapTree>>(QString::fromLatin1(keys::kLegs),
                                             {Leg(100004, 1, 1), Leg(100006, 2, 1)});
    combo->SetComboOptionInfo(strategy);
    QSpinBox* quantity = combo->QuantityBox();
    CVXOrderTicketButton* place = combo->PlaceButton();
    EXPECT_EQ(quantity->text(), QStringLiteral("1"));
    int orderRowTop = -1;
    int quantityWidth = -1;
    for (const QSize& size : {QSize(300, 260), QSize(548, 300), QSize(548, 640), QSize(800, 500)}) {
        SCOPED_TRACE(std::to_string(size.width()) + "x" + std::to_string(size.height()));
        combo->resize(size);
        QApplication::processEvents();
        expectTidy(combo.get());
        EXPECT_EQ(place->geometry().top(), quantity->geometry().top());
        EXPECT_GT(place->geometry().left(), quantity->geometry().right());
        EXPECT_GE(place->width(), 100);
        const int lastLegBottom = combo->SideButtons().back()->geometry().bottom();
        EXPECT_LT(quantity->geometry().top() - lastLegBottom, 3 * quantity->height())
            << "a gap between the legs and the order row";
        if (orderRowTop < 0) {
            orderRowTop = quantity->geometry().top();
            quantityWidth = quantity->width();
        }
        EXPECT_EQ(quantity->geometry().top(), orderRowTop) << "the order row moved with the card's size";
        EXPECT_EQ(quantity->width(), quantityWidth) << "the quantity box grew with the card";
    }
    // At the large size the order button still places the strategy (here refused: cash account).
    QTest::mouseClick(place, Qt::LeftButton);
    EXPECT_FALSE(combo->ResultText().isEmpty());

    // The single-security ticket: Place follows the figures, however tall the card.
    auto ticket = Show<CVXPlaceOrderSecuritiesPanelCard>(QSize(240, 380));
    ticket->SetStockID(kStock);
    const int placeTop = ticket->PlaceButton()->geometry().top();
    EXPECT_GT(placeTop, ticket->QuantityBox()->geometry().bottom());
    EXPECT_LT(placeTop - ticket->QuantityBox()->geometry().bottom(), 4 * ticket->QuantityBox()->height());
    for (const QSize& size : {QSize(240, 380), QSize(240, 692), QSize(420, 900)}) {
        SCOPED_TRACE(std::to_string(size.width()) + "x" + std::to_string(size.height()));
        ticket->resize(size);
        QApplication::processEvents();
        expectTidy(ticket.get());
        EXPECT_EQ(ticket->PlaceButton()->geometry().top(), placeTop);
    }
}
