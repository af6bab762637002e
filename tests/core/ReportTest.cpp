// Usage reports written to the real reports file of the logged-in user, read back as JSON.

#include "Platform/Core/Report.h"
#include "Platform/Core/LoginState.h"
#include "Platform/Core/ProductPath.h"
#include "Platform/Core/TimeDate.h"
#include "tests/common/TestSupport.h"

#include <json/reader.h>

#include <QDateTime>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

namespace {

constexpr unsigned long long kUser = 4242;
constexpr long long kOneDayMs = 24LL * 3600 * 1000;

class ReportTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(m_dir.isValid());
        core::product_path::SetRootOverride(m_dir.path());
        ASSERT_TRUE(core::CLoginState::Instance().Login(kUser));
    }

    void TearDown() override
    {
        core::report::Flush();
        core::report::ResetForTest();
        core::CLoginState::Instance().Logout();
        core::product_path::ResetForTest();
        core::time_date::SetServerTimeOffsetMs(0);
    }

    QString ReportsFile(const QString& user) const
    {
        return m_dir.path() + QStringLiteral("/data/users/") + user + QStringLiteral("/reports.jsonl");
    }

    // Every line of the file parsed as one JSON object.
    static std::vector<Json::Value> ReadLines(const QString& path)
    {
        std::vector<Json::Value> values;
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly))
            return values;
        Json::CharReaderBuilder builder;
        const std::unique_ptr<Json::CharReader> reader(builder.newCharReader());
        while (!file.atEnd()) {
            const QByteArray line = file.readLine();
            EXPECT_TRUE(line.endsWith('\n'));
            Json::Value value;
            std::string errors;
            const bool ok = reader->parse(line.constData(), line.constData() + line.size(), &value, &errors);
            EXPECT_TRUE(ok) << errors << " in " << line.toStdString();
            EXPECT_TRUE(value.isObject());
            values.push_back(value);
        }
        return values;
    }

private:
    QTemporaryDir m_dir;
};

TEST_F(ReportTest, ClickReportAppendsOneJsonLineStampedWithServerTime)
{
    core::time_date::SetServerTimeOffsetMs(kOneDayMs);
    Json::Value fields(Json::objectValue);
    fields["layout"] = "两市行情";
    fields["count"] = 3;
    const long long before = core::time_date::GetServerTimeMs();
    core::report::ClickReport("open_layout", fields);
    core::report::ClickReport("name with \"quotes\"\nand a line break", Json::Value());
    const long long after = core::time_date::GetServerTimeMs();
    core::report::Flush();

    const auto lines = ReadLines(ReportsFile(QStringLiteral("4242")));
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[0]["kind"].asString(), "click");
    EXPECT_EQ(lines[0]["name"].asString(), "open_layout");
    EXPECT_EQ(lines[0]["fields"]["layout"].asString(), "两市行情");
    EXPECT_EQ(lines[0]["fields"]["count"].asInt(), 3);
    const long long time = lines[0]["time"].asInt64();
    EXPECT_GE(time, before);
    EXPECT_LE(time, after);
    EXPECT_GT(time - QDateTime::currentMSecsSinceEpoch(), kOneDayMs / 2); // the offset is applied

    EXPECT_EQ(lines[1]["name"].asString(), "name with \"quotes\"\nand a line break");
    EXPECT_TRUE(lines[1]["fields"].isObject());
    EXPECT_TRUE(lines[1]["fields"].empty());
}

TEST_F(ReportTest, LinesKeepTheOrderEachThreadReportedThemIn)
{
    constexpr int kPerThread = 200;
    std::thread worker([] {
        for (int i = 0; i < kPerThread; ++i) {
            Json::Value fields(Json::objectValue);
            fields["seq"] = i;
            core::report::ClickReport("worker", fields);
        }
    });
    for (int i = 0; i < kPerThread; ++i) {
        Json::Value fields(Json::objectValue);
        fields["seq"] = i;
        core::report::ClickReport("main", fields);
    }
    worker.join();
    core::report::Flush();

    const auto lines = ReadLines(ReportsFile(QStringLiteral("4242")));
    ASSERT_EQ(lines.size(), 2u * kPerThread);
    int nextMain = 0;
    int nextWorker = 0;
    for (const auto& line : lines) {
        int& next = line["name"].asString() == "main" ? nextMain : nextWorker;
        EXPECT_EQ(line["fields"]["seq"].asInt(), next);
        next = line["fields"]["seq"].asInt() + 1;
    }
    EXPECT_EQ(nextMain, kPerThread);
    EXPECT_EQ(nextWorker, kPerThread);
}

TEST_F(ReportTest, ReportsGoToTheFolderOfWhoeverIsLoggedIn)
{
    core::report::ClickReport("first", Json::Value());
    ASSERT_TRUE(core::CLoginState::Instance().Login(5151));
    core::report::ClickReport("second", Json::Value());
    core::CLoginState::Instance().Logout();
    core::report::ClickReport("third", Json::Value());
    core::report::Flush();

    const auto first = ReadLines(ReportsFile(QStringLiteral("4242")));
    const auto second = ReadLines(ReportsFile(QStringLiteral("5151")));
    const auto third = ReadLines(ReportsFile(QStringLiteral("guest")));
    ASSERT_EQ(first.size(), 1u);
    ASSERT_EQ(second.size(), 1u);
    ASSERT_EQ(third.size(), 1u);
    EXPECT_EQ(first[0]["name"].asString(), "first");
    EXPECT_EQ(second[0]["name"].asString(), "second");
    EXPECT_EQ(third[0]["name"].asString(), "third");
}

TEST_F(ReportTest, EndedTimerWritesItsElapsedTimeAndCancelledOrUnknownTimersWriteNothing)
{
    QElapsedTimer outer;
    outer.start();
    const unsigned long long shown = core::report::TimerStart("card_show");
    const unsigned long long cancelled = core::report::TimerStart("page_show");
    ASSERT_NE(shown, 0u);
    ASSERT_NE(cancelled, 0u);
    EXPECT_NE(shown, cancelled);
    EXPECT_TRUE(core::report::IsTimerRunning(shown));

    core::report::TimerCancel(cancelled);
    EXPECT_FALSE(core::report::IsTimerRunning(cancelled));
    core::report::TimerEnd(cancelled, 1, Json::Value(), 1);

    Json::Value fields(Json::objectValue);
    fields["card"] = "quote";
    core::report::TimerEnd(shown, 3, fields, 17);
    const long long outerMs = outer.elapsed();
    EXPECT_FALSE(core::report::IsTimerRunning(shown));

    core::report::TimerEnd(shown, 3, fields, 18); // already ended
    core::report::TimerEnd(0, 3, fields, 19);
    core::report::TimerEnd(shown + cancelled + 1000, 3, fields, 20);
    core::report::Flush();

    const auto lines = ReadLines(ReportsFile(QStringLiteral("4242")));
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines[0]["kind"].asString(), "timer");
    EXPECT_EQ(lines[0]["name"].asString(), "card_show");
    EXPECT_EQ(lines[0]["type"].asInt(), 3);
    EXPECT_EQ(lines[0]["value"].asInt(), 17);
    EXPECT_EQ(lines[0]["fields"]["card"].asString(), "quote");
    ASSERT_TRUE(lines[0]["ms"].isIntegral());
    EXPECT_GE(lines[0]["ms"].asInt64(), 0);
    EXPECT_LE(lines[0]["ms"].asInt64(), outerMs);
    EXPECT_TRUE(lines[0]["time"].isIntegral());
}

TEST_F(ReportTest, UnknownTabTypeAndEmptyNamesAreNeverTimed)
{
    EXPECT_EQ(core::report::TimerStart(core::report::kstrUnknownTabType), 0u);
    EXPECT_EQ(core::report::TimerStart(""), 0u);
    EXPECT_FALSE(core::report::IsTimerRunning(0));
}

TEST_F(ReportTest, ReplacedWriterReceivesLinesOnTheReportingThreadInsteadOfTheFile)
{
    std::vector<std::string> captured;
    core::report::SetWriter([&](const std::string& line) { captured.push_back(line); });
    core::report::ClickReport("captured", Json::Value());
    ASSERT_EQ(captured.size(), 1u); // before any flush: written synchronously
    EXPECT_NE(captured[0].find("\"name\":\"captured\""), std::string::npos) << captured[0];
    EXPECT_EQ(captured[0].find('\n'), std::string::npos);

    core::report::SetWriter(core::report::Writer());
    core::report::ClickReport("to file", Json::Value());
    core::report::Flush();

    const auto lines = ReadLines(ReportsFile(QStringLiteral("4242")));
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines[0]["name"].asString(), "to file");
    EXPECT_EQ(captured.size(), 1u);
}

TEST_F(ReportTest, LinesThatCannotBeWrittenAreKeptUntilTheFileIsWritable)
{
    vxtest::ExpectError("report: cannot write");
    const QString path = ReportsFile(QStringLiteral("4242"));
    // A folder where the file should be: cannot be opened for writing, even as root.
    ASSERT_TRUE(QDir().mkpath(path));

    core::report::ClickReport("while blocked", Json::Value());
    core::report::Flush();
    EXPECT_TRUE(vxtest::HasLog("report: cannot write"));

    ASSERT_TRUE(QDir().rmdir(path));
    core::report::ClickReport("after repair", Json::Value());
    core::report::Flush();

    const auto lines = ReadLines(path);
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[0]["name"].asString(), "while blocked");
    EXPECT_EQ(lines[1]["name"].asString(), "after repair");
}

TEST_F(ReportTest, ClickWithoutANameIsRefused)
{
    vxtest::ExpectError("report::ClickReport: empty name");
    core::report::ClickReport("", Json::Value());
    core::report::Flush();
    EXPECT_FALSE(QFile::exists(ReportsFile(QStringLiteral("4242"))));
    EXPECT_TRUE(vxtest::HasLog("report::ClickReport: empty name"));
}

} // namespace
