#include "VekAppCore/Threading/PostEventManager.h"
#include "Support/TestSupport.h"
#include "VekAppCore/App/Exception.h"
#include "VekBase/Multithread.h"
#include <QCoreApplication>
#include <atomic>
#include <gmock/gmock.h>
#include <memory>
#include <thread>

namespace vek::Threading
{
namespace
{
int Post(IEventHolder& holder, std::function<void()> function)
{
    return holder.PostEvent(std::make_shared<FunctionEvent>(std::move(function)),
                            std::source_location::current());
}
} // namespace

TEST(PostEventManager, RunsWhatAnyThreadPostsOnTheMainThread)
{
    PostEventManager manager;
    int runs = 0;
    int onMainThread = 0;
    std::thread poster([&] {
        for (int i = 0; i < 1000; ++i)
            EXPECT_EQ(Post(manager,
                           [&] {
                               ++runs;
                               onMainThread += Multithread::IsInMainThread() ? 1 : 0;
                           }),
                      0);
    });
    EXPECT_TRUE(TestSupport::WaitFor([&runs] { return runs == 1000; }));
    poster.join();
    EXPECT_EQ(onMainThread, 1000);
}

TEST(PostEventManager, AThrowingEventIsReportedAndTheRestRunsWithItsOwnWakeUp)
{
    const TestSupport::NotificationRecorder notifications;
    const TestSupport::LogRecorder log;
    PostEventManager manager;
    int runs = 0;
    Post(manager, [] { throw Exception::InternalAppException(QStringLiteral("bad event")); });
    Post(manager, [&runs] { ++runs; });
    Post(manager, [&runs] { ++runs; });
    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(runs, 2);
    ASSERT_EQ(notifications.messages.size(), 1U);
    EXPECT_EQ(notifications.messages[0].text.ToString(), QStringLiteral("bad event"));
}

TEST(PostEventManager, AWakeUpWhoseManagerIsGoneDoesNothing)
{
    const TestSupport::NotificationRecorder notifications;
    auto manager = std::make_unique<PostEventManager>();
    bool hasRun = false;
    Post(*manager, [&hasRun] { hasRun = true; });
    manager.reset();
    QCoreApplication::sendPostedEvents();
    EXPECT_FALSE(hasRun);
    EXPECT_TRUE(notifications.messages.empty());
}
} // namespace vek::Threading
