#pragma once
#include "InspectionDesk/DeviationView.h"
#include "VekAppCore/App/LogPanel.h"
#include "VekAppCore/Threading/AsyncTask.h"
#include <QLabel>
#include <QMainWindow>
#include <QTabWidget>
#include <list>

namespace vek::Desk
{
/// The desk: inspects files on the worker pool, side by side, and shows each result in a tab. Main thread
/// only.
class DeskWindow : public QMainWindow
{
public:
    using FailureCallback = std::function<void(const Exception::AppException& exception)>;

    /// @param executor  outlives the window.
    explicit DeskWindow(Threading::TaskExecutor& executor);
    /// Cancels what is running without waiting for it.
    ~DeskWindow() override;

    /// Starts to inspect a file.
    /// @param onFailure  called where that fails; a message box unless given.
    void Inspect(const QString& file, FailureCallback onFailure = {});

    [[nodiscard]] bool IsBusy() const { return !m_jobs.empty(); }
    /// The log is shown a little later than the rest.
    [[nodiscard]] bool IsResultLogged() const { return m_log->GetLineCount() > 0; }
    /// The last one of that file; null without one.
    [[nodiscard]] const Inspection* FindInspection(const QString& file) const;

protected:
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    /// An inspection that is running. It dies with the window, which then hears no more of it.
    struct Job
    {
        Threading::AsyncTask task;
        Connection failed;
        Connection finished;
    };

    void _AskForFiles();
    void _Show(const QString& file, const std::shared_ptr<const Inspection>& inspection, double seconds);
    void _ShowFailure(const Exception::AppException& exception);
    void _ShowFigures();

    Threading::TaskExecutor& m_executor;
    QTabWidget* const m_tabs; ///< Of DeviationViews, named by their files.
    QLabel* const m_figures;  ///< Of the current tab.
    App::LogPanel* const m_log;
    std::list<Job> m_jobs;
};
} // namespace vek::Desk
