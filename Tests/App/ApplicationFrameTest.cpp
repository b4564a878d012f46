#include "VekAppCore/App/ApplicationFrame.h"
#include "Plugins/IThermometer.h"
#include "Support/TestSupport.h"
#include "VekAppCore/App/Application.h"
#include "VekAppCore/App/DeclarationSystem.h"
#include "VekAppCore/App/FactoryService.h"
#include "VekAppCore/App/InitExtension.h"
#include "VekAppCore/Threading/TaskExecutor.h"
#include "VekBase/PluginMgr.h"
#include "VekBase/ScopedTempFolder.h"
#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <gmock/gmock.h>

namespace vek::App
{
namespace
{
const QString pluginFile = QStringLiteral(VEK_THERMOMETER_PLUGIN);

bool IsMapped(const QString& module)
{
    QFile maps(QStringLiteral("/proc/self/maps"));
    return maps.open(QIODevice::ReadOnly) && maps.readAll().contains(QFileInfo(module).fileName().toUtf8());
}
} // namespace

TEST(ApplicationFrame, APluginLoadedAfterStartSharesTheRegistryAndLeavesNothingBehind)
{
    auto frame = std::make_unique<ApplicationFrame>(AppConfiguration());
    frame->Start();
    EXPECT_EQ(Services().Get<IThermometer>(), nullptr);
    frame->LoadPlugin(pluginFile);

    const RawPtr<IThermometer> thermometer = Services().Get<IThermometer>();
    ASSERT_NE(thermometer, nullptr);
    EXPECT_EQ(thermometer->GetCelsius(), 20.5);
    EXPECT_EQ(thermometer->GetManagerSeen(), &Services());
    EXPECT_NE(DeclarationSystem::GetInstance().FindExtension<IThermometer>(), nullptr);
    EXPECT_TRUE(IsMapped(pluginFile));

    frame.reset();
    EXPECT_EQ(thermometer, nullptr);
    EXPECT_EQ(DeclarationSystem::GetInstance().GetExtensionCount(), 0U);
    EXPECT_FALSE(IsMapped(pluginFile));
}

TEST(ApplicationFrame, LoadsTheAddonsFolderAndGoesOnWithoutABadOne)
{
    const TestSupport::LogRecorder log;
    const ScopedTempFolder addons;
    QFile::copy(pluginFile, addons.GetPath() + QStringLiteral("/good.so"));
    QFile bad(addons.GetPath() + QStringLiteral("/bad.so"));
    ASSERT_TRUE(bad.open(QIODevice::WriteOnly));
    bad.write("no module");
    bad.close();

    ApplicationFrame frame{AppConfiguration()};
    frame.Start(addons.GetPath());
    EXPECT_NE(Services().Get<IThermometer>(), nullptr);
    EXPECT_NE(Services().Get<IFactoryService>(), nullptr);
    ASSERT_EQ(log.GetLines().size(), 1U);
    EXPECT_EQ(log.GetLines()[0].verbosity, Log::Verbosity::Warning);
    EXPECT_THAT(log.GetLines()[0].message.toStdString(), testing::HasSubstr("bad.so"));
}

TEST(ApplicationFrame, IsTheApplicationWhileItLives)
{
    {
        AppConfiguration configuration;
        configuration.applicationName = QStringLiteral("Plate Check Demonstrator");
        ApplicationFrame frame(configuration);
        EXPECT_EQ(GetApplicationName(), QStringLiteral("Plate Check Demonstrator"));
        EXPECT_EQ(QCoreApplication::organizationName(), QStringLiteral("Ostrafel"));
        EXPECT_TRUE(IsDemonstrator());
        bool hasRun = false;
        frame.GetTaskExecutor().ExecuteAsync([&hasRun] { PostEvent([&hasRun] { hasRun = true; }); });
        EXPECT_TRUE(TestSupport::WaitFor([&hasRun] { return hasRun; }));
    }
    EXPECT_EQ(GetAppPtr(), nullptr);
    EXPECT_EQ(ServicesPtr(), nullptr);
}

TEST(GenericInitExtension, TakesApplicationPluginsOnly)
{
    IO::PluginOwner owner(pluginFile);
    int calls = 0;
    GenericInitExtension extension([&calls](IO::PluginOwner&, IAppPlugin&) { ++calls; }, 900);
    EXPECT_EQ(extension.Apply(owner), 0);
    EXPECT_EQ(calls, 1);
    GenericInitExtension empty({}, 900);
    EXPECT_EQ(empty.Apply(owner), 0);
    IO::PluginOwner foreign(QStringLiteral(VEK_FOREIGN_PLUGIN));
    EXPECT_EQ(extension.Apply(foreign), 1);
    EXPECT_EQ(calls, 1);
    DeclarationSystem::GetInstance()
        .DeleteAllExtensions(); // the plug-ins' declarations, before they are unloaded
}
} // namespace vek::App
