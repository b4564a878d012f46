#pragma once
#include "VekAppCore/Settings/VekQSettings.h"
#include "VekBase/LogText.h"
#include <memory>

/// @file
/// Where the settings of the running application are: for every user and version a store of its own, which
/// starts with the values of the version before. The names come from the QCoreApplication. Main thread only.
///
/// @code
/// const auto settings = App::GetAppSettings();
/// const ScopeBase group = settings->ScopeGroup("View");
/// settings->SetValue("tolerance", 0.05);
/// const double tolerance = settings->GetValue("tolerance", 0.1);
/// @endcode
namespace vek::App
{
/// The names under which a store is kept.
struct SettingsPath
{
    QString organisation;     ///< The folder.
    QString applicationEntry; ///< "App 2.0"
};
/// With a slash between the two.
[[nodiscard]] VEKAPPCORE_EXPORT std::string ToLogText(const SettingsPath& path);
using vek::PrintTo;

/// @{
/// Both empty while the organisation or the application has no name.
[[nodiscard]] VEKAPPCORE_EXPORT SettingsPath GetAppSettingsPath();
[[nodiscard]] VEKAPPCORE_EXPORT bool IsSettingsPathValid(const SettingsPath& path);
/// @}

/// The user's store of this version. The first request in a process carries over what an earlier version has
/// left, unless in unit-test mode. Without a valid path, a scratch store that erases itself.
[[nodiscard]] VEKAPPCORE_EXPORT std::unique_ptr<VekQSettings> GetAppSettings();

/// The store of the machine, which only an administrator may write to.
[[nodiscard]] VEKAPPCORE_EXPORT std::unique_ptr<VekQSettings> GetAllUsersSettings();

/// Marks the store of this version: nothing is carried over into it any more.
VEKAPPCORE_EXPORT void InitSettings();

/// Into a store that is not marked, the values of the latest version before this one, in place of its own.
/// The order of versions is that of their text: "10.0" comes before "9.0".
VEKAPPCORE_EXPORT void CopyPreviousSettingsIfNeeded();
} // namespace vek::App
