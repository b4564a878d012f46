#include "VekAppCore/Threading/PostEventManager.h"
#include "Support/TestSupport.h"
#include "VekAppCore/App/Exception.h"
#include <QCoreApplication>
#include <gtest/gtest.h>

namespace vek::Threading
{
static int Post(PostEventManager& manager, std::function<void()> function)
{
    return manager.PostEvent(std::make_shared<FunctionEvent>(function), std::source_location::current());
}

static const auto g_beforeMain = [] { // where there is no application yet
    PostEventManager manager;
    int runs = 0;
    const int result = Post(manager, [&runs] { ++runs; });
    manager.ProcessEvents(EEventToTreat::QueueOnly);
    return std::pair(result, runs);
}();

TEST(PostEventManager, TellsWhetherAnApplicationWillRunTheEvent)
{
    EXPECT_EQ(g_beforeMain, std::pair(1, 1));
    PostEventManager manager;
    EXPECT_EQ(Post(manager, [] {}), 0);
}

TEST(PostEventManager, AThrowingEventIsReportedAndTheRestRunsWithItsOwnWakeUp)
{
    const TestSupport::NotificationRecorder notifications;
    const TestSupport::LogRecorder log;
    PostEventManager manager;
    auto mortal = std::make_unique<PostEventManager>();
    int runs = 0;
    Post(manager, [] { throw Exception::InternalAppException(QStringLiteral("bad event")); });
    Post(manager, [&runs] { ++runs; });
    Post(manager, [&runs] { ++runs; });
    Post(*mortal, [&runs] { runs = 100; });
    mortal.reset(); // its wake-up must do nothing
    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(runs, 2);
    ASSERT_EQ(notifications.messages.size(), 1U);
    EXPECT_EQ(notifications.messages[0].text.ToString(), QStringLiteral("bad event"));
}
} // namespace vek::Threading
