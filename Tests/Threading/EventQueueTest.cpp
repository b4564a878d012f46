#include "VekAppCore/Threading/EventQueue.h"
#include "VekAppCore/Threading/VekQFuncEvent.h"
#include <QCoreApplication>
#include <gmock/gmock.h>
#include <memory>
#include <stdexcept>
#include <thread>
#include <vector>

namespace vek::Threading
{
namespace
{
void Post(IEventHolder& holder, std::function<void()> function)
{
    EXPECT_EQ(holder.PostEvent(std::make_shared<FunctionEvent>(std::move(function)),
                               std::source_location::current()),
              0);
}
} // namespace

TEST(EventQueue, RunsWhatARunningEventPostsInTheSameDrainBehindTheRest)
{
    EventQueue queue;
    std::vector<int> order;
    Post(queue, [&] {
        order.push_back(1);
        Post(queue, [&] { order.push_back(3); });
    });
    Post(queue, [&] { order.push_back(2); });
    queue.ProcessEvents(EEventToTreat::QueueOnly);
    EXPECT_THAT(order, testing::ElementsAre(1, 2, 3));
}

TEST(EventQueue, ANestedDrainGoesOnWithTheNextEvent)
{
    EventQueue queue;
    std::vector<int> order;
    Post(queue, [&] {
        queue.ProcessEvents(EEventToTreat::QueueOnly);
        order.push_back(1);
    });
    Post(queue, [&] { order.push_back(2); });
    queue.ProcessEvents(EEventToTreat::QueueOnly);
    EXPECT_THAT(order, testing::ElementsAre(2, 1));
}

TEST(EventQueue, KeepsTheEventsBehindOneThatThrows)
{
    EventQueue queue;
    bool hasRun = false;
    Post(queue, [] { throw std::runtime_error("first"); });
    Post(queue, [&hasRun] { hasRun = true; });
    EXPECT_THROW(queue.ProcessEvents(EEventToTreat::QueueOnly), std::runtime_error);
    EXPECT_FALSE(hasRun);
    queue.ProcessEvents(EEventToTreat::QueueOnly);
    EXPECT_TRUE(hasRun);
}

TEST(EventQueue, DropsPendingEventsUnrunWhenClearedOrDestroyed)
{
    bool hasRun = false;
    const auto kept = std::make_shared<int>();
    {
        EventQueue queue;
        Post(queue, [&hasRun, kept] { hasRun = true; });
        queue.Clear();
        queue.ProcessEvents(EEventToTreat::QueueOnly);
        EXPECT_EQ(kept.use_count(), 1);
        Post(queue, [&hasRun, kept] { hasRun = true; });
    }
    EXPECT_FALSE(hasRun);
    EXPECT_EQ(kept.use_count(), 1);
}

TEST(EventQueue, AnEventMayDestroyItsQueue)
{
    auto queue = std::make_unique<EventQueue>();
    bool hasRun = false;
    Post(*queue, [&queue] { queue.reset(); });
    Post(*queue, [&hasRun] { hasRun = true; });
    queue->ProcessEvents(EEventToTreat::AllEvents);
    EXPECT_FALSE(hasRun);
}

struct QtStepCase
{
    const char* fault;
    EEventToTreat what;
    int posted;
    std::vector<const char*> order; ///< "event" for a queued one, "qt" for one of Qt's.
};
void PrintTo(const QtStepCase& row, std::ostream* out) { *out << row.fault; }
class EventQueueQtStep : public testing::TestWithParam<QtStepCase>
{};

TEST_P(EventQueueQtStep, ComesAfterEachEventOrOnceForAnEmptyQueue)
{
    QCoreApplication::processEvents();
    EventQueue queue;
    std::vector<const char*> order;
    for (int i = 0; i < GetParam().posted; ++i)
        Post(queue, [&order] { order.push_back("event"); });
    VekQFuncEvent::PostEvent(qApp, [&order] { order.push_back("qt"); });
    queue.ProcessEvents(GetParam().what);
    EXPECT_EQ(order, GetParam().order);
    QCoreApplication::processEvents();
}

INSTANTIATE_TEST_SUITE_P(
    Rows, EventQueueQtStep,
    testing::Values(QtStepCase{"no step on an empty queue", EEventToTreat::AllEvents, 0, {"qt"}},
                    QtStepCase{"step before the event", EEventToTreat::AllEvents, 1, {"event", "qt"}},
                    QtStepCase{
                        "step only at the end", EEventToTreat::ExcludeUserInput, 2, {"event", "qt", "event"}},
                    QtStepCase{"step without being asked", EEventToTreat::QueueOnly, 1, {"event"}},
                    QtStepCase{"step on an empty queue without being asked", EEventToTreat::QueueOnly, 0, {}},
                    QtStepCase{"unknown value treated", static_cast<EEventToTreat>(7), 0, {}}));

TEST(EventQueue, KeepsTheOrderOfEachProducerAndLosesNothing)
{
    constexpr int producers = 4;
    constexpr int each = 5'000;
    EventQueue queue;
    std::vector<std::vector<int>> received(producers);
    std::vector<std::thread> threads;
    for (int producer = 0; producer < producers; ++producer)
        threads.emplace_back([&queue, &received, producer] {
            for (int i = 0; i < each; ++i)
                Post(queue, [&to = received[static_cast<std::size_t>(producer)], i] { to.push_back(i); });
        });
    const auto isComplete = [&received] {
        return std::ranges::all_of(received, [](const auto& events) { return events.size() == each; });
    };
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (!isComplete() && std::chrono::steady_clock::now() < deadline)
        queue.ProcessEvents(EEventToTreat::QueueOnly);
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_TRUE(isComplete());
    for (const auto& events : received)
        EXPECT_TRUE(std::ranges::is_sorted(events));
}
} // namespace vek::Threading
