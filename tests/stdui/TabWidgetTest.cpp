// VTabWidget and VTabBarBase driven as a user and a caller would: lazy pages, ids, moves,
// ownership, signal counts and dragging tabs with real mouse events on offscreen widgets.

#include "Platform/StdUI/TabWidget.h"
#include "Platform/StdUI/ThemeResource.h"

#include "tests/common/TestSupport.h"

#include <QApplication>
#include <QLabel>
#include <QPointer>
#include <QSignalSpy>
#include <QStackedWidget>
#include <QTest>

#include <gtest/gtest.h>

#include <memory>
#include <set>

using namespace vx_std_ui;

namespace {

// Records what the tab widget asks of it.
class RecordingFactory : public PageFactory
{
public:
    explicit RecordingFactory(QString name) : m_name(std::move(name)) {}

    QWidget* create() const override
    {
        ++createCount;
        if (failing)
            return nullptr;
        lastPage = new QLabel(m_name);
        lastPage->setObjectName(m_name);
        parentAtCreate = lastPage->parentWidget();
        return lastPage;
    }

    void afterSetParent(QWidget* widget) const override
    {
        ++afterCount;
        afterWidget = widget;
        parentAtAfter = widget->parentWidget();
    }

    mutable int createCount = 0;
    mutable int afterCount = 0;
    mutable QPointer<QWidget> lastPage;
    mutable QWidget* parentAtCreate = nullptr;
    mutable QWidget* afterWidget = nullptr;
    mutable QWidget* parentAtAfter = nullptr;
    bool failing = false;

private:
    QString m_name;
};

std::shared_ptr<RecordingFactory> Factory(const QString& name)
{
    return std::make_shared<RecordingFactory>(name);
}

// Checks that tabs, pages, ids and the shown page agree with each other.
void CheckSanity(const VTabWidget& tw)
{
    ASSERT_EQ(tw.count(), tw.tabBar()->count());
    std::set<unsigned long long> globalIds;
    for (int i = 0; i < tw.count(); ++i) {
        EXPECT_NE(tw.tabGlobalId(i), 0u) << "tab " << i;
        EXPECT_TRUE(globalIds.insert(tw.tabGlobalId(i)).second) << "duplicate global id at " << i;
        QWidget* page = tw.widget(i);
        EXPECT_EQ(page != nullptr, tw.isPageCreated(i)) << "tab " << i;
        if (page) {
            EXPECT_EQ(tw.indexOf(page), i);
            EXPECT_TRUE(tw.isAncestorOf(page));
        }
    }
    if (tw.count() == 0) {
        EXPECT_EQ(tw.currentIndex(), -1);
    } else {
        EXPECT_TRUE(tw.currentIndex() >= 0 && tw.currentIndex() < tw.count());
    }
    if (tw.isVisible() && tw.currentWidget()) {
        EXPECT_TRUE(tw.currentWidget()->isVisible());
    }
}

class TabWidgetLazyTest : public ::testing::Test
{
};

TEST_F(TabWidgetLazyTest, PageIsCreatedOnceOnFirstShowAndParentedBeforeAfterSetParent)
{
    VTabWidget tw;
    auto factory = Factory(QStringLiteral("quote"));
    QSignalSpy created(&tw, &VTabWidget::pageCreated);

    EXPECT_EQ(tw.addLazyTab(factory, QStringLiteral("Quote"), 7), 0);
    EXPECT_EQ(tw.currentIndex(), 0);
    EXPECT_EQ(factory->createCount, 0) << "a hidden widget builds nothing";
    EXPECT_FALSE(tw.isPageCreated(0));
    EXPECT_EQ(tw.widget(0), nullptr);
    EXPECT_EQ(tw.currentWidget(), nullptr);

    tw.show();
    ASSERT_EQ(factory->createCount, 1);
    ASSERT_EQ(factory->afterCount, 1);
    ASSERT_TRUE(factory->lastPage);
    EXPECT_EQ(factory->parentAtCreate, nullptr);
    EXPECT_EQ(factory->afterWidget, factory->lastPage.data());
    ASSERT_NE(factory->parentAtAfter, nullptr) << "afterSetParent runs once the page is parented";
    EXPECT_TRUE(tw.isAncestorOf(factory->parentAtAfter) || factory->parentAtAfter == &tw);
    ASSERT_EQ(created.count(), 1);
    EXPECT_EQ(created.at(0).at(0).toInt(), 0);
    EXPECT_EQ(created.at(0).at(1).value<QWidget*>(), factory->lastPage.data());
    EXPECT_TRUE(tw.isPageCreated(0));
    EXPECT_EQ(tw.currentWidget(), factory->lastPage.data());
    EXPECT_TRUE(factory->lastPage->isVisible());
    EXPECT_EQ(tw.tabId(0), 7u);

    tw.hide();
    tw.show();
    tw.setCurrentIndex(0);
    EXPECT_EQ(tw.widget(0, true), factory->lastPage.data());
    EXPECT_EQ(factory->createCount, 1);
    EXPECT_EQ(factory->afterCount, 1);
    EXPECT_EQ(created.count(), 1);
    CheckSanity(tw);
}

TEST_F(TabWidgetLazyTest, ShowingThreeLazyTabsBuildsOnlyTheCurrentOneAndClickBuildsTheNext)
{
    VTabWidget tw;
    tw.resize(500, 300);
    auto f0 = Factory(QStringLiteral("chart"));
    auto f1 = Factory(QStringLiteral("ticks"));
    auto f2 = Factory(QStringLiteral("book"));
    tw.addLazyTab(f0, QStringLiteral("Chart"));
    tw.addLazyTab(f1, QStringLiteral("Ticks"));
    tw.addLazyTab(f2, QStringLiteral("Book"));
    tw.setCurrentIndex(1);
    EXPECT_EQ(f0->createCount + f1->createCount + f2->createCount, 0);

    tw.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&tw));
    EXPECT_EQ(f0->createCount, 0);
    EXPECT_EQ(f1->createCount, 1);
    EXPECT_EQ(f2->createCount, 0);
    CheckSanity(tw);

    QSignalSpy current(&tw, &VTabWidget::currentChanged);
    QSignalSpy created(&tw, &VTabWidget::pageCreated);
    QTabBar* bar = tw.tabBar();
    QTest::mouseClick(bar, Qt::LeftButton, Qt::NoModifier, bar->tabRect(2).center());
    EXPECT_EQ(tw.currentIndex(), 2);
    EXPECT_EQ(f2->createCount, 1);
    EXPECT_EQ(f0->createCount, 0);
    ASSERT_EQ(current.count(), 1);
    EXPECT_EQ(current.at(0).at(0).toInt(), 2);
    ASSERT_EQ(created.count(), 1);
    EXPECT_EQ(created.at(0).at(0).toInt(), 2);
    EXPECT_EQ(tw.currentWidget(), f2->lastPage.data());
    EXPECT_TRUE(f2->lastPage->isVisible());
    EXPECT_FALSE(f1->lastPage->isVisible());

    // Back to a tab built before: nothing is built again.
    QTest::mouseClick(bar, Qt::LeftButton, Qt::NoModifier, bar->tabRect(1).center());
    EXPECT_EQ(f1->createCount, 1);
    EXPECT_EQ(created.count(), 1);
    EXPECT_EQ(current.count(), 2);
    CheckSanity(tw);
}

TEST_F(TabWidgetLazyTest, AskingForAHiddenTabsPageBuildsItOnceWithoutShowingIt)
{
    VTabWidget tw;
    tw.addTab(new QLabel(QStringLiteral("first")), QStringLiteral("First"));
    auto factory = Factory(QStringLiteral("orders"));
    tw.addLazyTab(factory, QStringLiteral("Orders"));
    tw.show();
    QSignalSpy created(&tw, &VTabWidget::pageCreated);

    EXPECT_EQ(tw.widget(1, false), nullptr);
    EXPECT_EQ(factory->createCount, 0);
    QWidget* page = tw.widget(1, true);
    ASSERT_NE(page, nullptr);
    EXPECT_EQ(factory->createCount, 1);
    EXPECT_EQ(factory->afterCount, 1);
    EXPECT_NE(factory->parentAtAfter, nullptr);
    EXPECT_EQ(created.count(), 1);
    EXPECT_FALSE(page->isVisible());
    EXPECT_EQ(tw.currentIndex(), 0);

    EXPECT_EQ(tw.widget(1, true), page);
    tw.setCurrentIndex(1);
    EXPECT_TRUE(page->isVisible());
    EXPECT_EQ(factory->createCount, 1);
    EXPECT_EQ(created.count(), 1);
    CheckSanity(tw);
}

TEST_F(TabWidgetLazyTest, FactoryWithoutPageLeavesThePlaceholderAndWarns)
{
    VTabWidget tw;
    auto factory = Factory(QStringLiteral("broken"));
    factory->failing = true;
    QSignalSpy created(&tw, &VTabWidget::pageCreated);
    tw.addLazyTab(factory, QStringLiteral("Broken"));
    tw.show();

    EXPECT_EQ(factory->createCount, 1);
    EXPECT_EQ(factory->afterCount, 0);
    EXPECT_FALSE(tw.isPageCreated(0));
    EXPECT_EQ(tw.widget(0), nullptr);
    EXPECT_EQ(created.count(), 0);
    EXPECT_TRUE(vxtest::HasLog("created no page"));

    // The tab stays lazy: a later request may still succeed.
    factory->failing = false;
    QWidget* page = tw.widget(0, true);
    ASSERT_NE(page, nullptr);
    EXPECT_EQ(created.count(), 1);
    EXPECT_TRUE(page->isVisible());
    CheckSanity(tw);
}

TEST_F(TabWidgetLazyTest, LazyTabsAddedToAShownWidgetAreBuiltOnlyWhenCurrent)
{
    VTabWidget tw;
    tw.show();
    QSignalSpy current(&tw, &VTabWidget::currentChanged);
    auto first = Factory(QStringLiteral("first"));
    auto before = Factory(QStringLiteral("before"));

    tw.addLazyTab(first, QStringLiteral("First"));
    EXPECT_EQ(first->createCount, 1) << "the first tab of a shown widget is current at once";
    ASSERT_EQ(current.count(), 1);
    EXPECT_EQ(current.at(0).at(0).toInt(), 0);
    EXPECT_EQ(tw.currentWidget(), first->lastPage.data());

    tw.insertLazyTab(0, before, QStringLiteral("Before"));
    EXPECT_EQ(before->createCount, 0);
    EXPECT_EQ(tw.currentIndex(), 1) << "the current tab stays current";
    EXPECT_EQ(tw.currentWidget(), first->lastPage.data());
    EXPECT_EQ(current.count(), 1) << "no other tab became current";
    CheckSanity(tw);
}

TEST_F(TabWidgetLazyTest, LazyTabsHoldNoWidgetUntilBuiltAndShareOneEmptyPage)
{
    VTabWidget tw;
    tw.resize(500, 300);
    auto* stack = tw.findChild<QStackedWidget*>();
    ASSERT_NE(stack, nullptr);
    auto real = new QLabel(QStringLiteral("real"));
    tw.addTab(real, QStringLiteral("Real"));
    std::vector<std::shared_ptr<RecordingFactory>> factories;
    for (const char* name : {"a", "b", "c"}) {
        factories.push_back(Factory(QLatin1String(name)));
        tw.addLazyTab(factories.back(), QLatin1String(name));
    }
    EXPECT_EQ(stack->count(), 1) << "three lazy tabs add nothing to the stack";

    // A lazy tab made current while hidden shows the one empty page, whichever tab it is.
    tw.setCurrentIndex(1);
    ASSERT_EQ(stack->count(), 2);
    QWidget* empty = stack->currentWidget();
    EXPECT_NE(empty, real);
    EXPECT_TRUE(empty->findChildren<QWidget*>().isEmpty());
    tw.setCurrentIndex(3);
    EXPECT_EQ(stack->count(), 2);
    EXPECT_EQ(stack->currentWidget(), empty);

    tw.show();
    ASSERT_EQ(factories[2]->createCount, 1);
    EXPECT_EQ(stack->currentWidget(), factories[2]->lastPage.data());
    EXPECT_EQ(stack->count(), 3);
    tw.setCurrentIndex(1);
    EXPECT_EQ(stack->count(), 4) << "each built page joins the stack; the empty page stays for later";
    EXPECT_EQ(factories[0]->createCount, 1) << "tab 1 is the first lazy tab";
    EXPECT_EQ(factories[1]->createCount, 0) << "a tab never current is never built";
    CheckSanity(tw);
}

class TabWidgetIdTest : public ::testing::Test
{
};

TEST_F(TabWidgetIdTest, TabIdsAndGlobalIds)
{
    VTabWidget a;
    VTabWidget b;
    a.addTab(new QWidget, QStringLiteral("A0"), 100);
    a.addTab(new QWidget, QStringLiteral("A1"));
    a.addLazyTab(Factory(QStringLiteral("A2")), QStringLiteral("A2"), 102);
    b.addTab(new QWidget, QStringLiteral("B0"), 100);

    EXPECT_EQ(a.tabId(0), 100u);
    EXPECT_EQ(a.tabId(1), kNoTabId);
    EXPECT_EQ(a.tabId(2), 102u);
    EXPECT_EQ(a.indexOfTabId(102), 2);
    EXPECT_EQ(a.indexOfTabId(555), -1);
    EXPECT_EQ(a.indexOfTabId(kNoTabId), -1) << "tabs without id are not found by the no-id value";

    std::set<unsigned long long> ids{a.tabGlobalId(0), a.tabGlobalId(1), a.tabGlobalId(2), b.tabGlobalId(0)};
    EXPECT_EQ(ids.size(), 4u) << "global ids are unique across widgets";
    EXPECT_EQ(ids.count(0), 0u);
    EXPECT_EQ(a.tabBar()->indexOfGlobalId(a.tabGlobalId(2)), 2);
    EXPECT_EQ(a.tabBar()->indexOfGlobalId(b.tabGlobalId(0)), -1);

    const unsigned long long g1 = a.tabGlobalId(1);
    a.setTabId(1, 101);
    EXPECT_EQ(a.tabId(1), 101u);
    EXPECT_EQ(a.tabGlobalId(1), g1) << "setting the tab id keeps the global id";
    EXPECT_EQ(a.indexOfTabId(101), 1);

    // A removed tab's global id is not handed out again.
    const unsigned long long removed = a.tabGlobalId(0);
    a.removeTab(0);
    a.addTab(new QWidget, QStringLiteral("A3"));
    for (int i = 0; i < a.count(); ++i)
        EXPECT_NE(a.tabGlobalId(i), removed);

    EXPECT_EQ(a.tabId(-1), kNoTabId);
    EXPECT_EQ(a.tabId(a.count()), kNoTabId);
    EXPECT_EQ(a.tabGlobalId(a.count()), 0u);
    CheckSanity(a);
}

TEST_F(TabWidgetIdTest, IdsAreReadableFromSignalsEmittedWhileInserting)
{
    VTabWidget tw;
    TabId seenId = 0;
    unsigned long long seenGlobal = 0;
    QObject::connect(&tw, &VTabWidget::currentChanged, &tw, [&](int index) {
        seenId = tw.tabId(index);
        seenGlobal = tw.tabGlobalId(index);
    });
    tw.addTab(new QWidget, QStringLiteral("Home"), 42);
    EXPECT_EQ(seenId, 42u);
    EXPECT_NE(seenGlobal, 0u);
    EXPECT_EQ(seenGlobal, tw.tabGlobalId(0));
}

TEST_F(TabWidgetIdTest, BadArgumentsReturnSafeValuesAndWarn)
{
    VTabWidget tw;
    EXPECT_EQ(tw.count(), 0);
    EXPECT_EQ(tw.currentIndex(), -1);
    EXPECT_EQ(tw.currentWidget(), nullptr);
    EXPECT_EQ(tw.addTab(nullptr, QStringLiteral("none")), -1);
    EXPECT_EQ(tw.addLazyTab(nullptr, QStringLiteral("none")), -1);
    EXPECT_EQ(tw.count(), 0);
    EXPECT_EQ(tw.takeTab(0), nullptr);
    tw.removeTab(3);
    tw.moveTab(0, 1);
    EXPECT_EQ(tw.widget(0, true), nullptr);
    EXPECT_FALSE(tw.isPageCreated(0));
    EXPECT_EQ(tw.indexOf(nullptr), -1);
    EXPECT_TRUE(vxtest::HasLog("VTabWidget::insertTab: null page"));
    EXPECT_TRUE(vxtest::HasLog("VTabWidget::takeTab: bad index 0"));
    EXPECT_TRUE(vxtest::HasLog("VTabWidget::moveTab: bad move 0 -> 1"));

    QWidget* page = new QWidget;
    EXPECT_EQ(tw.addTab(page, QStringLiteral("once")), 0);
    EXPECT_EQ(tw.addTab(page, QStringLiteral("twice")), -1);
    EXPECT_EQ(tw.count(), 1);
}

class TabWidgetMoveTest : public ::testing::Test
{
};

TEST_F(TabWidgetMoveTest, MoveTabKeepsPagesIdsLazyStateAndTheCurrentTab)
{
    VTabWidget tw;
    auto lazy = Factory(QStringLiteral("B"));
    QWidget* pageA = new QLabel(QStringLiteral("A"));
    QWidget* pageC = new QLabel(QStringLiteral("C"));
    tw.addTab(pageA, QStringLiteral("A"), 11);
    tw.addLazyTab(lazy, QStringLiteral("B"), 12);
    tw.addTab(pageC, QStringLiteral("C"), 13);
    tw.setCurrentIndex(2);
    tw.show();
    const unsigned long long gA = tw.tabGlobalId(0), gB = tw.tabGlobalId(1), gC = tw.tabGlobalId(2);

    QSignalSpy moved(&tw, &VTabWidget::tabMoved);
    QSignalSpy current(&tw, &VTabWidget::currentChanged);
    tw.moveTab(2, 0); // C A B

    ASSERT_EQ(moved.count(), 1);
    EXPECT_EQ(moved.at(0).at(0).toInt(), 2);
    EXPECT_EQ(moved.at(0).at(1).toInt(), 0);
    EXPECT_EQ(current.count(), 0) << "the same tab is still current";
    EXPECT_EQ(tw.currentIndex(), 0);
    EXPECT_EQ(tw.currentWidget(), pageC);
    EXPECT_TRUE(pageC->isVisible());
    EXPECT_EQ(tw.tabText(0), QStringLiteral("C"));
    EXPECT_EQ(tw.tabId(0), 13u);
    EXPECT_EQ(tw.tabId(1), 11u);
    EXPECT_EQ(tw.tabId(2), 12u);
    EXPECT_EQ(tw.tabGlobalId(0), gC);
    EXPECT_EQ(tw.tabGlobalId(1), gA);
    EXPECT_EQ(tw.tabGlobalId(2), gB);
    EXPECT_EQ(tw.widget(1), pageA);
    EXPECT_FALSE(tw.isPageCreated(2));
    EXPECT_EQ(lazy->createCount, 0);
    CheckSanity(tw);

    tw.moveTab(0, 0);
    EXPECT_EQ(moved.count(), 1) << "moving a tab onto itself changes nothing";

    QSignalSpy created(&tw, &VTabWidget::pageCreated);
    tw.setCurrentIndex(2);
    EXPECT_EQ(lazy->createCount, 1);
    ASSERT_EQ(created.count(), 1);
    EXPECT_EQ(created.at(0).at(0).toInt(), 2);
    EXPECT_EQ(tw.widget(2), lazy->lastPage.data());
    EXPECT_EQ(current.count(), 1);
    CheckSanity(tw);
}

class TabWidgetOwnershipTest : public ::testing::Test
{
};

TEST_F(TabWidgetOwnershipTest, TakeTabHandsBackAnUnparentedPage)
{
    VTabWidget tw;
    QWidget* page = new QLabel(QStringLiteral("keep"));
    auto lazy = Factory(QStringLiteral("never"));
    tw.addTab(page, QStringLiteral("Keep"), 1);
    tw.addLazyTab(lazy, QStringLiteral("Never"), 2);
    tw.show();
    QSignalSpy counts(&tw, &VTabWidget::tabCountChanged);

    std::unique_ptr<QWidget> taken(tw.takeTab(0));
    ASSERT_EQ(taken.get(), page);
    EXPECT_EQ(taken->parentWidget(), nullptr);
    EXPECT_FALSE(taken->isVisible());
    EXPECT_EQ(tw.indexOf(page), -1);
    EXPECT_EQ(tw.count(), 1);
    ASSERT_EQ(counts.count(), 1);
    EXPECT_EQ(counts.at(0).at(0).toInt(), 1);
    EXPECT_EQ(tw.tabId(0), 2u);
    // The remaining lazy tab became current in a shown widget.
    EXPECT_EQ(lazy->createCount, 1);

    auto unbuilt = Factory(QStringLiteral("unbuilt"));
    tw.addLazyTab(unbuilt, QStringLiteral("Unbuilt"));
    EXPECT_EQ(tw.takeTab(1), nullptr) << "an unbuilt page has nothing to hand back";
    EXPECT_EQ(unbuilt->createCount, 0);
    EXPECT_EQ(counts.count(), 3);
    CheckSanity(tw);
}

TEST_F(TabWidgetOwnershipTest, RemoveTabDeletesThePageLaterAndPicksANeighbour)
{
    VTabWidget tw;
    QPointer<QWidget> first = new QLabel(QStringLiteral("1"));
    tw.addTab(first, QStringLiteral("1"));
    auto second = Factory(QStringLiteral("2"));
    tw.addLazyTab(second, QStringLiteral("2"));
    tw.show();
    QSignalSpy current(&tw, &VTabWidget::currentChanged);
    QSignalSpy counts(&tw, &VTabWidget::tabCountChanged);

    tw.removeTab(0);
    EXPECT_EQ(tw.count(), 1);
    ASSERT_EQ(current.count(), 1);
    EXPECT_EQ(current.at(0).at(0).toInt(), 0);
    EXPECT_EQ(counts.count(), 1);
    EXPECT_EQ(second->createCount, 1);
    EXPECT_EQ(tw.currentWidget(), second->lastPage.data());
    ASSERT_TRUE(first);
    EXPECT_FALSE(first->isVisible());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_FALSE(first);

    tw.removeTab(0);
    EXPECT_EQ(tw.currentIndex(), -1);
    EXPECT_EQ(current.count(), 2);
    EXPECT_EQ(current.at(1).at(0).toInt(), -1);
    CheckSanity(tw);
}

TEST_F(TabWidgetOwnershipTest, ClearReportsOnceAndBuildsNothing)
{
    VTabWidget tw;
    auto f0 = Factory(QStringLiteral("0"));
    auto f1 = Factory(QStringLiteral("1"));
    auto f2 = Factory(QStringLiteral("2"));
    tw.addLazyTab(f0, QStringLiteral("0"));
    tw.addLazyTab(f1, QStringLiteral("1"));
    tw.addLazyTab(f2, QStringLiteral("2"));
    tw.setCurrentIndex(2);
    tw.show();
    QPointer<QWidget> built = f2->lastPage;
    ASSERT_TRUE(built);
    QSignalSpy current(&tw, &VTabWidget::currentChanged);
    QSignalSpy counts(&tw, &VTabWidget::tabCountChanged);

    tw.clear();
    EXPECT_EQ(tw.count(), 0);
    EXPECT_EQ(tw.currentIndex(), -1);
    EXPECT_EQ(f0->createCount + f1->createCount, 0) << "clearing does not build the tabs it passes";
    ASSERT_EQ(current.count(), 1);
    EXPECT_EQ(current.at(0).at(0).toInt(), -1);
    ASSERT_EQ(counts.count(), 1);
    EXPECT_EQ(counts.at(0).at(0).toInt(), 0);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_FALSE(built);

    tw.clear();
    EXPECT_EQ(current.count(), 1);
    EXPECT_EQ(counts.count(), 1);
    CheckSanity(tw);
}

TEST_F(TabWidgetOwnershipTest, CornerWidgetAndTabBarVisibility)
{
    VTabWidget tw;
    tw.resize(400, 200);
    tw.addTab(new QWidget, QStringLiteral("Tab"));
    QPointer<QWidget> corner = new QLabel(QStringLiteral("+"));
    tw.setCornerWidget(corner);
    tw.show();
    EXPECT_EQ(tw.cornerWidget(), corner.data());
    EXPECT_TRUE(tw.isAncestorOf(corner));
    EXPECT_TRUE(corner->isVisible());
    EXPECT_GE(corner->geometry().left(), tw.tabBar()->geometry().left());

    tw.setTabBarVisible(false);
    EXPECT_FALSE(tw.isTabBarVisible());
    EXPECT_FALSE(tw.tabBar()->isVisible());
    tw.setTabBarVisible(true);
    EXPECT_TRUE(tw.isTabBarVisible());
    EXPECT_TRUE(tw.tabBar()->isVisible());

    tw.setCornerWidget(new QLabel(QStringLiteral("x")));
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_FALSE(corner) << "the replaced corner widget was owned and is deleted";
}

// Close glyphs clicked through the window, as the platform would deliver the mouse.
class TabCloseGlyphTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        tw = std::make_unique<VTabWidget>();
        tw->resize(400, 200);
        tw->setTabsClosable(true);
        tw->addTab(new QLabel(QStringLiteral("one")), QStringLiteral("One"));
        tw->addTab(new QLabel(QStringLiteral("two")), QStringLiteral("Two"));
        tw->show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(tw.get()));
        bar = tw->tabBar();
    }
    void TearDown() override { vx_ui_res::Provider::Instance().ResetForTest(); }

    QPoint InWindow(QPoint barPos) const { return bar->mapTo(tw.get(), barPos); }
    void Press(QPoint p)
    {
        QTest::mousePress(tw->windowHandle(), Qt::LeftButton, Qt::NoModifier, InWindow(p));
    }
    void Move(QPoint p) { QTest::mouseMove(tw->windowHandle(), InWindow(p)); }
    void Release(QPoint p)
    {
        QTest::mouseRelease(tw->windowHandle(), Qt::LeftButton, Qt::NoModifier, InWindow(p));
    }
    void Click(QPoint p)
    {
        Move(p);
        Press(p);
        Release(p);
    }
    // The colour of the bar's pixel at `p`, as painted now.
    QColor PixelAt(QPoint p) const { return bar->grab().toImage().pixelColor(p); }

    std::unique_ptr<VTabWidget> tw;
    VTabBarBase* bar = nullptr;
};

TEST_F(TabCloseGlyphTest, ClickingTheGlyphReportsItsTabAndLeavesTheCurrentTab)
{
    QSignalSpy close(tw.get(), &VTabWidget::tabCloseRequested);
    QSignalSpy current(tw.get(), &VTabWidget::currentChanged);
    const QRect glyph = bar->closeGlyphRect(1);
    ASSERT_EQ(glyph.size(), QSize(16, 16));
    EXPECT_TRUE(bar->tabRect(1).contains(glyph)) << "the glyph sits inside its tab";
    EXPECT_GT(glyph.left(), bar->tabRect(1).center().x()) << "at the tab's right end";

    Click(glyph.center());
    ASSERT_EQ(close.count(), 1);
    EXPECT_EQ(close.at(0).at(0).toInt(), 1);
    EXPECT_EQ(tw->count(), 2) << "closing is the owner's decision";
    EXPECT_EQ(tw->currentIndex(), 0) << "a press on the glyph is not a press on the tab";
    EXPECT_EQ(current.count(), 0);

    // The tab's label part still switches tabs and closes nothing.
    Click(QPoint(bar->tabRect(1).left() + 6, bar->tabRect(1).center().y()));
    EXPECT_EQ(tw->currentIndex(), 1);
    EXPECT_EQ(close.count(), 1);
}

TEST_F(TabCloseGlyphTest, ReleasingAwayFromTheGlyphCancelsTheClick)
{
    QSignalSpy close(tw.get(), &VTabWidget::tabCloseRequested);
    const QRect glyph = bar->closeGlyphRect(0);
    Move(glyph.center());
    Press(glyph.center());
    EXPECT_TRUE(bar->isCloseGlyphDown());
    const QPoint away(bar->tabRect(1).center());
    Move(away);
    EXPECT_FALSE(bar->isCloseGlyphDown()) << "a button shows up only while the mouse is over it";
    Release(away);
    EXPECT_EQ(close.count(), 0);
    EXPECT_EQ(tw->currentIndex(), 0) << "the release does not switch tabs either";

    // Back over the glyph before the release: the click counts, as for a button.
    Move(glyph.center());
    Press(glyph.center());
    Move(away);
    Move(glyph.center());
    Release(glyph.center());
    ASSERT_EQ(close.count(), 1);
    EXPECT_EQ(close.at(0).at(0).toInt(), 0);
}

TEST_F(TabCloseGlyphTest, GlyphIsPaintedInTheThemeColoursAndHighlightsUnderTheMouse)
{
    vx_ui_res::Provider& theme = vx_ui_res::Provider::Instance();
    const QRect glyph = bar->closeGlyphRect(1);
    // The cross runs corner to corner through the centre of an 8 x 8 box in the middle.
    const QPoint onCross = glyph.center();
    // Left of the cross, inside the rounded background.
    const QPoint beside(glyph.left() + 2, glyph.center().y());
    const auto near = [](const QColor& a, const QColor& b) {
        return qAbs(a.red() - b.red()) + qAbs(a.green() - b.green()) + qAbs(a.blue() - b.blue()) < 60;
    };
    const QColor text = theme.GetColor(QStringLiteral("ct_text_secondary"));
    const QColor hover = theme.GetColor(QStringLiteral("ct_hover"));
    EXPECT_TRUE(near(PixelAt(onCross), text)) << PixelAt(onCross).name().toStdString();
    const QColor idle = PixelAt(beside);
    EXPECT_FALSE(near(idle, hover)) << "no highlight before the mouse comes";

    Move(onCross);
    EXPECT_EQ(bar->hoveredCloseGlyph(), 1);
    EXPECT_EQ(PixelAt(beside), hover);
    Move(bar->tabRect(1).topLeft() + QPoint(4, 4));
    EXPECT_EQ(bar->hoveredCloseGlyph(), -1);
    EXPECT_EQ(PixelAt(beside), idle);

    // The dark theme repaints the glyph without anything else happening to the bar.
    theme.SetTheme(vx_ui_res::Theme::Dark);
    const QColor darkText = theme.GetColor(QStringLiteral("ct_text_secondary"));
    ASSERT_FALSE(near(darkText, text)) << "the themes differ here";
    EXPECT_TRUE(near(PixelAt(onCross), darkText)) << PixelAt(onCross).name().toStdString();
}

TEST_F(TabCloseGlyphTest, ClosableTabsMakeRoomForTheGlyphWithoutAWidgetPerTab)
{
    VTabWidget plain;
    plain.resize(400, 200);
    plain.addTab(new QLabel(QStringLiteral("one")), QStringLiteral("One"));
    plain.addTab(new QLabel(QStringLiteral("two")), QStringLiteral("Two"));
    plain.show();
    // QTabBar gives a tab with a 16 px button 16 px plus 4 px of padding more.
    EXPECT_EQ(bar->tabRect(0).width(), plain.tabBar()->tabRect(0).width() + 20);
    EXPECT_EQ(bar->tabRect(1).width(), plain.tabBar()->tabRect(1).width() + 20);
    EXPECT_EQ(bar->findChildren<QWidget*>().size(), plain.tabBar()->findChildren<QWidget*>().size());
    EXPECT_EQ(bar->tabButton(0, QTabBar::RightSide), nullptr);

    // Turning closing off gives the tabs their plain width back and the glyphs stop answering.
    QSignalSpy close(tw.get(), &VTabWidget::tabCloseRequested);
    const QRect glyph = bar->closeGlyphRect(1);
    tw->setTabsClosable(false);
    EXPECT_FALSE(bar->tabsClosable());
    EXPECT_TRUE(bar->closeGlyphRect(1).isEmpty());
    EXPECT_EQ(bar->tabRect(1).width(), plain.tabBar()->tabRect(1).width());
    Click(glyph.center());
    EXPECT_EQ(close.count(), 0);

    // A document-style widget has closable tabs from the start.
    VTabWidget document(VTabWidget::TabBarStyle::Document);
    document.addTab(new QWidget, QStringLiteral("Doc"));
    EXPECT_TRUE(document.tabBar()->tabsClosable());
    EXPECT_EQ(document.tabBar()->closeGlyphRect(0).size(), QSize(16, 16));
}

TEST_F(TabCloseGlyphTest, AfterAReorderTheGlyphClosesTheTabItNowBelongsTo)
{
    bar->setMovable(true);
    QSignalSpy moved(tw.get(), &VTabWidget::tabMoved);
    const QPoint start = bar->tabRect(0).center() - QPoint(10, 0);
    Move(start);
    Press(start);
    for (int dx = 10; dx <= bar->tabRect(1).width() + 10; dx += 10)
        Move(start + QPoint(dx, 0));
    Release(start + QPoint(bar->tabRect(1).width() + 10, 0));
    ASSERT_EQ(moved.count(), 1);
    ASSERT_EQ(tw->tabText(1), QStringLiteral("One"));

    QSignalSpy close(tw.get(), &VTabWidget::tabCloseRequested);
    Click(bar->closeGlyphRect(1).center());
    ASSERT_EQ(close.count(), 1);
    EXPECT_EQ(close.at(0).at(0).toInt(), 1);
}

// Mouse gestures on the tab bar through the window, as the platform would deliver them.
class TabDragTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        tw = std::make_unique<VTabWidget>();
        tw->resize(600, 300);
        for (const char* name : {"Alpha", "Beta", "Gamma"})
            tw->addTab(new QLabel(QLatin1String(name)), QLatin1String(name));
        tw->show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(tw.get()));
        bar = tw->tabBar();
    }

    QPoint InWindow(QPoint barPos) const { return bar->mapTo(tw.get(), barPos); }
    void Press(QPoint p)
    {
        QTest::mousePress(tw->windowHandle(), Qt::LeftButton, Qt::NoModifier, InWindow(p));
    }
    void Move(QPoint p) { QTest::mouseMove(tw->windowHandle(), InWindow(p)); }
    void Release(QPoint p)
    {
        QTest::mouseRelease(tw->windowHandle(), Qt::LeftButton, Qt::NoModifier, InWindow(p));
    }

    std::unique_ptr<VTabWidget> tw;
    VTabBarBase* bar = nullptr;
};

TEST_F(TabDragTest, DraggingATabDownOutOfTheBarEmitsDragOutOncePerPress)
{
    QSignalSpy out(bar, &VTabBarBase::TabDragOut);
    const QPoint start = bar->tabRect(1).center();
    const int d = QApplication::startDragDistance();

    Press(start);
    Move(start + QPoint(0, d / 2));
    EXPECT_EQ(out.count(), 0) << "within the drag distance";
    const QPoint below(start.x(), bar->height() + d + 5);
    Move(below);
    ASSERT_EQ(out.count(), 1);
    EXPECT_EQ(out.at(0).at(0).toInt(), 1);
    EXPECT_EQ(out.at(0).at(1).toPoint(), bar->mapToGlobal(below));
    Move(below + QPoint(0, 30));
    Move(below + QPoint(40, 60));
    EXPECT_EQ(out.count(), 1) << "once per press";
    Release(below + QPoint(40, 60));
    EXPECT_EQ(out.count(), 1);
    EXPECT_EQ(tw->count(), 3) << "the owner decides what to do with the tab";

    // A new press may drag out again.
    const QPoint other = bar->tabRect(2).center();
    Press(other);
    Move(QPoint(other.x(), bar->height() + d + 5));
    ASSERT_EQ(out.count(), 2);
    EXPECT_EQ(out.at(1).at(0).toInt(), 2);
    Release(QPoint(other.x(), bar->height() + d + 5));
    CheckSanity(*tw);
}

TEST_F(TabDragTest, MovesThatStayInTheBarOrAreDisabledDoNotDragOut)
{
    QSignalSpy out(bar, &VTabBarBase::TabDragOut);
    const QPoint start = bar->tabRect(0).center();
    Press(start);
    Move(QPoint(start.x(), 1));
    Move(QPoint(start.x() + 3, bar->height() - 1));
    Release(QPoint(start.x() + 3, bar->height() - 1));
    EXPECT_EQ(out.count(), 0) << "vertical moves inside the bar";

    // Pressing outside any tab drags nothing.
    const QPoint empty(bar->tabRect(2).right() + 20, start.y());
    ASSERT_LT(empty.x(), bar->width());
    Press(empty);
    Move(QPoint(empty.x(), bar->height() + 40));
    Release(QPoint(empty.x(), bar->height() + 40));
    EXPECT_EQ(out.count(), 0);

    bar->setTabDragOutEnabled(false);
    EXPECT_FALSE(bar->isTabDragOutEnabled());
    Press(start);
    Move(QPoint(start.x(), bar->height() + 40));
    Release(QPoint(start.x(), bar->height() + 40));
    EXPECT_EQ(out.count(), 0);
}

TEST_F(TabDragTest, HorizontalDragReordersAMovableBarAndPagesFollow)
{
    bar->setMovable(true);
    QWidget* alpha = tw->widget(0);
    const unsigned long long gAlpha = tw->tabGlobalId(0);
    QSignalSpy out(bar, &VTabBarBase::TabDragOut);
    QSignalSpy moved(tw.get(), &VTabWidget::tabMoved);

    const QPoint start = bar->tabRect(0).center();
    const QPoint end(bar->tabRect(2).center().x() + 5, start.y());
    Press(start);
    for (int step = 1; step <= 10; ++step)
        Move(start + (end - start) * step / 10);
    Release(end);
    // QTabBar settles the moved tab with an animation.
    QTRY_COMPARE(tw->indexOf(alpha), 2);

    EXPECT_EQ(out.count(), 0);
    EXPECT_GE(moved.count(), 1);
    EXPECT_EQ(tw->tabText(2), QStringLiteral("Alpha"));
    EXPECT_EQ(tw->tabGlobalId(2), gAlpha);
    EXPECT_EQ(tw->currentWidget(), alpha);
    CheckSanity(*tw);
}

TEST_F(TabDragTest, AMovableBarStillDragsOutAndTheTabSettlesBack)
{
    bar->setMovable(true);
    QSignalSpy out(bar, &VTabBarBase::TabDragOut);
    QSignalSpy moved(tw.get(), &VTabWidget::tabMoved);
    const QPoint start = bar->tabRect(1).center();
    const QPoint below(start.x() + 8, bar->height() + 40);
    Press(start);
    Move(start + QPoint(8, 0)); // starts the bar's own reorder drag
    Move(below);
    ASSERT_EQ(out.count(), 1);
    EXPECT_EQ(out.at(0).at(0).toInt(), 1);
    Move(below + QPoint(200, 0));
    Release(below + QPoint(200, 0));
    QTest::qWait(400); // lets QTabBar's settle animation finish
    EXPECT_EQ(moved.count(), 0);
    EXPECT_EQ(tw->tabText(0), QStringLiteral("Alpha"));
    EXPECT_EQ(tw->tabText(1), QStringLiteral("Beta"));
    EXPECT_EQ(tw->tabText(2), QStringLiteral("Gamma"));
    EXPECT_EQ(out.count(), 1);
    CheckSanity(*tw);
}

TEST_F(TabDragTest, TakingTheTabFromTheDragOutHandlerIsSafe)
{
    std::unique_ptr<QWidget> floated;
    QObject::connect(bar, &VTabBarBase::TabDragOut, tw.get(),
                     [&](int index, const QPoint&) { floated.reset(tw->takeTab(index)); });
    bar->setMovable(true); // the bar's reorder drag is under way when the tab goes
    const QPoint start = bar->tabRect(1).center();
    Press(start);
    Move(start + QPoint(8, 0));
    Move(QPoint(start.x(), bar->height() + 40));
    ASSERT_TRUE(floated);
    EXPECT_EQ(floated->objectName(), QString());
    EXPECT_EQ(static_cast<QLabel*>(floated.get())->text(), QStringLiteral("Beta"));
    Move(QPoint(start.x() + 30, bar->height() + 60));
    Release(QPoint(start.x() + 30, bar->height() + 60));
    EXPECT_EQ(tw->count(), 2);
    EXPECT_EQ(tw->tabText(0), QStringLiteral("Alpha"));
    EXPECT_EQ(tw->tabText(1), QStringLiteral("Gamma"));
    QTest::qWait(400); // lets QTabBar's settle animation run over the changed tabs

    // The bar still works normally afterwards.
    QTest::mouseClick(bar, Qt::LeftButton, Qt::NoModifier, bar->tabRect(1).center());
    EXPECT_EQ(tw->currentIndex(), 1);
    CheckSanity(*tw);
}

} // namespace
