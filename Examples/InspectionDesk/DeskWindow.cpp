#include "DeskWindow.h"
#include "VekAppCore/App/Application.h"
#include "VekAppCore/App/Log.h"
#include "VekAppCore/App/SafeCallable.h"
#include "VekAppCore/App/ServiceManager.h"
#include <QDockWidget>
#include <QDropEvent>
#include <QFileDialog>
#include <QMenuBar>
#include <QMimeData>
#include <QStatusBar>

namespace vek::Desk
{
using namespace Qt::StringLiterals;

DeskWindow::DeskWindow(Threading::TaskExecutor& executor)
    : m_executor(executor),
      m_view(new DeviationView),
      m_figures(new QLabel(u"Nothing inspected yet"_s)),
      m_log(new App::LogPanel),
      m_progress(new QProgressBar)
{
    setWindowTitle(App::GetAppConfig().applicationTitle);
    setAcceptDrops(true);
    resize(1280, 800);
    setCentralWidget(m_view);
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
    m_progress->hide();
    statusBar()->addPermanentWidget(m_progress);

    QMenu* const menu = menuBar()->addMenu(u"&File"_s);
    menu->addAction(u"&Open..."_s, QKeySequence::Open, this, App::SafeCallable([this] { _AskForFile(); }));
    menu->addAction(u"&Quit"_s, QKeySequence::Quit, this, &QWidget::close);
}

DeskWindow::~DeskWindow() { _EndJob(); }

void DeskWindow::_AskForFile()
{
    const QStringList extensions = App::Services().Require<IPointCloudReader>().GetExtensions();
    const QString file = QFileDialog::getOpenFileName(
        this, u"Open a point cloud"_s, {}, u"Point clouds (*.%1)"_s.arg(extensions.join(u" *."_s)));
    if (!file.isEmpty())
        Inspect(file);
}

void DeskWindow::Inspect(const QString& file, FailureCallback onFailure)
{
    _EndJob();
    m_timer.start();
    m_progress->setValue(0);
    m_progress->show();
    statusBar()->showMessage(u"Inspecting %1"_s.arg(file));
    m_isCancelled = std::make_shared<std::atomic<bool>>(false);

    // A window that dies, or is given another file, cancels first: what comes later does not touch it.
    const auto post = [isCancelled = m_isCancelled](auto function) {
        App::PostEvent(App::SafeCallable([isCancelled, function] {
            if (!*isCancelled)
                function();
        }));
    };
    // The services stay: the application waits for its workers before it destroys them.
    m_executor.ExecuteAsync([this, file, onFailure = std::move(onFailure), post, isCancelled = m_isCancelled,
                             &reader = App::Services().Require<IPointCloudReader>(),
                             &fitter = App::Services().Require<IPlaneFitter>()] {
        try
        {
            const auto showProgress = [&](double part) {
                if (*isCancelled)
                    throw Exception::E_Escape();
                post([this, part] { m_progress->setValue(static_cast<int>(part * 100.0)); });
            };
            const auto result =
                std::make_shared<const Inspection>(fitter.Fit(reader.Read(file, showProgress)));
            post([this, file, result] { _Show(file, result); });
        }
        catch (...)
        {
            post([this, onFailure, failure = std::current_exception()] {
                _EndJob();
                onFailure(failure); // SafeCallable tells the user of what it throws
            });
        }
    });
}

void DeskWindow::_EndJob()
{
    if (m_isCancelled)
        *m_isCancelled = true;
    m_isCancelled.reset();
    m_progress->hide();
    statusBar()->clearMessage();
}

void DeskWindow::_Show(const QString& file, const std::shared_ptr<const Inspection>& inspection)
{
    _EndJob();
    m_inspection = inspection;
    QString text;
    for (const auto& [name, value] : inspection->GetFigures())
        text += u"<p>%1<br><b style='font-size: 22px'>%2</b></p>"_s.arg(name, value);
    m_figures->setText(text);
    const QString name = QFileInfo(file).fileName();
    setWindowTitle(u"%1 \u2013 %2"_s.arg(name, App::GetAppConfig().applicationTitle));
    m_view->Show(inspection);
    statusBar()->showMessage(u"%1: %L2 points read, fitted and drawn in %3 s"_s.arg(name)
                                 .arg(inspection->flat.cols())
                                 .arg(static_cast<double>(m_timer.elapsed()) / 1000.0, 0, 'f', 3));
    App::Log(Log::Verbosity::Info, statusBar()->currentMessage());
}

void DeskWindow::dragEnterEvent(QDragEnterEvent* event)
{
    if (event->mimeData()->urls().value(0).isLocalFile())
        event->acceptProposedAction();
}

void DeskWindow::dropEvent(QDropEvent* event) { Inspect(event->mimeData()->urls().value(0).toLocalFile()); }
} // namespace vek::Desk
