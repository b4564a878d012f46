#include "VekAppCore/Threading/TaskStatusBar.h"
#include "VekAppCore/Threading/AsyncTask.h"
#include "VekAppCore/Threading/TaskProgressWidget.h"
#include <QHBoxLayout>

namespace vek::Threading
{
struct TaskStatusBar::Entry
{
    std::unique_ptr<TaskProgressWidget> widget;
    Connection finished;
};

TaskStatusBar::TaskStatusBar(TaskExecutor& executor, QWidget* parent)
    : QWidget(parent), m_layout(new QHBoxLayout(this))
{
    m_layout->setContentsMargins(0, 0, 0, 0);
    m_taskLaunched = OnTaskLaunched(executor, [this](const TaskListener& task) { Add(task); });
}

TaskStatusBar::~TaskStatusBar() = default;

void TaskStatusBar::Add(const TaskListener& task)
{
    if (task.IsTaskFinished())
        return;
    Entry* const entry = m_entries.emplace_back(std::make_unique<Entry>()).get();
    entry->widget = std::make_unique<TaskProgressWidget>(task);
    m_layout->addWidget(entry->widget.get());
    entry->finished = task.OnTaskFinished([this, entry] {
        std::erase_if(m_entries, [entry](const auto& each) { return each.get() == entry; });
    });
}
} // namespace vek::Threading
