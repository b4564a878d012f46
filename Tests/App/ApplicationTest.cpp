#include "VekAppCore/App/Application.h"
#include "Support/TestSupport.h"
#include "VekAppCore/App/Folders.h"
#include "VekAppCore/App/NoSettingsMode.h"
#include "VekAppCore/Threading/PostEventManager.h"
#include "VekBase/CommandLine.h"
#include "VekBase/Process.h"
#include "VekBase/ScopedTempFolder.h"
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMainWindow>
#include <QRegularExpression>
#include <gmock/gmock.h>
#include <memory>

namespace vek::App
{
namespace
{
class FakeApp final : public IApp
{
public:
    RawPtr<Threading::IEventHolder> GetPostEventTarget() override { return target; }
    QString GetApplicationName() override { return name; }
    AppConfiguration GetAppConfiguration() override
    {
        AppConfiguration configuration;
        configuration.applicationName = name;
        return configuration;
    }
    bool IsDevFeatureAllowed() override { return true; }
    bool IsAppInTouchMode() override { return true; }
    RawPtr<QWidget> GetMainWidget() override { return widget; }
    VersionNumber GetVersion() override { return {1, 2, 3, 4}; }
    VersionNumber GetSecondVersion() override { return {5, 6, 7, 8}; }

    QString name = QStringLiteral("Fake");
    RawPtr<Threading::IEventHolder> target;
    RawPtr<QWidget> widget;
};

void ExpectNeutralAnswers()
{
    EXPECT_THROW(static_cast<void>(GetApp()), Exception::NullptrException);
    EXPECT_EQ(GetAppPtr(), nullptr);
    EXPECT_EQ(GetApplicationName(), QStringLiteral("Application"));
    EXPECT_FALSE(IsDemonstrator());
    EXPECT_FALSE(IsDevFeatureAllowed());
    EXPECT_FALSE(IsAppInTouchMode());
    EXPECT_FALSE(IsPostEventAvailable());
    EXPECT_EQ(GetMainWidget(), nullptr);
    EXPECT_EQ(GetCentralWidget(), nullptr);
    EXPECT_EQ(GetAppConfig().organizationName, QStringLiteral("Ostrafel"));
    bool hasRun = false;
    PostEvent([&hasRun] { hasRun = true; });
    EXPECT_TRUE(hasRun);
    EXPECT_THROW(PostEvent({}), std::bad_function_call);
}
} // namespace

TEST(Application, AnswersAreNeutralBeforeWithoutAndAfterAnApplication)
{
    ExpectNeutralAnswers();
    FakeApp app;
    SetApp(&app);
    EXPECT_EQ(&GetApp(), &app);
    EXPECT_TRUE(IsDevFeatureAllowed());
    SetApp(nullptr);
    ExpectNeutralAnswers();
    SetApp(std::make_unique<FakeApp>().get()); // dies at once
    ExpectNeutralAnswers();
}

TEST(Application, ForwardsToTheApplication)
{
    FakeApp app;
    SetApp(&app);
    EXPECT_FALSE(IsDemonstrator());
    app.name = QStringLiteral("Xdemonstrator");
    EXPECT_FALSE(IsDemonstrator());
    app.name = QStringLiteral("XDemonstratorX");
    EXPECT_TRUE(IsDemonstrator());

    QWidget plain;
    app.widget = &plain;
    EXPECT_EQ(GetMainWidget().Get(), &plain);
    EXPECT_EQ(GetCentralWidget(), nullptr);
    auto window = std::make_unique<QMainWindow>();
    window->setCentralWidget(new QWidget());
    app.widget = window.get();
    EXPECT_EQ(GetCentralWidget().Get(), window->centralWidget());
    window.reset();
    EXPECT_EQ(GetCentralWidget(), nullptr);

    Threading::PostEventManager manager;
    app.target = &manager;
    EXPECT_TRUE(IsPostEventAvailable());
    bool hasRun = false;
    PostEvent([&hasRun] { hasRun = true; });
    EXPECT_FALSE(hasRun);
    QCoreApplication::sendPostedEvents();
    EXPECT_TRUE(hasRun);
}

TEST(AppConfiguration, HasItsDefaults)
{
    const AppConfiguration configuration;
    EXPECT_EQ(configuration.splashImage, QStringLiteral("SPLASHIMAGE"));
    EXPECT_EQ(configuration.splashImageFormat, QStringLiteral("PNG"));
    EXPECT_EQ(configuration.splashTextTop, 196);
    EXPECT_EQ(configuration.splashTextColor, QColor(150, 150, 150, 255));
    EXPECT_EQ(configuration.settingsOrganizationName, QStringLiteral("Ostrafel"));
    EXPECT_EQ(configuration.shownVersionNumbers, 3);
    EXPECT_EQ(GetAppTypeSuffix(configuration.appType, QStringLiteral("App")), QString());
}

TEST(Application, TheSuffixOfABuildWithoutFlavourIsEmptyNotTheBase)
{
    const auto suffix = [](int type) {
        return GetAppTypeSuffix(static_cast<EAppType>(type), QStringLiteral("App"));
    };
    EXPECT_EQ(suffix(0), QStringLiteral("AppDev"));
    EXPECT_EQ(suffix(1), QStringLiteral("AppNightly"));
    EXPECT_EQ(suffix(2), QStringLiteral("AppBeta"));
    EXPECT_EQ(suffix(3), QString());
    EXPECT_EQ(suffix(-1), QString());
}

TEST(Application, ThePathIsTheFolderOfTheApplicationFile)
{
    AppConfiguration configuration;
    EXPECT_EQ(GetApplicationPath(configuration).toStdString(), GetExecutablePath().string());
    configuration.applicationFile = QStringLiteral("/opt/desk/bin/Desk.app");
    EXPECT_EQ(GetApplicationPath(configuration), QStringLiteral("/opt/desk/bin/"));
}

TEST(NoSettingsMode, TheCommandLineOverrulesTheFlag)
{
    EXPECT_FALSE(IsNoSettingsModeEnabled());
    SetNoSettingsMode(true);
    EXPECT_TRUE(IsNoSettingsModeEnabled());
    SetNoSettingsMode(false);
    EXPECT_FALSE(IsNoSettingsModeEnabled());
    SetCmdLineArgs({{"--NoSettings"}});
    SetNoSettingsMode(false);
    EXPECT_TRUE(IsNoSettingsModeEnabled());
    SetCmdLineArgs(std::nullopt);
    EXPECT_FALSE(IsNoSettingsModeEnabled());
}

TEST(Folders, NoSettingsModeHasFoldersOfItsOwn)
{
    QCoreApplication::setApplicationName(QStringLiteral("App 2.0"));
    const QString usual = GetAppDataDir();
    const QString local = GetLocalAppDataDir();
    EXPECT_TRUE(QDir(usual).exists());
    SetNoSettingsMode(true);
    EXPECT_EQ(GetAppDataDir(), usual + QStringLiteral(" - NoSettingsMode"));
    EXPECT_EQ(GetLocalAppDataDir(), local + QStringLiteral(" - NoSettingsMode"));
    EXPECT_TRUE(QDir(GetAppDataDir()).exists());
    QString path = local + QStringLiteral("/own/deep");
    EXPECT_EQ(CreateDirNoSettingSuffix(path), path);
    EXPECT_TRUE(path.endsWith(QStringLiteral("/own/deep - NoSettingsMode")));
    EXPECT_TRUE(QDir(path).exists());
    SetNoSettingsMode(false);
}

TEST(Folders, ThePublicFolderNeedsBothNames)
{
    QCoreApplication::setOrganizationName(QString());
    QCoreApplication::setApplicationName(QStringLiteral("Desk"));
    EXPECT_EQ(GetUserPublicDir(), QString());
    QCoreApplication::setOrganizationName(QStringLiteral("Ostrafel"));
    const QString folder = GetUserPublicDir();
    EXPECT_TRUE(folder.endsWith(QStringLiteral("/Ostrafel/Desk")));
    EXPECT_TRUE(QDir(folder).exists());
}

TEST(Folders, TemporaryOnesStandUnderTheRoot)
{
    const QString root = GetTempDir();
    EXPECT_EQ(GetTempAppImageDir(), root + QStringLiteral("/AppImages"));
    EXPECT_EQ(GetTempSdkDir(), root + QStringLiteral("/Sdk"));
    EXPECT_TRUE(IsInTempDir(root.toUpper() + QStringLiteral("/x/../Y")));
    EXPECT_FALSE(IsInTempDir(root + QStringLiteral("/../x")));

    const ScopedTempFolder folder;
    EXPECT_EQ(GetTempDir(), folder.GetPath());
    const QString first = GetTempFilename(QStringLiteral("scan"), QStringLiteral(".ply"));
    const QString second = GetTempFilename(QStringLiteral("scan"), QStringLiteral(".ply"));
    EXPECT_NE(first, second);
    EXPECT_TRUE(QFile::exists(first) && QFile::exists(second));
    EXPECT_TRUE(QFileInfo(first).fileName().contains(QRegularExpression(QStringLiteral("^scan.{6}\\.ply$"))));
    EXPECT_EQ(QFileInfo(first).path(), folder.GetPath());
    EXPECT_THROW(static_cast<void>(GetTempFilename(QStringLiteral("missing/"))), Exception::ExceptionBase);
}

TEST(Folders, AddonsStandBesideTheExecutable)
{
    EXPECT_TRUE(QFileInfo(GetAppDir()).isDir());
    EXPECT_EQ(GetAddonsDir(), GetAppDir() + QStringLiteral("/addons"));
    EXPECT_TRUE(GetSolutionDir().isEmpty() ||
                QFile::exists(GetSolutionDir() + QStringLiteral("/CMakePresets.json")));
}
} // namespace vek::App
