#include "VekAppCore/App/Notifier.h"
#include "Support/TestSupport.h"
#include "VekAppCore/App/ApplicationFrame.h"
#include <QCoreApplication>
#include <thread>

namespace vek::App
{
TEST(Notifier, ShowsThenLogsOnTheMainThreadWhatAnyThreadTells)
{
    const NotifierMessage message{TrString::NoTranslate("100 %2 %3"), Log::Verbosity::Warning,
                                  TrString::NoTranslate("source"), QString()};
    const TestSupport::LogLine line{Log::Verbosity::Warning, "Notifier: 100 %2 %3 (from: source) "};
    const TestSupport::LogRecorder log;
    const auto notifyFromWorker = [&] { std::jthread([&] { Notifier(NotifierMessage(message)); }); };
    std::size_t linesBefore = 99;
    Notifier(message);
    EXPECT_THAT(log.GetLines(), testing::ElementsAre(line)) << "logged without a callback";
    SetNotifierCallback([&](const NotifierMessage& shown) {
        EXPECT_EQ(shown, message);
        linesBefore = log.GetLines().size();
    });
    notifyFromWorker();
    EXPECT_THAT(log.GetLines(), testing::ElementsAre(line, line)) << "logged when it cannot be posted";
    EXPECT_EQ(linesBefore, 99U) << "shown off the main thread";

    const ApplicationFrame frame{AppConfiguration()};
    notifyFromWorker();
    EXPECT_EQ(linesBefore, 99U) << "shown off the main thread";
    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(linesBefore, 2U);
    EXPECT_THAT(log.GetLines(), testing::ElementsAre(line, line, line));
    EXPECT_TRUE(SetNotifierCallback({}));
}
} // namespace vek::App
