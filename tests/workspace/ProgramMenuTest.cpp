// The File and Help menu entries end to end, triggered through the actions the menu bar holds:
// exporting the canvas in front to a layout file and importing that file as a new page with the
// same boxes, the built-in export with its light and dark previews, a refused file and a
// cancelled file choice, and the About dialog.

#include "tests/workspace/ProgramTestSupport.h"

#include "Platform/StdUI/Dialog.h"

#include <QAction>
#include <QFileInfo>
#include <QImage>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QSignalSpy>

#include <algorithm>

using namespace program_test;

namespace {

using FileDialogKind = CVXPanelLayoutManager::FileDialogKind;

// The entry with that text in the menu with that title, as the user finds it; null when none.
QAction* MenuEntry(vx_ws::CVXWorkspaceMainWindow* window, const QString& menuTitle, const QString& text)
{
    for (QAction* top : window->menuBar()->actions()) {
        if (!top->menu() || top->menu()->title() != menuTitle)
            continue;
        for (QAction* action : top->menu()->actions()) {
            if (action->text() == text)
                return action;
        }
    }
    return nullptr;
}

// A box as the user sees it: its card type, place and linkage group.
using BoxLook = QString;

std::vector<BoxLook> LooksOf(CVXPanelScrollView* canvas)
{
    std::vector<BoxLook> looks;
    for (const BoxCard& bc : BoxesOf(canvas)) {
        const QRect g = bc.box->geometry();
        looks.push_back(QStringLiteral("%1 (%2,%3 %4x%5) group %6")
                            .arg(bc.card ? bc.card->GetCardObjType() : QStringLiteral("<none>"))
                            .arg(g.x())
                            .arg(g.y())
                            .arg(g.width())
                            .arg(g.height())
                            .arg(bc.box->GetGroupID()));
    }
    std::sort(looks.begin(), looks.end());
    return looks;
}

// The boxes a layout file's canvas record holds.
int BoxCountInRecord(const CVXVariantMapTree& record)
{
    return record.Get<QVector<CVXVariantMapTree>>(QStringLiteral("PanelBoxsData")).size();
}

double MeanGrey(const QImage& image)
{
    double sum = 0;
    int n = 0;
    for (int y = 0; y < image.height(); y += 3) {
        for (int x = 0; x < image.width(); x += 3, ++n)
            sum += qGray(image.pixel(x, y));
    }
    return n ? sum / n : 0;
}

struct DialogAnswer
{
    QString path; // what the "user" picks; empty cancels
    int asked = 0;
    FileDialogKind lastKind = FileDialogKind::Open;
};

} // namespace

class ProgramMenuTest : public ProgramFixture
{
protected:
    void SetUp() override
    {
        ProgramFixture::SetUp();
        if (IsSkipped())
            return;
        ASSERT_TRUE(files.isValid());
        CVXPanelLayoutManager::SetFileDialogProviderForTest(
            [this](QWidget*, FileDialogKind kind, const QString&, const QString&) {
                ++answer.asked;
                answer.lastKind = kind;
                return answer.path;
            });
    }

    QAction* FileEntry(const char* text) const
    {
        return MenuEntry(Window(), QStringLiteral("文件"), QString::fromUtf8(text));
    }

    QTemporaryDir files;
    DialogAnswer answer;
};

TEST_F(ProgramMenuTest, ExportedLayoutComesBackAsANewPageWithTheSameBoxes)
{
    StartApp();
    QAction* exportEntry = FileEntry("导出布局…");
    QAction* importEntry = FileEntry("导入布局…");
    ASSERT_NE(exportEntry, nullptr);
    ASSERT_NE(importEntry, nullptr);
    // A gallery in front: nothing to export, but a file can be imported.
    EXPECT_FALSE(exportEntry->isEnabled());
    EXPECT_TRUE(importEntry->isEnabled());

    const vx_ws::VXBuiltInLayout& builtIn = vx_ws::BuiltInLayouts().first();
    const QString title = core::langx::tr(builtIn.nameId, builtIn.name);
    CVXPanelScrollView* original = OpenBuiltIn(title);
    ASSERT_NE(original, nullptr);
    ASSERT_TRUE(exportEntry->isEnabled());
    const std::vector<BoxLook> before = LooksOf(original);
    ASSERT_EQ(before.size(), static_cast<size_t>(builtIn.boxes.size()));

    // Cancelling the file choice writes nothing and reports nothing.
    QSignalSpy exported(&CVXPanelLayoutManager::Instance(), &CVXPanelLayoutManager::PanelLayoutExported);
    exportEntry->trigger();
    EXPECT_EQ(answer.asked, 1);
    EXPECT_EQ(answer.lastKind, FileDialogKind::Save);
    QCoreApplication::processEvents();
    EXPECT_EQ(exported.count(), 0);
    EXPECT_TRUE(QDir(files.path()).entryList(QDir::Files).isEmpty());

    answer.path = files.filePath(QStringLiteral("desk.vxl"));
    exportEntry->trigger();
    ASSERT_TRUE(WaitFor([&exported]() { return exported.count() == 1; }));
    EXPECT_EQ(exported.at(0).at(0).toString(), answer.path);
    EXPECT_TRUE(exported.at(0).at(1).toBool());
    CVXPanelLayoutTemplate written;
    ASSERT_TRUE(CVXPanelLayoutManager::LoadPanelLayoutFromFile(&written, answer.path, false));
    EXPECT_EQ(written.title(), title);
    EXPECT_TRUE(written.isCustomized());
    EXPECT_EQ(BoxCountInRecord(written.restoreData()), static_cast<int>(before.size()));
    // The plain export has no previews beside it.
    EXPECT_FALSE(QFile::exists(files.filePath(QStringLiteral("desk_white.png"))));

    // Import: a new page after the current one, in front, with the same boxes in the same places.
    QSignalSpy imported(&CVXPanelLayoutManager::Instance(), &CVXPanelLayoutManager::PanelLayoutImported);
    const int pagesBefore = Panel()->Tabs()->count();
    importEntry->trigger();
    EXPECT_EQ(answer.lastKind, FileDialogKind::Open);
    ASSERT_TRUE(WaitFor([&imported]() { return imported.count() == 1; }));
    EXPECT_TRUE(imported.at(0).at(1).toBool());
    FlushDeletes();
    ASSERT_EQ(Panel()->Tabs()->count(), pagesBefore + 1);
    CVXPanelScrollView* copy = Panel()->CurrentCanvas();
    ASSERT_NE(copy, nullptr);
    ASSERT_NE(copy, original);
    EXPECT_EQ(Panel()->Tabs()->indexOf(copy), Panel()->Tabs()->indexOf(original) + 1);
    EXPECT_EQ(Panel()->Tabs()->tabText(Panel()->Tabs()->indexOf(copy)), title);
    EXPECT_NE(copy->GetObjKey(), original->GetObjKey());
    EXPECT_EQ(Window()->CurrentCanvas(), copy);
    EXPECT_TRUE(Window()->Action(vx_ws::CVXWorkspaceMainWindow::ActionId::SaveLayout)->isEnabled());
    EXPECT_EQ(LooksOf(copy), before);
    // The imported copy takes the feed like any opened layout.
    for (const BoxCard& bc : BoxesOf(copy))
        EXPECT_NE(bc.card, nullptr);

    // The imported page survives a restart like any other page.
    Restart();
    bool found = false;
    for (CVXPanelScrollView* canvas : Panel()->Canvases())
        found = found || (LooksOf(canvas) == before &&
                          Panel()->Tabs()->tabText(Panel()->Tabs()->indexOf(canvas)) == title);
    EXPECT_TRUE(found);
}

TEST_F(ProgramMenuTest, AFileThatIsNoLayoutIsRefusedWithoutANewPage)
{
    StartApp();
    answer.path = files.filePath(QStringLiteral("notes.vxl"));
    QFile junk(answer.path);
    ASSERT_TRUE(junk.open(QIODevice::WriteOnly));
    junk.write("these are not the boxes you are looking for");
    junk.close();

    QSignalSpy imported(&CVXPanelLayoutManager::Instance(), &CVXPanelLayoutManager::PanelLayoutImported);
    QAction* importEntry = FileEntry("导入布局…");
    ASSERT_NE(importEntry, nullptr);
    importEntry->trigger();
    ASSERT_TRUE(WaitFor([&imported]() { return imported.count() == 1; }));
    EXPECT_FALSE(imported.at(0).at(1).toBool());
    FlushDeletes();
    EXPECT_EQ(Panel()->Tabs()->count(), 1);
    EXPECT_NE(Panel()->CurrentGallery(), nullptr);
    EXPECT_TRUE(Panel()->Canvases().isEmpty());
}

TEST_F(ProgramMenuTest, BuiltInExportWritesTheLayoutWithLightAndDarkPreviews)
{
    StartApp();
    QAction* entry = FileEntry("导出为内置布局…");
    if (!CVXDefaultPanelLayoutExporter::Instance()) {
        EXPECT_EQ(entry, nullptr) << "a release build shows the built-in export";
        GTEST_SKIP() << "release build: no built-in export";
    }
    ASSERT_NE(entry, nullptr);
    EXPECT_FALSE(entry->isEnabled());

    const vx_ws::VXBuiltInLayout& builtIn = vx_ws::BuiltInLayouts().last();
    CVXPanelScrollView* canvas = OpenBuiltIn(core::langx::tr(builtIn.nameId, builtIn.name));
    ASSERT_NE(canvas, nullptr);
    ASSERT_TRUE(entry->isEnabled());
    ASSERT_EQ(vx_ui_res::Provider::Instance().CurrentTheme(), vx_ui_res::Theme::Light);

    QSignalSpy exported(&CVXPanelLayoutManager::Instance(), &CVXPanelLayoutManager::PanelLayoutExported);
    answer.path = files.filePath(QStringLiteral("Desk.vxl"));
    entry->trigger();
    ASSERT_TRUE(WaitFor([&exported]() { return exported.count() == 1; }));
    EXPECT_TRUE(exported.at(0).at(1).toBool());

    CVXPanelLayoutTemplate written;
    ASSERT_TRUE(CVXPanelLayoutManager::LoadPanelLayoutFromFile(&written, answer.path, false));
    // Marked as a built-in layout, so that loading it from the templates folder keeps it one.
    EXPECT_FALSE(written.isCustomized());
    EXPECT_EQ(BoxCountInRecord(written.restoreData()), static_cast<int>(BoxesOf(canvas).size()));

    const QImage light(files.filePath(QStringLiteral("Desk_white.png")));
    const QImage dark(files.filePath(QStringLiteral("Desk_black.png")));
    ASSERT_FALSE(light.isNull());
    ASSERT_FALSE(dark.isNull());
    EXPECT_EQ(light.size(), dark.size());
    EXPECT_GE(light.width(), canvas->width() / 2);
    EXPECT_GT(MeanGrey(light), 170.0);
    EXPECT_LT(MeanGrey(dark), 90.0);

    // The window is back in the user's theme and the export switch is off again.
    EXPECT_EQ(vx_ui_res::Provider::Instance().CurrentTheme(), vx_ui_res::Theme::Light);
    EXPECT_FALSE(CVXDefaultPanelLayoutExporter::IsExportDefaultPanelLayout());
    EXPECT_TRUE(Window()->Action(vx_ws::CVXWorkspaceMainWindow::ActionId::ThemeLight)->isChecked());
}

TEST_F(ProgramMenuTest, AboutShowsTheVersionAndDataFolderAndCloses)
{
    StartApp();
    QAction* about = MenuEntry(Window(), QStringLiteral("帮助"), QStringLiteral("关于"));
    ASSERT_NE(about, nullptr);

    about->trigger();
    auto* dialog = OpenDialog<vx_std_ui::VDialog>();
    ASSERT_NE(dialog, nullptr);
    EXPECT_EQ(dialog->objectName(), QStringLiteral("About_Dialog"));
    EXPECT_EQ(dialog->parentWidget(), Window());
    auto* text = dialog->findChild<QLabel*>(QStringLiteral("About_Text"));
    ASSERT_NE(text, nullptr);
    EXPECT_TRUE(text->text().contains(QString::fromLatin1(qVersion())));
    EXPECT_TRUE(text->text().contains(QDir::toNativeSeparators(root.path())) ||
                text->text().contains(root.path()))
        << text->text().toStdString();
    QPointer<vx_std_ui::VDialog> watched(dialog);
    ClickButton(dialog, "Confirm_Button");
    FlushDeletes();
    EXPECT_TRUE(watched.isNull());

    // Again, closed with Escape this time; the window stays usable.
    about->trigger();
    dialog = OpenDialog<vx_std_ui::VDialog>();
    ASSERT_NE(dialog, nullptr);
    watched = dialog;
    QTest::keyClick(dialog, Qt::Key_Escape);
    FlushDeletes();
    EXPECT_TRUE(watched.isNull());
    EXPECT_TRUE(Window()->isVisible());
}
