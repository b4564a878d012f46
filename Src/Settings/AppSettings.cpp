#include "VekAppCore/Settings/AppSettings.h"
#include "Settings/FirstRequest.h"
#include "VekAppCore/App/NoSettingsMode.h"
#include "VekBase/Process.h"
#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <algorithm>

namespace vek::App
{
namespace
{
bool g_isFirstRequest = true; // main thread only

QString GetSuffix() { return IsNoSettingsModeEnabled() ? QStringLiteral(" - NoSettingsMode") : QString(); }

const QString& InitKey()
{
    static const QString key = QStringLiteral("IsSettingsInit");
    return key;
}

/// The entries beside that of a store, among them its own.
QStringList GetSiblings(const VekQSettings& store)
{
    const QString place = store.GetFileName();
    if (place.startsWith(u"\\HKEY_"))
    {
        // In the Windows registry, the other keys of the organisation.
        const QString parent = place.left(place.lastIndexOf(u'\\'));
        return QSettings(parent, QSettings::NativeFormat).childGroups();
    }
    const QFileInfo file(place);
    QStringList entries;
    const auto files = file.dir().entryInfoList({"*." + file.suffix()}, QDir::Files | QDir::Hidden);
    for (const QFileInfo& sibling : files)
        entries += sibling.completeBaseName(); // "App 1.9.conf" is that of "App 1.9"
    return entries;
}

/// The latest entry of an earlier version, by the order of text; empty when there is none.
QString FindPrevious(const SettingsPath& path, QStringList entries)
{
    const QRegularExpression version(
        QStringLiteral("^%1 \\d+\\.\\d+$")
            .arg(QRegularExpression::escape(QCoreApplication::applicationName())));
    entries.removeIf([&](const QString& entry) {
        return !version.match(entry).hasMatch() || entry >= path.applicationEntry;
    });
    const auto last = std::ranges::max_element(entries);
    return last == entries.end() ? QString() : *last;
}

void CopyPrevious(const SettingsPath& path)
{
    if (IsNoSettingsModeEnabled() || !IsSettingsPathValid(path))
        return;
    VekQSettings store(path.organisation, path.applicationEntry);
    if (store.GetValue(InitKey(), false))
        return;
    const QString previous = FindPrevious(path, GetSiblings(store));
    if (previous.isEmpty())
        return;
    store.ClearValues();
    store.Append(VekQSettings(path.organisation, previous));
}

void MarkInitialised(const SettingsPath& path)
{
    if (!IsSettingsPathValid(path))
        return;
    VekQSettings(path.organisation, path.applicationEntry).SetValue(InitKey(), true);
}
} // namespace

SettingsPath GetAppSettingsPath()
{
    const QString organisation = QCoreApplication::organizationName();
    const QString application = QCoreApplication::applicationName();
    if (organisation.isEmpty() || application.isEmpty())
        return {};
    const QString entry =
        QStringLiteral("%1 %2%3").arg(application, QCoreApplication::applicationVersion(), GetSuffix());
    return {organisation, entry.trimmed()};
}

bool IsSettingsPathValid(const SettingsPath& path)
{
    return !path.organisation.isEmpty() && !path.applicationEntry.isEmpty();
}

std::unique_ptr<VekQSettings> GetAppSettings()
{
    const SettingsPath path = GetAppSettingsPath();
    if (!IsSettingsPathValid(path))
        return std::make_unique<VekQSettingsScopped>();
    if (!IsUnitTestMode() && std::exchange(g_isFirstRequest, false))
    {
        CopyPrevious(path);
        MarkInitialised(path);
    }
    return std::make_unique<VekQSettings>(path.organisation, path.applicationEntry);
}

std::unique_ptr<VekQSettings> GetAllUsersSettings()
{
    return std::make_unique<VekQSettings>(QSettings::IniFormat, QSettings::SystemScope,
                                          QCoreApplication::organizationName(),
                                          QCoreApplication::applicationName() + "/Settings" + GetSuffix());
}

void InitSettings() { MarkInitialised(GetAppSettingsPath()); }

void CopyPreviousSettingsIfNeeded() { CopyPrevious(GetAppSettingsPath()); }

void ForgetFirstSettingsRequest() { g_isFirstRequest = true; }

std::string ToLogText(const SettingsPath& path)
{
    return (path.organisation + u'/' + path.applicationEntry).toStdString();
}
} // namespace vek::App
