#include "VekBase/TBBHelper.h"
#include "VekBase/Exception.h"
#include <atomic>
#include <exception>
#include <mutex>
#include <oneapi/tbb/task_arena.h>
#include <oneapi/tbb/task_group.h>
#include <utility>

namespace vek::Multithread::TBBHelper
{
namespace
{
// The pool makes what happened before Run visible to the function, and what the function did visible behind
// Wait; but the thread sanitizer cannot see into it. So we say it again, at the cost of an increment. This
// one is not a member: the sanitizer must see it before a worker reads the task, and so finds the group.
std::atomic<unsigned> g_handOver{0};
} // namespace

// The group never sees an exception: it would be lost, or freed twice, where several threads wait or one
// waits while another runs new work, because the reset of a task group's context is not thread-safe.
struct StandaloneTaskGroup::Impl
{
    void Execute(std::function<void()>& function) noexcept
    {
        if (!isCanceled.load(std::memory_order_relaxed))
            try
            {
                function();
            }
            catch (...)
            {
                const std::lock_guard lock(mutex);
                if (!exception)
                    exception = std::current_exception();
                isCanceled = true;
            }
        function = nullptr; // what it holds must have died when Wait returns
        endedCount.fetch_add(1, std::memory_order_release);
    }

    struct Work // a mutable lambda will not do: a task calls a constant
    {
        void operator()() const
        {
            g_handOver.load(std::memory_order_acquire);
            impl->Execute(function);
        }
        Impl* impl;
        mutable std::function<void()> function;
    };

    // Isolated: work started inside a task of another group must outlive the cancelling of that group.
    tbb::task_group_context context{tbb::task_group_context::isolated};
    tbb::task_group group{context};
    tbb::task_arena arena;
    std::atomic<unsigned> endedCount{0};
    std::atomic<bool> isCanceled{false}; ///< What starts now is not run; until the exception has left Wait.
    std::mutex waitMutex;                ///< Held by the thread that waits for the group.
    std::mutex mutex;                    ///< Guards exception.
    std::exception_ptr exception;        ///< The first one since the last Wait.
};

StandaloneTaskGroup::StandaloneTaskGroup() : m_impl(std::make_unique<Impl>()) {}

StandaloneTaskGroup::~StandaloneTaskGroup()
{
    try
    {
        Wait();
    }
    catch (...)
    {
        Exception::HandleException();
    }
}

void StandaloneTaskGroup::Run(std::function<void()> function)
{
    auto task = m_impl->group.defer(Impl::Work{m_impl.get(), std::move(function)});
    g_handOver.fetch_add(1, std::memory_order_release);
    // Enqueued rather than spawned: a spawned task waits for the caller's next Wait where the machine has one
    // core, and entering the arena to spawn blocks while all of its slots are taken.
    m_impl->arena.enqueue(std::move(task));
}

ETaskGroupStatus StandaloneTaskGroup::Wait()
{
    // One at a time finds the slot that the arena keeps free for it; the wait of one more would be delegated
    // to a worker, and reset the context beside the first one.
    const std::lock_guard waiting(m_impl->waitMutex);
    const tbb::task_group_status status = m_impl->arena.execute([this] { return m_impl->group.wait(); });
    m_impl->endedCount.load(std::memory_order_acquire);
    std::unique_lock lock(m_impl->mutex);
    if (const std::exception_ptr exception = std::exchange(m_impl->exception, nullptr))
    {
        m_impl->isCanceled = false;
        lock.unlock();
        std::rethrow_exception(exception);
    }
    return status == tbb::canceled ? ETaskGroupStatus::Canceled : ETaskGroupStatus::Complete;
}

void InvokeInIsolatedTBBContext(const std::function<void()>& function)
{
    tbb::this_task_arena::isolate([&function] {
        tbb::task_group_context context(tbb::task_group_context::isolated);
        tbb::task_group group(context);
        group.run_and_wait(function);
    });
}
} // namespace vek::Multithread::TBBHelper
