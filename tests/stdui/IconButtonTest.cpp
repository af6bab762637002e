// VIconButton: glyph outlines, the background of each state, hover and click with real mouse
// input, painting in the theme's colours (and again after a theme change), SVG icons.

#include "Platform/StdUI/IconButton.h"
#include "Platform/StdUI/ThemeResource.h"

#include "tests/common/TestSupport.h"

#include <QFile>
#include <QHBoxLayout>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QWidget>
#include <QWindow>

#include <gtest/gtest.h>

using namespace vx_std_ui;

namespace {

// Squared distance between two colours, alpha ignored.
int Distance(QColor a, QColor b)
{
    const int dr = a.red() - b.red();
    const int dg = a.green() - b.green();
    const int db = a.blue() - b.blue();
    return dr * dr + dg * dg + db * db;
}

QColor Theme(const char* key)
{
    return vx_ui_res::Provider::Instance().GetColor(QLatin1String(key));
}

// Antialiased strokes do not cover a pixel whole: a glyph pixel is told by being nearer to the
// glyph colour than to anything else it could be.
::testing::AssertionResult NearerTo(QColor pixel, QColor expected, QColor other)
{
    if (Distance(pixel, expected) < Distance(pixel, other))
        return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure()
           << "pixel " << pixel.name().toStdString() << " is not nearer to " << expected.name().toStdString()
           << " than to " << other.name().toStdString();
}

class IconButtonTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        host = new QWidget;
        host->setFixedSize(120, 60);
        host->setAutoFillBackground(true);
        button = new VIconButton(IconGlyph::Close, QStringLiteral("Close"), host);
        button->move(10, 10);
    }
    void TearDown() override
    {
        delete host;
        vx_ui_res::Provider::Instance().ResetForTest();
    }

    QWindow* ShowHost()
    {
        host->show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(host));
        // The first move only brings the cursor into the window; widgets see moves after it.
        QTest::mouseMove(host->windowHandle(), QPoint(1, 1));
        return host->windowHandle();
    }
    QPoint InHost(QPoint inButton) const { return button->mapTo(host, inButton); }

    QWidget* host = nullptr;
    VIconButton* button = nullptr;
};

TEST(IconGlyphPathTest, GlyphsFillTheirBoxAsDrawn)
{
    const QRectF box(4, 6, 20, 20);
    EXPECT_TRUE(IconGlyphPath(IconGlyph::None, box).isEmpty());
    // The cross and the plus reach every side of the box.
    EXPECT_EQ(IconGlyphPath(IconGlyph::Close, box).boundingRect(), box);
    EXPECT_EQ(IconGlyphPath(IconGlyph::Add, box).boundingRect(), box);
    // Three dots of radius 2 (a tenth of the width) spanning the width on the middle line.
    EXPECT_EQ(IconGlyphPath(IconGlyph::Menu, box).boundingRect(), QRectF(4, 14, 20, 4));

    for (IconGlyph glyph : {IconGlyph::Link, IconGlyph::Check}) {
        const QRectF bounds = IconGlyphPath(glyph, box).boundingRect();
        EXPECT_FALSE(bounds.isEmpty());
        EXPECT_TRUE(box.contains(bounds)) << "glyph " << int(glyph) << " leaves its box";
    }
    // The chain links are symmetric about the centre of the box.
    const QRectF link = IconGlyphPath(IconGlyph::Link, box).boundingRect();
    EXPECT_NEAR(link.center().x(), box.center().x(), 1e-9);
    EXPECT_NEAR(link.center().y(), box.center().y(), 1e-9);
}

TEST(IconButtonBackgroundKeyTest, PressedWinsOverHover)
{
    struct Row
    {
        bool hovered, down, checked;
        const char* key;
    };
    const Row rows[] = {
        {false, false, false, ""},          {true, false, false, "ct_hover"},
        {true, true, false, "ct_pressed"},  {false, true, false, "ct_pressed"},
        {false, false, true, "ct_pressed"}, {true, false, true, "ct_pressed"},
    };
    for (const Row& row : rows)
        EXPECT_EQ(IconButtonBackgroundKey(row.hovered, row.down, row.checked), QLatin1String(row.key))
            << row.hovered << row.down << row.checked;
}

TEST_F(IconButtonTest, KeepsItsSizeInALayout)
{
    EXPECT_EQ(button->size(), QSize(24, 24));
    EXPECT_EQ(button->toolTip(), QStringLiteral("Close"));
    auto* layout = new QHBoxLayout(host);
    layout->addWidget(button);
    button->SetButtonSize(QSize(20, 18));
    host->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(host));
    EXPECT_EQ(button->size(), QSize(20, 18)) << "a layout of 120 x 60 does not stretch it";
}

TEST_F(IconButtonTest, HoverAndClickWithTheMouse)
{
    QWindow* window = ShowHost();
    QSignalSpy clicked(button, &QAbstractButton::clicked);

    QTest::mouseMove(window, InHost(QPoint(12, 12)));
    EXPECT_TRUE(button->IsHovered());
    QTest::mouseClick(window, Qt::LeftButton, {}, InHost(QPoint(12, 12)));
    EXPECT_EQ(clicked.count(), 1);

    QTest::mouseMove(window, QPoint(100, 50));
    EXPECT_FALSE(button->IsHovered());
    QTest::mouseClick(window, Qt::LeftButton, {}, QPoint(100, 50));
    EXPECT_EQ(clicked.count(), 1) << "a click beside the button is not the button's";
}

TEST_F(IconButtonTest, PaintsTheThemeColoursOfItsState)
{
    QWindow* window = ShowHost();
    const QPoint corner(2, 12);  // inside the rounded background, away from the glyph
    const QPoint centre(12, 12); // where the two strokes of the cross meet

    QImage idle = button->grab().toImage();
    EXPECT_TRUE(NearerTo(idle.pixelColor(centre), Theme("ct_text_secondary"), Theme("ct_bg_primary")));
    EXPECT_NE(idle.pixelColor(corner).rgb(), Theme("ct_hover").rgb());

    QTest::mouseMove(window, InHost(centre));
    QImage hovered = button->grab().toImage();
    EXPECT_EQ(hovered.pixelColor(corner).rgb(), Theme("ct_hover").rgb());

    vx_ui_res::Provider::Instance().SetTheme(vx_ui_res::Theme::Dark);
    QImage dark = button->grab().toImage();
    EXPECT_EQ(dark.pixelColor(corner).rgb(), Theme("ct_hover").rgb()) << "the dark theme's hover colour";
    EXPECT_NE(dark.pixelColor(corner).rgb(), hovered.pixelColor(corner).rgb());

    button->setEnabled(false);
    QImage disabled = button->grab().toImage();
    EXPECT_TRUE(NearerTo(disabled.pixelColor(centre), Theme("ct_text_disabled"), Theme("ct_text_secondary")));
    EXPECT_NE(disabled.pixelColor(corner).rgb(), Theme("ct_hover").rgb())
        << "a disabled button shows no hover";
}

TEST_F(IconButtonTest, GlyphColourKeyFallsBackWhenUnknown)
{
    button->SetGlyphColorKey(QStringLiteral("ct_rise"));
    EXPECT_TRUE(
        NearerTo(button->grab().toImage().pixelColor(12, 12), Theme("ct_rise"), Theme("ct_text_secondary")));
    button->SetGlyphColorKey(QStringLiteral("no_such_colour"));
    EXPECT_TRUE(
        NearerTo(button->grab().toImage().pixelColor(12, 12), Theme("ct_text_secondary"), Theme("ct_rise")));
    EXPECT_FALSE(vxtest::HasLog("unknown colour key")) << "the fallback is chosen without asking for the key";
}

TEST_F(IconButtonTest, SvgIconsReplaceTheGlyph)
{
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    const QString good = dir.filePath(QStringLiteral("square.svg"));
    const QString bad = dir.filePath(QStringLiteral("broken.svg"));
    {
        QFile file(good);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(R"(<svg xmlns="http://www.w3.org/2000/svg" width="16" height="16" viewBox="0 0 16 16">)"
                   R"(<rect width="16" height="16" fill="#ff0000"/></svg>)");
        QFile broken(bad);
        ASSERT_TRUE(broken.open(QIODevice::WriteOnly));
        broken.write("<svg this is not");
    }

    EXPECT_FALSE(button->SetSvgFile(bad));
    EXPECT_TRUE(vxtest::HasLog("not a valid SVG image"));
    EXPECT_FALSE(button->SetSvgFile(dir.filePath(QStringLiteral("missing.svg"))));
    EXPECT_FALSE(button->HasIcon());
    EXPECT_EQ(button->Glyph(), IconGlyph::Close) << "a refused file leaves the glyph";

    ASSERT_TRUE(button->SetSvgFile(good));
    EXPECT_TRUE(button->HasIcon());
    EXPECT_EQ(button->Glyph(), IconGlyph::None);
    const QImage image = button->grab().toImage();
    EXPECT_EQ(image.pixelColor(12, 12).rgb(), QColor(Qt::red).rgb());
    EXPECT_EQ(image.pixelColor(5, 5).rgb(), QColor(Qt::red).rgb()) << "16 x 16 centred in 24 x 24";
    EXPECT_NE(image.pixelColor(2, 2).rgb(), QColor(Qt::red).rgb());

    button->SetGlyph(IconGlyph::Add);
    EXPECT_FALSE(button->HasIcon());
    EXPECT_TRUE(NearerTo(button->grab().toImage().pixelColor(12, 12), Theme("ct_text_secondary"), Qt::red));
}

} // namespace
