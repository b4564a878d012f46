#pragma once
#include "VekAppCore/Threading/TaskListener.h"
#include "VekAppCoreWidgets/Export.h"
#include <QWidget>
#include <chrono>
#include <functional>
#include <memory>

namespace vek::Threading
{
/// Shows a task: its title, a bar (busy until the first progress), the remaining time once it can be told,
/// and a button that cancels it. Texts follow a change of language. Main thread only.
class VEKAPPCOREWIDGETS_EXPORT TaskProgressWidget : public QWidget
{
public:
    /// For tests.
    using Clock = std::function<std::chrono::steady_clock::time_point()>;

    /// @param clock  by which the remaining time is told.
    explicit TaskProgressWidget(const TaskListener& task, QWidget* parent = nullptr,
                                Clock clock = std::chrono::steady_clock::now);
    ~TaskProgressWidget() override;

    /// As given to the constructor.
    [[nodiscard]] const TaskListener& GetTask() const noexcept;

protected:
    void changeEvent(QEvent* event) override;

private:
    struct Impl;
    std::unique_ptr<Impl> m_impl;
};
} // namespace vek::Threading
