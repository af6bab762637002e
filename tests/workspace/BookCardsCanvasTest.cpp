// The book cards on a real canvas: registration, the watch list driving the other boxes of its
// linkage group by click and by keyboard, sorting from the header against the feed's quotes,
// the list edited from the context menu and carried through a box record, and each card
// following the theme.

#include "tests/workspace/BookCardsTestSupport.h"

#include "apps/Workspace/Cards/RegisterCards.h"
#include "apps/Workspace/QuoteCards/BrokersCard.h"
#include "apps/Workspace/QuoteCards/OptionChainsPanelCard.h"
#include "apps/Workspace/QuoteCards/OrderBookCard.h"
#include "apps/Workspace/QuoteCards/WatchlistCard.h"

#include "UIFrame/Canvas/PanelScrollView.h"
#include "UIFrame/CardFactoryMgr.h"
#include "UIFrame/PanelBox/PanelAtomizationBox.h"

#include "Platform/StdUI/Menu.h"

#include "tests/common/TestSupport.h"

#include <QAction>
#include <QTest>

#include <algorithm>
#include <memory>

using namespace bookcards_test;
using namespace workspace_test;
using vx_ws::CVXWatchlistCard;
using vx_ws::CVXWatchlistModel;

namespace {

const QStringList kBookCardTypes = {QStringLiteral("OrderBook"), QStringLiteral("Brokers"),
                                    QStringLiteral("Watchlist"), QStringLiteral("OptionChainsPanel")};

class BookCardsCanvasTest : public BookCardsFixture
{
protected:
    void SetUp() override
    {
        BookCardsFixture::SetUp();
        vx_ws::RegisterBookCards();
        board = std::make_unique<CTestCanvas>(QSize(1100, 700));
        canvas = board->View();
    }

    void TearDown() override
    {
        board.reset();
        UnregisterCards(kBookCardTypes);
        BookCardsFixture::TearDown();
    }

    CVXPanelAtomizationBox* AddBox(const char* type, const QString& group = QString())
    {
        return board->AddBox(type, group);
    }

    template <typename Card> static Card* CardOf(CVXPanelAtomizationBox* box)
    {
        return CTestCanvas::CardOf<Card>(box);
    }

    static std::vector<unsigned long> RowIDs(const CVXWatchlistCard* card)
    {
        std::vector<unsigned long> ids;
        for (const auto& row : card->Model().Rows())
            ids.push_back(row.id);
        return ids;
    }

    // The ids in order of the feed's change ratio, largest first; ties keep the given order.
    std::vector<unsigned long> ByFeedChange(std::vector<unsigned long> ids) const
    {
        const auto ratio = [this](unsigned long id) {
            const vx_md::Quote q = feed.GetQuote(id);
            return (q.last - q.prevClose) / q.prevClose;
        };
        std::stable_sort(ids.begin(), ids.end(),
                         [&](unsigned long a, unsigned long b) { return ratio(a) > ratio(b); });
        return ids;
    }

    std::unique_ptr<CTestCanvas> board;
    CVXPanelScrollView* canvas = nullptr;
};

} // namespace

TEST_F(BookCardsCanvasTest, RegistrationOffersTheFourCardsWithConsistentStyles)
{
    for (const QString& type : kBookCardTypes) {
        SCOPED_TRACE(type.toStdString());
        ASSERT_TRUE(CVXCardFactoryMgr::Instance().HasFactory(type));
        CVXCardBaseStyle style;
        ASSERT_TRUE(CVXCardFactoryMgr::Instance().GetCardStyle(type, &style));
        EXPECT_FALSE(style.title.isEmpty());
        EXPECT_LE(style.minSize.width(), style.idealSize.width());
        EXPECT_LE(style.minSize.height(), style.idealSize.height());
        EXPECT_LE(style.idealSize.width(), style.maxSize.width());
        EXPECT_LE(style.idealSize.height(), style.maxSize.height());

        // What the registry says before a card exists is what the card says of itself.
        std::unique_ptr<CVXCardObjBase> card(CVXCardFactoryMgr::Instance().CreateCard(
            type, CardPos_PanelBox, EnVXTabFrameKey(), CVXVariantMapTree(), nullptr));
        ASSERT_NE(card, nullptr);
        EXPECT_EQ(card->GetCardObjType(), type);
        EXPECT_EQ(card->GetCardIdealSize(), style.idealSize);
        EXPECT_EQ(card->GetCardMinSize(), style.minSize);
        EXPECT_EQ(card->GetCardStaticTitle(), style.title);
    }
    // A second registration keeps the first factories.
    vx_ws::RegisterBookCards();
    EXPECT_EQ(CVXCardFactoryMgr::Instance().RegisteredCardTypes().count(QStringLiteral("Watchlist")), 1);
}

TEST_F(BookCardsCanvasTest, PickingARowMovesTheOtherBoxesOfTheGroupByClickAndByKeyboard)
{
    CVXPanelAtomizationBox* listBox = AddBox("Watchlist", QStringLiteral("7"));
    CVXPanelAtomizationBox* bookBox = AddBox("OrderBook", QStringLiteral("7"));
    CVXPanelAtomizationBox* loneBox = AddBox("OrderBook", QStringLiteral("9"));
    auto* list = CardOf<CVXWatchlistCard>(listBox);
    auto* book = CardOf<vx_ws::CVXOrderBookCard>(bookBox);
    ASSERT_NE(list, nullptr);
    ASSERT_NE(book, nullptr);
    Steps(3);

    const unsigned long picked = list->Model().Rows()[6].id;
    ASSERT_NE(picked, book->ShownStockID());
    QTest::mouseClick(list, Qt::LeftButton, Qt::NoModifier, list->RowRect(6).center());
    EXPECT_EQ(bookBox->GetStockID(), picked);
    EXPECT_EQ(book->ShownStockID(), picked);
    EXPECT_EQ(list->ShownStockID(), picked);
    EXPECT_NE(loneBox->GetStockID(), picked) << "another group";
    // The picked row carries the selection mark at its left edge.
    const QImage shot = list->grab().toImage();
    EXPECT_EQ(QColor(shot.pixel(0, list->RowRect(6).center().y())),
              CVXWatchlistCard::ThemeColor("ct_selected"));
    EXPECT_NE(QColor(shot.pixel(0, list->RowRect(5).center().y())),
              CVXWatchlistCard::ThemeColor("ct_selected"));

    // The keyboard walks the rows from the picked one.
    EXPECT_TRUE(list->hasFocus());
    QTest::keyClick(list, Qt::Key_Down);
    EXPECT_EQ(book->ShownStockID(), list->Model().Rows()[7].id);
    QTest::keyClick(list, Qt::Key_Up);
    QTest::keyClick(list, Qt::Key_Up);
    EXPECT_EQ(bookBox->GetStockID(), list->Model().Rows()[5].id);

    // Far down the list the card scrolls to keep the picked row in sight.
    const int rows = static_cast<int>(list->Model().Rows().size());
    listBox->resize(listBox->width(), 200);
    QApplication::processEvents();
    for (int i = 5; i < rows; ++i)
        QTest::keyClick(list, Qt::Key_Down);
    EXPECT_EQ(book->ShownStockID(), list->Model().Rows()[rows - 1].id);
    EXPECT_GT(list->FirstVisibleRow(), 0);
    EXPECT_FALSE(list->RowRect(rows - 1).isEmpty());
    EXPECT_TRUE(list->RowRect(0).isEmpty());
}

TEST_F(BookCardsCanvasTest, SortingFromTheHeaderFollowsTheFeedsChanges)
{
    auto* list = CardOf<CVXWatchlistCard>(AddBox("Watchlist"));
    ASSERT_NE(list, nullptr);
    Steps(20);
    const std::vector<unsigned long> listOrder = CVXWatchlistModel::DefaultIDs();
    EXPECT_EQ(RowIDs(list), listOrder);
    // Every listed security moves: the card keeps them subscribed.
    for (unsigned long id : listOrder)
        EXPECT_GE(feed.SubscriptionCount(id), 1) << id;

    const QPoint header = list->HeaderRect(CVXWatchlistModel::EnColumn::ChangePercent).center();
    QTest::mouseClick(list, Qt::LeftButton, Qt::NoModifier, header);
    EXPECT_EQ(RowIDs(list), ByFeedChange(listOrder));
    Steps(15); // the order follows the moving quotes
    EXPECT_EQ(RowIDs(list), ByFeedChange(listOrder));

    QTest::mouseClick(list, Qt::LeftButton, Qt::NoModifier, header);
    const std::vector<unsigned long> descending = ByFeedChange(listOrder);
    EXPECT_EQ(RowIDs(list), std::vector<unsigned long>(descending.rbegin(), descending.rend()));
    QTest::mouseClick(list, Qt::LeftButton, Qt::NoModifier, header);
    EXPECT_EQ(RowIDs(list), listOrder);
}

TEST_F(BookCardsCanvasTest, TheListEditedFromTheContextMenuTravelsInTheBoxRecord)
{
    CVXPanelAtomizationBox* box = AddBox("Watchlist");
    auto* list = CardOf<CVXWatchlistCard>(box);
    ASSERT_NE(list, nullptr);
    box->UpdateBoxStockID(1025);
    ASSERT_EQ(list->ShownStockID(), 1025u);
    const unsigned long firstRow = list->Model().Rows()[0].id;

    std::unique_ptr<vx_std_ui::VMenu> onRow(list->BuildContextMenu(list->RowRect(0).center()));
    QAction* remove = onRow->findAction(CVXWatchlistCard::kActionRemoveRow);
    ASSERT_NE(remove, nullptr);
    remove->trigger();
    EXPECT_FALSE(list->Model().Contains(firstRow));

    std::unique_ptr<vx_std_ui::VMenu> onHeader(list->BuildContextMenu(QPoint(10, 5)));
    EXPECT_EQ(onHeader->findAction(CVXWatchlistCard::kActionRemoveRow), nullptr)
        << "no row under the pointer";
    QAction* add = onHeader->findAction(CVXWatchlistCard::kActionAddShown);
    ASSERT_NE(add, nullptr);
    ASSERT_TRUE(add->isEnabled());
    add->trigger();
    EXPECT_TRUE(list->Model().Contains(1025));
    EXPECT_GE(feed.SubscriptionCount(1025), 1);
    // Listed now: adding it again is offered no more.
    std::unique_ptr<vx_std_ui::VMenu> again(list->BuildContextMenu(QPoint(10, 5)));
    EXPECT_FALSE(again->findAction(CVXWatchlistCard::kActionAddShown)->isEnabled());

    QTest::mouseClick(list, Qt::LeftButton, Qt::NoModifier,
                      list->HeaderRect(CVXWatchlistModel::EnColumn::Volume).center());
    CVXVariantMapTree record;
    box->GetObjRestoreData(&record);

    auto* copy = dynamic_cast<CVXPanelAtomizationBox*>(canvas->CreateBoxFromRecord(record, 0));
    auto* copied = CardOf<CVXWatchlistCard>(copy);
    ASSERT_NE(copied, nullptr);
    EXPECT_EQ(copied->Model().IDs(), list->Model().IDs());
    EXPECT_EQ(copied->Model().SortColumn(), CVXWatchlistModel::EnColumn::Volume);
    EXPECT_EQ(copied->Model().SortOrder(), CVXWatchlistModel::EnSortOrder::Descending);
    EXPECT_EQ(RowIDs(copied), RowIDs(list));
    EXPECT_EQ(feed.SubscriptionCount(1025), 4) << "two cards each listing and showing it";
}

TEST_F(BookCardsCanvasTest, EachCardPaintsItsThemesBackground)
{
    for (const QString& type : kBookCardTypes) {
        SCOPED_TRACE(type.toStdString());
        delete holder;
        holder = new CEventHolder;
        CVXCardBaseStyle style;
        CVXCardFactoryMgr::Instance().GetCardStyle(type, &style);
        holder->resize(style.idealSize);
        CVXCardObjBase* card = CVXCardFactoryMgr::Instance().CreateCard(
            type, CardPos_PanelBox, EnVXTabFrameKey(), CVXVariantMapTree(), holder);
        ASSERT_NE(card, nullptr);
        card->setGeometry(holder->rect());
        holder->show();
        Steps(6);

        std::vector<QImage> shots;
        for (const auto theme : {vx_ui_res::Theme::Light, vx_ui_res::Theme::Dark}) {
            vx_ui_res::Provider::Instance().SetTheme(theme);
            const QImage shot = card->grab().toImage();
            const QColor background =
                vx_ui_res::Provider::Instance().GetColor(QStringLiteral("ct_bg_primary"));
            // The bottom-right corner is background in every card.
            EXPECT_EQ(QColor(shot.pixel(shot.width() - 2, shot.height() - 2)), background);
            KeepSnapshot(shot, QStringLiteral("a2-%1-%2").arg(type, vx_ui_res::ThemeName(theme)));
            shots.push_back(shot);
        }
        EXPECT_NE(shots[0], shots[1]);
        vx_ui_res::Provider::Instance().SetTheme(vx_ui_res::Theme::Light);
    }
}
