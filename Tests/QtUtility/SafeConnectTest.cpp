#include "VekAppCore/QtUtility/SafeConnect.h"
#include "Support/TestSupport.h"
#include <QTimer>
#include <gmock/gmock.h>
#include <stdexcept>

namespace vek::QtUtility
{
TEST(SafeConnect, ExceptionIsReportedAndTheOthersAreStillCalled)
{
    const TestSupport::LogRecorder log;
    const TestSupport::NotificationRecorder notifications;
    QObject sender;
    int calls = 0;
    auto context = std::make_unique<QObject>();
    SafeConnect(&sender, &QObject::objectNameChanged, context.get(),
                [](const QString& name) { throw std::runtime_error(name.toStdString()); });
    SafeConnect(&sender, &QObject::objectNameChanged, &sender, [&calls] { ++calls; });
    sender.setObjectName("broken");
    EXPECT_EQ(calls, 1);
    const auto isReport = [](const auto& line) {
        return line.message.contains("broken") && line.message.contains("QtUtility::SafeConnect(");
    };
    const auto lines = log.GetLines();
    EXPECT_TRUE(std::ranges::any_of(lines, isReport));
    context.reset();
    sender.setObjectName("fine");
    EXPECT_EQ(calls, 2);
    EXPECT_EQ(log.GetLines().size(), lines.size());
}
} // namespace vek::QtUtility
