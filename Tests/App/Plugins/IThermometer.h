#pragma once
#include "VekAppCore/App/ServiceManager.h"

/// What the test program and the test plug-in agree on.
struct IThermometer : vek::App::IService<IThermometer>
{
    [[nodiscard]] virtual const vek::App::IServiceManager* GetManagerSeen() const = 0;
    [[nodiscard]] virtual bool IsPluginInitialized() const = 0;
};
