#pragma once
#include "VekAppCore/App/ServiceBase.h"
#include "VekAppCore/App/ServiceManager.h"

/// What the test program and the test plug-in agree on.
class IThermometer : public vek::App::IService<IThermometer>
{
public:
    [[nodiscard]] virtual double GetCelsius() const = 0;
    [[nodiscard]] virtual const vek::App::IServiceManager* GetManagerSeen() const = 0;
};
