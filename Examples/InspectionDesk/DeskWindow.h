#pragma once
#include "InspectionDesk/DeviationView.h"
#include "InspectionDesk/InspectionDocument.h"
#include "VekAppCore/App/LogPanel.h"
#include "VekAppCore/Threading/AsyncTask.h"
#include "VekBase/ScopeBase.h"
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

    /// Takes the settings of the user, and keeps them as they change from now on.
    void UseSettings();

    /// Of the points in files that are inspected from now on; millimetres unless set.
    void SetFileUnit(Unit::LengthUnit unit) { m_fileUnit = unit; }

    /// Starts to inspect a file, or to open a document or a report.
    /// @param onFailure  called where that fails; a message box unless given.
    void Inspect(const QString& file, FailureCallback onFailure = {});

    /// Starts to save a result, as a report or a document by the extension; the window stays open until that
    /// is done.
    void Save(const QString& file, const InspectionDocument& document);

    [[nodiscard]] bool IsBusy() const { return !m_jobs.empty(); }
    /// The log is shown a little later than the rest.
    [[nodiscard]] bool IsResultLogged() const { return m_log->GetLineCount() > 0; }
    /// The last one of that file; null without one.
    [[nodiscard]] const InspectionDocument* FindResult(const QString& file) const;

protected:
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    /// A file that is being read or saved. It dies with the window, which then hears no more of it.
    struct Job
    {
        Threading::AsyncTask task;
        Connection failed;
        Connection finished;
        bool isSaving;
    };

    /// @param onFailure  a message box unless given.
    template <typename Work, typename Then>
    void _Launch(const TrString& title, Work work, Then then, FailureCallback onFailure, bool isSaving);

    [[nodiscard]] DeviationView* _GetView() const;
    void _AskForFiles();
    void _AskForTarget();
    void _AskForSettings();
    void _AskForConsent();
    void _ListRecentFiles();
    void _AddRecentFile(const QString& file);
    void _ChangeSettings(const DeskSettings& settings);
    void _Show(const QString& file, const InspectionDocument& result, double seconds);
    void _Tell(const TrString& message);
    void _ShowFailure(const Exception::AppException& exception);
    void _ShowFigures();

    Threading::TaskExecutor& m_executor;
    DeskSettings m_settings;
    std::optional<DeskSettingsStore> m_store; ///< Empty where settings are neither read nor kept.
    Unit::LengthUnit m_fileUnit = Unit::LengthUnit::Millimeter;
    QTabWidget* const m_tabs; ///< Of DeviationViews, named by their files.
    QLabel* const m_figures;  ///< Of the current tab.
    App::LogPanel* const m_log;
    QAction* m_save = nullptr;
    QMenu* m_recentFiles = nullptr;
    TrString m_told; ///< In the status bar.
    std::list<Job> m_jobs;
    Connection m_switched; ///< Of the consent panel.
    ScopeBase m_page;      ///< Of the window, for the usage statistics.
};
} // namespace vek::Desk
