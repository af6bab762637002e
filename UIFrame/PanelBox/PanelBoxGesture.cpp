#include "UIFrame/PanelBox/PanelBoxGesture.h"

#include "UIFrame/Canvas/PanelScrollView.h"
#include "UIFrame/PanelBox/PanelAtomizationBox.h"
#include "UIFrame/PanelBox/PanelBoxCommandHooks.h"
#include "UIFrame/PanelBox/PanelBoxGeometry.h"
#include "UIFrame/PanelBox/PanelBoxMask.h"

#include "Platform/StdUI/TabWidget.h"

#include <QMouseEvent>

namespace panelbox_detail {

bool IsEdgeHit(CVXPanelBaseBox::HitPos hit)
{
    return hit & (CVXPanelBaseBox::HitLeft | CVXPanelBaseBox::HitRight | CVXPanelBaseBox::HitTop |
                  CVXPanelBaseBox::HitBottom);
}

CPanelBoxGesture::CPanelBoxGesture(CVXPanelAtomizationBox* box, GestureFields fields)
    : m_pBox(box), m_fields(fields)
{
}

void CPanelBoxGesture::FinishOpenCommands()
{
    using namespace panelbox_undo_cmd;
    if (m_pDragOutSource && m_pBox->IsCurrentCommand<TabDragMoved>())
        m_pDragOutSource->AfterCommand<TabDragMoved>();
    m_pDragOutSource = nullptr;
    if (m_pBox->IsCurrentCommand<TabDragMoved>())
        m_pBox->AfterCommand<TabDragMoved>();
    if (m_pBox->IsCurrentCommand<Resized>())
        m_pBox->AfterCommand<Resized>();
    if (m_pBox->IsCurrentCommand<Moved>())
        m_pBox->AfterCommand<Moved>();
}

bool CPanelBoxGesture::Press(const QPoint& local, const QPoint& global, Qt::MouseButton button)
{
    if (button != Qt::LeftButton)
        return false;
    m_pBox->SetIsWaitingDrop(false);
    // A gesture whose release never arrived (the mouse left the window) ends here.
    FinishOpenCommands();
    if (m_bCommandOpen)
        m_pBox->GetMask()->SetDragging(false);
    m_bCommandOpen = false;
    m_fields.ptPress = global;
    m_fields.rcPressGeometry = m_pBox->geometry();
    m_fields.bPressed = true;
    m_fields.enHitPos = m_pBox->HitTestMouseMove(local);
    return true;
}

void CPanelBoxGesture::StartDragOut(const QPoint& global, CVXPanelAtomizationBox* source)
{
    m_pDragOutSource = source;
    m_fields.ptPress = global;
    m_fields.rcPressGeometry = m_pBox->geometry();
    m_fields.bPressed = true;
    m_fields.enHitPos = CVXPanelBaseBox::HitTitle;
    // The source box's TabDragMoved is the command of this gesture.
    m_bCommandOpen = true;
    m_pBox->GetMask()->SetDragging(true);
}

void CPanelBoxGesture::OpenCommand()
{
    m_bCommandOpen = true;
    if (m_fields.enHitPos == CVXPanelBaseBox::HitTitle)
        m_pBox->BeforeCommand<panelbox_undo_cmd::Moved>();
    else
        m_pBox->BeforeCommand<panelbox_undo_cmd::Resized>();
    m_pBox->GetMask()->SetDragging(true);
}

QRect CPanelBoxGesture::Propose(const QPoint& global) const
{
    const QPoint delta = global - m_fields.ptPress;
    QRect rect = m_fields.rcPressGeometry;
    const int hit = m_fields.enHitPos;
    if (hit == CVXPanelBaseBox::HitTitle)
        return rect.translated(delta);
    if (hit & CVXPanelBaseBox::HitLeft)
        rect.setLeft(rect.left() + delta.x());
    else if (hit & CVXPanelBaseBox::HitRight)
        rect.setRight(rect.right() + delta.x());
    if (hit & CVXPanelBaseBox::HitTop)
        rect.setTop(rect.top() + delta.y());
    else if (hit & CVXPanelBaseBox::HitBottom)
        rect.setBottom(rect.bottom() + delta.y());
    return rect;
}

bool CPanelBoxGesture::Move(const QPoint& local, const QPoint& global, Qt::MouseButtons buttons)
{
    if (!m_fields.bPressed) {
        // Hover: the box shows the cursors (CVXPanelAtomizationBox::Impl::UpdateHoverCursor).
        m_fields.enHitPos = m_pBox->HitTestMouseMove(local);
        return false;
    }
    if (!(buttons & Qt::LeftButton) || m_fields.enHitPos == CVXPanelBaseBox::HitNone)
        return false;
    if (!m_bCommandOpen) {
        if (global == m_fields.ptPress)
            return true;
        OpenCommand();
    }
    const bool resize = m_fields.enHitPos != CVXPanelBaseBox::HitTitle;
    QRect proposed = Propose(global);
    if (resize)
        proposed = m_pBox->AdjustRectByDrag(proposed, m_fields.enHitPos);
    CVXPanelScrollView* view = m_pBox->GetPanelScrollView();
    if (view) {
        view->OnPanelBoxMousePressedAndMove(m_pBox, proposed, m_fields.rcPressGeometry, global, resize);
        // Snapping may pull an edge past the box's limits.
        if (resize)
            proposed = m_pBox->AdjustRectByDrag(proposed, m_fields.enHitPos);
    }
    m_pBox->setGeometry(proposed);
    if (view) {
        view->UpdateScrollInfo();
        // The canvas shifts every box when one would leave the content's origin: follow it.
        const QPoint shift = m_pBox->pos() - proposed.topLeft();
        if (!shift.isNull())
            m_fields.rcPressGeometry.translate(shift);
    }
    return true;
}

bool CPanelBoxGesture::Release(const QPoint& global, Qt::MouseButton button)
{
    if (button != Qt::LeftButton || !m_fields.bPressed)
        return false;
    m_fields.bPressed = false;
    // A click that moved nothing opened no command and showed no drag frame.
    if (!m_bCommandOpen)
        return true;
    m_bCommandOpen = false;
    m_pBox->GetMask()->SetDragging(false);

    CVXPanelScrollView* view = m_pBox->GetPanelScrollView();
    CVXPanelUndoStack* stack = m_pBox->GetUndoStack();
    CVXPanelAtomizationBox* target = nullptr;
    if (view && m_fields.enHitPos == CVXPanelBaseBox::HitTitle)
        view->OnItemDragMoved(m_pBox, global, true, &target);
    if (target == m_pBox)
        target = nullptr;
    if (target) {
        // The target took every card of this box: the emptied box goes, inside this gesture's
        // command.
        if (auto* cmd = stack ? dynamic_cast<panelbox_undo_cmd::Moved*>(stack->GetPendingCommand()) : nullptr)
            cmd->SetDropTarget(target);
        m_pBox->hide();
        m_pBox->DeleteLaterEx();
    } else if (view) {
        view->UpdateScrollInfo();
    }

    if (CVXPanelAtomizationBox* source = m_pDragOutSource.data()) {
        m_pDragOutSource = nullptr;
        source->AfterCommand<panelbox_undo_cmd::TabDragMoved>();
    } else if (m_fields.enHitPos == CVXPanelBaseBox::HitTitle) {
        m_pBox->AfterCommand<panelbox_undo_cmd::Moved>();
    } else {
        m_pBox->AfterCommand<panelbox_undo_cmd::Resized>();
    }
    return true;
}

// ---------------------------------------------------------------------------------------------

CPanelBoxTitleFilter::CPanelBoxTitleFilter(CVXPanelAtomizationBox* box, CPanelBoxGesture* gesture)
    : QObject(box), m_pBox(box), m_pGesture(gesture)
{
}

void CPanelBoxTitleFilter::Watch(QWidget* widget)
{
    if (widget)
        widget->installEventFilter(this);
}

bool CPanelBoxTitleFilter::eventFilter(QObject* watched, QEvent* event)
{
    const QEvent::Type type = event->type();
    if (type != QEvent::MouseButtonPress && type != QEvent::MouseMove && type != QEvent::MouseButtonRelease)
        return false;
    auto* widget = qobject_cast<QWidget*>(watched);
    auto* mouse = static_cast<QMouseEvent*>(event);
    if (!widget)
        return false;
    auto* bar = qobject_cast<vx_std_ui::VTabBarBase*>(widget);

    if (bar && m_pGesture->IsForwardingTabDrag()) {
        CVXPanelScrollView* view = m_pBox->GetPanelScrollView();
        if (type == QEvent::MouseMove && view) {
            view->OnTabDraggedMoving(mouse->globalPos());
        } else if (type == QEvent::MouseButtonRelease && mouse->button() == Qt::LeftButton) {
            m_pGesture->SetForwardingTabDrag(false);
            if (view)
                view->OnTabDraggedRelease();
        }
        return false;
    }

    const QPoint local = widget->mapTo(m_pBox, mouse->pos());
    if (type == QEvent::MouseButtonPress) {
        // A press on a tab belongs to the tab bar (switching, reordering, tearing out).
        if (bar && bar->tabAt(mouse->pos()) >= 0)
            return false;
        return m_pGesture->Press(local, mouse->globalPos(), mouse->button());
    }
    if (!m_pGesture->IsActive())
        return false;
    if (type == QEvent::MouseMove)
        return m_pGesture->Move(local, mouse->globalPos(), mouse->buttons());
    return m_pGesture->Release(mouse->globalPos(), mouse->button());
}

} // namespace panelbox_detail
