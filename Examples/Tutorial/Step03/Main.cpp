#include <QDockWidget>
#include <QFile>
#include <QFileDialog>
#include <QMainWindow>
#include <QPlainTextEdit>
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
    Lengths Read(const QString& path) const
    {
        Lengths lengths;
        QFile file(path);
        if (file.open(QIODevice::ReadOnly))
            for (const QByteArray& line : file.readAll().trimmed().split('\n'))
                if (Unit::Length length; Convert::FromString(QString::fromUtf8(line), length))
                    lengths.push_back(length);
        return lengths;
    }
};
VEK_DECLARE_SERVICE(LengthReader, LengthReader);

class Window final : public QMainWindow
{
public:
    Window() : m_text(new QPlainTextEdit)
    {
        setCentralWidget(m_text);
        m_text->setReadOnly(true);

        auto* const panel = new App::LogPanel;
        panel->Install();
        auto* const log = new QDockWidget("Log");
        log->setWidget(panel);
        addDockWidget(Qt::BottomDockWidgetArea, log);

        QToolBar* const tools = addToolBar("Gauge");
        tools->addAction("Open...", this, [this] { Open(QFileDialog::getOpenFileName(this)); });
    }

    void Open(const QString& path)
    {
        m_lengths = App::Services().Require<LengthReader>().Read(path);
        App::Log(Log::Verbosity::Info, QString("%1 lengths in %2").arg(m_lengths.size()).arg(path));
        Show();
    }

    QString GetText() const { return m_text->toPlainText(); }

private:
    void Show()
    {
        m_text->clear();
        for (const Unit::Length& length : m_lengths)
            m_text->appendPlainText(Convert::ToString(length));
    }

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

    Window window;
    frame.SetMainWidget(&window);
    window.show();

    if (argc > 1)
        window.Open(application.arguments()[1]);
    if (!IsCmdLineArgPresent("--print"))
        return application.exec();
    std::puts(qUtf8Printable(window.GetText()));
}
