#include "VekAppCore/App/ServiceManager.h"
#include "Support/Pair.h"
#include <cstddef>
#include <cstdint>
#include <memory>
#include <typeindex>
#include <unordered_map>
#include <utility>

namespace vek::App
{
namespace
{
constexpr std::size_t count = 12;

template <std::size_t index>
class INumber : public IService<INumber<index>>
{
public:
    [[nodiscard]] virtual int Value() const = 0;
};

template <std::size_t index>
class Number final : public INumber<index>
{
public:
    [[nodiscard]] int Value() const override { return static_cast<int>(index) + 1; }
};

class VekServices
{
public:
    void Add(std::type_index key, std::unique_ptr<IServiceBase> service)
    {
        m_manager->AddService(key, std::move(service));
    }
    template <typename T>
    static int GetValue()
    {
        return Services().Get<T>()->Value();
    }

private:
    std::unique_ptr<IServiceManager> m_manager = CreateServiceManager(false);
};

class MapServices
{
public:
    void Add(std::type_index key, std::unique_ptr<IServiceBase> service)
    {
        m_services.emplace(key, std::move(service));
    }
    template <typename T>
    int GetValue() const
    {
        return static_cast<T*>(m_services.find(typeid(T))->second.get())->Value();
    }

private:
    std::unordered_map<std::type_index, std::unique_ptr<IServiceBase>> m_services;
};

/// A round: each of 12 services is looked up and called.
template <typename AnyServices, std::size_t... indices>
void GetEach(benchmark::State& state, std::index_sequence<indices...>)
{
    AnyServices services;
    (services.Add(typeid(INumber<indices>), std::make_unique<Number<indices>>()), ...);
    std::int64_t sum = 0;
    for ([[maybe_unused]] auto _ : state)
    {
        benchmark::DoNotOptimize(services);
        sum += (services.template GetValue<INumber<indices>>() + ...);
    }
    Benchmark::Check(state, sum == state.iterations() * 78, "The sum is wrong");
}

template <typename AnyServices>
void Get(benchmark::State& state)
{
    GetEach<AnyServices>(state, std::make_index_sequence<count>());
}

const Benchmark::Pairs pairs{{"Services/Get", "std::unordered_map", 0.9, Get<VekServices>, Get<MapServices>}};
} // namespace
} // namespace vek::App
