#pragma once
#include "VekAppCore/App/ServiceBase.h"
#include "VekAppCore/Export.h"
#include "VekBase/RawPtr.h"
#include <concepts>
#include <memory>
#include <source_location>
#include <typeindex>

namespace vek::App
{
/// An interface whose objects are neither copied nor moved.
class INonCopyable
{
protected:
    INonCopyable() = default;
    INonCopyable(const INonCopyable&) = delete;
    INonCopyable& operator=(const INonCopyable&) = delete;
    ~INonCopyable() = default;
};

/// Owns the services, each under the type of its interface. Main thread only. No service may depend on being
/// notified or destroyed before or after another one.
class VEKAPPCORE_EXPORT IServiceManager : public SafeObject, public INonCopyable
{
public:
    ~IServiceManager() override;

    /// Destroys the service under @p key; false when there is none.
    virtual bool RemoveService(std::type_index key) = 0;

    /// Calls IServiceBase::OnNotify on every service.
    virtual void NotifyServices() = 0;

    /// Destroys them in no particular order.
    virtual void RemoveAllServices() = 0;

    /// Takes @p service over. The first registration wins: where there is a service already, the new one is
    /// destroyed.
    /// @return true when it was added; false for a null or a second one.
    virtual bool AddService(std::type_index key, std::unique_ptr<IServiceBase> service) = 0;

    /// The service under @p key, which stays the manager's; null when there is none.
    virtual IServiceBase* GetService(std::type_index key) = 0;

    /// The service registered under the interface T; null when there is none.
    template <std::derived_from<IServiceBase> T>
    [[nodiscard]] RawPtr<T> Get()
    {
        return static_cast<T*>(GetService(typeid(T)));
    }

    /// The service registered under the interface T.
    /// @throws Exception::InternalAppException  there is none; the message names T.
    template <std::derived_from<IServiceBase> T>
    [[nodiscard]] T& Require(const std::source_location& where = std::source_location::current())
    {
        IServiceBase* const service = GetService(typeid(T));
        if (!service)
            _ThrowMissing(typeid(T), where);
        return static_cast<T&>(*service);
    }

private:
    [[noreturn]] static void _ThrowMissing(std::type_index key, const std::source_location& where);
};

/// Makes a manager and makes it the current one; an earlier one keeps its services but is not reached any
/// more.
/// @param createFactoryService  adds IFactoryService at once.
[[nodiscard]] VEKAPPCORE_EXPORT std::unique_ptr<IServiceManager>
CreateServiceManager(bool createFactoryService);

/// The current manager. Main thread only.
/// @throws Exception::InternalAppException  "No application instantiated": there is none, or it is gone.
[[nodiscard]] VEKAPPCORE_EXPORT IServiceManager& Services();

/// The current manager, or null; never throws.
[[nodiscard]] VEKAPPCORE_EXPORT RawPtr<IServiceManager> ServicesPtr() noexcept;
} // namespace vek::App
