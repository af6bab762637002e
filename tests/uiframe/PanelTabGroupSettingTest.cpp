// The tab group colour popup: the row of "no colour" and the eight tab group colours, the group
// text line growing the popup, checking the page's colour (legacy texts included), and choosing
// a colour with a real click.

#include "UIFrame/Linkage/PanelTabGroupSetting.h"
#include "UIFrame/Linkage/PanelColorButton.h"
#include "UIFrame/Linkage/PanelColorManager.h"

#include "Platform/StdUI/ThemeResource.h"

#include "tests/common/TestSupport.h"
#include "tests/uiframe/FoundationTestSupport.h"
#include "tests/uiframe/GroupPopupTestSupport.h"

#include <QFontMetrics>
#include <QGuiApplication>
#include <QLabel>
#include <QLayout>
#include <QScreen>
#include <QSignalSpy>
#include <QTest>

#include <memory>

using group_popup_test::ClickThroughWindow;

namespace {

// "No colour", then the tab colours of group colours 1 to 8.
const char* const kExpectedColors[] = {
    "",          "ck_indigo450",   "ck_blue620", "ck_cyan500", "ck_lime500", "ck_yellow450", "ck_orange450",
    "ck_red400", "ck_grayblue400",
};

const QString kLongText = QStringLiteral(
    "This page shares its colour with Layout 2 and Layout 3; linked boxes follow one another across them");

class PanelTabGroupSettingTest : public uiframe_test::FoundationTest
{
protected:
    void SetUp() override { popup = std::make_unique<CVXPanelTabGroupSetting>(); }
    void TearDown() override
    {
        popup.reset();
        CVXPanelColorManager::GetInstance().ResetForTest();
        vx_ui_res::Provider::Instance().ResetForTest();
    }
    void Show()
    {
        popup->ShowAt(QGuiApplication::primaryScreen()->availableGeometry().topLeft() + QPoint(30, 30));
        ASSERT_TRUE(QTest::qWaitForWindowExposed(popup.get()));
    }
    CVXPanelColorButton* Button(int index) const { return popup->GetColorButtons().at(index); }
    QLabel* Text() const { return popup->GetGroupedColorTextLabel(); }

    std::unique_ptr<CVXPanelTabGroupSetting> popup;
};

TEST_F(PanelTabGroupSettingTest, ARowOfNineColoursUnderTheTitle)
{
    EXPECT_EQ(popup->size(), QSize(236, 68));
    EXPECT_EQ(popup->layout()->contentsMargins(), QMargins(4, 8, 4, 12));
    EXPECT_EQ(popup->layout()->spacing(), 6);
    auto* title = popup->findChild<QLabel*>(QStringLiteral("CVXPanelTabGroupSettingTitle"));
    ASSERT_NE(title, nullptr);
    EXPECT_EQ(title->height(), 18);
    EXPECT_EQ(title->text(), QStringLiteral("标签分组颜色"));
    ASSERT_EQ(Text(), popup->findChild<QLabel*>(QStringLiteral("CustomizePanelTabGroupedColorText")));
    EXPECT_TRUE(Text()->isHidden());

    ASSERT_EQ(popup->GetColorButtons().size(), 9);
    Show();
    // Nine 24 px buttons one pixel apart take 224 of the 228 px between the margins: 2 px are
    // left on each side. The row starts under the title: 8 + 18 + 6 = 32.
    for (int i = 0; i < 9; ++i) {
        EXPECT_EQ(Button(i)->GetColor(), QLatin1String(kExpectedColors[i])) << i;
        EXPECT_EQ(Button(i)->geometry(), QRect(6 + 25 * i, 32, 24, 24)) << i;
    }
    EXPECT_FALSE(Button(0)->ResolvedColor().isValid()) << "no colour";
    for (int i = 1; i < 9; ++i)
        EXPECT_EQ(Button(i)->ResolvedColor(),
                  vx_ui_res::Provider::Instance().GetColor(QLatin1String(kExpectedColors[i])));
    EXPECT_FALSE(vxtest::HasLog("the theme has no colour")) << "every tab colour is a theme colour";

    popup->UpdateGroupColor(QStringLiteral("ck_cyan500"));
    group_popup_test::SaveScreenshot(popup.get(), QStringLiteral("PanelTabGroupSetting_light"));
    popup->UpdateGroupedColorTabText(kLongText);
    vx_ui_res::Provider::Instance().SetTheme(vx_ui_res::Theme::Dark);
    group_popup_test::SaveScreenshot(popup.get(), QStringLiteral("PanelTabGroupSetting_dark_text"));
}

TEST_F(PanelTabGroupSettingTest, GroupTextGrowsThePopup)
{
    Show();
    popup->UpdateGroupedColorTabText(QStringLiteral("Layout 2"));
    EXPECT_EQ(popup->size(), QSize(236, 104));
    EXPECT_FALSE(Text()->isHidden());
    EXPECT_EQ(Text()->text(), QStringLiteral("Layout 2"));
    EXPECT_EQ(Text()->height(), 30);
    EXPECT_EQ(Text()->geometry().top(), 62) << "under the row (32 + 24) and 6 px of spacing";
    EXPECT_EQ(Button(0)->geometry().top(), 32) << "the row stays where it was";

    popup->UpdateGroupedColorTabText(kLongText);
    EXPECT_EQ(popup->size(), QSize(236, 120));
    EXPECT_EQ(Text()->height(), 46);
    group_popup_test::SaveScreenshot(popup.get(), QStringLiteral("PanelTabGroupSetting_light_text"));

    popup->UpdateGroupedColorTabText(QString());
    EXPECT_EQ(popup->size(), QSize(236, 68));
    EXPECT_TRUE(Text()->isHidden());
}

TEST(PanelTabGroupSettingTextHeightTest, OneLineIsThirtyMoreIsFortySix)
{
    const QFontMetrics metrics(QGuiApplication::font());
    EXPECT_EQ(CVXPanelTabGroupSetting::GroupedTextHeight(metrics, QStringLiteral("Layout 2"), 220), 30);
    EXPECT_EQ(CVXPanelTabGroupSetting::GroupedTextHeight(metrics, QStringLiteral("Layout 2"), 30), 46)
        << "two words that do not fit side by side";
    EXPECT_EQ(CVXPanelTabGroupSetting::GroupedTextHeight(metrics, QStringLiteral("A\nB"), 220), 46);
    EXPECT_EQ(CVXPanelTabGroupSetting::GroupedTextHeight(metrics, kLongText + kLongText, 220), 46)
        << "never taller than two lines";
}

TEST_F(PanelTabGroupSettingTest, UpdateGroupColorChecksThePagesColour)
{
    const struct
    {
        const char* input;
        int checked; // -1: none
    } rows[] = {
        {"ck_cyan500", 3},
        {"", 0},
        {"0", 0},
        {"ck_grayblue400", 8},
        {"ck_cyan450", 3},   // legacy text of colour 3
        {"ck_purple300", 1}, // legacy text of colour 1
        {"ck_orange450", 6},
        {"not a colour", -1},
        {"CK_CYAN500", -1},
    };
    for (const auto& row : rows) {
        popup->UpdateGroupColor(QString::fromLatin1(row.input));
        EXPECT_EQ(popup->HasSelectedColor(), row.checked >= 0) << row.input;
        for (int i = 0; i < 9; ++i)
            EXPECT_EQ(Button(i)->isChecked(), i == row.checked) << row.input << " button " << i;
        if (row.checked >= 0) {
            EXPECT_EQ(popup->GetSelectedColor(), QLatin1String(kExpectedColors[row.checked])) << row.input;
        }
    }
}

TEST_F(PanelTabGroupSettingTest, ClickingAColourEmitsItsTextThenReports)
{
    Show();
    QSignalSpy changed(popup.get(), &CVXPanelTabGroupSetting::GroupColorChanged);
    QSignalSpy closed(popup.get(), &CVXPanelTabGroupSetting::Closed);
    size_t linesWhenEmitted = 99;
    QObject::connect(popup.get(), &CVXPanelTabGroupSetting::GroupColorChanged, popup.get(),
                     [this, &linesWhenEmitted] { linesWhenEmitted = m_reports.Lines().size(); });

    ClickThroughWindow(popup.get(), Button(2));
    ASSERT_EQ(changed.count(), 1);
    EXPECT_EQ(changed.at(0).at(0).toString(), QStringLiteral("ck_blue620"));
    EXPECT_EQ(linesWhenEmitted, 0u);
    EXPECT_EQ(closed.count(), 1);
    ASSERT_NO_FATAL_FAILURE(group_popup_test::ExpectOnePopupClick(m_reports.Lines(), "2"));

    Show();
    ClickThroughWindow(popup.get(), Button(0));
    ASSERT_EQ(changed.count(), 2);
    EXPECT_EQ(changed.at(1).at(0).toString(), QString()) << "no colour";
    EXPECT_EQ(m_reports.Lines().size(), 2u);
}

} // namespace
