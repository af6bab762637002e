// The card factory registry, the factory template and the deferred page factory in a real
// VTabWidget lazy tab.

#include "tests/uiframe/FoundationTestSupport.h"

#include "UIFrame/CardFactory.h"
#include "UIFrame/CardFactoryMgr.h"
#include "UIFrame/VariantMapTreeAccess.h"

#include "tests/common/TestSupport.h"

#include <QSignalSpy>

#include <gtest/gtest.h>

using namespace uiframe_test;

namespace {

// Records the order of the calls that card creation and afterSetParent make.
class CRecordingCard : public CVXCardObjBase
{
    Q_OBJECT
public:
    static constexpr const char* kCardType = "RecordingCard";
    static int constructed;

    CRecordingCard(EnVXCardPos pos, QWidget* parent) : CVXCardObjBase(pos, parent) { ++constructed; }

    static CVXCardBaseStyle StaticCardStyle()
    {
        CVXCardBaseStyle style;
        style.idealSize = QSize(480, 444);
        style.minSize = QSize(240, 244);
        style.maxSize = QSize(5000, 5000);
        style.title = QStringLiteral("Recording");
        return style;
    }
    static const QVariantMap& StaticCardProperties()
    {
        static const QVariantMap properties = {{QStringLiteral("CanShowStockID"), true},
                                               {QStringLiteral("TabRedDot"), 3}};
        return properties;
    }

    QString GetCardObjType() override { return QString::fromLatin1(kCardType); }
    void SetTabFramePageKey(unsigned long long key) override
    {
        Record("SetTabFramePageKey:" + std::to_string(key));
        CVXCardObjBase::SetTabFramePageKey(key);
    }
    void InitWithData(CVXVariantMapTree data) override
    {
        Record("InitWithData:" + std::to_string(data.Get<int>(QStringLiteral("Init"), -1)));
        CVXCardObjBase::InitWithData(data);
    }
    void OnInitContent(QWidget*) override { Record("OnInitContent"); }
    void BlockObjSyncUpEvent(bool block) override
    {
        Record(block ? "Block(true)" : "Block(false)");
        CVXCardObjBase::BlockObjSyncUpEvent(block);
    }
    void SetCardObjRestoreData(const CVXVariantMapTree& data) override
    {
        Record("Restore:" + std::to_string(data.Get<int>(QStringLiteral("Saved"), -1)));
    }
    void SetAccountInfo(const CVXVariantMapTree& info) override
    {
        Record("Account:" + info.Get<QString>(QStringLiteral("AccountID")).toStdString());
        CVXCardObjBase::SetAccountInfo(info);
    }
    void SetStockID(const unsigned long long& id) override
    {
        Record("StockID:" + std::to_string(id));
        CVXCardObjBase::SetStockID(id);
    }
    void SetComboOptionInfo(const CVXVariantMapTree& info) override
    {
        Record("Combo:" + std::to_string(info.Get<int>(QStringLiteral("Legs"), -1)));
    }
    void SetOptionIndexInfo(const CVXVariantMapTree& info) override
    {
        Record("OptionIndex:" + std::to_string(info.Get<int>(QStringLiteral("Index"), -1)));
    }
    void SetObjFootPrintData(const CVXVariantMapTree& data) override
    {
        Record("FootPrint:" + std::to_string(data.Get<int>(QStringLiteral("Step"), -1)));
    }

    std::vector<std::string> calls;

private:
    void Record(const std::string& call)
    {
        // Context pushes happen with sync-up events blocked; the mark shows it.
        calls.push_back(call + (IsBlockObjSyncUpEvent() && call.rfind("Block", 0) != 0 ? " [blocked]" : ""));
    }
};
int CRecordingCard::constructed = 0;

// A card type with neither style nor property table.
class CBareCard : public CVXCardObjBase
{
    Q_OBJECT
public:
    static constexpr const char* kCardType = "BareCard";
    using CVXCardObjBase::CVXCardObjBase;
};

class CAlternativeFactory : public TplVXCardFactory<CBareCard>
{
public:
    QString CardType() const override { return QStringLiteral("RecordingCard"); }
};

} // namespace

class CardFactoryTest : public FoundationTest
{
protected:
    void SetUp() override
    {
        CVXCardFactoryMgr::Instance().ResetForTest();
        CRecordingCard::constructed = 0;
    }
    void TearDown() override { CVXCardFactoryMgr::Instance().ResetForTest(); }
};

TEST_F(CardFactoryTest, RegistrationRefusesNullAndDuplicatesUnlessReplacing)
{
    CVXCardFactoryMgr& registry = CVXCardFactoryMgr::Instance();
    EXPECT_FALSE(registry.RegisterFactory(nullptr));
    EXPECT_FALSE(registry.RegisterFactory(nullptr, true));

    auto first = std::make_shared<TplVXCardFactory<CRecordingCard>>();
    auto second = std::make_shared<CAlternativeFactory>();
    EXPECT_TRUE(registry.RegisterFactory(first));
    EXPECT_FALSE(registry.RegisterFactory(second));
    std::unique_ptr<CVXCardObjBase> kept(registry.CreateCard(
        QStringLiteral("RecordingCard"), CardPos_PanelBox, TabFrameKey_None, {}, nullptr));
    EXPECT_NE(dynamic_cast<CRecordingCard*>(kept.get()), nullptr);

    EXPECT_TRUE(registry.RegisterFactory(second, true));
    std::unique_ptr<CVXCardObjBase> replaced(registry.CreateCard(
        QStringLiteral("RecordingCard"), CardPos_PanelBox, TabFrameKey_None, {}, nullptr));
    EXPECT_NE(dynamic_cast<CBareCard*>(replaced.get()), nullptr);
    EXPECT_EQ(registry.RegisteredCardTypes(), QStringList{QStringLiteral("RecordingCard")});

    registry.UnRegisterFactory(QStringLiteral("RecordingCard"));
    registry.UnRegisterFactory(QStringLiteral("NeverRegistered"));
    EXPECT_FALSE(registry.HasFactory(QStringLiteral("RecordingCard")));
}

TEST_F(CardFactoryTest, CreateCardRunsItsStepsInOrder)
{
    CVXCardFactoryMgr& registry = CVXCardFactoryMgr::Instance();
    registry.RegisterFactory(std::make_shared<TplVXCardFactory<CRecordingCard>>());
    QWidget parent;
    CVXVariantMapTree init;
    init.Set<int>(QStringLiteral("Init"), 8);

    CVXCardObjBase* card = registry.CreateCard(QStringLiteral("RecordingCard"), CardPos_TabFramePage,
                                               TabFrameKey_Options, init, &parent);
    auto* recording = dynamic_cast<CRecordingCard*>(card);
    ASSERT_NE(recording, nullptr);
    EXPECT_EQ(card->parentWidget(), &parent);
    EXPECT_EQ(card->GetCardPos(), CardPos_TabFramePage);
    EXPECT_EQ(card->GetTabFramePageKey(), 20013u);
    EXPECT_EQ(recording->calls,
              (std::vector<std::string>{"SetTabFramePageKey:20013", "InitWithData:8", "OnInitContent"}));
    EXPECT_EQ(card->GetInitData().Get<int>(QStringLiteral("Init")), 8);

    // The card got a copy: later changes of the caller's tree do not reach it.
    init.Set<int>(QStringLiteral("Init"), 9);
    EXPECT_EQ(card->GetInitData().Get<int>(QStringLiteral("Init")), 8);

    EXPECT_EQ(
        registry.CreateCard(QStringLiteral("Unknown"), CardPos_PanelBox, TabFrameKey_None, init, &parent),
        nullptr);
    EXPECT_EQ(CRecordingCard::constructed, 1);
    EXPECT_EQ(parent.findChildren<CVXCardObjBase*>().size(), 1);
}

TEST_F(CardFactoryTest, StyleAndStaticPropertiesComeFromTheCardClass)
{
    CVXCardFactoryMgr& registry = CVXCardFactoryMgr::Instance();
    registry.RegisterFactory(std::make_shared<TplVXCardFactory<CRecordingCard>>());
    registry.RegisterFactory(std::make_shared<TplVXCardFactory<CBareCard>>());

    CVXCardBaseStyle style;
    style.title = QStringLiteral("untouched");
    EXPECT_FALSE(registry.GetCardStyle(QStringLiteral("Unknown"), &style));
    EXPECT_EQ(style.title, QStringLiteral("untouched"));

    EXPECT_TRUE(registry.GetCardStyle(QStringLiteral("RecordingCard"), nullptr));
    ASSERT_TRUE(registry.GetCardStyle(QStringLiteral("RecordingCard"), &style));
    EXPECT_EQ(style.idealSize, QSize(480, 444));
    EXPECT_EQ(style.minSize, QSize(240, 244));
    EXPECT_EQ(style.maxSize, QSize(5000, 5000));
    EXPECT_EQ(style.title, QStringLiteral("Recording"));

    ASSERT_TRUE(registry.GetCardStyle(QStringLiteral("BareCard"), &style));
    EXPECT_EQ(style.idealSize, QSize(-1, -1));
    EXPECT_EQ(style.minSize, QSize(-1, -1));
    EXPECT_EQ(style.maxSize, QSize(-1, -1));
    EXPECT_TRUE(style.title.isEmpty());

    EXPECT_EQ(registry.GetCardStaticProperty(QStringLiteral("RecordingCard"), QStringLiteral("TabRedDot"), 0),
              3);
    EXPECT_EQ(registry.GetCardStaticProperty(QStringLiteral("RecordingCard"), QStringLiteral("Missing"), 42),
              42);
    EXPECT_EQ(registry.GetCardStaticProperty(QStringLiteral("BareCard"), QStringLiteral("TabRedDot"), 7), 7);
    const QVariant unknown =
        registry.GetCardStaticProperty(QStringLiteral("Unknown"), QStringLiteral("TabRedDot"), 7);
    EXPECT_FALSE(unknown.isValid());

    TplVXCardFactory<CRecordingCard> factory;
    EXPECT_EQ(factory.CardType(), QStringLiteral("RecordingCard"));
}

TEST_F(CardFactoryTest, LazyTabCreatesTheCardOnFirstShowAndPushesTheBoxContext)
{
    CVXCardFactoryMgr::Instance().RegisterFactory(std::make_shared<TplVXCardFactory<CRecordingCard>>());
    QWidget host;
    auto* box = new CTestBox(&host);
    box->SetStockID(606);
    CVXVariantMapTree account;
    account.Set<QString>(QStringLiteral("AccountID"), QStringLiteral("acc-1"));
    box->SetAccountInfo(account);
    box->comboOptionInfo.Set<int>(QStringLiteral("Legs"), 2);
    CVXVariantMapTree optionIndex;
    optionIndex.Set<int>(QStringLiteral("Index"), 5);
    box->SetOptionIndexInfo(optionIndex);

    CVXVariantMapTree init;
    init.Set<int>(QStringLiteral("Init"), 1);
    CVXVariantMapTree restore;
    restore.Set<int>(QStringLiteral("Saved"), 77);
    auto factory = std::make_shared<CVXCardFactory>(box, QStringLiteral("RecordingCard"), CardPos_PanelBox,
                                                    TabFrameKey_PanelWorkspace, init, restore);
    CVXVariantMapTree footPrint;
    footPrint.Set<int>(QStringLiteral("Step"), 2);
    factory->SetFootPrintData(footPrint);

    box->m_pTabs->addTab(new QWidget, QStringLiteral("first"));
    const int lazy = box->m_pTabs->addLazyTab(factory, QStringLiteral("lazy"));
    host.show();
    EXPECT_EQ(CRecordingCard::constructed, 0);
    EXPECT_FALSE(box->m_pTabs->isPageCreated(lazy));

    QSignalSpy created(box->m_pTabs, &vx_std_ui::VTabWidget::pageCreated);
    box->m_pTabs->setCurrentIndex(lazy);
    ASSERT_EQ(CRecordingCard::constructed, 1);
    ASSERT_EQ(created.count(), 1);
    auto* card = dynamic_cast<CRecordingCard*>(box->m_pTabs->widget(lazy));
    ASSERT_NE(card, nullptr);
    EXPECT_EQ(card->property("CreatedByCVXCardFactory"), QVariant(true));
    EXPECT_EQ(card->calls,
              (std::vector<std::string>{"SetTabFramePageKey:20004", "InitWithData:1", "OnInitContent",
                                        "Block(true)", "Restore:77 [blocked]", "Account:acc-1 [blocked]",
                                        "StockID:606 [blocked]", "Combo:2 [blocked]",
                                        "OptionIndex:5 [blocked]", "FootPrint:2 [blocked]", "Block(false)"}));
    EXPECT_FALSE(card->IsBlockObjSyncUpEvent());

    // Showing the tab again creates nothing more.
    box->m_pTabs->setCurrentIndex(0);
    box->m_pTabs->setCurrentIndex(lazy);
    EXPECT_EQ(CRecordingCard::constructed, 1);
}

TEST_F(CardFactoryTest, AfterSetParentSkipsEmptyContextAndNonCards)
{
    CVXCardFactoryMgr::Instance().RegisterFactory(std::make_shared<TplVXCardFactory<CRecordingCard>>());
    CTestBox box;
    CVXCardFactory factory(&box, QStringLiteral("RecordingCard"), CardPos_PanelBox, TabFrameKey_None, {}, {});
    std::unique_ptr<QWidget> page(factory.create());
    auto* card = dynamic_cast<CRecordingCard*>(page.get());
    ASSERT_NE(card, nullptr);
    card->calls.clear();
    factory.afterSetParent(card);
    EXPECT_EQ(card->calls, (std::vector<std::string>{"Block(true)", "Restore:-1 [blocked]", "Block(false)"}));

    QWidget notACard;
    factory.afterSetParent(&notACard);
    factory.afterSetParent(nullptr);

    // A parent that is not a box: only the card's own data.
    QWidget plainParent;
    CVXCardFactory loose(&plainParent, QStringLiteral("RecordingCard"), CardPos_PanelBox, TabFrameKey_None,
                         {}, {});
    card->calls.clear();
    box.SetStockID(1);
    loose.afterSetParent(card);
    EXPECT_EQ(card->calls, (std::vector<std::string>{"Block(true)", "Restore:-1 [blocked]", "Block(false)"}));

    CVXCardFactory unknown(&box, QStringLiteral("Unknown"), CardPos_PanelBox, TabFrameKey_None, {}, {});
    EXPECT_EQ(unknown.create(), nullptr);
}

#include "CardFactoryTest.moc"
