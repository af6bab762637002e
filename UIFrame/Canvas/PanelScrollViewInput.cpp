// CVXPanelScrollView: dragging of boxes and tabs, keyboard shortcuts and the context menu.

#include "UIFrame/Canvas/PanelScrollView.h"
#include "UIFrame/Canvas/PanelScrollView_p.h"

#include "UIFrame/Canvas/PanelCanvasMenu.h"
#include "UIFrame/Canvas/PanelGeometry.h"
#include "UIFrame/Linkage/PanelLinkageData.h"
#include "UIFrame/PanelBox/PanelAtomizationBox.h"
#include "UIFrame/PanelBox/PanelBoxCommandHooks.h"
#include "UIFrame/PanelBox/PanelBoxManager.h"
#include "UIFrame/PanelBox/PanelUndoCmd.h"
#include "UIFrame/VariantMapTreeAccess.h"

#include "Platform/Core/Langx.h"
#include "Platform/StdUI/Menu.h"
#include "Platform/StdUI/TabWidget.h"

#include <QCoreApplication>
#include <QCursor>
#include <QKeyEvent>
#include <QMouseEvent>

#include <memory>

using panel_scroll_view_detail::Key;

namespace {
constexpr const char* kKeyCards = "Cards";
} // namespace

// ----------------------------------------------------------------------------------------------
// Dragging

bool CVXPanelScrollView::OnPanelBoxMousePressedAndMove(CVXPanelBaseBox* box, QRect& proposed, QRect pressRect,
                                                       QPoint globalPos, bool isResize)
{
    if (!box)
        return true;
    auto* single = qobject_cast<CVXPanelAtomizationBox*>(box);
    const bool dropTest = single && !isResize;
    if (d->snapEnabled && !(dropTest && single->IsWaitingDrop()) && proposed != pressRect) {
        BoxMoving_CalcAdsorb_ForGroup(box, proposed, pressRect);
        const QRect visible = GetVisibleRectInView();
        BoxMoving_CalcAdsorb_ForEach(panel_geometry::LeftWall(visible), proposed, pressRect, true);
        BoxMoving_CalcAdsorb_ForEach(panel_geometry::TopWall(visible), proposed, pressRect, true);
    }
    if (dropTest) {
        CVXPanelAtomizationBox* target = TestTabCanDropIn(mapFromGlobal(globalPos), single);
        single->SetIsWaitingDrop(target != nullptr);
        UpdateCurDragInPanelBox(target);
    }
    return true;
}

void CVXPanelScrollView::BoxMoving_CalcAdsorb_ForGroup(CVXPanelBaseBox* box, QRect& proposed,
                                                       const QRect& pressRect)
{
    for (CVXPanelBaseBox* other : d->BoxesOnCanvas()) {
        if (other == box || other->isHidden())
            continue;
        BoxMoving_CalcAdsorb_ForEach(other->geometry(), proposed, pressRect, true);
    }
}

void CVXPanelScrollView::BoxMoving_CalcAdsorb_ForEach(const QRect& target, QRect& proposed,
                                                      const QRect& pressRect, bool outside)
{
    panel_geometry::SnapEdges(target, proposed, pressRect, outside);
}

CVXPanelAtomizationBox* CVXPanelScrollView::TestTabCanDropIn(QPoint canvasPos,
                                                             CVXPanelAtomizationBox* dragged)
{
    QWidget* hit = nullptr;
    {
        // The dragged box lies under the pointer itself: look through it.
        const bool wasTransparent = dragged && dragged->testAttribute(Qt::WA_TransparentForMouseEvents);
        if (dragged)
            dragged->setAttribute(Qt::WA_TransparentForMouseEvents, true);
        hit = d->content->childAt(d->content->mapFrom(this, canvasPos));
        if (dragged)
            dragged->setAttribute(Qt::WA_TransparentForMouseEvents, wasTransparent);
    }
    vx_std_ui::VTabBarBase* bar = nullptr;
    for (QWidget* w = hit; w && w != d->content; w = w->parentWidget()) {
        if ((bar = qobject_cast<vx_std_ui::VTabBarBase*>(w)))
            break;
    }
    if (!bar)
        return nullptr;
    for (QWidget* w = bar->parentWidget(); w && w != d->content; w = w->parentWidget()) {
        if (auto* box = qobject_cast<CVXPanelAtomizationBox*>(w)) {
            // Only the box's own tab bar takes cards, not a tab bar inside one of its cards.
            if (box == dragged || box->GetTabBar() != bar || box->IsDeleted())
                return nullptr;
            return box;
        }
    }
    return nullptr;
}

void CVXPanelScrollView::UpdateCurDragInPanelBox(CVXPanelAtomizationBox* target)
{
    if (d->dragInTarget == target)
        return;
    if (d->dragInTarget)
        d->dragInTarget->SetIsWaitingOtherDrop(false);
    d->dragInTarget = target;
    if (target)
        target->SetIsWaitingOtherDrop(true);
}

void CVXPanelScrollView::OnItemDragMoved(CVXPanelAtomizationBox* dragged, QPoint globalPos, bool released,
                                         CVXPanelAtomizationBox** outTarget)
{
    if (outTarget)
        *outTarget = nullptr;
    if (!dragged)
        return;
    CVXPanelAtomizationBox* target = TestTabCanDropIn(mapFromGlobal(globalPos), dragged);
    if (!released) {
        dragged->SetIsWaitingDrop(target != nullptr);
        UpdateCurDragInPanelBox(target);
        return;
    }
    UpdateCurDragInPanelBox(nullptr);
    if (!target)
        return;
    dragged->SetIsWaitingDrop(false);
    d->MoveCardsInto(dragged, target);
    if (outTarget)
        *outTarget = target;
}

void CVXPanelScrollView::Impl::MoveCardsInto(CVXPanelAtomizationBox* dragged, CVXPanelAtomizationBox* target)
{
    CVXVariantMapTree full;
    dragged->GetObjRestoreData(&full);
    CVXVariantMapTree cards;
    cards.Set<QVector<CVXVariantMapTree>>(Key(kKeyCards),
                                          full.Get<QVector<CVXVariantMapTree>>(Key(kKeyCards)));
    target->Append(cards, dragged->GetTabIds());

    if (target->GetStockID() == PanelLinkageDataNullStockID &&
        dragged->GetStockID() != PanelLinkageDataNullStockID)
        target->UpdateBoxStockID(dragged->GetStockID());
    if (target->GetAccountInfo().IsEmpty() && !dragged->GetAccountInfo().IsEmpty())
        target->SetAccountInfo(dragged->GetAccountInfo());
    if (target->GetComboOptionInfo().IsEmpty() && !dragged->GetComboOptionInfo().IsEmpty())
        target->SetComboOptionInfo(dragged->GetComboOptionInfo());
    if (target->GetOptionIndexInfo().IsEmpty() && !dragged->GetOptionIndexInfo().IsEmpty())
        target->SetOptionIndexInfo(dragged->GetOptionIndexInfo());

    target->SetCurrentTabIndex(target->GetTabCount() - 1);
    target->setFocus(Qt::OtherFocusReason);
}

void CVXPanelScrollView::SetDragOutPanelBox(CVXPanelAtomizationBox* box)
{
    d->dragOutBox = box;
}

CVXPanelAtomizationBox* CVXPanelScrollView::GetDragOutPanelBox() const
{
    return d->dragOutBox;
}

void CVXPanelScrollView::OnTabDraggedMoving(QPoint globalPos)
{
    if (!d->dragOutBox)
        return;
    // Posted, not sent: the box moves itself after the tab bar's handler has returned.
    const QPoint local = d->dragOutBox->mapFromGlobal(globalPos);
    QCoreApplication::postEvent(d->dragOutBox, new QMouseEvent(QEvent::MouseMove, local, globalPos,
                                                               Qt::NoButton, Qt::LeftButton, Qt::NoModifier));
}

void CVXPanelScrollView::OnTabDraggedRelease()
{
    if (!d->dragOutBox)
        return;
    const QPoint global = QCursor::pos();
    const QPoint local = d->dragOutBox->mapFromGlobal(global);
    QCoreApplication::postEvent(d->dragOutBox, new QMouseEvent(QEvent::MouseButtonRelease, local, global,
                                                               Qt::LeftButton, Qt::NoButton, Qt::NoModifier));
    d->dragOutBox = nullptr;
}

// ----------------------------------------------------------------------------------------------
// Keyboard and context menu

void CVXPanelScrollView::keyPressEvent(QKeyEvent* event)
{
    const Qt::KeyboardModifiers mods =
        event->modifiers() & (Qt::ControlModifier | Qt::ShiftModifier | Qt::AltModifier);
    const int key = event->key();
    if (mods == Qt::ControlModifier && key == Qt::Key_Z) {
        Undo();
    } else if ((mods == Qt::ControlModifier && key == Qt::Key_Y) ||
               (mods == (Qt::ControlModifier | Qt::ShiftModifier) && key == Qt::Key_Z)) {
        Redo();
    } else if (mods == Qt::ControlModifier && key == Qt::Key_C) {
        CVXPanelBoxManager::instance()->UpdateCopyData();
    } else if (mods == Qt::ControlModifier && key == Qt::Key_V) {
        Paste();
    } else if (mods == Qt::NoModifier && key == Qt::Key_Delete) {
        DeleteSelectedBoxes();
    } else if (mods == Qt::ControlModifier && key == Qt::Key_S) {
        QuickSavePanelLayout({});
    } else if (mods == (Qt::ControlModifier | Qt::ShiftModifier) && key == Qt::Key_S) {
        SavePanelLayoutAs({});
    } else {
        vx_std_ui::VScrollArea::keyPressEvent(event);
        return;
    }
    event->accept();
}

void CVXPanelScrollView::DeleteSelectedBoxes()
{
    QVector<CVXPanelBaseBox*> mine;
    for (CVXPanelBaseBox* box : CVXPanelBoxManager::instance()->GetSelectedPanelBoxs()) {
        if (box && d->Find(box) && !box->IsDeleted())
            mine.append(box);
    }
    if (mine.isEmpty())
        return;
    BeginMacro(core::langx::tr(344401, "删除面板"));
    for (CVXPanelBaseBox* box : mine) {
        box->BeforeCommand<panelbox_undo_cmd::Deleted>();
        box->DeleteLaterEx();
        box->AfterCommand<panelbox_undo_cmd::Deleted>();
    }
    EndMacro();
}

void CVXPanelScrollView::mousePressEvent(QMouseEvent* event)
{
    setFocus(Qt::MouseFocusReason);
    if (event->button() != Qt::RightButton) {
        vx_std_ui::VScrollArea::mousePressEvent(event);
        return;
    }
    event->accept();
    const QPoint globalPos = event->globalPos();
    std::unique_ptr<vx_std_ui::VMenu> menu(BuildContextMenu(globalPos));
    menu->exec(globalPos);
}

vx_std_ui::VMenu* CVXPanelScrollView::BuildContextMenu(const QPoint& globalPos)
{
    panel_canvas_menu::Actions actions;
    actions.addCard = [this, globalPos](const QString& cardType) {
        AddPanelBoxWithCardInitType(cardType, CVXVariantMapTree(), globalPos, true);
    };
    actions.paste = [this]() { Paste(); };
    actions.undo = [this]() { Undo(); };
    actions.redo = [this]() { Redo(); };
    actions.canPaste = !CVXPanelBoxManager::instance()->GetCopyData().isEmpty();
    actions.canUndo = CanUndo();
    actions.canRedo = CanRedo();
    return panel_canvas_menu::Build(this, actions);
}
