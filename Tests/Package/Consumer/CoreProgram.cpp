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
    const auto greeting = vek::TrString::translate("CoreProgram", "Hello from a plug-in");
    std::puts(qUtf8Printable(greeting.ToString()));
    vek::App::InstallTranslations(QLocale(QLocale::French));
    std::puts(qUtf8Printable(greeting.ToString()));
}
