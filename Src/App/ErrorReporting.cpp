#include "VekAppCore/App/ErrorReporting.h"
#include "Base/EnumText.h"
#include "VekAppCore/App/Exception.h"
#include "VekAppCore/App/Log.h"
#include "VekAppCore/App/Notifier.h"
#include <QDebug>
#include <QKeyEvent> // describes events of the user interface for QDebug
#include <QObject>
#include <cstdio>
#include <optional>

namespace vek::App
{
namespace
{
[[maybe_unused]] const Exception::ExceptionHandler g_baseHandler = Exception::SetExceptionHandler(
    [](const std::source_location& where) noexcept { HandleAppException(TrString(), where); });

TrString InterruptionText()
{
    return TrString::translate("QObject", "ERROR ! an exception has interrupted the treatment.");
}

TrString GeneralText() { return TrString::translate("QObject", "A general exception has been caught."); }

void LogException(const QString& what, const TrString& context, const std::source_location& where)
{
    // One call for all three, so that a "%2" in the text stays what it is.
    Log(Log::Verbosity::Error, TrString::translate("QObject", "%1 %2 (source: %3)")
                                   .ToString()
                                   .arg(what, context.ToString(), QString::fromUtf8(where.function_name())));
}

/// What is to be said of an exception.
struct Report
{
    EExceptionType type;
    TrString message;            ///< For the user; a general sentence stands for an empty one.
    std::optional<QString> what; ///< For the log; nothing is logged without.
};

/// Rethrows the exception in flight and classifies it.
/// @param context  shown for an exception that has no message for the user.
Report ClassifyCurrentException(const TrString& context)
{
    const auto reportGeneral = [&context]() -> Report {
        return {EExceptionType::GeneralError, context, GeneralText().ToString()};
    };
    if (!std::current_exception())
        return reportGeneral();
    try
    {
        throw;
    }
    catch (const Exception::E_Escape&)
    {
        return {EExceptionType::Cancellation, TrString(), std::nullopt};
    }
    catch (const Exception::E_NotEnoughMemory&)
    {
        return {EExceptionType::NotEnoughMemory, TrString(),
                TrString::translate("QObject", "NOT ENOUGH MEMORY!").ToString()};
    }
    catch (const Exception::AppException& exception)
    {
        return {EExceptionType::Error, exception.GetMessage(), QString::fromUtf8(exception.what())};
    }
    catch (const std::exception& exception)
    {
        const bool isOurs = dynamic_cast<const Exception::ExceptionBase*>(&exception) != nullptr;
        return {EExceptionType::Error, context,
                isOurs ? QString::fromUtf8(exception.what()) : QString::fromLocal8Bit(exception.what())};
    }
    catch (...)
    {
        return reportGeneral();
    }
}

// A callback of the application, or want of memory, may throw once more; the rest of the report must still be
// made.
template <typename Function>
void CallQuietly(Function function) noexcept
{
    try
    {
        function();
    }
    catch (...)
    {
        std::fputs("An exception has been thrown while another one was reported.\n", stderr);
    }
}

/// @param shownContext  for the notification.
/// @param loggedContext  for the log line.
EExceptionType ReportCurrentException(const TrString& shownContext, const TrString& loggedContext,
                                      const std::source_location& where) noexcept
{
    EExceptionType type = EExceptionType::GeneralError;
    CallQuietly([&] {
        const Report report = ClassifyCurrentException(shownContext);
        type = report.type;
        CallQuietly([&] { DisplayExceptionMessage(report.type, report.message, TrString()); });
        if (report.what)
            LogException(*report.what, loggedContext, where);
    });
    return type;
}
} // namespace

EExceptionType HandleAppException(const TrString& context, const std::source_location& where) noexcept
{
    return ReportCurrentException(context, context, where);
}

void DisplayExceptionMessage(EExceptionType type, const TrString& message, const TrString& source)
{
    switch (type)
    {
    case EExceptionType::Cancellation:
        Notifier({TrString::translate("QObject", "ESC: the computation is canceled."),
                  Log::Verbosity::Warning, source, QString()});
        break;
    case EExceptionType::NotEnoughMemory:
        Notifier({TrString::translate("QObject", "Not enough memory."), Log::Verbosity::Warning, source,
                  QString()});
        break;
    case EExceptionType::Error:
    case EExceptionType::GeneralError:
        Notifier(
            {message.IsEmpty() ? InterruptionText() : message, Log::Verbosity::Error, source, QString()});
        break;
    }
}

void HandleEventException(QObject* receiver, QEvent* event, const std::source_location& where) noexcept
{
    TrString description;
    CallQuietly([&] {
        QString text;
        QDebug(&text) << "During event:" << event << "on object:" << receiver;
        description = TrString::NoTranslate(text);
    });
    // What happened to which object helps developers: it is logged, and never shown.
    ReportCurrentException(TrString(), description, where);
}

std::string ToLogText(EExceptionType type)
{
    return Details::ToEnumText(type, EExceptionType::Cancellation,
                               {"Cancellation", "Error", "NotEnoughMemory", "GeneralError"});
}
} // namespace vek::App
