#include "UIFrame/PanelBox/PanelBaseBox.h"

#include "UIFrame/Canvas/PanelScrollView.h"
#include "UIFrame/PanelBox/PanelBoxGeometry.h"
#include "UIFrame/PanelBox/PanelBoxManager.h"
#include "UIFrame/PanelBox/PanelBoxMask.h"

#include <atomic>

namespace {
std::atomic<unsigned long long> s_u64LastBoxId{0};
}

CVXPanelBaseBox::CVXPanelBaseBox(QWidget* parent) : QFrame(parent)
{
    // Hovering the frame shows the resize cursors.
    setMouseTracking(true);
}

CVXPanelBaseBox::~CVXPanelBaseBox() = default;

unsigned long long CVXPanelBaseBox::GenerateNewId()
{
    unsigned long long last = s_u64LastBoxId.load();
    unsigned long long next = 0;
    do {
        next = last + 1;
        if (next == 0)
            next = 1;
    } while (!s_u64LastBoxId.compare_exchange_weak(last, next));
    return next;
}

void CVXPanelBaseBox::SetIdCounterForTest(unsigned long long lastId)
{
    s_u64LastBoxId.store(lastId);
}

CVXPanelScrollView* CVXPanelBaseBox::GetPanelScrollView() const
{
    return m_pScrollView.data();
}

void CVXPanelBaseBox::SetPanelScrollView(CVXPanelScrollView* view)
{
    m_pScrollView = view;
}

void CVXPanelBaseBox::GetObjRestoreData(CVXVariantMapTree* tree) const
{
    (void)tree;
}

void CVXPanelBaseBox::GetObjRestoreData(CVXVariantMapTree* tree, int cardIndex) const
{
    (void)tree;
    (void)cardIndex;
}

QString CVXPanelBaseBox::GetGroupID() const
{
    return m_strGroupID;
}

void CVXPanelBaseBox::SetGroupID(const QString& groupId)
{
    m_strGroupID = groupId;
}

void CVXPanelBaseBox::SetGroupColor(const QString& color)
{
    if (m_pMask)
        m_pMask->SetGroupColor(color);
}

QString CVXPanelBaseBox::GetGroupColor() const
{
    return m_pMask ? m_pMask->GetGroupColor() : QString();
}

CVXVariantMapTree CVXPanelBaseBox::GetAccountInfo()
{
    return CVXVariantMapTree();
}

CVXVariantMapTree CVXPanelBaseBox::GetComboOptionInfo()
{
    return CVXVariantMapTree();
}

CVXVariantMapTree CVXPanelBaseBox::GetOptionIndexInfo()
{
    return CVXVariantMapTree();
}

unsigned long long CVXPanelBaseBox::GetStockID() const
{
    return 0;
}

CVXPanelBoxMask* CVXPanelBaseBox::GetMask() const
{
    return m_pMask.data();
}

bool CVXPanelBaseBox::IsPopup() const
{
    return false;
}

void CVXPanelBaseBox::DeleteLaterEx()
{
    // Unregistered at once: nothing may find the box between now and its actual deletion.
    CVXPanelBoxManager::instance()->RemovePanelBox(this);
    m_bDeleted = true;
    deleteLater();
}

CVXPanelBaseBox::HitPos CVXPanelBaseBox::HitTestMouseMove(const QPoint& local) const
{
    return static_cast<HitPos>(panelbox_geometry::HitTest(size(), local));
}

void CVXPanelBaseBox::UpdateCursorByHitPos(HitPos pos)
{
    m_enLastHitPos = pos;
    setCursor(panelbox_geometry::CursorForHitPos(pos));
}

CVXPanelUndoStack* CVXPanelBaseBox::GetUndoStack() const
{
    // The canvas is itself the undo stack.
    return GetPanelScrollView();
}

void CVXPanelBaseBox::SetMask(CVXPanelBoxMask* mask)
{
    m_pMask = mask;
}
