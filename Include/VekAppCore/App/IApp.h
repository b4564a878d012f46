#pragma once
#include "VekAppCore/App/AppConfiguration.h"
#include "VekAppCore/Export.h"
#include "VekBase/RawPtr.h"
#include <QString>

class QWidget;

namespace vek::Threading
{
class IEventHolder;
} // namespace vek::Threading

namespace vek::App
{
/// The application, implemented by the executable; ApplicationFrame is a ready one. Everything here may be
/// asked from any thread.
class VEKAPPCORE_EXPORT IApp : public SafeObject
{
public:
    ~IApp() override;

    /// Where functions for the main thread are posted; null while it cannot take any.
    virtual RawPtr<Threading::IEventHolder> GetPostEventTarget() = 0;
    /// @{
    /// What the functions of the same names in Application.h answer.
    virtual QString GetApplicationName() = 0;
    virtual AppConfiguration GetAppConfiguration() = 0;
    virtual bool IsDevFeatureAllowed() = 0;
    virtual bool IsAppInTouchMode() = 0;
    /// @}

    /// May be null.
    virtual RawPtr<QWidget> GetMainWidget() = 0;
    /// @{
    /// From the configuration of a ready frame.
    virtual VersionNumber GetVersion() = 0;
    virtual VersionNumber GetSecondVersion() = 0;
    /// @}
};
} // namespace vek::App
