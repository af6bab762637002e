// VPopup: placement inside the screen, closing on Escape and on a click outside (real key and
// mouse input), Closed once per showing, the themed background and border.

#include "Platform/StdUI/Popup.h"
#include "Platform/StdUI/ThemeResource.h"

#include "tests/common/TestSupport.h"

#include <QGuiApplication>
#include <QScreen>
#include <QSignalSpy>
#include <QTest>
#include <QWindow>

#include <gtest/gtest.h>

#include <memory>

using namespace vx_std_ui;

namespace {

class PopupTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        popup = std::make_unique<VPopup>();
        popup->setFixedSize(192, 136);
    }
    void TearDown() override
    {
        popup.reset();
        vx_ui_res::Provider::Instance().ResetForTest();
    }

    QRect Available() const { return QGuiApplication::primaryScreen()->availableGeometry(); }

    std::unique_ptr<VPopup> popup;
};

TEST(PopupTopLeftTest, StaysInsideTheAvailableArea)
{
    struct Row
    {
        const char* what;
        QPoint anchor;
        QSize size;
        QRect available;
        QPoint expected;
    };
    const QRect screen(0, 0, 800, 600); // right 799, bottom 599
    const Row rows[] = {
        {"fits at the anchor", {10, 10}, {200, 100}, screen, {10, 10}},
        {"fits exactly in the corner", {600, 500}, {200, 100}, screen, {600, 500}},
        {"pushed left by one pixel", {601, 10}, {200, 100}, screen, {600, 10}},
        {"flipped above the anchor", {10, 550}, {200, 100}, screen, {10, 450}},
        {"no room above: pushed up", {10, 50}, {200, 580}, screen, {10, 20}},
        {"larger than the area", {100, 100}, {900, 700}, screen, {0, 0}},
        {"area not at the origin", {50, 20}, {100, 50}, QRect(100, 50, 400, 300), {100, 50}},
        {"anchor below a screen to the right",
         {1900, 1000},
         {192, 136},
         QRect(1024, 0, 1024, 768),
         {1856, 632}},
    };
    for (const Row& row : rows)
        EXPECT_EQ(PopupTopLeft(row.anchor, row.size, row.available), row.expected) << row.what;
}

TEST_F(PopupTest, ShowAtKeepsThePopupOnTheScreen)
{
    const QRect area = Available();
    ASSERT_GE(area.width(), 400);
    ASSERT_GE(area.height(), 300);

    popup->ShowAt(area.topLeft() + QPoint(20, 30));
    EXPECT_TRUE(popup->isVisible());
    EXPECT_TRUE(popup->isWindow());
    EXPECT_EQ(popup->geometry(), QRect(area.topLeft() + QPoint(20, 30), QSize(192, 136)));
    popup->close();

    // Near the bottom-right corner: pushed left and flipped above the anchor.
    const QPoint anchor = area.bottomRight() - QPoint(10, 10);
    popup->ShowAt(anchor);
    EXPECT_EQ(popup->pos(), QPoint(area.right() - 191, anchor.y() - 136));
    EXPECT_TRUE(area.contains(popup->geometry()));
}

TEST_F(PopupTest, EscapeClosesAndReportsClosedOnce)
{
    QSignalSpy closed(popup.get(), &VPopup::Closed);
    popup->ShowAt(Available().topLeft() + QPoint(40, 40));
    ASSERT_TRUE(QTest::qWaitForWindowExposed(popup.get()));
    EXPECT_EQ(closed.count(), 0);

    QTest::keyClick(popup->windowHandle(), Qt::Key_Escape);
    EXPECT_FALSE(popup->isVisible());
    EXPECT_EQ(closed.count(), 1);

    popup->hide();
    EXPECT_EQ(closed.count(), 1) << "hiding a closed popup again reports nothing";

    popup->ShowAt(Available().topLeft() + QPoint(40, 40));
    popup->hide();
    EXPECT_EQ(closed.count(), 2) << "each showing ends with one Closed";
}

TEST_F(PopupTest, AClickOutsideClosesAClickInsideDoesNot)
{
    QWidget other;
    other.setFixedSize(300, 200);
    other.move(Available().topLeft() + QPoint(400, 300));
    other.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&other));

    QSignalSpy closed(popup.get(), &VPopup::Closed);
    popup->ShowAt(Available().topLeft() + QPoint(40, 40));
    ASSERT_TRUE(QTest::qWaitForWindowExposed(popup.get()));

    QTest::mouseClick(popup->windowHandle(), Qt::LeftButton, {}, QPoint(50, 50));
    EXPECT_TRUE(popup->isVisible());
    EXPECT_EQ(closed.count(), 0);

    QTest::mouseClick(other.windowHandle(), Qt::LeftButton, {}, QPoint(150, 100));
    EXPECT_FALSE(popup->isVisible());
    EXPECT_EQ(closed.count(), 1);
}

TEST_F(PopupTest, PaintsTheThemeBackgroundAndBorder)
{
    const auto color = [](const char* key) {
        return vx_ui_res::Provider::Instance().GetColor(QLatin1String(key)).rgb();
    };
    QImage light = popup->grab().toImage();
    EXPECT_EQ(light.pixelColor(0, 0).rgb(), color("ct_border"));
    EXPECT_EQ(light.pixelColor(191, 135).rgb(), color("ct_border"));
    EXPECT_EQ(light.pixelColor(96, 68).rgb(), color("ct_bg_primary"));

    vx_ui_res::Provider::Instance().SetTheme(vx_ui_res::Theme::Dark);
    QImage dark = popup->grab().toImage();
    EXPECT_EQ(dark.pixelColor(96, 68).rgb(), color("ct_bg_primary"));
    EXPECT_NE(dark.pixelColor(96, 68).rgb(), light.pixelColor(96, 68).rgb());
    EXPECT_EQ(popup->palette().color(QPalette::WindowText),
              vx_ui_res::Provider::Instance().GetColor(QStringLiteral("ct_text_primary")))
        << "children of the popup take the theme's text colour";
}

} // namespace
