#include "Platform/Core/PluginCenter.h"

#include "Platform/Core/Log.h"

#include <map>
#include <mutex>

namespace core {

struct IVXPluginCenter::Impl
{
    mutable std::mutex mutex;
    std::map<std::string, Creator> creators;
};

IVXPluginCenter::IVXPluginCenter() : d(std::make_unique<Impl>()) {}

IVXPluginCenter::~IVXPluginCenter() = default;

IVXPluginCenter& IVXPluginCenter::Instance()
{
    // Never destroyed: modules may release interfaces during shutdown.
    static IVXPluginCenter* instance = new IVXPluginCenter;
    return *instance;
}

void IVXPluginCenter::RegisterCreator(const std::string& interfaceName, Creator creator)
{
    if (interfaceName.empty()) {
        VXLOG_ERROR("IVXPluginCenter::RegisterCreator: empty interface name");
        return;
    }
    if (!creator) {
        VXLOG_ERROR("IVXPluginCenter::RegisterCreator: empty creator for {}", interfaceName);
        return;
    }
    std::lock_guard<std::mutex> lock(d->mutex);
    d->creators[interfaceName] = std::move(creator);
}

void IVXPluginCenter::UnRegister(const std::string& interfaceName)
{
    std::lock_guard<std::mutex> lock(d->mutex);
    d->creators.erase(interfaceName);
}

bool IVXPluginCenter::Has(const std::string& interfaceName) const
{
    std::lock_guard<std::mutex> lock(d->mutex);
    return d->creators.count(interfaceName) != 0;
}

std::shared_ptr<void> IVXPluginCenter::CreateByName(const std::string& interfaceName) const
{
    Creator creator;
    {
        std::lock_guard<std::mutex> lock(d->mutex);
        auto it = d->creators.find(interfaceName);
        if (it != d->creators.end())
            creator = it->second;
    }
    if (!creator) {
        VXLOG_WARN("IVXPluginCenter::CreateByName: nothing registered for {}", interfaceName);
        return nullptr;
    }
    // Called without the lock: a creator may ask the centre for the interfaces it needs.
    return creator();
}

void IVXPluginCenter::ResetForTest()
{
    std::lock_guard<std::mutex> lock(d->mutex);
    d->creators.clear();
}

} // namespace core
