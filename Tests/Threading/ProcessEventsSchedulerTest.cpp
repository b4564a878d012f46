#include "VekAppCore/Threading/ProcessEventsScheduler.h"
#include "Support/TestSupport.h"
#include "VekAppCore/Threading/VekQFuncEvent.h"
#include <QCoreApplication>
#include <gmock/gmock.h>

using namespace std::chrono_literals;

namespace vek::Threading
{
TEST(ProcessEventsScheduler, ProcessesAtMostOnceInItsInterval)
{
    int runs = 0;
    const auto post = [&runs] { VekQFuncEvent::PostEvent(qApp, [&runs] { ++runs; }); };
    ProcessEventsScheduler rare(1h, 5ms);
    post();
    EXPECT_TRUE(rare.ProcessPendingEvents(false));
    EXPECT_EQ(runs, 1);
    post();
    EXPECT_FALSE(rare.ProcessPendingEvents(false));
    EXPECT_EQ(runs, 1);
    EXPECT_TRUE(rare.ProcessPendingEvents(true));
    EXPECT_EQ(runs, 2);
}

TEST(ProcessEventsScheduler, AForcedProcessingDoesNotCountForTheInterval)
{
    ProcessEventsScheduler rare(1h, 5ms);
    EXPECT_TRUE(rare.ProcessPendingEvents(true));
    EXPECT_TRUE(rare.ProcessPendingEvents(false));
}

TEST(ProcessEventsScheduler, ProcessesAgainAfterItsInterval)
{
    ProcessEventsScheduler often(1ms, 5ms);
    EXPECT_TRUE(often.ProcessPendingEvents(false));
    EXPECT_TRUE(TestSupport::WaitFor([&often] { return often.ProcessPendingEvents(false); }));
}
} // namespace vek::Threading
