#include "VekAppCore/Threading/ProcessEventsScheduler.h"
#include "Support/TestSupport.h"
#include "VekAppCore/Threading/VekQFuncEvent.h"
#include <QCoreApplication>
#include <gtest/gtest.h>

using namespace std::chrono_literals;

namespace vek::Threading
{
TEST(ProcessEventsScheduler, ProcessesOncePerIntervalAndWheneverForced)
{
    int runs = 0;
    const auto process = [&runs](ProcessEventsScheduler& scheduler, bool force) {
        VekQFuncEvent::PostEvent(qApp, [&runs] { ++runs; });
        return scheduler.ProcessPendingEvents(force);
    };
    ProcessEventsScheduler rare(std::chrono::years(100), 5ms); // longer than any clock has run
    EXPECT_TRUE(process(rare, true));
    EXPECT_TRUE(process(rare, false)); // the forced one does not count
    EXPECT_EQ(runs, 2);
    EXPECT_FALSE(process(rare, false));
    EXPECT_EQ(runs, 2);
    EXPECT_TRUE(process(rare, true));
    EXPECT_EQ(runs, 4);

    ProcessEventsScheduler often(1ms, 5ms);
    EXPECT_TRUE(often.ProcessPendingEvents(false));
    EXPECT_TRUE(TestSupport::WaitFor([&often] { return often.ProcessPendingEvents(false); }));
}
} // namespace vek::Threading
