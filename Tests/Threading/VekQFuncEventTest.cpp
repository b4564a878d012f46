#include "VekAppCore/Threading/VekQFuncEvent.h"
#include <QCoreApplication>
#include <QObject>
#include <gmock/gmock.h>
#include <memory>

namespace vek::Threading
{
TEST(VekQFuncEvent, RunsAfterDeliveryAndWhenItsReceiverDiesFirst)
{
    int runs = 0;
    auto receiver = std::make_unique<QObject>();
    VekQFuncEvent::PostEvent(receiver.get(), [&runs] { ++runs; });
    EXPECT_EQ(runs, 0);
    QCoreApplication::sendPostedEvents(receiver.get());
    EXPECT_EQ(runs, 1);
    VekQFuncEvent::PostEvent(receiver.get(), [&runs] { ++runs; });
    receiver.reset();
    EXPECT_EQ(runs, 2);
}

TEST(VekQFuncEvent, ACopyRunsItsOwnFunction)
{
    int runs = 0;
    int others = 0;
    {
        const VekQFuncEvent event([&runs] { ++runs; });
        const VekQFuncEvent copy(event);
        const std::unique_ptr<QEvent> clone(event.clone());
        VekQFuncEvent assigned([&others] { ++others; });
        assigned = event;
        EXPECT_EQ(event.type(), 1000);
    }
    EXPECT_EQ(runs, 4);
    EXPECT_EQ(others, 0);
    const VekQFuncEvent empty{std::function<void()>()};
}
} // namespace vek::Threading
