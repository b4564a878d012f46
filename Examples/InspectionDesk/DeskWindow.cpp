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
} // namespace

DeskWindow::DeskWindow(Threading::TaskExecutor& executor)
    : m_executor(executor), m_tabs(new QTabWidget), m_figures(new QLabel), m_log(new App::LogPanel)
{
    setWindowTitle(App::GetAppConfig().applicationTitle);
    setAcceptDrops(true);
    resize(1280, 800);
    setCentralWidget(m_tabs);
    m_tabs->setDocumentMode(true);
    m_tabs->setTabsClosable(true);
    m_tabs->addTab(new DeviationView(m_settings), u"Start"_s);
    connect(m_tabs, &QTabWidget::currentChanged, this, App::SafeCallable([this] { _ShowFigures(); }));
    connect(m_tabs, &QTabWidget::tabCloseRequested, this,
            App::SafeCallable([this](int index) { delete m_tabs->widget(index); }));
    m_figures->setAlignment(Qt::AlignTop);
    m_figures->setMargin(16);
    m_figures->setMinimumWidth(260);
    auto* const figuresDock = new QDockWidget(u"Figures"_s);
    figuresDock->setWidget(m_figures);
    addDockWidget(Qt::RightDockWidgetArea, figuresDock);
    auto* const logDock = new QDockWidget(u"Log"_s);
    logDock->setWidget(m_log);
    addDockWidget(Qt::BottomDockWidgetArea, logDock);
    resizeDocks({logDock}, {160}, Qt::Vertical);
    m_log->Install();
    statusBar()->addPermanentWidget(new Threading::TaskStatusBar(executor));

    QMenu* const menu = menuBar()->addMenu(u"&File"_s);
    menu->addAction(u"&Open..."_s, QKeySequence::Open, this, App::SafeCallable([this] { _AskForFiles(); }));
    m_recentFiles = menu->addMenu(u"Open &recent"_s);
    connect(m_recentFiles, &QMenu::aboutToShow, this, App::SafeCallable([this] { _ListRecentFiles(); }));
    m_save = menu->addAction(u"Save &as..."_s, QKeySequence::SaveAs, this,
                             App::SafeCallable([this] { _AskForTarget(); }));
    menu->addAction(u"Se&ttings..."_s, QKeySequence::Preferences, this,
                    App::SafeCallable([this] { _AskForSettings(); }));
    menu->addAction(u"&Usage statistics..."_s, this, App::SafeCallable([this] { _AskForConsent(); }));
    menu->addAction(u"&Quit"_s, QKeySequence::Quit, this, &QWidget::close);
    _ShowFigures();
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
            window->_Tell(u"Version %1 is available"_s.arg(version));
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
            }));
    OpenPageFor(dialog, u"Settings"_s);
    dialog->open();
}

void DeskWindow::_AskForConsent()
{
    auto* const dialog = new QDialog(this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowTitle(u"Usage statistics"_s);
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
        m_recentFiles->addAction(u"None yet"_s)->setEnabled(false);
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
    const ScopeBase page = OpenPage(u"Open"_s);
    for (const QString& file :
         QFileDialog::getOpenFileNames(this, u"Open point clouds, documents and reports"_s, {},
                                       u"Files to open (*.%1)"_s.arg(extensions.join(u" *."_s))))
        Inspect(file);
}

void DeskWindow::_AskForTarget()
{
    // Taken before the dialog: meanwhile, a task may end and show its tab.
    const InspectionDocument document = *_GetView()->GetResult();
    QStringList filters{u"Reports (*.%1)"_s.arg(reportExtension)};
    if (document.inspection)
        filters.prepend(u"Documents (*.%1)"_s.arg(documentExtension));
    QFileDialog dialog(this, u"Save the result"_s, {}, filters.join(u";;"_s));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    const auto takeSuffix = [&dialog](const QString& filter) {
        dialog.setDefaultSuffix(filter.section(u'.', 1).chopped(1));
    };
    connect(&dialog, &QFileDialog::filterSelected, takeSuffix);
    takeSuffix(filters.front());
    const ScopeBase page = OpenPage(u"Save"_s);
    dialog.selectFile(QFileInfo(document.title).completeBaseName());
    if (dialog.exec() == QDialog::Accepted)
        Save(dialog.selectedFiles().value(0), document);
}

template <typename Work, typename Then>
void DeskWindow::_Launch(const QString& title, Work work, Then then, FailureCallback onFailure, bool isSaving)
{
    const auto job = m_jobs.emplace(m_jobs.end());
    job->isSaving = isSaving;
    const Threading::TaskListener task =
        job->task.Launch(m_executor, TrString::NoTranslate(title), std::move(work), std::move(then));
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
        progression.SetTitle(TrString::NoTranslate(u"Fitting %1"_s.arg(name)));
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
    _Launch(u"Reading %1"_s.arg(QFileInfo(file).fileName()), work, show, std::move(onFailure), false);
}

void DeskWindow::Save(const QString& file, const InspectionDocument& document)
{
    const auto work = [file, document](auto& progression) {
        if (IsReport(file))
            WriteReport(file, document.report);
        else if (!document.inspection)
            FailReading(u"%1: a report has no points to save; save it as .%2"_s.arg(file, reportExtension));
        else
            WriteDocument(file, document, progression);
    };
    const auto tell = [this, file] {
        ReportEvent(u"File"_s, IsReport(file) ? u"Report saved"_s : u"Document saved"_s);
        _AddRecentFile(file);
        _Tell(u"%1: saved"_s.arg(QFileInfo(file).fileName()));
    };
    _Launch(u"Saving %1"_s.arg(QFileInfo(file).fileName()), work, tell, {}, true);
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
        _Tell(u"%1: opened"_s.arg(QFileInfo(file).fileName()));
    else
        _Tell(u"%1: %L2 points read, fitted and drawn in %3 s"_s.arg(QFileInfo(file).fileName())
                  .arg(result.report.points)
                  .arg(seconds + static_cast<double>(timer.elapsed()) / 1000.0, 0, 'f', 3));
    _AddRecentFile(file);
}

void DeskWindow::_Tell(const QString& message)
{
    statusBar()->showMessage(message);
    App::Log(Log::Verbosity::Info, message);
}

void DeskWindow::_ShowFailure(const Exception::AppException& exception)
{
    const QString text = exception.GetMessage().ToString();
    App::Log(Log::Verbosity::Error, text);
    auto* const box = new QMessageBox(QMessageBox::Critical, windowTitle(), text, QMessageBox::Ok, this);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->open(); // does not block: other files go on
}

DeviationView* DeskWindow::_GetView() const { return static_cast<DeviationView*>(m_tabs->currentWidget()); }

void DeskWindow::_ShowFigures()
{
    const DeviationView* const view = _GetView();
    m_save->setEnabled(view && view->GetResult());
    if (!m_save->isEnabled())
        return m_figures->setText(u"Nothing inspected yet"_s);
    QString text;
    for (const auto& [name, value] : view->GetResult()->report.GetFigures(m_settings.unit))
        text += u"<p>%1<br><b style='font-size: 22px'>%2</b></p>"_s.arg(name, value);
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
        statusBar()->showMessage(u"A document is still being saved"_s);
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
