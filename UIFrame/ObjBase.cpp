#include "UIFrame/ObjBase.h"

#include "UIFrame/TabFrame/TabFrameBase.h"

#include <QWidget>

CVXObjBase::CVXObjBase() = default;

CVXObjBase::~CVXObjBase() = default;

void CVXObjBase::SetObjType(int type)
{
    m_nObjType = type;
}

void CVXObjBase::SetObjKey(unsigned long long key)
{
    m_u64ObjKey = key;
}

void CVXObjBase::SetTabFramePageKey(unsigned long long key)
{
    m_u64TabFramePageKey = key;
}

unsigned long long CVXObjBase::GetTabFramePageKey() const
{
    return m_u64TabFramePageKey;
}

void CVXObjBase::SetStockID(const unsigned long long& stockID)
{
    m_u64StockID = stockID;
}

unsigned long long CVXObjBase::GetStockID() const
{
    if (m_u64StockID != 0)
        return m_u64StockID;
    const CVXTabFrameBase* frame = GetTabFrame();
    if (frame && frame->GetTabFrameKey() != TabFrameKey_PanelWorkspace)
        return frame->GetStockID();
    return 0;
}

void CVXObjBase::SetObjProperty(const QString& cardType, const CVXVariantMapTree& property)
{
    (void)cardType;
    (void)property;
}

void CVXObjBase::SetAccountInfo(const CVXVariantMapTree& info)
{
    (void)info;
}

CVXVariantMapTree CVXObjBase::GetAccountInfo()
{
    return {};
}

void CVXObjBase::SetComboOptionInfo(const CVXVariantMapTree& info)
{
    (void)info;
}

CVXVariantMapTree CVXObjBase::GetComboOptionInfo()
{
    return {};
}

void CVXObjBase::SetOptionIndexInfo(const CVXVariantMapTree& info)
{
    (void)info;
}

CVXVariantMapTree CVXObjBase::GetOptionIndexInfo()
{
    return {};
}

void CVXObjBase::SetTabFrame(CVXTabFrameBase* frame)
{
    m_pTabFrame = frame;
}

bool CVXObjBase::IsBlockObjSyncUpEvent()
{
    return m_bBlockObjSyncUpEvent;
}

void CVXObjBase::BlockObjSyncUpEvent(bool block)
{
    m_bBlockObjSyncUpEvent = block;
}

void CVXObjBase::SetFootPrint(QList<FootPrintSubDir> footPrint)
{
    (void)footPrint;
}

CVXTabFrameBase* CVXObjBase::GetTabFrame() const
{
    if (m_pTabFrame)
        return static_cast<CVXTabFrameBase*>(m_pTabFrame.data());
    const auto* widget = dynamic_cast<const QWidget*>(this);
    if (!widget)
        return nullptr;
    for (QWidget* parent = widget->parentWidget(); parent; parent = parent->parentWidget()) {
        if (auto* frame = dynamic_cast<CVXTabFrameBase*>(parent))
            return frame;
    }
    return nullptr;
}
