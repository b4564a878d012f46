#include "VekBase/TBBHelper.h"
#include "VekBase/Exception.h"
#include <gtest/gtest.h>
#include <oneapi/tbb/global_control.h>
#include <oneapi/tbb/info.h>
#include <oneapi/tbb/task.h>
#include <oneapi/tbb/task_arena.h>
#include <oneapi/tbb/task_group.h>
#include <thread>

namespace vek::Multithread::TBBHelper
{
namespace
{
/// For workers: Qt would keep data of its own for each of them.
template <typename Condition>
bool SpinUntil(Condition condition)
{
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (!condition())
    {
        if (std::chrono::steady_clock::now() > deadline)
            return false;
        std::this_thread::yield();
    }
    return true;
}

// The thread sanitizer cannot see that the pool hands over a task, so this says it again.
std::atomic<int> g_handOver = 0;
template <typename Function>
void Start(tbb::task_group& group, const Function& function)
{
    tbb::task_handle task = group.defer([function] {
        ++g_handOver;
        function();
    });
    ++g_handOver;
    group.run(std::move(task));
}

TEST(StandaloneTaskGroup, RunDoesNotBlockWhileEverySlotIsTaken)
{
    std::atomic<bool> isReleased = false;
    std::atomic<int> startedCount = 0;
    std::atomic<int> endedCount = 0;
    StandaloneTaskGroup group;
    const auto hold = [&] {
        ++startedCount;
        EXPECT_TRUE(SpinUntil([&] { return isReleased.load(); }));
        ++endedCount;
    };
    const int slotCount = tbb::info::default_concurrency();
    std::vector<std::jthread> waiting;
    for (int i = 0; i < slotCount; ++i)
    {
        group.Run(hold);
        waiting.emplace_back([&group] { group.Wait(); });
    }
    EXPECT_TRUE(SpinUntil([&] { return startedCount >= slotCount; }));
    group.Run(hold);
    isReleased = true; // not reached when Run blocks
    group.Wait();
    EXPECT_EQ(endedCount, slotCount + 1);
}

TEST(StandaloneTaskGroup, HandsOverWhatTheWorkReadsAndWrites)
{
    for (int round = 0; round < 200; ++round)
    {
        std::vector<int> results(16);
        const auto input = std::make_shared<int>(round);
        StandaloneTaskGroup group;
        for (int& result : results)
            group.Run([&result, input, own = std::vector<int>{round}] { result = *input + own[0]; });
        EXPECT_EQ(group.Wait(), ETaskGroupStatus::Complete);
        EXPECT_EQ(results, std::vector<int>(16, 2 * round));
        EXPECT_EQ(input.use_count(), 1); // what the work held must be gone
    }
}

TEST(StandaloneTaskGroup, ExceptionLeavesOneWaitAndCancelsWhatHasNotStarted)
{
    StandaloneTaskGroup group;
    const auto runs = [&group] {
        const auto hasRun = std::make_shared<std::atomic<bool>>(false);
        group.Run([hasRun] { *hasRun = true; });
        EXPECT_TRUE(SpinUntil([&] { return hasRun.use_count() == 1; })); // it has died, called or not
        return hasRun->load();
    };
    group.Run([] { throw std::runtime_error("refused"); });
    EXPECT_TRUE(SpinUntil([&] { return !runs(); }));
    EXPECT_FALSE(runs());
    EXPECT_THROW(group.Wait(), std::runtime_error);
    EXPECT_TRUE(runs());
    EXPECT_EQ(group.Wait(), ETaskGroupStatus::Complete);
}

TEST(StandaloneTaskGroup, ExceptionLeavesAtMostOneOfManyWaits)
{
    StandaloneTaskGroup group;
    std::atomic<int> thrownCount = 0;
    std::atomic<int> caughtCount = 0;
    {
        std::vector<std::jthread> threads;
        for (int i = 0; i < 4; ++i)
            threads.emplace_back([&] {
                for (int round = 0; round < 300; ++round)
                {
                    group.Run([&thrownCount] { throw ++thrownCount; });
                    try
                    {
                        group.Wait();
                    }
                    catch (int)
                    {
                        ++caughtCount;
                    }
                }
            });
    }
    EXPECT_GT(caughtCount, 0);
    EXPECT_LE(caughtCount, thrownCount);
    EXPECT_EQ(group.Wait(), ETaskGroupStatus::Complete); // none is left
}

TEST(StandaloneTaskGroup, DestructionWaitsAndReportsTheExceptionThatNobodyWaitedFor)
{
    static std::atomic<int> reportCount;
    reportCount = 0;
    const auto before =
        Exception::SetExceptionHandler([](const std::source_location&) noexcept { ++reportCount; });
    std::atomic<int> runCount = 0;
    {
        StandaloneTaskGroup group;
        group.Run([&] {
            for (int i = 0; i < 10; ++i) // work of the work
                group.Run([&] { ++runCount; });
        });
    }
    EXPECT_EQ(runCount, 10);
    EXPECT_EQ(reportCount, 0);
    {
        StandaloneTaskGroup group;
        group.Run([] { throw std::runtime_error("refused"); });
    }
    EXPECT_EQ(reportCount, 1);
    Exception::SetExceptionHandler(before);
}

TEST(StandaloneTaskGroup, ContextCancelledByAFunctionIsUsableAfterTheWait)
{
    StandaloneTaskGroup group;
    const auto held = std::make_shared<std::atomic<int>>(0);
    for (int round = 1; round <= 20; ++round)
    {
        group.Run([] { tbb::task::current_context()->cancel_group_execution(); });
        for (int i = 0; i < 200; ++i)
            group.Run([held] {});
        EXPECT_EQ(group.Wait(), ETaskGroupStatus::Canceled);
        EXPECT_EQ(held.use_count(), 1);
        group.Run([held] { ++*held; });
        EXPECT_EQ(group.Wait(), ETaskGroupStatus::Complete);
        EXPECT_EQ(*held, round);
    }
}

TEST(StandaloneTaskGroup, IsNotCancelledWithTheGroupItWasUsedIn)
{
    StandaloneTaskGroup standalone;
    std::atomic<int> runCount = 0;
    tbb::task_group outer;
    Start(outer, [&] {
        standalone.Run([] {}); // where a context is bound to the one around it
        outer.cancel();
        for (int i = 0; i < 10; ++i)
            standalone.Run([&] { ++runCount; });
    });
    outer.wait();
    standalone.Wait();
    EXPECT_EQ(runCount, 10);
}

TEST(InvokeInIsolatedTBBContext, PassesTheExceptionOn)
{
    EXPECT_THROW(InvokeInIsolatedTBBContext([] { throw std::out_of_range("refused"); }), std::out_of_range);
}

TEST(InvokeInIsolatedTBBContext, PicksUpNoOuterTaskWhileItWaits)
{
    const tbb::global_control atLeastOneWorker(tbb::global_control::max_allowed_parallelism, 2);
    tbb::task_arena arena(2);
    std::atomic<bool> isStolen = false;
    std::atomic<bool> isPieceDone = false;
    std::atomic<bool> isInside = false;
    std::atomic<bool> isOuterPickedUp = false;
    arena.execute([&, caller = std::this_thread::get_id()] {
        tbb::task_group outer;
        isInside = true;
        InvokeInIsolatedTBBContext([&] {
            tbb::task_group inner;
            Start(inner, [&] { // on the worker; its piece is left to the caller, which has to look for it
                isStolen = true;
                Start(inner, [&] { isPieceDone = true; });
                EXPECT_TRUE(SpinUntil([&] { return isPieceDone.load(); }));
            });
            EXPECT_TRUE(SpinUntil([&] { return isStolen.load(); }));
            // Entering the arena anew leaves the isolation: nearer at hand than the piece, but an outer task.
            arena.execute([&] {
                Start(outer, [&] {
                    if (isInside && std::this_thread::get_id() == caller)
                        isOuterPickedUp = true;
                });
            });
            inner.wait();
        });
        isInside = false;
        outer.wait();
    });
    EXPECT_FALSE(isOuterPickedUp);
}
} // namespace
} // namespace vek::Multithread::TBBHelper
