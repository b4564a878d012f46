#include "VekAppCore/App/Application.h"
#include "Support/TestSupport.h"
#include "VekAppCore/App/ApplicationFrame.h"
#include "VekAppCore/App/CentralWidget.h"
#include "VekAppCore/App/Folders.h"
#include "VekAppCore/App/NoSettingsMode.h"
#include "VekAppCore/Threading/TaskExecutor.h"
#include "VekBase/CommandLine.h"
#include "VekBase/ScopedTempFolder.h"
#include <QCoreApplication>
#include <QDir>
#include <QMainWindow>

namespace vek::App
{
static void ExpectNeutralAnswers()
{
    EXPECT_THROW(static_cast<void>(GetApp()), Exception::NullptrException);
    EXPECT_TRUE(!GetAppPtr() && !GetMainWidget() && !GetCentralWidget());
    EXPECT_FALSE(IsDemonstrator() || IsDevFeatureAllowed() || IsAppInTouchMode() || IsPostEventAvailable());
    EXPECT_EQ(GetApplicationName() + GetAppConfig().applicationName, "Application");
    bool hasRun = false;
    PostEvent([&hasRun] { hasRun = true; });
    EXPECT_TRUE(hasRun);
    EXPECT_THROW(PostEvent({}), std::bad_function_call);
}

TEST(Application, AnswersOnlyWhileThereIsOne)
{
    ExpectNeutralAnswers();
    AppConfiguration configuration;
    configuration.applicationName = "XDemonstratorX";
    configuration.isDevFeatureAllowed = configuration.isInTouchMode = true;
    auto frame = std::make_unique<ApplicationFrame>(configuration);
    EXPECT_EQ(&GetApp(), frame.get());
    EXPECT_EQ(GetApplicationName(), "XDemonstratorX");
    EXPECT_TRUE(IsDemonstrator() && IsDevFeatureAllowed() && IsAppInTouchMode() && IsPostEventAvailable());
    QMainWindow window;
    window.setCentralWidget(new QWidget());
    frame->SetMainWidget(&window);
    EXPECT_EQ(GetCentralWidget().Get(), window.centralWidget());
    frame->SetMainWidget(window.centralWidget());
    EXPECT_EQ(GetMainWidget().Get(), window.centralWidget());
    EXPECT_EQ(GetCentralWidget(), nullptr) << "of a widget that is no main window";
    bool hasRun = false;
    frame->GetTaskExecutor().ExecuteAsync([&hasRun] { PostEvent([&hasRun] { hasRun = true; }); });
    EXPECT_TRUE(TestSupport::WaitFor([&hasRun] { return hasRun; }));
    SetApp(nullptr);
    ExpectNeutralAnswers();
    SetApp(frame.get());
    frame.reset();
    ExpectNeutralAnswers();
    configuration.applicationName = "XdemonstratorX";
    frame = std::make_unique<ApplicationFrame>(configuration);
    EXPECT_FALSE(IsDemonstrator()) << "case not heeded";
}

TEST(AppConfiguration, NamesThePathAndTheFlavour)
{
    AppConfiguration configuration;
    EXPECT_EQ(GetApplicationPath(configuration), QCoreApplication::applicationDirPath());
    configuration.applicationFile = "/opt/desk/bin/Desk.app";
    EXPECT_EQ(GetApplicationPath(configuration), "/opt/desk/bin/");
    for (int type = -1; const char* const suffix : {"", "AppDev", "AppNightly", "AppBeta", ""})
        EXPECT_EQ(GetAppTypeSuffix(static_cast<EAppType>(type++), "App"), suffix);
}

TEST(Folders, NoSettingsModeHasFoldersOfItsOwn)
{
    QCoreApplication::setApplicationName("App 2.0");
    const QString roaming = GetAppDataDir();
    const QString local = GetLocalAppDataDir();
    EXPECT_TRUE(roaming.endsWith("/App 2.0") && QDir(roaming).exists() && QDir(local).exists());
    SetNoSettingsMode(true);
    EXPECT_EQ(GetAppDataDir(), roaming + " - NoSettingsMode");
    EXPECT_EQ(GetLocalAppDataDir(), local + " - NoSettingsMode");
    SetNoSettingsMode(false);
    SetCmdLineArgs({{"--nosettings"}});
    EXPECT_FALSE(IsNoSettingsModeEnabled());
    SetCmdLineArgs({{"--NoSettings"}});
    QString path = local + "/own/deep";
    EXPECT_EQ(CreateDirNoSettingSuffix(path), path);
    EXPECT_EQ(path, local + "/own/deep - NoSettingsMode");
    EXPECT_TRUE(QDir(path).exists());
    SetCmdLineArgs(std::nullopt);
}

TEST(Folders, StandUnderTheirRoots)
{
    const QString root = GetTempDir();
    const ScopedTempFolder active;
    EXPECT_EQ(GetTempDir(), active.GetPath());
    EXPECT_EQ(GetTempAppImageDir(), root + "/AppImages");
    EXPECT_EQ(GetTempSdkDir(), root + "/Sdk");
    EXPECT_TRUE(IsInTempDir(root.toUpper() + "/x/../Y"));
    EXPECT_FALSE(IsInTempDir(root + "/../x"));
    EXPECT_THAT(GetTempFilename("scan", ".ply").toStdString(),
                testing::MatchesRegex(active.GetPath().toStdString() + "/scan.{6}\\.ply"));
    EXPECT_THROW(static_cast<void>(GetTempFilename("missing/")), Exception::ExceptionBase);
    EXPECT_EQ(GetAddonsDir(), QCoreApplication::applicationDirPath() + "/addons");
    QCoreApplication::setApplicationName("Desk");
    QCoreApplication::setOrganizationName("");
    EXPECT_EQ(GetUserPublicDir(), "");
    QCoreApplication::setOrganizationName("Ostrafel");
    EXPECT_TRUE(GetUserPublicDir().endsWith("/Ostrafel/Desk") && QDir(GetUserPublicDir()).exists());
}
} // namespace vek::App
