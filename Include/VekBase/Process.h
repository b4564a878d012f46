#pragma once
#include "VekBase/Export.h"
#include <filesystem>

namespace vek
{
/// The folder of the running program, absolute, without a trailing separator. Thread-safe.
[[nodiscard]] VEKBASE_EXPORT std::filesystem::path GetExecutablePath();

/// @{
/// True in test programs, which set it first thing; false at start. Thread-safe.
[[nodiscard]] VEKBASE_EXPORT bool IsUnitTestMode() noexcept;
VEKBASE_EXPORT void SetUnitTestMode(bool isOn) noexcept;
/// @}
} // namespace vek
