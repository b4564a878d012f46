#pragma once
#include "VekAppCore/App/Exception.h"
#include "VekAppCore/Threading/TaskImplBase.h"
#include <exception>

namespace vek::Threading::Details
{
/// The observing side of a task: hands its signals on to listeners, and runs the continuation when the work
/// has ended. A callback that throws is reported with App::HandleAppException; it keeps no other one from
/// being called. Main thread only.
class VEKAPPCORE_EXPORT TaskAwaiterImplBase : public SafeObject,
                                              public std::enable_shared_from_this<TaskAwaiterImplBase>
{
public:
    using EPriority = SignalBase::EPriority;
    using AppException = Exception::AppException;

    /// @param task  owned by a shared pointer, not started yet.
    TaskAwaiterImplBase(TaskImplBase& task, const EventExecutor& executor, const TrString& title);
    TaskAwaiterImplBase(const TaskAwaiterImplBase&) = delete;
    TaskAwaiterImplBase& operator=(const TaskAwaiterImplBase&) = delete;
    ~TaskAwaiterImplBase() override;

    /// A worker has taken the task up.
    [[nodiscard]] Connection OnTaskStarted(std::function<void()> callback);
    /// The work and the continuation have ended; called behind the outcome, which is one of the next three.
    [[nodiscard]] Connection OnTaskFinished(std::function<void()> callback,
                                            EPriority priority = EPriority::Default);
    [[nodiscard]] Connection OnTaskSucceeded(std::function<void()> callback,
                                             EPriority priority = EPriority::Default);
    [[nodiscard]] Connection OnTaskCanceled(std::function<void()> callback,
                                            EPriority priority = EPriority::Default);
    [[nodiscard]] Connection OnTaskException(std::function<void(const AppException&)> callback,
                                             EPriority priority = EPriority::Default);
    [[nodiscard]] Connection OnProgressionChanged(std::function<void(int)> callback);
    [[nodiscard]] Connection OnTitleChanged(std::function<void(const TrString&)> callback);

    /// The one given at the launch.
    [[nodiscard]] const TrString& GetTitle() const noexcept { return m_title; }

    /// True from the end of the work on, also where the task has died without an end.
    [[nodiscard]] bool IsTaskFinished() const noexcept { return m_isFinished || m_task.expired(); }

    /// True once finished is being emitted: who connects now hears nothing any more.
    [[nodiscard]] bool HasEnded() const noexcept { return m_hasEnded; }
    /// How it ended; null for success, and before the end.
    [[nodiscard]] const std::exception_ptr& GetException() const noexcept { return m_exception; }

    /// Does nothing after the end.
    void Cancel();
    [[nodiscard]] bool IsCanceled() const noexcept;

    /// The continuation is not called any more. Listeners still hear how the task ends.
    virtual void DropThen() {}

    /// Returns when the task is finished; meanwhile the main thread treats posted events and all of Qt's.
    void Wait();

protected:
    /// Continues, then emits finished.
    void OnFinished();
    void OnProgressionChanged(int value);
    void ExecuteThen();

    /// To be called in a catch block: emits canceled for E_Escape, exception otherwise.
    void HandleException();

    void _EmitSucceeded();

    /// The continuation. It ends with _EmitSucceeded or with HandleException.
    virtual void RunThen() = 0;

    /// Null once the task has died.
    [[nodiscard]] std::shared_ptr<TaskImplBase> _LockTask() const noexcept { return m_task.lock(); }

private:
    // To the signals of the task; but for the first, made when somebody listens: most tasks have few
    // listeners.
    Connection m_taskFinished;
    Connection m_taskStarted;
    Connection m_taskProgressionChanged;
    Connection m_taskTitleChanged;

    Signal<void()> m_started;
    Signal<void()> m_finished;
    Signal<void()> m_succeeded;
    Signal<void()> m_canceled;
    Signal<void(const AppException&)> m_exceptionThrown;
    Signal<void(int)> m_progressionChanged;
    Signal<void(const TrString&)> m_titleChanged;
    const EventExecutor m_executor;
    const std::weak_ptr<TaskImplBase> m_task;
    bool m_isFinished = false;
    bool m_hasEnded = false;
    const TrString m_title;
    std::exception_ptr m_exception;
};
} // namespace vek::Threading::Details
