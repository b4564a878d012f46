#include "UsageReport.h"
#include "VekAppCore/Analytics/AnalyticsService.h"
#include "VekAppCore/App/Application.h"
#include "VekAppCore/App/ServiceManager.h"
#include "VekAppCore/App/Translations.h"
#include "VekAppCore/Network/HttpService.h"
#include <QCoreApplication>
#include <QUrlQuery>
#include <QVersionNumber>

namespace vek::Desk
{
namespace
{
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

RawPtr<Analytics::AnalyticsService> FindService()
{
    return App::Services().Get<Analytics::AnalyticsService>();
}
} // namespace

void ConfigureUsageReport(App::AppConfiguration& configuration, const QString& address)
{
    configuration.analyticsAddress = address;
    configuration.analyticsTrackingId = u"UA-00000000-1"_s; // those of an example
    configuration.analyticsStream = {u"G-0000000000"_s, u"example"_s};
}

void StartUsageReport(bool isAgreed, const QString& clientId)
{
    const auto service = FindService();
    const App::AppConfiguration configuration = App::GetAppConfig();
    if (!service || configuration.analyticsAddress.isEmpty())
        return;
    service->InitializeService(configuration.analyticsStream, configuration.analyticsTrackingId,
                               App::GetShownLanguage(), {}, {}, clientId);
    service->SetServiceUsed(isAgreed);
}

ScopeBase OpenPage(const QString& page)
{
    const auto service = FindService();
    return service ? service->OpenPage(page) : ScopeBase();
}

void ReportEvent(const QString& category, const QString& action)
{
    if (const auto service = FindService())
        service->SendEvent(category, action);
}

void ReportTiming(const QString& category, const QString& name,
                  std::chrono::duration<double, std::milli> duration)
{
    if (const auto service = FindService())
        service->SendTiming(category, name, duration);
}

void LookForUpdate(const QString& address, std::function<void(const QString&)> tell)
{
    const auto http = App::Services().Get<Network::HttpService>();
    if (!http || address.isEmpty())
        return;
    const auto own = QVersionNumber::fromString(QCoreApplication::applicationVersion());
    const auto compare = [tell = std::move(tell), own](std::future<QString> answer) {
        QString version;
        try
        {
            version = answer.get().trimmed();
        }
        catch (const std::exception&)
        {
            return; // which the service has logged
        }
        if (QVersionNumber::fromString(version) > own)
            App::PostEvent([tell, version] { tell(version); });
    };
    http->GetSender().SendGetRequest(QUrl(address), {}, 30s, compare);
}
} // namespace vek::Desk
