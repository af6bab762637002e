// The card's exposure report: one timer line per visible stretch, written through the report
// service with type 2, value 100 and the four string fields.

#include "tests/uiframe/FoundationTestSupport.h"

#include "UIFrame/TabFrame/TabFrameBase.h"

#include "tests/common/TestSupport.h"

#include <json/reader.h>

#include <gtest/gtest.h>

#include <memory>

using namespace uiframe_test;

namespace {

class CQuoteCard : public CVXCardObjBase
{
    Q_OBJECT
public:
    using CVXCardObjBase::CVXCardObjBase;
    QString GetCardObjType() override { return QStringLiteral("StockHeader"); }
};

Json::Value Parse(const std::string& line)
{
    Json::Value value;
    std::unique_ptr<Json::CharReader> reader(Json::CharReaderBuilder().newCharReader());
    std::string errors;
    EXPECT_TRUE(reader->parse(line.data(), line.data() + line.size(), &value, &errors)) << errors;
    return value;
}

void ExpectExposureLine(const std::string& line, const char* stockID, const char* cardType,
                        const char* tabType, const char* position)
{
    const Json::Value value = Parse(line);
    EXPECT_EQ(value["kind"].asString(), "timer");
    EXPECT_EQ(value["type"].asInt(), 2);
    EXPECT_EQ(value["value"].asInt(), 100);
    const Json::Value& fields = value["fields"];
    EXPECT_EQ(fields.getMemberNames(),
              (std::vector<std::string>{"card_position", "card_type", "stock_id", "tab_type"}));
    for (const char* key : {"card_position", "card_type", "stock_id", "tab_type"})
        EXPECT_TRUE(fields[key].isString()) << key;
    EXPECT_EQ(fields["stock_id"].asString(), stockID);
    EXPECT_EQ(fields["card_type"].asString(), cardType);
    EXPECT_EQ(fields["tab_type"].asString(), tabType);
    EXPECT_EQ(fields["card_position"].asString(), position);
}

} // namespace

class ExposureReportTest : public FoundationTest
{
};

TEST_F(ExposureReportTest, OneLinePerVisibleStretchWithTheCardContext)
{
    CVXTabFrameBase frame;
    frame.SetTabFrameKey(TabFrameKey_PanelWorkspace);
    auto* card = new CQuoteCard(CardPos_PanelBox, &frame);
    card->SetStockID(700);
    EXPECT_TRUE(m_reports.Lines().empty()); // hidden: nothing runs

    frame.show();
    EXPECT_TRUE(m_reports.Lines().empty());
    frame.hide();
    ASSERT_EQ(m_reports.Lines().size(), 1u);
    ExpectExposureLine(m_reports.Lines()[0], "700", "StockHeader", "3", "3");

    // A stock change while visible ends the stretch of the old stock.
    frame.show();
    card->SetStockID(701);
    ASSERT_EQ(m_reports.Lines().size(), 2u);
    ExpectExposureLine(m_reports.Lines()[1], "700", "StockHeader", "3", "3");

    // Destruction ends the running report.
    delete card;
    ASSERT_EQ(m_reports.Lines().size(), 3u);
    ExpectExposureLine(m_reports.Lines()[2], "701", "StockHeader", "3", "3");
}

TEST_F(ExposureReportTest, CardTypeUpdatesAndTheUnknownTypeCancels)
{
    vxtest::ExpectAssertion("!strCardType.empty()");
    CVXTabFrameBase frame;
    frame.SetTabFrameKey(TabFrameKey_Market);
    auto* card = new CQuoteCard(CardPos_TabFramePage, &frame);
    frame.show();

    card->UpdateExposureParamCardType("");
    EXPECT_EQ(vxtest::CountAssertions("!strCardType.empty()"), 1);
    card->UpdateExposureParamCardType("StockHeader"); // the current type: nothing
    EXPECT_TRUE(m_reports.Lines().empty());

    card->UpdateExposureParamCardType("KLineQuote");
    ASSERT_EQ(m_reports.Lines().size(), 1u);
    ExpectExposureLine(m_reports.Lines()[0], "0", "StockHeader", "2", "1");

    frame.hide();
    frame.show();
    frame.hide();
    ASSERT_EQ(m_reports.Lines().size(), 2u);
    ExpectExposureLine(m_reports.Lines()[1], "0", "KLineQuote", "2", "1");

    // The unknown type: the running timer is dropped and no new one starts.
    frame.show();
    card->UpdateExposureParamCardType(core::report::kstrUnknownTabType);
    frame.hide();
    frame.show();
    card->SetStockID(5);
    frame.hide();
    EXPECT_EQ(m_reports.Lines().size(), 2u);
}

TEST_F(ExposureReportTest, CardOutsideAnyFrameReportsAnEmptyTabType)
{
    auto card = std::make_unique<CQuoteCard>(CardPos_ExpandedRegion);
    card->SetStockID(9);
    card->show();
    card->hide();
    ASSERT_EQ(m_reports.Lines().size(), 1u);
    ExpectExposureLine(m_reports.Lines()[0], "9", "StockHeader", "", "2");
}

#include "ExposureReportTest.moc"
