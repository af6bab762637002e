// The linkage colour picker: the legacy key table, the thirteen colours in their order and grid,
// their theme colours in both themes, checking a (legacy) key, and choosing a colour with a real
// click (signal, then usage report, then closing).

#include "UIFrame/Linkage/PanelColorPicker.h"
#include "UIFrame/Linkage/PanelColorButton.h"

#include "Platform/StdUI/ThemeResource.h"

#include "tests/common/TestSupport.h"
#include "tests/uiframe/FoundationTestSupport.h"
#include "tests/uiframe/GroupPopupTestSupport.h"

#include <QGuiApplication>
#include <QLayout>
#include <QScreen>
#include <QSignalSpy>
#include <QTest>

#include <memory>

using group_popup_test::ClickThroughWindow;

namespace {

// The picker's colours as the user sees them, row by row.
const char* const kExpectedKeys[] = {
    "style_skin_panel_group_setting/blue_opacity",
    "style_skin_panel_group_setting/cyan_opacity",
    "style_skin_panel_group_setting/lime_opacity",
    "style_skin_panel_group_setting/yellow_opacity",
    "style_skin_panel_group_setting/purple_opacity",
    "style_skin_panel_group_setting/red_opacity",
    "style_skin_panel_group_setting/gray",
    "style_skin_panel_group_setting/blue",
    "style_skin_panel_group_setting/cyan",
    "style_skin_panel_group_setting/lime",
    "style_skin_panel_group_setting/yellow",
    "style_skin_panel_group_setting/purple",
    "style_skin_panel_group_setting/red",
};

TEST(PanelColorPickerConvertTest, LegacyKeysBecomeStyleKeys)
{
    const struct
    {
        const char* input;
        const char* expected;
    } rows[] = {
        {"ck_blue450_40", "style_skin_panel_group_setting/blue_opacity"},
        {"ck_cyan200_40", "style_skin_panel_group_setting/cyan_opacity"},
        {"ck_lime250_40", "style_skin_panel_group_setting/lime_opacity"},
        {"ck_yellow300_40", "style_skin_panel_group_setting/yellow_opacity"},
        {"ck_purple300_40", "style_skin_panel_group_setting/purple_opacity"},
        {"ck_red300_40", "style_skin_panel_group_setting/red_opacity"},
        // Everything else is returned as it came.
        {"", ""},
        {"CK_RED300_40", "CK_RED300_40"},
        {"Ck_blue450_40", "Ck_blue450_40"},
        {"ck_red300", "ck_red300"},
        {"ck_red300_40 ", "ck_red300_40 "},
        {"xck_red300_40", "xck_red300_40"},
        {"ck_purple300", "ck_purple300"},
        {"style_skin_panel_group_setting/red", "style_skin_panel_group_setting/red"},
        {"ck_indigo450", "ck_indigo450"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(CVXPanelColorPicker::ConvertLegacyColor(QString::fromLatin1(row.input)),
                  QString::fromLatin1(row.expected))
            << "input \"" << row.input << "\"";
    EXPECT_TRUE(CVXPanelColorPicker::ConvertLegacyColor(QString()).isEmpty());
}

class PanelColorPickerTest : public uiframe_test::FoundationTest
{
protected:
    void SetUp() override { picker = std::make_unique<CVXPanelColorPicker>(); }
    void TearDown() override
    {
        picker.reset();
        vx_ui_res::Provider::Instance().ResetForTest();
    }
    void Show()
    {
        picker->ShowAt(QGuiApplication::primaryScreen()->availableGeometry().topLeft() + QPoint(30, 30));
        ASSERT_TRUE(QTest::qWaitForWindowExposed(picker.get()));
    }
    CVXPanelColorButton* Button(int index) const { return picker->GetColorButtons().at(index); }

    std::unique_ptr<CVXPanelColorPicker> picker;
};

TEST_F(PanelColorPickerTest, ThirteenColoursSevenToARow)
{
    EXPECT_EQ(picker->size(), QSize(184, 64));
    EXPECT_EQ(picker->minimumSize(), picker->maximumSize());
    EXPECT_EQ(picker->layout()->contentsMargins(), QMargins(8, 8, 8, 8));
    EXPECT_EQ(picker->layout()->spacing(), 0);

    const auto buttons = picker->GetColorButtons();
    ASSERT_EQ(buttons.size(), 13);
    Show();
    for (int i = 0; i < 13; ++i) {
        EXPECT_EQ(buttons[i]->GetColor(), QLatin1String(kExpectedKeys[i])) << i;
        EXPECT_EQ(buttons[i]->objectName(), QStringLiteral("CVXPanelGroupSettingButton"));
        EXPECT_TRUE(buttons[i]->isCheckable());
        // Seven 24 px buttons fill the 168 px between the margins exactly.
        EXPECT_EQ(buttons[i]->geometry(), QRect(8 + 24 * (i % 7), 8 + 24 * (i / 7), 24, 24)) << i;
        EXPECT_EQ(picker->GetColorButton(QLatin1String(kExpectedKeys[i])), buttons[i]);
    }
    EXPECT_EQ(picker->GetColorButton(QString()), nullptr);
    EXPECT_EQ(picker->GetColorButton(QStringLiteral("ck_red300_40")), nullptr) << "lookup takes current keys";
    group_popup_test::SaveScreenshot(picker.get(), QStringLiteral("PanelColorPicker_light"));
    picker->UpdateSelectedColor(QStringLiteral("ck_red300_40"));
    vx_ui_res::Provider::Instance().SetTheme(vx_ui_res::Theme::Dark);
    group_popup_test::SaveScreenshot(picker.get(), QStringLiteral("PanelColorPicker_dark_red_opacity"));
}

TEST_F(PanelColorPickerTest, SwatchesAreTheThemeColours)
{
    const vx_ui_res::Provider& theme = vx_ui_res::Provider::Instance();
    for (const char* key : kExpectedKeys) {
        EXPECT_TRUE(theme.Keys(vx_ui_res::Theme::Light).contains(QLatin1String(key))) << key;
        EXPECT_TRUE(theme.Keys(vx_ui_res::Theme::Dark).contains(QLatin1String(key))) << key;
    }
    Show();
    const QImage light = picker->grab().toImage();

    // An opaque swatch shows its colour; a translucent one shows it over the popup background,
    // blended here by hand: out = a * colour + (1 - a) * background.
    const QPoint red = Button(12)->geometry().center();
    EXPECT_EQ(light.pixelColor(red).rgb(), theme.GetColor(QLatin1String(kExpectedKeys[12])).rgb());
    const QColor over = theme.GetColor(QLatin1String(kExpectedKeys[5]));
    const QColor under = theme.GetColor(QStringLiteral("ct_bg_primary"));
    ASSERT_LT(over.alpha(), 255) << "red_opacity is translucent";
    const double a = over.alphaF();
    const QColor blended(qRound(a * over.red() + (1 - a) * under.red()),
                         qRound(a * over.green() + (1 - a) * under.green()),
                         qRound(a * over.blue() + (1 - a) * under.blue()));
    const QColor seen = light.pixelColor(Button(5)->geometry().center());
    EXPECT_NEAR(seen.red(), blended.red(), 2);
    EXPECT_NEAR(seen.green(), blended.green(), 2);
    EXPECT_NEAR(seen.blue(), blended.blue(), 2);

    vx_ui_res::Provider::Instance().SetTheme(vx_ui_res::Theme::Dark);
    const QImage dark = picker->grab().toImage();
    EXPECT_EQ(dark.pixelColor(red).rgb(), theme.GetColor(QLatin1String(kExpectedKeys[12])).rgb());
    EXPECT_NE(dark.pixelColor(red).rgb(), light.pixelColor(red).rgb());
}

TEST_F(PanelColorPickerTest, UpdateSelectedColorChecksTheMatchingButton)
{
    EXPECT_EQ(picker->GetSelectedColor(), QString());

    picker->UpdateSelectedColor(QStringLiteral("ck_cyan200_40"));
    EXPECT_TRUE(Button(1)->isChecked()) << "the legacy key checks the translucent cyan";
    EXPECT_EQ(picker->GetSelectedColor(), QLatin1String(kExpectedKeys[1]));

    picker->UpdateSelectedColor(QStringLiteral("ck_yellow300_40"));
    EXPECT_TRUE(Button(3)->isChecked());
    EXPECT_FALSE(Button(1)->isChecked()) << "one colour at most";

    picker->UpdateSelectedColor(QStringLiteral("style_skin_panel_group_setting/lime"));
    EXPECT_TRUE(Button(9)->isChecked());

    picker->UpdateSelectedColor(QStringLiteral("CK_CYAN200_40"));
    EXPECT_EQ(picker->GetSelectedColor(), QString()) << "keys are case-sensitive";
    picker->UpdateSelectedColor(QStringLiteral("style_skin_panel_group_setting/red"));
    picker->UpdateSelectedColor(QString());
    EXPECT_EQ(picker->GetSelectedColor(), QString());
    for (auto* button : picker->GetColorButtons())
        EXPECT_FALSE(button->isChecked());
}

TEST_F(PanelColorPickerTest, ClickingAColourEmitsThenReportsAndCloses)
{
    Show();
    QSignalSpy changed(picker.get(), &CVXPanelColorPicker::ColorChanged);
    QSignalSpy closed(picker.get(), &CVXPanelColorPicker::Closed);
    size_t linesWhenEmitted = 99;
    QObject::connect(picker.get(), &CVXPanelColorPicker::ColorChanged, picker.get(),
                     [this, &linesWhenEmitted] { linesWhenEmitted = m_reports.Lines().size(); });

    ClickThroughWindow(picker.get(), Button(11));
    ASSERT_EQ(changed.count(), 1);
    EXPECT_EQ(changed.at(0).at(0).toString(), QStringLiteral("style_skin_panel_group_setting/purple"));
    EXPECT_TRUE(Button(11)->isChecked());
    EXPECT_EQ(closed.count(), 1);
    EXPECT_FALSE(picker->isVisible());

    EXPECT_EQ(linesWhenEmitted, 0u) << "the report comes after the signal";
    ASSERT_NO_FATAL_FAILURE(group_popup_test::ExpectOnePopupClick(m_reports.Lines(), "2"));

    // A click between the buttons (none: they touch) or on the margin chooses nothing.
    Show();
    QTest::mouseClick(picker->windowHandle(), Qt::LeftButton, {}, QPoint(3, 3));
    EXPECT_EQ(changed.count(), 1);
    EXPECT_TRUE(picker->isVisible());
}

} // namespace
