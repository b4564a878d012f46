#include "DeskWindow.h"
#include "DeviationView.h"
#include "VekAppCore/App/Application.h"
#include "VekAppCore/App/Log.h"
#include "VekAppCore/App/LogPanel.h"
#include "VekAppCore/App/SafeCallable.h"
#include "VekAppCore/App/ServiceManager.h"
#include <QDockWidget>
#include <QDropEvent>
#include <QElapsedTimer>
#include <QFileDialog>
#include <QMenuBar>
#include <QMimeData>
#include <QStatusBar>

namespace vek::Desk
{
namespace
{
using namespace Qt::StringLiterals;

QString GetDroppedFile(const QDropEvent& event) { return event.mimeData()->urls().value(0).toLocalFile(); }
} // namespace

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
    m_figures->setTextInteractionFlags(Qt::TextSelectableByMouse);
    _AddDock(Qt::RightDockWidgetArea, u"Figures"_s, m_figures);
    resizeDocks({_AddDock(Qt::BottomDockWidgetArea, u"Log"_s, m_log)}, {160}, Qt::Vertical);
    m_log->Install();
    m_progress->setMaximumWidth(240);
    m_progress->hide();
    statusBar()->addPermanentWidget(m_progress);

    QMenu* const menu = menuBar()->addMenu(u"&File"_s);
    menu->addAction(u"&Open..."_s, QKeySequence::Open, this, App::SafeCallable([this] { _AskForFile(); }));
    menu->addAction(u"&Cancel"_s, Qt::Key_Escape, this, App::SafeCallable([this] { _EndJob(); }));
    menu->addAction(u"&Quit"_s, QKeySequence::Quit, this, &QWidget::close);
}

DeskWindow::~DeskWindow()
{
    _EndJob();
    if (!m_settings)
        return;
    m_settings->setValue(u"Geometry"_s, saveGeometry());
    m_settings->setValue(u"State"_s, saveState());
}

QDockWidget* DeskWindow::_AddDock(Qt::DockWidgetArea area, const QString& title, QWidget* content)
{
    auto* const dock = new QDockWidget(title);
    dock->setObjectName(title); // by which saveState knows it
    dock->setWidget(content);
    addDockWidget(area, dock);
    return dock;
}

void DeskWindow::UseSettings(const QString& file)
{
    m_settings = std::make_unique<QSettings>(file, QSettings::IniFormat);
    restoreGeometry(m_settings->value(u"Geometry"_s).toByteArray());
    restoreState(m_settings->value(u"State"_s).toByteArray());
}

void DeskWindow::_AskForFile()
{
    const QStringList extensions = App::Services().Require<IPointCloudReader>().GetExtensions();
    const QString folder = m_settings ? m_settings->value(u"Folder"_s).toString() : QString();
    const QString file = QFileDialog::getOpenFileName(
        this, u"Open a point cloud"_s, folder, u"Point clouds (*.%1)"_s.arg(extensions.join(u" *."_s)));
    if (file.isEmpty())
        return;
    if (m_settings)
        m_settings->setValue(u"Folder"_s, QFileInfo(file).path());
    Inspect(file);
}

void DeskWindow::Inspect(const QString& file)
{
    _EndJob();
    m_progress->setValue(0);
    m_progress->show();
    statusBar()->showMessage(u"Inspecting %1"_s.arg(file));
    m_isCancelled = std::make_shared<std::atomic<bool>>(false);

    // When it comes to the main thread, the window may have died or been given another file.
    const auto postToWindow = [window = RawPtr(this), isCancelled = m_isCancelled,
                               where = std::source_location::current()](auto function) {
        const auto callIfWanted = [=] {
            if (window && !*isCancelled)
                function(*window);
        };
        App::PostEvent(App::SafeCallable(callIfWanted, where));
    };
    // The services stay: the application waits for its workers before it destroys them.
    m_executor.ExecuteAsync([file, postToWindow, isCancelled = m_isCancelled,
                             &reader = App::Services().Require<IPointCloudReader>(),
                             &fitter = App::Services().Require<IPlaneFitter>()] {
        try
        {
            const auto showProgress = [&, shown = 0](double part) mutable {
                if (*isCancelled)
                    throw Exception::E_Escape();
                const int percent = static_cast<int>(part * 100.0);
                if (std::exchange(shown, percent) != percent)
                    postToWindow([percent](DeskWindow& window) { window.m_progress->setValue(percent); });
            };
            const auto result =
                std::make_shared<const Inspection>(Desk::Inspect(reader, fitter, file, showProgress));
            postToWindow([result](DeskWindow& window) { window._Show(result); });
        }
        catch (...)
        {
            // Thrown again on the main thread, where SafeCallable reports it to the user.
            postToWindow([error = std::current_exception()](DeskWindow& window) {
                window._EndJob();
                std::rethrow_exception(error);
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

void DeskWindow::_Show(const std::shared_ptr<const Inspection>& inspection)
{
    _EndJob();
    m_inspection = inspection;
    QString text;
    for (const auto& [name, value] : inspection->GetFigures())
        text += u"<p>%1<br><span style='font-size: %2px'><b>%3</b></span></p>"_s.arg(
            name, name == u"Flatness" ? u"26"_s : u"13"_s, value.toHtmlEscaped());
    m_figures->setText(text);
    const QString name = QFileInfo(inspection->file).fileName();
    setWindowTitle(u"%1 \u2013 %2"_s.arg(name, App::GetAppConfig().applicationTitle));

    QElapsedTimer timer;
    timer.start();
    m_view->Show(inspection);
    statusBar()->showMessage(u"%1: %L2 points; read in %3 s, fitted in %4 s, drawn in %5 s"_s.arg(name)
                                 .arg(inspection->points.size())
                                 .arg(inspection->readSeconds, 0, 'f', 3)
                                 .arg(inspection->fitSeconds, 0, 'f', 3)
                                 .arg(static_cast<double>(timer.elapsed()) / 1000.0, 0, 'f', 3));
    App::Log(Log::Verbosity::Info, statusBar()->currentMessage());
}

bool DeskWindow::IsResultLogged() const
{
    return m_log->GetShownLines().join(u'\n').contains(statusBar()->currentMessage());
}

void DeskWindow::dragEnterEvent(QDragEnterEvent* event)
{
    if (!GetDroppedFile(*event).isEmpty())
        event->acceptProposedAction();
}

void DeskWindow::dropEvent(QDropEvent* event) { Inspect(GetDroppedFile(*event)); }
} // namespace vek::Desk
