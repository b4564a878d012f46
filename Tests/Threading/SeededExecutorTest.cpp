#include "VekAppCore/Threading/SeededExecutor.h"
#include "VekAppCore/App/Exception.h"
#include <gtest/gtest.h>
#include <set>

namespace vek::Threading
{
/// Four functions of the pool, each of which posts one, and one posted before.
static std::string RunAll(std::uint32_t seed)
{
    const auto seeded = std::make_shared<SeededExecutor>(seed);
    TaskExecutor executor(seeded);
    std::string order;
    executor.PostEvent([&] { order += '.'; });
    for (const char name : {'a', 'b', 'c', 'd'})
        executor.ExecuteAsync([&order, &executor, name] {
            order += name;
            executor.PostEvent([&order, name] { order += static_cast<char>(std::toupper(name)); });
        });
    seeded->RunAll();
    return order;
}

TEST(SeededExecutor, DrawsEveryOrderFromItsSeedAndPostedOnesStayInTheirs)
{
    std::set<std::string> mixes;
    std::set<std::string> poolOrders;
    for (std::uint32_t seed = 0; seed < 500; ++seed)
    {
        const std::string order = RunAll(seed);
        ASSERT_EQ(order, RunAll(seed));
        std::string pool;
        std::string posted;
        for (const char name : order)
            (std::islower(name) ? pool : posted) += static_cast<char>(std::tolower(name));
        ASSERT_EQ(posted, '.' + pool); // first in, first out
        poolOrders.insert(pool);
        std::string mix;
        for (const char name : order)
            mix += std::islower(name) ? '-' : 'P';
        mixes.insert(mix);
    }
    EXPECT_EQ(poolOrders.size(), 24U);
    EXPECT_TRUE(mixes.contains("P-P-P-P-P") && mixes.contains("----PPPPP"));
}

TEST(SeededExecutor, RefusesToWaitForWhatNothingCanBringAbout)
{
    const auto seeded = std::make_shared<SeededExecutor>(1);
    TaskExecutor executor(seeded);
    EXPECT_THROW(executor.WaitUntil([] { return false; }, EEventToTreat::QueueOnly),
                 Exception::InternalAppException);
    EXPECT_THROW(executor.WaitUntil(nullptr, EEventToTreat::QueueOnly), std::bad_function_call);
    bool hasRun = false;
    executor.ExecuteAsync([&] { executor.PostEvent([&] { hasRun = true; }); });
    executor.WaitUntil([&] { return hasRun; }, EEventToTreat::QueueOnly);
    executor.PostEvent([] { FAIL(); });
    executor.Clear();
    seeded->RunAll();
}

TEST(SeededExecutor, WaitForAllRunsThePoolUntilOneThrows)
{
    SeededExecutor seeded(1);
    int runCount = 0;
    for (int i = 0; i < 3; ++i)
        seeded.ExecuteAsync([&runCount] {
            ++runCount;
            throw std::runtime_error("refused");
        });
    seeded.PostEvent([] { FAIL(); }, std::source_location::current());
    EXPECT_THROW(seeded.WaitForAll(), std::runtime_error);
    EXPECT_EQ(runCount, 1);
    seeded.WaitForAll();
}

TEST(SeededExecutor, ClearDropsWhatDroppingPosts)
{
    SeededExecutor seeded(1);
    auto posts = std::shared_ptr<void>(
        nullptr, [&seeded](void*) { seeded.PostEvent([] { FAIL(); }, std::source_location::current()); });
    seeded.PostEvent([posts = std::move(posts)] { FAIL(); }, std::source_location::current());
    seeded.Clear();
    EXPECT_FALSE(seeded.RunOne());
}
} // namespace vek::Threading
