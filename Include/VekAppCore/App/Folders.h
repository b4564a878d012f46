#pragma once
#include "VekAppCore/Export.h"
#include <QString>

/// @file
/// Standard folders, absolute, with forward slashes and none at the end. Thread-safe.
namespace vek::App
{
/// The executable's folder.
[[nodiscard]] VEKAPPCORE_EXPORT QString GetAppDir();

/// Where plug-ins are looked for: "addons" in the executable's folder.
[[nodiscard]] VEKAPPCORE_EXPORT QString GetAddonsDir();

/// The user's data of this application, created; a separate one in no-settings mode.
[[nodiscard]] VEKAPPCORE_EXPORT QString GetAppDataDir();

/// The same for data that stays on this machine.
[[nodiscard]] VEKAPPCORE_EXPORT QString GetLocalAppDataDir();

/// Appends " - NoSettingsMode" to @p path when the no-settings mode is on, creates the folder and returns its
/// path.
VEKAPPCORE_EXPORT QString CreateDirNoSettingSuffix(QString& path);

/// @{
/// Fixed folders within the temporary root; not created.
[[nodiscard]] VEKAPPCORE_EXPORT QString GetTempAppImageDir();
[[nodiscard]] VEKAPPCORE_EXPORT QString GetTempSdkDir();
/// @}

/// The active ScopedTempFolder, or the temporary root when there is none.
[[nodiscard]] VEKAPPCORE_EXPORT QString GetTempDir();

/// This application's folder among those that all users share, created; empty when the organisation's or the
/// application's name is not set or the platform has none.
[[nodiscard]] VEKAPPCORE_EXPORT QString GetUserPublicDir();

/// True when the cleaned @p path begins with the temporary root, in whatever case.
[[nodiscard]] VEKAPPCORE_EXPORT bool IsInTempDir(const QString& path);

/// The source tree that the executable was built in: the nearest folder above it with CMakePresets.json;
/// empty for an installed one. Looked up once.
[[nodiscard]] VEKAPPCORE_EXPORT QString GetSolutionDir();

/// A new empty file in GetTempDir, named @p prefix, six characters that make it unique, @p suffix. The caller
/// removes it.
/// @throws Exception::InternalAppException  it cannot be created; the message names it.
[[nodiscard]] VEKAPPCORE_EXPORT QString GetTempFilename(const QString& prefix = {},
                                                        const QString& suffix = {});
} // namespace vek::App
