// Text catalogues: the shipped English catalogue, fallbacks, and catalogues that must be refused
// without disturbing the language in use.

#include "Platform/Core/Langx.h"
#include "Platform/Core/ProductPath.h"
#include "tests/common/TestSupport.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

using core::langx::tr;

class LangxTest : public ::testing::Test
{
protected:
    void SetUp() override { ASSERT_TRUE(m_dir.isValid()); }
    void TearDown() override
    {
        core::langx::ResetForTest();
        core::product_path::ResetForTest();
    }

    QString WriteFile(const QString& relativePath, const QByteArray& content)
    {
        const QString path = m_dir.path() + QLatin1Char('/') + relativePath;
        QDir().mkpath(QFileInfo(path).absolutePath());
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(content);
        return path;
    }

    QString Root() const { return m_dir.path(); }

private:
    QTemporaryDir m_dir;
};

TEST_F(LangxTest, ChineseShowsTheTextWrittenInTheCode)
{
    EXPECT_EQ(core::langx::GetLanguage(), QStringLiteral("zh_CN"));
    EXPECT_EQ(tr(303473, "福克斯直播"), QStringLiteral("福克斯直播"));
    EXPECT_EQ(tr(303473, QStringLiteral("福克斯直播")), QStringLiteral("福克斯直播"));
}

TEST_F(LangxTest, ShippedEnglishCatalogueTranslatesKnownIdsAndFallsBackForOthers)
{
    ASSERT_TRUE(core::langx::SetLanguage(QStringLiteral("en")));
    EXPECT_EQ(core::langx::GetLanguage(), QStringLiteral("en"));
    EXPECT_EQ(tr(303473, "福克斯直播"), QStringLiteral("Fox Live"));
    EXPECT_EQ(tr(303473, QStringLiteral("福克斯直播")), QStringLiteral("Fox Live"));
    EXPECT_EQ(tr(999999001, "没有这个编号"), QStringLiteral("没有这个编号"));

    ASSERT_TRUE(core::langx::SetLanguage(QStringLiteral("zh_CN")));
    EXPECT_EQ(tr(303473, "福克斯直播"), QStringLiteral("福克斯直播"));
}

TEST_F(LangxTest, MalformedCataloguesAreRefusedAndThePreviousLanguageKept)
{
    struct Row
    {
        const char* name;
        QByteArray content;
        const char* expectedLog;
    };
    const Row rows[] = {
        {"truncated", R"({"12": "changed", "13": "thir)", "is not JSON"},
        {"empty", "", "is not JSON"},
        {"binary", QByteArray("\xff\xfe\x00\x01", 4), "is not JSON"},
        {"array", R"(["twelve"])", "is not a JSON object"},
        {"key not a number", R"({"12": "changed", "title": "x"})", "key \"title\" is not a text id"},
        {"value not a string", R"({"12": "changed", "13": 13})", "text 13 is not a string"},
        {"nested object", R"({"12": {"text": "changed"}})", "text 12 is not a string"},
    };
    vxtest::ExpectError("langx::LoadCatalogue");

    const QString good = WriteFile(QStringLiteral("good.json"), R"({"12": "twelve", "-3": "minus three"})");
    ASSERT_TRUE(core::langx::LoadCatalogue(QStringLiteral("xx"), good));
    EXPECT_EQ(tr(-3, "x"), QStringLiteral("minus three"));

    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        const QString path = WriteFile(QStringLiteral("bad.json"), row.content);
        EXPECT_FALSE(core::langx::LoadCatalogue(QStringLiteral("yy"), path));
        EXPECT_TRUE(vxtest::HasLog(row.expectedLog));
        EXPECT_EQ(core::langx::GetLanguage(), QStringLiteral("xx"));
        EXPECT_EQ(tr(12, "fallback"), QStringLiteral("twelve"));
        EXPECT_EQ(tr(13, "fallback"), QStringLiteral("fallback"));
    }

    EXPECT_FALSE(core::langx::LoadCatalogue(QStringLiteral("yy"), Root() + QStringLiteral("/missing.json")));
    EXPECT_TRUE(vxtest::HasLog("cannot open"));
    EXPECT_TRUE(vxtest::HasLog("catalogue for \"yy\" refused, keeping \"xx\""));
    EXPECT_EQ(tr(12, "fallback"), QStringLiteral("twelve"));
}

TEST_F(LangxTest, SetLanguageReadsTheResourcesNextToTheApplication)
{
    vxtest::ExpectError("langx::");
    core::product_path::SetAppFolderOverride(Root() + QStringLiteral("/app"));
    WriteFile(QStringLiteral("app/resources/lang/en.json"), R"({"303473": "Fox Live, installed"})");
    WriteFile(QStringLiteral("app/resources/lang/de.json"), R"({"303473": "Fuchs", )");

    ASSERT_TRUE(core::langx::SetLanguage(QStringLiteral("en")));
    EXPECT_EQ(tr(303473, "福克斯直播"), QStringLiteral("Fox Live, installed"));

    EXPECT_FALSE(core::langx::SetLanguage(QStringLiteral("de")));
    EXPECT_TRUE(vxtest::HasLog("de.json is not JSON"));
    EXPECT_FALSE(core::langx::SetLanguage(QStringLiteral("fr")));
    EXPECT_TRUE(vxtest::HasLog("fr.json"));
    EXPECT_FALSE(core::langx::SetLanguage(QStringLiteral("../app/resources/lang/en")));
    EXPECT_TRUE(vxtest::HasLog("is not a language name"));
    EXPECT_FALSE(core::langx::SetLanguage(QString()));

    EXPECT_EQ(core::langx::GetLanguage(), QStringLiteral("en"));
    EXPECT_EQ(tr(303473, "福克斯直播"), QStringLiteral("Fox Live, installed"));
}

} // namespace
