#include "VekAppCore/App/Folders.h"
#include "Platform/Platform.h"
#include "VekAppCore/App/Exception.h"
#include "VekAppCore/App/NoSettingsMode.h"
#include "VekBase/Process.h"
#include "VekBase/ScopedTempFolder.h"
#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>
#include <QTemporaryFile>

namespace vek::App
{
namespace
{
QString GetTempRoot() { return QDir::cleanPath(QDir::tempPath()); }

QString Join(const QString& folder, const QString& name) { return folder + u'/' + name; }

QString CreateDataDir(QStandardPaths::StandardLocation location)
{
    QString path = QStandardPaths::writableLocation(location);
    return CreateDirNoSettingSuffix(path);
}
} // namespace

QString GetAppDir() { return QString::fromStdU16String(GetExecutablePath().generic_u16string()); }

QString GetAddonsDir() { return Join(GetAppDir(), QStringLiteral("addons")); }

QString GetAppDataDir() { return CreateDataDir(QStandardPaths::AppDataLocation); }

QString GetLocalAppDataDir() { return CreateDataDir(QStandardPaths::AppLocalDataLocation); }

QString CreateDirNoSettingSuffix(QString& path)
{
    if (IsNoSettingsModeEnabled())
        path += QLatin1String(" - NoSettingsMode");
    QDir().mkpath(path);
    return path;
}

QString GetTempAppImageDir() { return Join(GetTempRoot(), QStringLiteral("AppImages")); }

QString GetTempSdkDir() { return Join(GetTempRoot(), QStringLiteral("Sdk")); }

QString GetTempDir()
{
    const QString active = ScopedTempFolder::GetActivePath();
    return active.isEmpty() ? GetTempRoot() : active;
}

QString GetUserPublicDir()
{
    const QString organization = QCoreApplication::organizationName();
    const QString application = QCoreApplication::applicationName();
    const QString publicFolder = Platform::GetPublicFolder();
    if (organization.isEmpty() || application.isEmpty() || publicFolder.isEmpty())
        return {};
    QString path = Join(Join(publicFolder, organization), application);
    QDir().mkpath(path);
    return path;
}

bool IsInTempDir(const QString& path)
{
    return QDir::cleanPath(path).startsWith(GetTempRoot(), Qt::CaseInsensitive);
}

QString GetSolutionDir()
{
    static const QString solution = [] {
        for (QDir folder(GetAppDir()); folder.exists();)
        {
            if (folder.exists(QStringLiteral("CMakePresets.json")))
                return folder.absolutePath();
            if (!folder.cdUp())
                break;
        }
        return QString();
    }();
    return solution;
}

QString GetTempFilename(const QString& prefix, const QString& suffix)
{
    QTemporaryFile file(Join(GetTempDir(), prefix + QLatin1String("XXXXXX") + suffix));
    if (!file.open())
        throw Exception::InternalAppException(QStringLiteral("Impossible to create the temporary file %1: %2")
                                                  .arg(file.fileTemplate(), file.errorString()));
    file.setAutoRemove(false);
    return file.fileName();
}
} // namespace vek::App
