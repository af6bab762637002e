// The card base class: defaults, content scrolling, width classes, stock id rules, the stock
// data update message, the panel box top widget and restore data.

#include "tests/uiframe/FoundationTestSupport.h"

#include "UIFrame/CardEvents.h"
#include "UIFrame/CardObjBase.h"
#include "UIFrame/VariantMapTreeAccess.h"

#include "Platform/Core/MessageDispatch.h"
#include "Platform/Core/message_body.pb.h"
#include "Platform/StdUI/LightScrollArea.h"

#include "tests/common/TestSupport.h"

#include <QApplication>
#include <QScrollBar>
#include <QSignalSpy>
#include <QWheelEvent>

#include <gtest/gtest.h>

#include <cstdint>
#include <set>

using namespace uiframe_test;

namespace {

using Range = EnVXCardWidthRange;

// A card that overrides nothing.
class CPlainCard : public CVXCardObjBase
{
    Q_OBJECT
public:
    using CVXCardObjBase::CVXCardObjBase;
};

// A card that saves itself as one blob.
class CBlobCard : public CVXCardObjBase
{
    Q_OBJECT
public:
    using CVXCardObjBase::CVXCardObjBase;
    using CVXCardObjBase::GetObjRestoreData;
    using CVXCardObjBase::SetObjRestoreData;
    QByteArray GetObjRestoreData() const override { return blob; }
    void SetObjRestoreData(const QByteArray& data) override { restored.push_back(data); }

    QByteArray blob;
    std::vector<QByteArray> restored;
};

void SendStockDataUpdate(const std::set<unsigned long>* ids, const std::set<unsigned long>* fields)
{
    core::CMessageBody body;
    body.set_p1(static_cast<unsigned long long>(reinterpret_cast<std::uintptr_t>(ids)));
    body.set_p2(static_cast<unsigned long long>(reinterpret_cast<std::uintptr_t>(fields)));
    core::__CMessageDispatch::Instance().Send(CVXCardObjBase::kMsgStockDataUpdate, 0, body, true);
}

std::vector<std::pair<unsigned long, unsigned long>> StockChanges(const QSignalSpy& spy)
{
    std::vector<std::pair<unsigned long, unsigned long>> changes;
    for (const QList<QVariant>& args : spy)
        changes.emplace_back(args.at(0).value<unsigned long>(), args.at(1).value<unsigned long>());
    return changes;
}

} // namespace

class CardObjBaseTest : public FoundationTest
{
};

TEST_F(CardObjBaseTest, CardThatOverridesNothingHasTheBaseDefaults)
{
    CPlainCard card(CardPos_PanelBox);
    EXPECT_EQ(card.GetCardMinSize(), QSize(50, 50));
    EXPECT_EQ(card.GetCardMaxSize(), QSize(5000, 5000));
    EXPECT_EQ(card.GetCardIdealSize(), QSize(-1, -1));
    EXPECT_EQ(card.GetCardStaticTitle(), QStringLiteral("card title"));
    EXPECT_EQ(card.TabTitle(), QStringLiteral("card title"));
    EXPECT_TRUE(card.GetCardObjType().isEmpty());
    EXPECT_TRUE(card.GetExposureParamCardTypeDefault().empty());
    EXPECT_EQ(card.GetCardPanelBoxTopWidgetType(), EnVXPanelBoxTopWidgetType::None);
    EXPECT_EQ(card.GetCardWidthRange(), CardWidthRange_Unclassified);
    EXPECT_TRUE(card.IsContinueDispatchUIEventToAllChild());
    EXPECT_TRUE(card.IsContentEnableScroll());
    EXPECT_FALSE(card.IsScrollViewAutoResize());
    EXPECT_FALSE(card.GetIsInCombination());
    EXPECT_EQ(card.GetCardPos(), CardPos_PanelBox);
    EXPECT_TRUE(card.hasMouseTracking());
    EXPECT_TRUE(card.testAttribute(Qt::WA_StyledBackground));
    EXPECT_EQ(card.GetContentWidget(), nullptr);
    EXPECT_EQ(card.GetOrCreatePanelBoxTopWidget(), nullptr);

    const CVXCardBaseStyle style = card.CardStyle();
    EXPECT_EQ(style.idealSize, QSize(-1, -1));
    EXPECT_EQ(style.minSize, QSize(50, 50));
    EXPECT_EQ(style.maxSize, QSize(5000, 5000));
    EXPECT_EQ(style.title, QStringLiteral("card title"));

    const QList<QString> events = {
        QStringLiteral("CardEventAccountInfoChanged14"), QStringLiteral("CardEventComboOptionChanged23"),
        QStringLiteral("CardEventOptionIndexChanged36"), QStringLiteral("CardEventStockIDChanged9")};
    EXPECT_EQ(card.ListenedEventNames(), events);

    EXPECT_TRUE(IsInPanel(CardPos_PanelBox));
    EXPECT_EQ(static_cast<int>(CardPos_PanelBox), 3);
    for (EnVXCardPos pos :
         {CardPos_None, CardPos_TabFramePage, CardPos_ExpandedRegion, CardPos_InnerJumpPage})
        EXPECT_FALSE(IsInPanel(pos)) << pos;
}

TEST_F(CardObjBaseTest, ScrollingContentIsSizedToTheIdealSizeAndMadeOnce)
{
    QWidget host;
    auto* card = new CTestCard(CardPos_PanelBox, &host);
    card->setGeometry(0, 0, 640, 480);
    card->InitContent();
    card->InitContent();

    auto* area = card->findChild<vx_std_ui::VLightScrollArea*>(QStringLiteral("CVXCardObjBase_scrollview"));
    ASSERT_NE(area, nullptr);
    EXPECT_EQ(area->parentWidget(), card);
    QWidget* inner = area->widget();
    ASSERT_NE(inner, nullptr);
    EXPECT_EQ(inner->objectName(), QStringLiteral("CVXCardObjBase_scrollview_widget"));
    EXPECT_EQ(inner->size(), QSize(300, 200));
    EXPECT_EQ(card->initContentCalls, (std::vector<QWidget*>{inner}));
    EXPECT_EQ(card->GetContentWidget(), inner);

    host.show();
    card->resize(800, 600);
    EXPECT_EQ(area->geometry(), QRect(0, 0, 800, 600));
    // Without auto resize the inner widget keeps its size and the area scrolls.
    EXPECT_EQ(inner->size(), QSize(300, 200));
    EXPECT_EQ(area->verticalScrollBar(), nullptr) << "content that fits needs no scroll bar";

    card->SetContentSize(QSize(900, 700));
    EXPECT_EQ(card->GetContentSize(), QSize(900, 700));
    EXPECT_EQ(inner->size(), QSize(900, 700));
    // Content larger than the card scrolls: the wheel over it moves it up.
    ASSERT_NE(area->verticalScrollBar(), nullptr);
    EXPECT_TRUE(area->verticalScrollBar()->isVisible());
    const QPoint over(100, 100);
    QWheelEvent wheel(QPointF(over), QPointF(area->mapToGlobal(over)), QPoint(), QPoint(0, -120),
                      Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(area, &wheel);
    EXPECT_GT(area->scrollPosition().y(), 0);
    EXPECT_EQ(inner->pos(), -area->scrollPosition());
    QSignalSpy sizeSpy(card, &CVXCardObjBase::CardCurrentSizeChanged);
    card->UpdateBoxSizeByContentSize(QSize(320, 240));
    ASSERT_EQ(sizeSpy.count(), 1);
    EXPECT_EQ(sizeSpy.at(0).at(0).toSize(), QSize(320, 240));
    EXPECT_EQ(inner->size(), QSize(320, 240));
}

TEST_F(CardObjBaseTest, ContentWithoutScrollingIsTheCardItself)
{
    CTestCard card;
    card.SetContentEnableScroll(false);
    card.InitContent();
    EXPECT_EQ(card.initContentCalls, (std::vector<QWidget*>{&card}));
    EXPECT_EQ(card.findChild<vx_std_ui::VLightScrollArea*>(), nullptr);
    EXPECT_EQ(card.GetContentWidget(), &card);
}

TEST_F(CardObjBaseTest, AutoResizeClampsTheInnerWidgetToMinAndMax)
{
    QWidget host;
    auto* card = new CTestCard(CardPos_PanelBox, &host);
    card->maxSize = QSize(400, 300);
    card->minSize = QSize(120, 90);
    card->setGeometry(0, 0, 200, 200);
    card->InitContent();
    card->SetScrollViewAutoResize(true);
    host.show();
    QWidget* inner = card->GetContentWidget();
    ASSERT_NE(inner, nullptr);

    card->resize(800, 600);
    EXPECT_EQ(inner->size(), QSize(400, 300));
    card->resize(100, 60);
    EXPECT_EQ(inner->size(), QSize(120, 90));
    card->resize(250, 150);
    EXPECT_EQ(inner->size(), QSize(250, 150));

    // A negative bound is no bound.
    card->minSize = QSize(-1, 100);
    card->maxSize = QSize(-1, -1);
    card->resize(20, 20);
    EXPECT_EQ(inner->size(), QSize(20, 100));
    card->resize(6000, 7000);
    EXPECT_EQ(inner->size(), QSize(6000, 7000));
}

TEST_F(CardObjBaseTest, WidthClassesNotifyAtEveryBoundary)
{
    QWidget host;
    host.resize(1600, 400);
    auto* card = new CTestCard(CardPos_PanelBox, &host);
    card->setGeometry(0, 0, 150, 100);
    host.show();
    card->widthNotifications.clear();

    // (new width, expected notification or 0 for none, range afterwards)
    const struct
    {
        int width;
        int notified;
        int range;
    } steps[] = {
        {199, 0, 0}, {200, 1, 1}, {239, 0, 1}, {240, 2, 2},  {359, 0, 2},  {360, 3, 3},  {639, 3, 3},
        {640, 4, 4}, {775, 4, 4}, {776, 5, 5}, {1003, 0, 5}, {1004, 6, 6}, {1500, 0, 6}, {1003, 5, 5},
        {700, 4, 4}, {710, 4, 4}, {800, 5, 5}, {900, 0, 5},  {500, 3, 3},  {520, 3, 3},  {300, 2, 2},
        {210, 1, 1}, {100, 0, 1}, {239, 1, 1}, {1200, 6, 6},
    };
    for (const auto& step : steps) {
        card->widthNotifications.clear();
        card->resize(step.width, 100);
        if (step.notified == 0)
            EXPECT_TRUE(card->widthNotifications.empty()) << "width " << step.width;
        else
            EXPECT_EQ(card->widthNotifications, (std::vector<Range>{static_cast<Range>(step.notified)}))
                << "width " << step.width;
        EXPECT_EQ(card->GetCardWidthRange(), static_cast<Range>(step.range)) << "width " << step.width;
    }
}

TEST_F(CardObjBaseTest, SetStockIDEmitsNewAndOldOnlyOnChange)
{
    CTestCard card;
    QSignalSpy spy(&card, &CVXCardObjBase::CardStockIDChanged);
    card.SetStockID(11);
    card.SetStockID(11);
    card.SetStockID(12);
    EXPECT_EQ(StockChanges(spy), (std::vector<std::pair<unsigned long, unsigned long>>{{11, 0}, {12, 11}}));
    EXPECT_EQ(card.GetStockID(), 12u);

    // The stock-id event, while the card follows changes even when hidden.
    const CardEventStockIDChanged changed(13);
    card.DirectHandleUIEvent(&changed);
    EXPECT_EQ(card.GetStockID(), 13u);
    EXPECT_EQ(card.GetPendingStockID(), 0u);
}

TEST_F(CardObjBaseTest, StockChangeWhileHiddenIsAppliedOnceOnNextShow)
{
    QWidget host;
    auto* card = new CTestCard(CardPos_PanelBox, &host);
    card->ChangeStockIDWhenInvisible(false);
    card->SetStockID(5);
    QSignalSpy spy(card, &CVXCardObjBase::CardStockIDChanged);

    const CardEventStockIDChanged first(41);
    const CardEventStockIDChanged second(42);
    card->DirectHandleUIEvent(&first);
    card->DirectHandleUIEvent(&second);
    EXPECT_EQ(spy.count(), 0);
    EXPECT_EQ(card->GetStockID(), 5u);
    EXPECT_EQ(card->GetPendingStockID(), 42u);

    host.show();
    EXPECT_EQ(StockChanges(spy), (std::vector<std::pair<unsigned long, unsigned long>>{{42, 5}}));
    EXPECT_EQ(card->GetPendingStockID(), 0u);

    host.hide();
    host.show();
    EXPECT_EQ(spy.count(), 1);

    // While visible the event applies at once.
    const CardEventStockIDChanged third(43);
    card->DirectHandleUIEvent(&third);
    EXPECT_EQ(card->GetStockID(), 43u);
    EXPECT_EQ(spy.count(), 2);
}

TEST_F(CardObjBaseTest, StockDataUpdateReloadsTheListedStock)
{
    CTestCard card;
    card.SetStockID(900);
    QSignalSpy spy(&card, &CVXCardObjBase::CardStockIDChanged);
    const std::set<unsigned long> fields = {1, 2};

    const std::set<unsigned long> others = {1, 2, 3};
    SendStockDataUpdate(&others, &fields);
    EXPECT_EQ(spy.count(), 0);

    const std::set<unsigned long> listed = {7, 900};
    SendStockDataUpdate(&listed, &fields);
    EXPECT_EQ(StockChanges(spy), (std::vector<std::pair<unsigned long, unsigned long>>{{0, 900}, {900, 0}}));
    EXPECT_EQ(card.GetStockID(), 900u);

    // A body without one of the two sets is ignored.
    spy.clear();
    SendStockDataUpdate(&listed, nullptr);
    SendStockDataUpdate(nullptr, &fields);
    EXPECT_EQ(spy.count(), 0);

    // Ignored while a stock id is pending.
    card.ChangeStockIDWhenInvisible(false);
    const CardEventStockIDChanged changed(901);
    card.DirectHandleUIEvent(&changed);
    SendStockDataUpdate(&listed, &fields);
    EXPECT_EQ(spy.count(), 0);
}

TEST_F(CardObjBaseTest, DestroyedCardLeavesTheStockDataMessage)
{
    const int before = core::__CMessageDispatch::Instance().HandlerCount(CVXCardObjBase::kMsgStockDataUpdate);
    {
        CTestCard card;
        EXPECT_EQ(core::__CMessageDispatch::Instance().HandlerCount(CVXCardObjBase::kMsgStockDataUpdate),
                  before + 1);
    }
    EXPECT_EQ(core::__CMessageDispatch::Instance().HandlerCount(CVXCardObjBase::kMsgStockDataUpdate), before);
    const std::set<unsigned long> listed = {1};
    SendStockDataUpdate(&listed, &listed);
}

TEST_F(CardObjBaseTest, ContextEventsStoreTheirTrees)
{
    CTestCard card;
    CVXVariantMapTree account;
    account.Set<QString>(QStringLiteral("AccountID"), QStringLiteral("A-1"));
    CVXVariantMapTree combo;
    combo.Set<int>(QStringLiteral("Legs"), 2);
    CVXVariantMapTree optionIndex;
    optionIndex.Set<int>(QStringLiteral("Index"), 4);

    card.DirectHandleUIEvent(std::make_unique<CardEventAccountInfoChanged>(account).get());
    card.DirectHandleUIEvent(std::make_unique<CardEventComboOptionChanged>(combo).get());
    card.DirectHandleUIEvent(std::make_unique<CardEventOptionIndexChanged>(optionIndex).get());

    EXPECT_EQ(card.GetAccountInfo().Get<QString>(QStringLiteral("AccountID")), QStringLiteral("A-1"));
    EXPECT_EQ(card.GetComboOptionInfo().Get<int>(QStringLiteral("Legs")), 2);
    EXPECT_EQ(card.GetOptionIndexInfo().Get<int>(QStringLiteral("Index")), 4);
}

TEST_F(CardObjBaseTest, PanelBoxTopWidgetIsMadeOnceAndReportsItsVisibility)
{
    QWidget host;
    auto* card = new CTestCard(CardPos_PanelBox, &host);
    QWidget* top = card->GetOrCreatePanelBoxTopWidget();
    ASSERT_NE(top, nullptr);
    EXPECT_EQ(card->GetOrCreatePanelBoxTopWidget(), top);
    EXPECT_EQ(card->topWidgetCreations, 1);

    top->setParent(&host);
    host.show();
    top->show();
    top->hide();
    top->show();
    EXPECT_EQ(card->topWidgetVisibility, (std::vector<bool>{true, false, true}));

    QSignalSpy spy(card, &CVXCardObjBase::PanelBoxTopWidgetUpdateRequest);
    card->UpdatePanelBoxTopWidget();
    EXPECT_EQ(spy.count(), 1);

    // The card owns the widget even when another widget holds it.
    QPointer<QWidget> guard(top);
    delete card;
    EXPECT_TRUE(guard.isNull());
}

TEST_F(CardObjBaseTest, RestoreDataKeepsTheBlobUnderProtoDataKey)
{
    CBlobCard card(CardPos_PanelBox);
    CVXVariantMapTree empty;
    card.GetObjRestoreData(&empty);
    EXPECT_TRUE(empty.IsEmpty());

    card.blob = QByteArray("\x01proto", 6);
    CVXVariantMapTree saved;
    card.GetObjRestoreData(&saved);
    EXPECT_EQ(saved.Keys(), QList<QString>{QStringLiteral("CVXObjBaseProtoData")});
    EXPECT_EQ(saved.Get<QByteArray>(QStringLiteral("CVXObjBaseProtoData")), card.blob);

    card.SetObjRestoreData(saved);
    EXPECT_EQ(card.restored, (std::vector<QByteArray>{card.blob}));

    // No blob, or a blob of another type: the byte-array form is not called.
    card.SetObjRestoreData(CVXVariantMapTree());
    CVXVariantMapTree wrongType;
    wrongType.Set<QString>(QStringLiteral("CVXObjBaseProtoData"), QStringLiteral("text"));
    card.SetObjRestoreData(wrongType);
    EXPECT_EQ(card.restored.size(), 1u);

    // A card without a blob writes nothing.
    CPlainCard plain(CardPos_PanelBox);
    CVXVariantMapTree plainSaved;
    plain.GetObjRestoreData(&plainSaved);
    EXPECT_TRUE(plainSaved.IsEmpty());
}

#include "CardObjBaseTest.moc"
