#include "UIFrame/PanelBox/PanelUndoCmd.h"

#include "UIFrame/Canvas/PanelScrollView.h"
#include "UIFrame/CardObjBase.h"
#include "UIFrame/PanelBox/PanelAtomizationBox.h"
#include "UIFrame/PanelBox/PanelBaseBox.h"
#include "UIFrame/PanelBox/PanelBoxManager.h"

#include "Platform/Core/Assert.h"
#include "Platform/Core/Log.h"
#include "Platform/StdUI/TabWidget.h"

#include <QScopedValueRollback>
#include <QScrollBar>

namespace panelbox_undo_cmd {
namespace {

CVXPanelBaseBox* FindBox(unsigned long long id)
{
    if (id == 0)
        return nullptr;
    CVXPanelBaseBox* box = CVXPanelBoxManager::instance()->GetPanelBox(id);
    return box && !box->IsDeleted() ? box : nullptr;
}

CVXPanelAtomizationBox* FindAtomizationBox(unsigned long long id)
{
    return dynamic_cast<CVXPanelAtomizationBox*>(FindBox(id));
}

CVXVariantMapTree RecordOf(CVXPanelBaseBox* box)
{
    CVXVariantMapTree record;
    if (box)
        box->GetObjRestoreData(&record);
    return record;
}

QVector<unsigned long long> TabIdsOf(CVXPanelBaseBox* box)
{
    auto* atomization = dynamic_cast<CVXPanelAtomizationBox*>(box);
    return atomization ? atomization->GetTabIds() : QVector<unsigned long long>();
}

// Re-creates a box under its old id, with the tab ids it had, so that older commands still find
// both.
CVXPanelBaseBox* RecreateFromRecord(CVXPanelScrollView* view, const CVXVariantMapTree& record,
                                    unsigned long long id, const QVector<unsigned long long>& tabIds)
{
    if (!view || id == 0 || record.IsEmpty())
        return nullptr;
    if (CVXPanelBaseBox* existing = FindBox(id))
        return existing;
    CVXPanelBaseBox* box = view->CreateBoxFromRecord(record, id);
    auto* atomization = dynamic_cast<CVXPanelAtomizationBox*>(box);
    if (atomization && atomization->GetTabWidget() && atomization->GetTabCount() == tabIds.size()) {
        for (int i = 0; i < tabIds.size(); ++i)
            atomization->GetTabWidget()->setTabId(i, tabIds[i]);
    }
    return box;
}

} // namespace

// ---------------------------------------------------------------------------------------------
// IBaseCmd

IBaseCmd::IBaseCmd() = default;

IBaseCmd::~IBaseCmd() = default;

void IBaseCmd::undo()
{
    UndoImp();
}

void IBaseCmd::redo()
{
    if (m_bSkipRedo)
        return;
    RedoImp();
}

bool IBaseCmd::mergeWith(const QUndoCommand* other)
{
    (void)other;
    return false;
}

void IBaseCmd::BeforeCommand() {}

void IBaseCmd::AfterCommand() {}

bool IBaseCmd::IsChanged() const
{
    return false;
}

void IBaseCmd::SetPanelBox(CVXPanelBaseBox* box)
{
    m_pBox = box;
    m_u64BoxId = box ? box->GetBoxId() : 0;
}

void IBaseCmd::SetPanelScrollView(CVXPanelScrollView* view)
{
    m_pScrollView = view;
}

CVXPanelBaseBox* IBaseCmd::GetPanelBox() const
{
    if (m_pBox && !m_pBox->IsDeleted())
        return m_pBox.data();
    CVXPanelBaseBox* box = FindBox(m_u64BoxId);
    if (box)
        m_pBox = box;
    return box;
}

CVXPanelScrollView* IBaseCmd::GetPanelScrollView() const
{
    if (m_pScrollView)
        return m_pScrollView.data();
    if (m_pBox)
        return m_pBox->GetPanelScrollView();
    CVXPanelBaseBox* box = GetPanelBox();
    return box ? box->GetPanelScrollView() : nullptr;
}

// ---------------------------------------------------------------------------------------------
// ScrollViewChanged

namespace {

ScrollViewChanged::ViewState CaptureView(CVXPanelScrollView* view)
{
    ScrollViewChanged::ViewState state;
    if (!view)
        return state;
    if (QWidget* content = view->GetContentWidget())
        state.contentSize = content->size();
    state.nScrollX = view->horizontalScrollBar()->value();
    state.nScrollY = view->verticalScrollBar()->value();
    return state;
}

// RAII: the canvas does not react to scroll-bar changes made by a command.
class BanScrollReactions
{
public:
    explicit BanScrollReactions(CVXPanelScrollView* view) : m_pView(view)
    {
        if (m_pView)
            m_pView->SetBanDealScrollbarValueChangedEvt(true);
    }
    ~BanScrollReactions()
    {
        if (m_pView)
            m_pView->SetBanDealScrollbarValueChangedEvt(false);
    }
    BanScrollReactions(const BanScrollReactions&) = delete;
    BanScrollReactions& operator=(const BanScrollReactions&) = delete;

private:
    QPointer<CVXPanelScrollView> m_pView;
};

void SetScrollValue(QScrollBar* bar, int value)
{
    if (value > bar->maximum())
        bar->setMaximum(value);
    bar->setValue(value);
}

} // namespace

void ScrollViewChanged::BeforeCommand()
{
    m_viewBefore = CaptureView(GetPanelScrollView());
}

void ScrollViewChanged::AfterCommand()
{
    m_viewAfter = CaptureView(GetPanelScrollView());
}

bool ScrollViewChanged::IsChanged() const
{
    return m_viewBefore != m_viewAfter;
}

void ScrollViewChanged::UndoImp()
{
    ApplyView(m_viewBefore);
}

void ScrollViewChanged::RedoImp()
{
    ApplyView(m_viewAfter);
}

void ScrollViewChanged::ApplyView(const ViewState& state) const
{
    CVXPanelScrollView* view = GetPanelScrollView();
    if (!view || !state.contentSize.isValid())
        return;
    BanScrollReactions ban(view);
    if (QWidget* content = view->GetContentWidget())
        content->resize(state.contentSize);
    SetScrollValue(view->horizontalScrollBar(), state.nScrollX);
    SetScrollValue(view->verticalScrollBar(), state.nScrollY);
}

// ---------------------------------------------------------------------------------------------
// Moved

QVector<Moved::BoxPos> Moved::CapturePositions() const
{
    QVector<BoxPos> positions;
    CVXPanelScrollView* view = GetPanelScrollView();
    if (!view)
        return positions;
    for (CVXPanelBaseBox* box : view->GetPanelBoxes()) {
        if (box && !box->IsDeleted())
            positions.append(BoxPos{box->GetBoxId(), box->pos()});
    }
    return positions;
}

void Moved::ApplyPositions(const QVector<BoxPos>& positions) const
{
    for (const BoxPos& entry : positions) {
        if (CVXPanelBaseBox* box = FindBox(entry.u64BoxId))
            box->move(entry.pos);
    }
}

bool Moved::IsNewBox(unsigned long long boxId) const
{
    (void)boxId;
    return false;
}

void Moved::BeforeCommand()
{
    if (!VX_ASSERT(GetPanelScrollView()))
        return;
    ScrollViewChanged::BeforeCommand();
    m_vtBefore.clear();
    for (const BoxPos& entry : CapturePositions()) {
        if (!IsNewBox(entry.u64BoxId))
            m_vtBefore.append(entry);
    }
    CVXPanelBaseBox* box = GetPanelBox();
    m_vtTabIds = TabIdsOf(box);
    m_recordBefore = RecordOf(box);
}

void Moved::SetDropTarget(CVXPanelBaseBox* target)
{
    m_pDropTarget = target;
}

void Moved::AfterCommand()
{
    ScrollViewChanged::AfterCommand();
    m_vtAfter = CapturePositions();
    // New boxes may have been recorded before they were made: keep them out of the before state.
    QVector<BoxPos> before;
    for (const BoxPos& entry : m_vtBefore) {
        if (!IsNewBox(entry.u64BoxId))
            before.append(entry);
    }
    m_vtBefore = before;

    m_affectedRecord = CVXVariantMapTree();
    m_u64TargetId = 0;
    m_vtTargetTabIds.clear();
    if (m_pDropTarget && !GetPanelBox() && !m_recordBefore.IsEmpty()) {
        // The dragged box went into the target's tab bar: its cards are the target's last tabs.
        m_affectedRecord = m_recordBefore;
        m_u64TargetId = m_pDropTarget->GetBoxId();
        const QVector<unsigned long long> targetTabs = TabIdsOf(m_pDropTarget.data());
        const int moved = std::min(m_vtTabIds.size(), targetTabs.size());
        m_vtTargetTabIds = targetTabs.mid(targetTabs.size() - moved);
    }
    m_recordBefore = CVXVariantMapTree();
}

bool Moved::IsChanged() const
{
    return ScrollViewChanged::IsChanged() || m_vtBefore != m_vtAfter || !m_affectedRecord.IsEmpty();
}

void Moved::UndoImp()
{
    if (!m_affectedRecord.IsEmpty()) {
        if (CVXPanelAtomizationBox* target = FindAtomizationBox(m_u64TargetId)) {
            for (unsigned long long tabId : m_vtTargetTabIds)
                target->RemoveTabById(tabId);
        }
        RecreateFromRecord(GetPanelScrollView(), m_affectedRecord, GetPanelBoxId(), m_vtTabIds);
    }
    ApplyPositions(m_vtBefore);
    ScrollViewChanged::UndoImp();
}

void Moved::RedoImp()
{
    if (!m_affectedRecord.IsEmpty()) {
        auto* box = dynamic_cast<CVXPanelAtomizationBox*>(GetPanelBox());
        CVXPanelAtomizationBox* target = FindAtomizationBox(m_u64TargetId);
        if (box && target) {
            for (int i = 0; i < box->GetTabCount(); ++i) {
                CVXPanelAtomizationBox::CardInfoExt info;
                if (!box->GetTabCardData(i, &info.strCardType, &info.cardData))
                    continue;
                info.u64TabId = i < m_vtTargetTabIds.size() ? m_vtTargetTabIds[i] : 0;
                target->CreateCard(info);
            }
            box->DeleteLaterEx();
        }
    }
    ApplyPositions(m_vtAfter);
    // Cards moved together with their box follow the box's security.
    if (auto* box = dynamic_cast<CVXPanelAtomizationBox*>(GetPanelBox())) {
        const unsigned long long stockID = box->GetStockID();
        for (int i = 0; stockID != 0 && i < box->GetTabCount(); ++i) {
            if (CVXCardObjBase* card = box->GetCardByIndex(i))
                card->SetStockID(stockID);
        }
    }
    ScrollViewChanged::RedoImp();
}

// ---------------------------------------------------------------------------------------------
// Resized

void Resized::BeforeCommand()
{
    Moved::BeforeCommand();
    if (CVXPanelBaseBox* box = GetPanelBox())
        m_rcBefore = box->geometry();
}

void Resized::AfterCommand()
{
    Moved::AfterCommand();
    if (CVXPanelBaseBox* box = GetPanelBox())
        m_rcAfter = box->geometry();
}

bool Resized::IsChanged() const
{
    return m_rcBefore != m_rcAfter || Moved::IsChanged();
}

void Resized::UndoImp()
{
    if (CVXPanelBaseBox* box = GetPanelBox())
        box->setGeometry(m_rcBefore);
    Moved::UndoImp();
}

void Resized::RedoImp()
{
    if (CVXPanelBaseBox* box = GetPanelBox())
        box->setGeometry(m_rcAfter);
    Moved::RedoImp();
}

// ---------------------------------------------------------------------------------------------
// Created and Deleted

bool Created::IsNewBox(unsigned long long boxId) const
{
    return boxId == GetPanelBoxId();
}

void Created::BeforeCommand()
{
    Moved::BeforeCommand();
}

void Created::AfterCommand()
{
    Moved::AfterCommand();
    CVXPanelBaseBox* box = GetPanelBox();
    m_data = RecordOf(box);
    m_vtTabIds = TabIdsOf(box);
}

void Created::RecreateBox()
{
    RecreateFromRecord(GetPanelScrollView(), m_data, GetPanelBoxId(), m_vtTabIds);
}

void Created::DeleteBox()
{
    if (CVXPanelBaseBox* box = GetPanelBox())
        box->DeleteLaterEx();
}

void Created::UndoImp()
{
    DeleteBox();
    Moved::UndoImp();
}

void Created::RedoImp()
{
    RecreateBox();
    Moved::RedoImp();
}

bool Deleted::IsNewBox(unsigned long long boxId) const
{
    (void)boxId;
    return false;
}

void Deleted::BeforeCommand()
{
    Moved::BeforeCommand();
    CVXPanelBaseBox* box = GetPanelBox();
    m_data = RecordOf(box);
    m_vtTabIds = TabIdsOf(box);
}

void Deleted::AfterCommand()
{
    // The record stays the one taken before the box went.
    Moved::AfterCommand();
}

void Deleted::UndoImp()
{
    RecreateBox();
    Moved::UndoImp();
}

void Deleted::RedoImp()
{
    DeleteBox();
    Moved::RedoImp();
}

// ---------------------------------------------------------------------------------------------
// Pasted

void Pasted::AddPastedBox(CVXPanelBaseBox* box)
{
    if (!box)
        return;
    for (const PastedBox& pasted : m_vtPasted) {
        if (pasted.u64BoxId == box->GetBoxId())
            return;
    }
    m_vtPasted.append(PastedBox{box->GetBoxId(), CVXVariantMapTree()});
}

bool Pasted::IsNewBox(unsigned long long boxId) const
{
    for (const PastedBox& pasted : m_vtPasted) {
        if (pasted.u64BoxId == boxId)
            return true;
    }
    return false;
}

void Pasted::AfterCommand()
{
    Moved::AfterCommand();
    for (PastedBox& pasted : m_vtPasted)
        pasted.record = RecordOf(FindBox(pasted.u64BoxId));
}

bool Pasted::IsChanged() const
{
    return true;
}

void Pasted::UndoImp()
{
    for (const PastedBox& pasted : m_vtPasted) {
        if (CVXPanelBaseBox* box = FindBox(pasted.u64BoxId))
            box->DeleteLaterEx();
    }
    Moved::UndoImp();
}

void Pasted::RedoImp()
{
    for (const PastedBox& pasted : m_vtPasted)
        RecreateFromRecord(GetPanelScrollView(), pasted.record, pasted.u64BoxId, {});
    Moved::RedoImp();
}

// ---------------------------------------------------------------------------------------------
// TabDragMoved

void TabDragMoved::BeforeCommand(int tabIndex)
{
    Moved::BeforeCommand();
    auto* source = dynamic_cast<CVXPanelAtomizationBox*>(GetPanelBox());
    if (!source || tabIndex < 0 || tabIndex >= source->GetTabCount())
        return;
    m_nIndexBefore = tabIndex;
    m_u64TabId = source->GetTabIds().value(tabIndex);
    source->GetTabCardData(tabIndex, &m_strCardType, &m_cardData);
}

void TabDragMoved::SetTornOutBox(CVXPanelAtomizationBox* box)
{
    m_pTornOut = box;
    m_u64TornOutId = box ? box->GetBoxId() : 0;
}

bool TabDragMoved::IsNewBox(unsigned long long boxId) const
{
    return boxId != 0 && boxId == m_u64TornOutId;
}

void TabDragMoved::AfterCommand()
{
    // The source box is the attached box: it stays, so this is never a drop of the whole box.
    Moved::AfterCommand();
    m_u64TargetBoxId = 0;
    m_bTargetIsNew = false;
    m_nIndexAfter = -1;
    auto findTab = [this](CVXPanelAtomizationBox* box) {
        const QVector<unsigned long long> ids = box->GetTabIds();
        const int index = ids.indexOf(m_u64TabId);
        // A box that took the card under an id of its own has it as its last tab.
        return index >= 0 ? index : ids.size() - 1;
    };
    CVXPanelAtomizationBox* target = nullptr;
    if (m_pTornOut && !m_pTornOut->IsDeleted()) {
        target = m_pTornOut.data();
        m_bTargetIsNew = true;
    } else if (auto* dropTarget = dynamic_cast<CVXPanelAtomizationBox*>(m_pDropTarget.data())) {
        target = dropTarget->IsDeleted() ? nullptr : dropTarget;
    } else if (CVXPanelScrollView* view = GetPanelScrollView()) {
        for (CVXPanelBaseBox* candidate : view->GetPanelBoxes()) {
            auto* box = dynamic_cast<CVXPanelAtomizationBox*>(candidate);
            if (box && !box->IsDeleted() && box->GetTabIds().contains(m_u64TabId)) {
                target = box;
                break;
            }
        }
    }
    if (!target)
        return;
    m_u64TargetBoxId = target->GetBoxId();
    m_nIndexAfter = findTab(target);
    m_u64TargetTabId = target->GetTabIds().value(m_nIndexAfter);
    if (m_bTargetIsNew)
        m_newBoxRecord = RecordOf(target);
}

bool TabDragMoved::IsChanged() const
{
    if (m_nIndexBefore < 0)
        return false;
    return m_u64TargetBoxId != GetPanelBoxId() || m_nIndexBefore != m_nIndexAfter || Moved::IsChanged();
}

void TabDragMoved::UndoImp()
{
    auto* source = dynamic_cast<CVXPanelAtomizationBox*>(GetPanelBox());
    CVXPanelAtomizationBox* target = FindAtomizationBox(m_u64TargetBoxId);
    if (source && m_u64TargetBoxId != 0) {
        CVXPanelAtomizationBox::CardInfoExt info;
        info.strCardType = m_strCardType;
        info.cardData = m_cardData;
        if (target) {
            const int index = target->GetTabIds().indexOf(m_u64TargetTabId);
            if (index >= 0) {
                // The card as it is now, not as it was when it left.
                target->GetTabCardData(index, &info.strCardType, &info.cardData);
                if (m_bTargetIsNew && target->GetTabCount() == 1)
                    target->DeleteLaterEx();
                else
                    target->RemoveTabById(m_u64TargetTabId);
            }
        }
        info.nIndex = m_nIndexBefore;
        info.u64TabId = m_u64TabId;
        if (source->GetTabIds().indexOf(m_u64TabId) < 0 && source->CreateCard(info))
            source->SetCurrentTabIndex(m_nIndexBefore);
    }
    Moved::UndoImp();
}

void TabDragMoved::RedoImp()
{
    auto* source = dynamic_cast<CVXPanelAtomizationBox*>(GetPanelBox());
    if (source && m_u64TargetBoxId != 0) {
        CVXPanelAtomizationBox::CardInfoExt info;
        info.strCardType = m_strCardType;
        info.cardData = m_cardData;
        const int index = source->GetTabIds().indexOf(m_u64TabId);
        if (index >= 0) {
            source->GetTabCardData(index, &info.strCardType, &info.cardData);
            source->RemoveTabById(m_u64TabId);
        }
        if (m_bTargetIsNew) {
            // The record holds the card as it was after the drag; only its id is needed back.
            RecreateFromRecord(GetPanelScrollView(), m_newBoxRecord, m_u64TargetBoxId, {m_u64TargetTabId});
        } else if (CVXPanelAtomizationBox* target = FindAtomizationBox(m_u64TargetBoxId)) {
            if (target->GetTabIds().indexOf(m_u64TargetTabId) < 0) {
                info.nIndex = m_nIndexAfter;
                info.u64TabId = m_u64TargetTabId;
                target->CreateCard(info);
            }
        }
    }
    Moved::RedoImp();
}

// ---------------------------------------------------------------------------------------------
// ColorChanged and GroupChanged

void ColorChanged::BeforeCommand()
{
    if (CVXPanelBaseBox* box = GetPanelBox())
        m_strColorBefore = box->GetGroupColor();
}

void ColorChanged::AfterCommand()
{
    if (CVXPanelBaseBox* box = GetPanelBox())
        m_strColorAfter = box->GetGroupColor();
}

bool ColorChanged::IsChanged() const
{
    return m_strColorBefore != m_strColorAfter;
}

void ColorChanged::UndoImp()
{
    if (CVXPanelBaseBox* box = GetPanelBox())
        box->SetGroupColor(m_strColorBefore);
}

void ColorChanged::RedoImp()
{
    if (CVXPanelBaseBox* box = GetPanelBox())
        box->SetGroupColor(m_strColorAfter);
}

void GroupChanged::BeforeCommand()
{
    ColorChanged::BeforeCommand();
    if (CVXPanelBaseBox* box = GetPanelBox())
        m_strGroupBefore = box->GetGroupID();
}

void GroupChanged::AfterCommand()
{
    ColorChanged::AfterCommand();
    if (CVXPanelBaseBox* box = GetPanelBox())
        m_strGroupAfter = box->GetGroupID();
}

bool GroupChanged::IsChanged() const
{
    return m_strGroupBefore != m_strGroupAfter;
}

void GroupChanged::UndoImp()
{
    if (CVXPanelBaseBox* box = GetPanelBox()) {
        box->SetGroupID(m_strGroupBefore);
        box->SetGroupColor(m_strColorBefore);
    }
}

void GroupChanged::RedoImp()
{
    if (CVXPanelBaseBox* box = GetPanelBox()) {
        box->SetGroupID(m_strGroupAfter);
        box->SetGroupColor(m_strColorAfter);
    }
}

// ---------------------------------------------------------------------------------------------
// CardDeleted

void CardDeleted::BeforeCommand(long long index, const QString& cardType, const CVXVariantMapTree& data)
{
    m_llIndex = index;
    m_strCardType = cardType;
    m_data = data;
    if (auto* box = dynamic_cast<CVXPanelAtomizationBox*>(GetPanelBox()))
        m_u64TabId = box->GetTabIds().value(static_cast<int>(index));
}

bool CardDeleted::IsChanged() const
{
    auto* box = dynamic_cast<CVXPanelAtomizationBox*>(GetPanelBox());
    return box && m_u64TabId != 0 && box->GetTabIds().indexOf(m_u64TabId) < 0;
}

void CardDeleted::UndoImp()
{
    auto* box = dynamic_cast<CVXPanelAtomizationBox*>(GetPanelBox());
    if (!box || box->GetTabIds().indexOf(m_u64TabId) >= 0)
        return;
    CVXPanelAtomizationBox::CardInfoExt info;
    info.strCardType = m_strCardType;
    info.cardData = m_data;
    info.nIndex = static_cast<int>(m_llIndex);
    info.u64TabId = m_u64TabId;
    if (box->CreateCard(info))
        box->SetCurrentTabIndex(static_cast<int>(m_llIndex));
}

void CardDeleted::RedoImp()
{
    if (auto* box = dynamic_cast<CVXPanelAtomizationBox*>(GetPanelBox()))
        box->RemoveTabById(m_u64TabId);
}

} // namespace panelbox_undo_cmd
