#include "VekAppCore/App/ErrorReporting.h"
#include "Support/TestSupport.h"
#include "VekAppCore/App/Exception.h"
#include "VekAppCore/App/SafeCallable.h"
#include <QEvent>
#include <QObject>
#include <gmock/gmock.h>
#include <optional>
#include <stdexcept>

namespace vek::App
{
namespace
{
const QString interruption = QStringLiteral("ERROR ! an exception has interrupted the treatment.");

struct ReportCase
{
    const char* fault;
    std::function<void()> raise; ///< Nothing is in flight without.
    const char* context;
    EExceptionType type;
    Log::Verbosity verbosity;
    QString shown;
    const char* logged; ///< In front of the source; null when nothing is logged.
};
void PrintTo(const ReportCase& row, std::ostream* out) { *out << row.fault; }
class HandleAppExceptionOf : public testing::TestWithParam<ReportCase>
{};

/// The error lines without the notification's own.
std::vector<std::string> GetErrorLines(const TestSupport::LogRecorder& log)
{
    std::vector<std::string> lines;
    for (const TestSupport::LogLine& line : log.GetLines())
        if (!line.message.startsWith(QLatin1String("Notifier: ")))
        {
            EXPECT_EQ(line.verbosity, Log::Verbosity::Error);
            lines.push_back(line.message.toStdString());
        }
    return lines;
}
} // namespace

TEST_P(HandleAppExceptionOf, NotifiesAndLogs)
{
    const TestSupport::LogRecorder log;
    const TestSupport::NotificationRecorder notifications;
    const auto where = std::source_location::current();
    const TrString context = TrString::NoTranslate(QString::fromUtf8(GetParam().context));
    EExceptionType type{};
    if (GetParam().raise)
        try
        {
            GetParam().raise();
        }
        catch (...)
        {
            type = HandleAppException(context, where);
        }
    else
        type = HandleAppException(context, where);

    EXPECT_EQ(type, GetParam().type);
    ASSERT_EQ(notifications.messages.size(), 1U);
    EXPECT_EQ(notifications.messages[0].text.ToString(), GetParam().shown);
    EXPECT_EQ(notifications.messages[0].verbosity, GetParam().verbosity);
    EXPECT_TRUE(notifications.messages[0].source.IsEmpty());
    EXPECT_TRUE(notifications.messages[0].details.isEmpty());
    if (GetParam().logged)
        EXPECT_THAT(GetErrorLines(log), testing::ElementsAre(std::string(GetParam().logged) +
                                                             " (source: " + where.function_name() + ")"));
    else
        EXPECT_THAT(GetErrorLines(log), testing::IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(
    Rows, HandleAppExceptionOf,
    testing::Values(
        ReportCase{"cancellation logged", [] { throw Exception::E_Escape(); }, "ctx",
                   EExceptionType::Cancellation, Log::Verbosity::Warning,
                   QStringLiteral("ESC: the computation is canceled."), nullptr},
        ReportCase{"want of memory taken for a critical exception",
                   [] { throw Exception::E_NotEnoughMemory(); }, "ctx", EExceptionType::NotEnoughMemory,
                   Log::Verbosity::Warning, QStringLiteral("Not enough memory."), "NOT ENOUGH MEMORY! ctx"},
        ReportCase{"own message not shown",
                   [] { throw Exception::WrongTypeException(QStringLiteral("Wrong type %2")); }, "ctx",
                   EExceptionType::Error, Log::Verbosity::Error, QStringLiteral("Wrong type %2"),
                   "Wrong type %2 ctx"},
        ReportCase{"context shown for an exception without message",
                   [] { throw Exception::AppException(TrString()); }, "ctx", EExceptionType::Error,
                   Log::Verbosity::Error, interruption, " ctx"},
        ReportCase{"context not shown for a foreign exception", [] { throw std::runtime_error("what ü"); },
                   "ctx", EExceptionType::Error, Log::Verbosity::Error, QStringLiteral("ctx"), "what ü ctx"},
        ReportCase{"nothing shown without context", [] { throw Exception::CriticalException(); }, "",
                   EExceptionType::Error, Log::Verbosity::Error, interruption,
                   "The operation cannot continue "},
        ReportCase{"number taken for a standard exception", [] { throw 7; }, "", EExceptionType::GeneralError,
                   Log::Verbosity::Error, interruption, "A general exception has been caught. "},
        ReportCase{"end of the program outside a catch block",
                   {},
                   "ctx",
                   EExceptionType::GeneralError,
                   Log::Verbosity::Error,
                   QStringLiteral("ctx"),
                   "A general exception has been caught. ctx"}));

TEST(DisplayExceptionMessage, ShowsNothingForOtherTypes)
{
    const TestSupport::NotificationRecorder notifications;
    const TestSupport::LogRecorder log;
    const TrString source = TrString::NoTranslate(QStringLiteral("me"));
    for (const int type : {-1, 0, 5})
        DisplayExceptionMessage(static_cast<EExceptionType>(type), source, source);
    EXPECT_TRUE(notifications.messages.empty());
    for (const int type : {1, 2, 3, 4})
        DisplayExceptionMessage(static_cast<EExceptionType>(type), TrString(), source);
    ASSERT_EQ(notifications.messages.size(), 4U);
    EXPECT_EQ(notifications.messages[3].text.ToString(), interruption);
    for (const NotifierMessage& message : notifications.messages)
        EXPECT_EQ(message.source, source);
}

TEST(HandleEventException, DescribesTheEventInTheLogAndNeverToTheUser)
{
    const TestSupport::LogRecorder log;
    const TestSupport::NotificationRecorder notifications;
    QObject receiver;
    receiver.setObjectName(QStringLiteral("probe"));
    QEvent event(QEvent::FontChange);
    try
    {
        throw std::runtime_error("broken");
    }
    catch (...)
    {
        HandleEventException(&receiver, &event);
    }
    ASSERT_EQ(notifications.messages.size(), 1U);
    EXPECT_EQ(notifications.messages[0].text.ToString(), interruption);
    EXPECT_THAT(GetErrorLines(log),
                testing::ElementsAre(
                    testing::AllOf(testing::StartsWith("broken During event: QEvent(FontChange"),
                                   testing::HasSubstr("on object: QObject("), testing::HasSubstr("probe"))));
}

TEST(HandleAppException, ReportsTheRestWhenTheNotifierCallbackThrows)
{
    const TestSupport::LogRecorder log;
    auto before = SetNotifierCallback([](const NotifierMessage&) { throw std::runtime_error("again"); });
    testing::internal::CaptureStderr();
    try
    {
        throw std::runtime_error("first");
    }
    catch (...)
    {
        EXPECT_EQ(HandleAppException(TrString()), EExceptionType::Error);
    }
    EXPECT_THAT(testing::internal::GetCapturedStderr(), testing::HasSubstr("while another one was reported"));
    EXPECT_THAT(GetErrorLines(log), testing::ElementsAre(testing::StartsWith("first")));
    SetNotifierCallback(std::move(before));
}

TEST(SafeCallable, ReportsWhatItsCallableThrowsWithThePlaceOfTheWrapping)
{
    const TestSupport::LogRecorder log;
    const TestSupport::NotificationRecorder notifications;
    SafeCallable callable([](int value) { throw std::out_of_range(std::to_string(value)); });
    callable(7);
    EXPECT_THAT(GetErrorLines(log),
                testing::ElementsAre(
                    testing::AllOf(testing::StartsWith("7 "), testing::HasSubstr("SafeCallable_Reports"))));
}
} // namespace vek::App
