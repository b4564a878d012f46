#pragma once
#include "VekAppCore/App/AppConfiguration.h"
#include "VekBase/ScopeBase.h"
#include <QString>
#include <chrono>
#include <functional>

/// How the desk is used, for those who make it, once the user has agreed. Main thread only; harmless where
/// there is no analytics service.
namespace vek::Desk
{
/// Where reports go: nowhere, unless @p address is given.
void ConfigureUsageReport(App::AppConfiguration& configuration, const QString& address);

/// Begins to report.
/// @param clientId  a random number of this installation.
void StartUsageReport(bool isAgreed, const QString& clientId);

/// The page is open while the result lives.
[[nodiscard]] ScopeBase OpenPage(const QString& page);
void ReportEvent(const QString& category, const QString& action);
void ReportTiming(const QString& category, const QString& name,
                  std::chrono::duration<double, std::milli> duration);

/// Looks for a newer version at an address that holds its number, such as "2.1", and tells @p tell, once,
/// where there is one. Where the address cannot be reached, only the log says so.
void LookForUpdate(const QString& address, std::function<void(const QString& version)> tell);
} // namespace vek::Desk
