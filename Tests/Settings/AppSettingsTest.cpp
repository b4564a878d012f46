#include "VekAppCore/Settings/AppSettings.h"
#include "Settings/FirstRequest.h"
#include "Support/TestSupport.h"
#include "VekAppCore/App/NoSettingsMode.h"
#include "VekBase/Process.h"
#include <QCoreApplication>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace vek::App
{
/// A process of "App" 2.0 whose settings are in a folder of the test's own, and that has just started.
struct AppSettings : testing::Test
{
    AppSettings()
    {
        StartIn("folder");
        SetNames("App", "2.0");
        QCoreApplication::setOrganizationName("Ostrafel");
        SetUnitTestMode(false);
        SetNoSettingsMode(false);
    }
    ~AppSettings() override
    {
        SetNames({}, {});
        QCoreApplication::setOrganizationName({});
        SetNoSettingsMode(false);
        SetUnitTestMode(true);
    }
    AppSettings(const AppSettings&) = delete;
    AppSettings& operator=(const AppSettings&) = delete;

    void StartIn(const QString& folder)
    {
        for (const auto format : {QSettings::NativeFormat, QSettings::IniFormat})
        {
            QSettings::setPath(format, QSettings::UserScope, m_folder.filePath(folder));
            QSettings::setPath(format, QSettings::SystemScope, m_folder.filePath(folder + "/all"));
        }
        ForgetFirstSettingsRequest();
    }

    static void SetNames(const QString& application, const QString& version)
    {
        QCoreApplication::setApplicationName(application);
        QCoreApplication::setApplicationVersion(version);
    }

    const QTemporaryDir m_folder;
};

static VekQSettings OpenEntry(const QString& entry) { return VekQSettings("Ostrafel", entry); }

TEST_F(AppSettings, EntryIsNameVersionAndMode)
{
    EXPECT_EQ(ToLogText(GetAppSettingsPath()), "Ostrafel/App 2.0");
    SetNoSettingsMode(true);
    EXPECT_EQ(GetAppSettingsPath().applicationEntry, "App 2.0 - NoSettingsMode");
    EXPECT_EQ(GetAllUsersSettings()->ApplicationName(), "App/Settings - NoSettingsMode");
    SetNoSettingsMode(false);
    SetNames("App", "");
    EXPECT_EQ(GetAppSettingsPath().applicationEntry, "App");
    const auto allUsers = GetAllUsersSettings();
    EXPECT_EQ(allUsers->ApplicationName(), "App/Settings");
    EXPECT_EQ(allUsers->Format(), QSettings::IniFormat);
    EXPECT_EQ(allUsers->Scope(), QSettings::SystemScope);
}

TEST_F(AppSettings, WithoutOrganisationTheStoreIsScratch)
{
    QCoreApplication::setOrganizationName({}); // an application without a name has that of its file
    const SettingsPath path = GetAppSettingsPath();
    EXPECT_FALSE(IsSettingsPathValid(path));
    EXPECT_TRUE(path.organisation.isEmpty() && path.applicationEntry.isEmpty());
    GetAppSettings()->SetValue("k", 1);
    EXPECT_FALSE(GetAppSettings()->Contains("k"));
    InitSettings();
    CopyPreviousSettingsIfNeeded();
    EXPECT_FALSE(GetAppSettings()->Contains("IsSettingsInit"));
}

TEST_F(AppSettings, CarriesOverTheVersionBeforeInTheOrderOfText)
{
    // The entries, each of which holds its own name under "from"; the one carried over, if any; the
    // application; the mark in the store of its version.
    using Row = std::tuple<const char*, QStringList, QString, QString, QVariant>;
    for (const auto& [fault, entries, source, application, mark] :
         {Row{"versions compared as numbers", {"App 1.9", "App 1.10"}, "App 1.9", "App", {}},
          Row{"no-settings store taken", {"App 1.0", "App 1.9 - NoSettingsMode"}, "App 1.0", "App", {}},
          Row{"three parts taken", {"App 1.9.1", "App 1.0"}, "App 1.0", "App", {}},
          Row{"one part taken", {"App 1", "App"}, "", "App", {}},
          Row{"later version taken", {"App 2.1", "App 3.0"}, "", "App", {}},
          Row{"other application taken", {"Apple 1.0", "My App 1.0", "app 1.0"}, "", "App", {}},
          Row{"name read as an expression", {"A+B (x) 1.0", "AAB x 1.9"}, "A+B (x) 1.0", "A+B (x)", {}},
          Row{"marked store overwritten", {"App 1.0"}, "", "App", true},
          Row{"text of the mark not read", {"App 1.0"}, "", "App", "true"},
          Row{"any mark taken for one", {"App 1.0"}, "App 1.0", "App", "odd"},
          Row{"false mark taken for one", {"App 1.0"}, "App 1.0", "App", false}})
    {
        SCOPED_TRACE(fault);
        StartIn(fault);
        SetNames(application, "2.0");
        for (const QString& entry : entries)
            OpenEntry(entry).SetValue("from", entry);
        {
            auto store = OpenEntry(application + " 2.0");
            store.SetValue("own", 1);
            if (mark.isValid())
                store.SetValue("IsSettingsInit", mark);
        }
        const auto store = GetAppSettings();
        EXPECT_EQ(store->GetValue("from", QString()), source);
        EXPECT_EQ(store->GetValue<bool>("IsSettingsInit"), true);
        // Its own values give way.
        EXPECT_EQ(store->AllKeys(""), QStringList({"IsSettingsInit", source.isEmpty() ? "own" : "from"}));
    }
}

TEST_F(AppSettings, OnlyTheFirstRequestCarriesOver)
{
    SetUnitTestMode(true);
    OpenEntry("App 1.0").SetValue("k", 1);
    EXPECT_FALSE(GetAppSettings()->Contains("k"));
    EXPECT_FALSE(GetAppSettings()->Contains("IsSettingsInit"));
    SetUnitTestMode(false); // the first request is still to come
    EXPECT_TRUE(GetAppSettings()->Contains("k"));
    OpenEntry("App 2.0").ClearValues();
    EXPECT_FALSE(GetAppSettings()->Contains("IsSettingsInit"));
    CopyPreviousSettingsIfNeeded();
    EXPECT_TRUE(GetAppSettings()->Contains("k"));
    InitSettings();
    EXPECT_EQ(GetAppSettings()->GetValue<bool>("IsSettingsInit"), true);
}

TEST_F(AppSettings, NoSettingsModeStartsFreshAndLeavesTheRest)
{
    OpenEntry("App 1.0").SetValue("k", 1);
    SetNoSettingsMode(true);
    EXPECT_EQ(GetAppSettings()->AllKeys(""), QStringList("IsSettingsInit"));
    CopyPreviousSettingsIfNeeded();
    GetAppSettings()->SetValue("k", 2);
    SetNoSettingsMode(false);
    EXPECT_TRUE(OpenEntry("App 2.0").AllKeys("").isEmpty());
    EXPECT_EQ(OpenEntry("App 1.0").GetValue<int>("k"), 1);
}
} // namespace vek::App
