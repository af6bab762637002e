// Tab frame pieces the object model relies on: the frame lookup of objects, the stock id
// fallback and the usage-report tab positions.

#include "tests/uiframe/FoundationTestSupport.h"

#include "UIFrame/TabFrame/TabFrameBase.h"
#include "UIFrame/TabFrame/WidgetReportHelper.h"

#include <gtest/gtest.h>

using namespace uiframe_test;

TEST(WidgetReportHelper, TabPositionOfEveryFrameKey)
{
    const struct
    {
        EnVXTabFrameKey key;
        unsigned int value;
        const char* text;
    } rows[] = {
        {TabFrameKey_WatchList, 20001, "0"},
        {TabFrameKey_Market, 20002, "2"},
        {TabFrameKey_Account, 20003, "1"},
        {TabFrameKey_PanelWorkspace, 20004, "3"},
        {TabFrameKey_Information, 20005, "7"},
        {TabFrameKey_PaperTrading, 20009, "13"},
        {TabFrameKey_Quantitative, 20010, "8"},
        {TabFrameKey_Options, 20013, "5"},
        {TabFrameKey_Discovery, 20017, "4"},
        {TabFrameKey_Screener, 20018, "6"},
        {TabFrameKey_Shortcut, 20019, "12"},
        {TabFrameKey_Message, 21002, "10"},
        {TabFrameKey_Chat, 21003, "11"},
        {TabFrameKey_CommunityCircle, 21004, "9"},
        {TabFrameKey_Module20101, 20101, ""},
        {TabFrameKey_Module20102, 20102, ""},
        {TabFrameKey_Module20103, 20103, ""},
        {TabFrameKey_Module20104, 20104, ""},
        {TabFrameKey_None, 0, ""},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(static_cast<unsigned int>(row.key), row.value);
        EXPECT_EQ(CVXWidgetReportHelper::GetReportTabPosStringByTabFrameKey(row.key).toStdString(), row.text)
            << row.value;
    }
    EXPECT_TRUE(CVXWidgetReportHelper::GetReportTabPosStringByTabFrameKey(static_cast<EnVXTabFrameKey>(12345))
                    .isEmpty());

    // The table is filled in this order, ending with the "none" row that lookups never reach.
    std::vector<unsigned int> order;
    for (const auto& entry : CVXWidgetReportHelper::ReportTabPosEntries())
        order.push_back(entry.first);
    EXPECT_EQ(order, (std::vector<unsigned int>{20001, 20003, 20002, 20004, 20017, 20013, 20018, 20005, 20010,
                                                21004, 21002, 21003, 20019, 20009, 0}));
    EXPECT_STREQ(CVXWidgetReportHelper::ReportTabPosEntries().back().second, "-1");
}

TEST(WidgetReportHelper, WidgetsAndCardsReportTheirFramesPosition)
{
    CVXTabFrameBase frame;
    frame.SetTabFrameKey(TabFrameKey_Options);
    auto* page = new QWidget(&frame);
    auto* inner = new QWidget(page);
    auto* card = new CTestCard(CardPos_TabFramePage, inner);
    QWidget loose;

    EXPECT_EQ(CVXWidgetReportHelper::GetReportTabPosString(inner), QStringLiteral("5"));
    EXPECT_EQ(CVXWidgetReportHelper::GetReportTabPosString(&frame), QStringLiteral("5"));
    EXPECT_TRUE(CVXWidgetReportHelper::GetReportTabPosString(&loose).isEmpty());
    EXPECT_TRUE(CVXWidgetReportHelper::GetReportTabPosString(nullptr).isEmpty());
    EXPECT_EQ(CVXWidgetReportHelper::GetCardReportTabPosString(card), QStringLiteral("5"));
    EXPECT_TRUE(CVXWidgetReportHelper::GetCardReportTabPosString(nullptr).isEmpty());

    // A frame set explicitly wins over the widget's ancestors.
    CVXTabFrameBase other;
    other.SetTabFrameKey(TabFrameKey_Chat);
    card->SetTabFrame(&other);
    EXPECT_EQ(CVXWidgetReportHelper::GetCardReportTabPosString(card), QStringLiteral("11"));
}

TEST(TabFrameBase, DefaultsAndObjectFrameLookup)
{
    CVXTabFrameBase frame;
    EXPECT_EQ(frame.GetTabFrameKey(), TabFrameKey_None);
    EXPECT_EQ(frame.GetExpandedRegion(), nullptr);
    EXPECT_TRUE(frame.CanRecordFootPrint());
    EXPECT_EQ(frame.CurrentPage(), nullptr);
    EXPECT_EQ(frame.ContainerKind(), EnVXUIEventContainerKind::TabFrame);

    auto* card = new CTestCard(CardPos_TabFramePage, new QWidget(&frame));
    EXPECT_EQ(card->GetTabFrame(), &frame);
    CTestCard orphan;
    EXPECT_EQ(orphan.GetTabFrame(), nullptr);
    CVXObjBase notAWidget;
    EXPECT_EQ(notAWidget.GetTabFrame(), nullptr);

    // A frame set explicitly and then destroyed is forgotten.
    auto* gone = new CVXTabFrameBase;
    orphan.SetTabFrame(gone);
    EXPECT_EQ(orphan.GetTabFrame(), gone);
    delete gone;
    EXPECT_EQ(orphan.GetTabFrame(), nullptr);
}

TEST(TabFrameBase, StockIDFallsBackToTheFrameExceptInThePanelWorkspace)
{
    CVXTabFrameBase frame;
    frame.SetTabFrameKey(TabFrameKey_WatchList);
    frame.SetStockID(1234);
    auto* card = new CTestCard(CardPos_TabFramePage, &frame);
    EXPECT_EQ(card->GetStockID(), 1234u);
    EXPECT_EQ(card->GetOwnStockID(), 0u);

    card->SetStockID(55);
    EXPECT_EQ(card->GetStockID(), 55u);
    card->SetStockID(0);
    EXPECT_EQ(card->GetStockID(), 1234u);

    frame.SetTabFrameKey(TabFrameKey_PanelWorkspace);
    EXPECT_EQ(card->GetStockID(), 0u);

    CTestCard orphan;
    EXPECT_EQ(orphan.GetStockID(), 0u);
}

TEST(ObjBase, DefaultsStoreOrReturnEmpty)
{
    CVXObjBase obj;
    obj.SetObjType(4);
    obj.SetObjKey(99);
    obj.SetTabFramePageKey(20003);
    EXPECT_EQ(obj.GetObjType(), 4);
    EXPECT_EQ(obj.GetObjKey(), 99u);
    EXPECT_EQ(obj.GetTabFramePageKey(), 20003u);
    EXPECT_FALSE(obj.IsBlockObjSyncUpEvent());
    obj.BlockObjSyncUpEvent(true);
    EXPECT_TRUE(obj.IsBlockObjSyncUpEvent());

    CVXVariantMapTree account;
    account.Set<int>(QStringLiteral("A"), 1);
    obj.SetAccountInfo(account);
    obj.SetComboOptionInfo(account);
    obj.SetOptionIndexInfo(account);
    EXPECT_TRUE(obj.GetAccountInfo().IsEmpty());
    EXPECT_TRUE(obj.GetComboOptionInfo().IsEmpty());
    EXPECT_TRUE(obj.GetOptionIndexInfo().IsEmpty());

    CVXVariantMapTree saved;
    obj.GetObjRestoreData(&saved);
    obj.GetObjFootPrintData(&saved);
    EXPECT_TRUE(saved.IsEmpty());
}
