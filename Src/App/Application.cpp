#include "VekAppCore/App/Application.h"
#include "VekAppCore/Threading/EventQueue.h"
#include "VekBase/Exception.h"
#include "VekBase/Process.h"
#include <QFileInfo>

namespace vek::App
{
namespace
{
RawPtr<IApp> g_app;

RawPtr<Threading::IEventHolder> GetPostEventTarget()
{
    IApp* const app = g_app.Get();
    return app ? app->GetPostEventTarget() : nullptr;
}
} // namespace

void SetApp(RawPtr<IApp> app) { g_app = std::move(app); }

IApp& GetApp() { return *g_app; }

RawPtr<IApp> GetAppPtr() noexcept { return g_app; }

QString GetApplicationName()
{
    IApp* const app = g_app.Get();
    return app ? app->GetApplicationName() : QStringLiteral("Application");
}

bool IsDemonstrator()
{
    IApp* const app = g_app.Get();
    return app && app->GetApplicationName().contains(QLatin1String("Demonstrator"));
}

bool IsDevFeatureAllowed()
{
    IApp* const app = g_app.Get();
    return app && app->IsDevFeatureAllowed();
}

bool IsAppInTouchMode()
{
    IApp* const app = g_app.Get();
    return app && app->IsAppInTouchMode();
}

RawPtr<QWidget> GetMainWidget()
{
    IApp* const app = g_app.Get();
    return app ? app->GetMainWidget() : nullptr;
}

bool IsPostEventAvailable() { return GetPostEventTarget() != nullptr; }

void PostEvent(std::function<void()> function, const std::source_location& where)
{
    const RawPtr<Threading::IEventHolder> holder = GetPostEventTarget();
    if (Threading::IEventHolder* const target = holder.Get())
        target->PostEvent(std::make_shared<Threading::FunctionEvent>(std::move(function)), where);
    else
        function();
}

AppConfiguration GetAppConfig()
{
    IApp* const app = g_app.Get();
    return app ? app->GetAppConfiguration() : AppConfiguration();
}

QString GetAppTypeSuffix(EAppType type, const QString& base)
{
    switch (type)
    {
    case EAppType::Development: return base + QLatin1String("Dev");
    case EAppType::Nightly: return base + QLatin1String("Nightly");
    case EAppType::Beta: return base + QLatin1String("Beta");
    }
    return {}; // not the base: callers rely on it
}

QString GetApplicationPath(const AppConfiguration& config)
{
    if (!config.applicationFile.isEmpty())
        return QFileInfo(config.applicationFile).path() + u'/';
    return QString::fromStdU16String(GetExecutablePath().generic_u16string());
}
} // namespace vek::App
