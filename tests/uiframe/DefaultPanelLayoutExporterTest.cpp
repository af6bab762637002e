// The built-in layout export tool: absent in release versions, its flag otherwise, and its menu
// entry painted in red text after the menu's padding and check column.

#include "tests/common/TestSupport.h"

#include "UIFrame/Canvas/DefaultPanelLayoutExporter.h"

#include "Platform/Core/Environment.h"
#include "Platform/StdUI/Menu.h"

#include <QApplication>
#include <QPainter>
#include <QSignalSpy>
#include <QStyle>
#include <QStyleOptionMenuItem>
#include <QTest>
#include <QWindow>

#include <gtest/gtest.h>

namespace {

class DefaultPanelLayoutExporterTest : public ::testing::Test
{
protected:
    void TearDown() override
    {
        CVXDefaultPanelLayoutExporter::ResetForTest();
        core::environment::ResetForTest();
    }
};

bool IsRed(QRgb c)
{
    return qRed(c) > 160 && qGreen(c) < 110 && qBlue(c) < 110;
}

bool IsGreen(QRgb c)
{
    return qGreen(c) > 160 && qRed(c) < 90 && qBlue(c) < 90;
}

// The bounding box of the pixels that pass `test`; invalid when none does.
QRect Extent(const QImage& image, bool (*test)(QRgb))
{
    QRect box;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (test(image.pixel(x, y)))
                box = box.united(QRect(x, y, 1, 1));
    return box;
}

} // namespace

TEST_F(DefaultPanelLayoutExporterTest, ReleaseVersionsHaveNoExporterWhateverWasSet)
{
    core::environment::SetReleaseAppVersion(false);
    CVXDefaultPanelLayoutExporter* exporter = CVXDefaultPanelLayoutExporter::Instance();
    ASSERT_NE(exporter, nullptr);
    EXPECT_EQ(CVXDefaultPanelLayoutExporter::Instance(), exporter) << "one instance";
    EXPECT_FALSE(CVXDefaultPanelLayoutExporter::IsExportDefaultPanelLayout()) << "off at first";
    exporter->SetExportDefaultPanelLayout(true);
    EXPECT_TRUE(CVXDefaultPanelLayoutExporter::IsExportDefaultPanelLayout());
    exporter->SetExportDefaultPanelLayout(false);
    EXPECT_FALSE(CVXDefaultPanelLayoutExporter::IsExportDefaultPanelLayout());
    exporter->SetExportDefaultPanelLayout(true);

    core::environment::SetReleaseAppVersion(true);
    EXPECT_EQ(CVXDefaultPanelLayoutExporter::Instance(), nullptr);
    EXPECT_FALSE(CVXDefaultPanelLayoutExporter::IsExportDefaultPanelLayout());
}

TEST_F(DefaultPanelLayoutExporterTest, EntryPaintsRedTextAfterTheCheckColumnAndTriggersOnClick)
{
    vx_std_ui::VMenu menu;
    auto* plain = menu.addActionWithData(QStringLiteral("Plain entry"));
    auto* action = new CVXDefaultPanelLayoutExportAction(QStringLiteral("Export as built-in layout"), &menu);
    menu.addAction(action);
    menu.popup(QPoint(100, 100));
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&menu));
    QWidget* item = menu.childAt(menu.actionGeometry(action).center());
    ASSERT_NE(item, nullptr);
    EXPECT_EQ(item->geometry(), menu.actionGeometry(action));
    ASSERT_GT(item->width(), 100);
    ASSERT_GT(item->height(), 10);

    const QImage image = item->grab().toImage().convertToFormat(QImage::Format_RGB32);
    const QRect red = Extent(image, &IsRed);
    ASSERT_TRUE(red.isValid()) << "the text is red";
    QStyleOptionMenuItem option;
    option.initFrom(&menu);
    option.maxIconWidth = menu.style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, &menu);
    const int indent = CVXDefaultPanelLayoutExportAction::TextIndent(option, &menu);
    const int padding = menu.style()->pixelMetric(QStyle::PM_MenuHMargin, &option, &menu);
    const int check = menu.style()->pixelMetric(QStyle::PM_IndicatorWidth, &option, &menu);
    EXPECT_GE(indent, padding + check);
    EXPECT_GE(red.left(), indent);
    EXPECT_LE(red.left(), indent + 3) << "left-aligned at the indent";
    // Token 3 is a 13 px font: capitals and descenders stay within it, and it is centred.
    EXPECT_LE(red.height(), 13);
    EXPECT_GE(red.height(), 8);
    EXPECT_LE(std::abs((red.top() + red.bottom()) / 2 - item->height() / 2), 3);
    // The plain entry next to it is not red.
    const QRect plainRect = menu.actionGeometry(plain);
    const QImage whole = menu.grab().toImage().convertToFormat(QImage::Format_RGB32);
    EXPECT_FALSE(Extent(whole.copy(plainRect), &IsRed).isValid());

    // With an icon, the icon sits in the column left of the text.
    QPixmap green(16, 16);
    green.fill(Qt::green);
    action->setIcon(QIcon(green));
    item->update();
    const QImage withIcon = item->grab().toImage().convertToFormat(QImage::Format_RGB32);
    const QRect icon = Extent(withIcon, &IsGreen);
    ASSERT_TRUE(icon.isValid());
    EXPECT_LT(icon.right(), indent);
    EXPECT_GE(icon.left(), padding);

    // A click on the entry triggers it and closes the menu.
    QSignalSpy triggered(action, &QAction::triggered);
    const QPoint centre = item->mapTo(&menu, item->rect().center());
    QTest::mouseMove(menu.windowHandle(), centre);
    QTest::mouseClick(menu.windowHandle(), Qt::LeftButton, Qt::NoModifier, centre);
    EXPECT_EQ(triggered.count(), 1);
    EXPECT_FALSE(menu.isVisible());
}
