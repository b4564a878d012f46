#include "Plugins/IThermometer.h"
#include "VekAppCore/App/InitExtension.h"
#include "VekAppCore/App/RegisterService.h"

namespace
{
class Thermometer final : public IThermometer
{
public:
    [[nodiscard]] double GetCelsius() const override { return 20.5; }
    [[nodiscard]] const vek::App::IServiceManager* GetManagerSeen() const override
    {
        return vek::App::ServicesPtr().Get();
    }
};
VEK_DECLARE_SERVICE(IThermometer, Thermometer);

class ThermometerPlugin final : public vek::App::IAppPlugin
{
public:
    void Initialize() override
    {
        vek::App::DeclarationSystem::GetInstance().Append<IThermometer>([](IThermometer&) {}, "initialised");
    }
};
} // namespace

VEK_PLUGIN(ThermometerPlugin)
