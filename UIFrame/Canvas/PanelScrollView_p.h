#pragma once

// The private state of CVXPanelScrollView, shared by its source files (PanelScrollView.cpp,
// PanelScrollViewInput.cpp, PanelScrollViewLinkage.cpp). Not part of the library's interface.

#include "UIFrame/Canvas/PanelScrollView.h"

#include <QPair>
#include <QPointer>
#include <QSet>
#include <QString>
#include <QStringList>

#include <vector>

class CVXPanelAtomizationBox;

namespace panel_scroll_view_detail {

inline QString Key(const char* key)
{
    return QString::fromLatin1(key);
}

// Every canvas of the process, for the tab colours in use.
QVector<QPointer<CVXPanelScrollView>>& LiveCanvases();

} // namespace panel_scroll_view_detail

struct CVXPanelScrollView::Impl
{
    struct Item
    {
        CVXPanelBaseBox* box = nullptr; // identity only: may be dying when OnItemDestroy runs
        QPointer<CVXPanelBaseBox> guard;
        VXPanelItemData data;
    };

    explicit Impl(CVXPanelScrollView* owner) : q(owner) {}

    CVXPanelScrollView* q;
    QWidget* content = nullptr;
    bool uiReady = false;
    std::vector<Item> items; // insertion order: the order of the saved record

    int guardCounter = 0; // raised while the canvas itself resizes the content and sets values
    bool banScrollbarEvt = false;
    bool sliderPressed = false;
    bool snapEnabled = true;

    QPointer<CVXPanelAtomizationBox> dragOutBox;
    QPointer<CVXPanelAtomizationBox> dragInTarget;

    QString shortcutId;
    bool isSaveAsTemplate = false;
    QStringList userGroupIds;
    QString lastUsedGroupId;
    QString tabColor;
    QString ownScope;
    QString tabTitle;

    bool lastCanUndo = false;
    bool lastCanRedo = false;

    // (group id, kind) pairs whose value is being spread to the group's boxes right now: a box
    // taking the value reports it back, and that report must not start another round.
    QSet<QPair<QString, unsigned long>> spreading;

    Item* Find(const CVXPanelBaseBox* box);
    // Alive boxes parented to the content and taking part in placement and extent.
    QVector<CVXPanelBaseBox*> BoxesOnCanvas() const;
    // A new box of a group fills the values the linkage store did not give it from the group's
    // other boxes on this canvas.
    void TakeGroupValues(CVXPanelAtomizationBox* box);
    // The drop of a dragged box's cards into the target's tab bar.
    void MoveCardsInto(CVXPanelAtomizationBox* dragged, CVXPanelAtomizationBox* target);
};
