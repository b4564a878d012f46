#include "VekAppCore/Threading/AsyncTask.h"
#include "VekAppCore/App/SafeCallable.h"
#include "VekBase/MoveOnlyFunction.h"
#include <utility>

namespace vek::Threading
{
namespace
{
// What a listener throws neither ends the task nor silences the listeners behind it.
template <typename... Args>
MoveOnlyFunction<void(Args...)> MakeSafe(std::function<void(Args...)> callback)
{
    if (!callback)
        return {};
    return App::SafeCallable(std::move(callback));
}

TrString UnknownError() { return TrString::translate("CmdBase", "An unknown error occurred"); }

Signal<void(const std::shared_ptr<RunningTaskChecker>&, const TaskListener&)>& TaskLaunched()
{
    static Signal<void(const std::shared_ptr<RunningTaskChecker>&, const TaskListener&)> signal;
    return signal;
}
} // namespace

namespace Details
{
TaskAwaiterImplBase::TaskAwaiterImplBase(TaskImplBase& task, const EventExecutor& executor,
                                         const TrString& title)
    : m_executor(executor), m_task(task.weak_from_this()), m_title(title)
{
    m_taskFinished = task.m_finished.Connect([this] { OnFinished(); });
}

TaskAwaiterImplBase::~TaskAwaiterImplBase() = default;

Connection TaskAwaiterImplBase::OnTaskStarted(std::function<void()> callback)
{
    if (const auto task = m_task.lock(); task && !m_taskStarted.IsConnected())
        m_taskStarted = task->m_started.Connect([this] { m_started.Emit(); });
    return m_started.Connect(MakeSafe(std::move(callback)));
}

Connection TaskAwaiterImplBase::OnTaskFinished(std::function<void()> callback, EPriority priority)
{
    return m_finished.Connect(MakeSafe(std::move(callback)), priority);
}

Connection TaskAwaiterImplBase::OnTaskSucceeded(std::function<void()> callback, EPriority priority)
{
    return m_succeeded.Connect(MakeSafe(std::move(callback)), priority);
}

Connection TaskAwaiterImplBase::OnTaskCanceled(std::function<void()> callback, EPriority priority)
{
    return m_canceled.Connect(MakeSafe(std::move(callback)), priority);
}

Connection TaskAwaiterImplBase::OnTaskException(std::function<void(const AppException&)> callback,
                                                EPriority priority)
{
    return m_exceptionThrown.Connect(MakeSafe(std::move(callback)), priority);
}

Connection TaskAwaiterImplBase::OnProgressionChanged(std::function<void(int)> callback)
{
    if (const auto task = m_task.lock(); task && !m_taskProgressionChanged.IsConnected())
        m_taskProgressionChanged =
            task->m_progressionChanged.Connect([this](int value) { OnProgressionChanged(value); });
    return m_progressionChanged.Connect(MakeSafe(std::move(callback)));
}

Connection TaskAwaiterImplBase::OnTitleChanged(std::function<void(const TrString&)> callback)
{
    if (const auto task = m_task.lock(); task && !m_taskTitleChanged.IsConnected())
        m_taskTitleChanged =
            task->m_titleChanged.Connect([this](const TrString& title) { m_titleChanged.Emit(title); });
    return m_titleChanged.Connect(MakeSafe(std::move(callback)));
}

void TaskAwaiterImplBase::Cancel()
{
    if (const auto task = m_task.lock())
        task->Cancel();
}

bool TaskAwaiterImplBase::IsCanceled() const noexcept
{
    const auto task = m_task.lock();
    return task && task->IsCanceled();
}

void TaskAwaiterImplBase::Wait()
{
    const auto self = weak_from_this().lock(); // what runs meanwhile may drop it
    m_executor.WaitUntil([this] { return IsTaskFinished(); }, EEventToTreat::AllEvents);
}

void TaskAwaiterImplBase::OnFinished()
{
    const auto self = weak_from_this().lock(); // the continuation may drop it
    m_isFinished = true;
    ExecuteThen();
    m_hasEnded = true;
    m_finished.Emit();
}

void TaskAwaiterImplBase::OnProgressionChanged(int value) { m_progressionChanged.Emit(value); }

void TaskAwaiterImplBase::ExecuteThen()
{
    if (!IsTaskFinished())
        return;
    try
    {
        RunThen();
    }
    catch (...)
    {
        // RunThen has told its own failures; finished comes in any case.
    }
}

void TaskAwaiterImplBase::HandleException()
{
    m_exception = std::current_exception();
    try
    {
        throw;
    }
    catch (const Exception::E_Escape&)
    {
        m_canceled.Emit();
    }
    catch (const AppException& exception)
    {
        m_exceptionThrown.Emit(exception);
    }
    catch (...)
    {
        m_exceptionThrown.Emit(AppException(UnknownError(), std::source_location::current()));
    }
}

void TaskAwaiterImplBase::_EmitSucceeded() { m_succeeded.Emit(); }

namespace
{
/// What a task executor gets of a task.
class Execution : public AllocatedObject
{
public:
    explicit Execution(std::shared_ptr<LaunchedTask> task)
        : m_state(std::allocate_shared<State>(Allocator<State>(), std::move(task)))
    {}
    void operator()() { TaskImplBase::ExecuteAndRelease(std::move(m_state->task)); }

private:
    /// Apart, since a function can be copied: what counts is that none of its copies has run.
    struct State
    {
        explicit State(std::shared_ptr<LaunchedTask> launched) : task(std::move(launched)) {}
        State(const State&) = delete;
        State& operator=(const State&) = delete;
        ~State()
        {
            if (!task)
                return;
            try
            {
                TaskImplBase::Release(std::move(task));
            }
            catch (...)
            {
                // No memory: nobody hears of the end, but the task counts as finished.
            }
        }
        std::shared_ptr<LaunchedTask> task; ///< Null once it runs.
    };
    std::shared_ptr<State> m_state;
};
} // namespace

TaskListener StartTask(TaskExecutor& executor, std::shared_ptr<LaunchedTask> task,
                       const std::shared_ptr<TaskAwaiterImplBase>& awaiter)
{
    TaskListener listener(awaiter);
    executor.ExecuteAsync(Execution(std::move(task)));
    if (TaskLaunched().HasConnections())
        TaskLaunched().Emit(executor.GetRunningTaskChecker(), listener);
    return listener;
}
} // namespace Details

TaskListener::TaskListener() noexcept = default;
TaskListener::TaskListener(std::shared_ptr<Details::TaskAwaiterImplBase> awaiter) noexcept
    : m_awaiter(std::move(awaiter))
{}
TaskListener::TaskListener(const TaskListener&) noexcept = default;
TaskListener::TaskListener(TaskListener&&) noexcept = default;
TaskListener& TaskListener::operator=(const TaskListener&) noexcept = default;
TaskListener& TaskListener::operator=(TaskListener&&) noexcept = default;
TaskListener::~TaskListener() = default;

bool TaskListener::IsTaskFinished() const { return !m_awaiter || m_awaiter->IsTaskFinished(); }

void TaskListener::Cancel() const
{
    if (m_awaiter)
        m_awaiter->Cancel();
}

void TaskListener::Wait() const
{
    if (m_awaiter)
        m_awaiter->Wait();
}

TrString TaskListener::GetTitle() const { return m_awaiter ? m_awaiter->GetTitle() : TrString(); }

Connection TaskListener::OnTaskFinished(std::function<void()> callback, EPriority priority) const
{
    return m_awaiter ? m_awaiter->OnTaskFinished(std::move(callback), priority) : Connection();
}

Connection TaskListener::OnTaskSucceeded(std::function<void()> callback, EPriority priority) const
{
    return m_awaiter ? m_awaiter->OnTaskSucceeded(std::move(callback), priority) : Connection();
}

Connection TaskListener::OnTaskCanceled(std::function<void()> callback, EPriority priority) const
{
    return m_awaiter ? m_awaiter->OnTaskCanceled(std::move(callback), priority) : Connection();
}

Connection TaskListener::OnTaskException(std::function<void(const Exception::AppException&)> callback,
                                         EPriority priority) const
{
    return m_awaiter ? m_awaiter->OnTaskException(std::move(callback), priority) : Connection();
}

Connection TaskListener::OnProgressionChanged(std::function<void(int)> callback) const
{
    return m_awaiter ? m_awaiter->OnProgressionChanged(std::move(callback)) : Connection();
}

Connection TaskListener::OnTitleChanged(std::function<void(const TrString&)> callback) const
{
    return m_awaiter ? m_awaiter->OnTitleChanged(std::move(callback)) : Connection();
}

void HandleFutureException()
{
    try
    {
        throw;
    }
    catch (const Exception::AppException&)
    {
        throw;
    }
    catch (const std::future_error&)
    {
        throw Exception::E_Escape();
    }
    catch (const std::exception& exception)
    {
        throw Exception::InternalAppException(QString::fromUtf8(exception.what()),
                                              std::source_location::current());
    }
    catch (...)
    {
        throw Exception::InternalAppException(QStringLiteral("An unknown error occurred"),
                                              std::source_location::current());
    }
}

Connection OnTaskLaunched(TaskExecutor& executor, std::function<void(const TaskListener&)> callback)
{
    return TaskLaunched().Connect(
        [checker = std::weak_ptr(executor.GetRunningTaskChecker()), callback = MakeSafe(std::move(callback))](
            const std::shared_ptr<RunningTaskChecker>& launched, const TaskListener& listener) mutable {
            if (launched && launched == checker.lock() && callback)
                callback(listener);
        });
}

AsyncTask::AsyncTask() = default;
AsyncTask::~AsyncTask() { _SetCurrent(nullptr); }

void AsyncTask::Cancel()
{
    if (m_awaiter)
        m_awaiter->Cancel();
}

void AsyncTask::Terminate() { _SetCurrent(nullptr); }

void AsyncTask::Wait()
{
    if (m_awaiter)
        m_awaiter->Wait();
}

bool AsyncTask::IsTaskFinished() const { return !m_awaiter || m_awaiter->IsTaskFinished(); }

bool AsyncTask::IsCanceled() const { return m_awaiter && m_awaiter->IsCanceled(); }

void AsyncTask::OnNewTask(const TaskListener&) {}

void AsyncTask::_SetCurrent(std::shared_ptr<Details::TaskAwaiterImplBase> awaiter)
{
    if (const auto before = std::exchange(m_awaiter, std::move(awaiter)))
        before->DropThen();
}
} // namespace vek::Threading
