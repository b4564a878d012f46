// SettingsWriter FOLDER PREFIX FIRST COUNT: writes generation after generation of values under PREFIX, from
// FIRST on, and says each one's number when it is in the file. Without COUNT it ends only when it is killed.
#include "VekAppCore/Settings/VekQSettings.h"
#include <QCoreApplication>
#include <cstdio>

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, arguments.at(1));
    const QString& prefix = arguments.at(2);
    const int first = arguments.at(3).toInt();
    const int end = arguments.size() > 4 ? first + arguments.at(4).toInt() : -1;
    for (int generation = first; generation != end; ++generation)
    {
        vek::App::VekQSettings store(QSettings::IniFormat, QSettings::UserScope, "Test", "Written");
        for (int key = 0; key < 200; ++key)
            store.SetValue(QStringLiteral("%1/key%2").arg(prefix).arg(key), generation);
        store.SetValue(prefix + "/much", QString(300'000, QChar(u'a' + generation % 26))); // takes its time
        store.Sync();
        std::printf("%d\n", generation);
        std::fflush(stdout);
    }
    return 0;
}
