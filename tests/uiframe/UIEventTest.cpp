// Card and UI events: names and ids, handler maps, and the dispatcher on real widget trees.

#include "tests/uiframe/FoundationTestSupport.h"

#include "UIFrame/CardEvents.h"
#include "UIFrame/ModuleInterfaces.h"
#include "UIFrame/TabFrame/TabFrameBase.h"
#include "UIFrame/UIEvent.h"

#include "Platform/Core/PluginCenter.h"

#include "tests/common/TestSupport.h"

#include <QPointer>

#include <gtest/gtest.h>

#include <memory>
#include <set>

using namespace uiframe_test;

namespace {

constexpr const char* kReleasedMessage = "存在对象在事件处理中被释放的情况";

struct NameCase
{
    std::unique_ptr<IVUIEventTypeBase> event;
    int id;
    const char* name;
};

std::vector<NameCase> AllEvents()
{
    std::vector<NameCase> cases;
    auto add = [&cases](IVUIEventTypeBase* event, int id, const char* name) {
        cases.push_back({std::unique_ptr<IVUIEventTypeBase>(event), id, name});
    };
    add(new CardEventStockIDChanged, 9, "CardEventStockIDChanged9");
    add(new CardEventAccountInfoChanged, 14, "CardEventAccountInfoChanged14");
    add(new UIEventRestoreFootPrint, 20, "UIEventRestoreFootPrint20");
    add(new CardEventComboOptionChanged, 23, "CardEventComboOptionChanged23");
    add(new UIEventOpenDrillDownPageMainFrame, 24, "UIEventOpenDrillDownPageMainFrame24");
    add(new CardEventOptionIndexChanged, 36, "CardEventOptionIndexChanged36");
    add(new CardEventInnerPageSwitch, 40, "CardEventInnerPageSwitch40");
    add(new CardEventInnerPageBack, 46, "CardEventInnerPageBack46");
    add(new CardEventClicked, 50, "CardEventClicked50");
    add(new CardEventDoubleClicked, 55, "CardEventDoubleClicked55");
    add(new CardEventSearchClicked, 61, "CardEventSearchClicked61");
    add(new CardEventUnderlyingTypeChanged, 98, "CardEventUnderlyingTypeChanged98");
    add(new CardEventPostionsOpenPlaceOrderInner, 112, "CardEventPostionsOpenPlaceOrderInner112");
    add(new CardEventOpenTradeOrdersInner, 120, "CardEventOpenTradeOrdersInner120");
    add(new CardEventPostionsOpenPlaceOrderComboOptionInner, 128,
        "CardEventPostionsOpenPlaceOrderComboOptionInner128");
    add(new CardEventPlaceOrderComboOptionOpenOptionChainInner, 136,
        "CardEventPlaceOrderComboOptionOpenOptionChainInner136");
    add(new CardEventCommonJumpInner, 143, "CardEventCommonJumpInner143");
    add(new CardEventPostionsOpenPlaceOrder, 158, "CardEventPostionsOpenPlaceOrder158");
    add(new CardEventOpenTradeOrders, 165, "CardEventOpenTradeOrders165");
    add(new CardEventPostionsOpenPlaceOrderComboOption, 172, "CardEventPostionsOpenPlaceOrderComboOption172");
    add(new CardEventCommonJump, 179, "CardEventCommonJump179");
    add(new CardEventPlaceOrderComboOptionOpenOptionChain, 191,
        "CardEventPlaceOrderComboOptionOpenOptionChain191");
    add(new CardEventExpandedRegionTabChangedEvent, 204, "CardEventExpandedRegionTabChangedEvent204");
    return cases;
}

// A tab frame whose pages are plain children; the current page and "consumed" are set by tests.
class CTestTabFrame : public CVXTabFrameBase
{
    Q_OBJECT
public:
    explicit CTestTabFrame(QWidget* parent = nullptr) : CVXTabFrameBase(parent)
    {
        setObjectName(QStringLiteral("frame"));
        RegisterUIEventHandler<CardEventClicked>(this, &CTestTabFrame::OnCardEventClicked);
    }
    QWidget* CurrentPage() const override { return page; }
    bool IsEventConsumed(const IVUIEventTypeBase*) const override { return consumed; }
    void OnCardEventClicked(const CardEventClicked*)
    {
        if (log)
            log->push_back("frame");
    }

    QWidget* page = nullptr;
    bool consumed = false;
    std::vector<std::string>* log = nullptr;
};

class CRecordingQuoteModule : public IQuoteModuleUtil
{
public:
    void OnCardEvent(QWidget* source, const IVUIEventTypeBase* event) override
    {
        log->push_back("quote:" + source->objectName().toStdString() + ":" +
                       event->eventName().toStdString());
    }
    std::vector<std::string>* log = nullptr;
};

} // namespace

TEST(UIEventNames, EveryEventNamesItselfWithClassNameAndId)
{
    const std::vector<NameCase> cases = AllEvents();
    ASSERT_EQ(cases.size(), 23u);
    std::set<QString> seen;
    for (const NameCase& c : cases) {
        EXPECT_EQ(c.event->eventName().toStdString(), c.name);
        EXPECT_TRUE(QString::fromLatin1(c.name).endsWith(QString::number(c.id))) << c.name;
        seen.insert(c.event->eventName());
        std::unique_ptr<IVUIEventTypeBase> copy(c.event->clone());
        // Built once per class: every instance hands out the same string object.
        EXPECT_EQ(&copy->eventName(), &c.event->eventName()) << c.name;
    }
    EXPECT_EQ(seen.size(), cases.size());
    EXPECT_EQ(CardEventStockIDChanged::kEventId, 9);
    EXPECT_EQ(CardEventExpandedRegionTabChangedEvent::kEventId, 204);
    EXPECT_EQ(CardEventCommonJumpInner::EventName(), QStringLiteral("CardEventCommonJumpInner143"));
}

TEST(UIEventNames, CloneCopiesThePayload)
{
    CardEventCommonJump jump;
    jump.request.strTargetCardType = QStringLiteral("KLine");
    jump.request.jumpData.Set<unsigned long long>(QStringLiteral("StockID"), 77ULL);
    std::unique_ptr<IVUIEventTypeBase> copy(jump.clone());
    const auto* typed = dynamic_cast<const CardEventCommonJump*>(copy.get());
    ASSERT_NE(typed, nullptr);
    EXPECT_EQ(typed->request.strTargetCardType, QStringLiteral("KLine"));
    EXPECT_EQ(typed->request.jumpData.Get<unsigned long long>(QStringLiteral("StockID"), 0), 77ULL);

    QWidget sender;
    CardEventPostionsOpenPlaceOrderInner inner;
    inner.pSender = &sender;
    inner.request.u64StockID = 5;
    inner.request.enSide = EnVXOrderSide::Sell;
    std::unique_ptr<IVUIEventTypeBase> innerCopy(inner.clone());
    const auto* typedInner = dynamic_cast<const CardEventPostionsOpenPlaceOrderInner*>(innerCopy.get());
    ASSERT_NE(typedInner, nullptr);
    EXPECT_EQ(typedInner->pSender.data(), &sender);
    EXPECT_EQ(typedInner->request.enSide, EnVXOrderSide::Sell);
}

TEST(UIEventHandler, RegistersByEventNameAndCallsTheMember)
{
    CClickListener listener;
    const CardEventClicked clicked;
    const CardEventDoubleClicked doubleClicked;
    EXPECT_TRUE(listener.HasListenedEvent(&clicked));
    EXPECT_FALSE(listener.HasListenedEvent(&doubleClicked));
    EXPECT_FALSE(listener.HasListenedEvent(nullptr));

    listener.DirectHandleUIEvent(&doubleClicked);
    listener.DirectHandleUIEvent(nullptr);
    EXPECT_EQ(listener.clicks, 0);
    listener.DirectHandleUIEvent(&clicked);
    EXPECT_EQ(listener.clicks, 1);
    EXPECT_TRUE(listener.IsContinueDispatchUIEventToAllChild());
}

TEST(UIEventHandler, EmptyTargetIsSkippedAndNamesAreOrdered)
{
    VUIEventHandler handler;
    handler.RegisterUIEventHandler(CardEventDoubleClicked::EventName(), VUIEventHandler::HandlerFn());
    int calls = 0;
    handler.RegisterUIEventHandler(CardEventClicked::EventName(),
                                   [&calls](const IVUIEventTypeBase*) { ++calls; });
    handler.RegisterUIEventHandler(CardEventAccountInfoChanged::EventName(),
                                   [&calls](const IVUIEventTypeBase*) { calls += 10; });

    const CardEventDoubleClicked doubleClicked;
    EXPECT_TRUE(handler.HasListenedEvent(&doubleClicked));
    handler.DirectHandleUIEvent(&doubleClicked); // no callable target: nothing, no crash
    EXPECT_EQ(calls, 0);

    EXPECT_EQ(handler.ListenedEventNames(), (QList<QString>{QStringLiteral("CardEventAccountInfoChanged14"),
                                                            QStringLiteral("CardEventClicked50"),
                                                            QStringLiteral("CardEventDoubleClicked55")}));

    // Registering again under a name replaces the handler.
    handler.RegisterUIEventHandler(CardEventClicked::EventName(),
                                   [&calls](const IVUIEventTypeBase*) { calls += 100; });
    const CardEventClicked clicked;
    handler.DirectHandleUIEvent(&clicked);
    EXPECT_EQ(calls, 100);
    handler.UnRegisterUIEventHandler(CardEventClicked::EventName());
    EXPECT_FALSE(handler.HasListenedEvent(&clicked));
}

class UIEventDispatchTest : public FoundationTest
{
};

TEST_F(UIEventDispatchTest, BoxAndSiblingCardsReceiveButNotTheSourceUnlessIncluded)
{
    QWidget host;
    auto* box = new CTestBox(&host);
    auto* source = new CTestCard(CardPos_PanelBox);
    auto* sibling = new CTestCard(CardPos_PanelBox);
    ASSERT_TRUE(box->AppendCardWithIndex(source, -1, false));
    ASSERT_TRUE(box->AppendCardWithIndex(sibling, -1, false));
    auto* outside = new CClickListener(&host, "outside");
    host.show();

    const CardEventStockIDChanged changed(700);
    core::ui_event::DispatchCardEvent(source, &changed);
    EXPECT_EQ(box->stockIDs, (std::vector<unsigned long long>{700}));
    EXPECT_EQ(sibling->GetStockID(), 700u);
    EXPECT_EQ(source->GetStockID(), 0u);
    EXPECT_TRUE(vxtest::HasLog("[Dispatch] Widget = "));
    EXPECT_TRUE(vxtest::HasLog("event = CardEventStockIDChanged9"));

    const CardEventClicked clicked;
    core::ui_event::DispatchCardEvent(source, &clicked);
    EXPECT_EQ(box->clicks, 1);
    EXPECT_EQ(sibling->clicks, 1);
    EXPECT_EQ(source->clicks, 0);
    EXPECT_EQ(outside->clicks, 0); // the walk stopped at the box

    core::ui_event::DispatchCardEvent(source, &clicked, true);
    EXPECT_EQ(box->clicks, 2);
    EXPECT_EQ(sibling->clicks, 2);
    EXPECT_EQ(source->clicks, 1);
    EXPECT_EQ(outside->clicks, 0);
}

TEST_F(UIEventDispatchTest, WalkStopsAtTheNearestBox)
{
    QWidget host;
    auto* outer = new CTestBox(&host, false);
    auto* inner = new CTestBox(outer, false);
    auto* source = new CClickListener(inner, "source");
    auto* besideInner = new CClickListener(outer, "besideInner");

    const CardEventClicked clicked;
    core::ui_event::DispatchCardEvent(source, &clicked);
    EXPECT_EQ(inner->clicks, 1);
    EXPECT_EQ(outer->clicks, 0);
    EXPECT_EQ(besideInner->clicks, 0);
    EXPECT_EQ(source->clicks, 0);
}

TEST_F(UIEventDispatchTest, NullSourceOrEventIsAnAssertionAndDispatchesNothing)
{
    vxtest::ExpectAssertion("pSource");
    vxtest::ExpectAssertion("pEvent");
    QWidget host;
    auto* box = new CTestBox(&host, false);
    auto* source = new CClickListener(box, "source");
    auto* sibling = new CClickListener(box, "sibling");
    const CardEventClicked clicked;

    core::ui_event::DispatchCardEvent(nullptr, &clicked);
    EXPECT_EQ(vxtest::CountAssertions("pSource"), 1);
    core::ui_event::DispatchCardEvent(source, nullptr);
    EXPECT_EQ(vxtest::CountAssertions("pEvent"), 1);
    core::ui_event::DispatchCardEvent(nullptr, nullptr);
    EXPECT_EQ(vxtest::CountAssertions("pSource"), 2);
    EXPECT_EQ(vxtest::CountAssertions("pEvent"), 2);

    EXPECT_EQ(box->clicks, 0);
    EXPECT_EQ(sibling->clicks, 0);
    EXPECT_FALSE(vxtest::HasLog("[Dispatch]"));
}

TEST_F(UIEventDispatchTest, SiblingDeletedByAHandlerIsSkippedAndReportedOnce)
{
    vxtest::ExpectAssertion(kReleasedMessage);
    QWidget host;
    auto* box = new CTestBox(&host, false);
    std::vector<std::string> log;
    auto* source = new CClickListener(box, "source");
    auto* deleter = new CClickListener(box, "deleter");
    QPointer<CClickListener> victim = new CClickListener(box, "victim");
    auto* after = new CClickListener(box, "after");
    for (CClickListener* l : {source, deleter, victim.data(), after})
        l->log = &log;
    deleter->onClicked = [&victim](const CardEventClicked*) { delete victim.data(); };

    const CardEventClicked clicked;
    core::ui_event::DispatchCardEvent(source, &clicked);

    EXPECT_TRUE(victim.isNull());
    EXPECT_EQ(log, (std::vector<std::string>{"deleter", "after"}));
    EXPECT_EQ(box->clicks, 1);
    ASSERT_EQ(vxtest::CountAssertions(kReleasedMessage), 1);
    for (const auto& info : vxtest::Assertions()) {
        if (info.condition == kReleasedMessage) {
            EXPECT_EQ(info.level, core::assertion::kLevelWarning);
        }
    }
}

TEST_F(UIEventDispatchTest, HandlerThatDoesNotContinueKeepsItsChildrenOut)
{
    QWidget host;
    auto* box = new CTestBox(&host);
    auto* source = new CTestCard;
    auto* closed = new CTestCard;
    closed->SetContinueDispatchUiEventToAllChild(false);
    auto* closedChild = new CClickListener(closed, "closedChild");
    auto* open = new CTestCard;
    auto* openChild = new CClickListener(open, "openChild");
    box->AppendCardWithIndex(source, -1, false);
    box->AppendCardWithIndex(closed, -1, false);
    box->AppendCardWithIndex(open, -1, false);

    const CardEventClicked clicked;
    core::ui_event::DispatchCardEvent(source, &clicked);
    EXPECT_EQ(closed->clicks, 1);
    EXPECT_EQ(closedChild->clicks, 0);
    EXPECT_EQ(open->clicks, 1);
    EXPECT_EQ(openChild->clicks, 1);
}

TEST_F(UIEventDispatchTest, QuoteModuleSeesTheEventFirst)
{
    std::vector<std::string> log;
    core::IVXPluginCenter::Instance().Register<IQuoteModuleUtil>([&log]() {
        auto module = std::make_shared<CRecordingQuoteModule>();
        module->log = &log;
        return module;
    });
    QWidget host;
    auto* box = new CTestBox(&host, false);
    box->setObjectName(QStringLiteral("box"));
    auto* source = new CClickListener(box, "source");
    auto* sibling = new CClickListener(box, "sibling");
    sibling->log = &log;
    box->onClicked = [&log](const CardEventClicked*) { log.push_back("box"); };

    const CardEventClicked clicked;
    core::ui_event::DispatchCardEvent(source, &clicked);
    core::IVXPluginCenter::Instance().UnRegister(IQuoteModuleUtil::InterfaceName());

    EXPECT_EQ(log, (std::vector<std::string>{"quote:source:CardEventClicked50", "box", "sibling"}));

    // Without the module the dispatch goes on as before.
    log.clear();
    core::ui_event::DispatchCardEvent(source, &clicked);
    EXPECT_EQ(log, (std::vector<std::string>{"box", "sibling"}));
}

TEST_F(UIEventDispatchTest, WithoutAHolderTheSourceSubtreeReceives)
{
    CClickListener source(nullptr, "source");
    auto* child = new CClickListener(&source, "child");
    auto* grandChild = new CClickListener(child, "grandChild");
    const CardEventClicked clicked;

    core::ui_event::DispatchCardEvent(&source, &clicked);
    EXPECT_EQ(source.clicks, 0);
    EXPECT_EQ(child->clicks, 1);
    EXPECT_EQ(grandChild->clicks, 1);

    core::ui_event::DispatchCardEvent(&source, &clicked, true);
    EXPECT_EQ(source.clicks, 1);
    EXPECT_EQ(child->clicks, 2);
}

TEST_F(UIEventDispatchTest, OrdinaryTabFrameDispatchesOverItselfThenTheCurrentPage)
{
    std::vector<std::string> log;
    QWidget host;
    auto* frame = new CTestTabFrame(&host);
    frame->SetTabFrameKey(TabFrameKey_Market);
    frame->log = &log;
    auto* current = new CClickListener(frame, "current");
    auto* source = new CClickListener(current, "source");
    auto* other = new CClickListener(frame, "other");
    for (CClickListener* l : {current, source, other})
        l->log = &log;
    frame->page = current;

    const CardEventClicked clicked;
    core::ui_event::DispatchCardEvent(source, &clicked);
    // The current page comes last, after the rest of the frame.
    EXPECT_EQ(log, (std::vector<std::string>{"frame", "other", "current"}));

    log.clear();
    frame->consumed = true;
    core::ui_event::DispatchCardEvent(source, &clicked);
    EXPECT_EQ(log, (std::vector<std::string>{"frame", "other"}));
}

TEST_F(UIEventDispatchTest, PanelWorkspaceFrameKeepsEventsInsideTheCurrentPage)
{
    std::vector<std::string> log;
    QWidget host;
    auto* frame = new CTestTabFrame(&host);
    frame->SetTabFrameKey(TabFrameKey_PanelWorkspace);
    frame->log = &log;
    auto* pageA = new CClickListener(frame, "pageA");
    auto* sourceA = new CClickListener(pageA, "sourceA");
    auto* pageB = new CClickListener(frame, "pageB");
    auto* sourceB = new CClickListener(pageB, "sourceB");
    for (CClickListener* l : {pageA, sourceA, pageB, sourceB})
        l->log = &log;
    frame->page = pageA;

    const CardEventClicked clicked;
    core::ui_event::DispatchCardEvent(sourceA, &clicked);
    EXPECT_EQ(log, (std::vector<std::string>{"frame", "pageA"}));

    // From a page that is not the current one: only the frame itself.
    log.clear();
    core::ui_event::DispatchCardEvent(sourceB, &clicked);
    EXPECT_EQ(log, (std::vector<std::string>{"frame"}));
}

TEST_F(UIEventDispatchTest, CanvasAndOtherHoldersStopTheWalk)
{
    for (EnVXUIEventContainerKind kind :
         {EnVXUIEventContainerKind::Canvas, EnVXUIEventContainerKind::MainFrame,
          EnVXUIEventContainerKind::StackedTabFramePage, EnVXUIEventContainerKind::SplitterPage}) {
        QWidget host;
        auto* above = new CClickListener(&host, "above");
        auto* holder = new CTestContainer(kind, above, "holder");
        auto* middle = new QWidget(holder);
        auto* source = new CClickListener(middle, "source");
        auto* sibling = new CClickListener(holder, "sibling");

        const CardEventClicked clicked;
        core::ui_event::DispatchCardEvent(source, &clicked);
        EXPECT_EQ(holder->clicks, 1) << static_cast<int>(kind);
        EXPECT_EQ(sibling->clicks, 1) << static_cast<int>(kind);
        EXPECT_EQ(above->clicks, 0) << static_cast<int>(kind);
    }
}

TEST_F(UIEventDispatchTest, ExpandedRegionShownByTheHolderGetsContentAndRegion)
{
    std::vector<std::string> log;
    QWidget host;
    auto* mainFrame = new CTestContainer(EnVXUIEventContainerKind::MainFrame, &host, "main");
    auto* region = new CTestContainer(EnVXUIEventContainerKind::ExpandedRegion, mainFrame, "region");
    auto* source = new CClickListener(region, "source");
    auto* inRegion = new CClickListener(region, "inRegion");
    auto* content = new CClickListener(mainFrame, "content"); // shown by the region, parented elsewhere
    auto* elsewhere = new CClickListener(mainFrame, "elsewhere");
    for (CClickListener* l : {static_cast<CClickListener*>(mainFrame), static_cast<CClickListener*>(region),
                              source, inRegion, content, elsewhere})
        l->log = &log;
    region->regionContent = content;
    mainFrame->region = region;

    const CardEventClicked clicked;
    core::ui_event::DispatchCardEvent(source, &clicked);
    EXPECT_EQ(log, (std::vector<std::string>{"content", "region", "inRegion"}));

    // A region that the holder does not show now: the holder's whole subtree.
    log.clear();
    mainFrame->region = nullptr;
    core::ui_event::DispatchCardEvent(source, &clicked);
    EXPECT_EQ(log, (std::vector<std::string>{"main", "region", "inRegion", "content", "elsewhere"}));
}

TEST_F(UIEventDispatchTest, DispatchToExpandedRegionFindsTheRegionOrDoesNothing)
{
    std::vector<std::string> log;
    QWidget host;
    auto* region = new CTestContainer(EnVXUIEventContainerKind::ExpandedRegion, &host, "region");
    auto* source = new CClickListener(region, "source");
    auto* sibling = new CClickListener(region, "sibling");
    auto* outside = new CClickListener(&host, "outside");
    for (CClickListener* l : {static_cast<CClickListener*>(region), source, sibling, outside})
        l->log = &log;

    const CardEventClicked clicked;
    core::ui_event::DispatchCardEventToExpandedRegion(source, &clicked);
    EXPECT_EQ(log, (std::vector<std::string>{"region", "sibling"}));

    log.clear();
    core::ui_event::DispatchCardEventToExpandedRegion(outside, &clicked, true);
    EXPECT_TRUE(log.empty());
}

TEST_F(UIEventDispatchTest, RecursiveDispatchIncludesTheRootUnlessExcluded)
{
    vxtest::ExpectAssertion("pRoot");
    CClickListener root(nullptr, "root");
    auto* child = new CClickListener(&root, "child");
    const CardEventClicked clicked;

    core::ui_event::DispatchUIEventToAllChildRecursivelyWithThis(&root, &clicked);
    EXPECT_EQ(root.clicks, 1);
    EXPECT_EQ(child->clicks, 1);

    Platform::UIEvent::DispatchUIEventToAllChildRecursively(&root, &clicked, &root);
    EXPECT_EQ(root.clicks, 1);
    EXPECT_EQ(child->clicks, 2);

    core::ui_event::DispatchUIEventToAllChildRecursivelyWithThis(nullptr, &clicked);
    EXPECT_EQ(vxtest::CountAssertions("pRoot"), 1);
}

namespace {

// A polymorphic base in front of the handler part: the handler sits further into the object than
// in CClickListener, so a handler found through the wrong type's layout would be the wrong object.
class CLabelled
{
public:
    virtual ~CLabelled() = default;
    virtual std::string Label() const { return label; }
    std::string label;
    char padding[40] = {};
};

class CLabelledListener : public QWidget, public CLabelled, public VUIEventHandler
{
    Q_OBJECT
public:
    CLabelledListener(QWidget* parent, const char* name, std::vector<std::string>* sink)
        : QWidget(parent), log(sink)
    {
        label = name;
        RegisterUIEventHandler<CardEventClicked>(this, &CLabelledListener::OnCardEventClicked);
    }
    void OnCardEventClicked(const CardEventClicked*) { log->push_back(Label()); }
    std::vector<std::string>* log;
};

} // namespace

TEST_F(UIEventDispatchTest, HandlersOfDifferentLayoutsAreEachReachedAsThemselves)
{
    std::vector<std::string> log;
    QWidget root;
    // Interleaved types, each twice, at two depths.
    auto* a = new CLabelledListener(&root, "labelled-a", &log);
    auto* b = new CClickListener(&root, "click-b");
    b->log = &log;
    auto* holder = new QWidget(&root);
    new CLabelledListener(holder, "labelled-c", &log);
    auto* d = new CClickListener(holder, "click-d");
    d->log = &log;
    new CLabelledListener(a, "labelled-e", &log);

    const CardEventClicked clicked;
    Platform::UIEvent::DispatchUIEventToAllChildRecursively(&root, &clicked);
    Platform::UIEvent::DispatchUIEventToAllChildRecursively(&root, &clicked);
    const std::vector<std::string> once = {"labelled-a", "labelled-e", "click-b", "labelled-c", "click-d"};
    std::vector<std::string> twice = once;
    twice.insert(twice.end(), once.begin(), once.end());
    EXPECT_EQ(log, twice);
}

TEST_F(UIEventDispatchTest, HandlerDeletingItsOwnContainerEndsThatContainerOnly)
{
    vxtest::ExpectAssertion(kReleasedMessage);
    std::vector<std::string> log;
    QWidget root;
    QPointer<QWidget> first = new QWidget(&root);
    auto* deleter = new CClickListener(first, "deleter");
    auto* sibling = new CClickListener(first, "sibling");
    auto* second = new QWidget(&root);
    auto* later = new CClickListener(second, "later");
    auto* nested = new CClickListener(new QWidget(later), "nested");
    for (CClickListener* l : {deleter, sibling, later, nested})
        l->log = &log;
    deleter->onClicked = [&first](const CardEventClicked*) { delete first.data(); };

    const CardEventClicked clicked;
    Platform::UIEvent::DispatchUIEventToAllChildRecursively(&root, &clicked);
    EXPECT_TRUE(first.isNull());
    // The deleter's container went with everything in it; the walk goes on beside it.
    EXPECT_EQ(log, (std::vector<std::string>{"deleter", "later", "nested"}));
    // Reported for the deleter, found dead after its handler, and for its sibling.
    EXPECT_EQ(vxtest::CountAssertions(kReleasedMessage), 2);
}

TEST_F(UIEventDispatchTest, ChildrenAddedDuringTheWalkWaitAndTheOthersStillReceive)
{
    std::vector<std::string> log;
    QWidget root;
    auto* adder = new CClickListener(&root, "adder");
    auto* next = new CClickListener(&root, "next");
    CClickListener* added = nullptr;
    adder->log = &log;
    next->log = &log;
    adder->onClicked = [&root, &added, &log](const CardEventClicked*) {
        if (added)
            return;
        added = new CClickListener(&root, "added");
        added->log = &log;
    };

    const CardEventClicked clicked;
    Platform::UIEvent::DispatchUIEventToAllChildRecursively(&root, &clicked);
    // The list of the root's children was taken before the new one came.
    EXPECT_EQ(log, (std::vector<std::string>{"adder", "next"}));
    log.clear();
    Platform::UIEvent::DispatchUIEventToAllChildRecursively(&root, &clicked);
    EXPECT_EQ(log, (std::vector<std::string>{"adder", "next", "added"}));
    EXPECT_EQ(vxtest::CountAssertions(kReleasedMessage), 0);
}

#include "UIEventTest.moc"
