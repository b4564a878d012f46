#include "VekAppCore/Threading/WhenAll.h"
#include "VekAppCore/Threading/LaunchedTask.h"
#include <numeric>

namespace vek::Threading
{
namespace
{
using Details::TaskAwaiterImplBase;

bool IsCancellation(const std::exception_ptr& exception)
{
    try
    {
        std::rethrow_exception(exception);
    }
    catch (const Exception::E_Escape&)
    {
        return true;
    }
    catch (...)
    {
        return false;
    }
}

/// Has no work of its own: it runs when the last of its tasks has ended.
class WhenAllTask final : public Details::LaunchedTask
{
public:
    WhenAllTask(const EventExecutor& executor, const TrString& title, std::size_t taskCount)
        : LaunchedTask(executor, title), m_percents(taskCount, 0), m_openCount(taskCount)
    {}

    void Add(const std::shared_ptr<TaskAwaiterImplBase>& task) { m_tasks.push_back(task); }

    void Cancel() override
    {
        TaskImplBase::Cancel();
        for (const std::weak_ptr<TaskAwaiterImplBase>& task : m_tasks)
            if (const auto awaiter = task.lock())
                awaiter->Cancel();
    }

    void OnProgression(std::size_t index, int percent)
    {
        m_percents[index] = percent;
        const int mean =
            std::accumulate(m_percents.begin(), m_percents.end(), 0) / static_cast<int>(m_percents.size());
        if (mean != std::exchange(m_mean, mean))
            _EmitProgression(mean);
    }

    void OnEnd(std::size_t index, const std::exception_ptr& exception)
    {
        if (exception && (!m_exception || (IsCancellation(m_exception) && !IsCancellation(exception))))
            m_exception = exception;
        OnProgression(index, 100);
        if (--m_openCount == 0)
            Finish();
    }

    void Finish() { ExecuteAndRelease(shared_from_this()); }

    [[nodiscard]] const std::exception_ptr& GetException() const { return m_exception; }

protected:
    void Run(IProgression&) override {}

private:
    std::vector<std::weak_ptr<TaskAwaiterImplBase>> m_tasks;
    std::vector<int> m_percents;
    int m_mean = 0;
    std::size_t m_openCount;
    std::exception_ptr m_exception; ///< Null while none has failed.
};

class WhenAllAwaiter final : public TaskAwaiterImplBase
{
public:
    using TaskAwaiterImplBase::TaskAwaiterImplBase;

protected:
    void RunThen() override
    {
        const auto task = std::static_pointer_cast<WhenAllTask>(_LockTask());
        try
        {
            if (!task)
                throw Exception::E_Escape();
            if (task->GetException())
                std::rethrow_exception(task->GetException());
        }
        catch (...)
        {
            HandleException();
            return;
        }
        _EmitSucceeded();
    }
};

/// Lives in the callbacks that one of the tasks calls. When they die uncalled, so has the task.
class Member
{
public:
    Member(std::shared_ptr<WhenAllTask> all, std::size_t index) : m_all(std::move(all)), m_index(index) {}
    Member(const Member&) = delete;
    Member& operator=(const Member&) = delete;
    ~Member() { OnEnd(std::make_exception_ptr(Exception::E_Escape())); }

    void OnProgression(int percent)
    {
        if (m_all)
            m_all->OnProgression(m_index, percent);
    }
    void OnEnd(const std::exception_ptr& exception)
    {
        if (const auto all = std::exchange(m_all, nullptr))
            all->OnEnd(m_index, exception);
    }

    Connection finished;
    Connection progressionChanged;

private:
    std::shared_ptr<WhenAllTask> m_all; ///< Null once it has been told of the end.
    const std::size_t m_index;
};
} // namespace

TaskListener WhenAll(const EventExecutor& executor, const TrString& title,
                     const std::vector<TaskListener>& tasks)
{
    const auto all = std::make_shared<WhenAllTask>(executor, title, tasks.size());
    const auto awaiter = std::make_shared<WhenAllAwaiter>(*all, executor, title);
    all->SetAwaiter(awaiter);
    all->KeepAwaiter(awaiter);
    for (std::size_t index = 0; index < tasks.size(); ++index)
    {
        const std::shared_ptr<TaskAwaiterImplBase>& task = tasks[index].m_awaiter;
        if (!task || task->HasEnded())
        {
            all->OnEnd(index, task ? task->GetException() : nullptr);
            continue;
        }
        all->Add(task);
        const auto member = std::make_shared<Member>(all, index);
        member->progressionChanged =
            task->OnProgressionChanged([member](int percent) { member->OnProgression(percent); });
        member->finished =
            task->OnTaskFinished([member, awaiter = task.get()] { member->OnEnd(awaiter->GetException()); });
    }
    if (tasks.empty())
        all->Finish();
    return TaskListener(awaiter);
}
} // namespace vek::Threading
