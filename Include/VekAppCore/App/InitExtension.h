#pragma once
#include "VekAppCore/Export.h"
#include "VekBase/PluginMgr.h"
#include <functional>

namespace vek::App
{
/// A plug-in of an application. What it offers it declares by static initialisers of its module
/// (VEK_DECLARE_SERVICE, for instance); its entry point is VEK_PLUGIN.
class VEKAPPCORE_EXPORT IAppPlugin : public IO::IPlugin
{
public:
    ~IAppPlugin() override;

    /// Called once on the main thread, right after the module was loaded. What it throws rejects the plug-in.
    virtual void Initialize();
};

/// Hands the plug-ins that are IAppPlugin to a function.
class VEKAPPCORE_EXPORT GenericInitExtension : public IO::IInitExtension
{
public:
    /// Called on the main thread, right after the module was loaded; what it throws rejects the plug-in.
    using Callback = std::function<void(IO::PluginOwner&, IAppPlugin&)>;

    /// @param priority  lower ones are applied first.
    GenericInitExtension(Callback callback, int priority);
    ~GenericInitExtension() override;
    [[nodiscard]] int GetPriority() const override;
    /// @return 1 when the plug-in is no IAppPlugin, else 0.
    int Apply(IO::PluginOwner& owner) override;

private:
    Callback m_callback;
    int m_priority;
};

/// Makes the plug-in manager initialise application plug-ins, with priority 900. The library calls it itself,
/// once.
VEKAPPCORE_EXPORT int AddAppInitExtension();
} // namespace vek::App
