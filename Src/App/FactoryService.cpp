#include "VekAppCore/App/FactoryService.h"
#include <unordered_map>

namespace vek::App
{
namespace
{
class FactoryService final : public IFactoryService
{
public:
    bool AddFactory(std::type_index key, Factory factory) override
    {
        return factory && m_factories.try_emplace(key, std::move(factory)).second;
    }

    bool RemoveFactory(std::type_index key) override { return m_factories.erase(key) != 0; }

    std::unique_ptr<IObject> CreateObject(std::type_index key) override
    {
        const auto found = m_factories.find(key);
        return found == m_factories.end() ? nullptr : found->second();
    }

private:
    std::unordered_map<std::type_index, Factory> m_factories;
};
} // namespace

IFactoryService::~IFactoryService() = default;

std::unique_ptr<IFactoryService> CreateFactoryService() { return std::make_unique<FactoryService>(); }
} // namespace vek::App
