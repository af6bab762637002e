// The linkage group popup and the box's group button: the popup's layout and grid, the current
// group, the group-number edit typed into with real key events, adding a group, choosing a group
// with a real click (signal, usage report, closing), and the group button's painting.

#include "UIFrame/Linkage/PanelGroupSetting.h"
#include "UIFrame/Linkage/PanelCurGroupBtn.h"
#include "UIFrame/Linkage/PanelGroupButton.h"

#include "Platform/Core/Langx.h"
#include "Platform/StdUI/IconButton.h"
#include "Platform/StdUI/ThemeResource.h"

#include "tests/common/TestSupport.h"
#include "tests/uiframe/FoundationTestSupport.h"
#include "tests/uiframe/GroupPopupTestSupport.h"

#include <QGuiApplication>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QScreen>
#include <QSignalSpy>
#include <QTest>

#include <memory>

using group_popup_test::ClickThroughWindow;

namespace {

QStringList Ids(int count)
{
    QStringList ids;
    for (int i = 1; i <= count; ++i)
        ids << QString::number(i);
    return ids;
}

QColor Theme(const char* key)
{
    return vx_ui_res::Provider::Instance().GetColor(QLatin1String(key));
}

class PanelGroupSettingTest : public uiframe_test::FoundationTest
{
protected:
    void SetUp() override { popup = std::make_unique<CVXPanelGroupSetting>(); }
    void TearDown() override
    {
        popup.reset();
        vx_ui_res::Provider::Instance().ResetForTest();
    }

    QPoint Anchor() const
    {
        return QGuiApplication::primaryScreen()->availableGeometry().topLeft() + QPoint(40, 40);
    }
    void Show(const QStringList& ids, const QString& current)
    {
        popup->ShowGroup(ids, current, Anchor());
        ASSERT_TRUE(QTest::qWaitForWindowExposed(popup.get()));
    }
    QLineEdit* Edit() const { return popup->GetGroupNumberEdit(); }
    QAbstractButton* Add() const { return popup->GetAddButton(); }

    std::unique_ptr<CVXPanelGroupSetting> popup;
};

TEST_F(PanelGroupSettingTest, LayoutOfThePopup)
{
    EXPECT_EQ(popup->size(), QSize(192, 136));
    EXPECT_EQ(popup->minimumSize(), popup->maximumSize()) << "fixed size";
    EXPECT_EQ(popup->layout()->contentsMargins(), QMargins(8, 8, 8, 12));
    EXPECT_EQ(popup->layout()->spacing(), 0);
    auto* title = popup->findChild<QLabel*>(QStringLiteral("CVXPanelGroupSettingTitle"));
    ASSERT_NE(title, nullptr);
    EXPECT_EQ(title->height(), 30);
    EXPECT_EQ(title->text(), QStringLiteral("联动分组"));
    EXPECT_EQ(Edit()->placeholderText(), QStringLiteral("编号"));
    EXPECT_EQ(Edit()->maxLength(), 2);
    EXPECT_TRUE(popup->windowFlags().testFlag(Qt::Popup));

    // Nine groups: seven on the first row, two on the second, 24 px buttons 1 px apart in
    // columns and 4 px apart in rows, starting under the 30 px title inside the 8 px margins.
    Show(Ids(9), QStringLiteral("2"));
    const struct
    {
        const char* id;
        QPoint pos;
    } expected[] = {{"1", {8, 38}}, {"2", {33, 38}}, {"7", {158, 38}}, {"8", {8, 66}}, {"9", {33, 66}}};
    for (const auto& e : expected) {
        CVXPanelGroupButton* button = popup->GetGroupBtnByGroupNumber(QLatin1String(e.id));
        ASSERT_NE(button, nullptr) << e.id;
        EXPECT_EQ(button->geometry(), QRect(e.pos, QSize(24, 24))) << "group " << e.id;
        EXPECT_EQ(button->objectName(), QStringLiteral("CVXPanelGroupSettingButton"));
        EXPECT_TRUE(button->isCheckable());
    }
    // The edit row sits on the 12 px bottom margin.
    EXPECT_EQ(Edit()->geometry().bottom(), 136 - 12 - 1);
    group_popup_test::SaveScreenshot(popup.get(), QStringLiteral("PanelGroupSetting_light"));
    QTest::keyClicks(Edit(), QStringLiteral("a1"));
    vx_ui_res::Provider::Instance().SetTheme(vx_ui_res::Theme::Dark);
    group_popup_test::SaveScreenshot(popup.get(), QStringLiteral("PanelGroupSetting_dark_typing"));
}

TEST_F(PanelGroupSettingTest, GroupListFillsButtonsInOrderAndFindsThem)
{
    popup->SetGroupIDList({QStringLiteral("3"), QStringLiteral("A1"), QStringLiteral("7")});
    EXPECT_EQ(popup->GetGroupIDList(), QStringList({"3", "A1", "7"}));
    ASSERT_NE(popup->GetGroupBtnByGroupNumber(QStringLiteral("A1")), nullptr);
    EXPECT_EQ(popup->GetGroupBtnByGroupNumber(QStringLiteral("A1"))->GetGroup(), QStringLiteral("A1"));
    EXPECT_EQ(popup->GetGroupBtnByGroupNumber(QStringLiteral("a1")), nullptr) << "ids are compared exactly";
    EXPECT_EQ(popup->GetGroupBtnByGroupNumber(QStringLiteral("4")), nullptr);
    EXPECT_EQ(popup->GetGroupBtnByGroupNumber(QString()), nullptr);

    const auto shown = [this] {
        int n = 0;
        for (auto* b : popup->findChildren<CVXPanelGroupButton*>())
            n += b->isHidden() ? 0 : 1;
        return n;
    };
    EXPECT_EQ(shown(), 3);

    // A shorter list reuses the first buttons; the rest hide and are no longer found.
    CVXPanelGroupButton* first = popup->GetGroupBtnByGroupNumber(QStringLiteral("3"));
    popup->SetGroupIDList({QStringLiteral("9")});
    EXPECT_EQ(shown(), 1);
    EXPECT_EQ(popup->GetGroupBtnByGroupNumber(QStringLiteral("9")), first);
    EXPECT_EQ(popup->GetGroupBtnByGroupNumber(QStringLiteral("7")), nullptr);
    EXPECT_EQ(popup->GetGroupBtnByGroupNumber(QString()), nullptr) << "hidden buttons carry no group";

    // More groups than two rows hold: the first fourteen are shown and the rest reported.
    popup->SetGroupIDList(Ids(16));
    EXPECT_TRUE(vxtest::HasLog("16 groups, only the first 14 are shown"));
    EXPECT_EQ(shown(), 14);
    EXPECT_NE(popup->GetGroupBtnByGroupNumber(QStringLiteral("14")), nullptr);
    EXPECT_EQ(popup->GetGroupBtnByGroupNumber(QStringLiteral("15")), nullptr);
}

TEST_F(PanelGroupSettingTest, TheCurrentGroupIsCheckedAndOnlyIt)
{
    popup->UpdateGroupIDList(Ids(5), QStringLiteral("4"));
    EXPECT_EQ(popup->GetCurrentGroupID(), QStringLiteral("4"));
    EXPECT_EQ(popup->GetCheckedGroupID(), QStringLiteral("4"));

    popup->UpdateGroupIDList(Ids(5), QStringLiteral("2"));
    EXPECT_EQ(popup->GetCheckedGroupID(), QStringLiteral("2"));
    EXPECT_FALSE(popup->GetGroupBtnByGroupNumber(QStringLiteral("4"))->isChecked()) << "exclusive";

    popup->UpdateGroupIDList(Ids(5), QString());
    EXPECT_EQ(popup->GetCheckedGroupID(), QString()) << "a box in no group checks nothing";

    // The button that showed group 4 shows group 9 now: it must not look chosen.
    popup->UpdateGroupIDList(Ids(5), QStringLiteral("4"));
    QStringList moved = Ids(5);
    moved[3] = QStringLiteral("9");
    popup->SetGroupIDList(moved);
    EXPECT_EQ(popup->GetCheckedGroupID(), QString());
}

TEST_F(PanelGroupSettingTest, GroupNumberEditTakesTwoUpperCaseLettersOrDigits)
{
    Show(Ids(3), QString());
    EXPECT_TRUE(Add()->isHidden()) << "the edit starts empty";

    QTest::keyClicks(Edit(), QStringLiteral("a"));
    EXPECT_EQ(Edit()->text(), QStringLiteral("A"));
    EXPECT_TRUE(Add()->isVisible());
    QTest::keyClicks(Edit(), QStringLiteral("1"));
    EXPECT_EQ(Edit()->text(), QStringLiteral("A1"));
    QTest::keyClicks(Edit(), QStringLiteral("z"));
    EXPECT_EQ(Edit()->text(), QStringLiteral("A1")) << "a third character is refused";

    QTest::keyClick(Edit(), Qt::Key_Backspace);
    QTest::keyClick(Edit(), Qt::Key_Backspace);
    EXPECT_EQ(Edit()->text(), QString());
    EXPECT_TRUE(Add()->isHidden()) << "emptied by hand: add hides again";

    QTest::keyClicks(Edit(), QStringLiteral("-"));
    EXPECT_EQ(Edit()->text(), QString()) << "'-' is refused";
    EXPECT_TRUE(Add()->isHidden());
    QTest::keyClicks(Edit(), QStringLiteral("b-c"));
    EXPECT_EQ(Edit()->text(), QStringLiteral("BC"));

    // Typing in the middle upper-cases in place and keeps the cursor where the user typed.
    QTest::keyClick(Edit(), Qt::Key_Backspace);
    QTest::keyClick(Edit(), Qt::Key_Home);
    QTest::keyClicks(Edit(), QStringLiteral("x"));
    EXPECT_EQ(Edit()->text(), QStringLiteral("XB"));
    EXPECT_EQ(Edit()->cursorPosition(), 1);

    // Showing again starts from an empty edit.
    popup->close();
    Show(Ids(3), QString());
    EXPECT_EQ(Edit()->text(), QString());
    EXPECT_TRUE(Add()->isHidden());
}

TEST_F(PanelGroupSettingTest, AddEmitsTheNumberThenEmptiesTheEdit)
{
    Show(Ids(3), QStringLiteral("1"));
    QSignalSpy added(popup.get(), &CVXPanelGroupSetting::GroupIDAdded);
    QSignalSpy changed(popup.get(), &CVXPanelGroupSetting::GroupIDChanged);
    QString textWhenEmitted;
    QObject::connect(popup.get(), &CVXPanelGroupSetting::GroupIDAdded, popup.get(),
                     [this, &textWhenEmitted] { textWhenEmitted = Edit()->text(); });

    QTest::keyClicks(Edit(), QStringLiteral("k7"));
    ClickThroughWindow(popup.get(), Add());
    ASSERT_EQ(added.count(), 1);
    EXPECT_EQ(added.at(0).at(0).toString(), QStringLiteral("K7"));
    EXPECT_EQ(textWhenEmitted, QStringLiteral("K7")) << "the edit is emptied after the signal";
    EXPECT_EQ(Edit()->text(), QString());
    EXPECT_TRUE(Add()->isHidden());
    EXPECT_TRUE(popup->isVisible()) << "the owner updates the list of the open popup";
    EXPECT_EQ(changed.count(), 0);
    EXPECT_TRUE(m_reports.Lines().empty()) << "adding sends no click report";

    // The owner shows the new group; Return in the edit adds as the button does.
    popup->UpdateGroupIDList({"1", "2", "3", "K7"}, QStringLiteral("K7"));
    EXPECT_EQ(popup->GetCheckedGroupID(), QStringLiteral("K7"));
    QTest::keyClicks(Edit(), QStringLiteral("5"));
    QTest::keyClick(Edit(), Qt::Key_Return);
    ASSERT_EQ(added.count(), 2);
    EXPECT_EQ(added.at(1).at(0).toString(), QStringLiteral("5"));
    QTest::keyClick(Edit(), Qt::Key_Return);
    EXPECT_EQ(added.count(), 2) << "nothing to add from an empty edit";
}

TEST_F(PanelGroupSettingTest, ClickingAGroupChoosesItReportsAndCloses)
{
    Show(Ids(9), QStringLiteral("1"));
    QSignalSpy changed(popup.get(), &CVXPanelGroupSetting::GroupIDChanged);
    QSignalSpy closed(popup.get(), &CVXPanelGroupSetting::Closed);
    size_t linesWhenEmitted = 99;
    QObject::connect(popup.get(), &CVXPanelGroupSetting::GroupIDChanged, popup.get(),
                     [this, &linesWhenEmitted] { linesWhenEmitted = m_reports.Lines().size(); });

    ClickThroughWindow(popup.get(), popup->GetGroupBtnByGroupNumber(QStringLiteral("8")));
    ASSERT_EQ(changed.count(), 1);
    EXPECT_EQ(changed.at(0).at(0).toString(), QStringLiteral("8"));
    EXPECT_EQ(popup->GetCurrentGroupID(), QStringLiteral("8"));
    EXPECT_EQ(popup->GetCheckedGroupID(), QStringLiteral("8"));
    EXPECT_EQ(closed.count(), 1);
    EXPECT_FALSE(popup->isVisible());

    EXPECT_EQ(linesWhenEmitted, 0u) << "the report follows the signal";
    ASSERT_NO_FATAL_FAILURE(group_popup_test::ExpectOnePopupClick(m_reports.Lines(), "1"));

    // Clicking the group the box is already in still answers: the box decides it changes nothing.
    Show(Ids(9), QStringLiteral("8"));
    ClickThroughWindow(popup.get(), popup->GetGroupBtnByGroupNumber(QStringLiteral("8")));
    EXPECT_EQ(changed.count(), 2);
    EXPECT_EQ(popup->GetCheckedGroupID(), QStringLiteral("8"));
}

TEST_F(PanelGroupSettingTest, AReceiverMayDeleteThePopup)
{
    auto* owned = popup.release();
    owned->UpdateGroupIDList(Ids(3), QString());
    QObject receiver;
    int calls = 0;
    QObject::connect(owned, &CVXPanelGroupSetting::GroupIDChanged, &receiver, [owned, &calls] {
        ++calls;
        delete owned;
    });
    owned->GetGroupBtnByGroupNumber(QStringLiteral("2"))->click();
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(m_reports.Lines().size(), 1u) << "the report is still sent";
}

class PanelCurGroupBtnTest : public ::testing::Test
{
protected:
    void TearDown() override { vx_ui_res::Provider::Instance().ResetForTest(); }
    // Inside the colour, left of the group text.
    static QColor FillPixel(CVXPanelCurGroupBtn& button) { return button.grab().toImage().pixelColor(4, 11); }
};

TEST_F(PanelCurGroupBtnTest, ShowsTheGroupOnItsColour)
{
    CVXPanelCurGroupBtn button;
    EXPECT_EQ(button.size(), QSize(22, 22));
    const QRgb unlinked = FillPixel(button).rgb();
    EXPECT_NE(unlinked, Theme("ct_selected").rgb());

    button.SetGroup(QStringLiteral("3"));
    EXPECT_EQ(button.GetGroup(), QStringLiteral("3"));
    // No colour of its own: group n shows the n-th tab group colour (3: cyan), group 10 wraps to
    // the second, and a name that is no number still gets one of the eight.
    EXPECT_EQ(FillPixel(button).rgb(), Theme("ck_cyan500").rgb()) << "group 3 without a colour";
    button.SetGroup(QStringLiteral("10"));
    EXPECT_EQ(FillPixel(button).rgb(), Theme("ck_blue620").rgb()) << "group 10 wraps to colour 2";
    button.SetGroup(QStringLiteral("AB"));
    const QStringList tabColors = {"ck_indigo450", "ck_blue620",   "ck_cyan500", "ck_lime500",
                                   "ck_yellow450", "ck_orange450", "ck_red400",  "ck_grayblue400"};
    bool isTabColor = false;
    for (const QString& key : tabColors)
        isTabColor = isTabColor || button.ResolvedGroupColor() == Theme(key.toUtf8().constData());
    EXPECT_TRUE(isTabColor) << "a named group shows one of the tab group colours";
    button.SetGroup(QStringLiteral("3"));

    button.SetColor(QStringLiteral("style_skin_panel_group_setting/red"));
    EXPECT_EQ(FillPixel(button).rgb(), Theme("style_skin_panel_group_setting/red").rgb());

    // A legacy key paints as the translucent colour it stands for.
    button.SetColor(QStringLiteral("ck_purple300_40"));
    EXPECT_EQ(button.GetColor(), QStringLiteral("ck_purple300_40")) << "kept as given";
    EXPECT_EQ(button.ResolvedGroupColor(), Theme("style_skin_panel_group_setting/purple_opacity"));

    // Tab group colours are theme keys too.
    button.SetColor(QStringLiteral("ck_cyan500"));
    EXPECT_EQ(FillPixel(button).rgb(), Theme("ck_cyan500").rgb());
    button.SetColor(QStringLiteral("no_such_key"));
    EXPECT_EQ(button.ResolvedGroupColor(), Theme("ck_cyan500")) << "an unknown key falls back to the group's";
    EXPECT_FALSE(vxtest::HasLog("unknown colour key")) << "unknown keys are not looked up";

    button.SetColor(QStringLiteral("style_skin_panel_group_setting/blue"));
    vx_ui_res::Provider::Instance().SetTheme(vx_ui_res::Theme::Dark);
    EXPECT_EQ(FillPixel(button).rgb(), Theme("style_skin_panel_group_setting/blue").rgb()) << "dark theme";

    button.SetGroup(QString());
    EXPECT_NE(FillPixel(button).rgb(), Theme("style_skin_panel_group_setting/blue").rgb())
        << "leaving the group shows the link glyph again";
}

TEST_F(PanelCurGroupBtnTest, AClickIsReported)
{
    QWidget strip;
    strip.setFixedSize(100, 31);
    auto* button = new CVXPanelCurGroupBtn(&strip);
    button->move(70, 4);
    strip.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&strip));
    QSignalSpy clicked(button, &QAbstractButton::clicked);
    if (!qEnvironmentVariableIsEmpty("VX_SCREENSHOT_DIR")) {
        // How a title strip shows the button next to the box's menu and close buttons.
        strip.setAutoFillBackground(true);
        auto* linked = new CVXPanelCurGroupBtn(&strip);
        linked->SetGroup(QStringLiteral("3"));
        linked->SetColor(QStringLiteral("style_skin_panel_group_setting/red"));
        linked->move(4, 4);
        auto* translucent = new CVXPanelCurGroupBtn(&strip);
        translucent->SetGroup(QStringLiteral("A1"));
        translucent->SetColor(QStringLiteral("ck_blue450_40"));
        translucent->move(28, 4);
        auto* menu = new vx_std_ui::VIconButton(vx_std_ui::IconGlyph::Menu, QString(), &strip);
        menu->move(46, 3);
        for (QWidget* w :
             {static_cast<QWidget*>(linked), static_cast<QWidget*>(translucent), static_cast<QWidget*>(menu)})
            w->show();
        group_popup_test::SaveScreenshot(&strip, QStringLiteral("PanelCurGroupBtn_strip"));
        delete linked;
        delete translucent;
        delete menu;
    }
    ClickThroughWindow(&strip, button);
    EXPECT_EQ(clicked.count(), 1);
    QTest::mouseClick(strip.windowHandle(), Qt::LeftButton, {}, QPoint(20, 15));
    EXPECT_EQ(clicked.count(), 1);
}

} // namespace
