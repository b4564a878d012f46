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

struct DrainCase
{
    const char* fault;
    EEventToTreat what;
    void (*first)();   ///< Null: nothing is posted.
    const char* trace; ///< 'b' the event behind the first, 'q' one of Qt's.
};

TEST(EventQueue, RunsItsEventsInOrder)
{
    const auto a = [] { g_trace += 'a'; };
    const auto nest = [] {
        g_queue->ProcessEvents(QueueOnly);
        g_trace += 'a';
    };
    for (const DrainCase& row :
         {DrainCase{"no step on an empty queue", AllEvents, nullptr, "q"},
          DrainCase{"step on an empty queue without being asked", QueueOnly, nullptr, ""},
          DrainCase{"step before the event, or only at the end", AllEvents, a, "aqb"},
          DrainCase{"step forgotten for one of its values", ExcludeUserInput, a, "aqb"},
          DrainCase{"unknown value treated", static_cast<EEventToTreat>(7), a, "ab"},
          DrainCase{"posted meanwhile, but left", QueueOnly, [] { Post([] { g_trace += 'c'; }); }, "bc"},
          DrainCase{"nested drain does not go on with the next", QueueOnly, nest, "ba"},
          DrainCase{"cleared event run", QueueOnly, [] { g_queue->Clear(); }, ""},
          DrainCase{"destroyed queue used", AllEvents, [] { g_queue.reset(); }, "q"}})
    {
        g_queue = std::make_unique<EventQueue>();
        g_trace.clear();
        const auto held = std::make_shared<int>();
        if (row.first)
        {
            Post(row.first);
            Post([held] { g_trace += 'b'; });
        }
        VekQFuncEvent::PostEvent(qApp, [] { g_trace += 'q'; });
        g_queue->ProcessEvents(row.what);
        EXPECT_EQ(g_trace, row.trace) << row.fault;
        EXPECT_EQ(held.use_count(), 1) << row.fault;
        QCoreApplication::processEvents();
    }
}

TEST(EventQueue, KeepsWhatIsBehindAnEventThatThrows)
{
    g_queue = std::make_unique<EventQueue>();
    g_trace.clear();
    Post([] { throw 5; });
    Post([] { g_trace += 'b'; });
    EXPECT_THROW(g_queue->ProcessEvents(QueueOnly), int);
    EXPECT_EQ(g_trace, "");
    g_queue->ProcessEvents(QueueOnly);
    EXPECT_EQ(g_trace, "b");
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
