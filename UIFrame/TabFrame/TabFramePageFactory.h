#pragma once

// CVXTabFramePageFactory: the process-wide map from a tab frame key to the factory of that
// frame's page. Modules register one factory per key; a frame asks for its page by its key.

#include "UIFrame/TabFrame/TabFrameKey.h"
#include "UIFrame/UIFrameExport.h"

#include "Platform/StdUI/Factory.h"

#include <map>
#include <memory>

class CVXTabFramePageBase;

class UIFRAME_EXPORT CVXTabFramePageFactory
{
public:
    using PageFactory = vx_std_ui::TIFactory<CVXTabFramePageBase>;

    static CVXTabFramePageFactory& Instance();

    // Replaces an earlier factory of the key; a null factory removes it.
    void Register(EnVXTabFrameKey key, std::shared_ptr<PageFactory> factory);
    std::shared_ptr<PageFactory> GetFactory(EnVXTabFrameKey key) const;
    bool Has(EnVXTabFrameKey key) const;
    // A new page of the key's factory (owned by the caller), or null when none is registered.
    CVXTabFramePageBase* CreatePage(EnVXTabFrameKey key) const;

    void ResetForTest();

private:
    CVXTabFramePageFactory() = default;
    std::map<unsigned int, std::shared_ptr<PageFactory>> m_factories;
};
