#include "VekAppCore/Threading/TaskExecutor.h"
#include "Support/TestSupport.h"
#include "VekAppCore/Threading/SeededExecutor.h"
#include "VekAppCore/Threading/VekQFuncEvent.h"
#include <QCoreApplication>
#include <future>
#include <gmock/gmock.h>
#include <thread>

namespace vek::Threading
{
TEST(TaskExecutor, WaitsForAllAtItsEndAndNotBefore)
{
    std::promise<void> mayEnd;
    std::atomic<bool> hasEnded = false;
    std::jthread opener;
    {
        TaskExecutor executor;
        executor.ExecuteAsync([&] {
            mayEnd.get_future().wait();
            hasEnded = true;
        });
        std::ignore = EventExecutor(executor);
        EXPECT_FALSE(hasEnded); // neither the start nor the copy waited
        opener = std::jthread([&mayEnd] { mayEnd.set_value(); });
    }
    EXPECT_TRUE(hasEnded);
}

TEST(TaskExecutor, EndsQuietlyWhenWorkThrew)
{
    const TestSupport::NotificationRecorder notifications;
    const TestSupport::LogRecorder log;
    TaskExecutor().ExecuteAsync([] { throw std::runtime_error("thrown on a worker"); });
    ASSERT_EQ(log.GetLines().size(), 2U);
    EXPECT_THAT(log.GetLines()[1].message.toStdString(), testing::HasSubstr("thrown on a worker"));
}

TEST(TaskExecutor, WaitUntilGoesOnWithEventsOfBothKindsAndThoseOfTheFinishingWork)
{
    TaskExecutor executor;
    int runs = 0;
    const std::function<void()> run = [&] {
        if (++runs < 20)
            VekQFuncEvent::PostEvent(qApp, run); // one of Qt's
    };
    EventExecutor(executor).PostEvent(run);
    const auto isDone = [&] {
        if (runs == 20)
            executor.PostEvent(run); // like the work that finishes, just before the predicate turns true
        return runs == 20;
    };
    executor.WaitUntil(isDone, EEventToTreat::AllEvents);
    EXPECT_EQ(runs, 21);

    executor.PostEvent(run);
    executor.WaitUntil([] { return true; }, EEventToTreat::AllEvents); // true already: runs nothing
    EXPECT_THROW(executor.WaitUntil({}, EEventToTreat::AllEvents), std::bad_function_call);
    executor.Clear();
    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(runs, 21);
}

TEST(TaskExecutor, TheCheckerTellsWhetherTheExecutorExists)
{
    TaskExecutor executor = CreateAppTaskExecutor();
    const std::weak_ptr<RunningTaskChecker> checker = executor.GetRunningTaskChecker();
    EXPECT_EQ(checker.lock(), executor.GetRunningTaskChecker());
    executor = TaskExecutor();
    EXPECT_TRUE(checker.expired());
}

TEST(TaskExecutor, ForwardsTheLocationOfItsOwnPosting)
{
    struct Recorder final : SeededExecutor
    {
        using SeededExecutor::SeededExecutor;
        void PostEvent(std::function<void()>, const std::source_location& where) override
        {
            functions.emplace_back(where.function_name());
        }
        std::vector<std::string> functions;
    };
    const auto recorder = std::make_shared<Recorder>(1);
    TaskExecutor executor(recorder);
    executor.PostEvent({});
    EventExecutor(executor).PostEvent({});
    EXPECT_THAT(recorder->functions, testing::ElementsAre(testing::HasSubstr("::TaskExecutor::PostEvent"),
                                                          testing::HasSubstr("::EventExecutor::PostEvent")));
}
} // namespace vek::Threading
