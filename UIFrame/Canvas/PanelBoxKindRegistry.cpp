#include "UIFrame/Canvas/PanelBoxKindRegistry.h"

#include "Platform/Core/Log.h"

CVXPanelBoxKindRegistry& CVXPanelBoxKindRegistry::Instance()
{
    static CVXPanelBoxKindRegistry s_instance;
    return s_instance;
}

bool CVXPanelBoxKindRegistry::Register(VXPanelBoxType type, Creator creator, Restorer restorer)
{
    if (type == VXPanelBoxType_AtomizationBox) {
        VXLOG_WARN("CVXPanelBoxKindRegistry::Register: the single-card box is made by the canvas");
        return false;
    }
    if (!creator || !restorer) {
        VXLOG_WARN("CVXPanelBoxKindRegistry::Register: empty creator or restorer for kind {}",
                   static_cast<int>(type));
        return false;
    }
    m_mapKinds.insert(static_cast<int>(type), Kind{std::move(creator), std::move(restorer)});
    return true;
}

void CVXPanelBoxKindRegistry::UnRegister(VXPanelBoxType type)
{
    m_mapKinds.remove(static_cast<int>(type));
}

bool CVXPanelBoxKindRegistry::IsRegistered(VXPanelBoxType type) const
{
    return m_mapKinds.contains(static_cast<int>(type));
}

CVXPanelBaseBox* CVXPanelBoxKindRegistry::Create(VXPanelBoxType type, unsigned long long boxId) const
{
    const auto it = m_mapKinds.constFind(static_cast<int>(type));
    return it == m_mapKinds.constEnd() ? nullptr : it->creator(boxId);
}

bool CVXPanelBoxKindRegistry::Restore(VXPanelBoxType type, CVXPanelBaseBox* box,
                                      const CVXVariantMapTree& record) const
{
    const auto it = m_mapKinds.constFind(static_cast<int>(type));
    if (it == m_mapKinds.constEnd() || !box)
        return false;
    return it->restorer(box, record);
}

void CVXPanelBoxKindRegistry::ResetForTest()
{
    m_mapKinds.clear();
}
