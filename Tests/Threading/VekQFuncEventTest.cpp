#include "VekAppCore/Threading/VekQFuncEvent.h"
#include <QCoreApplication>
#include <QObject>
#include <gtest/gtest.h>

namespace vek::Threading
{
TEST(VekQFuncEvent, RunsItsFunctionWheneverItIsDeleted)
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
    {
        const VekQFuncEvent event([&runs] { ++runs; });
        const VekQFuncEvent copy(event);
        const std::unique_ptr<QEvent> clone(event.clone());
        VekQFuncEvent assigned{std::function<void()>()}; // empty until then
        assigned = event;
        EXPECT_EQ(event.type(), 1000);
    }
    EXPECT_EQ(runs, 6); // each copy its own
}
} // namespace vek::Threading
