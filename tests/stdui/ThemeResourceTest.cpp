// The theme provider: built-in tables, switching themes, unknown keys, theme files in the
// resource folder, and refusal of files that are not valid theme tables.

#include "Platform/StdUI/ThemeResource.h"

#include "Platform/Core/ProductPath.h"
#include "tests/common/TestSupport.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QWidget>

#include <gtest/gtest.h>

#include <map>

using namespace vx_ui_res;

namespace {

std::map<QString, QRgb> Snapshot(Theme theme)
{
    std::map<QString, QRgb> table;
    const Provider& p = Provider::Instance();
    for (const QString& key : p.Keys(theme))
        table[key] = p.GetColor(key, theme).rgba();
    return table;
}

int CountLogs(const std::string& fragment)
{
    int n = 0;
    for (const auto& log : vxtest::Logs())
        if (log.message.find(fragment) != std::string::npos)
            ++n;
    return n;
}

class ThemeResourceTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(dir.isValid());
        // An application folder of our own, so that only the files written here are found.
        core::product_path::SetAppFolderOverride(dir.path());
        QDir(dir.path()).mkpath(QStringLiteral("resources/themes"));
        Provider::Instance().ResetForTest();
    }
    void TearDown() override
    {
        core::product_path::ResetForTest();
        Provider::Instance().ResetForTest();
    }

    QString WriteFile(const QString& relative, const QByteArray& bytes)
    {
        const QString path = QDir(dir.path()).filePath(relative);
        QFile f(path);
        EXPECT_TRUE(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
        f.write(bytes);
        return path;
    }

    QTemporaryDir dir;
};

TEST_F(ThemeResourceTest, BuiltInTablesHoldTheSameKeysForBothThemes)
{
    const Provider& p = Provider::Instance();
    EXPECT_EQ(p.CurrentTheme(), Theme::Light);
    const QStringList light = p.Keys(Theme::Light);
    EXPECT_EQ(light, p.Keys(Theme::Dark));
    for (const char* key :
         {"ct_bg_primary", "ct_bg_secondary", "ct_text_primary", "ct_text_secondary", "ct_border", "ct_hover",
          "ct_selected", "ct_rise", "ct_fall", "ck_indigo450", "ck_red500", "ck_green500", "ck_orange500",
          "ck_yellow500", "ck_blue500", "ck_purple500", "ck_cyan500", "ck_pink500"}) {
        EXPECT_TRUE(light.contains(QLatin1String(key))) << key;
        EXPECT_TRUE(p.GetColor(QLatin1String(key), Theme::Light).isValid()) << key;
        EXPECT_TRUE(p.GetColor(QLatin1String(key), Theme::Dark).isValid()) << key;
    }
    for (Theme t : {Theme::Light, Theme::Dark}) {
        EXPECT_NE(p.GetColor(QStringLiteral("ct_rise"), t), p.GetColor(QStringLiteral("ct_fall"), t));
        EXPECT_NE(p.GetColor(QStringLiteral("ct_text_primary"), t),
                  p.GetColor(QStringLiteral("ct_bg_primary"), t));
    }
    // Text is dark on light backgrounds and light on dark ones.
    EXPECT_GT(p.GetColor(QStringLiteral("ct_bg_primary"), Theme::Light).lightness(),
              p.GetColor(QStringLiteral("ct_text_primary"), Theme::Light).lightness());
    EXPECT_LT(p.GetColor(QStringLiteral("ct_bg_primary"), Theme::Dark).lightness(),
              p.GetColor(QStringLiteral("ct_text_primary"), Theme::Dark).lightness());
}

TEST_F(ThemeResourceTest, SwitchingThemesSignalsOncePerChange)
{
    Provider& p = Provider::Instance();
    QSignalSpy spy(&p, &Provider::ThemeChanged);
    const QColor lightBg = p.GetColor(QStringLiteral("ct_bg_primary"));

    p.SetTheme(Theme::Light);
    EXPECT_EQ(spy.count(), 0) << "already light";

    p.SetTheme(Theme::Dark);
    ASSERT_EQ(spy.count(), 1);
    EXPECT_EQ(spy.at(0).at(0).value<Theme>(), Theme::Dark);
    EXPECT_EQ(p.CurrentTheme(), Theme::Dark);
    EXPECT_EQ(p.GetColor(QStringLiteral("ct_bg_primary")),
              p.GetColor(QStringLiteral("ct_bg_primary"), Theme::Dark));
    EXPECT_NE(p.GetColor(QStringLiteral("ct_bg_primary")), lightBg);

    p.SetTheme(Theme::Dark);
    EXPECT_EQ(spy.count(), 1);
    p.SetTheme(Theme::Light);
    EXPECT_EQ(spy.count(), 2);
    EXPECT_EQ(p.GetColor(QStringLiteral("ct_bg_primary")), lightBg);
}

TEST_F(ThemeResourceTest, UnknownKeyGivesAnInvalidColourAndOneWarning)
{
    Provider& p = Provider::Instance();
    EXPECT_FALSE(p.HasColor(QStringLiteral("ct_no_such_key")));
    EXPECT_FALSE(p.GetColor(QStringLiteral("ct_no_such_key")).isValid());
    EXPECT_FALSE(p.GetColor(QStringLiteral("ct_no_such_key")).isValid());
    EXPECT_FALSE(p.GetColor(QStringLiteral("ct_no_such_key"), Theme::Dark).isValid());
    EXPECT_EQ(CountLogs("ct_no_such_key"), 1);
    EXPECT_FALSE(p.GetColor(QStringLiteral("ck_other_missing")).isValid());
    EXPECT_EQ(CountLogs("ck_other_missing"), 1);
    for (const auto& log : vxtest::Logs())
        EXPECT_EQ(log.level, core::log::Level::Warn);
}

TEST_F(ThemeResourceTest, ResourceFolderFileOverlaysTheBuiltInTable)
{
    Provider& p = Provider::Instance();
    const auto builtIn = Snapshot(Theme::Dark);
    const auto lightBefore = Snapshot(Theme::Light);
    WriteFile(QStringLiteral("resources/themes/dark.json"),
              R"({"theme": "dark", "colors": {"ct_bg_primary": "#010203", "ct_watermark": "#80FF0000"}})");

    p.Reload();
    EXPECT_EQ(p.GetColor(QStringLiteral("ct_bg_primary"), Theme::Dark), QColor(1, 2, 3));
    EXPECT_EQ(p.GetColor(QStringLiteral("ct_watermark"), Theme::Dark), QColor(255, 0, 0, 0x80));
    EXPECT_EQ(p.GetColor(QStringLiteral("ct_rise"), Theme::Dark).rgba(),
              builtIn.at(QStringLiteral("ct_rise")))
        << "keys the file leaves out keep their built-in colour";
    EXPECT_EQ(Snapshot(Theme::Light), lightBefore) << "the other theme is untouched";

    // Without the file the built-in table comes back.
    QFile::remove(QDir(dir.path()).filePath(QStringLiteral("resources/themes/dark.json")));
    p.Reload();
    EXPECT_EQ(Snapshot(Theme::Dark), builtIn);
}

struct BadFile
{
    const char* name;
    QByteArray content;
    const char* expectedReason;
};

TEST_F(ThemeResourceTest, MalformedFilesAreRefusedWholeAndTheTableKept)
{
    const BadFile rows[] = {
        {"not json", "colors: red", "not JSON"},
        {"truncated", "{\"theme\": \"light\", \"colors\": {\"ct_bg_primary\": \"#fff", "not JSON"},
        {"empty file", "", "not JSON"},
        {"array root", R"([{"ct_bg_primary": "#ffffff"}])", "top level is not an object"},
        {"no colours", R"({"theme": "light"})", "no \"colors\" object"},
        {"colours not an object", R"({"colors": ["#ffffff"]})", "no \"colors\" object"},
        {"empty colours", R"({"colors": {}})", "no \"colors\" object"},
        {"short hex", R"({"colors": {"ct_bg_primary": "#12345"}})",
         "colour \"ct_bg_primary\" has the bad value"},
        {"named colour", R"({"colors": {"ct_rise": "red"}})", "colour \"ct_rise\" has the bad value"},
        {"not hex", R"({"colors": {"ct_fall": "#12zz56"}})", "colour \"ct_fall\" has the bad value"},
        {"number", R"({"colors": {"ct_border": 16777215}})", "colour \"ct_border\" has the bad value"},
        {"other theme", R"({"theme": "dark", "colors": {"ct_bg_primary": "#000000"}})",
         "theme file for \"dark\""},
        // One bad entry spoils the file: the good entry before it is not applied either.
        {"partly bad", R"({"colors": {"ct_bg_primary": "#0a0b0c", "ct_text_primary": "#xyz"}})",
         "colour \"ct_text_primary\""},
    };
    Provider& p = Provider::Instance();
    const auto before = Snapshot(Theme::Light);
    vxtest::ExpectError("Provider::LoadThemeFile");
    for (const BadFile& row : rows) {
        SCOPED_TRACE(row.name);
        const QString path = WriteFile(QStringLiteral("bad.json"), row.content);
        const size_t logsBefore = vxtest::Logs().size();
        EXPECT_FALSE(p.LoadThemeFile(Theme::Light, path));
        ASSERT_EQ(vxtest::Logs().size(), logsBefore + 1);
        const auto& log = vxtest::Logs().back();
        EXPECT_EQ(log.level, core::log::Level::Error);
        EXPECT_NE(log.message.find("refused"), std::string::npos) << log.message;
        EXPECT_NE(log.message.find(row.expectedReason), std::string::npos) << log.message;
        EXPECT_EQ(Snapshot(Theme::Light), before);
    }

    EXPECT_FALSE(p.LoadThemeFile(Theme::Light, QDir(dir.path()).filePath(QStringLiteral("missing.json"))));
    EXPECT_TRUE(vxtest::HasLog("cannot read"));
    EXPECT_EQ(Snapshot(Theme::Light), before);
}

TEST_F(ThemeResourceTest, MalformedResourceFolderFileKeepsTheBuiltInTable)
{
    Provider& p = Provider::Instance();
    const auto builtIn = Snapshot(Theme::Light);
    WriteFile(QStringLiteral("resources/themes/light.json"), R"({"colors": {"ct_bg_primary": "#fff"}})");
    vxtest::ExpectError("Provider::LoadThemeFile");
    p.Reload();
    EXPECT_TRUE(vxtest::HasLog("light.json refused"));
    EXPECT_EQ(Snapshot(Theme::Light), builtIn);
}

TEST_F(ThemeResourceTest, PalettesComeFromTheThemeKeys)
{
    Provider& p = Provider::Instance();
    const QPalette dark = p.BuildPalette(Theme::Dark);
    const auto key = [&](const char* k) { return p.GetColor(QLatin1String(k), Theme::Dark); };
    EXPECT_EQ(dark.color(QPalette::Window), key("ct_bg_primary"));
    EXPECT_EQ(dark.color(QPalette::WindowText), key("ct_text_primary"));
    EXPECT_EQ(dark.color(QPalette::Base), key("ct_bg_secondary"));
    EXPECT_EQ(dark.color(QPalette::Highlight), key("ct_selected"));
    EXPECT_EQ(dark.color(QPalette::Disabled, QPalette::Text), key("ct_text_disabled"));
    EXPECT_EQ(dark.color(QPalette::Active, QPalette::Text), key("ct_text_primary"));
    EXPECT_NE(p.BuildPalette(Theme::Light).color(QPalette::Window), dark.color(QPalette::Window));

    // A widget that follows the theme is repainted with the new palette; one that was only
    // given a palette keeps it.
    QWidget follower;
    QWidget once;
    p.FollowTheme(&follower);
    p.FollowTheme(&follower);
    p.ApplyPalette(&once);
    const QColor lightWindow = follower.palette().color(QPalette::Window);
    EXPECT_EQ(lightWindow, p.GetColor(QStringLiteral("ct_bg_primary"), Theme::Light));
    p.SetTheme(Theme::Dark);
    EXPECT_EQ(follower.palette().color(QPalette::Window), key("ct_bg_primary"));
    EXPECT_EQ(once.palette().color(QPalette::Window), lightWindow);
    {
        QWidget shortLived;
        p.FollowTheme(&shortLived);
    }
    p.SetTheme(Theme::Light); // the destroyed follower is simply gone
    EXPECT_EQ(follower.palette().color(QPalette::Window), lightWindow);
}

TEST_F(ThemeResourceTest, ApplicationPaletteIsBuiltFromTheCurrentTheme)
{
    Provider& p = Provider::Instance();
    const QPalette original = QApplication::palette();
    p.SetTheme(Theme::Dark);
    p.ApplyApplicationPalette();
    EXPECT_EQ(QApplication::palette().color(QPalette::Window),
              p.GetColor(QStringLiteral("ct_bg_primary"), Theme::Dark));
    QWidget plain;
    EXPECT_EQ(plain.palette().color(QPalette::Window),
              p.GetColor(QStringLiteral("ct_bg_primary"), Theme::Dark));
    EXPECT_TRUE(qApp->styleSheet().isEmpty());
    QApplication::setPalette(original);
}

} // namespace
