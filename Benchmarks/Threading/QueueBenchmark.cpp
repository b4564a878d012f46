#include "Support/Pair.h"
#include "VekAppCore/Threading/EventQueue.h"
#include <algorithm>
#include <concurrentqueue/concurrentqueue.h>
#include <cstddef>
#include <deque>
#include <memory>
#include <mutex>
#include <oneapi/tbb/concurrent_queue.h>
#include <source_location>
#include <thread>
#include <vector>

namespace vek::Threading
{
namespace
{
using Benchmark::Check;

struct Item
{
    std::shared_ptr<IEvent> event;
    std::source_location where;
};

// Four queues with the same two members.

class VekQueue
{
public:
    void Post(const std::shared_ptr<IEvent>& event, const std::source_location& where)
    {
        m_queue.PostEvent(event, where);
    }
    void ProcessAll() { m_queue.ProcessEvents(EEventToTreat::QueueOnly); }

private:
    EventQueue m_queue;
};

class TbbQueue
{
public:
    void Post(const std::shared_ptr<IEvent>& event, const std::source_location& where)
    {
        m_queue.emplace(event, where);
    }
    void ProcessAll()
    {
        for (Item item; m_queue.try_pop(item);)
            item.event->Process();
    }

private:
    tbb::concurrent_queue<Item> m_queue;
};

class MoodycamelQueue
{
public:
    void Post(const std::shared_ptr<IEvent>& event, const std::source_location& where)
    {
        m_queue.enqueue({event, where});
    }
    void ProcessAll()
    {
        for (Item item; m_queue.try_dequeue(item);)
            item.event->Process();
    }

private:
    moodycamel::ConcurrentQueue<Item> m_queue;
};

class LockedQueue
{
public:
    void Post(const std::shared_ptr<IEvent>& event, const std::source_location& where)
    {
        const std::lock_guard lock(m_mutex);
        m_queue.push_back({event, where});
    }
    void ProcessAll()
    {
        for (Item item; _TryPop(item);)
            item.event->Process();
    }

private:
    bool _TryPop(Item& item)
    {
        const std::lock_guard lock(m_mutex);
        if (m_queue.empty())
            return false;
        item = std::move(m_queue.front());
        m_queue.pop_front();
        return true;
    }

    std::mutex m_mutex;
    std::deque<Item> m_queue;
};

class CountingEvent final : public IEvent
{
public:
    explicit CountingEvent(std::size_t& processed) : m_processed(processed) {}
    void Process() override { ++m_processed; }

private:
    std::size_t& m_processed;
};

// One event an entry: a single shared one would measure the fight for its reference count.
std::vector<std::shared_ptr<IEvent>> MakeEvents(std::size_t count, std::size_t& processed)
{
    std::vector<std::shared_ptr<IEvent>> events(count);
    std::ranges::generate(events, [&] { return std::make_shared<CountingEvent>(processed); });
    return events;
}

void CheckAllProcessed(benchmark::State& state, std::size_t processed, std::size_t eventsPerRound)
{
    Check(state, processed == static_cast<std::size_t>(state.iterations()) * eventsPerRound,
          "Not every event was processed once");
}

/// A round: 100 events are posted, then processed, all on this thread.
template <typename Queue>
void PushPop(benchmark::State& state)
{
    Queue queue;
    std::size_t processed = 0;
    const auto events = MakeEvents(100, processed);
    for ([[maybe_unused]] auto _ : state)
    {
        for (const std::shared_ptr<IEvent>& event : events)
            queue.Post(event, std::source_location::current());
        queue.ProcessAll();
    }
    CheckAllProcessed(state, processed, events.size());
}

/// A round: the producers, each on a thread of its own, post 20'000 events altogether, which this thread
/// processes.
template <typename Queue, std::size_t producers>
void Produce(benchmark::State& state)
{
    constexpr std::size_t count = 20'000 / producers;
    Queue queue;
    std::size_t processed = 0;
    const auto events = MakeEvents(count * producers, processed);
    for ([[maybe_unused]] auto _ : state)
    {
        std::vector<std::jthread> threads;
        for (std::size_t producer = 0; producer < producers; ++producer)
            threads.emplace_back(
                [&queue, first = events.begin() + static_cast<std::ptrdiff_t>(producer * count)] {
                    std::for_each_n(first, count, [&queue](const auto& event) {
                        queue.Post(event, std::source_location::current());
                    });
                });
        for (const std::size_t end = processed + events.size(); processed != end;)
        {
            queue.ProcessAll();
            std::this_thread::yield(); // a producer may be waiting for this core
        }
    }
    CheckAllProcessed(state, processed, events.size());
}

constexpr double wanted = 0.95;
const char* const tbbName = "oneTBB concurrent_queue";
const char* const lockedName = "mutex and deque";
const char* const moodycamelName = "moodycamel ConcurrentQueue";

const Benchmark::Pairs pairs{
    {"Queue/PushPop/1Thread", tbbName, wanted, PushPop<VekQueue>, PushPop<TbbQueue>},
    {"Queue/PushPop/1Thread", lockedName, {}, PushPop<VekQueue>, PushPop<LockedQueue>},
    {"Queue/PushPop/1Thread", moodycamelName, {}, PushPop<VekQueue>, PushPop<MoodycamelQueue>},
    {"Queue/1Producer", tbbName, wanted, Produce<VekQueue, 1>, Produce<TbbQueue, 1>},
    {"Queue/1Producer", lockedName, {}, Produce<VekQueue, 1>, Produce<LockedQueue, 1>},
    {"Queue/1Producer", moodycamelName, {}, Produce<VekQueue, 1>, Produce<MoodycamelQueue, 1>},
    {"Queue/2Producers", tbbName, wanted, Produce<VekQueue, 2>, Produce<TbbQueue, 2>},
    {"Queue/2Producers", lockedName, {}, Produce<VekQueue, 2>, Produce<LockedQueue, 2>},
    {"Queue/2Producers", moodycamelName, {}, Produce<VekQueue, 2>, Produce<MoodycamelQueue, 2>}};
} // namespace
} // namespace vek::Threading
