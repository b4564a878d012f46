#include <VekAppCore/App.h>
#include <VekAppCore/Widgets.h>
#include <cstdio>

using namespace vek;

int main(int argc, char** argv)
{
    const App::VekQApplication application(argc, argv);
    App::AppConfiguration configuration;
    configuration.applicationName = "Gauge";
    App::ApplicationFrame frame(configuration);
    frame.Start();

    std::printf("%s is ready\n", qUtf8Printable(App::GetApplicationName()));
}
