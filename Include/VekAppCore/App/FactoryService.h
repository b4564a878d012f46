#pragma once
#include "VekAppCore/App/ServiceBase.h"
#include "VekAppCore/Export.h"
#include <concepts>
#include <functional>
#include <memory>
#include <typeindex>

namespace vek::App
{
/// Makes objects by the type of their interface, from factories that modules add. Main thread only.
class VEKAPPCORE_EXPORT IFactoryService : public IService<IFactoryService>
{
public:
    /// Makes a new object with every call.
    using Factory = std::function<std::unique_ptr<IObject>()>;

    ~IFactoryService() override;

    /// The first factory of an interface wins; false for a second or an empty one.
    virtual bool AddFactory(std::type_index key, Factory factory) = 0;

    /// False when there is none. To be called before the module of a factory is unloaded.
    virtual bool RemoveFactory(std::type_index key) = 0;

    /// A new object; null when no factory was added under @p key.
    virtual std::unique_ptr<IObject> CreateObject(std::type_index key) = 0;

    /// Adds a factory of Implementation, by its default constructor, under the type of Interface; false as
    /// AddFactory.
    template <std::derived_from<IObject> Interface, std::derived_from<Interface> Implementation>
    bool Add()
    {
        return AddFactory(typeid(Interface), [] {
            return std::unique_ptr<IObject>(static_cast<Interface*>(new Implementation()));
        });
    }

    /// A new object of what was added for Interface, the caller's; null when nothing was.
    template <std::derived_from<IObject> Interface>
    [[nodiscard]] std::unique_ptr<Interface> Create()
    {
        return std::unique_ptr<Interface>(static_cast<Interface*>(CreateObject(typeid(Interface)).release()));
    }
};

/// An empty one; CreateServiceManager adds one by itself.
[[nodiscard]] VEKAPPCORE_EXPORT std::unique_ptr<IFactoryService> CreateFactoryService();
} // namespace vek::App
