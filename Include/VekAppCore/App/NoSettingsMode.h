#pragma once
#include "VekAppCore/Export.h"

/// @file
/// A run in no-settings mode neither reads nor changes the user's real settings and data. Decided at
/// start-up, before the first store or folder is used.
namespace vek::App
{
/// True with "--NoSettings" on the command line, or after SetNoSettingsMode(true). May be asked from any
/// thread.
[[nodiscard]] VEKAPPCORE_EXPORT bool IsNoSettingsModeEnabled();

/// False does not overrule the command line. Main thread only.
VEKAPPCORE_EXPORT void SetNoSettingsMode(bool isOn);
} // namespace vek::App
