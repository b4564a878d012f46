#include "DeskSettings.h"
#include "VekAppCore/App/Notifier.h"
#include "VekAppCore/Settings/AppSettings.h"
#include <QFileInfo>
#include <tuple>

namespace vek::Desk
{
namespace
{
using namespace Qt::StringLiterals;

constexpr qsizetype mostRecentFiles = 8;

/// Calls @p visit with the key and the member of each setting.
void ForEachSetting(const auto& visit)
{
    visit(u"Unit"_s, &DeskSettings::unit);
    visit(u"Deviation/ColourAbove"_s, &DeskSettings::above);
    visit(u"Deviation/ColourBelow"_s, &DeskSettings::below);
    visit(u"Deviation/Tolerance"_s, &DeskSettings::tolerance);
    visit(u"RecentFiles"_s, &DeskSettings::recentFiles);
    visit(u"Window/Restore"_s, &DeskSettings::restoresWindow);
    visit(u"UsageStatistics/Agreed"_s, &DeskSettings::sendsUsage);
    visit(u"UsageStatistics/ClientId"_s, &DeskSettings::clientId);
    visit(u"Update/Address"_s, &DeskSettings::updateAddress);
    visit(u"Window/Geometry"_s, &DeskSettings::geometry);
}

/// A file of settings may have been edited by hand.
bool IsUsable(const auto&) { return true; }
bool IsUsable(const QColor& colour) { return colour.isValid(); }
bool IsUsable(const ShownUnit& unit) { return !unit || Unit::IsReal(*unit); }
bool IsUsable(const Unit::Length& tolerance)
{
    return tolerance.GetValue() >= 0.0 && tolerance <= DeskSettings::largestTolerance;
}
} // namespace

void DeskSettings::AddRecentFile(const QString& file)
{
    const QString path = QFileInfo(file).absoluteFilePath();
    recentFiles.removeAll(path);
    recentFiles.prepend(path);
    recentFiles.resize(std::min(recentFiles.size(), mostRecentFiles));
}

DeskSettingsStore::DeskSettingsStore()
{
    const auto user = App::GetAppSettings();
    const auto machine = App::GetAllUsersSettings();
    ForEachSetting([&](const QString& key, auto member) {
        using Value = std::remove_reference_t<decltype(m_kept.*member)>;
        for (const App::VekQSettings* const store : {user.get(), machine.get()})
            if (const auto value = store->GetValue<Value>(key); value && IsUsable(*value))
            {
                m_kept.*member = *value;
                return;
            }
    });
    _TellProblem(*user, true);
    _TellProblem(*machine, false);
}

void DeskSettingsStore::Write(const DeskSettings& settings)
{
    const auto user = App::GetAppSettings();
    ForEachSetting([&](const QString& key, auto member) {
        if (settings.*member != m_kept.*member)
            user->SetValue(key, settings.*member);
    });
    m_kept = settings;
    user->Sync();
    _TellProblem(*user, true);
}

void DeskSettingsStore::_TellProblem(const App::VekQSettings& store, bool isWritten)
{
    TrString problem;
    if (store.Status() == QSettings::FormatError)
        problem = TrString::translate("InspectionDesk", "The settings are damaged: %1");
    else if (store.Status() == QSettings::AccessError)
        problem = TrString::translate("InspectionDesk", "The settings cannot be read or written: %1");
    else if (isWritten && !store.IsWritable())
        problem = TrString::translate("InspectionDesk", "Changes of the settings cannot be kept: %1");
    if (problem.IsEmpty() || std::exchange(m_hasTold, true))
        return;
    App::Notifier({problem.Arg(store.GetFileName()),
                   Log::Verbosity::Warning,
                   TrString::translate("InspectionDesk", "Settings"),
                   {}});
}
} // namespace vek::Desk
