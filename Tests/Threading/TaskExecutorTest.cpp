#include "VekAppCore/Threading/TaskExecutor.h"
#include "Support/TestSupport.h"
#include "VekAppCore/Threading/PostEventManager.h"
#include "VekAppCore/Threading/VekQFuncEvent.h"
#include "VekBase/Multithread.h"
#include <QCoreApplication>
#include <QString>
#include <atomic>
#include <future>
#include <gmock/gmock.h>
#include <thread>

namespace vek::Threading
{
TEST(TaskExecutor, RunsOnAWorkerAndWaitsForAllAtItsEnd)
{
    std::promise<void> hasStarted;
    std::promise<void> mayEnd;
    std::atomic<int> ended = 0;
    std::atomic<int> onMainThread = 0;
    std::thread opener;
    {
        TaskExecutor executor;
        executor.ExecuteAsync([&, future = mayEnd.get_future().share()] {
            onMainThread += Multithread::IsInMainThread() ? 1 : 0;
            hasStarted.set_value();
            future.wait();
            ++ended;
        });
        hasStarted.get_future().wait();
        const EventExecutor copy = executor;
        EXPECT_EQ(ended, 0); // neither the start nor the copy waited
        opener = std::thread([&mayEnd] { mayEnd.set_value(); });
    }
    EXPECT_EQ(ended, 1);
    EXPECT_EQ(onMainThread, 0);
    opener.join();
}

TEST(TaskExecutor, EndsQuietlyWhenWorkThrew)
{
    const TestSupport::NotificationRecorder notifications;
    const TestSupport::LogRecorder log;
    {
        TaskExecutor executor;
        executor.ExecuteAsync([] { throw std::runtime_error("thrown on a worker"); });
    }
    QCoreApplication::sendPostedEvents();
    ASSERT_EQ(log.GetLines().size(), 2U);
    EXPECT_THAT(log.GetLines()[1].message.toStdString(), testing::HasSubstr("thrown on a worker"));
}

TEST(TaskExecutor, WaitUntilDeliversWhatTheFinishingWorkPostedLast)
{
    TaskExecutor executor;
    std::atomic<bool> isDone = false;
    bool hasArrived = false;
    executor.ExecuteAsync([&] {
        executor.PostEvent([&] { isDone = true; });
        executor.PostEvent([&] { hasArrived = true; });
    });
    executor.WaitUntil([&isDone] { return isDone.load(); }, EEventToTreat::QueueOnly);
    EXPECT_TRUE(hasArrived);
}

TEST(TaskExecutor, WaitUntilRunsNothingWhenThePredicateHoldsAlready)
{
    TaskExecutor executor;
    bool hasRun = false;
    executor.PostEvent([&hasRun] { hasRun = true; });
    executor.WaitUntil([] { return true; }, EEventToTreat::QueueOnly);
    EXPECT_FALSE(hasRun);
    EXPECT_THROW(executor.WaitUntil({}, EEventToTreat::QueueOnly), std::bad_function_call);
    executor.Clear();
    QCoreApplication::sendPostedEvents();
    EXPECT_FALSE(hasRun);
}

TEST(TaskExecutor, WaitUntilKeepsTheMainThreadResponsive)
{
    TaskExecutor executor;
    const EventExecutor events = executor;
    int steps = 0;
    const std::function<void()> step = [&] {
        if (++steps < 20)
            VekQFuncEvent::PostEvent(qApp, step); // one of Qt's events
    };
    events.PostEvent(step);
    events.WaitUntil([&steps] { return steps == 20; }, EEventToTreat::AllEvents);
    EXPECT_EQ(steps, 20);
}

TEST(TaskExecutor, TheCheckerTellsWhetherTheExecutorExists)
{
    std::weak_ptr<RunningTaskChecker> checker;
    {
        TaskExecutor executor = CreateAppTaskExecutor();
        checker = executor.GetRunningTaskChecker();
        EXPECT_EQ(checker.lock(), executor.GetRunningTaskChecker());
        TaskExecutor other;
        executor = std::move(other);
        EXPECT_TRUE(checker.expired());
        checker = executor.GetRunningTaskChecker();
    }
    EXPECT_TRUE(checker.expired());
}

TEST(TaskExecutor, ForwardsTheLocationOfItsOwnPosting)
{
    struct Recorder final : ITaskExecutorImpl
    {
        void PostEvent(std::function<void()>, const std::source_location& where) override
        {
            functions.push_back(QString::fromUtf8(where.function_name()));
        }
        void WaitUntil(const std::function<bool()>&, EEventToTreat) override {}
        void Clear() override {}
        void ExecuteAsync(std::function<void()>) override {}
        std::shared_ptr<RunningTaskChecker> GetRunningTaskChecker() override { return nullptr; }
        void WaitForAll() override {}
        std::vector<QString> functions;
    };
    const auto recorder = std::make_shared<Recorder>();
    TaskExecutor executor(recorder);
    executor.PostEvent([] {});
    const EventExecutor events = executor;
    events.PostEvent([] {});
    ASSERT_EQ(recorder->functions.size(), 2U);
    EXPECT_TRUE(recorder->functions[0].contains(QStringLiteral("TaskExecutor::PostEvent")));
    EXPECT_TRUE(recorder->functions[1].contains(QStringLiteral("EventExecutor::PostEvent")));
}
} // namespace vek::Threading
