#pragma once
#include "VekAppCore/Export.h"
#include "VekBase/MoveOnlyFunction.h"
#include "VekBase/Verbosity.h"
#include <QString>

namespace vek::App
{
/// Gets every line, from any thread, also from several at once. What it throws leaves Log.
using LogCallback = MoveOnlyFunction<void(Log::Verbosity, const QString&)>;

/// Hands a line to the installed callback, then echoes it to standard output when its verbosity is Error,
/// Warning, Debug or Trace. Any thread.
VEKAPPCORE_EXPORT void Log(Log::Verbosity verbosity, const QString& message);

/// Prints a line to standard output in the local encoding, errors and warnings with their prefix. Any thread.
VEKAPPCORE_EXPORT void LogConsole(Log::Verbosity verbosity, const QString& message);

/// Installs @p callback, which must bear calls from several threads at once, and returns the one before, for
/// chaining or restoring. An empty one removes it. Main thread only, before workers log.
VEKAPPCORE_EXPORT LogCallback SetLogCallback(LogCallback callback);

/// Installs @p callback in front of the one there is, which is called after it. The same rules.
VEKAPPCORE_EXPORT void ChainLogCallback(LogCallback callback);
} // namespace vek::App
