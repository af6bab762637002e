// The group colours: stored numbers, legacy names, the pick for a new tab group, and the tab
// backgrounds of both themes resolved through the theme provider.

#include "UIFrame/Linkage/PanelColorManager.h"

#include "tests/common/TestSupport.h"

#include <gtest/gtest.h>

namespace {

using vx_ui_res::Provider;
using vx_ui_res::Theme;

// The eight colours in order, as the group colour table names them.
const QStringList kColorTexts{"ck_indigo450", "ck_blue620",   "ck_cyan500", "ck_lime500",
                              "ck_yellow450", "ck_orange450", "ck_red400",  "ck_grayblue400"};

class PanelColorManagerTest : public ::testing::Test
{
protected:
    void SetUp() override { manager().ResetForTest(); }
    void TearDown() override
    {
        manager().ResetForTest();
        Provider::Instance().ResetForTest();
    }
    static CVXPanelColorManager& manager() { return CVXPanelColorManager::GetInstance(); }
};

TEST_F(PanelColorManagerTest, StoredNumbersOfTheEightColours)
{
    EXPECT_EQ(manager().GetTabColorTexts(), kColorTexts);
    for (int i = 0; i < kColorTexts.size(); ++i) {
        EXPECT_EQ(manager().GetStoreColor(kColorTexts[i]), QString::number(i + 1))
            << kColorTexts[i].toStdString();
        EXPECT_EQ(manager().ColorOf(kColorTexts[i]), VXPanelTabGroupColor(i + 1));
        EXPECT_EQ(manager().ColorText(VXPanelTabGroupColor(i + 1)), kColorTexts[i]);
    }
    // Unknown texts, legacy names, the numbers themselves and other cases are not colour texts.
    for (const char* text : {"", "ck_purple300", "1", "CK_INDIGO450", "ck_indigo450 "})
        EXPECT_EQ(manager().GetStoreColor(QString::fromLatin1(text)), QStringLiteral("0")) << text;
    EXPECT_TRUE(manager().ColorText(VXPanelTabGroupColor_None).isEmpty());
    EXPECT_TRUE(manager().ColorText(VXPanelTabGroupColor(9)).isEmpty());
}

TEST_F(PanelColorManagerTest, RealColorTranslatesLegacyNamesAndRemembersOthers)
{
    const struct
    {
        const char* stored;
        const char* real;
    } legacy[] = {
        {"ck_purple300", "ck_indigo450"},     {"ck_blue620", "ck_blue620"},     {"ck_cyan450", "ck_cyan500"},
        {"ck_lime250", "ck_lime500"},         {"ck_yellow300", "ck_yellow450"}, {"ck_red300", "ck_red400"},
        {"ck_grayblue200", "ck_grayblue400"},
    };
    for (const auto& row : legacy)
        EXPECT_EQ(manager().GetRealColor(QString::fromLatin1(row.stored)), QString::fromLatin1(row.real))
            << row.stored;
    const int known = manager().LegacyMap().size();
    EXPECT_EQ(known, 7);

    EXPECT_EQ(manager().GetRealColor(QString()), QString());
    EXPECT_EQ(manager().LegacyMap().size(), known);

    // Present names and unknown texts come back as stored and are entered with the value 0, once.
    EXPECT_EQ(manager().GetRealColor(QStringLiteral("ck_orange450")), QStringLiteral("ck_orange450"));
    EXPECT_EQ(manager().GetRealColor(QStringLiteral("whatever")), QStringLiteral("whatever"));
    EXPECT_EQ(manager().GetRealColor(QStringLiteral("whatever")), QStringLiteral("whatever"));
    EXPECT_EQ(manager().GetRealColor(QStringLiteral("CK_PURPLE300")), QStringLiteral("CK_PURPLE300"));
    const QMap<QString, VXPanelTabGroupColor> map = manager().LegacyMap();
    EXPECT_EQ(map.size(), known + 3);
    EXPECT_EQ(map.value(QStringLiteral("whatever"), VXPanelTabGroupColor_Red), VXPanelTabGroupColor_None);
    EXPECT_EQ(map.value(QStringLiteral("ck_orange450"), VXPanelTabGroupColor_Red), VXPanelTabGroupColor_None);
    EXPECT_EQ(map.value(QStringLiteral("ck_purple300")), VXPanelTabGroupColor_Indigo);

    // The legacy map starts over after a reset.
    manager().ResetForTest();
    EXPECT_EQ(manager().LegacyMap().size(), known);
}

TEST_F(PanelColorManagerTest, FirstUnusedColourOrColourOne)
{
    EXPECT_EQ(manager().GetFirstUnusedOrFirstTabColor({}), QStringLiteral("ck_indigo450"));
    EXPECT_EQ(manager().GetFirstUnusedOrFirstTabColor({"ck_indigo450", "ck_blue620"}),
              QStringLiteral("ck_cyan500"));
    // Order 1 to 8, not the order of the set; unrelated texts do not count.
    EXPECT_EQ(manager().GetFirstUnusedOrFirstTabColor({"ck_blue620", "ck_purple300", "3"}),
              QStringLiteral("ck_indigo450"));
    QSet<QString> allButRed(kColorTexts.begin(), kColorTexts.end());
    allButRed.remove(QStringLiteral("ck_red400"));
    EXPECT_EQ(manager().GetFirstUnusedOrFirstTabColor(allButRed), QStringLiteral("ck_red400"));
    const QSet<QString> all(kColorTexts.begin(), kColorTexts.end());
    EXPECT_EQ(manager().GetFirstUnusedOrFirstTabColor(all), QStringLiteral("ck_indigo450"));
}

TEST_F(PanelColorManagerTest, TabBackgroundsOfBothThemes)
{
    const Provider& provider = Provider::Instance();
    const char* whiteKeys[] = {"ck_indigo50", "ck_blue50",   "ck_cyan100", "ck_lime50",
                               "ck_yellow50", "ck_orange50", "ck_red50",   "ck_grayblue45_45"};
    // Colours 1-2 at alpha 0.2 and 3-7 at 0.16 on black; colour 8 has a key of its own.
    const double blackAlpha[] = {0.2, 0.2, 0.16, 0.16, 0.16, 0.16, 0.16};

    for (int i = 0; i < 8; ++i) {
        const QString text = kColorTexts[i];
        SCOPED_TRACE(text.toStdString());
        const QColor white = manager().GetTabWhiteBgColor(text);
        ASSERT_TRUE(white.isValid());
        EXPECT_EQ(white, provider.GetColor(QString::fromLatin1(whiteKeys[i]), Theme::Light));

        const QColor black = manager().GetTabBlackBgColor(text);
        ASSERT_TRUE(black.isValid());
        if (i < 7) {
            const QColor tab = provider.GetColor(text, Theme::Dark);
            ASSERT_TRUE(tab.isValid());
            EXPECT_EQ(black.rgb(), tab.rgb());
            EXPECT_NEAR(black.alphaF(), blackAlpha[i], 0.001);
        } else {
            EXPECT_EQ(black, provider.GetColor(QStringLiteral("ck_grayblue650_45"), Theme::Dark));
        }

        // The tab colour follows the current theme.
        EXPECT_EQ(manager().GetTabColor(text), provider.GetColor(text, Theme::Light));
    }

    // The backgrounds are those of their theme whichever theme is current.
    Provider::Instance().SetTheme(Theme::Dark);
    EXPECT_EQ(manager().GetTabWhiteBgColor(QStringLiteral("ck_cyan500")),
              provider.GetColor(QStringLiteral("ck_cyan100"), Theme::Light));
    EXPECT_EQ(manager().GetTabColor(QStringLiteral("ck_cyan500")),
              provider.GetColor(QStringLiteral("ck_cyan500"), Theme::Dark));
    EXPECT_NE(provider.GetColor(QStringLiteral("ck_cyan500"), Theme::Dark),
              provider.GetColor(QStringLiteral("ck_cyan500"), Theme::Light));
}

TEST_F(PanelColorManagerTest, UnknownColourTextGivesAnInvalidColour)
{
    EXPECT_FALSE(manager().GetTabWhiteBgColor(QStringLiteral("ck_purple300")).isValid());
    EXPECT_FALSE(manager().GetTabBlackBgColor(QString()).isValid());
    EXPECT_FALSE(manager().GetTabColor(QStringLiteral("1")).isValid());
    EXPECT_TRUE(vxtest::HasLog("CVXPanelColorManager::GetTabWhiteBgColor"));
}

TEST_F(PanelColorManagerTest, ThemeColourWithAlpha)
{
    const VXPanelThemeColor plain{QStringLiteral("ck_red400")};
    const VXPanelThemeColor faded = CVXPanelColorManager::setColorAlpha(plain, 0.16);
    EXPECT_EQ(faded.key, plain.key);
    EXPECT_DOUBLE_EQ(faded.alpha, 0.16);
    EXPECT_DOUBLE_EQ(plain.alpha, 1.0);

    const QColor opaque = plain.Resolve(Theme::Light);
    const QColor translucent = faded.Resolve(Theme::Light);
    EXPECT_EQ(opaque.alpha(), 255);
    EXPECT_EQ(translucent.rgb(), opaque.rgb());
    EXPECT_NEAR(translucent.alphaF(), 0.16, 0.001);

    // A fixed colour is used as it is; an unknown key resolves to an invalid colour.
    EXPECT_EQ(ResolvePanelColor(QColor(1, 2, 3, 4), Theme::Dark), QColor(1, 2, 3, 4));
    EXPECT_FALSE(
        ResolvePanelColor(VXPanelThemeColor{QStringLiteral("ck_missing_key")}, Theme::Dark).isValid());
}

} // namespace
