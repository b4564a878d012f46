#include "Plugins/IThermometer.h"
#include "VekAppCore/App/InitExtension.h"
#include "VekAppCore/App/RegisterService.h"

static bool g_isInitialized = false;

struct Thermometer final : IThermometer
{
    const vek::App::IServiceManager* GetManagerSeen() const override { return vek::App::ServicesPtr().Get(); }
    bool IsPluginInitialized() const override { return g_isInitialized; }
};
VEK_DECLARE_SERVICE(IThermometer, Thermometer);

struct ThermometerPlugin final : vek::App::IAppPlugin
{
    void Initialize() override { g_isInitialized = true; }
};
VEK_PLUGIN(ThermometerPlugin)
