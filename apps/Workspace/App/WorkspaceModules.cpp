#include "apps/Workspace/App/WorkspaceModules.h"

#include "UIFrame/CardEvents.h"

#include "Platform/Core/PluginCenter.h"

namespace vx_ws {

namespace {

using HooksRef = std::weak_ptr<CVXWorkspaceModules::Hooks>;

class CMainFrameModule : public IMainFrameModuleUtil
{
public:
    explicit CMainFrameModule(HooksRef hooks) : m_hooks(std::move(hooks)) {}
    bool IsMainFrameExist() const override
    {
        const auto hooks = m_hooks.lock();
        return hooks && hooks->mainFrameExists && hooks->mainFrameExists();
    }
    void SwitchTabFrame(EnVXTabFrameKey key, const CVXVariantMapTree& jumpData) override
    {
        if (const auto hooks = m_hooks.lock(); hooks && hooks->switchTabFrame)
            hooks->switchTabFrame(key, jumpData);
    }
    // The main window has no collapsible side region.
    bool IsExpandedRegionHidden() const override { return true; }

private:
    HooksRef m_hooks;
};

class CBusinessModule : public IBaseBusinessModuleUtil
{
public:
    explicit CBusinessModule(HooksRef hooks) : m_hooks(std::move(hooks)) {}
    bool AddShortcut(const CVXVariantMapTree& params) override
    {
        const auto hooks = m_hooks.lock();
        return hooks && hooks->addShortcut && hooks->addShortcut(params);
    }

private:
    HooksRef m_hooks;
};

class CQuoteModule : public IQuoteModuleUtil
{
public:
    explicit CQuoteModule(HooksRef hooks) : m_hooks(std::move(hooks)) {}
    void OnCardEvent(QWidget*, const IVUIEventTypeBase* event) override
    {
        const auto* stock = dynamic_cast<const CardEventStockIDChanged*>(event);
        if (!stock || stock->u64StockID == 0)
            return;
        if (const auto hooks = m_hooks.lock(); hooks && hooks->securityViewed)
            hooks->securityViewed(stock->u64StockID);
    }

private:
    HooksRef m_hooks;
};

} // namespace

CVXWorkspaceModules::CVXWorkspaceModules(Hooks hooks) : m_hooks(std::make_shared<Hooks>(std::move(hooks))) {}

CVXWorkspaceModules::~CVXWorkspaceModules()
{
    if (!m_registered)
        return;
    auto& center = core::IVXPluginCenter::Instance();
    center.UnRegister(IMainFrameModuleUtil::InterfaceName());
    center.UnRegister(IBaseBusinessModuleUtil::InterfaceName());
    center.UnRegister(IQuoteModuleUtil::InterfaceName());
}

void CVXWorkspaceModules::Register()
{
    auto& center = core::IVXPluginCenter::Instance();
    const HooksRef hooks = m_hooks;
    center.Register<IMainFrameModuleUtil>([hooks]() { return std::make_shared<CMainFrameModule>(hooks); });
    center.Register<IBaseBusinessModuleUtil>([hooks]() { return std::make_shared<CBusinessModule>(hooks); });
    center.Register<IQuoteModuleUtil>([hooks]() { return std::make_shared<CQuoteModule>(hooks); });
    m_registered = true;
}

} // namespace vx_ws
