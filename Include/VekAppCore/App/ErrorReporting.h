#pragma once
#include "VekAppCore/Export.h"
#include "VekAppCore/Text/TrString.h"
#include "VekBase/LogText.h"
#include <source_location>

class QEvent;
class QObject;

namespace vek::App
{
/// How an exception is presented.
enum class EExceptionType : int
{
    Cancellation = 1,
    Error = 2,
    NotEnoughMemory = 3,
    GeneralError = 4 ///< Presented like Error.
};
[[nodiscard]] VEKAPPCORE_EXPORT std::string ToLogText(EExceptionType type);
using vek::PrintTo;

/// Turns the exception in flight into a notification and a log line; to be called inside a catch block
/// (elsewhere it reports a general exception). It never lets an exception out. Any thread.
/// @param context  what was being done; may be empty.
VEKAPPCORE_EXPORT EExceptionType HandleAppException(
    const TrString& context, const std::source_location& where = std::source_location::current()) noexcept;

/// Notifies the user of an exception of that type; any other value shows nothing.
/// @param message  shown for Error and GeneralError; a general sentence when it is empty.
VEKAPPCORE_EXPORT void DisplayExceptionMessage(EExceptionType type, const TrString& message,
                                               const TrString& source);

/// HandleAppException for an exception that left the delivery of @p event to @p receiver (null when it died
/// meanwhile); both are described in the log line.
VEKAPPCORE_EXPORT void
HandleEventException(QObject* receiver, QEvent* event,
                     const std::source_location& where = std::source_location::current()) noexcept;
} // namespace vek::App
