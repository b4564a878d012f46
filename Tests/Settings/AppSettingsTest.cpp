#include "VekAppCore/Settings/AppSettings.h"
#include "Settings/FirstRequest.h"
#include "VekAppCore/App/NoSettingsMode.h"
#include "VekBase/Process.h"
#include <QCoreApplication>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace vek::App
{
namespace
{
/// A process of "App" 2.0 whose settings are in a folder of the test's own, and that has just started.
class AppSettings : public testing::Test
{
protected:
    AppSettings()
    {
        for (const auto format : {QSettings::NativeFormat, QSettings::IniFormat})
        {
            QSettings::setPath(format, QSettings::UserScope, m_folder.path());
            QSettings::setPath(format, QSettings::SystemScope, m_folder.path() + "/all");
        }
        SetNames("App", "2.0");
        QCoreApplication::setOrganizationName("Ostrafel");
        SetUnitTestMode(false);
        SetNoSettingsMode(false);
        ForgetFirstSettingsRequest();
    }
    ~AppSettings() override
    {
        SetNames({}, {});
        QCoreApplication::setOrganizationName({});
        SetNoSettingsMode(false);
        SetUnitTestMode(m_wasUnitTestMode);
    }
    AppSettings(const AppSettings&) = delete;
    AppSettings& operator=(const AppSettings&) = delete;

    static void SetNames(const QString& application, const QString& version)
    {
        QCoreApplication::setApplicationName(application);
        QCoreApplication::setApplicationVersion(version);
    }

private:
    const bool m_wasUnitTestMode = IsUnitTestMode();
    const QTemporaryDir m_folder;
};

VekQSettings OpenEntry(const QString& entry) { return VekQSettings("Ostrafel", entry); }

TEST_F(AppSettings, EntryIsNameVersionAndMode)
{
    EXPECT_EQ(GetAppSettingsPath().organisation, "Ostrafel");
    EXPECT_EQ(GetAppSettingsPath().applicationEntry, "App 2.0");
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

struct CarryCase
{
    const char* fault;
    QStringList entries; ///< Each holds its own name under "from".
    QString source;      ///< Empty where nothing is carried over.
    QString application = "App";
    QString version = "2.0";
    QVariant mark{}; ///< In the store of this version.
};
void PrintTo(const CarryCase& row, std::ostream* out) { *out << row.fault; }
class CarryOver : public AppSettings, public testing::WithParamInterface<CarryCase>
{};

TEST_P(CarryOver, TakesTheVersionBeforeInTheOrderOfText)
{
    SetNames(GetParam().application, GetParam().version);
    for (const QString& entry : GetParam().entries)
        OpenEntry(entry).SetValue("from", entry);
    const QString current = GetAppSettingsPath().applicationEntry;
    {
        auto store = OpenEntry(current);
        store.SetValue("own", 1);
        if (GetParam().mark.isValid())
            store.SetValue("IsSettingsInit", GetParam().mark);
    }
    const auto store = GetAppSettings();
    EXPECT_EQ(store->GetValue("from", QString()), GetParam().source);
    EXPECT_EQ(store->Contains("own"), GetParam().source.isEmpty()); // its own values give way
    EXPECT_EQ(store->GetValue<bool>("IsSettingsInit"), true);
    if (!GetParam().source.isEmpty())
    {
        EXPECT_EQ(store->AllKeys("").size(), 2);
    }
}
INSTANTIATE_TEST_SUITE_P(
    Rows, CarryOver,
    testing::Values(CarryCase{"versions compared as numbers", {"App 1.9", "App 1.10"}, "App 1.9"},
                    CarryCase{"no-settings store taken", {"App 1.0", "App 1.9 - NoSettingsMode"}, "App 1.0"},
                    CarryCase{"three parts taken", {"App 1.9.1", "App 1.0"}, "App 1.0"},
                    CarryCase{"one part taken", {"App 1", "App"}, ""},
                    CarryCase{"later version taken", {"App 2.1", "App 3.0"}, ""},
                    CarryCase{"other application taken", {"Apple 1.0", "My App 1.0", "app 1.0"}, ""},
                    CarryCase{
                        "name read as an expression", {"A+B (x) 1.0", "AAB x 1.9"}, "A+B (x) 1.0", "A+B (x)"},
                    CarryCase{"marked store overwritten", {"App 1.0"}, "", "App", "2.0", true},
                    CarryCase{"text of the mark not read", {"App 1.0"}, "", "App", "2.0", "true"},
                    CarryCase{"any mark taken for one", {"App 1.0"}, "App 1.0", "App", "2.0", "odd"},
                    CarryCase{"false mark taken for one", {"App 1.0"}, "App 1.0", "App", "2.0", false}));

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
} // namespace
} // namespace vek::App
