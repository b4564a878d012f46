#pragma once
#include "VekAppCore/Threading/LaunchedTask.h"
#include "VekAppCore/Threading/TaskListener.h"
#include <future>

namespace vek::Threading
{
/// Starts a task: @p work runs on a worker, then @p then on the main thread. Main thread only.
///
/// @code
/// Threading::TaskExecutor executor;
/// Threading::LaunchTask(
///     executor, TrString::translate("Desk", "Measuring"),
///     [](Threading::IProgression& progression) {
///         progression.SetProgression(50);
///         return 0.05;
///     },
///     [](double flatness) { qDebug() << flatness; });
/// @endcode
///
/// The task goes on to its end whether or not anybody keeps the listener.
/// @param work  takes an IProgression& or nothing, and returns anything. It dies on the worker, when it has
/// run.
/// @param then  takes the result by value, or nothing where there is none. Not called when the work throws.
///     When it throws itself, the task ends as if the work had.
template <typename Work, typename Then = Details::NoThen>
TaskListener LaunchTask(TaskExecutor& executor, const TrString& title, Work work, Then then = {})
{
    const auto task = Details::MakeTask(executor, title, std::move(work), std::move(then));
    return Details::StartTask(executor, task.first, task.second);
}

/// What LaunchFuture returns.
template <typename Result>
struct FutureTask
{
    TaskListener listener;      ///< Of the task.
    std::future<Result> future; ///< Abandoned when the task is cancelled.
};

/// LaunchTask, with the result in a future. It is ready when the work has ended, a little before listeners
/// hear of it. Read it in a try block with HandleFutureException as handler. Main thread only.
template <typename Work>
FutureTask<Details::WorkResult<Work>> LaunchFuture(TaskExecutor& executor, const TrString& title, Work work)
{
    using Result = Details::WorkResult<Work>;
    std::promise<Result> promise;
    std::future<Result> future = promise.get_future();
    auto fulfil = [promise = std::move(promise), work = std::move(work)](IProgression& progression) mutable {
        try
        {
            if constexpr (std::is_void_v<Result>)
            {
                Details::InvokeWork(work, progression);
                promise.set_value();
            }
            else
                promise.set_value(Details::InvokeWork(work, progression));
        }
        catch (const Exception::E_Escape&)
        {
            throw; // an abandoned future tells of the cancellation
        }
        catch (...)
        {
            promise.set_exception(std::current_exception());
            throw;
        }
    };
    return {LaunchTask(executor, title, std::move(fulfil)), std::move(future)};
}

/// To be called in the handler of a try block that reads a future of a task.
/// @throws Exception::E_Escape  the future was abandoned: the task was cancelled, or dropped before it had
/// run.
/// @throws Exception::AppException  the exception in flight is one; an InternalAppException for any other.
[[noreturn]] VEKAPPCORE_EXPORT void HandleFutureException();

/// Calls @p callback behind the launch of every task on @p executor from now on. Main thread only.
[[nodiscard]] VEKAPPCORE_EXPORT Connection OnTaskLaunched(TaskExecutor& executor,
                                                          std::function<void(const TaskListener&)> callback);

/// The owner of one task at a time, usually a member of the object that the task works for. When the owner
/// dies, a running task goes on to its end, but its continuation is not called any more; others who listen to
/// it still hear how it ends. Main thread only.
class VEKAPPCORE_EXPORT AsyncTask
{
public:
    AsyncTask();
    AsyncTask(const AsyncTask&) = delete;
    AsyncTask& operator=(const AsyncTask&) = delete;
    virtual ~AsyncTask();

    /// As LaunchTask, and makes the task the current one. The continuation of the one before is not called
    /// any more.
    template <typename Work, typename Then = Details::NoThen>
    TaskListener Launch(TaskExecutor& executor, const TrString& title, Work work, Then then = {})
    {
        const auto task = Details::MakeTask(executor, title, std::move(work), std::move(then));
        _SetCurrent(task.second);
        const TaskListener listener = Details::StartTask(executor, task.first, task.second);
        OnNewTask(listener);
        return listener;
    }

    /// Asks the current task to stop.
    virtual void Cancel();

    /// Drops the current task without waiting for it or cancelling it: its continuation is not called.
    virtual void Terminate();

    /// Returns when the current task is finished; meanwhile the main thread treats posted events and all of
    /// Qt's.
    virtual void Wait();

    /// True without a current task.
    [[nodiscard]] bool IsTaskFinished() const;

    /// True when the current task has been asked to stop. It may have come to its end all the same: a
    /// continuation that goes on to the next task of a chain looks here.
    [[nodiscard]] bool IsCanceled() const;

protected:
    /// Called behind every launch; does nothing.
    virtual void OnNewTask(const TaskListener& listener);

private:
    void _SetCurrent(std::shared_ptr<Details::TaskAwaiterImplBase> awaiter);

    std::shared_ptr<Details::TaskAwaiterImplBase> m_awaiter; ///< Of the current task; null without one.
};
} // namespace vek::Threading
