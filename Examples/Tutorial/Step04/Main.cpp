#include <QDockWidget>
#include <QFile>
#include <QFileDialog>
#include <QMainWindow>
#include <QPlainTextEdit>
#include <QStatusBar>
#include <QToolBar>
#include <VekAppCore/VekAppCore.h>
#include <VekAppCore/Widgets.h>
#include <VekBase/CommandLine.h>
#include <cstdio>

using namespace vek;

namespace
{
using Lengths = std::vector<Unit::Length>;

/// Reads measured lengths from files.
class LengthReader final : public App::IService<LengthReader>
{
public:
    /// Any thread.
    Lengths Read(const QString& path, Threading::IProgression& progression) const
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? ReadText(file.readAll(), progression) : Lengths();
    }

private:
    static Lengths ReadText(const QByteArray& content, Threading::IProgression& progression)
    {
        const QList<QByteArray> lines = content.trimmed().split('\n');
        Threading::StepProgression steps(progression, lines.size());
        Lengths lengths;
        for (const QByteArray& line : lines)
        {
            if (Unit::Length length; Convert::FromString(QString::fromUtf8(line), length))
                lengths.push_back(length);
            steps.Advance();
        }
        return lengths;
    }
};
VEK_DECLARE_SERVICE(LengthReader, LengthReader);

class Window final : public QMainWindow
{
public:
    explicit Window(Threading::TaskExecutor& executor) : m_executor(executor), m_text(new QPlainTextEdit)
    {
        setCentralWidget(m_text);
        m_text->setReadOnly(true);

        auto* const panel = new App::LogPanel;
        panel->Install();
        auto* const log = new QDockWidget("Log");
        log->setWidget(panel);
        addDockWidget(Qt::BottomDockWidgetArea, log);

        statusBar()->addPermanentWidget(new Threading::TaskStatusBar(executor));

        QToolBar* const tools = addToolBar("Gauge");
        tools->addAction("Open...", this, [this] { Open(QFileDialog::getOpenFileName(this)); });
    }

    void Open(const QString& path)
    {
        const auto& reader = App::Services().Require<LengthReader>();
        const Threading::TaskListener listener = m_task.Launch(
            m_executor, TrString::translate("Gauge", "Reading %1").Arg(path),
            [&reader, path](Threading::IProgression& progression) { return reader.Read(path, progression); },
            [this](Lengths lengths) {
                m_lengths = std::move(lengths);
                Show();
            });
        m_progressed = listener.OnProgressionChanged(
            [](int percent) { App::Log(Log::Verbosity::Debug, QString("%1 % read").arg(percent)); });
    }

    /// Returns when the file has been read.
    void Wait() { m_task.Wait(); }

    QString GetText() const { return m_text->toPlainText(); }

private:
    void Show()
    {
        m_text->clear();
        for (const Unit::Length& length : m_lengths)
            m_text->appendPlainText(Convert::ToString(length));
    }

    Threading::TaskExecutor& m_executor;
    Threading::AsyncTask m_task;
    Connection m_progressed;
    Lengths m_lengths;
    QPlainTextEdit* const m_text;
};
} // namespace

int main(int argc, char** argv)
{
    const App::VekQApplication application(argc, argv);
    App::AppConfiguration configuration;
    configuration.applicationName = "Gauge";
    App::ApplicationFrame frame(configuration);
    frame.Start();

    Window window(frame.GetTaskExecutor());
    frame.SetMainWidget(&window);
    window.show();

    if (argc > 1)
        window.Open(application.arguments()[1]);
    if (!IsCmdLineArgPresent("--print"))
        return application.exec();
    window.Wait();
    std::puts(qUtf8Printable(window.GetText()));
}
