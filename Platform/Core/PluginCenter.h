#pragma once

// The plug-in centre: the host program registers implementations of module interfaces
// (main frame module, quote module, business module); anyone creates them by type. An
// interface type names itself with a static `InterfaceName()`.

#include "Platform/Core/CoreExport.h"

#include <functional>
#include <memory>
#include <string>

namespace core {

class VXCORE_EXPORT IVXPluginCenter
{
public:
    using Creator = std::function<std::shared_ptr<void>()>;

    static IVXPluginCenter& Instance();

    // Replaces an earlier registration under the same name.
    void RegisterCreator(const std::string& interfaceName, Creator creator);
    void UnRegister(const std::string& interfaceName);
    bool Has(const std::string& interfaceName) const;
    std::shared_ptr<void> CreateByName(const std::string& interfaceName) const;
    void ResetForTest();

    template <typename T>
    void Register(std::function<std::shared_ptr<T>()> creator)
    {
        RegisterCreator(T::InterfaceName(), [creator = std::move(creator)]() -> std::shared_ptr<void> {
            return creator();
        });
    }

    // Null when nothing is registered for T.
    template <typename T>
    static std::shared_ptr<T> CreateInterface()
    {
        return std::static_pointer_cast<T>(Instance().CreateByName(T::InterfaceName()));
    }

private:
    IVXPluginCenter();
    ~IVXPluginCenter();
    struct Impl;
    std::unique_ptr<Impl> d;
};

} // namespace core
