#pragma once

// The module interfaces the workspace program offers UIFrame through the plug-in centre: the
// main frame (exists, switch frame, expanded region), the business module (layout shortcuts)
// and the quote module (the last security the user looked at). Each answers through the
// callbacks of one CVXWorkspaceModules object; once that object is gone (or a callback is
// unset) the interfaces answer "no main frame" / false and do nothing.

#include "UIFrame/ModuleInterfaces.h"

#include <functional>
#include <memory>

class CVXVariantMapTree;

namespace vx_ws {

class CVXWorkspaceModules
{
public:
    struct Hooks
    {
        std::function<bool()> mainFrameExists;
        std::function<void(EnVXTabFrameKey, const CVXVariantMapTree&)> switchTabFrame;
        std::function<bool(const CVXVariantMapTree&)> addShortcut;
        std::function<void(unsigned long long)> securityViewed;
    };

    explicit CVXWorkspaceModules(Hooks hooks);
    // Unregisters the interfaces it registered.
    ~CVXWorkspaceModules();

    CVXWorkspaceModules(const CVXWorkspaceModules&) = delete;
    CVXWorkspaceModules& operator=(const CVXWorkspaceModules&) = delete;

    // Registers the three interfaces in core::IVXPluginCenter.
    void Register();

private:
    std::shared_ptr<Hooks> m_hooks;
    bool m_registered = false;
};

} // namespace vx_ws
