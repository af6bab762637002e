// CVXPanelScrollView: saving the canvas as a named layout, and its shortcut.

#include "UIFrame/Canvas/PanelScrollView.h"
#include "UIFrame/Canvas/PanelScrollView_p.h"

#include "UIFrame/Canvas/PanelLayoutDialogs.h"
#include "UIFrame/Canvas/PanelLayoutManager.h"
#include "UIFrame/Canvas/PanelLayoutTemplate.h"
#include "UIFrame/ModuleInterfaces.h"
#include "UIFrame/TabFrame/TabWidgetRestore.h"
#include "UIFrame/VariantMapTreeAccess.h"

#include "Platform/Core/Log.h"
#include "Platform/Core/PluginCenter.h"
#include "Platform/Core/Report.h"
#include "Platform/Core/TimeDate.h"

#include <json/value.h>

#include <QPointer>

#include <algorithm>

namespace {

// A preview wider than this is scaled down: the gallery shows it at a few hundred pixels and
// every layout file and cloud copy carries it.
constexpr int kMaxPreviewWidth = 640;

QPixmap PreviewOf(const QPixmap& grabbed)
{
    if (grabbed.width() <= kMaxPreviewWidth)
        return grabbed;
    return grabbed.scaledToWidth(kMaxPreviewWidth, Qt::SmoothTransformation);
}

} // namespace

unsigned long long CVXPanelScrollView::NewLayoutKey()
{
    static unsigned long long s_lastKey = 0;
    const CVXPanelLayoutManager& manager = CVXPanelLayoutManager::Instance();
    unsigned long long key = std::max(CVXPanelLayoutManager::GenerateLayoutKey(), s_lastKey + 1);
    while (manager.HasPanelLayoutData(key))
        ++key;
    s_lastKey = key;
    return key;
}

CVXPanelLayoutTemplate CVXPanelScrollView::GetSavedPanelLayout() const
{
    // Object key 0 of a canvas never saved is also the key of the first built-in layout: only a
    // user layout counts as this canvas's own.
    const CVXPanelLayoutTemplate layout = CVXPanelLayoutManager::Instance().GetPanelLayoutData(GetObjKey());
    if (layout.isEmpty() || !layout.isCustomized())
        return CVXPanelLayoutTemplate();
    return layout;
}

void CVXPanelScrollView::OnSavePanelLayout()
{
    Json::Value fields(Json::objectValue);
    fields["box_count"] = GetPanelBoxes().size();
    core::report::ClickReport("ClickPanelSaveTemplate", fields);
    SavePanelLayout({});
}

void CVXPanelScrollView::SavePanelLayout(std::function<void()> done)
{
    const CVXPanelLayoutTemplate existing = GetSavedPanelLayout();
    const QString name = existing.isEmpty() ? GetTabTitle() : existing.title();
    const QString remarks = existing.isEmpty() ? QString() : existing.remarks();
    QPointer<CVXPanelScrollView> guard(this);
    CVXPanelLayoutSaveDialog::AreYouWantToSave(
        this, name, remarks, [guard, done = std::move(done)](const CVXPanelLayoutSaveDialog::Result& result) {
            if (!guard || result.choice != CVXPanelLayoutSaveDialog::Choice::Confirmed)
                return;
            guard->SaveLayout(result.name, result.remarks, done);
        });
}

void CVXPanelScrollView::QuickSavePanelLayout(std::function<void()> done)
{
    const CVXPanelLayoutTemplate existing = GetSavedPanelLayout();
    if (existing.isEmpty()) {
        SavePanelLayout(std::move(done));
        return;
    }
    SaveLayoutImpl(existing.title(), existing.remarks(), std::move(done));
}

void CVXPanelScrollView::SavePanelLayoutAs(std::function<void()> done)
{
    const CVXPanelLayoutTemplate existing = GetSavedPanelLayout();
    const QString name = existing.isEmpty() ? GetTabTitle() : existing.title();
    const QString remarks = existing.isEmpty() ? QString() : existing.remarks();
    QPointer<CVXPanelScrollView> guard(this);
    CVXPanelLayoutSaveDialog::AreYouWantToSave(
        this, name, remarks,
        [guard, oldTitle = existing.title(), hadLayout = !existing.isEmpty(),
         done = std::move(done)](const CVXPanelLayoutSaveDialog::Result& result) {
            if (!guard || result.choice != CVXPanelLayoutSaveDialog::Choice::Confirmed)
                return;
            if (hadLayout && result.name != oldTitle) {
                // A copy under a new name: a layout of its own, with its own shortcut.
                guard->SetObjKey(NewLayoutKey());
                guard->d->shortcutId.clear();
            }
            guard->SaveLayout(result.name, result.remarks, done);
        });
}

void CVXPanelScrollView::SaveLayout(const QString& title, const QString& remarks, std::function<void()> done)
{
    const CVXPanelLayoutTemplate same = CVXPanelLayoutManager::Instance().GetPanelLayoutData(title);
    // Saving this canvas's own layout again under its name replaces nothing else: no question.
    if (same.isEmpty() || same.layoutKey() == GetObjKey()) {
        SaveLayoutImpl(title, remarks, std::move(done));
        return;
    }
    const unsigned long long replacedKey = same.layoutKey();
    QPointer<CVXPanelScrollView> guard(this);
    CVXPanelLayoutReplaceDialog::AreYouWantToReplace(
        this, title,
        [guard, title, remarks, replacedKey,
         done = std::move(done)](CVXPanelLayoutReplaceDialog::Result result) {
            if (!guard || result != CVXPanelLayoutReplaceDialog::Result::Replace)
                return;
            // Saved over the other layout: the canvas takes its key (and so its file).
            guard->SetObjKey(replacedKey);
            guard->SaveLayoutImpl(title, remarks, done);
        });
}

void CVXPanelScrollView::SaveLayoutImpl(const QString& title, QString remarks, std::function<void()> done)
{
    CVXPanelLayoutManager& manager = CVXPanelLayoutManager::Instance();
    if (GetSavedPanelLayout().isEmpty())
        SetObjKey(NewLayoutKey());

    // The shortcut id is made from the tab title, which is the layout's title from now on.
    SetTabTitle(title);
    const QString shortcutId = GenerateShortcutId();
    VXLOG_INFO("[CVXPanelScrollView] Save template, panelShortcutId = {}", shortcutId);

    SetIsSaveAsTemplate(true);
    // The record says "saved" already, so that the reopened canvas starts clean.
    SetPreviousSavedCommandId(GetCurrentCommandId());
    CVXVariantMapTree restoreData;
    GetObjRestoreData(&restoreData);

    CVXPanelLayoutTemplate layout;
    layout.setLayoutKey(GetObjKey());
    layout.setTitle(title);
    layout.setRemarks(remarks);
    layout.setRestoreData(restoreData);
    layout.setPreviewPixmap(PreviewOf(GrabPixmap()));
    layout.setUpdateTimestamp(static_cast<unsigned long long>(core::time_date::GetServerTimeMs()));
    layout.setIsCustomized(true);
    layout.setIsUploaded(false);
    manager.AddOrUpdatePanelLayoutData(layout, CVXPanelLayoutManager::AllData);

    if (CVXTabWidgetRestore* tabWidget = GetPanelTabWidget()) {
        const int index = tabWidget->indexOf(this);
        if (index >= 0)
            tabWidget->setTabText(index, title);
    }
    if (done)
        done();
}

CVXTabWidgetRestore* CVXPanelScrollView::GetPanelTabWidget() const
{
    for (QWidget* w = parentWidget(); w; w = w->parentWidget()) {
        if (auto* tabWidget = qobject_cast<CVXTabWidgetRestore*>(w))
            return tabWidget;
    }
    return nullptr;
}

bool CVXPanelScrollView::AddShortcut()
{
    const QString shortcutId = GenerateShortcutId();
    CVXVariantMapTree params;
    params.Set<QString>(QStringLiteral("PanelShortcutId"), shortcutId);
    const std::shared_ptr<IBaseBusinessModuleUtil> module =
        core::IVXPluginCenter::CreateInterface<IBaseBusinessModuleUtil>();
    const bool ok = module && module->AddShortcut(params);
    VXLOG_INFO("[CVXPanelScrollView] Add shortcut {}, title = {}, panelShortcutId = {}",
               ok ? "succeed" : "failed", GetTabTitle(), shortcutId);
    return ok;
}
