#include "Support/Pair.h"
#include "VekAppCore/App/Application.h"
#include "VekAppCore/App/ApplicationFrame.h"
#include <QCoreApplication>
#include <QEventLoop>
#include <atomic>
#include <cstdint>
#include <functional>
#include <semaphore>
#include <stop_token>
#include <thread>

namespace vek::App
{
namespace
{
using Benchmark::Check;

struct VekPoster
{
    template <typename Function>
    static void Post(Function function)
    {
        PostEvent(function);
    }
};

struct QtPoster
{
    template <typename Function>
    static void Post(Function function)
    {
        QMetaObject::invokeMethod(qApp, function, Qt::QueuedConnection);
    }
};

/// A thread that runs a function once for each Start. It spins in between: waking it would take longer than a
/// burst.
class Worker
{
public:
    explicit Worker(std::function<void()> function) : m_function(std::move(function)) {}

    void Start() { m_started.fetch_add(1, std::memory_order_release); }

private:
    void _Run(const std::stop_token& stop) const
    {
        for (std::uint64_t done = 0; !stop.stop_requested();)
        {
            if (m_started.load(std::memory_order_acquire) == done)
            {
                std::this_thread::yield();
                continue;
            }
            m_function();
            ++done;
        }
    }

    const std::function<void()> m_function;
    std::atomic<std::uint64_t> m_started{0};
    const std::jthread m_thread{[this](const std::stop_token& stop) { _Run(stop); }};
};

/// What the posted functions of one measurement share; the main thread's.
struct Progress
{
    QEventLoop loop;
    std::int64_t ran = 0;
    bool isInOrder = true;

    void Count(int index, int count)
    {
        isInOrder = isInOrder && ran % count == index;
        if (++ran % count == 0)
            loop.quit();
    }
};

/// A round starts the worker and runs an event loop until the last of its @p count functions quits it.
void MeasureRounds(benchmark::State& state, Progress& progress, Worker& worker, int count)
{
    for ([[maybe_unused]] auto _ : state)
    {
        worker.Start();
        progress.loop.exec();
    }
    Check(state, progress.ran == state.iterations() * count, "Not every function ran once");
    Check(state, progress.isInOrder, "The functions ran out of order");
}

/// A round: a worker posts @p count functions, which the main thread runs.
template <typename Poster, int count>
void Burst(benchmark::State& state)
{
    const ApplicationFrame frame{AppConfiguration()};
    Progress progress;
    Worker worker([&progress] {
        for (int i = 0; i < count; ++i)
            Poster::Post([&progress, i] { progress.Count(i, count); });
    });
    MeasureRounds(state, progress, worker, count);
}

/// A round: 20 times a worker posts a function and waits until the main thread has run it.
template <typename Poster>
void RoundTrip(benchmark::State& state)
{
    constexpr int count = 20;
    const ApplicationFrame frame{AppConfiguration()};
    Progress progress;
    std::binary_semaphore hasRun(0);
    Worker worker([&] {
        for (int i = 0; i < count; ++i)
        {
            Poster::Post([&, i] {
                progress.Count(i, count);
                hasRun.release();
            });
            hasRun.acquire();
        }
    });
    MeasureRounds(state, progress, worker, count);
}

const char* const peer = "QMetaObject::invokeMethod";

const Benchmark::Pairs pairs{
    {"PostEvent/Burst100", peer, 1.0, Burst<VekPoster, 100>, Burst<QtPoster, 100>},
    {"PostEvent/Burst10000", peer, 1.0, Burst<VekPoster, 10000>, Burst<QtPoster, 10000>},
    {"PostEvent/RoundTrip", peer, 0.95, RoundTrip<VekPoster>, RoundTrip<QtPoster>}};
} // namespace
} // namespace vek::App
