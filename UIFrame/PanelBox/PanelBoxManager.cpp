#include "UIFrame/PanelBox/PanelBoxManager.h"

#include "UIFrame/Canvas/PanelScrollView.h"
#include "UIFrame/PanelBox/PanelAtomizationBox.h"
#include "UIFrame/PanelBox/PanelBaseBox.h"
#include "UIFrame/PanelBox/PanelBoxMask.h"

#include <QApplication>
#include <QMap>
#include <QMouseEvent>
#include <QWidget>

namespace {

// The geometry kept for a clipboard entry whose box has no usable geometry any more.
const QRect kDefaultCopyRect(0, 0, 400, 300);

// A press is identified by what QApplication keeps when it offers it again to the parents of
// the widget under the cursor (it re-sends a copy, not the same object).
struct PressKey
{
    ulong ulTimestamp = 0;
    QPoint ptGlobal;
    Qt::MouseButton button = Qt::NoButton;
    bool bValid = false;

    bool Matches(const QMouseEvent* e) const
    {
        return bValid && ulTimestamp == e->timestamp() && ptGlobal == e->globalPos() && button == e->button();
    }
};

// The single-card box that `widget` lies in, within the widget's own window (a popup of a box is
// no part of its bands); null for the box itself and for widgets outside boxes.
CVXPanelAtomizationBox* EdgeBoxOf(QWidget* widget)
{
    for (QWidget* w = widget; w && !w->isWindow(); w = w->parentWidget()) {
        if (auto* box = qobject_cast<CVXPanelAtomizationBox*>(w->parentWidget()))
            return box->IsDeleted() ? nullptr : box;
    }
    return nullptr;
}

template <typename T> T* FindAncestor(QWidget* widget)
{
    for (QWidget* w = widget; w; w = w->parentWidget()) {
        if (auto* found = dynamic_cast<T*>(w))
            return found;
    }
    return nullptr;
}

} // namespace

class CVXPanelBoxManagerPrivate
{
public:
    QMap<unsigned long long, QPointer<CVXPanelBaseBox>> boxes;
    QPointer<CVXPanelScrollView> currentView;
    QPointer<CVXPanelBaseBox> activeBox;
    QVector<QPointer<CVXPanelBaseBox>> selection;
    QVector<VXPanelBoxCopyData> clipboard;
    PressKey lastPress;

    void HandlePress(CVXPanelBoxManager* q, QWidget* widget, QMouseEvent* event);
};

namespace {
CVXPanelBoxManager* s_pInstance = nullptr;
}

CVXPanelBoxManager* CVXPanelBoxManager::instance()
{
    if (!s_pInstance) {
        s_pInstance = new CVXPanelBoxManager;
        // Gone with the application object, after the widgets it watched.
        qAddPostRoutine([] {
            delete s_pInstance;
            s_pInstance = nullptr;
        });
    }
    return s_pInstance;
}

CVXPanelBoxManager* CVXPanelBoxManager::instancePtr()
{
    return s_pInstance;
}

CVXPanelBoxManager::CVXPanelBoxManager() : d(std::make_unique<CVXPanelBoxManagerPrivate>())
{
    if (QCoreApplication* app = QCoreApplication::instance())
        app->installEventFilter(this);
}

CVXPanelBoxManager::~CVXPanelBoxManager() = default;

void CVXPanelBoxManager::AddPanelBox(CVXPanelBaseBox* box)
{
    if (!box)
        return;
    const unsigned long long id = box->GetBoxId();
    auto it = d->boxes.find(id);
    if (it != d->boxes.end() && it.value())
        return;
    d->boxes.insert(id, box);
}

void CVXPanelBoxManager::RemovePanelBox(CVXPanelBaseBox* box)
{
    if (!box)
        return;
    auto it = d->boxes.find(box->GetBoxId());
    // Only the entry of this very box: a box re-created under the same id may own it by now.
    if (it != d->boxes.end() && (it.value() == box || !it.value()))
        d->boxes.erase(it);
}

CVXPanelBaseBox* CVXPanelBoxManager::GetPanelBox(unsigned long long id) const
{
    auto it = d->boxes.constFind(id);
    return it == d->boxes.constEnd() ? nullptr : it.value().data();
}

CVXPanelBaseBox* CVXPanelBoxManager::GetActivePanelBox() const
{
    return d->activeBox.data();
}

void CVXPanelBoxManager::SetActivePanelBox(CVXPanelBaseBox* box)
{
    if (box == d->activeBox.data())
        return;
    d->activeBox = box;
    if (box && box->GetPanelScrollView() && box->GetPanelScrollView() != d->currentView.data())
        SetCurrentPanelScrollView(box->GetPanelScrollView());
    Q_EMIT ActivePanelBoxChanged(box);
}

CVXPanelScrollView* CVXPanelBoxManager::GetCurrentPanelScrollView() const
{
    return d->currentView.data();
}

void CVXPanelBoxManager::SetCurrentPanelScrollView(CVXPanelScrollView* view)
{
    d->currentView = view;
}

bool CVXPanelBoxManager::IsPanelBoxSelected(CVXPanelBaseBox* box) const
{
    if (!box)
        return false;
    for (const auto& selected : d->selection) {
        if (selected.data() == box)
            return true;
    }
    return false;
}

QVector<CVXPanelBaseBox*> CVXPanelBoxManager::GetSelectedPanelBoxs() const
{
    QVector<CVXPanelBaseBox*> boxes;
    for (const auto& selected : d->selection) {
        if (selected && !selected->IsDeleted())
            boxes.append(selected.data());
    }
    return boxes;
}

void CVXPanelBoxManager::AddSelectedPanelBox(CVXPanelBaseBox* box)
{
    if (!box || IsPanelBoxSelected(box))
        return;
    d->selection.append(box);
    if (CVXPanelBoxMask* mask = box->GetMask())
        mask->SetSelected(true);
    Q_EMIT SelectionChanged();
}

void CVXPanelBoxManager::SetSelectedPanelBox(CVXPanelBaseBox* box)
{
    SetSelectedPanelBoxs(box ? QVector<CVXPanelBaseBox*>{box} : QVector<CVXPanelBaseBox*>());
}

void CVXPanelBoxManager::SetSelectedPanelBoxs(const QVector<CVXPanelBaseBox*>& boxes)
{
    QVector<CVXPanelBaseBox*> wanted;
    for (CVXPanelBaseBox* box : boxes) {
        if (box && !wanted.contains(box))
            wanted.append(box);
    }
    if (GetSelectedPanelBoxs() == wanted && wanted.size() == d->selection.size())
        return;
    for (const auto& selected : d->selection) {
        if (selected && !wanted.contains(selected.data()) && selected->GetMask())
            selected->GetMask()->SetSelected(false);
    }
    d->selection.clear();
    for (CVXPanelBaseBox* box : wanted) {
        d->selection.append(box);
        if (CVXPanelBoxMask* mask = box->GetMask())
            mask->SetSelected(true);
    }
    Q_EMIT SelectionChanged();
}

void CVXPanelBoxManager::ClearSelectedPanelBox()
{
    if (d->selection.isEmpty())
        return;
    for (const auto& selected : d->selection) {
        if (selected && selected->GetMask())
            selected->GetMask()->SetSelected(false);
    }
    d->selection.clear();
    Q_EMIT SelectionChanged();
}

void CVXPanelBoxManager::UpdateCopyData()
{
    d->clipboard.clear();
    const QVector<CVXPanelBaseBox*> boxes = GetSelectedPanelBoxs();
    if (boxes.isEmpty())
        return;
    QVector<QRect> rects;
    QRect bounds;
    for (CVXPanelBaseBox* box : boxes) {
        const QRect rect = box->geometry().isValid() ? box->geometry() : kDefaultCopyRect;
        rects.append(rect);
        bounds = bounds.isNull() ? rect : bounds.united(rect);
    }
    // Kept relative to the group's top-left: paste places the group at the cursor.
    for (int i = 0; i < boxes.size(); ++i) {
        VXPanelBoxCopyData entry;
        entry.rcGeometry = rects[i].translated(-bounds.topLeft());
        boxes[i]->GetObjRestoreData(&entry.data);
        d->clipboard.append(entry);
    }
}

void CVXPanelBoxManager::UpdateCopyData(int cardIndex)
{
    d->clipboard.clear();
    CVXPanelBaseBox* box = d->activeBox && !d->activeBox->IsDeleted() ? d->activeBox.data() : nullptr;
    if (!box) {
        const QVector<CVXPanelBaseBox*> selected = GetSelectedPanelBoxs();
        box = selected.isEmpty() ? nullptr : selected.first();
    }
    if (!box)
        return;
    VXPanelBoxCopyData entry;
    const QRect rect = box->geometry().isValid() ? box->geometry() : kDefaultCopyRect;
    entry.rcGeometry = QRect(QPoint(0, 0), rect.size());
    box->GetObjRestoreData(&entry.data, cardIndex);
    d->clipboard.append(entry);
}

QVector<VXPanelBoxCopyData> CVXPanelBoxManager::GetCopyData() const
{
    return d->clipboard;
}

void CVXPanelBoxManager::ResetForTest()
{
    for (const auto& selected : d->selection) {
        if (selected && selected->GetMask())
            selected->GetMask()->SetSelected(false);
    }
    d->boxes.clear();
    d->currentView.clear();
    d->activeBox.clear();
    d->selection.clear();
    d->clipboard.clear();
    d->lastPress = PressKey();
}

bool CVXPanelBoxManager::eventFilter(QObject* watched, QEvent* event)
{
    const QEvent::Type type = event->type();
    if (type != QEvent::MouseButtonPress && type != QEvent::MouseButtonRelease && type != QEvent::MouseMove &&
        type != QEvent::MouseButtonDblClick)
        return false;
    // The window gets the press before the widget under the cursor; only widgets tell where it is.
    if (!watched->isWidgetType())
        return false;
    auto* widget = static_cast<QWidget*>(watched);
    auto* mouse = static_cast<QMouseEvent*>(event);
    if (type == QEvent::MouseButtonRelease) {
        d->lastPress = PressKey();
    } else if (type == QEvent::MouseButtonPress && !d->lastPress.Matches(mouse)) {
        d->lastPress = PressKey{mouse->timestamp(), mouse->globalPos(), mouse->button(), true};
        d->HandlePress(this, widget, mouse);
    }
    // A box's edge bands lie over its cards; the box, not the card, takes what happens there.
    CVXPanelAtomizationBox* box = EdgeBoxOf(widget);
    return box && box->FilterDescendantMouseEvent(mouse);
}

void CVXPanelBoxManagerPrivate::HandlePress(CVXPanelBoxManager* q, QWidget* widget, QMouseEvent* event)
{
    CVXPanelBaseBox* box = FindAncestor<CVXPanelBaseBox>(widget);
    if (box && (box->IsPopup() || box->IsDeleted()))
        return;
    if (box) {
        if (event->button() != Qt::LeftButton)
            return;
        const bool wasCurrent = box->GetPanelScrollView() && box->GetPanelScrollView() == currentView.data();
        q->SetActivePanelBox(box);
        if (box->GetPanelScrollView())
            q->SetCurrentPanelScrollView(box->GetPanelScrollView());
        const bool shift = event->modifiers() & Qt::ShiftModifier;
        const bool onTitle =
            box->HitTestMouseMove(box->mapFromGlobal(event->globalPos())) == CVXPanelBaseBox::HitTitle;
        if (wasCurrent && onTitle && q->IsPanelBoxSelected(box)) {
            // Dragging one of several selected boxes by its title keeps the others selected.
            q->AddSelectedPanelBox(box);
        } else if (wasCurrent && shift) {
            q->AddSelectedPanelBox(box);
        } else {
            q->SetSelectedPanelBox(box);
        }
        box->raise();
        return;
    }
    if (auto* view = FindAncestor<CVXPanelScrollView>(widget)) {
        const bool shift = event->modifiers() & Qt::ShiftModifier;
        if (shift && view == currentView.data())
            return;
        q->SetCurrentPanelScrollView(view);
        q->SetActivePanelBox(nullptr);
        q->ClearSelectedPanelBox();
        return;
    }
    q->ClearSelectedPanelBox();
    q->SetCurrentPanelScrollView(nullptr);
    q->SetActivePanelBox(nullptr);
}
