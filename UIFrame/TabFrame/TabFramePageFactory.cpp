#include "UIFrame/TabFrame/TabFramePageFactory.h"

#include "UIFrame/TabFrame/TabFramePageBase.h"

CVXTabFramePageFactory& CVXTabFramePageFactory::Instance()
{
    static CVXTabFramePageFactory instance;
    return instance;
}

void CVXTabFramePageFactory::Register(EnVXTabFrameKey key, std::shared_ptr<PageFactory> factory)
{
    if (factory)
        m_factories[key] = std::move(factory);
    else
        m_factories.erase(key);
}

std::shared_ptr<CVXTabFramePageFactory::PageFactory>
CVXTabFramePageFactory::GetFactory(EnVXTabFrameKey key) const
{
    const auto it = m_factories.find(key);
    return it == m_factories.end() ? nullptr : it->second;
}

bool CVXTabFramePageFactory::Has(EnVXTabFrameKey key) const
{
    return m_factories.count(key) != 0;
}

CVXTabFramePageBase* CVXTabFramePageFactory::CreatePage(EnVXTabFrameKey key) const
{
    const std::shared_ptr<PageFactory> factory = GetFactory(key);
    return factory ? factory->create() : nullptr;
}

void CVXTabFramePageFactory::ResetForTest()
{
    m_factories.clear();
}
