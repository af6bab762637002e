// The logging service (sinks, the console/file line, run-time levels) and the assertion hook.

#include "Platform/Core/Assert.h"
#include "Platform/Core/Log.h"
#include "tests/common/TestSupport.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

bool EndsWith(const std::string& text, const std::string& tail)
{
    return text.size() >= tail.size() && text.compare(text.size() - tail.size(), tail.size(), tail) == 0;
}

// Captures what a private sink receives for the duration of a test.
class SinkCapture
{
public:
    SinkCapture()
    {
        m_id = core::log::AddSink([this](const core::log::Record& r) {
            records.push_back({r.level, r.file ? r.file : "", r.line, r.message});
        });
    }
    ~SinkCapture() { core::log::RemoveSink(m_id); }

    struct Entry
    {
        core::log::Level level;
        std::string file;
        int line;
        std::string message;
    };
    std::vector<Entry> records;

private:
    int m_id = 0;
};

TEST(LogTest, SinkReceivesLevelSourceAndFormattedMessage)
{
    std::vector<SinkCapture::Entry> records;
    int line = 0;
    {
        SinkCapture capture;
        VXLOG_WARN("box {} moved to {} on {}", 3, QStringLiteral("Kursübersicht"), QByteArray("page"));
        line = __LINE__ - 1;
        records = capture.records;
    }
    VXLOG_WARN("after the sink was removed");

    ASSERT_EQ(records.size(), 1u);
    EXPECT_EQ(records[0].level, core::log::Level::Warn);
    EXPECT_TRUE(EndsWith(records[0].file, "LogAndAssertTest.cpp")) << records[0].file;
    EXPECT_EQ(records[0].line, line);
    EXPECT_EQ(records[0].message, "box 3 moved to Kursübersicht on page");
}

TEST(LogTest, FormattedLineCarriesTheTagAndTheSourceFileAndLine)
{
    const core::log::Record record{core::log::Level::Info, "/src/UIFrame/Canvas/Canvas.cpp", 123,
                                   "layout opened"};
    EXPECT_EQ(core::log::FormatLine(record), "[UIFrame] layout opened (Canvas.cpp:123)");

    const core::log::Record bare{core::log::Level::Info, "Post.cpp", 7, "x"};
    EXPECT_EQ(core::log::FormatLine(bare), "[UIFrame] x (Post.cpp:7)");
}

TEST(LogTest, LevelFiltersTheLogFileWhileSinksStillSeeEverything)
{
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    const std::string path = dir.filePath(QStringLiteral("client.log")).toStdString();
    const core::log::Level previous = core::log::GetLevel();

    core::log::SetLogFile(path);
    core::log::SetLevel(core::log::Level::Warn);
    VXLOG_INFO("quiet line");
    VXLOG_WARN("loud line");
    const int loudLine = __LINE__ - 1;
    core::log::SetLevel(previous);
    core::log::SetLogFile(std::string());

    QFile file(QString::fromStdString(path));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray text = file.readAll();
    EXPECT_FALSE(text.contains("quiet line")) << text.toStdString();
    const std::string expected =
        "[UIFrame] loud line (LogAndAssertTest.cpp:" + std::to_string(loudLine) + ")";
    EXPECT_TRUE(text.contains(expected.c_str())) << text.toStdString();
    EXPECT_TRUE(vxtest::HasLog("quiet line"));
    EXPECT_EQ(previous, core::log::GetLevel());
}

class AssertionTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        m_previous =
            core::assertion::SetHook([this](const core::assertion::Info& info) { raised.push_back(info); });
    }
    void TearDown() override { core::assertion::SetHook(m_previous); }

    std::vector<core::assertion::Info> raised;

private:
    core::assertion::Hook m_previous;
};

TEST_F(AssertionTest, FailedAssertionReportsConditionSourceAndLevelAndEvaluatesFalse)
{
    int evaluations = 0;
    const bool result = VX_ASSERT(++evaluations == 2);
    const int line = __LINE__ - 1;

    EXPECT_FALSE(result);
    EXPECT_EQ(evaluations, 1);
    ASSERT_EQ(raised.size(), 1u);
    EXPECT_EQ(raised[0].condition, "++evaluations == 2");
    EXPECT_TRUE(EndsWith(raised[0].file, "LogAndAssertTest.cpp")) << raised[0].file;
    EXPECT_EQ(raised[0].line, line);
    EXPECT_EQ(raised[0].level, core::assertion::kLevelError);
}

TEST_F(AssertionTest, PassingAssertionEvaluatesTrueAndReportsNothing)
{
    int evaluations = 0;
    const bool result = VX_ASSERT(++evaluations == 1);
    EXPECT_TRUE(result);
    EXPECT_EQ(evaluations, 1);
    EXPECT_TRUE(raised.empty());
}

TEST_F(AssertionTest, LevelledReportCarriesItsLevel)
{
    VX_ASSERT_LEVEL("cached extent out of date", core::assertion::kLevelWarning);
    ASSERT_EQ(raised.size(), 1u);
    EXPECT_EQ(raised[0].condition, "cached extent out of date");
    EXPECT_EQ(raised[0].level, core::assertion::kLevelWarning);
}

TEST_F(AssertionTest, WithoutAHookAssertionsAreLoggedAtTheirLevel)
{
    vxtest::ExpectError("Assertion failed: widths differ");
    core::assertion::SetHook(core::assertion::Hook());

    VX_ASSERT_LEVEL("widths differ", core::assertion::kLevelError);
    const int errorLine = __LINE__ - 1;
    VX_ASSERT_LEVEL("stale cache", core::assertion::kLevelWarning);

    EXPECT_TRUE(raised.empty());
    bool sawError = false;
    bool sawWarning = false;
    for (const auto& log : vxtest::Logs()) {
        if (log.message == "Assertion failed: widths differ") {
            sawError = log.level == core::log::Level::Error && log.line == errorLine &&
                       EndsWith(log.file, "LogAndAssertTest.cpp");
        }
        if (log.message == "Assertion failed: stale cache")
            sawWarning = log.level == core::log::Level::Warn;
    }
    EXPECT_TRUE(sawError);
    EXPECT_TRUE(sawWarning);
}

} // namespace
