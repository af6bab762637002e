// CVXPanelLayoutManager: export of a canvas page to a layout file (optionally as a built-in
// layout with its light and dark previews) and import of a layout file as a new canvas page.

#include "UIFrame/Canvas/PanelLayoutFiles.h"
#include "UIFrame/Canvas/PanelLayoutManager.h"
#include "UIFrame/Canvas/PanelLayoutManager_p.h"
#include "UIFrame/Canvas/PanelScrollView.h"
#include "UIFrame/TabFrame/TabWidgetRestore.h"
#include "UIFrame/VariantMapTreeAccess.h"

#include "Platform/Core/Langx.h"
#include "Platform/Core/Log.h"
#include "Platform/Core/TimeDate.h"
#include "Platform/StdUI/ThemeResource.h"
#include "Platform/StdUI/Toast.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QImage>

namespace {

using core::ErrorCode::Code;
using ErrorValue = core::ErrorCode::CommonErrorValue;

constexpr int kTextExportTo = 950101;          // "导出到"
constexpr int kTextLoadLocalTemplate = 950102; // "载入本地模板"
constexpr int kTextImportFailed = 950103;      // "模板导入失败"

CVXPanelLayoutManager::FileDialogProvider& FileDialogHook()
{
    static CVXPanelLayoutManager::FileDialogProvider hook;
    return hook;
}

QString LayoutFileFilter()
{
    return QStringLiteral("Panel layout (*%1)").arg(CVXPanelLayoutManager::GetPanelLayoutExtension());
}

struct ExportWork
{
    CVXPanelLayoutTemplate layout;
    QString path;
    QImage lightPreview; // only when exporting as a built-in layout
    QImage darkPreview;
};

// The two preview files lie beside the layout file: "<base>_white.png" and "<base>_black.png".
QString PreviewPath(const QString& layoutPath, const char* suffix)
{
    const QFileInfo info(layoutPath);
    return info.dir().filePath(info.completeBaseName() + QLatin1String(suffix));
}

core::ErrorOrValue<bool, ErrorValue> WriteExport(const ExportWork& work)
{
    if (!CVXPanelLayoutManager::SavePanelLayoutToFile(work.layout, work.path))
        return ErrorValue(Code::IoError, QStringLiteral("导出模板失败: ") + work.path);
    if (!work.lightPreview.isNull()) {
        const QString white = PreviewPath(work.path, "_white.png");
        const QString black = PreviewPath(work.path, "_black.png");
        if (!work.lightPreview.save(white, "PNG"))
            return ErrorValue(Code::IoError, QStringLiteral("导出模板预览失败: ") + white);
        if (!work.darkPreview.save(black, "PNG"))
            return ErrorValue(Code::IoError, QStringLiteral("导出模板预览失败: ") + black);
    }
    return true;
}

// The canvas drawn under one theme; the provider's ThemeChanged repaints it synchronously.
QImage RenderUnderTheme(CVXPanelScrollView* canvas, vx_ui_res::Theme theme)
{
    vx_ui_res::Provider::Instance().SetTheme(theme);
    return canvas->GrabPixmap().toImage();
}

} // namespace

namespace panel_layout_manager_detail {

QString ChooseFile(QWidget* parent, CVXPanelLayoutManager::FileDialogKind kind, const QString& caption,
                   const QString& proposedPath)
{
    if (FileDialogHook())
        return FileDialogHook()(parent, kind, caption, proposedPath);
    // Non-native dialogs look the same on every platform and can be driven by automation.
    if (kind == CVXPanelLayoutManager::FileDialogKind::Save)
        return QFileDialog::getSaveFileName(parent, caption, proposedPath, LayoutFileFilter(), nullptr,
                                            QFileDialog::DontUseNativeDialog);
    return QFileDialog::getOpenFileName(parent, caption, proposedPath, LayoutFileFilter(), nullptr,
                                        QFileDialog::DontUseNativeDialog);
}

} // namespace panel_layout_manager_detail

void CVXPanelLayoutManager::SetFileDialogProviderForTest(FileDialogProvider provider)
{
    FileDialogHook() = std::move(provider);
}

bool CVXPanelLayoutManager::ExportPanelLayout(CVXTabWidgetRestore* tabWidget, int index)
{
    return ExportPanelLayoutImpl(tabWidget, index, false);
}

bool CVXPanelLayoutManager::ExportDefaultPanelLayout(CVXTabWidgetRestore* tabWidget, int index)
{
    return ExportPanelLayoutImpl(tabWidget, index, true);
}

bool CVXPanelLayoutManager::ExportPanelLayoutImpl(CVXTabWidgetRestore* tabWidget, int index, bool asDefault)
{
    if (!tabWidget) {
        VXLOG_WARN("CVXPanelLayoutManager::ExportPanelLayoutImpl: no tab widget");
        return false;
    }
    auto* canvas = qobject_cast<CVXPanelScrollView*>(tabWidget->widget(index, true));
    if (!canvas) {
        VXLOG_WARN("CVXPanelLayoutManager::ExportPanelLayoutImpl: page {} is no canvas", index);
        return false;
    }

    const CVXPanelLayoutTemplate saved = GetPanelLayoutData(canvas->GetObjKey());
    const bool hasSaved = !saved.isEmpty();
    const unsigned long long key = hasSaved ? saved.layoutKey() : canvas->GetObjKey();
    const QString title = hasSaved ? saved.title() : canvas->GetTabTitle();
    const QString remarks = hasSaved ? saved.remarks() : QString();

    const QString startFolder = d->recentFolder.isEmpty() ? QDir::homePath() : d->recentFolder;
    const QString proposed = QDir(startFolder).filePath(title + GetPanelLayoutExtension());
    const QString path = panel_layout_manager_detail::ChooseFile(
        tabWidget, FileDialogKind::Save, core::langx::tr(kTextExportTo, "导出到"), proposed);
    if (path.isEmpty())
        return false;

    ExportWork work;
    work.path = path;
    work.layout.setLayoutKey(key);
    work.layout.setTitle(title);
    work.layout.setRemarks(remarks);
    CVXVariantMapTree restore;
    canvas->GetObjRestoreData(&restore);
    work.layout.setRestoreData(restore);
    // A built-in layout must not be marked customised: only then does loading give it a
    // built-in key and keep it out of the user's layouts and the cloud.
    work.layout.setIsCustomized(!asDefault);
    work.layout.setIsUploaded(false);
    work.layout.setPreviewPixmap(canvas->GrabPixmap());
    work.layout.setUpdateTimestamp(static_cast<unsigned long long>(core::time_date::GetServerTimeMs()));
    if (asDefault) {
        auto& provider = vx_ui_res::Provider::Instance();
        const vx_ui_res::Theme original = provider.CurrentTheme();
        work.lightPreview = RenderUnderTheme(canvas, vx_ui_res::Theme::Light);
        work.darkPreview = RenderUnderTheme(canvas, vx_ui_res::Theme::Dark);
        provider.SetTheme(original);
    }

    SetRecentlyExportedPanelLayoutFolder(QFileInfo(path).absolutePath(), true);
    ++d->pendingFileWork;
    core::concurrency::ComputeInThreadPool<bool>(
        QPointer<QObject>(this), [work] { return WriteExport(work); },
        [this, path](core::ErrorOrValue<bool, ErrorValue> result) {
            --d->pendingFileWork;
            if (result.HasError())
                VXLOG_ERROR("CVXPanelLayoutManager::ExportPanelLayoutImpl: {}", result.Error().message);
            Q_EMIT PanelLayoutExported(path, result.HasValue());
        });
    return true;
}

bool CVXPanelLayoutManager::ImportPanelLayout(CVXTabWidgetRestore* tabWidget, int index)
{
    if (!tabWidget) {
        VXLOG_WARN("CVXPanelLayoutManager::ImportPanelLayout: no tab widget");
        return false;
    }
    const QString startFolder = d->recentFolder.isEmpty() ? QDir::homePath() : d->recentFolder;
    const QString path = panel_layout_manager_detail::ChooseFile(
        tabWidget, FileDialogKind::Open, core::langx::tr(kTextLoadLocalTemplate, "载入本地模板"),
        startFolder);
    if (path.isEmpty())
        return false;

    QPointer<CVXTabWidgetRestore> target(tabWidget);
    ++d->pendingFileWork;
    core::concurrency::ComputeInThreadPool<CVXPanelLayoutTemplate>(
        QPointer<QObject>(this),
        [path]() -> core::ErrorOrValue<CVXPanelLayoutTemplate, ErrorValue> {
            CVXPanelLayoutTemplate layout;
            // The user's own file is read as it is, never rewritten.
            if (!LoadPanelLayoutFromFile(&layout, path, false))
                return ErrorValue(Code::ParseError, QStringLiteral("模板导入失败: ") + path);
            return layout;
        },
        [this, target, index](core::ErrorOrValue<CVXPanelLayoutTemplate, ErrorValue> result) {
            --d->pendingFileWork;
            if (!target)
                return;
            if (result.HasError()) {
                VXLOG_WARN("CVXPanelLayoutManager::ImportPanelLayout: {}", result.Error().message);
                vx_std_ui::VToast::Show(target, core::langx::tr(kTextImportFailed, "模板导入失败"));
                Q_EMIT PanelLayoutImported(index, false);
                return;
            }
            CVXPanelLayoutTemplate layout = result.Value();
            const unsigned long long key = GenerateLayoutKey();
            layout.setLayoutKey(key);
            CVXVariantMapTree restore = layout.restoreData();
            restore.Remove(QStringLiteral("LayoutKey"));
            restore.Set<qulonglong>(QStringLiteral("LayoutKey"), key);

            auto* canvas = new CVXPanelScrollView();
            canvas->SetObjRestoreData(restore);
            canvas->SetTabTitle(layout.title());
            const int inserted = target->insertTab(index, canvas, layout.title());
            target->setCurrentIndex(inserted);
            Q_EMIT PanelLayoutImported(inserted, true);
        });
    return true;
}
