#pragma once
#include "VekAppCore/App/IApp.h"
#include <memory>

namespace vek::Threading
{
class TaskExecutor;
} // namespace vek::Threading

namespace vek::App
{
/// A ready application: made after the QApplication, on the main thread, it marks that thread, makes the
/// service manager and the executor and sets itself as the application; its end undoes this in reverse. Main
/// thread only, except where IApp says otherwise.
class VEKAPPCORE_EXPORT ApplicationFrame : public IApp
{
public:
    /// Also gives Qt the names of the application and its organisation.
    explicit ApplicationFrame(AppConfiguration configuration);
    /// Waits for the tasks, takes the translations back, destroys the services, then unloads the plug-ins.
    ~ApplicationFrame() override;

    /// Runs what the modules declared, loads the plug-ins of @p addonsFolder, shows the language of the
    /// settings (see SetLanguage), creates every declared service, then notifies them. A plug-in that cannot
    /// be loaded is a warning in the log.
    /// @param addonsFolder  see GetAddonsDir; empty for none.
    /// @throws what the constructor of a service throws.
    void Start(const QString& addonsFolder = {});

    /// Loads one more plug-in after Start, with its translations, creates the services that it declares, then
    /// notifies all services.
    /// @throws IO::PluginException  it cannot be loaded; also what the constructor of a service throws.
    void LoadPlugin(const QString& file);

    /// @param widget  stays the caller's.
    void SetMainWidget(RawPtr<QWidget> widget);
    /// Nobody is told: whoever makes a window asks IsAppInTouchMode.
    void SetTouchMode(bool isOn);

    /// Lives as long as the frame, whose end waits for its tasks.
    [[nodiscard]] Threading::TaskExecutor& GetTaskExecutor();

    RawPtr<Threading::IEventHolder> GetPostEventTarget() override;
    QString GetApplicationName() override;
    AppConfiguration GetAppConfiguration() override;
    bool IsDevFeatureAllowed() override;
    bool IsAppInTouchMode() override;
    RawPtr<QWidget> GetMainWidget() override;
    VersionNumber GetVersion() override;
    VersionNumber GetSecondVersion() override;

private:
    struct Impl;
    const std::unique_ptr<Impl> m_impl;
};
} // namespace vek::App
