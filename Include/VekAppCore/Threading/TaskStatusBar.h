#pragma once
#include "VekAppCore/Threading/TaskExecutor.h"
#include "VekAppCore/Threading/TaskListener.h"
#include "VekAppCoreWidgets/Export.h"
#include <QWidget>
#include <memory>
#include <vector>

class QHBoxLayout;

namespace vek::Threading
{
/// A TaskProgressWidget for every task of an executor that is running or waits for a worker, in order of
/// launching; for the status bar of a window. Main thread only.
class VEKAPPCOREWIDGETS_EXPORT TaskStatusBar : public QWidget
{
public:
    /// @param executor  only tasks launched on it from now on are shown; see Add for others.
    explicit TaskStatusBar(TaskExecutor& executor, QWidget* parent = nullptr);
    ~TaskStatusBar() override;

    /// Shows a task until it is finished.
    void Add(const TaskListener& task);

private:
    struct Entry;

    QHBoxLayout* const m_layout;
    std::vector<std::unique_ptr<Entry>> m_entries;
    Connection m_taskLaunched;
};
} // namespace vek::Threading
