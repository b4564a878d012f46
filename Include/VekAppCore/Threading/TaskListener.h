#pragma once
#include "VekAppCore/Export.h"
#include "VekAppCore/Text/TrString.h"
#include "VekBase/Signal.h"
#include <functional>
#include <memory>
#include <vector>

namespace vek::Exception
{
class AppException;
} // namespace vek::Exception

namespace vek::Threading
{
class EventExecutor;

namespace Details
{
class TaskAwaiterImplBase;
} // namespace Details

/// A handle on a task, for those who watch it, cancel it or wait for it. Copies share the task. Main thread
/// only; all callbacks are called there.
///
/// Every task ends with exactly one of succeeded, canceled and exception, and then finished. Who connects
/// after that is never called, and looks at IsTaskFinished. Who lets the main thread treat events between the
/// launch and connecting may miss the first progress and titles.
class VEKAPPCORE_EXPORT TaskListener
{
public:
    /// Order of the callbacks of one task.
    using EPriority = SignalBase::EPriority;

    /// An empty one.
    TaskListener() noexcept;
    /// @param awaiter  made by the launch; null for an empty one.
    explicit TaskListener(std::shared_ptr<Details::TaskAwaiterImplBase> awaiter) noexcept;
    TaskListener(const TaskListener&) noexcept;
    TaskListener(TaskListener&&) noexcept;
    TaskListener& operator=(const TaskListener&) noexcept;
    TaskListener& operator=(TaskListener&&) noexcept;
    virtual ~TaskListener();

    /// False for an empty one.
    [[nodiscard]] bool IsValid() const noexcept { return m_awaiter != nullptr; }

    /// True for an empty one, and from the end of the work on: already in the callbacks that tell how it
    /// ended.
    [[nodiscard]] bool IsTaskFinished() const;

    /// Asks the work to stop: it does at its next progress report, or goes on to its end. Any number of
    /// times.
    void Cancel() const;

    /// Returns when the task is finished; meanwhile the main thread treats posted events and all of Qt's.
    void Wait() const;

    /// The title given at the launch; empty for an empty listener.
    [[nodiscard]] TrString GetTitle() const;

    /// @{
    /// Each returns the connection, which is kept for as long as the callback is wanted: an empty one for an
    /// empty listener. What a callback throws is reported with App::HandleAppException.
    [[nodiscard]] Connection OnTaskFinished(std::function<void()> callback,
                                            EPriority priority = EPriority::Default) const;
    [[nodiscard]] Connection OnTaskSucceeded(std::function<void()> callback,
                                             EPriority priority = EPriority::Default) const;
    [[nodiscard]] Connection OnTaskCanceled(std::function<void()> callback,
                                            EPriority priority = EPriority::Default) const;
    [[nodiscard]] Connection OnTaskException(std::function<void(const Exception::AppException&)> callback,
                                             EPriority priority = EPriority::Default) const;
    /// @}

    /// Percent.
    [[nodiscard]] Connection OnProgressionChanged(std::function<void(int)> callback) const;
    /// The title from now on.
    [[nodiscard]] Connection OnTitleChanged(std::function<void(const TrString&)> callback) const;

    /// The same task.
    bool operator==(const TaskListener& other) const noexcept = default;

private:
    friend VEKAPPCORE_EXPORT TaskListener WhenAll(const EventExecutor& executor, const TrString& title,
                                                  const std::vector<TaskListener>& tasks);

    std::shared_ptr<Details::TaskAwaiterImplBase> m_awaiter; ///< Null in an empty one.
};
} // namespace vek::Threading
