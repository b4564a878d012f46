#include <VekAppCore/App.h>
#include <VekAppCore/Widgets.h>
#include <cstdio>

/// A service: made and owned by the library, reached from everywhere.
class Greeter final : public vek::App::IService<Greeter>
{
public:
    vek::TrString GetGreeting() const { return vek::TrString::translate("Greeter", "Hello from a service"); }
};
VEK_DECLARE_SERVICE(Greeter, Greeter);

int main(int argc, char** argv)
{
    vek::App::VekQApplication application(argc, argv);
    vek::App::AppConfiguration configuration;
    configuration.applicationName = "FirstProgram";
    vek::App::ApplicationFrame frame(configuration);
    frame.Start();

    vek::App::PostEvent([] { // from any thread; it runs on this one
        const auto& greeter = vek::App::Services().Require<Greeter>();
        std::puts(qUtf8Printable(greeter.GetGreeting().ToString()));
        QCoreApplication::quit();
    });
    return application.exec();
}
