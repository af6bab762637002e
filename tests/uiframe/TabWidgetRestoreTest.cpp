// CVXTabWidgetRestore in real tab widgets: the saved record's shape, tab order restored by id
// and by text, the current tab, lazy pages that take their saved share once, and cards made by
// the card factory that are left to the factory.

#include "tests/uiframe/FoundationTestSupport.h"

#include "UIFrame/CardFactory.h"
#include "UIFrame/CardFactoryMgr.h"
#include "UIFrame/TabFrame/TabWidgetRestore.h"
#include "UIFrame/VariantMapTreeAccess.h"

#include "tests/common/TestSupport.h"

#include <QSignalSpy>

#include <gtest/gtest.h>

#include <limits>

using namespace uiframe_test;

namespace {

constexpr qint64 kNoId = std::numeric_limits<qint64>::min();

// A restorable page that keeps one number and counts what it is given.
class CNumberPage : public QWidget, public CVXRestoreBase
{
public:
    explicit CNumberPage(int value = 0, QWidget* parent = nullptr) : QWidget(parent), value(value) {}

    using CVXRestoreBase::GetObjRestoreData;
    using CVXRestoreBase::SetObjRestoreData;
    void GetObjRestoreData(CVXVariantMapTree* data) const override
    {
        data->Set<int>(QStringLiteral("v"), value);
    }
    void SetObjRestoreData(const CVXVariantMapTree& data) override
    {
        ++restoreCalls;
        value = data.Get<int>(QStringLiteral("v"), -1);
    }
    void GetObjFootPrintData(CVXVariantMapTree* data) const override
    {
        data->Set<QString>(QStringLiteral("step"), step);
    }
    void SetObjFootPrintData(const CVXVariantMapTree& data) override
    {
        ++footPrintCalls;
        step = data.Get<QString>(QStringLiteral("step"));
    }

    int value = 0;
    QString step;
    int restoreCalls = 0;
    int footPrintCalls = 0;
};

class CNumberPageFactory : public vx_std_ui::PageFactory
{
public:
    QWidget* create() const override
    {
        ++created;
        auto* page = new CNumberPage(-100);
        last = page;
        return page;
    }
    mutable int created = 0;
    mutable CNumberPage* last = nullptr;
};

// A card that records the restore data it is given.
class CSavedValueCard : public CVXCardObjBase
{
    Q_OBJECT
public:
    static constexpr const char* kCardType = "SavedValueCard";
    CSavedValueCard(EnVXCardPos pos, QWidget* parent) : CVXCardObjBase(pos, parent) {}
    QString GetCardObjType() override { return QString::fromLatin1(kCardType); }
    void SetCardObjRestoreData(const CVXVariantMapTree& data) override
    {
        received.push_back(data.Get<int>(QStringLiteral("Saved"), -1));
    }
    std::vector<int> received;
};

CVXVariantMapTree Number(int value)
{
    CVXVariantMapTree tree;
    tree.Set<int>(QStringLiteral("v"), value);
    return tree;
}

QVector<qint64> IdsInOrder(const CVXTabWidgetRestore& tabs)
{
    QVector<qint64> ids;
    for (int i = 0; i < tabs.count(); ++i)
        ids.append(tabs.tabID(i));
    return ids;
}

QStringList TextsInOrder(const CVXTabWidgetRestore& tabs)
{
    QStringList texts;
    for (int i = 0; i < tabs.count(); ++i)
        texts.append(tabs.tabText(i));
    return texts;
}

} // namespace

class TabWidgetRestoreTest : public FoundationTest
{
protected:
    void SetUp() override { CVXCardFactoryMgr::Instance().ResetForTest(); }
    void TearDown() override { CVXCardFactoryMgr::Instance().ResetForTest(); }
};

TEST_F(TabWidgetRestoreTest, SavedRecordListsTabsInOrderWithEachPagesDataUnderItsKey)
{
    CVXTabWidgetRestore tabs;
    tabs.addTab(new CNumberPage(11), QStringLiteral("Quotes"), 301);
    tabs.addTab(new CNumberPage(22), QStringLiteral("Notes"));
    tabs.addTab(new QWidget, QStringLiteral("Plain"), 303);
    tabs.setCurrentIndex(1);

    CVXVariantMapTree record;
    tabs.GetObjRestoreData(&record);
    EXPECT_EQ(record.Get<QVector<qint64>>(QStringLiteral("orderId")), (QVector<qint64>{301, kNoId, 303}));
    EXPECT_EQ(record.Get<QVector<QString>>(QStringLiteral("orderText")),
              (QVector<QString>{QStringLiteral("Quotes"), QStringLiteral("Notes"), QStringLiteral("Plain")}));
    EXPECT_EQ(record.Get<int>(QStringLiteral("currentIdx"), -1), 1);
    EXPECT_EQ(record.Child(QStringLiteral("301")).Get<int>(QStringLiteral("v"), -1), 11);
    // A tab without id is keyed by its text.
    EXPECT_EQ(record.Child(QStringLiteral("Notes")).Get<int>(QStringLiteral("v"), -1), 22);
    // A page that is not restorable writes nothing.
    EXPECT_FALSE(record.HasChild(QStringLiteral("303")));

    EXPECT_EQ(tabs.tabID(0), 301);
    EXPECT_EQ(tabs.tabID(1), kNoId);
    EXPECT_EQ(tabs.tabID(7), kNoId);
    EXPECT_EQ(tabs.TabDataKey(0), QStringLiteral("301"));
    EXPECT_EQ(tabs.TabDataKey(1), QStringLiteral("Notes"));
    EXPECT_NE(tabs.Page(0), nullptr);
    EXPECT_EQ(tabs.Page(2), nullptr);
    EXPECT_EQ(tabs.FindTab(qint64(303)), 2);
    EXPECT_EQ(tabs.FindTab(QStringLiteral("Notes")), 1);
    EXPECT_EQ(tabs.FindTab(kNoId), -1);
    EXPECT_EQ(tabs.FindTab(QStringLiteral("Missing")), -1);
}

TEST_F(TabWidgetRestoreTest, RestoreMovesTabsToTheSavedOrderByIdAndGivesEachPageItsData)
{
    // The record as another session saved it: ids 3, 1, 2.
    CVXVariantMapTree record;
    record.Set<QVector<qint64>>(QStringLiteral("orderId"), {3, 1, 2});
    record.Set<QVector<QString>>(QStringLiteral("orderText"),
                                 {QStringLiteral("C"), QStringLiteral("A"), QStringLiteral("B")});
    record.Child(QStringLiteral("1")) = Number(101);
    record.Child(QStringLiteral("2")) = Number(102);
    record.Child(QStringLiteral("3")) = Number(103);

    CVXTabWidgetRestore tabs;
    auto* a = new CNumberPage;
    auto* b = new CNumberPage;
    auto* c = new CNumberPage;
    tabs.addTab(a, QStringLiteral("A"), 1);
    tabs.addTab(b, QStringLiteral("B"), 2);
    tabs.addTab(c, QStringLiteral("C"), 3);
    tabs.setCurrentIndex(0);
    QSignalSpy current(&tabs, &vx_std_ui::VTabWidget::currentChanged);
    EXPECT_FALSE(tabs.HasRestoreData());

    tabs.SetObjRestoreData(record);
    EXPECT_TRUE(tabs.HasRestoreData());
    EXPECT_EQ(IdsInOrder(tabs), (QVector<qint64>{3, 1, 2}));
    EXPECT_EQ(TextsInOrder(tabs), (QStringList{"C", "A", "B"}));
    // Pages moved with their tabs.
    EXPECT_EQ(tabs.widget(0), c);
    EXPECT_EQ(tabs.widget(1), a);
    EXPECT_EQ(tabs.widget(2), b);
    EXPECT_EQ(a->value, 101);
    EXPECT_EQ(b->value, 102);
    EXPECT_EQ(c->value, 103);
    // The current tab stays the same tab; the restore data does not choose it.
    EXPECT_EQ(tabs.currentWidget(), a);
    EXPECT_EQ(current.count(), 0);

    // Positions in the saved order, by id.
    EXPECT_EQ(tabs.GetTabDataIndex(0), 0);
    EXPECT_EQ(tabs.GetTabDataIndex(2), 2);
    const int extra = tabs.addTab(new QWidget, QStringLiteral("New"), 99);
    EXPECT_EQ(tabs.GetTabDataIndex(extra), -1);
}

TEST_F(TabWidgetRestoreTest, TabsTheRecordDoesNotNameStayBehindTheNamedOnesAndMissingOnesAreSkipped)
{
    CVXVariantMapTree record;
    record.Set<QVector<qint64>>(QStringLiteral("orderId"), {5, 42, 2});
    record.Set<QVector<QString>>(QStringLiteral("orderText"),
                                 {QStringLiteral("E"), QStringLiteral("Gone"), QStringLiteral("B")});

    CVXTabWidgetRestore tabs;
    for (qint64 id : {1, 2, 3, 4, 5})
        tabs.addTab(new QWidget, QString(QChar('A' + int(id) - 1)), static_cast<vx_std_ui::TabId>(id));
    tabs.SetObjRestoreData(record);
    EXPECT_EQ(TextsInOrder(tabs), (QStringList{"E", "B", "A", "C", "D"}));
}

TEST_F(TabWidgetRestoreTest, TabWithoutIdIsSavedAndFoundAgainByItsText)
{
    QVector<qint64> savedIds;
    CVXVariantMapTree record;
    {
        CVXTabWidgetRestore first;
        first.addTab(new CNumberPage(7), QStringLiteral("Beta"), 70);
        first.addTab(new CNumberPage(8), QStringLiteral("Alpha"));
        first.GetObjRestoreData(&record);
    }
    ASSERT_EQ(record.Get<QVector<qint64>>(QStringLiteral("orderId")), (QVector<qint64>{70, kNoId}));

    CVXTabWidgetRestore second;
    auto* alpha = new CNumberPage;
    auto* beta = new CNumberPage;
    second.addTab(alpha, QStringLiteral("Alpha"));
    second.addTab(new QWidget, QStringLiteral("Gamma"));
    second.addTab(beta, QStringLiteral("Beta"), 70);
    second.SetObjRestoreData(record);

    EXPECT_EQ(TextsInOrder(second), (QStringList{"Beta", "Alpha", "Gamma"}));
    EXPECT_EQ(alpha->value, 8);
    EXPECT_EQ(beta->value, 7);
    // A tab without id has no place in the saved order by id.
    EXPECT_EQ(second.GetTabDataIndex(1), -1);
}

TEST_F(TabWidgetRestoreTest, FootPrintRestoreAppliesFootPrintsAndMakesTheSavedTabCurrent)
{
    CVXVariantMapTree footPrint;
    {
        CVXTabWidgetRestore first;
        auto* one = new CNumberPage;
        auto* two = new CNumberPage;
        one->step = QStringLiteral("one/detail");
        two->step = QStringLiteral("two/list");
        first.addTab(one, QStringLiteral("One"), 1);
        first.addTab(two, QStringLiteral("Two"), 2);
        first.addTab(new QWidget, QStringLiteral("Three"), 3);
        first.setCurrentIndex(2);
        first.GetObjFootPrintData(&footPrint);
    }
    EXPECT_EQ(footPrint.Get<int>(QStringLiteral("currentIdx"), -1), 2);
    EXPECT_EQ(footPrint.Child(QStringLiteral("2")).Get<QString>(QStringLiteral("step")),
              QStringLiteral("two/list"));

    CVXTabWidgetRestore second;
    auto* three = new QWidget;
    auto* two = new CNumberPage;
    auto* one = new CNumberPage;
    second.addTab(three, QStringLiteral("Three"), 3);
    second.addTab(two, QStringLiteral("Two"), 2);
    second.addTab(one, QStringLiteral("One"), 1);
    second.setCurrentIndex(1);
    QSignalSpy current(&second, &vx_std_ui::VTabWidget::currentChanged);

    second.SetObjFootPrintData(footPrint);
    EXPECT_EQ(TextsInOrder(second), (QStringList{"One", "Two", "Three"}));
    EXPECT_EQ(one->step, QStringLiteral("one/detail"));
    EXPECT_EQ(two->step, QStringLiteral("two/list"));
    EXPECT_EQ(one->restoreCalls, 0);
    EXPECT_EQ(second.currentIndex(), 2);
    EXPECT_EQ(second.currentWidget(), three);
    EXPECT_EQ(current.count(), 1);
}

TEST_F(TabWidgetRestoreTest, LazyPageCreatedAfterTheRestoreTakesItsSavedDataOnce)
{
    CVXVariantMapTree record;
    record.Set<QVector<qint64>>(QStringLiteral("orderId"), {1, 2});
    record.Set<QVector<QString>>(QStringLiteral("orderText"),
                                 {QStringLiteral("Shown"), QStringLiteral("Lazy")});
    record.Child(QStringLiteral("2")) = Number(202);
    CVXVariantMapTree footPrint = record;
    footPrint.Child(QStringLiteral("2")).Set<QString>(QStringLiteral("step"), QStringLiteral("lazy/inner"));

    QWidget host;
    host.resize(400, 300);
    auto* tabs = new CVXTabWidgetRestore(&host);
    tabs->resize(400, 300);
    auto factory = std::make_shared<CNumberPageFactory>();
    tabs->addTab(new CNumberPage, QStringLiteral("Shown"), 1);
    const int lazy = tabs->addLazyTab(factory, QStringLiteral("Lazy"), 2);
    host.show();
    tabs->SetObjRestoreData(record);

    // Saved before its page exists, the lazy tab hands on what it was given.
    CVXVariantMapTree beforeCreation;
    tabs->GetObjRestoreData(&beforeCreation);
    EXPECT_EQ(beforeCreation.Child(QStringLiteral("2")).Get<int>(QStringLiteral("v"), -1), 202);
    EXPECT_EQ(factory->created, 0);

    tabs->SetObjFootPrintData(footPrint); // currentIdx 0: the lazy tab stays hidden
    EXPECT_EQ(factory->created, 0);

    tabs->setCurrentIndex(lazy);
    ASSERT_EQ(factory->created, 1);
    CNumberPage* page = factory->last;
    EXPECT_EQ(tabs->widget(lazy), page);
    EXPECT_EQ(page->restoreCalls, 1);
    EXPECT_EQ(page->value, 202);
    EXPECT_EQ(page->footPrintCalls, 1);
    EXPECT_EQ(page->step, QStringLiteral("lazy/inner"));

    // The share is used up: a new page for the same tab id starts from nothing.
    tabs->removeTab(lazy);
    const int again = tabs->addLazyTab(factory, QStringLiteral("Lazy"), 2);
    tabs->setCurrentIndex(again);
    ASSERT_EQ(factory->created, 2);
    EXPECT_EQ(factory->last->restoreCalls, 0);
    EXPECT_EQ(factory->last->footPrintCalls, 0);
    EXPECT_EQ(factory->last->value, -100);
}

TEST_F(TabWidgetRestoreTest, LazyPageWithoutARestoreGetsNothing)
{
    QWidget host;
    auto* tabs = new CVXTabWidgetRestore(&host);
    auto factory = std::make_shared<CNumberPageFactory>();
    tabs->addTab(new QWidget, QStringLiteral("First"), 1);
    const int lazy = tabs->addLazyTab(factory, QStringLiteral("Lazy"), 2);
    host.show();
    tabs->setCurrentIndex(lazy);
    ASSERT_EQ(factory->created, 1);
    EXPECT_EQ(factory->last->restoreCalls, 0);
}

TEST_F(TabWidgetRestoreTest, CardsMadeByTheCardFactoryAreLeftToTheCardPath)
{
    CVXCardFactoryMgr::Instance().RegisterFactory(std::make_shared<TplVXCardFactory<CSavedValueCard>>());
    QWidget host;
    auto* tabs = new CVXTabWidgetRestore(&host);
    CVXVariantMapTree held;
    held.Set<int>(QStringLiteral("Saved"), 31);
    auto cardFactory =
        std::make_shared<CVXCardFactory>(&host, QString::fromLatin1(CSavedValueCard::kCardType),
                                         CardPos_TabFramePage, TabFrameKey_Market, CVXVariantMapTree(), held);
    tabs->addTab(new QWidget, QStringLiteral("First"), 1);
    const int lazy = tabs->addLazyTab(cardFactory, QStringLiteral("Card"), 2);
    EXPECT_EQ(tabs->Factory(lazy), cardFactory);
    EXPECT_EQ(tabs->Factory(0), nullptr);

    // An unopened card tab saves what its factory holds.
    CVXVariantMapTree saved;
    tabs->GetObjRestoreData(&saved);
    EXPECT_EQ(saved.Child(QStringLiteral("2")).Get<int>(QStringLiteral("Saved"), -1), 31);

    CVXVariantMapTree record;
    record.Set<QVector<qint64>>(QStringLiteral("orderId"), {1, 2});
    record.Set<QVector<QString>>(QStringLiteral("orderText"),
                                 {QStringLiteral("First"), QStringLiteral("Card")});
    record.Child(QStringLiteral("2")).Set<int>(QStringLiteral("Saved"), 99);
    tabs->SetObjRestoreData(record);
    host.show();
    tabs->setCurrentIndex(lazy);

    auto* card = dynamic_cast<CSavedValueCard*>(tabs->widget(lazy));
    ASSERT_NE(card, nullptr);
    EXPECT_EQ(card->property(CVXCardFactory::kCreatedByPropertyName), QVariant(true));
    // Only the factory's data reached the card, once.
    EXPECT_EQ(card->received, (std::vector<int>{31}));
}

TEST_F(TabWidgetRestoreTest, ConstructorsTakeAStyleOrAReadyBar)
{
    CVXTabWidgetRestore plain;
    EXPECT_EQ(plain.tabBarStyle(), vx_std_ui::VTabWidget::TabBarStyle::Normal);
    EXPECT_FALSE(plain.tabBar()->isMovable());

    CVXTabWidgetRestore document(vx_std_ui::VTabWidget::TabBarStyle::Document);
    EXPECT_TRUE(document.tabBar()->isMovable());
    EXPECT_TRUE(document.tabBar()->tabsClosable());

    CVXTabWidgetRestore expanding(vx_std_ui::VTabWidget::TabBarStyle::Expanding);
    EXPECT_TRUE(expanding.tabBar()->expanding());

    auto* bar = new vx_std_ui::VTabBarBase;
    bar->setObjectName(QStringLiteral("OwnBar"));
    bar->addTab(QStringLiteral("stray"));
    CVXTabWidgetRestore withBar(bar);
    EXPECT_EQ(withBar.tabBar(), bar);
    EXPECT_NE(bar->parentWidget(), nullptr);
    EXPECT_EQ(withBar.count(), 0); // the stray tab had no page and was dropped
    withBar.addTab(new CNumberPage(5), QStringLiteral("Own"), 8);
    EXPECT_EQ(bar->count(), 1);
    EXPECT_EQ(withBar.tabID(0), 8);
    CVXVariantMapTree record;
    withBar.GetObjRestoreData(&record);
    EXPECT_EQ(record.Child(QStringLiteral("8")).Get<int>(QStringLiteral("v"), -1), 5);
}

#include "TabWidgetRestoreTest.moc"
