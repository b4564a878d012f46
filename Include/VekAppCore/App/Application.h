#pragma once
#include "VekAppCore/App/IApp.h"
#include <functional>
#include <source_location>

/// @file
/// What the rest of the program asks of the application. Everything but SetApp may be asked from any thread;
/// without an application the answers are neutral.
namespace vek::App
{
/// Makes @p app the application of this process; null at shut-down. Main thread only.
VEKAPPCORE_EXPORT void SetApp(RawPtr<IApp> app);

/// @throws Exception::NullptrException  no application is set, or it is gone.
[[nodiscard]] VEKAPPCORE_EXPORT IApp& GetApp();

/// Null when no application is set, or it is gone.
[[nodiscard]] VEKAPPCORE_EXPORT RawPtr<IApp> GetAppPtr() noexcept;

/// "Application" without one.
[[nodiscard]] VEKAPPCORE_EXPORT QString GetApplicationName();

/// True when the application's name contains "Demonstrator".
[[nodiscard]] VEKAPPCORE_EXPORT bool IsDemonstrator();

/// @{
/// @return false without an application.
[[nodiscard]] VEKAPPCORE_EXPORT bool IsDevFeatureAllowed();
[[nodiscard]] VEKAPPCORE_EXPORT bool IsAppInTouchMode();
/// @}

/// May be null.
[[nodiscard]] VEKAPPCORE_EXPORT RawPtr<QWidget> GetMainWidget();

/// True when PostEvent reaches the main thread.
[[nodiscard]] VEKAPPCORE_EXPORT bool IsPostEventAvailable();

/// Runs @p function later on the main thread, in the order of posting; where no application can take it, at
/// once on the calling thread.
VEKAPPCORE_EXPORT void PostEvent(std::function<void()> function,
                                 const std::source_location& where = std::source_location::current());

/// Default-constructed without an application.
[[nodiscard]] VEKAPPCORE_EXPORT AppConfiguration GetAppConfig();

/// @p base followed by "Dev", "Nightly" or "Beta"; empty, not @p base, for a build without flavour.
[[nodiscard]] VEKAPPCORE_EXPORT QString GetAppTypeSuffix(EAppType type, const QString& base);

/// The folder of the configuration's application file, with a slash at its end; the executable's folder,
/// without one, when the configuration names no file.
[[nodiscard]] VEKAPPCORE_EXPORT QString GetApplicationPath(const AppConfiguration& config);
} // namespace vek::App
