#include "Support/TestSupport.h"
#include "VekBase/TBBHelper.h"
#include <gtest/gtest.h>
#include <sched.h>

namespace vek
{
namespace
{
/// Keeps the calling thread, and the threads it starts, on one core. The pool counts the cores when it is
/// first used.
class OneCore
{
public:
    OneCore()
    {
        sched_getaffinity(0, sizeof(m_before), &m_before);
        cpu_set_t one;
        CPU_ZERO(&one);
        for (std::size_t core = 0; CPU_COUNT(&one) == 0; ++core)
            if (CPU_ISSET(core, &m_before))
                CPU_SET(core, &one);
        sched_setaffinity(0, sizeof(one), &one);
    }
    ~OneCore() { sched_setaffinity(0, sizeof(m_before), &m_before); }
    OneCore(const OneCore&) = delete;
    OneCore& operator=(const OneCore&) = delete;

private:
    cpu_set_t m_before;
};

TEST(StandaloneTaskGroupOnOneCore, RunsWithoutAnybodyWaiting)
{
    const OneCore oneCore;
    Multithread::TBBHelper::StandaloneTaskGroup group;
    std::atomic<int> runCount = 0;
    for (int i = 0; i < 3; ++i)
        group.Run([&] { ++runCount; });
    EXPECT_TRUE(TestSupport::WaitFor([&] { return runCount == 3; }));
}
} // namespace
} // namespace vek
