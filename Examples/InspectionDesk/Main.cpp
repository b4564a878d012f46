#include "DeskWindow.h"
#include "VekAppCore/App/ApplicationFrame.h"
#include "VekAppCore/App/DeclarationSystem.h"
#include "VekAppCore/App/ErrorReporting.h"
#include "VekAppCore/App/Exception.h"
#include "VekAppCore/App/Folders.h"
#include "VekAppCore/App/Log.h"
#include "VekAppCore/App/NotificationBar.h"
#include "VekAppCore/App/VekQApplication.h"
#include <QBuffer>
#include <QCommandLineParser>
#include <QFileInfo>
#include <QOperatingSystemVersion>
#include <cstdio>

namespace vek::Desk
{
namespace
{
using namespace Qt::StringLiterals;
using Exception::AppException;

void Print(const QString& text) { std::fputs(text.toLocal8Bit().constData(), stdout); }

/// Where windows need a display and there is none, the desk works without.
void ChoosePlatform()
{
    // Qt has names for the systems that need none of these variables.
    if (QOperatingSystemVersion::currentType() == QOperatingSystemVersion::Unknown &&
        qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM") && qEnvironmentVariableIsEmpty("DISPLAY") &&
        qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
}

App::AppConfiguration MakeConfiguration()
{
    App::AppConfiguration configuration;
    configuration.applicationName = u"InspectionDesk"_s;
    configuration.applicationTitle = u"Inspection Desk"_s;
    configuration.version = {0, 1, 0, 0};
    return configuration;
}

void PrintProblem(const App::NotifierMessage& message)
{
    if (message.verbosity <= Log::Verbosity::Warning)
        std::fprintf(stderr, "%s\n", message.text.ToString().simplified().toLocal8Bit().constData());
}

void PrintDeclarations()
{
    const auto printRow = [](const QString& context, const QString& what, const QString& by,
                             const QString& time) {
        Print(u"%1  %2  %3  %4\n"_s.arg(context, -39).arg(what, -53).arg(by, -24).arg(time, 12));
    };
    printRow(u"Context"_s, u"Declared"_s, u"By"_s, u"Milliseconds"_s);
    for (const App::DeclarationInfo& info : App::DeclarationSystem::GetInstance().List())
        printRow(
            QString::fromStdString(info.context), QString::fromStdString(info.declared),
            u"%1:%2"_s.arg(QFileInfo(QString::fromUtf8(info.by.file_name())).fileName()).arg(info.by.line()),
            info.duration ? QString::number(static_cast<double>(info.duration->count()) / 1e6, 'f', 3)
                          : u"-"_s);
}

/// @throws AppException  the file cannot be written.
void WriteFile(const QString& path, const QByteArray& content)
{
    QFile file(path); // no QSaveFile: it would put a file in the place of a device
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size() || !file.flush())
        throw AppException(TrString::NoTranslate(u"%1: %2"_s.arg(path, file.errorString())));
}

/// Does what the window does, then writes the files that were asked for.
int RunUnattended(App::ApplicationFrame& frame, DeskWindow& window, const QCommandLineParser& arguments)
{
    const auto waitUntil = [&frame](auto isDone) {
        frame.GetTaskExecutor().WaitUntil(isDone, Threading::EEventToTreat::AllEvents);
    };
    window.setAttribute(Qt::WA_DontShowOnScreen);
    window.show();
    window.Inspect(arguments.positionalArguments().first());
    waitUntil([&window] { return !window.IsBusy(); });
    if (!window.GetInspection())
        return 1; // the reason was reported

    QString report;
    for (const auto& [name, value] : window.GetInspection()->GetFigures())
        report += name.leftJustified(20) + value + u'\n';
    Print(report);
    if (arguments.isSet(u"report"_s))
        WriteFile(arguments.value(u"report"_s), report.toUtf8());
    if (arguments.isSet(u"screenshot"_s))
    {
        waitUntil([&window] { return window.IsResultLogged(); });
        QBuffer picture;
        window.grab().save(&picture, "PNG");
        WriteFile(arguments.value(u"screenshot"_s), picture.data());
    }
    return 0;
}

int Run(App::ApplicationFrame& frame)
{
    QCommandLineParser arguments;
    arguments.setApplicationDescription(
        u"Shows how flat a plate is, from a cloud of points measured on it."_s);
    arguments.addPositionalArgument(u"file"_s, u"The point cloud: .xyz, .txt, .csv, or what plug-ins add."_s,
                                    u"[file]"_s);
    arguments.addOptions(
        {{u"report"_s, u"Write the figures to <file> and exit."_s, u"file"_s},
         {u"screenshot"_s, u"Write a picture of the window (PNG) to <file> and exit."_s, u"file"_s},
         {u"startup"_s, u"List what the program and its plug-ins declare."_s},
         {u"NoSettings"_s, u"Neither read nor change the user's settings."_s},
         {u"help"_s, u"Show this text."_s}});
    if (!arguments.parse(QCoreApplication::arguments()))
        throw AppException(TrString::NoTranslate(arguments.errorText()));
    if (arguments.isSet(u"help"_s))
    {
        Print(arguments.helpText());
        return 0;
    }
    frame.Start(App::GetAddonsDir());
    if (arguments.isSet(u"startup"_s))
        PrintDeclarations();

    const QStringList files = arguments.positionalArguments();
    const bool isUnattended = QGuiApplication::platformName() == u"offscreen" ||
                              arguments.isSet(u"report"_s) || arguments.isSet(u"screenshot"_s);
    if (files.isEmpty() && arguments.isSet(u"startup"_s))
        return 0;
    if (files.size() > 1 || (files.isEmpty() && isUnattended))
        throw AppException(TrString::translate("InspectionDesk", "Expected one file to inspect; see --help"));

    DeskWindow window(frame.GetTaskExecutor());
    frame.SetMainWidget(&window);
    if (isUnattended)
        return RunUnattended(frame, window, arguments);
    App::NotificationBar::Install();
    window.UseSettings(App::GetAppDataDir() + u"/InspectionDesk.ini"_s);
    window.show();
    if (!files.isEmpty())
        window.Inspect(files.first());
    return QCoreApplication::exec();
}
} // namespace
} // namespace vek::Desk

int main(int argc, char** argv)
{
    using namespace vek;
    // Qt's warnings are for developers; standard error is kept for the one line that tells what is wrong.
    qInstallMessageHandler([](QtMsgType type, const QMessageLogContext&, const QString& text) {
        if (type == QtCriticalMsg || type == QtFatalMsg)
            App::Log(Log::Verbosity::Error, text);
    });
    Desk::ChoosePlatform();
    const App::VekQApplication application(argc, argv);
    App::ApplicationFrame frame(Desk::MakeConfiguration());
    App::SetNotifierCallback(Desk::PrintProblem);
    try
    {
        return Desk::Run(frame);
    }
    catch (...)
    {
        App::HandleAppException(TrString());
        return 1;
    }
}
