// The book cards as a user meets them, each on its own in a holder that records the events it
// raises: the order book's levels and depth switch, the broker queue against the feed's book,
// the option chain's selection, expiry tabs and incoming option index. Real feed, real mouse.

#include "tests/workspace/BookCardsTestSupport.h"

#include "apps/Workspace/QuoteCards/BrokersCard.h"
#include "apps/Workspace/QuoteCards/OptionChainsPanelCard.h"
#include "apps/Workspace/QuoteCards/OrderBookCard.h"

#include "tests/common/TestSupport.h"

#include <QTest>

#include <algorithm>

using namespace bookcards_test;
using vx_ws::CVXBrokersCard;
using vx_ws::CVXOptionChainsPanelCard;
using vx_ws::CVXOrderBookCard;
using Side = CVXOrderBookCard::EnBookSide;

class BookCardsCardTest : public BookCardsFixture
{
};

TEST_F(BookCardsCardTest, ClickingALevelAsksForAnOrderAtItsPriceOnTheOppositeSide)
{
    CVXOrderBookCard* card = Show<CVXOrderBookCard>(QSize(240, 300));
    card->SetStockID(1005);
    Steps(5);
    EXPECT_FALSE(card->IsSideBySide());
    const vx_md::OrderBook book = feed.GetOrderBook(1005);
    ASSERT_GE(book.asks.size(), 5u);
    ASSERT_GE(book.bids.size(), 5u);

    // Asks above bids, the best of each next to the spread.
    const QRect ask2 = card->LevelRect(Side::Ask, 2);
    const QRect ask1 = card->LevelRect(Side::Ask, 1);
    const QRect bid1 = card->LevelRect(Side::Bid, 1);
    ASSERT_FALSE(ask2.isEmpty());
    EXPECT_LT(ask2.top(), ask1.top());
    EXPECT_LT(ask1.top(), bid1.top());
    EXPECT_TRUE(card->LevelRect(Side::Bid, 6).isEmpty());

    QTest::mouseClick(card, Qt::LeftButton, Qt::NoModifier, ask2.center());
    ASSERT_EQ(holder->orders.size(), 1u);
    EXPECT_EQ(holder->orders[0].u64StockID, 1005u);
    EXPECT_EQ(holder->orders[0].enSide, EnVXOrderSide::Buy);
    EXPECT_DOUBLE_EQ(holder->orders[0].dPrice, book.asks[1].price);

    QTest::mouseClick(card, Qt::LeftButton, Qt::NoModifier, card->LevelRect(Side::Bid, 4).center());
    ASSERT_EQ(holder->orders.size(), 2u);
    EXPECT_EQ(holder->orders[1].enSide, EnVXOrderSide::Sell);
    EXPECT_DOUBLE_EQ(holder->orders[1].dPrice, book.bids[3].price);

    // The header is no level.
    QTest::mouseClick(card, Qt::LeftButton, Qt::NoModifier, QPoint(20, 8));
    EXPECT_EQ(holder->orders.size(), 2u);
}

TEST_F(BookCardsCardTest, DepthSwitchShowsTenLevelsSideBySideWhenWideAndIsSaved)
{
    CVXOrderBookCard* card = Show<CVXOrderBookCard>(QSize(480, 300));
    Steps(3);
    EXPECT_TRUE(card->IsSideBySide());
    EXPECT_TRUE(card->LevelRect(Side::Ask, 6).isEmpty());
    const QImage five = card->grab().toImage();

    QTest::mouseClick(card, Qt::LeftButton, Qt::NoModifier, card->DepthSwitchRect().center());
    EXPECT_EQ(card->Depth(), 10);
    const QRect bid10 = card->LevelRect(Side::Bid, 10);
    const QRect ask10 = card->LevelRect(Side::Ask, 10);
    ASSERT_FALSE(bid10.isEmpty());
    ASSERT_FALSE(ask10.isEmpty());
    // Side by side: bids on the left, asks on the right, the same row for the same level.
    EXPECT_LT(bid10.right(), ask10.left());
    EXPECT_EQ(bid10.top(), ask10.top());
    EXPECT_NE(card->grab().toImage(), five);

    const vx_md::OrderBook book = feed.GetOrderBook(vx_ws::kDefaultStockID);
    QTest::mouseClick(card, Qt::LeftButton, Qt::NoModifier, ask10.center());
    ASSERT_EQ(holder->orders.size(), 1u);
    EXPECT_DOUBLE_EQ(holder->orders[0].dPrice, book.asks[9].price);

    CVXVariantMapTree saved;
    card->GetObjRestoreData(&saved);
    CVXOrderBookCard restored(CardPos_PanelBox);
    EXPECT_EQ(restored.Depth(), 5);
    restored.SetObjRestoreData(saved);
    EXPECT_EQ(restored.Depth(), 10);

    // Narrow and short: as many levels as fit, the best ones; none overlaps the header.
    card->resize(170, 130);
    const QRect best = card->LevelRect(Side::Ask, 1);
    ASSERT_FALSE(best.isEmpty());
    EXPECT_TRUE(card->LevelRect(Side::Ask, 10).isEmpty());
    EXPECT_GT(best.top(), card->DepthSwitchRect().bottom());
    EXPECT_LE(card->LevelRect(Side::Bid, 1).bottom(), card->height());
}

TEST_F(BookCardsCardTest, BrokerQueueShowsTheFrontOfEachSidesQueueInOrder)
{
    CVXBrokersCard* card = Show<CVXBrokersCard>(QSize(300, 200));
    card->SetStockID(1007);
    Steps(8);
    const vx_md::OrderBook book = feed.GetOrderBook(1007);
    ASSERT_FALSE(book.bids.empty());
    const int capacity = card->CellCapacity();
    EXPECT_GT(capacity, 6);

    for (const bool bidSide : {true, false}) {
        SCOPED_TRACE(bidSide ? "bids" : "asks");
        // The feed's queue flattened level by level.
        std::vector<std::pair<int, unsigned int>> queue;
        const auto& levels = bidSide ? book.bids : book.asks;
        for (std::size_t i = 0; i < levels.size(); ++i)
            for (unsigned int broker : levels[i].brokers)
                queue.emplace_back(static_cast<int>(i) + 1, broker);

        const std::vector<vx_ws::BrokerQueueCell> cells = card->VisibleCells(bidSide);
        std::vector<std::pair<int, unsigned int>> shown;
        int markerLevel = 0;
        for (const vx_ws::BrokerQueueCell& cell : cells) {
            if (cell.isMarker) {
                EXPECT_GT(cell.level, markerLevel) << "markers in level order";
                markerLevel = cell.level;
                continue;
            }
            EXPECT_EQ(cell.level, markerLevel) << "a broker under its level's marker";
            shown.emplace_back(cell.level, cell.broker);
        }
        ASSERT_FALSE(shown.empty());
        ASSERT_LE(shown.size(), queue.size());
        EXPECT_TRUE(std::equal(shown.begin(), shown.end(), queue.begin())) << "the front of the queue";
        EXPECT_LE(static_cast<int>(cells.size()), capacity);
        if (shown.size() < queue.size()) {
            EXPECT_GE(static_cast<int>(cells.size()), capacity - 1) << "cut only when full";
        }
        // Every cell lies inside its half of the card.
        const QRect last = card->CellRect(bidSide, static_cast<int>(cells.size()) - 1);
        EXPECT_TRUE(card->rect().contains(last));
        EXPECT_EQ(last.center().x() < card->width() / 2, bidSide);
    }

    // A larger card holds more of the queue.
    card->resize(600, 400);
    EXPECT_GT(card->CellCapacity(), capacity);
}

TEST_F(BookCardsCardTest, ClickingAnOptionRaisesItsIndexAndASingleLegCombo)
{
    CVXOptionChainsPanelCard* card = Show<CVXOptionChainsPanelCard>(QSize(560, 360));
    card->SetStockID(1000);
    Steps(3);
    ASSERT_EQ(card->Chain().expiries.size(), 2u);
    EXPECT_EQ(card->CurrentExpiryIndex(), 0);

    // The third strike's call of the later expiry, found from the feed's own securities.
    std::vector<vx_md::SecurityInfo> laterCalls;
    int laterDays = 0;
    for (unsigned long id : feed.OptionChain(1000))
        laterDays = std::max(laterDays, feed.GetSecurity(id).expiryDays);
    for (unsigned long id : feed.OptionChain(1000)) {
        const vx_md::SecurityInfo info = feed.GetSecurity(id);
        if (info.expiryDays == laterDays && info.right == vx_md::EnOptionRight::Call)
            laterCalls.push_back(info);
    }
    std::sort(laterCalls.begin(), laterCalls.end(),
              [](const vx_md::SecurityInfo& a, const vx_md::SecurityInfo& b) { return a.strike < b.strike; });
    ASSERT_GE(laterCalls.size(), 3u);
    const unsigned long target = laterCalls[2].id;

    EXPECT_TRUE(card->OptionRect(target).isEmpty()) << "not on the nearer expiry's tab";
    QTest::mouseClick(card, Qt::LeftButton, Qt::NoModifier, card->ExpiryTabRect(1).center());
    EXPECT_EQ(card->CurrentExpiryIndex(), 1);
    const QRect optionRect = card->OptionRect(target);
    ASSERT_FALSE(optionRect.isEmpty());
    EXPECT_LT(optionRect.right(), card->width() / 2) << "calls on the left";

    const QImage before = card->grab().toImage();
    QTest::mouseClick(card, Qt::LeftButton, Qt::NoModifier, optionRect.center());
    EXPECT_EQ(card->SelectedOptionID(), target);
    EXPECT_NE(card->grab().toImage(), before);

    ASSERT_EQ(holder->optionIndexes.size(), 1u);
    const CVXVariantMapTree& index = holder->optionIndexes[0];
    EXPECT_EQ(index.Get<qulonglong>(QString::fromLatin1(vx_ws::keys::kUnderlyingID)), 1000u);
    EXPECT_EQ(index.Get<qulonglong>(QString::fromLatin1(vx_ws::keys::kOptionID)), target);
    ASSERT_EQ(holder->combos.size(), 1u);
    const CVXVariantMapTree& combo = holder->combos[0];
    EXPECT_EQ(combo.Get<qulonglong>(QString::fromLatin1(vx_ws::keys::kUnderlyingID)), 1000u);
    const auto legs = combo.Get<QVector<CVXVariantMapTree>>(QString::fromLatin1(vx_ws::keys::kLegs));
    ASSERT_EQ(legs.size(), 1);
    EXPECT_EQ(legs[0].Get<qulonglong>(QString::fromLatin1(vx_ws::keys::kOptionID)), target);
    EXPECT_EQ(legs[0].Get<int>(QString::fromLatin1(vx_ws::keys::kSide)), 1);
    EXPECT_EQ(legs[0].Get<int>(QString::fromLatin1(vx_ws::keys::kRatio)), 1);

    // The put half of the same row is the put of that strike.
    const int putClickX = card->width() - 20;
    QTest::mouseClick(card, Qt::LeftButton, Qt::NoModifier, QPoint(putClickX, optionRect.center().y()));
    const vx_md::SecurityInfo put = feed.GetSecurity(card->SelectedOptionID());
    EXPECT_EQ(put.right, vx_md::EnOptionRight::Put);
    EXPECT_DOUBLE_EQ(put.strike, laterCalls[2].strike);
    EXPECT_EQ(put.expiryDays, laterDays);
    EXPECT_EQ(holder->combos.size(), 2u);

    // Saved: the expiry and the selection.
    CVXVariantMapTree saved;
    card->GetObjRestoreData(&saved);
    auto* restored = new CVXOptionChainsPanelCard(CardPos_PanelBox, holder);
    restored->SetStockID(1000);
    restored->SetObjRestoreData(saved);
    EXPECT_EQ(restored->CurrentExpiryIndex(), 1);
    EXPECT_EQ(restored->SelectedOptionID(), card->SelectedOptionID());
}

TEST_F(BookCardsCardTest, AnIncomingOptionIndexSelectsTheOptionItsExpiryAndItsUnderlying)
{
    CVXOptionChainsPanelCard* card = Show<CVXOptionChainsPanelCard>(QSize(560, 360));
    card->SetStockID(1000);
    // An option of another underlying, on the later expiry.
    unsigned long option = 0;
    for (unsigned long id : feed.OptionChain(500))
        if (feed.GetSecurity(id).expiryDays > feed.GetSecurity(feed.OptionChain(500).front()).expiryDays)
            option = id;
    ASSERT_NE(option, 0u);

    // Raised by another card of the same holder, as the combo order panel would.
    auto* other = new QWidget(holder);
    CVXVariantMapTree info;
    info.Set<qulonglong>(QString::fromLatin1(vx_ws::keys::kUnderlyingID), 500);
    info.Set<qulonglong>(QString::fromLatin1(vx_ws::keys::kOptionID), option);
    CardEventOptionIndexChanged event(info);
    core::ui_event::DispatchCardEvent(other, &event);

    EXPECT_EQ(card->Chain().underlyingId, 500u);
    EXPECT_EQ(card->SelectedOptionID(), option);
    EXPECT_EQ(card->CurrentExpiryIndex(), 1);
    EXPECT_FALSE(card->OptionRect(option).isEmpty());
    // Taking the selection in raises nothing back.
    EXPECT_TRUE(holder->combos.empty());
    // The chain's options keep moving while the card shows them.
    EXPECT_GE(feed.SubscriptionCount(option), 1);

    // Showing an option shows its underlying's chain with that option picked.
    const unsigned long option1001 = feed.OptionChain(1001).front();
    card->SetStockID(option1001);
    EXPECT_EQ(card->Chain().underlyingId, 1001u);
    EXPECT_EQ(card->SelectedOptionID(), option1001);
    EXPECT_EQ(feed.SubscriptionCount(option), 0);
}

TEST_F(BookCardsCardTest, UnderlyingWithoutOptionsShowsAnEmptyState)
{
    CVXOptionChainsPanelCard* card = Show<CVXOptionChainsPanelCard>(QSize(560, 360));
    card->SetStockID(1000);
    const QImage chain = card->grab().toImage();
    card->SetStockID(1020);
    EXPECT_TRUE(card->Chain().IsEmpty());
    EXPECT_EQ(card->CurrentExpiryIndex(), -1);
    EXPECT_TRUE(card->ExpiryTabRect(0).isEmpty());
    EXPECT_EQ(card->SelectedOptionID(), 0u);
    // Clicks land nowhere.
    QTest::mouseClick(card, Qt::LeftButton, Qt::NoModifier, QPoint(100, 120));
    EXPECT_TRUE(holder->combos.empty());
    EXPECT_NE(card->grab().toImage(), chain);
}
