#include "VekBase/TBBHelper.h"
#include "Base/EnumText.h"
#include "VekBase/Exception.h"
#include <algorithm>
#include <atomic>
#include <deque>
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
    /// A task of the pool. The pool drops it unrun where a function has cancelled the group's context.
    class Runner
    {
    public:
        explicit Runner(Impl& impl) : m_impl(&impl) {}
        Runner(Runner&& other) noexcept : m_impl(std::exchange(other.m_impl, nullptr)) {}
        ~Runner()
        {
            if (!m_impl)
                return;
            const std::lock_guard lock(m_impl->mutex);
            --m_impl->runners;
        }
        void operator()() const
        {
            g_handOver.load(std::memory_order_acquire);
            std::exchange(m_impl, nullptr)->RunSome();
        }

    private:
        mutable Impl* m_impl; ///< Null once it has run: it then counts itself out.
    };

    void Add(std::function<void()> function)
    {
        {
            const std::lock_guard lock(mutex);
            functions.push_back(std::move(function));
            if (runners == maximumRunners)
                return;
            ++runners;
        }
        StartRunner();
    }

    // Enqueued rather than spawned: a spawned task waits for the caller's next Wait where the machine has one
    // core, and entering the arena to spawn blocks while all of its slots are taken.
    void StartRunner()
    {
        auto task = group.defer(Runner(*this));
        g_handOver.fetch_add(1, std::memory_order_release);
        arena.enqueue(std::move(task));
    }

    // A task of the pool for each function would cost more than a small function does. A runner takes one
    // function after the other, never several at once, since one may wait for the next. It ends after some: a
    // function that waits for parallel work may be running it meanwhile, and other work of the pool has its
    // turn.
    void RunSome() noexcept
    {
        std::unique_lock lock(mutex);
        for (int i = 0; i < functionsPerRunner; ++i)
        {
            if (functions.empty())
            {
                --runners;
                return;
            }
            std::function<void()> function = std::move(functions.front());
            functions.pop_front();
            const bool isSkipped = isCanceled;
            lock.unlock();
            std::exception_ptr thrown = isSkipped ? nullptr : Execute(function);
            function = nullptr; // what it holds must have died when Wait returns
            lock.lock();        // and Wait, which locks too, sees what the function did
            if (thrown && !exception)
                exception = thrown;
            isCanceled = isCanceled || thrown;
        }
        StartRunner(); // in its place
    }

    static std::exception_ptr Execute(const std::function<void()>& function) noexcept
    {
        try
        {
            function();
            return nullptr;
        }
        catch (...)
        {
            return std::current_exception();
        }
    }

    static constexpr int functionsPerRunner = 32;

    // Isolated: work started inside a task of another group must outlive the cancelling of that group.
    tbb::task_group_context context{tbb::task_group_context::isolated};
    tbb::task_group group{context};
    tbb::task_arena arena;
    /// Two even on one core: a thread in Wait helps, and a function may wait for another.
    const int maximumRunners = std::max(2, arena.max_concurrency());
    std::mutex waitMutex; ///< Held by the thread that waits for the group.
    std::mutex mutex;     ///< Guards what follows.
    std::deque<std::function<void()>>
        functions;                ///< Not empty only while there is a runner or a cancellation.
    int runners = 0;              ///< Enqueued or at work.
    bool isCanceled = false;      ///< What starts now is not run; until the exception has left Wait.
    std::exception_ptr exception; ///< The first one since the last Wait.
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

void StandaloneTaskGroup::Run(std::function<void()> function) { m_impl->Add(std::move(function)); }

ETaskGroupStatus StandaloneTaskGroup::Wait()
{
    // One at a time finds the slot that the arena keeps free for it; the wait of one more would be delegated
    // to a worker, and reset the context beside the first one.
    const std::lock_guard waiting(m_impl->waitMutex);
    const tbb::task_group_status status = m_impl->arena.execute([this] { return m_impl->group.wait(); });
    std::deque<std::function<void()>> dropped; // dies after the lock has been left
    std::unique_lock lock(m_impl->mutex);
    if (status == tbb::canceled)
        dropped.swap(m_impl->functions);
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

std::string ToLogText(ETaskGroupStatus status)
{
    return Details::ToEnumText(status, ETaskGroupStatus::Complete, {"Complete", "Canceled"});
}
} // namespace vek::Multithread::TBBHelper
