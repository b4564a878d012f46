#include "DeskWindow.h"
#include "VekAppCore/App/Application.h"
#include "VekAppCore/App/Exception.h"
#include "VekAppCore/App/Log.h"
#include "VekAppCore/App/SafeCallable.h"
#include "VekAppCore/App/ServiceManager.h"
#include "VekAppCore/Threading/TaskStatusBar.h"
#include <QDockWidget>
#include <QDropEvent>
#include <QElapsedTimer>
#include <QFileDialog>
#include <QMenuBar>
#include <QMessageBox>
#include <QMimeData>
#include <QStatusBar>

namespace vek::Desk
{
using namespace Qt::StringLiterals;

DeskWindow::DeskWindow(Threading::TaskExecutor& executor)
    : m_executor(executor), m_tabs(new QTabWidget), m_figures(new QLabel), m_log(new App::LogPanel)
{
    setWindowTitle(App::GetAppConfig().applicationTitle);
    setAcceptDrops(true);
    resize(1280, 800);
    setCentralWidget(m_tabs);
    m_tabs->setDocumentMode(true);
    m_tabs->setTabsClosable(true);
    m_tabs->addTab(new DeviationView, u"Start"_s);
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
    _ShowFigures();

    QMenu* const menu = menuBar()->addMenu(u"&File"_s);
    menu->addAction(u"&Open..."_s, QKeySequence::Open, this, App::SafeCallable([this] { _AskForFiles(); }));
    menu->addAction(u"&Quit"_s, QKeySequence::Quit, this, &QWidget::close);
}

DeskWindow::~DeskWindow()
{
    for (Job& job : m_jobs)
        job.task.Cancel();
}

void DeskWindow::_AskForFiles()
{
    const QStringList extensions = App::Services().Require<IPointCloudReader>().GetExtensions();
    for (const QString& file : QFileDialog::getOpenFileNames(
             this, u"Open point clouds"_s, {}, u"Point clouds (*.%1)"_s.arg(extensions.join(u" *."_s))))
        Inspect(file);
}

void DeskWindow::Inspect(const QString& file, FailureCallback onFailure)
{
    // The services stay: the application waits for its workers before it destroys them.
    const auto work = [file, &reader = App::Services().Require<IPointCloudReader>(),
                       &fitter = App::Services().Require<IPlaneFitter>()](auto& progression) {
        const PointCloud points = reader.Read(file, progression);
        progression.SetTitle(TrString::NoTranslate(u"Fitting %1"_s.arg(QFileInfo(file).fileName())));
        return std::make_shared<const Inspection>(fitter.Fit(points, progression));
    };
    QElapsedTimer timer;
    timer.start();
    const auto job = m_jobs.emplace(m_jobs.end());
    const Threading::TaskListener task =
        job->task.Launch(m_executor, TrString::NoTranslate(u"Reading %1"_s.arg(QFileInfo(file).fileName())),
                         work, [this, file, timer](const std::shared_ptr<const Inspection>& inspection) {
                             _Show(file, inspection, static_cast<double>(timer.elapsed()) / 1000.0);
                         });
    job->failed = task.OnTaskException(
        onFailure ? std::move(onFailure) : [this](const auto& exception) { _ShowFailure(exception); });
    job->finished = task.OnTaskFinished([this, job] { m_jobs.erase(job); });
}

void DeskWindow::_Show(const QString& file, const std::shared_ptr<const Inspection>& inspection,
                       double seconds)
{
    const QString name = QFileInfo(file).fileName();
    auto* view = static_cast<DeviationView*>(m_tabs->currentWidget());
    if (!view || view->GetInspection())
        view = static_cast<DeviationView*>(m_tabs->widget(m_tabs->addTab(new DeviationView, name)));
    m_tabs->setTabText(m_tabs->indexOf(view), name);
    m_tabs->setTabToolTip(m_tabs->indexOf(view), file);
    m_tabs->setCurrentWidget(view);
    QElapsedTimer timer;
    timer.start();
    view->Show(inspection);
    _ShowFigures();
    statusBar()->showMessage(u"%1: %L2 points read, fitted and drawn in %3 s"_s.arg(name)
                                 .arg(inspection->flat.cols())
                                 .arg(seconds + static_cast<double>(timer.elapsed()) / 1000.0, 0, 'f', 3));
    App::Log(Log::Verbosity::Info, statusBar()->currentMessage());
}

void DeskWindow::_ShowFailure(const Exception::AppException& exception)
{
    const QString text = exception.GetMessage().ToString();
    App::Log(Log::Verbosity::Error, text);
    auto* const box = new QMessageBox(QMessageBox::Critical, windowTitle(), text, QMessageBox::Ok, this);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->open(); // does not block: other files go on
}

void DeskWindow::_ShowFigures()
{
    const auto* const view = static_cast<const DeviationView*>(m_tabs->currentWidget());
    if (!view || !view->GetInspection())
        return m_figures->setText(u"Nothing inspected yet"_s);
    QString text;
    for (const auto& [name, value] : view->GetInspection()->GetFigures())
        text += u"<p>%1<br><b style='font-size: 22px'>%2</b></p>"_s.arg(name, value);
    m_figures->setText(text);
}

const Inspection* DeskWindow::FindInspection(const QString& file) const
{
    for (int index = m_tabs->count() - 1; index >= 0; --index)
        if (m_tabs->tabToolTip(index) == file)
            return static_cast<const DeviationView*>(m_tabs->widget(index))->GetInspection();
    return nullptr;
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
