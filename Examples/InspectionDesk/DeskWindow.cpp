#include "DeskWindow.h"
#include "InspectionDesk/NumberText.h"
#include "SettingsDialog.h"
#include "UsageReport.h"
#include "VekAppCore/Analytics/ConsentPanel.h"
#include "VekAppCore/App/Application.h"
#include "VekAppCore/App/Exception.h"
#include "VekAppCore/App/Log.h"
#include "VekAppCore/App/SafeCallable.h"
#include "VekAppCore/App/ServiceManager.h"
#include "VekAppCore/App/Translations.h"
#include "VekAppCore/Text/LanguageChange.h"
#include "VekAppCore/Threading/TaskStatusBar.h"
#include "VekAppCore/Xml/IXmlValidatorService.h"
#include <QDialogButtonBox>
#include <QDockWidget>
#include <QDropEvent>
#include <QElapsedTimer>
#include <QFileDialog>
#include <QMenuBar>
#include <QMessageBox>
#include <QMimeData>
#include <QPointer>
#include <QStatusBar>
#include <QUuid>
#include <QVBoxLayout>

namespace vek::Desk
{
using namespace Qt::StringLiterals;
using StringUtility::ShowTranslated;

namespace
{
/// How long reading and fitting took; zero where there was none.
struct Times
{
    std::chrono::duration<double, std::milli> reading{};
    std::chrono::duration<double, std::milli> fitting{};
};

/// The page is open while the dialog is.
void OpenPageFor(QDialog* dialog, const QString& page)
{
    QObject::connect(dialog, &QObject::destroyed,
                     [scope = std::make_shared<ScopeBase>(OpenPage(page))] { scope->Release(); });
}

/// Its title and filters follow the language.
QFileDialog* MakeFileDialog(QWidget* parent, const TrString& title, const std::vector<TrString>& filters)
{
    auto* const dialog = ShowTranslated(new QFileDialog(parent), &QWidget::setWindowTitle, title);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    const auto showFilters = [dialog, filters] {
        const qsizetype chosen = dialog->nameFilters().indexOf(dialog->selectedNameFilter());
        QStringList texts;
        for (const TrString& filter : filters)
            texts += filter.ToString();
        dialog->setNameFilters(texts);
        dialog->selectNameFilter(texts.value(std::max<qsizetype>(chosen, 0)));
    };
    StringUtility::OnLanguageChanged(dialog, showFilters, true);
    return dialog;
}
} // namespace

DeskWindow::DeskWindow(Threading::TaskExecutor& executor)
    : m_executor(executor), m_tabs(new QTabWidget), m_figures(new QLabel), m_log(new App::LogPanel)
{
    setWindowTitle(App::GetAppConfig().applicationTitle);
    setAcceptDrops(true);
    resize(1280, 800);
    setCentralWidget(m_tabs);
    m_tabs->setDocumentMode(true);
    const auto makeClosable = [this] { // again: Qt gives the buttons their tool tips when it makes them
        m_tabs->setTabsClosable(false);
        m_tabs->setTabsClosable(true);
    };
    StringUtility::OnLanguageChanged(m_tabs, makeClosable, true);
    auto* const start = new DeviationView(m_settings);
    m_tabs->addTab(start, QString());
    const auto showStart = [this, start](const QString& text) {
        if (!start->GetResult())
            m_tabs->setTabText(m_tabs->indexOf(start), text);
    };
    StringUtility::OnLanguageChanged(start, TrString::translate("InspectionDesk", "Start"), showStart);
    connect(m_tabs, &QTabWidget::currentChanged, this, App::SafeCallable([this] { _ShowFigures(); }));
    connect(m_tabs, &QTabWidget::tabCloseRequested, this,
            App::SafeCallable([this](int index) { delete m_tabs->widget(index); }));
    m_figures->setAlignment(Qt::AlignTop);
    m_figures->setMargin(16);
    m_figures->setMinimumWidth(260);
    const auto addDock = [this](Qt::DockWidgetArea area, QWidget* content, const TrString& title) {
        auto* const dock = ShowTranslated(new QDockWidget, &QWidget::setWindowTitle, title);
        dock->setWidget(content);
        addDockWidget(area, dock);
        return dock;
    };
    addDock(Qt::RightDockWidgetArea, m_figures, TrString::translate("InspectionDesk", "Figures"));
    resizeDocks({addDock(Qt::BottomDockWidgetArea, m_log, TrString::translate("InspectionDesk", "Log"))},
                {160}, Qt::Vertical);
    m_log->Install();
    statusBar()->addPermanentWidget(new Threading::TaskStatusBar(executor));
    const auto tellAgain = [this] {
        if (!statusBar()->currentMessage().isEmpty())
            statusBar()->showMessage(m_told.ToString());
    };
    StringUtility::OnLanguageChanged(statusBar(), tellAgain, false);

    QMenu* const menu = ShowTranslated(menuBar()->addMenu(QString()), &QMenu::setTitle,
                                       TrString::translate("InspectionDesk", "&File"));
    const auto add = [this, menu](const TrString& text, const QKeySequence& keys, auto function) {
        return ShowTranslated(menu->addAction(QString(), keys, this, App::SafeCallable(function)),
                              &QAction::setText, text);
    };
    add(TrString::translate("InspectionDesk", "&Open..."), QKeySequence::Open, [this] { _AskForFiles(); });
    m_recentFiles = ShowTranslated(menu->addMenu(QString()), &QMenu::setTitle,
                                   TrString::translate("InspectionDesk", "Open &recent"));
    connect(m_recentFiles, &QMenu::aboutToShow, this, App::SafeCallable([this] { _ListRecentFiles(); }));
    m_save = add(TrString::translate("InspectionDesk", "Save &as..."), QKeySequence::SaveAs,
                 [this] { _AskForTarget(); });
    add(TrString::translate("InspectionDesk", "Se&ttings..."), QKeySequence::Preferences,
        [this] { _AskForSettings(); });
    add(TrString::translate("InspectionDesk", "&Usage statistics..."), {}, [this] { _AskForConsent(); });
    add(TrString::translate("InspectionDesk", "&Quit"), QKeySequence::Quit, [this] { close(); });
    StringUtility::OnLanguageChanged(
        m_figures, [this] { _ShowFigures(); }, true);
}

DeskWindow::~DeskWindow()
{
    for (Job& job : m_jobs)
        job.task.Cancel();
}

void DeskWindow::UseSettings()
{
    m_store.emplace();
    _ChangeSettings(m_store->Get());
    if (m_settings.restoresWindow)
        restoreGeometry(m_settings.geometry);
    StartUsageReport(m_settings.sendsUsage, m_settings.clientId);
    m_page = OpenPage(u"/"_s);
    LookForUpdate(m_settings.updateAddress, [window = QPointer<DeskWindow>(this)](const QString& version) {
        if (window)
            window->_Tell(TrString::translate("InspectionDesk", "Version %1 is available").Arg(version));
    });
}

void DeskWindow::_ChangeSettings(const DeskSettings& settings)
{
    m_settings = settings;
    for (int index = 0; index < m_tabs->count(); ++index)
        static_cast<DeviationView*>(m_tabs->widget(index))->SetSettings(settings);
    _ShowFigures();
    if (m_store)
        m_store->Write(settings);
}

void DeskWindow::_AskForSettings()
{
    auto* const dialog = new SettingsDialog(m_settings, this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QDialog::accepted, this, App::SafeCallable([this, dialog] {
                DeskSettings settings = m_settings;
                dialog->ApplyTo(settings);
                _ChangeSettings(settings);
                const auto language = dialog->GetChosenLanguage();
                if (!language)
                    return;
                App::SetLanguage(*language);
                if (m_store)
                    StartUsageReport(m_settings.sendsUsage, m_settings.clientId); // which tells the language
            }));
    OpenPageFor(dialog, u"Settings"_s);
    dialog->open();
}

void DeskWindow::_AskForConsent()
{
    auto* const dialog = new QDialog(this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    ShowTranslated(dialog, &QWidget::setWindowTitle,
                   TrString::translate("InspectionDesk", "Usage statistics"));
    dialog->resize(640, 480);
    auto* const panel = new Analytics::ConsentPanel;
    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Close);
    auto* const layout = new QVBoxLayout(dialog);
    layout->addWidget(panel);
    layout->addWidget(buttons);
    connect(buttons, &QDialogButtonBox::rejected, dialog, &QDialog::reject);
    m_switched = panel->OnSwitched([this](bool isUsed) {
        DeskSettings settings = m_settings;
        settings.sendsUsage = isUsed;
        if (isUsed && settings.clientId.isEmpty())
            settings.clientId = QUuid::createUuid().toString(QUuid::WithoutBraces);
        _ChangeSettings(settings);
        StartUsageReport(isUsed, settings.clientId);
    });
    OpenPageFor(dialog, u"Usage statistics"_s);
    dialog->open();
}

void DeskWindow::_ListRecentFiles()
{
    m_recentFiles->clear();
    for (const QString& file : m_settings.recentFiles)
        m_recentFiles
            ->addAction(QString(file).replace(u'&', u"&&"_s), this,
                        App::SafeCallable([this, file] { Inspect(file); }))
            ->setEnabled(QFileInfo(file).isFile());
    if (m_recentFiles->isEmpty())
        ShowTranslated(m_recentFiles->addAction(QString()), &QAction::setText,
                       TrString::translate("InspectionDesk", "None yet"))
            ->setEnabled(false);
}

void DeskWindow::_AddRecentFile(const QString& file)
{
    m_settings.AddRecentFile(file);
    if (m_store)
        m_store->Write(m_settings);
}

void DeskWindow::_AskForFiles()
{
    const QStringList extensions = App::Services().Require<IPointCloudReader>().GetExtensions()
                                   << documentExtension << reportExtension;
    auto* const dialog = MakeFileDialog(
        this, TrString::translate("InspectionDesk", "Open point clouds, documents and reports"),
        {TrString::translate("InspectionDesk", "Files to open (*.%1)").Arg(extensions.join(u" *."_s))});
    dialog->setFileMode(QFileDialog::ExistingFiles);
    connect(dialog, &QFileDialog::filesSelected, this, App::SafeCallable([this](const QStringList& files) {
                for (const QString& file : files)
                    Inspect(file);
            }));
    OpenPageFor(dialog, u"Open"_s);
    dialog->open();
}

void DeskWindow::_AskForTarget()
{
    // Taken before the dialog: meanwhile, a task may end and show its tab.
    const InspectionDocument document = *_GetView()->GetResult();
    std::vector filters{
        TrString::translate("InspectionDesk", "Reports (*.%1)").Arg(QString(reportExtension))};
    if (document.inspection)
        filters.insert(
            filters.begin(),
            TrString::translate("InspectionDesk", "Documents (*.%1)").Arg(QString(documentExtension)));
    auto* const dialog =
        MakeFileDialog(this, TrString::translate("InspectionDesk", "Save the result"), filters);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    const auto takeSuffix = [dialog](const QString& filter) {
        dialog->setDefaultSuffix(filter.section(u'.', 1).chopped(1));
    };
    connect(dialog, &QFileDialog::filterSelected, dialog, takeSuffix);
    takeSuffix(dialog->selectedNameFilter());
    dialog->selectFile(QFileInfo(document.title).completeBaseName());
    connect(dialog, &QFileDialog::fileSelected, this,
            App::SafeCallable([this, document](const QString& file) { Save(file, document); }));
    OpenPageFor(dialog, u"Save"_s);
    dialog->open();
}

template <typename Work, typename Then>
void DeskWindow::_Launch(const TrString& title, Work work, Then then, FailureCallback onFailure,
                         bool isSaving)
{
    const auto job = m_jobs.emplace(m_jobs.end());
    job->isSaving = isSaving;
    const Threading::TaskListener task =
        job->task.Launch(m_executor, title, std::move(work), std::move(then));
    job->failed = task.OnTaskException(
        onFailure ? std::move(onFailure) : [this](const auto& exception) { _ShowFailure(exception); });
    job->finished = task.OnTaskFinished([this, job] { m_jobs.erase(job); });
}

void DeskWindow::Inspect(const QString& file, FailureCallback onFailure)
{
    // The services stay: the application waits for its workers before it destroys them.
    const auto times = std::make_shared<Times>();
    const auto work = [file, times, unit = m_fileUnit, &reader = App::Services().Require<IPointCloudReader>(),
                       &fitter = App::Services().Require<IPlaneFitter>(),
                       &validator = App::Services().Require<IXmlValidatorService>()](auto& progression) {
        if (IsDocument(file))
            return ReadDocument(file, progression);
        if (IsReport(file))
        {
            const InspectionReport report = ReadReport(file, validator);
            return InspectionDocument{report.title, nullptr, report};
        }
        const QString name = QFileInfo(file).fileName();
        const auto begin = std::chrono::steady_clock::now();
        PointCloud points = reader.Read(file, progression);
        const auto read = std::chrono::steady_clock::now();
        times->reading = read - begin;
        for (Eigen::Vector3d& point : points)
            for (double& coordinate : point)
                coordinate = Unit::GetValueIn(coordinate, unit, Unit::LengthUnit::Millimeter);
        progression.SetTitle(TrString::translate("InspectionDesk", "Fitting %1").Arg(name));
        Inspection inspection = fitter.Fit(points, progression);
        times->fitting = std::chrono::steady_clock::now() - read;
        return MakeDocument(name, std::move(inspection));
    };
    QElapsedTimer timer;
    timer.start();
    const auto show = [this, file, times, timer](const InspectionDocument& result) {
        ReportEvent(u"File"_s, IsReport(file) ? u"Report opened"_s : u"File opened"_s);
        if (result.inspection && times->fitting.count() > 0)
        {
            ReportTiming(u"File"_s, u"load"_s, times->reading);
            ReportTiming(u"File"_s, u"fit"_s, times->fitting);
        }
        _Show(file, result, static_cast<double>(timer.elapsed()) / 1000.0);
    };
    _Launch(TrString::translate("InspectionDesk", "Reading %1").Arg(QFileInfo(file).fileName()), work, show,
            std::move(onFailure), false);
}

void DeskWindow::Save(const QString& file, const InspectionDocument& document)
{
    const auto work = [file, document](auto& progression) {
        if (IsReport(file))
            WriteReport(file, document.report);
        else if (!document.inspection)
            FailReading(
                TrString::translate("InspectionDesk", "%1: a report has no points to save; save it as .%2")
                    .Arg(file)
                    .Arg(QString(reportExtension)));
        else
            WriteDocument(file, document, progression);
    };
    const auto tell = [this, file] {
        ReportEvent(u"File"_s, IsReport(file) ? u"Report saved"_s : u"Document saved"_s);
        _AddRecentFile(file);
        _Tell(TrString::translate("InspectionDesk", "%1: saved").Arg(QFileInfo(file).fileName()));
    };
    _Launch(TrString::translate("InspectionDesk", "Saving %1").Arg(QFileInfo(file).fileName()), work, tell,
            {}, true);
}

void DeskWindow::_Show(const QString& file, const InspectionDocument& result, double seconds)
{
    DeviationView* view = _GetView();
    if (!view || view->GetResult())
    {
        view = new DeviationView(m_settings);
        m_tabs->addTab(view, QString());
    }
    m_tabs->setTabText(m_tabs->indexOf(view), result.title);
    m_tabs->setTabToolTip(m_tabs->indexOf(view), file);
    m_tabs->setCurrentWidget(view);
    QElapsedTimer timer;
    timer.start();
    view->Show(result);
    _ShowFigures();
    if (!result.inspection)
        _Tell(TrString::translate("InspectionDesk", "%1: opened").Arg(QFileInfo(file).fileName()));
    else
        _Tell(TrString::translate("InspectionDesk", "%1: %2 points read, fitted and drawn in %3 s")
                  .Arg(QFileInfo(file).fileName())
                  .Arg(QLocale().toString(result.report.points))
                  .Arg(QLocale().toString(seconds + static_cast<double>(timer.elapsed()) / 1000.0, 'f', 3)));
    _AddRecentFile(file);
}

void DeskWindow::_Tell(const TrString& message)
{
    m_told = message;
    statusBar()->showMessage(message.ToString());
    App::Log(Log::Verbosity::Info, message.GetKey());
}

void DeskWindow::_ShowFailure(const Exception::AppException& exception)
{
    App::Log(Log::Verbosity::Error, exception.GetMessage().GetKey());
    auto* const box = new QMessageBox(QMessageBox::Critical, windowTitle(), {}, QMessageBox::Ok, this);
    ShowTranslated(box, &QMessageBox::setText, exception.GetMessage());
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->open(); // does not block: other files go on
}

DeviationView* DeskWindow::_GetView() const { return static_cast<DeviationView*>(m_tabs->currentWidget()); }

void DeskWindow::_ShowFigures()
{
    const DeviationView* const view = _GetView();
    m_save->setEnabled(view && view->GetResult());
    if (!m_save->isEnabled())
        return m_figures->setText(TrString::translate("InspectionDesk", "Nothing inspected yet").ToString());
    QString text;
    for (const auto& [name, value] : view->GetResult()->report.GetFigures(m_settings.unit))
        text += u"<p>%1<br><b style='font-size: 22px'>%2</b></p>"_s.arg(name.ToString(), value);
    m_figures->setText(text);
}

const InspectionDocument* DeskWindow::FindResult(const QString& file) const
{
    for (int index = m_tabs->count() - 1; index >= 0; --index)
        if (m_tabs->tabToolTip(index) == file)
            return &*static_cast<const DeviationView*>(m_tabs->widget(index))->GetResult();
    return nullptr;
}

void DeskWindow::closeEvent(QCloseEvent* event)
{
    if (std::ranges::any_of(m_jobs, &Job::isSaving))
    {
        _Tell(TrString::translate("InspectionDesk", "A document is still being saved"));
        return event->ignore();
    }
    m_settings.geometry = saveGeometry();
    if (m_store)
        m_store->Write(m_settings);
}

void DeskWindow::dragEnterEvent(QDragEnterEvent* event)
{
    if (event->mimeData()->urls().value(0).isLocalFile())
        event->acceptProposedAction();
}

void DeskWindow::dropEvent(QDropEvent* event)
{
    for (const QUrl& url : event->mimeData()->urls())
        Inspect(url.toLocalFile());
}
} // namespace vek::Desk
