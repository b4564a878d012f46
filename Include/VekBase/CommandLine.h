#pragma once
#include "VekBase/Export.h"
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// @file
/// The arguments of this process, without the program's name. Narrow texts are UTF-8; names are compared
/// exactly, dashes included ("--NoSettings"). Thread-safe.
namespace vek
{
/// True when an argument is @p name, or begins with @p name and an equals sign.
[[nodiscard]] VEKBASE_EXPORT bool IsCmdLineArgPresent(std::wstring_view name);
/// The same for UTF-8.
[[nodiscard]] VEKBASE_EXPORT bool IsCmdLineArgPresent(std::string_view name);

/// @{
/// The value in "name=value" or "name value", of the first such argument; empty when the name is absent or
/// last.
[[nodiscard]] VEKBASE_EXPORT std::optional<std::wstring> GetCmdLineArgValue(std::wstring_view name);
[[nodiscard]] VEKBASE_EXPORT std::optional<std::string> GetCmdLineArgValue(std::string_view name);
/// @}

/// Puts @p arguments in place of the process's own, for tests; std::nullopt brings the own ones back.
VEKBASE_EXPORT void SetCmdLineArgs(std::optional<std::vector<std::string>> arguments);
} // namespace vek
