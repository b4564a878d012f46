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
        const bool isProcessed = scheduler.ProcessPendingEvents(force);
        return std::pair(isProcessed, runs);
    };
    ProcessEventsScheduler rare(std::chrono::years(100), 5ms); // longer than any clock has run
    EXPECT_EQ(process(rare, true), std::pair(true, 1));
    EXPECT_EQ(process(rare, false), std::pair(true, 2)); // the forced one does not count
    EXPECT_EQ(process(rare, false), std::pair(false, 2));
    EXPECT_EQ(process(rare, true), std::pair(true, 4));

    ProcessEventsScheduler often(1ms, 5ms);
    EXPECT_TRUE(often.ProcessPendingEvents(false));
    EXPECT_TRUE(TestSupport::WaitFor([&often] { return often.ProcessPendingEvents(false); }));
}
} // namespace vek::Threading
