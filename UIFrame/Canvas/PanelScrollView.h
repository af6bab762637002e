#pragma once

// CVXPanelScrollView: the free-form canvas of one panel page. A scroll area whose content widget
// holds panel boxes at arbitrary pixel positions (inclusive rectangles, content coordinates never
// negative: the canvas moves its boxes instead). It places new boxes without overlap, snaps boxes
// being moved or resized, grows its extent to follow the boxes, turns a dragged-out tab into a box
// or drops it into another box's tab bar, saves and restores its content as one record, owns the
// page's undo stack and receives the trade-panel Inner card events.
//
// The geometry rules live in a small unit without widgets (PanelGeometry.h); this class delegates
// to it.

#include "UIFrame/ObjBase.h"
#include "UIFrame/PanelBox/PanelUndoStack.h"
#include "UIFrame/StateTreeTypes.h"
#include "UIFrame/UIEvent.h"
#include "UIFrame/UIEventContainer.h"
#include "UIFrame/UIFrameExport.h"

#include "Platform/StdUI/ScrollArea.h"

#include <QMap>
#include <QPixmap>
#include <QPointer>
#include <QVector>

#include <functional>
#include <memory>

class CVXPanelBaseBox;
class CVXPanelAtomizationBox;
class CVXPanelCombinationBox;
class CVXPanelLayoutTemplate;
class CVXTabWidgetRestore;
class CardEventPostionsOpenPlaceOrderInner;
class CardEventOpenTradeOrdersInner;
class CardEventPostionsOpenPlaceOrderComboOptionInner;
class CardEventPlaceOrderComboOptionOpenOptionChainInner;
class CardEventCommonJumpInner;

namespace vx_std_ui {
class VMenu;
}

// What the canvas attached to a box when it was inserted.
struct UIFRAME_EXPORT VXPanelItemData
{
    bool bOnCanvas = true; // false: skipped by placement and extent (e.g. while being dropped)
    QMetaObject::Connection destroyedConnection;
};

class UIFRAME_EXPORT CVXPanelScrollView : public vx_std_ui::VScrollArea,
                                          public CVXObjBase,
                                          public VUIEventHandler,
                                          public CVXPanelUndoStack,
                                          public IVXUIEventContainer
{
    Q_OBJECT
public:
    // Message bus: linkage value changed (kind in the parameter, scope key in exdata, group id in
    // exparam) and group left.
    static constexpr unsigned int kMsgPanelLinkageDataChanged = 20250;
    static constexpr unsigned int kMsgPanelGroupLeft = 20251;

    explicit CVXPanelScrollView(QWidget* parent = nullptr);
    ~CVXPanelScrollView() override;

    void InitUi();
    QWidget* GetContentWidget() const;
    EnVXUIEventContainerKind ContainerKind() const override { return EnVXUIEventContainerKind::Canvas; }

    // Box management. InsertItem parents the box to the content widget, registers it with the
    // box manager and the item map; RemoveItem undoes that without deleting the box.
    void InsertItem(CVXPanelBaseBox* box);
    void RemoveItem(CVXPanelBaseBox* box);
    void OnItemDestroy(CVXPanelBaseBox* box);
    void ClearAllPanelBox();
    void CleanUp();
    QVector<CVXPanelBaseBox*> GetPanelBoxes() const; // item-map order, alive boxes only
    CVXPanelBaseBox* FindPanelBox(unsigned long long boxId) const;

    // A box of the record's kind ("BoxType" 1: combination, anything else single-card) under the
    // given id (0: a new id), inserted and restored from the record. Null when the record yields
    // no card (the box is destroyed at once). Used by restore, paste and undo.
    CVXPanelBaseBox* CreateBoxFromRecord(const CVXVariantMapTree& record, unsigned long long boxId);

    // Adding content.
    CVXPanelAtomizationBox* AddPanelBoxWithCardInitType(const QString& cardType,
                                                        const CVXVariantMapTree& initData,
                                                        const QPoint& globalPos = QPoint(),
                                                        bool hasPos = false);
    CVXPanelAtomizationBox* AddPanelBoxWithCardInitType(const QString& cardType, const QPoint& globalPos,
                                                        const CVXVariantMapTree& initData);
    void Paste();
    // Removes this canvas's boxes that the box manager holds selected, as one undo step (Delete).
    void DeleteSelectedBoxes();
    // The context menu for a right click at a global position, owned by the caller.
    vx_std_ui::VMenu* BuildContextMenu(const QPoint& globalPos);

    // Geometry.
    QPoint GetPlacementPosition(const QSize& size) const;
    QRect GetVisibleRectInView() const; // content coordinates
    QRect CalcItemsRect() const;
    void OffsetItems(const QPoint& offset);
    void UpdateScrollInfo();
    void SetBanDealScrollbarValueChangedEvt(bool ban);
    void SetSnapEnabled(bool on);
    bool IsSnapEnabled() const;

    // Dragging (called by boxes while a mouse button is held).
    bool OnPanelBoxMousePressedAndMove(CVXPanelBaseBox* box, QRect& proposed, QRect pressRect,
                                       QPoint globalPos, bool isResize);
    void BoxMoving_CalcAdsorb_ForGroup(CVXPanelBaseBox* box, QRect& proposed, const QRect& pressRect);
    void BoxMoving_CalcAdsorb_ForEach(const QRect& target, QRect& proposed, const QRect& pressRect,
                                      bool outside);
    CVXPanelAtomizationBox* TestTabCanDropIn(QPoint canvasPos, CVXPanelAtomizationBox* dragged);
    void UpdateCurDragInPanelBox(CVXPanelAtomizationBox* target);
    // On release (released true) the target, if any, takes the dragged box's cards and is returned
    // through outTarget; the caller disposes of the emptied dragged box.
    void OnItemDragMoved(CVXPanelAtomizationBox* dragged, QPoint globalPos, bool released,
                         CVXPanelAtomizationBox** outTarget);
    void SetDragOutPanelBox(CVXPanelAtomizationBox* box);
    CVXPanelAtomizationBox* GetDragOutPanelBox() const;

    // Linkage over this canvas's boxes.
    unsigned long long GetCurrentGroupStockID(const QString& groupId, CVXPanelBaseBox* exclude) const;
    CVXVariantMapTree GetCurrentGroupAccountInfo(const QString& groupId, CVXPanelBaseBox* exclude) const;
    CVXVariantMapTree GetCurrentGroupComboOptionInfo(const QString& groupId, CVXPanelBaseBox* exclude) const;
    CVXVariantMapTree GetCurrentGroupOptionIndexInfo(const QString& groupId, CVXPanelBaseBox* exclude) const;
    bool ExistGroupID(const QString& groupId) const;
    QString GenerateGroupID() const;
    QStringList GetAllGroupIDs() const;
    QStringList GetUserGroupIDList() const;
    void UpdateUserSelectedGroupID(const QString& groupId);
    QString GetLastUsedGroupID() const;
    // A box of this canvas changed a linkage value (kind 1..4): write it to the linkage store under
    // this canvas's scope and announce it on the bus (20250).
    void OnBoxLinkageValueChanged(CVXPanelBaseBox* box, unsigned long kind);
    void HandlePanelLinkageDataChanged(QString& scopeKey, QString& groupId, unsigned long kind);
    void HandleTabGroupColorChanged(const QString& color);
    // The linkage scope key: the page's tab colour; a canvas whose page has none uses a scope of
    // its own so that its groups still link (see the .cpp).
    QString GetCurrentTabColorString() const;
    void SetCurrentTabColorString(const QString& color);
    QStringList GetUsedTabColorStrings() const;
    bool FindPanelBoxsByGroupIDAndCardTypeToSetAccountAndProperty(const QString& groupId,
                                                                  const QString& cardType,
                                                                  const CVXVariantMapTree& account,
                                                                  const CVXVariantMapTree& property);
    bool FindPanelBoxsByGroupIDAndCardTypeAndAccountToSetProperty(const QString& groupId,
                                                                  const QString& cardType,
                                                                  const CVXVariantMapTree& account,
                                                                  const CVXVariantMapTree& property);
    void FindOrOpenRelatedCardAndSetParams(CVXPanelBaseBox* sender, const QString& groupId,
                                           const QString& cardType, const CVXVariantMapTree& account,
                                           const CVXVariantMapTree& property);

    // Persistence.
    using CVXObjBase::GetObjRestoreData;
    using CVXObjBase::SetObjRestoreData;
    void GetObjRestoreData(CVXVariantMapTree* tree) const override;
    void SetObjRestoreData(const CVXVariantMapTree& tree) override;
    QPixmap GrabPixmap();

    // Saving as a named layout through the layout manager (PanelScrollViewSave.cpp). Each
    // `done` runs once the layout is in the manager, and not at all when the user cancels.
    // OnSavePanelLayout: a usage report, then the save dialog (SavePanelLayout) prefilled with
    // the name and remarks of this canvas's layout. SaveLayout asks before replacing another
    // user layout of that title. SaveLayoutImpl stores the canvas under its layout key (a new
    // key when it has no user layout yet), marks the undo stack saved and retitles the tab.
    void OnSavePanelLayout();
    void SavePanelLayout(std::function<void()> done);
    void SaveLayout(const QString& title, const QString& remarks, std::function<void()> done);
    void SaveLayoutImpl(const QString& title, QString remarks, std::function<void()> done);
    // Ctrl+S: a canvas that has its user layout saves over it at once; any other asks the name.
    void QuickSavePanelLayout(std::function<void()> done);
    // Ctrl+Shift+S: always asks the name; a name other than that of this canvas's layout makes
    // a new layout and leaves the old one as it was.
    void SavePanelLayoutAs(std::function<void()> done);
    // The user layout this canvas was saved as (by its object key); empty when none.
    CVXPanelLayoutTemplate GetSavedPanelLayout() const;
    // A key for a new layout: the layout manager's GenerateLayoutKey(), moved on past any key
    // the manager holds or this function gave out before (two canvases opened within the same
    // millisecond must not save over each other).
    static unsigned long long NewLayoutKey();

    // Page identity.
    QString GetTabTitle() const;
    void SetTabTitle(const QString& title);
    QString GetShortcutId() const;
    QString GenerateShortcutId();
    // The tab widget of the panel workspace that shows this canvas (nearest CVXTabWidgetRestore
    // ancestor); null when none.
    CVXTabWidgetRestore* GetPanelTabWidget() const;
    // Asks the main frame's business module for a shortcut to this canvas's layout ("PanelShortcutId");
    // false when there is no module or it refused.
    bool AddShortcut();
    bool IsSaveAsTemplate() const;
    void SetIsSaveAsTemplate(bool on);

Q_SIGNALS:
    void canUndoChanged(bool canUndo);
    void canRedoChanged(bool canRedo);
    // The arrangement changed (a command was pushed, undone or redone).
    void ContentChanged();

public Q_SLOTS:
    void OnTabDraggedMoving(QPoint globalPos);
    void OnTabDraggedRelease();
    void OnSliderPressed();
    void OnSliderReleased();
    void OnValueChanged();
    void DispatchcanUndoChanged(bool canUndo);
    void DispatchcanRedoChanged(bool canRedo);

protected:
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void OnCardEventPostionsOpenPlaceOrderInner(const CardEventPostionsOpenPlaceOrderInner* event);
    void OnCardEventOpenTradeOrdersInner(const CardEventOpenTradeOrdersInner* event);
    void OnCardEventPostionsOpenPlaceOrderComboOptionInner(
        const CardEventPostionsOpenPlaceOrderComboOptionInner* event);
    void OnCardEventPlaceOrderComboOptionOpenOptionChainInner(
        const CardEventPlaceOrderComboOptionOpenOptionChainInner* event);
    void OnCardEventCommonJumpInner(const CardEventCommonJumpInner* event);

    struct Impl;
    std::unique_ptr<Impl> d;
};
