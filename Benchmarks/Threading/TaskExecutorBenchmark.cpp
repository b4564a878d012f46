#include "VekAppCore/Threading/TaskExecutor.h"
#include "Support/Pair.h"
#include <QThreadPool>
#include <atomic>
#include <cstdint>

namespace vek::Threading
{
namespace
{
class VekPool
{
public:
    void Start(std::function<void()> function) { m_executor.ExecuteAsync(std::move(function)); }
    void Wait() { m_implementation->WaitForAll(); }

private:
    const std::shared_ptr<ITaskExecutorImpl> m_implementation = CreateDefaultTaskExecutorImpl();
    TaskExecutor m_executor{m_implementation};
};

class QtPool
{
public:
    void Start(std::function<void()> function) { m_pool.start(std::move(function)); }
    void Wait() { m_pool.waitForDone(); }

private:
    QThreadPool m_pool;
};

/// A round: 10'000 functions that only count are started, then waited for.
template <typename Pool>
void ExecuteEmpty(benchmark::State& state)
{
    constexpr int count = 10'000;
    Pool pool;
    std::atomic<std::int64_t> ran{0};
    for ([[maybe_unused]] auto _ : state)
    {
        for (int i = 0; i < count; ++i)
            pool.Start([&ran] { ran.fetch_add(1, std::memory_order_relaxed); });
        pool.Wait();
    }
    Benchmark::Check(state, ran == state.iterations() * count, "Not every function ran once");
}

const Benchmark::Pairs pairs{
    {"Executor/10000Empty", "QThreadPool", 1.5, ExecuteEmpty<VekPool>, ExecuteEmpty<QtPool>}};
} // namespace
} // namespace vek::Threading
