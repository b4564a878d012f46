#include "VekBase/RawPtr.h"
#include "Support/Pair.h"
#include <QObject>
#include <QPointer>
#include <algorithm>
#include <cstdint>
#include <memory>
#include <vector>

namespace vek
{
namespace
{
constexpr int count = 100;

/// An object of either kind.
template <typename Base>
class Point : public Base
{
public:
    explicit Point(int value) : m_value(value) {}
    [[nodiscard]] int Value() const { return m_value; }

private:
    int m_value;
};

/// A round: 100 pointers to different objects are tested and used; every tenth is null since its object died.
template <template <typename> typename Pointer, typename Base>
void TestAndUse(benchmark::State& state)
{
    std::vector<std::unique_ptr<Point<Base>>> objects;
    std::vector<Pointer<Point<Base>>> pointers;
    for (int i = 0; i < count; ++i)
        pointers.emplace_back(objects.emplace_back(std::make_unique<Point<Base>>(i)).get());
    for (std::size_t i = 0; i < objects.size(); i += 10)
        objects[i].reset();

    std::int64_t sum = 0;
    for ([[maybe_unused]] auto _ : state)
        for (auto& pointer : pointers)
        {
            benchmark::DoNotOptimize(pointer);
            if (pointer)
                sum += pointer->Value();
        }
    Benchmark::Check(state, sum == state.iterations() * (4950 - 450), "The sum is wrong");
}

const Benchmark::Pairs pairs{
    {"RawPtr/TestAndUse", "QPointer", 1.0, TestAndUse<RawPtr, SafeObject>, TestAndUse<QPointer, QObject>}};
} // namespace
} // namespace vek
