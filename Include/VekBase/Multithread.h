#pragma once
#include "VekBase/Export.h"
#include <string>

/// Which thread is which. Thread-safe.
namespace vek::Multithread
{
/// Makes the calling thread the main thread.
VEKBASE_EXPORT void SetMainThread() noexcept;

/// False on every thread before the first SetMainThread.
[[nodiscard]] VEKBASE_EXPORT bool IsInMainThread() noexcept;

/// Names the calling thread for debuggers and the tools of the system; Linux keeps the first 15 bytes.
/// @param name  UTF-8.
VEKBASE_EXPORT void SetCurrentThreadName(const std::string& name);
} // namespace vek::Multithread
