#pragma once

// Shared by the program's end-to-end tests: the real app object on a temporary data folder (the
// real feed with a fixed seed, stepped by the tests; the real broker, store, layout manager and
// built-in layouts next to the test executable), a restart that makes the app again on the same
// folder, and helpers that drive the main window with real input through its window.

#include "apps/Workspace/App/WorkspaceApp.h"
#include "apps/Workspace/App/WorkspaceLoginDialog.h"
#include "apps/Workspace/App/WorkspaceMainWindow.h"
#include "apps/Workspace/App/WorkspacePanelPage.h"
#include "apps/Workspace/App/WorkspaceWindowState.h"
#include "apps/Workspace/Cards/RegisterCards.h"
#include "apps/Workspace/Cards/WorkspaceContext.h"
#include "apps/Workspace/Layouts/BuiltInLayouts.h"
#include "apps/Workspace/MarketData/SimMarketData.h"

#include "UIFrame/Canvas/DefaultPanelLayoutExporter.h"
#include "UIFrame/Canvas/PanelLayoutDialogs.h"
#include "UIFrame/Canvas/PanelLayoutManager.h"
#include "UIFrame/Canvas/PanelLayoutPage.h"
#include "UIFrame/Canvas/PanelLayoutPreview.h"
#include "UIFrame/Canvas/PanelScrollView.h"
#include "UIFrame/CardFactoryMgr.h"
#include "UIFrame/CardObjBase.h"
#include "UIFrame/Linkage/PanelLinkageData.h"
#include "UIFrame/PanelBox/PanelAtomizationBox.h"
#include "UIFrame/PanelBox/PanelBoxManager.h"
#include "UIFrame/TabFrame/TabFramePageFactory.h"
#include "UIFrame/TabFrame/TabWidgetRestore.h"

#include "Platform/Core/ConfigCloud.h"
#include "Platform/Core/Langx.h"
#include "Platform/Core/LoginState.h"
#include "Platform/Core/PluginCenter.h"
#include "Platform/Core/ProductPath.h"
#include "Platform/Core/Report.h"
#include "Platform/StdUI/ThemeResource.h"

#include "tests/common/TestSupport.h"
#include "tests/workspace/WorkspaceTestSupport.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDeadlineTimer>
#include <QFile>
#include <QLineEdit>
#include <QPointer>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>
#include <QThreadPool>
#include <QWindow>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <vector>

namespace program_test {

using workspace_test::Drag;
using workspace_test::FlushDeletes;
using workspace_test::InWindow;
using workspace_test::WaitFor;
using workspace_test::WindowOf;

inline QString TemplatesFolder()
{
    return QCoreApplication::applicationDirPath() + QStringLiteral("/LayoutTemplates");
}

inline bool HaveBuiltInLayouts()
{
    return QFile::exists(TemplatesFolder() + QStringLiteral("/DefaultPanelLayout.json"));
}

// The titles the gallery shows for the built-in layouts, from the layouts' own table.
inline QStringList BuiltInTitles()
{
    QStringList titles;
    for (const vx_ws::VXBuiltInLayout& layout : vx_ws::BuiltInLayouts())
        titles << core::langx::tr(layout.nameId, layout.name);
    return titles;
}

inline QStringList Titles(CVXPanelLayoutList* list)
{
    QStringList titles;
    for (CVXPanelLayoutPreview* preview : list->Previews()) {
        if (preview->GetLayoutType() != CVXPanelLayoutPreview::AddLayout)
            titles << preview->GetTitle();
    }
    return titles;
}

struct BoxCard
{
    CVXPanelAtomizationBox* box = nullptr;
    CVXCardObjBase* card = nullptr; // the card the box shows
};

inline std::vector<BoxCard> BoxesOf(CVXPanelScrollView* canvas)
{
    std::vector<BoxCard> result;
    for (CVXPanelBaseBox* base : canvas->GetPanelBoxes()) {
        auto* box = qobject_cast<CVXPanelAtomizationBox*>(base);
        if (!box)
            continue;
        result.push_back({box, box->GetCurrentCard()});
    }
    return result;
}

template <typename Dialog> Dialog* OpenDialog()
{
    Dialog* dialog = nullptr;
    WaitFor(
        [&dialog]() {
            for (QWidget* w : QApplication::topLevelWidgets()) {
                if (auto* d = qobject_cast<Dialog*>(w); d && d->isVisible())
                    dialog = d;
            }
            return dialog != nullptr;
        },
        3000);
    return dialog;
}

inline void ClickButton(QWidget* dialog, const char* objectName)
{
    auto* button = dialog->findChild<QAbstractButton*>(QString::fromLatin1(objectName));
    ASSERT_NE(button, nullptr) << objectName;
    QTest::mouseClick(button, Qt::LeftButton, Qt::NoModifier, button->rect().center());
    QCoreApplication::processEvents();
}

inline void TypeInto(QLineEdit* edit, const QString& text)
{
    edit->setFocus();
    edit->selectAll();
    QTest::keyClick(edit, Qt::Key_Delete);
    QTest::keyClicks(edit, text);
}

// Types a name into the open save dialog and confirms it with a click.
inline void AnswerSaveDialog(const QString& name, const QString& remarks)
{
    auto* dialog = OpenDialog<CVXPanelLayoutSaveDialog>();
    ASSERT_NE(dialog, nullptr) << "no save dialog";
    auto* nameEdit =
        dialog->findChild<QLineEdit*>(QString::fromLatin1(CVXPanelLayoutSaveDialog::kNameEditName));
    auto* remarksEdit =
        dialog->findChild<QLineEdit*>(QString::fromLatin1(CVXPanelLayoutSaveDialog::kRemarksEditName));
    ASSERT_TRUE(nameEdit && remarksEdit);
    TypeInto(nameEdit, name);
    TypeInto(remarksEdit, remarks);
    ClickButton(dialog, "Confirm_Button");
    FlushDeletes();
}

class ProgramFixture : public ::testing::Test
{
protected:
    void SetUp() override
    {
        if (!HaveBuiltInLayouts())
            GTEST_SKIP() << "no built-in layouts in " << TemplatesFolder().toStdString()
                         << ": build the builtin_layouts target first";
        ASSERT_TRUE(root.isValid());
        options.dataDir = root.path();
        options.userId = 7;
        options.feedIntervalMs = 0;
        options.historySeconds = 0;
        // Usage reports are not under test here; they stay in memory.
        core::report::SetWriter([](const std::string&) {});
    }

    void TearDown() override
    {
        while (QWidget* modal = QApplication::activeModalWidget())
            delete modal;
        app.reset();
        FlushDeletes();
        // File work of the manager finishes before the folders go.
        QThreadPool::globalInstance()->waitForDone();
        QCoreApplication::processEvents();
        ResetProcessSingletons();
        for (const QString& type : vx_ws::WorkspaceCardTypes())
            CVXCardFactoryMgr::Instance().UnRegisterFactory(type);
        CVXTabFramePageFactory::Instance().ResetForTest();
        core::IVXPluginCenter::Instance().ResetForTest();
        CVXDefaultPanelLayoutExporter::ResetForTest();
        core::report::Flush();
        core::report::ResetForTest();
        core::langx::ResetForTest();
        vx_ui_res::Provider::Instance().ResetForTest();
        vx_ui_res::Provider::Instance().ApplyApplicationPalette();
        core::CLoginState::Instance().Logout();
        core::config_cloud::SetDefaultClient(nullptr);
        vx_ws::SetMarketData(nullptr);
        vx_ws::SetTradeService(nullptr);
        core::product_path::ResetForTest();
    }

    // What a new process would start without: the layout list, boxes and linkage of the last.
    static void ResetProcessSingletons()
    {
        CVXPanelLayoutManager::ResetForTest();
        CVXPanelBoxManager::instance()->ResetForTest();
        CVXPanelLinkageData::GetInstance().ResetForTest();
    }

    // Starts the app logged in as options.userId and waits for the layouts and the shown window.
    void StartApp()
    {
        app = std::make_unique<vx_ws::CVXWorkspaceApp>(options);
        app->Start();
        ASSERT_NE(Window(), nullptr);
        ASSERT_TRUE(WaitFor([]() { return CVXPanelLayoutManager::Instance().PendingFileWorkCount() == 0; }));
        ASSERT_TRUE(QTest::qWaitForWindowExposed(Window()));
        FlushDeletes();
    }

    // Ends the app as a quitting program does, then starts it again on the same data folder.
    void Restart()
    {
        app.reset();
        FlushDeletes();
        QThreadPool::globalInstance()->waitForDone();
        ResetProcessSingletons();
        StartApp();
    }

    vx_ws::CVXWorkspaceMainWindow* Window() const { return app ? app->MainWindow() : nullptr; }
    vx_ws::CVXWorkspacePanelPage* Panel() const { return Window()->PanelPage(); }
    vx_md::CVXSimMarketData* Feed() const { return app->Feed(); }

    // Opens the built-in layout of that title with a real click on its preview in the gallery's
    // built-in tab; the canvas that took the gallery's place.
    CVXPanelScrollView* OpenBuiltIn(const QString& title)
    {
        CVXPanelLayoutPage* gallery = Panel()->CurrentGallery();
        if (!gallery) {
            ADD_FAILURE() << "no gallery in front";
            return nullptr;
        }
        gallery->SetCurrentTabPage(CVXPanelLayoutPage::Default);
        QCoreApplication::processEvents();
        CVXPanelLayoutPreview* target = nullptr;
        for (CVXPanelLayoutPreview* preview :
             gallery->GetPanelLayoutList(CVXPanelLayoutPage::Default)->Previews()) {
            if (preview->GetTitle() == title)
                target = preview;
        }
        if (!target || !target->isVisible()) {
            ADD_FAILURE() << "no visible preview of " << title.toStdString();
            return nullptr;
        }
        QTest::mouseClick(WindowOf(target), Qt::LeftButton, Qt::NoModifier,
                          InWindow(target, target->PreviewRect().center()));
        FlushDeletes();
        CVXPanelScrollView* canvas = Panel()->CurrentCanvas();
        EXPECT_NE(canvas, nullptr) << "the click opened nothing";
        return canvas;
    }

    void Steps(int count)
    {
        for (int i = 0; i < count; ++i)
            Feed()->Step();
        QCoreApplication::processEvents();
    }

    QTemporaryDir root;
    vx_ws::CVXWorkspaceOptions options;
    std::unique_ptr<vx_ws::CVXWorkspaceApp> app;
};

} // namespace program_test
