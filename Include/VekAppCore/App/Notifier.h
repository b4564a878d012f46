#pragma once
#include "VekAppCore/Export.h"
#include "VekAppCore/Text/TrString.h"
#include "VekBase/LogText.h"
#include "VekBase/MoveOnlyFunction.h"
#include "VekBase/Verbosity.h"
#include <QString>

namespace vek::App
{
/// Something that the user should know.
struct NotifierMessage
{
    TrString text;                                   ///< What happened.
    Log::Verbosity verbosity = Log::Verbosity::Info; ///< How it is shown, and its weight in the log.
    TrString source;                                 ///< Who reports it.
    QString details;                                 ///< Not translated; may be empty.

    bool operator==(const NotifierMessage&) const = default;
};
/// Verbosity, text, source in brackets, and details.
[[nodiscard]] VEKAPPCORE_EXPORT std::string ToLogText(const NotifierMessage& message);
using vek::PrintTo;

/// Called on the main thread.
using NotifierCallback = MoveOnlyFunction<void(const NotifierMessage&)>;

/// Shows a message through the installed callback, on the main thread, and then logs it with its verbosity.
/// From another thread it is posted and this returns at once; where it cannot be posted, it is logged only.
/// Any thread.
///
/// @code
/// App::Notifier({.text = TrString::translate("Desk", "The plate has been measured"),
///                .source = TrString::translate("Desk", "Measuring"),
///                .details = "Plate.xyz"});
/// App::Log(Log::Verbosity::Info, "Measured in 12 s");
/// @endcode
VEKAPPCORE_EXPORT void Notifier(const NotifierMessage& message);

/// Installs @p callback and returns the one before. An empty one removes it. Main thread only.
VEKAPPCORE_EXPORT NotifierCallback SetNotifierCallback(NotifierCallback callback);
} // namespace vek::App
