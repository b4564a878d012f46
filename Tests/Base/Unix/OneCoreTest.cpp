#include "Support/TestSupport.h"
#include "VekBase/ScopeBase.h"
#include "VekBase/TBBHelper.h"
#include <gtest/gtest.h>
#include <sched.h>

namespace vek
{
TEST(StandaloneTaskGroupOnOneCore, RunsWithoutAnybodyWaiting)
{
    // For this thread and those it starts; the pool counts the cores when it is first used.
    cpu_set_t before;
    sched_getaffinity(0, sizeof(before), &before);
    const ScopeBase restore([&before] { sched_setaffinity(0, sizeof(before), &before); });
    cpu_set_t one;
    CPU_ZERO(&one);
    CPU_SET(static_cast<std::size_t>(sched_getcpu()), &one);
    ASSERT_EQ(sched_setaffinity(0, sizeof(one), &one), 0);

    Multithread::TBBHelper::StandaloneTaskGroup group;
    std::atomic<int> runCount = 0;
    for (int i = 0; i < 3; ++i)
        group.Run([&] { ++runCount; });
    EXPECT_TRUE(TestSupport::WaitFor([&] { return runCount == 3; }));
}
} // namespace vek
