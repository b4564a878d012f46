#include "ILengthReader.h"
#include <QDockWidget>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
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
/// Knows texts and XML.
class LengthReader final : public ILengthReader
{
public:
    void OnNotify() override { App::DeclarationSystem::GetInstance().RunNew<ILengthReader>(*this); }

    void AddFormat(const QString& suffix, Format format) override { m_formats[suffix] = std::move(format); }

    Lengths Read(const QString& path, Threading::IProgression& progression) const override
    {
        QFile file(path);
        const auto format = m_formats.find(QFileInfo(path).suffix());
        if (format == m_formats.end() || !file.open(QIODevice::ReadOnly))
            throw Exception::AppException(TrString::translate("Gauge", "%1 cannot be read").Arg(path));
        return format->second(file.readAll(), progression);
    }

private:
    static Lengths ReadText(const QByteArray& content, Threading::IProgression& progression)
    {
        const QList<QByteArray> lines = content.trimmed().split('\n');
        Threading::StepProgression steps(progression, lines.size());
        Lengths lengths;
        for (const QByteArray& line : lines)
        {
            if (!Convert::FromString(QString::fromUtf8(line), lengths.emplace_back()))
                throw Exception::AppException(
                    TrString::translate("Gauge", "Line %1 is no length").Arg(lengths.size()));
            steps.Advance();
        }
        return lengths;
    }

    static Lengths ReadXml(const QByteArray& content, Threading::IProgression&)
    {
        Lengths lengths;
        const XmlDocument document = XmlDocument::FromString(QString::fromUtf8(content));
        document.Deserialize("Lengths").GetChildren("Length", lengths, true);
        return lengths;
    }

    std::map<QString, Format> m_formats{{"txt", ReadText}, {"xml", ReadXml}};
};
VEK_DECLARE_SERVICE(ILengthReader, LengthReader);

class Window final : public QMainWindow
{
public:
    explicit Window(Threading::TaskExecutor& executor)
        : m_executor(executor), m_text(new QPlainTextEdit), m_limit(new LengthLineEdit)
    {
        setCentralWidget(m_text);
        m_text->setReadOnly(true);

        auto* const panel = new App::LogPanel;
        panel->Install();
        auto* const log = new QDockWidget;
        log->setWidget(panel);
        addDockWidget(Qt::BottomDockWidgetArea, log);

        statusBar()->addPermanentWidget(new Threading::TaskStatusBar(executor));

        QToolBar* const tools = addToolBar("Gauge");
        QAction* const open = tools->addAction(
            "", this, App::SafeCallable([this] { Open(QFileDialog::getOpenFileName(this)); }));
        QAction* const save = tools->addAction(
            "", this, App::SafeCallable([this] { Save(QFileDialog::getSaveFileName(this)); }));

        tools->addWidget(m_limit);
        const Unit::Length usual(12.02, Unit::LengthUnit::Millimeter);
        m_limit->SetValue(App::GetAppSettings()->GetValue("limit", usual));
        m_limitChanged = m_limit->OnValueChanged([this] { KeepLimit(); });

        const auto translate = [=, this] {
            log->setWindowTitle(TrString::translate("Gauge", "Log").ToString());
            open->setText(TrString::translate("Gauge", "Open...").ToString());
            save->setText(TrString::translate("Gauge", "Save as XML...").ToString());
            m_limit->setToolTip(TrString::translate("Gauge", "What is longer is too long").ToString());
            Show();
        };
        StringUtility::OnLanguageChanged(this, translate, true);
    }

    void Open(const QString& path)
    {
        const auto& reader = App::Services().Require<ILengthReader>();
        const Threading::TaskListener listener = m_task.Launch(
            m_executor, TrString::translate("Gauge", "Reading %1").Arg(path),
            [&reader, path](Threading::IProgression& progression) { return reader.Read(path, progression); },
            [this](Lengths lengths) {
                m_lengths = std::move(lengths);
                Show();
            });
        m_failed = listener.OnTaskException([](const Exception::AppException& exception) {
            App::DisplayExceptionMessage(App::EExceptionType::Error, exception.GetMessage(),
                                         TrString::NoTranslate("Gauge"));
        });
    }

    void Save(const QString& path) const
    {
        XmlDocument document;
        document.Serializer("Lengths").AddChildren("Length", m_lengths);
        if (!document.SaveFileReplacing(path, true))
            throw Exception::AppException(TrString::translate("Gauge", "%1 cannot be written").Arg(path));
    }

    /// @param text  as people type it.
    void SetLimit(const QString& text)
    {
        m_limit->SetValue(Convert::LengthExtractor().FromString(text).value_or(m_limit->GetValue()));
        KeepLimit();
    }

    /// Returns when the file has been read.
    void Wait() { m_task.Wait(); }

    QString GetText() const { return m_text->toPlainText(); }

private:
    void Show()
    {
        const Convert::NumberOptions options{StringUtility::GetQSystemLocale(), Convert::ENotation::Fixed, 3};
        m_text->clear();
        for (const Unit::Length& length : m_lengths)
        {
            const QString text = Convert::ToString(length.ConvertedTo(Unit::GetDefaultLengthUnit()), options);
            m_text->appendPlainText(length > m_limit->GetValue()
                                        ? TrString::translate("Gauge", "%1 is too long").Arg(text).ToString()
                                        : text);
        }
    }

    void KeepLimit()
    {
        App::GetAppSettings()->SetValue("limit", m_limit->GetValue());
        Show();
    }

    Threading::TaskExecutor& m_executor;
    Threading::AsyncTask m_task;
    Connection m_failed;
    Connection m_limitChanged;
    Lengths m_lengths;
    QPlainTextEdit* const m_text;
    LengthLineEdit* const m_limit;
};
} // namespace

int main(int argc, char** argv)
{
    const App::VekQApplication application(argc, argv);
    App::AppConfiguration configuration;
    configuration.applicationName = "Gauge";
    App::ApplicationFrame frame(configuration);
    App::LogFile::Install(App::GetAppDataDir() + "/Gauge.log");
    Unit::SetDefaultUnit(Unit::LengthUnit::Millimeter);
    frame.Start(App::GetAddonsDir());

    Window window(frame.GetTaskExecutor());
    frame.SetMainWidget(&window);
    App::NotificationBar::Install();
    window.show();

    if (const auto limit = GetCmdLineArgValue("--limit"))
        window.SetLimit(QString::fromStdString(*limit));
    if (argc > 1)
        window.Open(application.arguments()[1]);
    if (!IsCmdLineArgPresent("--print"))
        return application.exec();
    window.Wait();
    std::puts(qUtf8Printable(window.GetText()));
    if (const auto path = GetCmdLineArgValue("--save"))
        App::SafeCallable([&] { window.Save(QString::fromStdString(*path)); })();
}
