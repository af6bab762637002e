#pragma once

// The undo commands of the canvas. A box brackets a gesture with BeforeCommand<Cmd>() and
// AfterCommand<Cmd>() (PanelBoxCommandHooks.h): the command records the state before and after,
// and is pushed only when IsChanged(). Commands never hold a box alive: they keep its id and find
// it again through CVXPanelBoxManager, because undo and redo delete boxes and re-create them under
// their old ids (CVXPanelScrollView::CreateBoxFromRecord). A command whose box can be found nowhere
// does nothing.
//
//   ScrollViewChanged  content size and scroll values of the canvas
//   Moved              + the position of every box of the canvas (a drag may shift them all) and,
//                        when the dragged box was dropped into another box's tab bar, its record
//   Resized            + the dragged box's geometry
//   Created / Deleted  + the record and id of the box that appeared / went
//   Pasted             + the pasted boxes (id and record); always a change
//   TabDragMoved       + a tab taken from its source box into a new (torn-out) or another box
//   ColorChanged       the box's group colour
//   GroupChanged       + the box's group id
//   CardDeleted        a tab closed in a box of several tabs (pushed directly by the box)

#include "UIFrame/UIFrameExport.h"

#include "Platform/Core/VariantMapTree.h"

#include <QPoint>
#include <QPointer>
#include <QRect>
#include <QSize>
#include <QString>
#include <QUndoCommand>
#include <QVector>

class CVXPanelBaseBox;
class CVXPanelScrollView;
class CVXPanelAtomizationBox;

namespace panelbox_undo_cmd {

class UIFRAME_EXPORT IBaseCmd : public QUndoCommand
{
public:
    IBaseCmd();
    ~IBaseCmd() override;

    // undo() runs UndoImp(); redo() runs RedoImp() unless the skip flag is set.
    void undo() override;
    void redo() override;
    // No command merges with another.
    int id() const override { return -1; }
    bool mergeWith(const QUndoCommand* other) override;

    // Record the state before / after the gesture; the defaults record nothing.
    virtual void BeforeCommand();
    virtual void AfterCommand();
    virtual bool IsChanged() const;

    void SetPanelBox(CVXPanelBaseBox* box);
    void SetPanelScrollView(CVXPanelScrollView* view);
    // The box while it lives (and is not being deleted); otherwise the box the box manager holds
    // under the recorded id, which becomes the new target; null when there is none.
    CVXPanelBaseBox* GetPanelBox() const;
    unsigned long long GetPanelBoxId() const { return m_u64BoxId; }
    // The canvas given, else the box's canvas.
    CVXPanelScrollView* GetPanelScrollView() const;
    bool IsPanelBoxValid() const { return GetPanelBox() != nullptr; }
    // The box record a command keeps (Created, Deleted, CardDeleted's card data).
    const CVXVariantMapTree& GetData() const { return m_data; }

    // While set, redo() does nothing: the push of a change the gesture already made.
    void SetSkipRedo(bool skip) { m_bSkipRedo = skip; }
    bool IsSkipRedo() const { return m_bSkipRedo; }
    // The push applies the command (its redo runs) instead of only recording it.
    void SetApplyOnPush(bool apply) { m_bApplyOnPush = apply; }
    bool IsApplyOnPush() const { return m_bApplyOnPush; }

protected:
    virtual void UndoImp() = 0;
    virtual void RedoImp() = 0;

    CVXVariantMapTree m_data;

private:
    mutable QPointer<CVXPanelBaseBox> m_pBox;
    unsigned long long m_u64BoxId = 0;
    QPointer<CVXPanelScrollView> m_pScrollView;
    bool m_bSkipRedo = false;
    bool m_bApplyOnPush = false;
};

class UIFRAME_EXPORT ScrollViewChanged : public IBaseCmd
{
public:
    void BeforeCommand() override;
    void AfterCommand() override;
    bool IsChanged() const override;

    struct ViewState
    {
        QSize contentSize;
        int nScrollX = 0;
        int nScrollY = 0;
        bool operator==(const ViewState& o) const
        {
            return contentSize == o.contentSize && nScrollX == o.nScrollX && nScrollY == o.nScrollY;
        }
        bool operator!=(const ViewState& o) const { return !(*this == o); }
    };
    const ViewState& GetViewBefore() const { return m_viewBefore; }
    const ViewState& GetViewAfter() const { return m_viewAfter; }

protected:
    void UndoImp() override;
    void RedoImp() override;
    // Content size and scroll values, with the canvas's own scroll-bar reactions suppressed.
    void ApplyView(const ViewState& state) const;

    ViewState m_viewBefore;
    ViewState m_viewAfter;
};

class UIFRAME_EXPORT Moved : public ScrollViewChanged
{
public:
    struct BoxPos
    {
        unsigned long long u64BoxId = 0;
        QPoint pos;
        bool operator==(const BoxPos& o) const { return u64BoxId == o.u64BoxId && pos == o.pos; }
        bool operator!=(const BoxPos& o) const { return !(*this == o); }
    };

    // Asserts "GetPanelScrollView()" and records nothing without a canvas.
    void BeforeCommand() override;
    void AfterCommand() override;
    bool IsChanged() const override;

    // The box that took the dragged cards when they were dropped on its tab bar (for Moved the
    // dragged box itself is gone after the gesture). Call before AfterCommand().
    void SetDropTarget(CVXPanelBaseBox* target);

    const QVector<BoxPos>& GetPositionsBefore() const { return m_vtBefore; }
    const QVector<BoxPos>& GetPositionsAfter() const { return m_vtAfter; }

protected:
    void UndoImp() override;
    void RedoImp() override;
    // Boxes left out of the before state: those that the gesture brings into being.
    virtual bool IsNewBox(unsigned long long boxId) const;
    QVector<BoxPos> CapturePositions() const;
    void ApplyPositions(const QVector<BoxPos>& positions) const;

    QVector<BoxPos> m_vtBefore;
    QVector<BoxPos> m_vtAfter;
    QVector<unsigned long long> m_vtTabIds; // of the dragged single-card box, before
    QPointer<CVXPanelBaseBox> m_pDropTarget;

private:
    CVXVariantMapTree m_recordBefore;   // the dragged box, until we know whether it goes
    CVXVariantMapTree m_affectedRecord; // the dragged box's record when it was dropped
    unsigned long long m_u64TargetId = 0;
    QVector<unsigned long long> m_vtTargetTabIds; // the target's tabs that hold the dropped cards
};

class UIFRAME_EXPORT Resized : public Moved
{
public:
    void BeforeCommand() override;
    void AfterCommand() override;
    bool IsChanged() const override;
    QRect GetRectBefore() const { return m_rcBefore; }
    QRect GetRectAfter() const { return m_rcAfter; }

protected:
    void UndoImp() override;
    void RedoImp() override;

private:
    QRect m_rcBefore;
    QRect m_rcAfter;
};

// A box that the gesture created (the attached box): undo deletes it, redo re-creates it under
// the same id from its record.
class UIFRAME_EXPORT Created : public Moved
{
public:
    void BeforeCommand() override;
    void AfterCommand() override;

protected:
    void UndoImp() override;
    void RedoImp() override;
    bool IsNewBox(unsigned long long boxId) const override;
    void RecreateBox();
    void DeleteBox();
};

// A box that the gesture deleted (the attached box, through DeleteLaterEx between the hooks).
class UIFRAME_EXPORT Deleted : public Created
{
public:
    void BeforeCommand() override;
    void AfterCommand() override;

protected:
    void UndoImp() override;
    void RedoImp() override;
    bool IsNewBox(unsigned long long boxId) const override;
};

class UIFRAME_EXPORT Pasted : public Moved
{
public:
    // Each box made by the paste, after it was inserted and restored.
    void AddPastedBox(CVXPanelBaseBox* box);
    void AfterCommand() override;
    bool IsChanged() const override;
    int GetPastedCount() const { return m_vtPasted.size(); }

protected:
    void UndoImp() override;
    void RedoImp() override;
    bool IsNewBox(unsigned long long boxId) const override;

private:
    struct PastedBox
    {
        unsigned long long u64BoxId = 0;
        CVXVariantMapTree record;
    };
    QVector<PastedBox> m_vtPasted;
};

// A tab dragged out of its source box (the attached box) into a new box of its own, or dropped
// into another box's tab bar.
class UIFRAME_EXPORT TabDragMoved : public Moved
{
public:
    using Moved::BeforeCommand;
    // The tab at `tabIndex` of the source box is about to leave it.
    void BeforeCommand(int tabIndex);
    void SetTornOutBox(CVXPanelAtomizationBox* box);
    void AfterCommand() override;
    bool IsChanged() const override;

    int GetIndexBefore() const { return m_nIndexBefore; }
    int GetIndexAfter() const { return m_nIndexAfter; }
    unsigned long long GetTornOutBoxId() const { return m_bTargetIsNew ? m_u64TargetBoxId : 0; }
    unsigned long long GetTargetBoxId() const { return m_u64TargetBoxId; }

protected:
    void UndoImp() override;
    void RedoImp() override;
    bool IsNewBox(unsigned long long boxId) const override;

private:
    int m_nIndexBefore = -1;
    int m_nIndexAfter = -1;
    unsigned long long m_u64TabId = 0;       // the tab's id in its source box
    unsigned long long m_u64TargetTabId = 0; // its id in the box that took it
    QString m_strCardType;
    CVXVariantMapTree m_cardData;
    QPointer<CVXPanelAtomizationBox> m_pTornOut;
    unsigned long long m_u64TornOutId = 0;
    unsigned long long m_u64TargetBoxId = 0;
    bool m_bTargetIsNew = false;
    CVXVariantMapTree m_newBoxRecord;
};

class UIFRAME_EXPORT ColorChanged : public IBaseCmd
{
public:
    void BeforeCommand() override;
    void AfterCommand() override;
    bool IsChanged() const override;

protected:
    void UndoImp() override;
    void RedoImp() override;

    QString m_strColorBefore;
    QString m_strColorAfter;
};

class UIFRAME_EXPORT GroupChanged : public ColorChanged
{
public:
    void BeforeCommand() override;
    void AfterCommand() override;
    bool IsChanged() const override;

protected:
    void UndoImp() override;
    void RedoImp() override;

private:
    QString m_strGroupBefore;
    QString m_strGroupAfter;
};

// A tab closed in a box that keeps other tabs. Undo puts a new card of the recorded type and data
// back at its index under its old tab id; redo closes that tab again.
class UIFRAME_EXPORT CardDeleted : public IBaseCmd
{
public:
    using IBaseCmd::BeforeCommand;
    void BeforeCommand(long long index, const QString& cardType, const CVXVariantMapTree& data);
    // The tab is gone once the box removed it.
    bool IsChanged() const override;

    long long GetIndex() const { return m_llIndex; }
    const QString& GetCardType() const { return m_strCardType; }

protected:
    void UndoImp() override;
    void RedoImp() override;

private:
    long long m_llIndex = -1;
    QString m_strCardType;
    unsigned long long m_u64TabId = 0;
};

} // namespace panelbox_undo_cmd
