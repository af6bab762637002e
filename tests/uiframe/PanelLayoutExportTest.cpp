// Export of a canvas page to a layout file (also as a built-in layout with light and dark
// previews) and import of a layout file as a new canvas page, through the injected file choice.

#include "tests/common/TestSupport.h"
#include "tests/uiframe/CanvasTestSupport.h"
#include "tests/uiframe/PanelLayoutTestSupport.h"

#include "UIFrame/TabFrame/TabWidgetRestore.h"

#include "Platform/StdUI/ThemeResource.h"
#include "Platform/StdUI/Toast.h"

#include <QSignalSpy>

using namespace layout_test;

namespace {

using Manager = CVXPanelLayoutManager;

struct DialogCall
{
    Manager::FileDialogKind kind;
    QString caption;
    QString proposed;
};

class PanelLayoutExport : public LayoutFixture
{
protected:
    void SetUp() override
    {
        LayoutFixture::SetUp();
        // Usage reports of the widgets below are written there.
        ASSERT_TRUE(QDir(UserFolder()).exists());
        CVXCardFactoryMgr::Instance().RegisterFactory(
            std::make_shared<TplVXCardFactory<canvas_test::CLinkCard>>(), true);
        tabs = new CVXTabWidgetRestore;
        tabs->resize(900, 640);
        tabs->show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(tabs));
        canvas = new CVXPanelScrollView;
        canvas->SetObjKey(1700000009000ull);
        canvas->SetTabTitle(QStringLiteral("Desk"));
        tabs->addTab(new QWidget, QStringLiteral("Other"));
        tabs->addTab(canvas, QStringLiteral("Desk"));
        tabs->setCurrentIndex(1);
        QCoreApplication::processEvents();
        for (int i = 0; i < 3; ++i)
            ASSERT_NE(canvas->AddPanelBoxWithCardInitType(
                          QString::fromLatin1(canvas_test::CLinkCard::kCardType), CVXVariantMapTree()),
                      nullptr);
        Manager::SetFileDialogProviderForTest([this](QWidget* parent, Manager::FileDialogKind kind,
                                                     const QString& caption, const QString& proposed) {
            EXPECT_EQ(parent, tabs);
            calls.push_back({kind, caption, proposed});
            return chosen;
        });
    }

    void TearDown() override
    {
        delete tabs;
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCoreApplication::processEvents();
        LayoutFixture::TearDown();
        vx_ui_res::Provider::Instance().ResetForTest();
        CVXPanelBoxManager::instance()->ResetForTest();
        CVXPanelLinkageData::GetInstance().ResetForTest();
        CVXCardFactoryMgr::Instance().ResetForTest();
    }

    QString Exports() const
    {
        const QString folder = QDir(root.path()).filePath(QStringLiteral("exports"));
        QDir().mkpath(folder);
        return folder;
    }

    CVXTabWidgetRestore* tabs = nullptr;
    CVXPanelScrollView* canvas = nullptr;
    QString chosen;
    std::vector<DialogCall> calls;
};

} // namespace

TEST_F(PanelLayoutExport, ExportThenImportOpensTheSameArrangementUnderANewKey)
{
    Manager& manager = Manager::Instance();
    // The canvas has a saved layout: its name and remarks go into the file.
    CVXPanelLayoutTemplate saved = MakeLayout(1700000009000ull, QStringLiteral("Morning desk"), true);
    saved.setRemarks(QStringLiteral("three links"));
    manager.AddOrUpdatePanelLayoutData(saved, Manager::ObjectData);

    chosen = QDir(Exports()).filePath(QStringLiteral("morning.vxl"));
    QSignalSpy exported(&manager, &Manager::PanelLayoutExported);
    const QSize canvasSize = canvas->size();
    ASSERT_TRUE(manager.ExportPanelLayout(tabs, 1));
    ASSERT_EQ(calls.size(), 1u);
    EXPECT_EQ(calls[0].kind, Manager::FileDialogKind::Save);
    EXPECT_EQ(calls[0].caption, QStringLiteral("导出到"));
    EXPECT_EQ(calls[0].proposed, QDir(QDir::homePath()).filePath(QStringLiteral("Morning desk.vxl")))
        << "nothing exported yet: the home folder";
    ASSERT_TRUE(exported.wait(10000));
    EXPECT_EQ(exported.at(0).at(0).toString(), chosen);
    EXPECT_TRUE(exported.at(0).at(1).toBool());
    ASSERT_TRUE(WaitForFileWork());

    CVXPanelLayoutTemplate file;
    ASSERT_TRUE(Manager::LoadPanelLayoutFromFile(&file, chosen, false));
    EXPECT_EQ(file.layoutKey(), 1700000009000ull);
    EXPECT_EQ(file.title(), QStringLiteral("Morning desk"));
    EXPECT_EQ(file.remarks(), QStringLiteral("three links"));
    EXPECT_TRUE(file.isCustomized());
    EXPECT_FALSE(file.isUploaded());
    EXPECT_GT(file.updateTimestamp(), 1600000000000ull);
    EXPECT_EQ(file.restoreData().Get<int>(QStringLiteral("BoxCount")), 3);
    EXPECT_EQ(file.previewPixmap().size(), canvasSize) << "the canvas as it was when exported";
    EXPECT_FALSE(QFile::exists(QDir(Exports()).filePath(QStringLiteral("morning_white.png"))))
        << "a user export writes no previews";

    // The chosen folder is remembered and written for the next session.
    EXPECT_EQ(manager.GetRecentlyExportedPanelLayoutFolder(), Exports());
    EXPECT_EQ(manager.ReadRecentlyExportedLayoutFolder().ValueOr(QString()), Exports());

    // Import the file as a new page in front of the canvas.
    QSignalSpy imported(&manager, &Manager::PanelLayoutImported);
    ASSERT_TRUE(manager.ImportPanelLayout(tabs, 1));
    ASSERT_EQ(calls.size(), 2u);
    EXPECT_EQ(calls[1].kind, Manager::FileDialogKind::Open);
    EXPECT_EQ(calls[1].caption, QStringLiteral("载入本地模板"));
    EXPECT_EQ(calls[1].proposed, Exports());
    ASSERT_TRUE(imported.wait(10000));
    EXPECT_EQ(imported.at(0).at(0).toInt(), 1);
    EXPECT_TRUE(imported.at(0).at(1).toBool());
    ASSERT_EQ(tabs->count(), 3);
    EXPECT_EQ(tabs->currentIndex(), 1);
    EXPECT_EQ(tabs->tabText(1), QStringLiteral("Morning desk"));
    EXPECT_EQ(tabs->widget(2), canvas) << "the exported canvas moved one place right";
    auto* opened = qobject_cast<CVXPanelScrollView*>(tabs->widget(1));
    ASSERT_NE(opened, nullptr);
    EXPECT_EQ(opened->GetPanelBoxes().size(), 3);
    EXPECT_EQ(opened->GetTabTitle(), QStringLiteral("Morning desk"));
    EXPECT_NE(opened->GetObjKey(), 1700000009000ull) << "an import never shares the exported layout's key";
    EXPECT_GT(opened->GetObjKey(), 1600000000000ull);
    canvas_test::checkSanity(opened);
    EXPECT_EQ(manager.GetPanelLayoutDataListRef().size(), 1) << "importing opens a page, it saves nothing";
}

TEST_F(PanelLayoutExport, ImportOfABadFileShowsTheFailureAndOpensNothing)
{
    Manager& manager = Manager::Instance();
    chosen = QDir(Exports()).filePath(QStringLiteral("broken.vxl"));
    ASSERT_TRUE(WriteBytes(chosen, "not a layout"));
    QSignalSpy imported(&manager, &Manager::PanelLayoutImported);
    ASSERT_TRUE(manager.ImportPanelLayout(tabs, 0));
    ASSERT_TRUE(imported.wait(10000));
    EXPECT_FALSE(imported.at(0).at(1).toBool());
    EXPECT_EQ(tabs->count(), 2);
    auto* toast = tabs->findChild<vx_std_ui::VToast*>(QString::fromLatin1(vx_std_ui::VToast::kObjectName));
    ASSERT_NE(toast, nullptr);
    EXPECT_EQ(toast->text(), QStringLiteral("模板导入失败"));

    // Cancelling the file choice starts nothing.
    chosen.clear();
    EXPECT_FALSE(manager.ImportPanelLayout(tabs, 0));
    EXPECT_FALSE(manager.ExportPanelLayout(tabs, 1));
    EXPECT_EQ(manager.PendingFileWorkCount(), 0);
    // A page that is no canvas cannot be exported.
    chosen = QDir(Exports()).filePath(QStringLiteral("x.vxl"));
    EXPECT_FALSE(manager.ExportPanelLayout(tabs, 0));
    EXPECT_FALSE(manager.ExportPanelLayout(nullptr, 1));
    EXPECT_FALSE(QFile::exists(chosen));
}

TEST_F(PanelLayoutExport, ExportAsBuiltInWritesLightAndDarkPreviewsBesideTheFile)
{
    Manager& manager = Manager::Instance();
    vx_ui_res::Provider::Instance().SetTheme(vx_ui_res::Theme::Dark);
    chosen = QDir(Exports()).filePath(QStringLiteral("desk.layout.vxl"));
    QSignalSpy exported(&manager, &Manager::PanelLayoutExported);
    const QSize canvasSize = canvas->size();
    ASSERT_TRUE(manager.ExportDefaultPanelLayout(tabs, 1));
    ASSERT_TRUE(exported.wait(10000));
    EXPECT_TRUE(exported.at(0).at(1).toBool());
    EXPECT_EQ(vx_ui_res::Provider::Instance().CurrentTheme(), vx_ui_res::Theme::Dark)
        << "the theme is restored";
    EXPECT_EQ(calls[0].proposed, QDir(QDir::homePath()).filePath(QStringLiteral("Desk.vxl")))
        << "no saved layout: the page title";

    const QImage white(QDir(Exports()).filePath(QStringLiteral("desk.layout_white.png")));
    const QImage black(QDir(Exports()).filePath(QStringLiteral("desk.layout_black.png")));
    ASSERT_FALSE(white.isNull());
    ASSERT_FALSE(black.isNull());
    EXPECT_EQ(white.size(), canvasSize);
    EXPECT_EQ(black.size(), canvasSize);
    // The canvas background follows the theme: the two previews differ where no box is.
    const QPoint empty(canvasSize.width() - 30, canvasSize.height() - 30);
    const QColor lightBackground =
        vx_ui_res::Provider::Instance().GetColor(QStringLiteral("ct_bg_secondary"), vx_ui_res::Theme::Light);
    const QColor darkBackground =
        vx_ui_res::Provider::Instance().GetColor(QStringLiteral("ct_bg_secondary"), vx_ui_res::Theme::Dark);
    ASSERT_NE(lightBackground, darkBackground);
    EXPECT_EQ(white.pixelColor(empty).rgb(), lightBackground.rgb());
    EXPECT_EQ(black.pixelColor(empty).rgb(), darkBackground.rgb());

    // A built-in file is not the user's: loading it as a built-in gives it a built-in key.
    CVXPanelLayoutTemplate file;
    ASSERT_TRUE(Manager::LoadPanelLayoutFromFile(&file, chosen, false));
    EXPECT_FALSE(file.isCustomized());
    EXPECT_EQ(file.title(), QStringLiteral("Desk"));
}
