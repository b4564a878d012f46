#include "VekAppCore/App/VekQApplication.h"
#include "VekBase/Multithread.h"
#include "VekBase/Process.h"
#include <QTemporaryDir>
#include <gmock/gmock.h>

int main(int argc, char** argv)
{
    // A home of its own: no test sees or changes the user's settings and folders.
    const QTemporaryDir home;
    for (const char* variable :
         {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME", "XDG_RUNTIME_DIR"})
        qputenv(variable, home.path().toUtf8());
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("LC_ALL", "C.UTF-8"); // texts are compared in English
    qunsetenv("LANGUAGE");

    testing::InitGoogleMock(&argc, argv);
    vek::SetUnitTestMode(true);
    vek::Multithread::SetMainThread();
    vek::App::VekQApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
