#pragma once
#include "VekAppCore/Export.h"
#include "VekBase/SafeObject.h"

namespace vek::App
{
/// Base of every service: a long-lived facility, one object per interface type, owned by the service manager.
class VEKAPPCORE_EXPORT IServiceBase : public IObject
{
public:
    ~IServiceBase() override;

    /// Called by IServiceManager::NotifyServices: once all services exist, and again when a plug-in that is
    /// loaded later has brought more.
    virtual void OnNotify();
};

/// Base of a concrete service, or of its interface. A service that has a member PostRegistration() gets it
/// called once it has been registered by its declaration.
template <typename T>
class IService : public IServiceBase
{};

/// Base of a service that takes extensions of type TExtension from other modules.
template <typename TService, typename TExtension>
class IServiceExtensible : public IService<TService>
{};

/// Names an interface and its implementation at compile time; carries nothing.
template <typename Interface, typename Implementation>
struct InterfaceRTTITag
{};
} // namespace vek::App
