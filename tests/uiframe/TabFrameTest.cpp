// Tab frames and pages: the jump-from key, opening a frame with jump data and going back over
// the real bus, the expanded-region rules, page context events from real cards, stacked inner
// pages, the page factory, the lookup utilities and the usage-report helpers.

#include "tests/uiframe/FoundationTestSupport.h"

#include "UIFrame/CardTypes.h"
#include "UIFrame/ModuleInterfaces.h"
#include "UIFrame/TabFrame/StackedTabFramePageBase.h"
#include "UIFrame/TabFrame/TabFrameBase.h"
#include "UIFrame/TabFrame/TabFramePageBase.h"
#include "UIFrame/TabFrame/TabFramePageFactory.h"
#include "UIFrame/TabFrame/TabFramePageUtil.h"
#include "UIFrame/TabFrame/TradeDeveloperPage.h"
#include "UIFrame/TabFrame/WidgetReportHelper.h"
#include "UIFrame/VariantMapTreeAccess.h"

#include "Platform/Core/MessageDispatch.h"
#include "Platform/Core/PluginCenter.h"
#include "Platform/Core/message_body.pb.h"

#include "tests/common/TestSupport.h"

#include <QApplication>
#include <QStackedWidget>

#include <json/reader.h>

#include <gtest/gtest.h>

#include <set>

using namespace uiframe_test;

namespace {

// The main frame module as the plug-in centre hands it out; records what it is asked.
class CRecordingMainFrame : public IMainFrameModuleUtil
{
public:
    bool IsMainFrameExist() const override { return exists; }
    void SwitchTabFrame(EnVXTabFrameKey key, const CVXVariantMapTree& jumpData) override
    {
        switches.emplace_back(key, jumpData);
    }
    bool IsExpandedRegionHidden() const override { return regionHidden; }

    bool exists = true;
    bool regionHidden = false;
    std::vector<std::pair<EnVXTabFrameKey, CVXVariantMapTree>> switches;
};

// A page that records the context its cards push.
class CRecordingPage : public CVXTabFramePageBase
{
public:
    using CVXTabFramePageBase::CVXTabFramePageBase;
    void Init() override { ++inits; }

    std::vector<unsigned long long> stockIDs;
    std::vector<QString> accounts;
    std::vector<int> optionIndexes;
    int inits = 0;

protected:
    void OnCardEventStockIDChanged(unsigned long long stockID) override { stockIDs.push_back(stockID); }
    void OnCardEventAccountInfoChanged(const CVXVariantMapTree& info) override
    {
        accounts.push_back(info.Get<QString>(QStringLiteral("AccountID")));
    }
    void OnCardEventOptionIndexChanged(const CVXVariantMapTree& info) override
    {
        optionIndexes.push_back(info.Get<int>(QStringLiteral("Index"), -1));
    }
};

class CFrameWithSettings : public CVXTabFrameBase
{
public:
    using CVXTabFrameBase::CVXTabFrameBase;
    bool CanRecordFootPrint() const override { return recordFootPrint; }
    bool IsOutSideMode() const override { return outside; }
    bool recordFootPrint = true;
    bool outside = false;
};

template <typename Page> class TPageFactory : public CVXTabFramePageFactory::PageFactory
{
public:
    CVXTabFramePageBase* create() const override
    {
        ++created;
        return new Page;
    }
    void afterSetParent(CVXTabFramePageBase* page) const override
    {
        parentAtAfterSetParent = page->parentWidget();
    }
    mutable int created = 0;
    mutable QWidget* parentAtAfterSetParent = nullptr;
};

// An inner page that keeps a text as its state and remembers its jump information.
class CInnerPage : public QWidget, public CVXRestoreBase
{
public:
    explicit CInnerPage(const CVXVariantMapTree& jump) : jumpInfo(jump) {}
    using CVXRestoreBase::GetObjRestoreData;
    using CVXRestoreBase::SetObjRestoreData;
    void GetObjRestoreData(CVXVariantMapTree* data) const override
    {
        data->Set<QString>(QStringLiteral("state"), state);
    }
    void SetObjRestoreData(const CVXVariantMapTree& data) override
    {
        state = data.Get<QString>(QStringLiteral("state"));
    }
    CVXVariantMapTree jumpInfo;
    QString state;
};

class CInnerPageFactory : public CVXStackedTabFramePageBase::InnerPageFactory
{
public:
    QWidget* create(const CVXVariantMapTree& jump) const override
    {
        ++created;
        return new CInnerPage(jump);
    }
    mutable int created = 0;
};

CVXVariantMapTree Jump(const QString& target)
{
    CVXVariantMapTree tree;
    tree.Set<QString>(QStringLiteral("target"), target);
    return tree;
}

Json::Value ParseLine(const std::string& line)
{
    Json::Value value;
    std::unique_ptr<Json::CharReader> reader(Json::CharReaderBuilder().newCharReader());
    std::string errors;
    EXPECT_TRUE(reader->parse(line.data(), line.data() + line.size(), &value, &errors)) << errors;
    return value;
}

} // namespace

class TabFrameTest : public FoundationTest
{
protected:
    void SetUp() override
    {
        ITabFramePageUtil::ResetForTest();
        CVXTabFramePageFactory::Instance().ResetForTest();
    }
    void TearDown() override
    {
        core::IVXPluginCenter::Instance().ResetForTest();
        CVXTabFramePageFactory::Instance().ResetForTest();
        ITabFramePageUtil::ResetForTest();
    }

    std::shared_ptr<CRecordingMainFrame> RegisterMainFrame()
    {
        auto mainFrame = std::make_shared<CRecordingMainFrame>();
        core::IVXPluginCenter::Instance().Register<IMainFrameModuleUtil>([mainFrame] { return mainFrame; });
        return mainFrame;
    }

    ITabFramePageUtil& util() { return ITabFramePageUtil::Instance(); }
};

TEST_F(TabFrameTest, ClearingTheJumpFromKeyForgetsItOnlyForAnotherFrame)
{
    const struct
    {
        unsigned int remembered;
        unsigned int given;
        unsigned int after;
    } rows[] = {
        {20002, 20001, 0},     // another frame was reached: the way back is gone
        {20002, 20002, 20002}, // the remembered frame itself: kept
        {20002, 0, 20002},     // no frame given: kept
        {0, 20001, 0},         // nothing remembered: stays nothing
        {21004, 20004, 0},
    };
    for (const auto& row : rows) {
        util().SetJumpFromTabFrameKey(static_cast<EnVXTabFrameKey>(row.remembered));
        util().ClearJumpFromTabFrameKey(static_cast<EnVXTabFrameKey>(row.given));
        EXPECT_EQ(static_cast<unsigned int>(util().GetJumpFromTabFrameKey()), row.after)
            << row.remembered << " cleared with " << row.given;
    }
}

TEST_F(TabFrameTest, Message20050Parameter1202SwitchesBackToTheRememberedFrame)
{
    auto mainFrame = RegisterMainFrame();
    core::__CMessageDispatch& bus = core::__CMessageDispatch::Instance();

    // Nothing remembered: nothing happens.
    bus.Send(20050, 1202, true);
    EXPECT_TRUE(mainFrame->switches.empty());
    EXPECT_FALSE(vxtest::HasLog("SwitchTab"));

    util().SetJumpFromTabFrameKey(TabFrameKey_Account);
    // Another parameter is not the way back.
    bus.Send(20050, 1201, true);
    EXPECT_TRUE(mainFrame->switches.empty());

    // No main frame window yet.
    mainFrame->exists = false;
    bus.Send(20050, 1202, true);
    EXPECT_TRUE(mainFrame->switches.empty());

    mainFrame->exists = true;
    bus.Send(20050, 1202, true);
    ASSERT_EQ(mainFrame->switches.size(), 1u);
    EXPECT_EQ(mainFrame->switches[0].first, TabFrameKey_Account);
    EXPECT_EQ(mainFrame->switches[0].second, CVXVariantMapTree());
    EXPECT_TRUE(vxtest::HasLog("ITabFramePageUtil::OnMsgNofityProc SwitchTab enTabFrameKey:20003"));
}

TEST_F(TabFrameTest, Message20050WithoutAMainFrameModuleDoesNothing)
{
    util().SetJumpFromTabFrameKey(TabFrameKey_Market);
    core::__CMessageDispatch::Instance().Send(20050, 1202, true);
    EXPECT_EQ(util().GetMainFrame(), nullptr);
    EXPECT_FALSE(vxtest::HasLog("SwitchTab"));
    EXPECT_EQ(util().GetJumpFromTabFrameKey(), TabFrameKey_Market);
}

TEST_F(TabFrameTest, OpeningAFrameWithJumpDataSends20160WithTheSerialisedTree)
{
    int tag = 0;
    std::vector<std::pair<unsigned long long, CVXVariantMapTree>> received;
    core::__CMessageDispatch::Instance().Bind(
        20160,
        [&received](unsigned int, unsigned long long param, const core::CMessageBody& body) {
            CVXVariantMapTree tree;
            const std::string& bytes = body.exdata();
            EXPECT_TRUE(tree.ParseFromQByteArray(QByteArray(bytes.data(), static_cast<int>(bytes.size()))));
            received.emplace_back(param, tree);
        },
        &tag);

    CVXVariantMapTree jump;
    jump.Set<QString>(QStringLiteral("page"), QStringLiteral("ranking"));
    jump.Set<qulonglong>(QStringLiteral("stock"), 700ULL);
    jump.Child(QStringLiteral("filter")).Set<int>(QStringLiteral("market"), 2);
    util().OpenTabFrameWithJumpData(TabFrameKey_Discovery, jump);
    core::__CMessageDispatch::Instance().UnBind(20160, &tag);

    // Delivered before the call returned.
    ASSERT_EQ(received.size(), 1u);
    EXPECT_EQ(received[0].first, 20017u);
    EXPECT_EQ(received[0].second.Get<QString>(QStringLiteral("page")), QStringLiteral("ranking"));
    EXPECT_EQ(received[0].second.Get<qulonglong>(QStringLiteral("stock")), 700ULL);
    EXPECT_EQ(received[0].second.Child(QStringLiteral("filter")).Get<int>(QStringLiteral("market"), -1), 2);
}

TEST_F(TabFrameTest, HidingSetNamesExactlyTheFramesWithoutExpandedRegion)
{
    const std::set<unsigned int> hiding = {20010, 20017, 20019, 20005, 20009, 20101, 20102, 20103, 20104};
    for (unsigned int key :
         {0u,     20001u, 20002u, 20003u, 20004u, 20005u, 20009u, 20010u, 20013u, 20017u,
          20018u, 20019u, 20101u, 20102u, 20103u, 20104u, 21002u, 21003u, 21004u, 12345u}) {
        EXPECT_EQ(IsHideExpandedRegion(static_cast<EnVXTabFrameKey>(key)), hiding.count(key) == 1) << key;
    }
}

TEST_F(TabFrameTest, PagesOfADiscoveryFrameNeverShowTheExpandedRegion)
{
    CVXTabFrameBase frame;
    auto* region = new QWidget(&frame);
    frame.SetExpandedRegion(region);
    auto* page = new CRecordingPage;
    frame.SetPage(page);
    frame.show();
    ASSERT_FALSE(region->isHidden());

    frame.SetTabFrameKey(TabFrameKey_Discovery);
    EXPECT_TRUE(page->IsHideExpandedRegion());

    // An ordinary frame follows its region's own hidden flag.
    frame.SetTabFrameKey(TabFrameKey_Market);
    EXPECT_FALSE(page->IsHideExpandedRegion());
    region->hide();
    EXPECT_TRUE(page->IsHideExpandedRegion());
    region->show();

    // The page's own flag hides it in any frame.
    page->SetHideExpandedRegion(true);
    EXPECT_TRUE(page->IsHideExpandedRegion());
    page->SetHideExpandedRegion(false);

    // A frame without a region: nothing to hide.
    frame.SetExpandedRegion(nullptr);
    EXPECT_FALSE(page->IsHideExpandedRegion());
}

TEST_F(TabFrameTest, PageWithoutFrameAsksTheMainFrame)
{
    CRecordingPage page;
    EXPECT_FALSE(page.IsHideExpandedRegion()); // no main frame module
    auto mainFrame = RegisterMainFrame();
    mainFrame->regionHidden = true;
    EXPECT_TRUE(page.IsHideExpandedRegion());
    mainFrame->exists = false;
    EXPECT_FALSE(page.IsHideExpandedRegion());
    mainFrame->exists = true;
    mainFrame->regionHidden = false;
    EXPECT_FALSE(page.IsHideExpandedRegion());
}

TEST_F(TabFrameTest, CardsOfAPageReachThePagesContextHandlers)
{
    CVXTabFrameBase frame;
    frame.SetTabFrameKey(TabFrameKey_Market);
    auto* page = new CRecordingPage;
    frame.SetPage(page);
    auto* card = new CTestCard(CardPos_TabFramePage, page);

    CardEventStockIDChanged stock(600519);
    core::ui_event::DispatchCardEvent(card, &stock);
    CVXVariantMapTree account;
    account.Set<QString>(QStringLiteral("AccountID"), QStringLiteral("acc-9"));
    CardEventAccountInfoChanged accountEvent(account);
    core::ui_event::DispatchCardEvent(card, &accountEvent);
    CVXVariantMapTree option;
    option.Set<int>(QStringLiteral("Index"), 4);
    CardEventOptionIndexChanged optionEvent(option);
    core::ui_event::DispatchCardEvent(card, &optionEvent);
    // Another event is not one of the page's.
    CardEventClicked click;
    core::ui_event::DispatchCardEvent(card, &click);

    EXPECT_EQ(page->stockIDs, (std::vector<unsigned long long>{600519}));
    EXPECT_EQ(page->accounts, (std::vector<QString>{QStringLiteral("acc-9")}));
    EXPECT_EQ(page->optionIndexes, (std::vector<int>{4}));
}

TEST_F(TabFrameTest, StackedPageSwitchesToInnerPagesAndBack)
{
    CVXTabFrameBase frame;
    frame.SetTabFrameKey(TabFrameKey_Market);
    auto* page = new CVXStackedTabFramePageBase;
    frame.SetPage(page);
    auto* main = new QWidget;
    page->SetMainContent(main);
    auto* listCard = new CTestCard(CardPos_TabFramePage, main);
    auto factory = std::make_shared<CInnerPageFactory>();
    page->RegisterInnerPageFactory(3, factory);
    EXPECT_EQ(page->ContainerKind(), EnVXUIEventContainerKind::StackedTabFramePage);

    // Type -1 is ignored.
    CardEventInnerPageSwitch none;
    core::ui_event::DispatchCardEvent(listCard, &none);
    EXPECT_EQ(factory->created, 0);
    EXPECT_EQ(page->Stack()->currentWidget(), main);

    // Back with no inner page shown stays on the main content.
    CardEventInnerPageBack back;
    core::ui_event::DispatchCardEvent(listCard, &back);
    EXPECT_EQ(page->Stack()->currentIndex(), 0);

    CardEventInnerPageSwitch open;
    open.nInnerJumpPageType = 3;
    open.jumpInfo = Jump(QStringLiteral("row-1"));
    core::ui_event::DispatchCardEvent(listCard, &open);
    ASSERT_EQ(factory->created, 1);
    auto* inner = dynamic_cast<CInnerPage*>(page->InnerPage());
    ASSERT_NE(inner, nullptr);
    EXPECT_EQ(page->Stack()->currentWidget(), inner);
    EXPECT_EQ(inner->jumpInfo.Get<QString>(QStringLiteral("target")), QStringLiteral("row-1"));
    inner->state = QStringLiteral("scrolled to 40");

    // The inner page's own card goes back.
    auto* detailCard = new CTestCard(CardPos_TabFramePage, inner);
    core::ui_event::DispatchCardEvent(detailCard, &back);
    EXPECT_EQ(page->Stack()->currentWidget(), main);
    EXPECT_FALSE(page->IsInnerPageShown());

    // Switching again to the same type gives the new page the state the old one had.
    open.jumpInfo = Jump(QStringLiteral("row-2"));
    core::ui_event::DispatchCardEvent(listCard, &open);
    ASSERT_EQ(factory->created, 2);
    auto* second = dynamic_cast<CInnerPage*>(page->InnerPage());
    ASSERT_NE(second, nullptr);
    EXPECT_NE(second, inner);
    EXPECT_EQ(second->state, QStringLiteral("scrolled to 40"));
    EXPECT_EQ(second->jumpInfo.Get<QString>(QStringLiteral("target")), QStringLiteral("row-2"));

    // A type without factory changes nothing.
    CardEventInnerPageSwitch unknown;
    unknown.nInnerJumpPageType = 8;
    core::ui_event::DispatchCardEvent(listCard, &unknown);
    EXPECT_EQ(page->InnerPage(), second);
    EXPECT_EQ(page->Stack()->currentWidget(), second);
}

TEST_F(TabFrameTest, StackedPageRestoresTheInnerPageThatWasShown)
{
    auto factory = std::make_shared<CInnerPageFactory>();
    CVXVariantMapTree saved;
    {
        CVXStackedTabFramePageBase page;
        page.RegisterInnerPageFactory(5, factory);
        ASSERT_TRUE(page.SwitchToInnerPage(5, Jump(QStringLiteral("x"))));
        static_cast<CInnerPage*>(page.InnerPage())->state = QStringLiteral("tab 2");
        page.GetObjRestoreData(&saved);
    }
    EXPECT_EQ(saved.Get<int>(QStringLiteral("innerPageType"), -9), 5);

    CVXStackedTabFramePageBase restored;
    restored.RegisterInnerPageFactory(5, factory);
    restored.SetObjRestoreData(saved);
    auto* inner = dynamic_cast<CInnerPage*>(restored.InnerPage());
    ASSERT_NE(inner, nullptr);
    EXPECT_TRUE(restored.IsInnerPageShown());
    EXPECT_EQ(inner->state, QStringLiteral("tab 2"));

    // Back on the main content, the record says so.
    restored.BackToMainContent();
    CVXVariantMapTree mainShown;
    restored.GetObjRestoreData(&mainShown);
    EXPECT_EQ(mainShown.Get<int>(QStringLiteral("innerPageType"), -9), -1);
}

TEST_F(TabFrameTest, FrameMakesItsPageThroughTheFactoryOfItsKey)
{
    auto factory = std::make_shared<TPageFactory<CRecordingPage>>();
    CVXTabFramePageFactory::Instance().Register(TabFrameKey_Options, factory);
    CVXTabFramePageFactory::Instance().Register(TabFrameKey_Chat,
                                                std::make_shared<TPageFactory<VXTradeDeveloperPage>>());

    CVXTabFrameBase frame;
    frame.SetTabFrameKey(TabFrameKey_Options);
    ASSERT_TRUE(frame.CreatePageFromFactory());
    auto* page = dynamic_cast<CRecordingPage*>(frame.GetPage());
    ASSERT_NE(page, nullptr);
    EXPECT_EQ(page->parentWidget(), &frame);
    EXPECT_EQ(factory->parentAtAfterSetParent, &frame);
    EXPECT_EQ(page->inits, 1);
    EXPECT_EQ(frame.CurrentPage(), page);

    CVXTabFrameBase chat;
    chat.SetTabFrameKey(TabFrameKey_Chat);
    ASSERT_TRUE(chat.CreatePageFromFactory());
    EXPECT_NE(dynamic_cast<VXTradeDeveloperPage*>(chat.GetPage()), nullptr);
    EXPECT_TRUE(chat.GetPage()->children().isEmpty());

    vxtest::ExpectError("CVXTabFrameBase::CreatePageFromFactory: no page for tab frame key 20018");
    CVXTabFrameBase screener;
    screener.SetTabFrameKey(TabFrameKey_Screener);
    EXPECT_FALSE(screener.CreatePageFromFactory());
    EXPECT_EQ(screener.GetPage(), nullptr);

    CVXTabFramePageFactory::Instance().Register(TabFrameKey_Options, nullptr);
    EXPECT_FALSE(CVXTabFramePageFactory::Instance().Has(TabFrameKey_Options));
}

TEST_F(TabFrameTest, WidgetsFindTheirSurroundings)
{
    CFrameWithSettings frame;
    frame.SetTabFrameKey(TabFrameKey_Market);
    frame.SetStockID(88);
    auto* region = new QWidget(&frame);
    frame.SetExpandedRegion(region);
    auto* page = new CRecordingPage;
    frame.SetPage(page);
    auto* card = new CTestCard(CardPos_TabFramePage, page);
    auto* inside = new QWidget(card);
    QWidget loose;

    EXPECT_EQ(util().GetTabFrameByChildWidget(inside), &frame);
    EXPECT_EQ(util().GetTabFramePageByChildWidget(inside), page);
    EXPECT_EQ(util().GetCardObjByChildWidget(inside), card);
    EXPECT_EQ(util().GetTabFrameStockIDByChildWidget(inside), 88u);
    EXPECT_EQ(util().GetExpandedRegionByChildWidget(inside), region);
    EXPECT_EQ(util().GetPanelBoxFromChildWidget(inside), nullptr);
    EXPECT_EQ(util().GetPanelScrollViewFromChildWidget(inside), nullptr);
    EXPECT_EQ(util().GetTabFrameByChildWidget(&loose), nullptr);
    EXPECT_EQ(util().GetTabFrameStockIDByChildWidget(&loose), 0u);
    EXPECT_EQ(util().GetCardObjByChildWidget(nullptr), nullptr);
    EXPECT_FALSE(util().InTheSamePanelBoxWithFocusWidget(inside));

    EXPECT_TRUE(util().CanRecordFootPrintInfo(inside));
    frame.recordFootPrint = false;
    EXPECT_FALSE(util().CanRecordFootPrintInfo(inside));

    EXPECT_FALSE(page->IsOutSideMode());
    frame.outside = true;
    EXPECT_TRUE(page->IsOutSideMode());
    EXPECT_FALSE(CRecordingPage().IsOutSideMode());

    vxtest::ExpectAssertion("frame");
    EXPECT_FALSE(util().CanRecordFootPrintInfo(&loose));
    EXPECT_EQ(vxtest::CountAssertions("frame"), 1);
}

TEST_F(TabFrameTest, FrameSavesAndRestoresItsPageUnderPage)
{
    auto factory = std::make_shared<CInnerPageFactory>();
    CVXTabFrameBase frame;
    auto* page = new CVXStackedTabFramePageBase;
    page->RegisterInnerPageFactory(2, factory);
    frame.SetPage(page);
    page->SwitchToInnerPage(2, {});
    CVXVariantMapTree saved;
    frame.GetObjRestoreData(&saved);
    EXPECT_EQ(saved.Child(QStringLiteral("page")).Get<int>(QStringLiteral("innerPageType"), -9), 2);

    CVXTabFrameBase other;
    auto* otherPage = new CVXStackedTabFramePageBase;
    otherPage->RegisterInnerPageFactory(2, factory);
    other.SetPage(otherPage);
    other.SetObjRestoreData(saved);
    EXPECT_TRUE(otherPage->IsInnerPageShown());
}

TEST_F(TabFrameTest, ClickReportCarriesTheTabTypeOfTheWidgetsFrame)
{
    CVXTabFrameBase frame;
    frame.SetTabFrameKey(TabFrameKey_Screener);
    auto* button = new QWidget(&frame);
    QWidget loose;

    Json::Value fields(Json::objectValue);
    fields["option_name"] = "2";
    CVXWidgetReportHelper::FillTabTypeToClickReport(button, "ClickFilter", fields);
    CVXWidgetReportHelper::FillTabTypeToClickReport(&loose, "ClickLoose");
    core::report::Flush();

    const std::vector<std::string> lines = m_reports.Lines();
    ASSERT_EQ(lines.size(), 2u);
    const Json::Value first = ParseLine(lines[0]);
    EXPECT_EQ(first["name"].asString(), "ClickFilter");
    EXPECT_EQ(first["fields"]["tab_type"].asString(), "6");
    EXPECT_EQ(first["fields"]["option_name"].asString(), "2");
    const Json::Value second = ParseLine(lines[1]);
    EXPECT_EQ(second["name"].asString(), "ClickLoose");
    EXPECT_EQ(second["fields"]["tab_type"].asString(), "");
}

TEST_F(TabFrameTest, CardTypesMapToTheirReportNames)
{
    const struct
    {
        const char* cardType;
        const char* reportName;
    } rows[] = {
        {"StockHeader", "stock_header"},
        {"Watchlist", "watchlist"},
        {"KLine", "k_line"},
        {"OrderBook", "order_book"},
        {"OptionChains", "option_chains"},
        {"ETFConstituents", "etf_constituents"},
        {"IPOs", "ipos"},
        {"RelativeETFHoding", "relative_etf_hoding"},
        {"NotACardType", ""},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(
            CVXWidgetReportHelper::GetReportCardTypeString(QString::fromLatin1(row.cardType)).toStdString(),
            row.reportName)
            << row.cardType;
    }
    // One row per catalogue entry, and no two card types share a report name.
    const QStringList all = card_types::AllCardTypes();
    EXPECT_EQ(CVXWidgetReportHelper::ReportCardTypeMap().size(), all.size());
    std::set<QString> names;
    for (const QString& type : all) {
        const QString name = CVXWidgetReportHelper::GetReportCardTypeString(type);
        EXPECT_FALSE(name.isEmpty()) << type.toStdString();
        EXPECT_TRUE(names.insert(name).second) << type.toStdString() << " -> " << name.toStdString();
    }
}
