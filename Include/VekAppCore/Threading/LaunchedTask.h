#pragma once
#include "VekAppCore/Threading/TaskAwaiterImplBase.h"
#include <concepts>
#include <optional>
#include <type_traits>
#include <utility>
#include <variant>

namespace vek::Threading
{
class TaskListener;

namespace Details
{
/// A task with its awaiter, which ends for all who listen, whether or not anybody keeps a handle on it.
class VEKAPPCORE_EXPORT LaunchedTask : public TaskImplBase
{
public:
    using TaskImplBase::TaskImplBase;

    void SetAwaiter(std::shared_ptr<TaskAwaiterImplBase> awaiter) { m_awaiter = std::move(awaiter); }

private:
    std::shared_ptr<TaskAwaiterImplBase> m_awaiter;
};

/// Starts the task and tells those who wait for launches on @p executor. A task that the executor drops
/// before it has run ends as cancelled.
VEKAPPCORE_EXPORT TaskListener StartTask(TaskExecutor& executor, std::shared_ptr<LaunchedTask> task,
                                         const std::shared_ptr<TaskAwaiterImplBase>& awaiter);

struct NoThen
{
    void operator()(auto&&...) const noexcept {}
};

template <typename Work>
decltype(auto) InvokeWork(Work& work, IProgression& progression)
{
    if constexpr (std::invocable<Work&, IProgression&>)
        return std::invoke(work, progression);
    else
        return std::invoke(work);
}

/// By value, whatever the work returns.
template <typename Work>
using WorkResult =
    std::remove_cvref_t<decltype(InvokeWork(std::declval<Work&>(), std::declval<IProgression&>()))>;

template <typename Work>
class WorkTask final : public LaunchedTask
{
public:
    using Result = WorkResult<Work>;

    WorkTask(const EventExecutor& executor, const TrString& title, Work work)
        : LaunchedTask(executor, title), m_work(std::move(work))
    {}

    /// Once, on the main thread, after the end. Throws what the work threw; E_Escape where it did not run.
    Result TakeResult()
    {
        if (m_exception)
            std::rethrow_exception(m_exception);
        if (!m_result)
            throw Exception::E_Escape();
        if constexpr (!std::is_void_v<Result>)
            return std::move(*m_result);
    }

protected:
    void Run(IProgression& progression) override
    {
        Work work = std::move(*m_work);
        m_work.reset(); // what it holds dies here, not on the main thread
        try
        {
            if constexpr (std::is_void_v<Result>)
            {
                InvokeWork(work, progression);
                m_result.emplace();
            }
            else
                m_result.emplace(InvokeWork(work, progression));
        }
        catch (...)
        {
            m_exception = std::current_exception();
        }
    }

private:
    std::optional<Work> m_work; ///< Until it has run.
    std::optional<std::conditional_t<std::is_void_v<Result>, std::monostate, Result>> m_result;
    std::exception_ptr m_exception; ///< What the work threw.
};

template <typename Work, typename Then>
class WorkTaskAwaiter final : public TaskAwaiterImplBase
{
public:
    WorkTaskAwaiter(WorkTask<Work>& task, const EventExecutor& executor, const TrString& title, Then then)
        : TaskAwaiterImplBase(task, executor, title), m_then(std::move(then))
    {}

    void DropThen() override { m_then.reset(); }

protected:
    void RunThen() override
    {
        try
        {
            const auto task = std::static_pointer_cast<WorkTask<Work>>(_LockTask());
            if (!task)
                throw Exception::E_Escape();
            std::optional<Then> then = std::move(m_then);
            m_then.reset(); // what the continuation holds dies before the outcome is told
            if (!then)
                static_cast<void>(task->TakeResult());
            else if constexpr (std::is_void_v<WorkResult<Work>>)
            {
                task->TakeResult();
                std::invoke(*then);
            }
            else
                std::invoke(*then, task->TakeResult());
        }
        catch (...)
        {
            HandleException();
            return;
        }
        _EmitSucceeded();
    }

private:
    std::optional<Then> m_then; ///< Until it is called or dropped.
};

template <typename Work, typename Then>
std::pair<std::shared_ptr<LaunchedTask>, std::shared_ptr<TaskAwaiterImplBase>>
MakeTask(const EventExecutor& executor, const TrString& title, Work work, Then then)
{
    auto task =
        std::allocate_shared<WorkTask<Work>>(Allocator<WorkTask<Work>>(), executor, title, std::move(work));
    using Awaiter = WorkTaskAwaiter<Work, Then>;
    auto awaiter =
        std::allocate_shared<Awaiter>(Allocator<Awaiter>(), *task, executor, title, std::move(then));
    task->SetAwaiter(awaiter);
    return {std::move(task), std::move(awaiter)};
}
} // namespace Details
} // namespace vek::Threading
