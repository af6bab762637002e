#pragma once

// The mouse gestures of a single-card box: move by the title strip, resize by the edges and
// corners, and follow the mouse after a tab was torn out of another box. Presses reach the gesture
// from the box itself, from the title strip's widgets (CPanelBoxTitleFilter) and, for the edge
// bands over the cards, through the box manager's application event filter. A gesture starts with a
// left press, opens its undo command (Moved or Resized) at the first movement, asks the canvas to
// snap while the mouse moves, and pushes the command on release when something changed.
// Private to UIFrame/PanelBox.

#include "UIFrame/PanelBox/PanelBaseBox.h"

#include <QObject>
#include <QPointer>
#include <QWidget>

class CVXPanelAtomizationBox;

namespace panelbox_detail {

// True for a hit position on an edge or a corner (a resize), false for none and the title strip.
bool IsEdgeHit(CVXPanelBaseBox::HitPos hit);

// The gesture fields of the base box, shared with the box so that both see one state.
struct GestureFields
{
    QPoint& ptPress;
    QRect& rcPressGeometry;
    bool& bPressed;
    CVXPanelBaseBox::HitPos& enHitPos;
};

class CPanelBoxGesture
{
public:
    CPanelBoxGesture(CVXPanelAtomizationBox* box, GestureFields fields);

    // Points are in box coordinates (local) and screen coordinates (global). Each returns true
    // when the event belongs to a gesture.
    bool Press(const QPoint& local, const QPoint& global, Qt::MouseButton button);
    bool Move(const QPoint& local, const QPoint& global, Qt::MouseButtons buttons);
    bool Release(const QPoint& global, Qt::MouseButton button);

    // A tab torn out of `source` became this box: it follows the mouse as if dragged by its title
    // strip; the source's TabDragMoved command is finished on release.
    void StartDragOut(const QPoint& global, CVXPanelAtomizationBox* source);
    // This box's own tab was torn out: moves and the release of the tab bar go to the canvas,
    // which hands them to the new box.
    void SetForwardingTabDrag(bool on) { m_bForwardingTabDrag = on; }
    bool IsForwardingTabDrag() const { return m_bForwardingTabDrag; }

    bool IsActive() const { return m_fields.bPressed; }

private:
    void FinishOpenCommands();
    void OpenCommand();
    QRect Propose(const QPoint& global) const;

    CVXPanelAtomizationBox* m_pBox;
    GestureFields m_fields;
    bool m_bCommandOpen = false;
    bool m_bForwardingTabDrag = false;
    QPointer<CVXPanelAtomizationBox> m_pDragOutSource;
};

// Presses on the free part of the title strip (not on a tab or a button) start a move; while one
// of the box's tabs is being torn out, the tab bar's moves and release go to the canvas.
class CPanelBoxTitleFilter : public QObject
{
public:
    CPanelBoxTitleFilter(CVXPanelAtomizationBox* box, CPanelBoxGesture* gesture);
    void Watch(QWidget* widget);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    CVXPanelAtomizationBox* m_pBox;
    CPanelBoxGesture* m_pGesture;
};

} // namespace panelbox_detail
