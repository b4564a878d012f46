#pragma once
#include "InspectionDesk/DeviationView.h"
#include "VekAppCore/App/LogPanel.h"
#include "VekAppCore/Threading/TaskExecutor.h"
#include <QElapsedTimer>
#include <QLabel>
#include <QMainWindow>
#include <QProgressBar>
#include <atomic>

namespace vek::Desk
{
/// The desk: inspects one file at a time on the worker pool and shows the result. Main thread only.
class DeskWindow : public QMainWindow
{
public:
    /// @param executor  outlives the window.
    explicit DeskWindow(Threading::TaskExecutor& executor);
    /// Ends a running inspection without waiting for it.
    ~DeskWindow() override;

    using FailureCallback = std::function<void(const std::exception_ptr& failure)>;

    /// Starts to inspect a file, in place of a running inspection.
    /// @param onFailure  called where that fails; the user is told of what it throws.
    void Inspect(const QString& file, FailureCallback onFailure = std::rethrow_exception);

    [[nodiscard]] bool IsBusy() const { return m_isCancelled != nullptr; }
    /// The log is shown a little later than the rest.
    [[nodiscard]] bool IsResultLogged() const { return m_log->GetLineCount() > 0; }
    /// The last one that succeeded; null before.
    [[nodiscard]] std::shared_ptr<const Inspection> GetInspection() const { return m_inspection; }

protected:
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void _AskForFile();
    void _EndJob();
    void _Show(const QString& file, const std::shared_ptr<const Inspection>& inspection);

    Threading::TaskExecutor& m_executor;
    DeviationView* const m_view;
    QLabel* const m_figures;
    App::LogPanel* const m_log;
    QProgressBar* const m_progress;
    std::shared_ptr<std::atomic<bool>> m_isCancelled; ///< Of the running inspection; null when there is none.
    std::shared_ptr<const Inspection> m_inspection;
    QElapsedTimer m_timer; ///< Since the last inspection was started.
};
} // namespace vek::Desk
