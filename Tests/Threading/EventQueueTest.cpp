#include "VekAppCore/Threading/EventQueue.h"
#include "Support/TestSupport.h"
#include "VekAppCore/Threading/VekQFuncEvent.h"
#include <QCoreApplication>
#include <gtest/gtest.h>
#include <thread>

namespace vek::Threading
{
using enum EEventToTreat;

static std::unique_ptr<EventQueue> g_queue;
static std::string g_trace;

static void Post(std::function<void()> function)
{
    g_queue->PostEvent(std::make_shared<FunctionEvent>(std::move(function)), std::source_location::current());
}

TEST(EventQueue, RunsItsEventsInOrder)
{
    const auto a = [] { g_trace += 'a'; };
    const auto nest = [] {
        g_queue->ProcessEvents(QueueOnly);
        g_trace += 'a';
    };
    // Null for the first event: none is posted. In the trace, 'b' is the event behind it, 'q' one of Qt's.
    using Row = std::tuple<const char*, EEventToTreat, void (*)(), const char*>;
    for (const auto& [fault, what, first, trace] :
         {Row{"no step on an empty queue", AllEvents, nullptr, "q"},
          Row{"step on an empty queue without being asked", QueueOnly, nullptr, ""},
          Row{"step before the event, or only at the end", AllEvents, a, "aqb"},
          Row{"step forgotten for one of its values", ExcludeUserInput, a, "aqb"},
          Row{"unknown value treated", static_cast<EEventToTreat>(7), a, "ab"},
          Row{"posted meanwhile, but left", QueueOnly, [] { Post([] { g_trace += 'c'; }); }, "bc"},
          Row{"nested drain does not go on with the next", QueueOnly, nest, "ba"},
          Row{"cleared event run", QueueOnly, [] { g_queue->Clear(); }, ""},
          Row{"destroyed queue used", AllEvents, [] { g_queue.reset(); }, "q"}})
    {
        g_queue = std::make_unique<EventQueue>();
        g_trace.clear();
        const auto held = std::make_shared<int>();
        if (first)
        {
            Post(first);
            Post([held] { g_trace += 'b'; });
        }
        VekQFuncEvent::PostEvent(qApp, [] { g_trace += 'q'; });
        g_queue->ProcessEvents(what);
        EXPECT_EQ(g_trace, trace) << fault;
        EXPECT_EQ(held.use_count(), 1) << fault;
        QCoreApplication::processEvents();
    }
}

TEST(EventQueue, KeepsTheOrderOfEachProducerAndLosesNothing)
{
    g_queue = std::make_unique<EventQueue>();
    int next[4] = {}; // of each producer
    int total = 0;
    std::vector<std::jthread> threads;
    for (int& mine : next)
        threads.emplace_back([&] {
            for (int i = 0; i < 5'000; ++i)
                Post([&, i] { total += mine++ == i ? 1 : 0; });
        });
    const auto isComplete = [&total] {
        g_queue->ProcessEvents(QueueOnly);
        return total == 20'000;
    };
    EXPECT_TRUE(TestSupport::WaitFor(isComplete));
}
} // namespace vek::Threading
