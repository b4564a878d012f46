#include "VekAppCore/App/Notifier.h"
#include "Support/TestSupport.h"
#include "VekAppCore/App/ApplicationFrame.h"
#include "VekBase/Multithread.h"
#include <QCoreApplication>
#include <gmock/gmock.h>
#include <thread>

namespace vek::App
{
namespace
{
const NotifierMessage plain{TrString::NoTranslate(QStringLiteral("text")), Log::Verbosity::Warning,
                            TrString::NoTranslate(QStringLiteral("source")), QString()};
const TestSupport::LogLine plainLine{Log::Verbosity::Warning,
                                     QStringLiteral("Notifier: text (from: source) ")};
} // namespace

TEST(Notifier, ShowsThenLogsOnTheMainThread)
{
    const TestSupport::LogRecorder log;
    Notifier(plain);
    EXPECT_THAT(log.GetLines(), testing::ElementsAre(plainLine)) << "logged without a callback";

    std::size_t linesBefore = 0;
    SetNotifierCallback([&](const NotifierMessage&) { linesBefore = log.GetLines().size(); });
    NotifierMessage message = plain;
    message.text = TrString::NoTranslate(QStringLiteral("100 %2 %3"));
    message.details = QStringLiteral("%1");
    Notifier(message);
    EXPECT_EQ(linesBefore, 1U);
    EXPECT_EQ(log.GetLines()[1].message, QStringLiteral("Notifier: 100 %2 %3 (from: source) %1"));
    EXPECT_TRUE(SetNotifierCallback({}));
}

TEST(Notifier, FromAWorkerDeliversACopyLaterOnTheMainThread)
{
    ApplicationFrame frame{AppConfiguration()};
    const TestSupport::LogRecorder log;
    TestSupport::NotificationRecorder notifications;
    std::thread worker([] { Notifier(plain); });
    worker.join();
    EXPECT_TRUE(notifications.messages.empty());
    QCoreApplication::sendPostedEvents();
    EXPECT_THAT(notifications.messages, testing::ElementsAre(plain));
    EXPECT_THAT(log.GetLines(), testing::ElementsAre(plainLine));
}

TEST(Notifier, FromAWorkerWithoutAnApplicationIsLoggedOnly)
{
    const TestSupport::LogRecorder log;
    const TestSupport::NotificationRecorder notifications;
    std::thread worker([] { Notifier(plain); });
    worker.join();
    EXPECT_TRUE(notifications.messages.empty());
    EXPECT_THAT(log.GetLines(), testing::ElementsAre(plainLine));
}
} // namespace vek::App
