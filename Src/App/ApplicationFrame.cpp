#include "VekAppCore/App/ApplicationFrame.h"
#include "App/Language.h"
#include "VekAppCore/App/Application.h"
#include "VekAppCore/App/DeclarationSystem.h"
#include "VekAppCore/App/Folders.h"
#include "VekAppCore/App/Log.h"
#include "VekAppCore/App/ServiceManager.h"
#include "VekAppCore/App/Translations.h"
#include "VekAppCore/Threading/TaskExecutor.h"
#include "VekBase/Multithread.h"
#include "VekBase/PluginMgr.h"
#include <QCoreApplication>
#include <atomic>

namespace vek::App
{
struct ApplicationFrame::Impl
{
    const AppConfiguration configuration;
    std::atomic<bool> isInTouchMode;
    RawPtr<QWidget> mainWidget;
    std::unique_ptr<IServiceManager> services;
    std::unique_ptr<Threading::TaskExecutor> executor;
    RawPtr<Threading::IEventHolder> postEventTarget; ///< The executor's main-thread side.
};

ApplicationFrame::ApplicationFrame(AppConfiguration configuration)
    : m_impl(new Impl{std::move(configuration), false, {}, {}, {}, {}})
{
    Multithread::SetMainThread();
    QCoreApplication::setOrganizationName(m_impl->configuration.organizationName);
    QCoreApplication::setOrganizationDomain(m_impl->configuration.organizationDomain);
    QCoreApplication::setApplicationName(m_impl->configuration.applicationName);

    m_impl->isInTouchMode = m_impl->configuration.isInTouchMode;
    const auto executor = Threading::CreateDefaultTaskExecutorImpl();
    m_impl->postEventTarget = dynamic_cast<Threading::IEventHolder*>(executor.get());
    m_impl->executor = std::make_unique<Threading::TaskExecutor>(executor);
    m_impl->services = CreateServiceManager(true);
    SetApp(this);
}

ApplicationFrame::~ApplicationFrame()
{
    m_impl->executor.reset();
    RemoveTranslations(); // who shows English now may ask a service for it
    m_impl->services.reset();
    if (GetAppPtr() == RawPtr<IApp>(this))
        SetApp(nullptr);
    DeclarationSystem::GetInstance().Rewind();
    if (!IO::PluginMgr::GetInstance().GetPlugins().empty())
    {
        // Nothing may point into a module when it goes.
        DeclarationSystem::GetInstance().DeleteAllExtensions();
        IO::PluginMgr::GetInstance().UnloadAll();
    }
}

void ApplicationFrame::Start(const QString& addonsFolder)
{
    DeclarationSystem& declarations = DeclarationSystem::GetInstance();
    DynamicServicesDeclarationCtx declaration;
    declarations.RunAll(declaration);
    if (!addonsFolder.isEmpty())
        for (const IO::PluginException& failure : IO::PluginMgr::GetInstance().LoadFolder(addonsFolder))
            Log(Log::Verbosity::Warning, QString::fromUtf8(failure.what()));
    declarations.RunNew(declaration);
    InstallLanguage();
    DynamicServicesCreationCtx creation{m_impl->services.get()};
    declarations.RunAll(creation);
    m_impl->services->NotifyServices();
}

void ApplicationFrame::LoadPlugin(const QString& file)
{
    IO::PluginMgr::GetInstance().Load(file);
    AddNewTranslations();
    DeclarationSystem& declarations = DeclarationSystem::GetInstance();
    DynamicServicesDeclarationCtx declaration;
    declarations.RunNew(declaration);
    DynamicServicesCreationCtx creation{m_impl->services.get()};
    declarations.RunNew(creation);
    m_impl->services->NotifyServices();
}

void ApplicationFrame::SetMainWidget(RawPtr<QWidget> widget) { m_impl->mainWidget = std::move(widget); }

void ApplicationFrame::SetTouchMode(bool isOn) { m_impl->isInTouchMode = isOn; }

Threading::TaskExecutor& ApplicationFrame::GetTaskExecutor() { return *m_impl->executor; }

RawPtr<Threading::IEventHolder> ApplicationFrame::GetPostEventTarget() { return m_impl->postEventTarget; }

QString ApplicationFrame::GetApplicationName() { return m_impl->configuration.applicationName; }

AppConfiguration ApplicationFrame::GetAppConfiguration() { return m_impl->configuration; }

bool ApplicationFrame::IsDevFeatureAllowed() { return m_impl->configuration.isDevFeatureAllowed; }

bool ApplicationFrame::IsAppInTouchMode() { return m_impl->isInTouchMode; }

RawPtr<QWidget> ApplicationFrame::GetMainWidget() { return m_impl->mainWidget; }

VersionNumber ApplicationFrame::GetVersion() { return m_impl->configuration.version; }

VersionNumber ApplicationFrame::GetSecondVersion() { return m_impl->configuration.secondVersion; }
} // namespace vek::App
