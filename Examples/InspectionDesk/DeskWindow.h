#pragma once
#include "InspectionDesk/Inspection.h"
#include "VekAppCore/Threading/TaskExecutor.h"
#include <QLabel>
#include <QMainWindow>
#include <QProgressBar>
#include <QSettings>
#include <atomic>
#include <memory>

namespace vek::App
{
class LogPanel;
} // namespace vek::App

namespace vek::Desk
{
class DeviationView;

/// The desk: inspects one file at a time on the worker pool and shows the result. Main thread only.
class DeskWindow : public QMainWindow
{
public:
    /// @param executor  outlives the window.
    explicit DeskWindow(Threading::TaskExecutor& executor);
    /// Ends a running inspection without waiting for it.
    ~DeskWindow() override;

    /// Takes its place from an INI file, and keeps it there from now on.
    void UseSettings(const QString& file);

    /// Starts to inspect a file, in place of a running inspection. A failure is reported to the user.
    void Inspect(const QString& file);

    [[nodiscard]] bool IsBusy() const { return m_isCancelled != nullptr; }
    /// The log is shown a little later than the rest.
    [[nodiscard]] bool IsResultLogged() const;
    /// The last one that succeeded; null before.
    [[nodiscard]] std::shared_ptr<const Inspection> GetInspection() const { return m_inspection; }

protected:
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    QDockWidget* _AddDock(Qt::DockWidgetArea area, const QString& title, QWidget* content);
    void _AskForFile();
    void _EndJob();
    void _Show(const std::shared_ptr<const Inspection>& inspection);

    Threading::TaskExecutor& m_executor;
    DeviationView* const m_view;
    QLabel* const m_figures;
    App::LogPanel* const m_log;
    QProgressBar* const m_progress;
    std::unique_ptr<QSettings> m_settings;            ///< Null when it keeps nothing.
    std::shared_ptr<std::atomic<bool>> m_isCancelled; ///< Of the running inspection; null when there is none.
    std::shared_ptr<const Inspection> m_inspection;
};
} // namespace vek::Desk
