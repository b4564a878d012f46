#pragma once
#include "VekBase/LogText.h"
#include <cstdint>

namespace vek::Log
{
/// The weight of a log line.
enum class Verbosity : std::int32_t
{
    Error = 1,   ///< Exception reports, failures.
    Warning = 2, ///< Recoverable problems.
    Info = 3,    ///< Traces of what the user and long-running operations do.
    Debug = 4,   ///< Diagnostic traces.
    Trace = 5    ///< Finer still.
};

[[nodiscard]] VEKBASE_EXPORT std::string ToLogText(Verbosity verbosity);
using vek::PrintTo;
} // namespace vek::Log
