#include "Support/Pair.h"
#include "VekAppCore/App/ApplicationFrame.h"
#include "VekAppCore/Threading/AsyncTask.h"
#include "VekAppCore/Threading/StepProgression.h"
#include <QCoreApplication>
#include <QEventLoop>
#include <QFutureWatcher>
#include <QThreadPool>
#include <QtConcurrentRun>
#include <chrono>
#include <thread>

namespace vek::Threading
{
namespace
{
using namespace std::chrono_literals;
using Benchmark::Check;

// Three ways to run something on a worker and to go on with its result on the main thread.

class VekTasks
{
public:
    template <typename Work, typename Then>
    void Run(Work work, Then then)
    {
        LaunchTask(m_frame.GetTaskExecutor(), m_title, std::move(work), std::move(then));
    }

private:
    App::ApplicationFrame m_frame{App::AppConfiguration()};
    const TrString m_title = TrString::NoTranslate(QStringLiteral("Task"));
};

class QtConcurrentTasks
{
public:
    template <typename Work, typename Then>
    void Run(Work work, Then then)
    {
        auto* const watcher = new QFutureWatcher<int>;
        QObject::connect(watcher, &QFutureWatcherBase::finished, watcher, [watcher, then] {
            then(watcher->result());
            watcher->deleteLater();
        });
        watcher->setFuture(QtConcurrent::run(work));
    }
};

class ThreadPoolTasks
{
public:
    template <typename Work, typename Then>
    void Run(Work work, Then then)
    {
        QThreadPool::globalInstance()->start([work, then] {
            QMetaObject::invokeMethod(
                qApp, [then, result = work()] { then(result); }, Qt::QueuedConnection);
        });
    }
};

/// A round: @p count tasks are launched; an event loop runs until the last of them is finished.
template <typename Tasks, int count>
void Launch(benchmark::State& state)
{
    Tasks tasks;
    QEventLoop loop;
    std::int64_t sum = 0;
    std::int64_t done = 0;
    for ([[maybe_unused]] auto _ : state)
    {
        for (int i = 0; i < count; ++i)
            tasks.Run([i] { return i; },
                      [&](int result) {
                          sum += result;
                          if (++done % count == 0)
                              loop.quit();
                      });
        loop.exec();
    }
    const std::int64_t rounds = state.iterations();
    Check(state, done == rounds * count && sum == rounds * count * (count - 1) / 2,
          "Not every task ran once");
}

class CountingProgression final : public IProgression
{
public:
    void SetProgression(int value) override { last = value; }
    void SetTitle(const TrString&) override {}
    void SetCanceled(bool) override {}
    [[nodiscard]] bool IsCanceled() const override { return isCanceled; }

    std::atomic<int> last = 0;
    std::atomic<bool> isCanceled = false;
};

class VekSteps
{
public:
    explicit VekSteps(std::uint64_t count) : m_steps(m_progression, count) {}
    void Advance() { m_steps.Advance(); }
    [[nodiscard]] bool IsComplete() const { return m_progression.last == 100; }

private:
    CountingProgression m_progression;
    StepProgression m_steps;
};

class AtomicSteps
{
public:
    explicit AtomicSteps(std::uint64_t count) : m_count(count) {}
    void Advance() { m_done.fetch_add(1, std::memory_order_relaxed); }
    [[nodiscard]] bool IsComplete() const { return m_done == m_count; }

private:
    const std::uint64_t m_count;
    std::atomic<std::uint64_t> m_done = 0;
};

/// A round: two threads tell 500'000 steps each.
template <typename Steps>
void Progress(benchmark::State& state)
{
    constexpr int count = 500'000;
    bool isComplete = true;
    for ([[maybe_unused]] auto _ : state)
    {
        Steps steps(2 * count);
        const auto advance = [&steps] {
            for (int i = 0; i < count; ++i)
                steps.Advance();
        };
        {
            const std::jthread other(advance);
            advance();
        }
        isComplete = isComplete && steps.IsComplete();
    }
    Check(state, isComplete, "Not every step was counted");
}

/// A round: the time from the end of a work of 5 ms until the main thread, which waits for it, goes on.
template <typename Wait>
void TimeLost(benchmark::State& state, const Wait& wait)
{
    using Clock = std::chrono::steady_clock;
    for ([[maybe_unused]] auto _ : state)
    {
        Clock::time_point end;
        wait([&end] {
            std::this_thread::sleep_for(5ms);
            end = Clock::now();
        });
        state.SetIterationTime(std::chrono::duration<double>(Clock::now() - end).count());
    }
}

void VekWait(benchmark::State& state)
{
    App::ApplicationFrame frame{App::AppConfiguration()};
    TimeLost(state, [&frame](auto work) { LaunchTask(frame.GetTaskExecutor(), TrString(), work).Wait(); });
}

void WatcherWait(benchmark::State& state)
{
    TimeLost(state, [](auto work) {
        QEventLoop loop;
        QFutureWatcher<void> watcher;
        QObject::connect(&watcher, &QFutureWatcherBase::finished, &loop, &QEventLoop::quit);
        watcher.setFuture(QtConcurrent::run(work));
        loop.exec();
    });
}

const char* const concurrent = "QtConcurrent::run, watcher";

const Benchmark::Pairs pairs{
    {"Task/10000Empty", concurrent, 3.0, Launch<VekTasks, 10000>, Launch<QtConcurrentTasks, 10000>},
    {"Task/10000Empty", "QThreadPool, invokeMethod", 0.4, Launch<VekTasks, 10000>,
     Launch<ThreadPoolTasks, 10000>},
    {"Task/OneToMain", concurrent, 2.0, Launch<VekTasks, 1>, Launch<QtConcurrentTasks, 1>},
    {"Task/Progress", "atomic counter", 0.5, Progress<VekSteps>, Progress<AtomicSteps>},
    {"Task/WaitUntil", concurrent, {}, VekWait, WatcherWait, Benchmark::ETiming::Own}};
} // namespace
} // namespace vek::Threading
