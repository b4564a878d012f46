#include "Plugins/IThermometer.h"
#include <QCoreApplication>
#include <VekAppCore/VekAppCore.h>
#include <cstdio>

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    vek::App::ApplicationFrame frame({});
    frame.Start(vek::App::GetAddonsDir());
    const auto thermometer = vek::App::Services().Get<IThermometer>();
    if (!thermometer || !thermometer->IsPluginInitialized())
        return 1;
    std::puts("Hello from a plug-in");
}
