// An open gallery and a theme switch: the built-in layouts' previews change to the picture made
// for the new theme (the "_black.png" sibling in the dark theme) over the new page colour, in
// every list already built and in every open gallery; user layouts keep the picture of their
// canvas.

#include "tests/uiframe/LayoutGalleryTestSupport.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPainter>

namespace {

using gallery_test::GalleryFixture;

// Left half of each preview file is opaque in the theme's own colour, the right half
// transparent (the page colour shows through).
const QColor kLightPictureColor(Qt::red);
const QColor kDarkPictureColor(Qt::blue);

class PanelLayoutPageThemeTest : public GalleryFixture
{
protected:
    void TearDown() override
    {
        vx_ui_res::Provider::Instance().ResetForTest();
        GalleryFixture::TearDown();
    }

    static bool WritePicture(const QString& path, const QColor& color)
    {
        QImage image(40, 20, QImage::Format_ARGB32);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        painter.fillRect(QRect(0, 0, 20, 20), color);
        painter.end();
        return image.save(path);
    }

    // A catalogue with one built-in layout whose previews are "Pair_white.png" and
    // "Pair_black.png", as the built-in export writes them. Returns the layout's key.
    unsigned long long LoadThemedBuiltInLayout()
    {
        const QString folder = core::product_path::GetAppFolder() + QStringLiteral("/LayoutTemplates/");
        EXPECT_TRUE(QDir().mkpath(folder));
        CVXPanelLayoutTemplate layout;
        layout.setTitle(QStringLiteral("Pair"));
        layout.setRestoreData(CanvasRecord(2));
        layout.setIsCustomized(false);
        EXPECT_TRUE(
            CVXPanelLayoutManager::SavePanelLayoutToFile(layout, folder + QStringLiteral("Pair.vxl")));
        EXPECT_TRUE(WritePicture(folder + QStringLiteral("Pair_white.png"), kLightPictureColor));
        EXPECT_TRUE(WritePicture(folder + QStringLiteral("Pair_black.png"), kDarkPictureColor));
        QJsonObject entry;
        entry.insert(QStringLiteral("File"), QStringLiteral("Pair.vxl"));
        entry.insert(QStringLiteral("Image"), QStringLiteral("Pair_white.png"));
        entry.insert(QStringLiteral("NameLangID"), gallery_test::kBuiltInNameId);
        WriteCatalogue(folder, entry);
        return LoadBuiltIns();
    }

    static QColor PageColor(vx_ui_res::Theme theme)
    {
        return vx_ui_res::Provider::Instance().GetColor(QStringLiteral("style_skin_panel/page_background"),
                                                        theme);
    }

    struct Seen
    {
        QColor picture;    // the opaque half
        QColor background; // the transparent half
    };
    static Seen SeenIn(CVXPanelLayoutPreview* preview)
    {
        const QImage image = preview->GetPreviewPixmap().toImage();
        if (image.size() != QSize(40, 20)) {
            ADD_FAILURE() << "preview of size " << image.width() << "x" << image.height();
            return {};
        }
        return {QColor(image.pixel(5, 10)), QColor(image.pixel(30, 10))};
    }
};

TEST_F(PanelLayoutPageThemeTest, OpenGalleriesFollowTheThemeWithTheirBuiltInPreviews)
{
    ASSERT_NE(PageColor(vx_ui_res::Theme::Light).rgb(), PageColor(vx_ui_res::Theme::Dark).rgb());
    const unsigned long long builtIn = LoadThemedBuiltInLayout();
    AddUserLayout(5001, QStringLiteral("Mine"));
    vx_ui_res::Provider::Instance().SetTheme(vx_ui_res::Theme::Light);

    CVXPanelLayoutPage* first = ShowGallery();
    // Two lists of the first gallery built, and a second gallery with only its first list.
    first->SetCurrentTabPage(CVXPanelLayoutPage::Default);
    first->SetCurrentTabPage(CVXPanelLayoutPage::All);
    CVXPanelLayoutPage* second = AddGalleryTab();
    const QVector<CVXPanelLayoutPreview*> builtInCards = {
        first->FindPanelLayoutList(CVXPanelLayoutPage::All)->FindPreview(builtIn),
        first->FindPanelLayoutList(CVXPanelLayoutPage::Default)->FindPreview(builtIn),
        second->FindPanelLayoutList(CVXPanelLayoutPage::All)->FindPreview(builtIn)};
    for (CVXPanelLayoutPreview* card : builtInCards) {
        ASSERT_NE(card, nullptr);
        const Seen seen = SeenIn(card);
        EXPECT_EQ(seen.picture, kLightPictureColor);
        EXPECT_EQ(seen.background.rgb(), PageColor(vx_ui_res::Theme::Light).rgb());
    }
    CVXPanelLayoutPreview* mine = first->FindPanelLayoutList(CVXPanelLayoutPage::All)->FindPreview(5001);
    ASSERT_NE(mine, nullptr);
    const qint64 minePicture = mine->GetPreviewPixmap().cacheKey();
    const QImage lightLook = tabs->grab().toImage();

    vx_ui_res::Provider::Instance().SetTheme(vx_ui_res::Theme::Dark);
    QCoreApplication::processEvents();
    for (CVXPanelLayoutPreview* card : builtInCards) {
        const Seen seen = SeenIn(card);
        EXPECT_EQ(seen.picture, kDarkPictureColor);
        EXPECT_EQ(seen.background.rgb(), PageColor(vx_ui_res::Theme::Dark).rgb());
    }
    EXPECT_EQ(mine->GetPreviewPixmap().cacheKey(), minePicture);
    EXPECT_NE(tabs->grab().toImage(), lightLook);

    // A list built after the switch starts with the dark picture too, and back to light again.
    CVXPanelLayoutPreview* later =
        second->GetPanelLayoutList(CVXPanelLayoutPage::Default)->FindPreview(builtIn);
    ASSERT_NE(later, nullptr);
    EXPECT_EQ(SeenIn(later).picture, kDarkPictureColor);
    vx_ui_res::Provider::Instance().SetTheme(vx_ui_res::Theme::Light);
    for (CVXPanelLayoutPreview* card : builtInCards + QVector<CVXPanelLayoutPreview*>{later}) {
        const Seen seen = SeenIn(card);
        EXPECT_EQ(seen.picture, kLightPictureColor);
        EXPECT_EQ(seen.background.rgb(), PageColor(vx_ui_res::Theme::Light).rgb());
    }
    EXPECT_EQ(mine->GetPreviewPixmap().cacheKey(), minePicture);
}

// Without a dark sibling the light picture stays, laid over the dark page colour.
TEST_F(PanelLayoutPageThemeTest, BuiltInWithoutADarkPictureKeepsItsOwnOverTheDarkPage)
{
    const unsigned long long builtIn = LoadBuiltInLayout(); // "Grid.png", no sibling
    vx_ui_res::Provider::Instance().SetTheme(vx_ui_res::Theme::Light);
    CVXPanelLayoutPage* page = ShowGallery();
    CVXPanelLayoutPreview* card = page->FindPanelLayoutList(CVXPanelLayoutPage::All)->FindPreview(builtIn);
    ASSERT_NE(card, nullptr);
    EXPECT_EQ(SeenIn(card).background.rgb(), PageColor(vx_ui_res::Theme::Light).rgb());

    vx_ui_res::Provider::Instance().SetTheme(vx_ui_res::Theme::Dark);
    const Seen seen = SeenIn(card);
    EXPECT_EQ(seen.picture, QColor(Qt::red));
    EXPECT_EQ(seen.background.rgb(), PageColor(vx_ui_res::Theme::Dark).rgb());
}

} // namespace
