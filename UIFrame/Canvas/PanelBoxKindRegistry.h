#pragma once

// CVXPanelBoxKindRegistry: how the canvas makes the box kinds other than the single-card box
// (which it makes itself). A kind registers a creator (a new, empty box under the given id, 0
// meaning a new id) and a restorer (fills an inserted box from its record; false when the record
// yields no card, the box is then destroyed). Lookups of an unregistered kind give null / false.

#include "UIFrame/StateTreeTypes.h"
#include "UIFrame/UIFrameExport.h"

#include "Platform/Core/VariantMapTree.h"

#include <QMap>

#include <functional>

class CVXPanelBaseBox;

class UIFRAME_EXPORT CVXPanelBoxKindRegistry
{
public:
    using Creator = std::function<CVXPanelBaseBox*(unsigned long long boxId)>;
    using Restorer = std::function<bool(CVXPanelBaseBox* box, const CVXVariantMapTree& record)>;

    static CVXPanelBoxKindRegistry& Instance();

    // Replaces an earlier registration of the kind. False (nothing registered) for the single-card
    // kind or an empty function.
    bool Register(VXPanelBoxType type, Creator creator, Restorer restorer);
    void UnRegister(VXPanelBoxType type);
    bool IsRegistered(VXPanelBoxType type) const;

    CVXPanelBaseBox* Create(VXPanelBoxType type, unsigned long long boxId) const;
    bool Restore(VXPanelBoxType type, CVXPanelBaseBox* box, const CVXVariantMapTree& record) const;

    // Tests: forget every kind.
    void ResetForTest();

    CVXPanelBoxKindRegistry(const CVXPanelBoxKindRegistry&) = delete;
    CVXPanelBoxKindRegistry& operator=(const CVXPanelBoxKindRegistry&) = delete;

private:
    CVXPanelBoxKindRegistry() = default;
    ~CVXPanelBoxKindRegistry() = default;

    struct Kind
    {
        Creator creator;
        Restorer restorer;
    };
    QMap<int, Kind> m_mapKinds;
};
