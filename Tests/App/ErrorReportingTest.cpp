#include "VekAppCore/App/ErrorReporting.h"
#include "Support/TestSupport.h"
#include "VekAppCore/App/Exception.h"
#include "VekAppCore/App/SafeCallable.h"
#include <stdexcept>

namespace vek::App
{
using Log::Verbosity;
using TestSupport::LogLine;

/// The line that a notification writes.
static LogLine Notified(Verbosity verbosity, const QString& text, const QString& source = {})
{
    return {verbosity, "Notifier: " + text + " (from: " + source + ") "};
}
const LogLine interruption =
    Notified(Verbosity::Error, "ERROR ! an exception has interrupted the treatment.");
const QString cancellation = "ESC: the computation is canceled.";

TEST(HandleAppException, NotifiesThenLogsByTheKindOfException)
{
    using namespace Exception;
    const auto of = [](const auto& exception) { return std::make_exception_ptr(exception); };
    using Row = std::tuple<const char*, std::exception_ptr, const char*, int, LogLine, QString>;
    for (const auto& [fault, exception, context, expectedType, notified, logged] :
         {Row{"cancellation logged", of(E_Escape()), "ctx", 1, Notified(Verbosity::Warning, cancellation),
              ""},
          Row{"want of memory taken for a critical exception", of(E_NotEnoughMemory()), "ctx", 3,
              Notified(Verbosity::Warning, "Not enough memory."), "NOT ENOUGH MEMORY! ctx"},
          Row{"own message not shown", of(WrongTypeException("Wrong %2")), "ctx", 2,
              Notified(Verbosity::Error, "Wrong %2"), "Wrong %2 ctx"},
          Row{"context shown for a message", of(AppException(TrString())), "ctx", 2, interruption, " ctx"},
          Row{"context not shown", of(std::runtime_error("what ü")), "ctx", 2,
              Notified(Verbosity::Error, "ctx"), "what ü ctx"},
          Row{"number taken for an exception", of(7), "", 4, interruption,
              "A general exception has been caught. "},
          Row{"program ended outside a catch block", nullptr, "ctx", 4, Notified(Verbosity::Error, "ctx"),
              "A general exception has been caught. ctx"}})
    {
        SCOPED_TRACE(fault);
        const TestSupport::LogRecorder log;
        const auto where = std::source_location::current();
        EExceptionType type{};
        const auto report = [&, text = TrString::NoTranslate(context)] {
            type = HandleAppException(text, where);
        };
        try
        {
            exception ? std::rethrow_exception(exception) : report();
        }
        catch (...)
        {
            report();
        }
        EXPECT_EQ(static_cast<int>(type), expectedType);
        std::vector<LogLine> expected{notified};
        if (!logged.isEmpty())
            expected.push_back({Verbosity::Error, logged + " (source: " + where.function_name() + ')'});
        EXPECT_EQ(log.GetLines(), expected);
    }
}

TEST(HandleAppException, ReportsTheRestWhenTheNotifierCallbackThrows)
{
    const TestSupport::LogRecorder log;
    SetNotifierCallback([](const NotifierMessage&) { throw std::runtime_error("again"); });
    SafeCallable([](int value) { throw std::out_of_range(std::to_string(value)); })(7);
    SetNotifierCallback({});
    EXPECT_THAT(log.GetLines().at(0).message.toStdString(), testing::MatchesRegex("7  .*_ReportsTheRest.*"));
}

TEST(DisplayExceptionMessage, ShowsNothingForOtherTypes)
{
    const TestSupport::LogRecorder log;
    for (const int type : {0, 1, 5})
        DisplayExceptionMessage(static_cast<EExceptionType>(type), TrString(), TrString::NoTranslate("me"));
    EXPECT_THAT(log.GetLines(), testing::ElementsAre(Notified(Verbosity::Warning, cancellation, "me")));
}
} // namespace vek::App
