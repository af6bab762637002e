// The canvas without mouse gestures: placement of new boxes, the extent that follows them, the
// saved record, linkage through the real store and bus, box kinds, trade requests passed up by
// boxes, the undo signals and the context menu. Expected values are worked out in the comments
// from the canvas's rules (4 px margin, boxes of 302 x 233 for the 300 x 200 test card).

#include "tests/uiframe/CanvasTestSupport.h"

#include "UIFrame/Canvas/PanelCanvasMenu.h"
#include "UIFrame/Canvas/PanelTradeRequests.h"

#include "Platform/Core/MessageDispatch.h"
#include "Platform/Core/message_body.pb.h"
#include "Platform/StdUI/Menu.h"

#include "tests/common/TestSupport.h"

#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>

using namespace canvas_test;

namespace {

class PanelScrollViewTest : public CanvasFixture
{
};

// ---------------------------------------------------------------------------------------------
// Placement and extent

TEST_F(PanelScrollViewTest, NewBoxesArePlacedWithoutOverlapFromTheTopLeft)
{
    // The page is the viewport: 800 x 600 with no scroll bars while everything fits.
    ASSERT_EQ(canvas->viewport()->size(), QSize(800, 600));
    EXPECT_EQ(canvas->CalcItemsRect(), QRect(QPoint(0, 0), QPoint(-1, -1)))
        << "an empty canvas has the empty extent";

    CVXPanelAtomizationBox* a = AddLinkBox();
    ASSERT_NE(a, nullptr);
    // 300 x 200 card + border 2 x 33; first box at the margin; the content is as large as the page.
    EXPECT_EQ(a->geometry(), QRect(4, 4, 302, 233));
    EXPECT_EQ(canvas->GetContentWidget()->size(), QSize(800, 600));
    checkSanity(canvas);

    // A covers x 4..305: the next box goes right of it with a 4 px gap.
    CVXPanelAtomizationBox* b = AddLinkBox();
    EXPECT_EQ(b->geometry(), QRect(310, 4, 302, 233));
    // Right of B would end at 616 + 301 = 917 > 800; below A fits: y = 236 + 5.
    CVXPanelAtomizationBox* c = AddLinkBox();
    EXPECT_EQ(c->geometry(), QRect(4, 241, 302, 233));
    checkSanity(canvas);

    // Right of C: (310, 241) fits (ends at 611, 473). The four keep their 4 px gaps.
    CVXPanelAtomizationBox* d4 = AddLinkBox();
    EXPECT_EQ(d4->geometry(), QRect(310, 241, 302, 233));
    const QVector<CVXPanelBaseBox*> four = canvas->GetPanelBoxes();
    for (int i = 0; i < four.size(); ++i) {
        for (int j = i + 1; j < four.size(); ++j)
            EXPECT_FALSE(four[i]->geometry().adjusted(-4, -4, 4, 4).intersects(four[j]->geometry()))
                << i << j;
    }

    // Nothing else fits the first page (a third column would end at 917, a third row at 710): the
    // cascade point is 50 px right and below the box with the greatest left edge, the greatest
    // top among those at x = 310: D at (310, 241) gives (360, 291); then that box gives (410, 341).
    EXPECT_EQ(AddLinkBox()->pos(), QPoint(360, 291));
    EXPECT_EQ(AddLinkBox()->pos(), QPoint(410, 341));
    checkSanity(canvas);
}

TEST_F(PanelScrollViewTest, ExtentShiftsBoxesInsteadOfGoingNegative)
{
    CVXPanelAtomizationBox* a = AddLinkBox();
    CVXPanelAtomizationBox* b = AddLinkBox();
    ASSERT_EQ(b->pos(), QPoint(310, 4));

    // A box moved to x = -26: the items start at L = -30 < 0, so every box moves right by 30 and
    // the horizontal value rises by 30 (from 0): on screen nothing moves.
    a->move(-26, 4);
    canvas->UpdateScrollInfo();
    EXPECT_EQ(a->pos(), QPoint(4, 4));
    EXPECT_EQ(b->pos(), QPoint(340, 4));
    EXPECT_EQ(canvas->horizontalScrollBar()->value(), 30);
    checkSanity(canvas);

    // Scrolled down past the items' top: boxes at y = 304 (T = 300) with v = 350. Vertically
    // 0 < T <= v: the boxes move up by T and v becomes T = 300. Horizontally the items start at
    // L = 0 (A at x = 4): nothing changes there, h stays 30.
    canvas->SetBanDealScrollbarValueChangedEvt(true);
    canvas->GetContentWidget()->resize(1400, 1600);
    canvas->verticalScrollBar()->setMaximum(1000);
    canvas->verticalScrollBar()->setValue(350);
    a->move(4, 304);
    b->move(340, 304);
    canvas->SetBanDealScrollbarValueChangedEvt(false);
    canvas->UpdateScrollInfo();
    EXPECT_EQ(a->pos(), QPoint(4, 4));
    EXPECT_EQ(b->pos(), QPoint(340, 4));
    EXPECT_EQ(canvas->verticalScrollBar()->value(), 300);
    EXPECT_EQ(canvas->horizontalScrollBar()->value(), 30);
    checkSanity(canvas);
}

TEST_F(PanelScrollViewTest, HorizontalAxisKeepsItsOwnRuleWhenScrolledPastTheItems)
{
    // The same situation on the horizontal axis: items start at L = 196 (box at x = 200) with
    // h = 250. The horizontal rule shifts by -L and sets h - L = 54, unlike the vertical one.
    CVXPanelAtomizationBox* a = AddLinkBox();
    canvas->SetBanDealScrollbarValueChangedEvt(true);
    canvas->GetContentWidget()->resize(2000, 600);
    canvas->horizontalScrollBar()->setMaximum(1200);
    canvas->horizontalScrollBar()->setValue(250);
    a->move(200, 4);
    canvas->SetBanDealScrollbarValueChangedEvt(false);
    canvas->UpdateScrollInfo();
    EXPECT_EQ(a->pos(), QPoint(4, 4));
    EXPECT_EQ(canvas->horizontalScrollBar()->value(), 54);
}

// ---------------------------------------------------------------------------------------------
// Save and restore

TEST_F(PanelScrollViewTest, RecordRoundTripsThroughAFileAndEmptyBoxesDisappear)
{
    CVXPanelAtomizationBox* a = AddLinkBox();
    CVXPanelAtomizationBox* b = AddLinkBox();
    CardOf(a)->note = QStringLiteral("alpha");
    CardOf(b)->note = QStringLiteral("beta");
    canvas->UpdateUserSelectedGroupID(QStringLiteral("3"));
    canvas->SetObjKey(77);

    CVXVariantMapTree saved;
    canvas->GetObjRestoreData(&saved);
    EXPECT_EQ(saved.Get<int>(QStringLiteral("BoxCount")), 2);
    EXPECT_EQ(saved.Get<qulonglong>(QStringLiteral("LayoutKey")), 77u);
    EXPECT_EQ(saved.Get<QStringList>(QStringLiteral("UserGroupID")), QStringList{QStringLiteral("3")});

    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    const QString path = dir.filePath(QStringLiteral("canvas.bin"));
    {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(saved.SerializeAsQByteArray());
    }
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    CVXVariantMapTree loaded;
    ASSERT_TRUE(loaded.ParseFromQByteArray(file.readAll()));

    CVXPanelScrollView* other = NewCanvas();
    other->SetObjRestoreData(loaded);
    EXPECT_TRUE(vxtest::HasLog("Load cards. cards_count : 2, time : "));
    ASSERT_EQ(other->GetPanelBoxes().size(), 2);
    auto* ra = qobject_cast<CVXPanelAtomizationBox*>(other->GetPanelBoxes()[0]);
    ASSERT_NE(ra, nullptr);
    EXPECT_EQ(ra->geometry(), a->geometry());
    ASSERT_NE(CardOf(ra), nullptr);
    EXPECT_EQ(CardOf(ra)->note, QStringLiteral("alpha"));
    EXPECT_EQ(other->GetObjKey(), 77u);
    checkSanity(other);

    // Re-saving an unchanged canvas gives the same bytes.
    CVXVariantMapTree again;
    other->GetObjRestoreData(&again);
    EXPECT_EQ(again.SerializeAsQByteArray(), saved.SerializeAsQByteArray());

    // A box record without cards is dropped on restore; the others stay.
    QVector<CVXVariantMapTree> records =
        saved.Get<QVector<CVXVariantMapTree>>(QStringLiteral("PanelBoxsData"));
    CVXVariantMapTree empty = records[1];
    empty.Remove(QStringLiteral("Cards"));
    empty.Set<QVector<CVXVariantMapTree>>(QStringLiteral("Cards"), {});
    records.append(empty);
    CVXVariantMapTree withEmpty = saved;
    withEmpty.Remove(QStringLiteral("PanelBoxsData"));
    withEmpty.Set<QVector<CVXVariantMapTree>>(QStringLiteral("PanelBoxsData"), records);
    other->SetObjRestoreData(withEmpty);
    FlushDeletes();
    EXPECT_EQ(other->GetPanelBoxes().size(), 2);
    EXPECT_EQ(other->GetContentWidget()->findChildren<CVXPanelAtomizationBox*>().size(), 2);
    checkSanity(other);
}

// A layout opens as saved: its history starts at the saved id, later gestures make it unsaved and
// undoing them makes it saved again. Ids issued afterwards never fall back onto the saved one.
TEST_F(PanelScrollViewTest, RestoredCanvasStartsSavedAtItsSavedCommandId)
{
    CVXPanelAtomizationBox* a = AddLinkBox();
    a->OnGroupColorChanged(QStringLiteral("ck_indigo450"));
    a->OnGroupColorChanged(QStringLiteral("ck_blue620"));
    // Adding the box and the two colour changes.
    const long long savedId = canvas->GetCurrentCommandId();
    ASSERT_EQ(savedId, 3);
    canvas->SetPreviousSavedCommandId(savedId);
    CVXVariantMapTree saved;
    canvas->GetObjRestoreData(&saved);

    CVXPanelScrollView* other = NewCanvas();
    other->SetObjRestoreData(saved);
    EXPECT_EQ(other->GetCurrentCommandId(), savedId);
    EXPECT_EQ(other->GetPreviousSavedCommandId(), savedId);
    EXPECT_FALSE(other->HasUnsavedChanges());
    EXPECT_FALSE(other->CanUndo());

    auto* restored = qobject_cast<CVXPanelAtomizationBox*>(other->GetPanelBoxes().value(0));
    ASSERT_NE(restored, nullptr);
    restored->OnGroupColorChanged(QStringLiteral("ck_cyan500"));
    EXPECT_EQ(other->GetCurrentCommandId(), savedId + 1);
    EXPECT_TRUE(other->HasUnsavedChanges());
    other->Undo();
    EXPECT_FALSE(other->HasUnsavedChanges());
    EXPECT_EQ(restored->GetGroupColor(), QStringLiteral("ck_blue620"));
    checkSanity(other);
}

// ---------------------------------------------------------------------------------------------
// Box kinds

TEST_F(PanelScrollViewTest, CombinationRecordsNeedARegisteredKind)
{
    CVXVariantMapTree record;
    record.Set<VXPanelBoxType>(QStringLiteral("BoxType"), VXPanelBoxType_CombinationBox);
    EXPECT_EQ(canvas->CreateBoxFromRecord(record, 0), nullptr);
    EXPECT_TRUE(vxtest::HasLog("no creator for box type 1"));
    EXPECT_TRUE(canvas->GetPanelBoxes().isEmpty());

    // A registered kind makes the box, which the canvas inserts before restoring it.
    std::vector<CVXVariantMapTree> restored;
    CVXPanelBoxKindRegistry::Instance().Register(
        VXPanelBoxType_CombinationBox,
        [](unsigned long long id) -> CVXPanelBaseBox* { return new CVXPanelAtomizationBox(false, id); },
        [&restored](CVXPanelBaseBox* box, const CVXVariantMapTree& r) {
            restored.push_back(r);
            auto* single = qobject_cast<CVXPanelAtomizationBox*>(box);
            return single && single->Append(QString::fromLatin1(CLinkCard::kCardType), {}, -1, {});
        });
    EXPECT_FALSE(CVXPanelBoxKindRegistry::Instance().Register(
        VXPanelBoxType_AtomizationBox, [](unsigned long long) { return nullptr; },
        [](CVXPanelBaseBox*, const CVXVariantMapTree&) { return true; }));
    CVXPanelBaseBox* box = canvas->CreateBoxFromRecord(record, 4242);
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(box->GetBoxId(), 4242u);
    ASSERT_EQ(restored.size(), 1u);
    EXPECT_EQ(box->parentWidget(), canvas->GetContentWidget());
    checkSanity(canvas);
}

// ---------------------------------------------------------------------------------------------
// Linkage

TEST_F(PanelScrollViewTest, StockChangeInOneCardReachesTheGroupThroughTheBus)
{
    CVXPanelAtomizationBox* a = AddLinkBox();
    CVXPanelAtomizationBox* b = AddLinkBox();
    CVXPanelAtomizationBox* loner = AddLinkBox();
    a->SetGroupID(QStringLiteral("1"));
    b->SetGroupID(QStringLiteral("1"));
    ASSERT_EQ(canvas->GetAllGroupIDs(), QStringList{QStringLiteral("1")});

    // Another canvas (another page, another scope) with a box in a group of the same id.
    CVXPanelScrollView* otherPage = NewCanvas();
    CVXPanelAtomizationBox* elsewhere = AddLinkBox(otherPage);
    elsewhere->SetGroupID(QStringLiteral("1"));
    ASSERT_NE(otherPage->GetCurrentTabColorString(), canvas->GetCurrentTabColorString());

    int messages = 0;
    QString scopeSeen;
    int tag = 0;
    core::__CMessageDispatch::Instance().Bind(
        CVXPanelScrollView::kMsgPanelLinkageDataChanged,
        [&](unsigned int, unsigned long long kind, const core::CMessageBody& body) {
            ++messages;
            EXPECT_EQ(kind, 1u);
            scopeSeen = QString::fromStdString(body.exdata());
            EXPECT_EQ(body.exparam(), "1");
        },
        &tag);

    CardOf(a)->UserPicksStock(600000);

    EXPECT_EQ(a->GetStockID(), 600000u);
    EXPECT_EQ(b->GetStockID(), 600000u);
    ASSERT_FALSE(CardOf(b)->stocks.empty());
    EXPECT_EQ(CardOf(b)->stocks.back(), 600000u);
    EXPECT_EQ(loner->GetStockID(), 0u);
    EXPECT_TRUE(CardOf(loner)->stocks.empty());
    EXPECT_EQ(elsewhere->GetStockID(), 0u);
    EXPECT_EQ(messages, 1) << "one change, one message";
    EXPECT_EQ(scopeSeen, canvas->GetCurrentTabColorString());
    EXPECT_EQ(CVXPanelLinkageData::GetInstance().GetStockID(canvas->GetCurrentTabColorString(),
                                                            QStringLiteral("1")),
              600000u);
    EXPECT_TRUE(vxtest::HasLog("[CVXPanelScrollView] PanelLinkageDataChanged, tabColor: " +
                               canvas->GetCurrentTabColorString().toStdString() + ", panelGroupID: 1"));

    // Pages that share a tab colour share the scope: the other page's group follows now.
    canvas->SetCurrentTabColorString(QStringLiteral("#ff8800"));
    otherPage->SetCurrentTabColorString(QStringLiteral("#ff8800"));
    CardOf(b)->UserPicksStock(700);
    EXPECT_EQ(a->GetStockID(), 700u);
    EXPECT_EQ(elsewhere->GetStockID(), 700u);
    EXPECT_EQ(messages, 2);
    core::__CMessageDispatch::Instance().UnBind(CVXPanelScrollView::kMsgPanelLinkageDataChanged, &tag);
}

TEST_F(PanelScrollViewTest, AccountChangeSpreadsOnceAndReturnsNoEcho)
{
    CVXPanelAtomizationBox* a = AddLinkBox();
    CVXPanelAtomizationBox* b = AddLinkBox();
    a->SetGroupID(QStringLiteral("4"));
    b->SetGroupID(QStringLiteral("4"));
    int messages = 0;
    int tag = 0;
    core::__CMessageDispatch::Instance().Bind(
        CVXPanelScrollView::kMsgPanelLinkageDataChanged,
        [&](unsigned int, unsigned long long kind, const core::CMessageBody&) {
            ++messages;
            EXPECT_EQ(kind, 2u);
        },
        &tag);

    // Every box of the group takes the account and reports it back to the canvas: only the first
    // report may reach the bus, or the group would keep re-announcing it.
    CVXVariantMapTree account;
    account.Set<QString>(QStringLiteral("AccountId"), QStringLiteral("ACC-1"));
    CardEventAccountInfoChanged event(account);
    core::ui_event::DispatchCardEvent(CardOf(a), &event);

    EXPECT_EQ(messages, 1);
    ASSERT_FALSE(CardOf(b)->accounts.empty());
    EXPECT_EQ(CardOf(b)->accounts.back().Get<QString>(QStringLiteral("AccountId")), QStringLiteral("ACC-1"));
    EXPECT_EQ(CVXPanelLinkageData::GetInstance()
                  .GetAccountInfo(canvas->GetCurrentTabColorString(), QStringLiteral("4"))
                  .Get<QString>(QStringLiteral("AccountId")),
              QStringLiteral("ACC-1"));
    core::__CMessageDispatch::Instance().UnBind(CVXPanelScrollView::kMsgPanelLinkageDataChanged, &tag);
}

TEST_F(PanelScrollViewTest, GroupIdsAreTheSmallestUnusedNumber)
{
    EXPECT_EQ(canvas->GenerateGroupID(), QStringLiteral("1"));
    CVXPanelAtomizationBox* a = AddLinkBox();
    CVXPanelAtomizationBox* b = AddLinkBox();
    a->SetGroupID(QStringLiteral("1"));
    b->SetGroupID(QStringLiteral("3"));
    canvas->UpdateUserSelectedGroupID(QStringLiteral("10"));
    EXPECT_TRUE(canvas->ExistGroupID(QStringLiteral("3")));
    EXPECT_FALSE(canvas->ExistGroupID(QStringLiteral("2")));
    EXPECT_EQ(canvas->GenerateGroupID(), QStringLiteral("2"));
    // Numeric order, not text order ("10" after "3").
    EXPECT_EQ(canvas->GetAllGroupIDs(),
              (QStringList{QStringLiteral("1"), QStringLiteral("3"), QStringLiteral("10")}));
    EXPECT_EQ(canvas->GetLastUsedGroupID(), QStringLiteral("10"));

    // A box added now joins the last used group.
    CVXPanelAtomizationBox* c = AddLinkBox();
    EXPECT_EQ(c->GetGroupID(), QStringLiteral("10"));
}

// ---------------------------------------------------------------------------------------------
// Trade requests passed up by a box

TEST_F(PanelScrollViewTest, TradeOrdersRequestOpensOrReusesAnOrdersCard)
{
    CVXPanelAtomizationBox* sender = AddLinkBox();
    sender->SetGroupID(QStringLiteral("2"));

    CardEventOpenTradeOrdersInner event;
    event.pSender = sender;
    event.strGroupID = QStringLiteral("2");
    event.request.u64StockID = 1234;
    core::ui_event::DispatchCardEvent(sender, &event, true);

    // No orders card anywhere: a new box of that type, in the sender's group.
    ASSERT_EQ(canvas->GetPanelBoxes().size(), 2);
    auto* opened = qobject_cast<CVXPanelAtomizationBox*>(canvas->GetPanelBoxes()[1]);
    ASSERT_NE(opened, nullptr);
    EXPECT_EQ(opened->GetTabName(), QStringLiteral("SecuritiesTradeOrders"));
    EXPECT_EQ(opened->GetGroupID(), QStringLiteral("2"));
    checkSanity(canvas);

    // The second request finds that card in the group instead of opening another box.
    event.request.u64StockID = 5678;
    core::ui_event::DispatchCardEvent(sender, &event, true);
    EXPECT_EQ(canvas->GetPanelBoxes().size(), 2);
    auto* card = qobject_cast<CPlainCard*>(opened->GetCardByIndex(0));
    ASSERT_NE(card, nullptr);
    ASSERT_FALSE(card->properties.empty());
    EXPECT_EQ(card->properties.back().Get<qulonglong>(QStringLiteral("StockID")), 5678u);
}

TEST(PanelTradeRequestTest, EachRequestNamesItsCardAndCarriesItsFields)
{
    VXPlaceOrderRequest order;
    order.u64StockID = 700;
    order.enSide = EnVXOrderSide::Sell;
    order.llQuantity = 300;
    order.accountInfo.Set<QString>(QStringLiteral("AccountId"), QStringLiteral("A"));
    panel_trade_request::Target t = panel_trade_request::ForPlaceOrder(order);
    EXPECT_EQ(t.cardType, QStringLiteral("TradePlaceOrderSecuritiesPanel"));
    EXPECT_EQ(t.property.Get<qulonglong>(QStringLiteral("StockID")), 700u);
    EXPECT_EQ(t.property.Get<int>(QStringLiteral("OrderSide")), 2);
    EXPECT_EQ(t.property.Get<qlonglong>(QStringLiteral("Quantity")), 300);
    EXPECT_FALSE(t.property.Contains(QStringLiteral("Price"))) << "0 leaves the price to the panel";
    EXPECT_EQ(t.account.Get<QString>(QStringLiteral("AccountId")), QStringLiteral("A"));

    VXTradeOrdersRequest orders;
    t = panel_trade_request::ForTradeOrders(orders);
    EXPECT_EQ(t.cardType, QStringLiteral("SecuritiesTradeOrders"));
    EXPECT_TRUE(t.property.IsEmpty()) << "no security: all orders";

    VXComboOptionOrderRequest combo;
    combo.comboOptionInfo.Set<QString>(QStringLiteral("Leg"), QStringLiteral("C1"));
    t = panel_trade_request::ForComboOptionOrder(combo);
    EXPECT_EQ(t.cardType, QStringLiteral("TradePlaceOrderSecuritiesPanel"));
    EXPECT_EQ(t.property.Child(QStringLiteral("ComboOptionInfo")).Get<QString>(QStringLiteral("Leg")),
              QString())
        << "stored as a value, not a child";
    EXPECT_EQ(t.property.Get<CVXVariantMapTree>(QStringLiteral("ComboOptionInfo"))
                  .Get<QString>(QStringLiteral("Leg")),
              QStringLiteral("C1"));

    VXCommonJumpRequest jump;
    jump.strTargetCardType = QStringLiteral("KLine");
    jump.jumpData.Set<int>(QStringLiteral("Period"), 5);
    t = panel_trade_request::ForCommonJump(jump);
    EXPECT_EQ(t.cardType, QStringLiteral("KLine"));
    EXPECT_EQ(t.property.Get<int>(QStringLiteral("Period")), 5);
}

TEST_F(PanelScrollViewTest, RequestWithoutSenderIsRefused)
{
    vxtest::ExpectAssertion("pEvent && pEvent->pSender");
    CVXPanelAtomizationBox* box = AddLinkBox();
    CardEventCommonJumpInner event;
    event.request.strTargetCardType = QStringLiteral("SecuritiesTradeOrders");
    core::ui_event::DispatchCardEvent(box, &event, true);
    EXPECT_EQ(vxtest::CountAssertions("pEvent && pEvent->pSender"), 1);
    EXPECT_EQ(canvas->GetPanelBoxes().size(), 1);
}

// ---------------------------------------------------------------------------------------------
// Undo signals and the context menu

TEST_F(PanelScrollViewTest, UndoSignalsFireOncePerChange)
{
    QSignalSpy undoSpy(canvas, &CVXPanelScrollView::canUndoChanged);
    QSignalSpy redoSpy(canvas, &CVXPanelScrollView::canRedoChanged);

    AddLinkBox();
    ASSERT_EQ(undoSpy.count(), 1);
    EXPECT_TRUE(undoSpy.takeFirst().at(0).toBool());
    AddLinkBox();
    EXPECT_EQ(undoSpy.count(), 0) << "still undoable: no signal";

    canvas->Undo();
    EXPECT_EQ(undoSpy.count(), 0);
    ASSERT_EQ(redoSpy.count(), 1);
    EXPECT_TRUE(redoSpy.takeFirst().at(0).toBool());
    FlushDeletes();
    EXPECT_EQ(canvas->GetPanelBoxes().size(), 1);

    canvas->Undo();
    ASSERT_EQ(undoSpy.count(), 1);
    EXPECT_FALSE(undoSpy.takeFirst().at(0).toBool());
    EXPECT_EQ(redoSpy.count(), 0);

    canvas->Redo();
    canvas->Redo();
    EXPECT_EQ(undoSpy.count(), 1);
    ASSERT_EQ(redoSpy.count(), 1);
    EXPECT_FALSE(redoSpy.takeFirst().at(0).toBool());
    FlushDeletes();
    EXPECT_EQ(canvas->GetPanelBoxes().size(), 2);
    checkSanity(canvas);

    // A macro of two deletions is one change: canUndo stays true, and redo is not flipped twice.
    undoSpy.clear();
    CVXPanelBoxManager::instance()->SetSelectedPanelBoxs(canvas->GetPanelBoxes());
    canvas->DeleteSelectedBoxes();
    FlushDeletes();
    EXPECT_EQ(canvas->GetPanelBoxes().size(), 0);
    EXPECT_EQ(undoSpy.count(), 0);
    canvas->Undo();
    FlushDeletes();
    EXPECT_EQ(canvas->GetPanelBoxes().size(), 2);
    ASSERT_EQ(redoSpy.count(), 1);
    checkSanity(canvas);
}

TEST_F(PanelScrollViewTest, ContextMenuAddsCardsAndTracksUndoState)
{
    std::unique_ptr<vx_std_ui::VMenu> menu(canvas->BuildContextMenu(canvas->mapToGlobal(QPoint(100, 120))));
    // Only the registered add-component type (the orders list) appears; paste/undo/redo disabled.
    QAction* orders = menu->findAction(QStringLiteral("SecuritiesTradeOrders"));
    ASSERT_NE(orders, nullptr);
    EXPECT_EQ(menu->findAction(QStringLiteral("StockHeader")), nullptr);
    QAction* undo = menu->findAction(panel_canvas_menu::kTextUndo, false);
    ASSERT_NE(undo, nullptr);
    EXPECT_FALSE(undo->isEnabled());
    EXPECT_FALSE(menu->findAction(panel_canvas_menu::kTextPaste, false)->isEnabled());

    orders->trigger();
    ASSERT_EQ(canvas->GetPanelBoxes().size(), 1);
    // Opened where the user clicked, in content coordinates.
    EXPECT_EQ(canvas->GetPanelBoxes()[0]->pos(), QPoint(100, 120));

    std::unique_ptr<vx_std_ui::VMenu> second(canvas->BuildContextMenu(canvas->mapToGlobal(QPoint(10, 10))));
    QAction* undo2 = second->findAction(panel_canvas_menu::kTextUndo, false);
    ASSERT_TRUE(undo2->isEnabled());
    undo2->trigger();
    FlushDeletes();
    EXPECT_TRUE(canvas->GetPanelBoxes().isEmpty());
}

} // namespace
