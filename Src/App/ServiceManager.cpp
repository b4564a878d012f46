#include "VekAppCore/App/ServiceManager.h"
#include "VekAppCore/App/Exception.h"
#include "VekAppCore/App/FactoryService.h"
#include "VekBase/TypeName.h"
#include <optional>
#include <unordered_map>
#include <vector>

namespace vek::App
{
namespace
{
class ServiceManager final : public IServiceManager
{
public:
    ~ServiceManager() override;

    bool RemoveService(std::type_index key) override;
    void NotifyServices() override;
    void RemoveAllServices() override;
    bool AddService(std::type_index key, std::unique_ptr<IServiceBase> service) override;
    IServiceBase* GetService(std::type_index key) override;

private:
    std::unordered_map<std::type_index, std::unique_ptr<IServiceBase>> m_services;
    /// The same by the address of the type's name, which is quick to hash. A module may have another address
    /// for the name than the one that registered the service: what is not found here is looked up by its
    /// name.
    std::unordered_map<const char*, IServiceBase*> m_servicesByAddress;
};

std::optional<RawPtr<ServiceManager>> g_current; // empty before the first manager and after the last

ServiceManager::~ServiceManager()
{
    if (g_current && g_current->Get() == this)
        g_current.reset();
    RemoveAllServices();
}

bool ServiceManager::RemoveService(std::type_index key)
{
    // Out of the map first: the service may use the manager while it dies.
    const auto node = m_services.extract(key);
    if (!node.empty())
        m_servicesByAddress.erase(node.key().name());
    return !node.empty() && node.mapped();
}

void ServiceManager::NotifyServices()
{
    std::vector<RawPtr<IServiceBase>> services; // a service may add or remove others
    for (const auto& [key, service] : m_services)
        services.emplace_back(service.get());
    for (const RawPtr<IServiceBase>& service : services)
        if (service)
            service->OnNotify();
}

void ServiceManager::RemoveAllServices()
{
    while (!m_services.empty())
        RemoveService(m_services.begin()->first);
}

bool ServiceManager::AddService(std::type_index key, std::unique_ptr<IServiceBase> service)
{
    if (!service)
        return false;
    const auto place = m_services.try_emplace(key).first;
    if (place->second)
    {
        service.reset();
        return false;
    }
    m_servicesByAddress[place->first.name()] = service.get();
    place->second = std::move(service);
    return true;
}

IServiceBase* ServiceManager::GetService(std::type_index key)
{
    if (const auto quick = m_servicesByAddress.find(key.name()); quick != m_servicesByAddress.end())
        return quick->second;
    const auto found = m_services.find(key);
    return found == m_services.end() ? nullptr : found->second.get();
}
} // namespace

IServiceManager::~IServiceManager() = default;

void IServiceManager::_ThrowMissing(std::type_index key, const std::source_location& where)
{
    throw Exception::InternalAppException(
        QStringLiteral("Service not available: %1").arg(QString::fromStdString(GetTypeName(key))), where);
}

std::unique_ptr<IServiceManager> CreateServiceManager(bool createFactoryService)
{
    auto manager = std::make_unique<ServiceManager>();
    g_current = RawPtr<ServiceManager>(manager.get());
    if (createFactoryService)
        manager->AddService(typeid(IFactoryService), CreateFactoryService());
    return manager;
}

IServiceManager& Services()
{
    if (!g_current)
        throw Exception::InternalAppException(QStringLiteral("No application instantiated"));
    return **g_current;
}

RawPtr<IServiceManager> ServicesPtr() noexcept { return g_current ? g_current->Get() : nullptr; }
} // namespace vek::App
