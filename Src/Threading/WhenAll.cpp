#include "VekAppCore/Threading/WhenAll.h"
#include "VekAppCore/Threading/LaunchedTask.h"
#include <utility>

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

/// Has no work of its own: it ends with the last of its tasks. Their callbacks hold it.
class WhenAllTask final : public Details::LaunchedTask
{
public:
    WhenAllTask(const EventExecutor& executor, const TrString& title, std::size_t taskCount)
        : LaunchedTask(executor, title), m_members(taskCount), m_openCount(taskCount)
    {}

    void Watch(std::size_t index, const std::shared_ptr<TaskAwaiterImplBase>& task)
    {
        if (task->HasEnded())
        {
            _OnEnd(index, task->GetException());
            return;
        }
        const auto self = std::static_pointer_cast<WhenAllTask>(shared_from_this());
        Member& member = m_members[index];
        member.task = task;
        member.progressionChanged =
            task->OnProgressionChanged([self, index](int percent) { self->_OnProgression(index, percent); });
        member.finished = task->OnTaskFinished(
            [self, index, ended = task.get()] { self->_OnEnd(index, ended->GetException()); });
    }

    void Cancel() override
    {
        TaskImplBase::Cancel();
        for (const Member& member : m_members)
            if (const auto task = member.task.lock())
                task->Cancel();
    }

    [[nodiscard]] const std::exception_ptr& GetException() const { return m_exception; }

protected:
    void Run(IProgression&) override {}

private:
    struct Member
    {
        std::weak_ptr<TaskAwaiterImplBase> task;
        int percent = 0;
        Connection progressionChanged;
        Connection finished;
    };

    void _OnProgression(std::size_t index, int percent)
    {
        m_members[index].percent = percent;
        int sum = 0;
        for (const Member& member : m_members)
            sum += member.percent;
        const int mean = sum / static_cast<int>(m_members.size());
        if (mean != std::exchange(m_mean, mean))
            _EmitProgression(mean);
    }

    void _OnEnd(std::size_t index, const std::exception_ptr& exception)
    {
        if (exception && (!m_exception || (IsCancellation(m_exception) && !IsCancellation(exception))))
            m_exception = exception;
        _OnProgression(index, 100);
        if (--m_openCount == 0)
            Release(shared_from_this());
    }

    std::vector<Member> m_members;
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
} // namespace

TaskListener WhenAll(const EventExecutor& executor, const TrString& title,
                     const std::vector<TaskListener>& tasks)
{
    std::vector<std::shared_ptr<TaskAwaiterImplBase>> awaiters;
    for (const TaskListener& task : tasks)
        if (task.IsValid())
            awaiters.push_back(task.m_awaiter);
    const auto all = std::make_shared<WhenAllTask>(executor, title, awaiters.size());
    const auto awaiter = std::make_shared<WhenAllAwaiter>(*all, executor, title);
    all->SetAwaiter(awaiter);
    if (awaiters.empty())
        WhenAllTask::Release(all);
    for (std::size_t index = 0; index < awaiters.size(); ++index)
        all->Watch(index, awaiters[index]);
    return TaskListener(awaiter);
}
} // namespace vek::Threading
