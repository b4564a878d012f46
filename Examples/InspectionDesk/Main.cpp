#include "DeskWindow.h"
#include "UsageReport.h"
#include "VekAppCore/App/ApplicationFrame.h"
#include "VekAppCore/App/DeclarationSystem.h"
#include "VekAppCore/App/Exception.h"
#include "VekAppCore/App/Folders.h"
#include "VekAppCore/App/NotificationBar.h"
#include "VekAppCore/App/VekQApplication.h"
#include "VekAppCore/QtUtility/EventFilter.h"
#include "VekBase/CommandLine.h"
#include <QBuffer>
#include <QCommandLineParser>
#include <QFileInfo>
#include <QLoggingCategory>
#include <QOperatingSystemVersion>
#include <cstdio>

using namespace Qt::StringLiterals;

namespace vek::Desk
{
namespace
{
/// Where windows need a display and there is none, or nobody looks at it, the desk works without.
void ChoosePlatform()
{
    const auto isEmpty = qEnvironmentVariableIsEmpty;
    const bool isUnattended = IsCmdLineArgPresent("--report") || IsCmdLineArgPresent("--screenshot");
    // Qt has names for the systems that need none of these variables.
    if (QOperatingSystemVersion::currentType() == QOperatingSystemVersion::Unknown &&
        isEmpty("QT_QPA_PLATFORM") && (isUnattended || (isEmpty("DISPLAY") && isEmpty("WAYLAND_DISPLAY"))))
        qputenv("QT_QPA_PLATFORM", "offscreen");
}

void PrintDeclarations()
{
    constexpr const char* row = "%-39s  %-53s  %-39s  %12s\n";
    std::printf(row, "Context", "Declared", "By", "Milliseconds");
    for (const App::DeclarationInfo& info : App::DeclarationSystem::GetInstance().List())
    {
        const QString by = u"%1:%2"_s.arg(QFileInfo(info.by.file_name()).fileName()).arg(info.by.line());
        const QString time = info.duration
                                 ? QString::number(static_cast<double>(info.duration->count()) / 1e6, 'f', 3)
                                 : u"-"_s;
        std::printf(row, info.context.c_str(), info.declared.c_str(), qPrintable(by), qPrintable(time));
    }
}

/// @throws AppException  the file cannot be written.
void WriteFile(const QString& path, const QByteArray& content)
{
    QFile file(path); // no QSaveFile: it would put a file in the place of a device
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size() || !file.flush())
        throw Exception::AppException(TrString::NoTranslate(u"%1: %2"_s.arg(path, file.errorString())));
}

/// Does what the window does, then writes the files that were asked for.
int RunUnattended(App::ApplicationFrame& frame, DeskWindow& window, const QCommandLineParser& arguments)
{
    const auto waitUntil = [&frame](auto isDone) {
        frame.GetTaskExecutor().WaitUntil(isDone, Threading::EEventToTreat::AllEvents);
    };
    window.setAttribute(Qt::WA_DontShowOnScreen);
    window.show();
    const QStringList files = arguments.positionalArguments();
    std::optional<Exception::AppException> failure;
    for (const QString& file : files)
        window.Inspect(file, [&failure](const Exception::AppException& exception) { failure = exception; });
    waitUntil([&window] { return !window.IsBusy(); });
    if (failure)
        throw Exception::AppException(*failure);

    QString report;
    for (const QString& file : files)
    {
        report += u"File                %1\n"_s.arg(QFileInfo(file).fileName());
        for (const auto& [name, value] : window.FindResult(file)->report.GetFigures())
            report += name.GetKey().leftJustified(20) + value + u'\n';
    }
    std::fputs(report.toUtf8().constData(), stdout);
    const QString reportFile = arguments.value(u"report"_s);
    if (IsReport(reportFile) && files.size() != 1)
        throw Exception::AppException(TrString::NoTranslate(u"An XML report is of one file"_s));
    if (IsReport(reportFile))
        WriteReport(reportFile, window.FindResult(files.front())->report);
    else if (!reportFile.isEmpty())
        WriteFile(reportFile, report.toUtf8());
    if (arguments.isSet(u"screenshot"_s))
    {
        waitUntil([&window] { return window.IsResultLogged(); });
        QBuffer picture;
        window.grab().save(&picture, "PNG");
        WriteFile(arguments.value(u"screenshot"_s), picture.data());
    }
    return 0;
}

int Run(App::ApplicationFrame& frame, const QCommandLineParser& arguments)
{
    frame.Start(App::GetAddonsDir());
    const QStringList files = arguments.positionalArguments();
    if (arguments.isSet(u"startup"_s))
    {
        PrintDeclarations();
        return 0;
    }
    const bool endsWithFirstFrame = arguments.isSet(u"first-frame"_s);
    const bool isUnattended =
        !endsWithFirstFrame && (QGuiApplication::platformName() == u"offscreen" ||
                                arguments.isSet(u"report"_s) || arguments.isSet(u"screenshot"_s));
    if (files.isEmpty() && isUnattended)
        throw Exception::AppException(TrString::NoTranslate(u"Expected a file to inspect; see --help"_s));

    auto unit = Unit::LengthUnit::Millimeter;
    const QString unitText = arguments.value(u"unit"_s);
    if (!unitText.isEmpty() && (!Convert::FromString(unitText, unit) || !Unit::IsReal(unit)))
        throw Exception::AppException(TrString::NoTranslate(u"%1 is no unit of length"_s.arg(unitText)));

    DeskWindow window(frame.GetTaskExecutor());
    window.SetFileUnit(unit);
    frame.SetMainWidget(&window);
    if (isUnattended)
        return RunUnattended(frame, window, arguments);
    if (endsWithFirstFrame)
        new QtUtility::EventFilter(&window, [](const QEvent* event) {
            if (event->type() == QEvent::Paint)
                QMetaObject::invokeMethod(qApp, &QCoreApplication::quit, Qt::QueuedConnection);
        });
    App::NotificationBar::Install();
    window.UseSettings();
    window.show();
    for (const QString& file : files)
        window.Inspect(file);
    return QCoreApplication::exec();
}
} // namespace
} // namespace vek::Desk

int main(int argc, char** argv)
{
    using namespace vek;
    // Standard error is kept for the one line that tells what is wrong, such as a display that does not
    // answer; QT_LOGGING_RULES brings all back.
    QLoggingCategory::setFilterRules(u"*.warning=false\nqt.qpa.xcb.warning=true"_s);
    Desk::ChoosePlatform();
    const App::VekQApplication application(argc, argv);
    QCoreApplication::setApplicationVersion(u"2.0"_s); // of the settings, too
    QCommandLineParser arguments;
    arguments.setApplicationDescription(u"Shows how flat a plate is, from points measured on it."_s);
    arguments.addPositionalArgument(
        u"file"_s, u"Points (.xyz, .txt, .csv, or a plug-in's), a document (.vekdoc) or a report (.xml)."_s,
        u"[file...]"_s);
    arguments.addOptions(
        {{u"report"_s, u"Write the figures to <file> and exit; to .xml as an XML report."_s, u"file"_s},
         {u"screenshot"_s, u"Write a picture of the window (PNG) to <file> and exit."_s, u"file"_s},
         {u"unit"_s, u"Read points in <unit>, such as in or cm; in mm unless given."_s, u"unit"_s},
         {u"collect"_s,
          u"Send usage statistics, once the user has agreed, to <address>, such as that of CollectionServer."_s,
          u"address"_s},
         {u"first-frame"_s, u"Exit once the window has been drawn, to measure the start."_s},
         {u"startup"_s, u"List what the program and its plug-ins declare."_s},
         {u"NoSettings"_s, u"Neither read nor change the user's settings."_s}});
    arguments.addHelpOption();
    arguments.addVersionOption();
    arguments.process(application); // exits where they are wrong

    App::AppConfiguration configuration;
    configuration.applicationName = u"InspectionDesk"_s;
    configuration.applicationTitle = u"Inspection Desk"_s;
    configuration.version = {2, 0, 0, 0};
    Desk::ConfigureUsageReport(configuration, arguments.value(u"collect"_s));
    App::ApplicationFrame frame(configuration);
    try
    {
        return Desk::Run(frame, arguments);
    }
    catch (const std::exception& exception)
    {
        // Not App::HandleAppException: its log lines would tell the same twice more.
        std::fprintf(stderr, "%s\n", qPrintable(QString::fromUtf8(exception.what()).simplified()));
        return 1;
    }
}
