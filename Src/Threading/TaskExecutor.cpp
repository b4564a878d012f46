#include "VekAppCore/Threading/TaskExecutor.h"
#include "VekAppCore/Threading/PostEventManager.h"
#include "VekBase/Exception.h"
#include "VekBase/TBBHelper.h"
#include <QCoreApplication>
#include <chrono>
#include <thread>
#include <utility>

using namespace std::chrono_literals;

namespace vek::Threading
{
namespace
{
class DefaultTaskExecutorImpl final : public PostEventManager, public ITaskExecutorImpl
{
public:
    using PostEventManager::PostEvent;

    void PostEvent(std::function<void()> function, const std::source_location& where) override
    {
        PostEventManager::PostEvent(
            std::allocate_shared<FunctionEvent>(Allocator<FunctionEvent>(), std::move(function)), where);
    }

    void WaitUntil(const std::function<bool()>& predicate, EEventToTreat what) override
    {
        if (predicate()) // an empty one throws
            return;
        ProcessEvents(what);
        while (!predicate())
        {
            std::this_thread::sleep_for(1ms);
            ProcessEvents(what);
        }
        ProcessEvents(what); // what the finishing work posted last
    }

    void Clear() override { EventQueue::Clear(); }

    void ExecuteAsync(std::function<void()> function) override { m_taskGroup.Run(std::move(function)); }

    std::shared_ptr<RunningTaskChecker> GetRunningTaskChecker() override { return m_checker; }

    void WaitForAll() override { m_taskGroup.Wait(); }

private:
    Multithread::TBBHelper::StandaloneTaskGroup m_taskGroup;
    const std::shared_ptr<RunningTaskChecker> m_checker = std::make_shared<RunningTaskChecker>();
};

// A destructor lets no exception out.
void WaitForAllQuietly(ITaskExecutorImpl* implementation) noexcept
{
    if (!implementation)
        return;
    try
    {
        implementation->WaitForAll();
    }
    catch (...)
    {
        Exception::HandleException();
    }
    // What is posted now would wait for ever, and keep the implementation, which keeps it.
    if (!QCoreApplication::instance())
        implementation->Clear();
}
} // namespace

IEventExecutorImpl::~IEventExecutorImpl() = default;
ITaskExecutorImpl::~ITaskExecutorImpl() = default;

EventExecutor::EventExecutor(std::shared_ptr<IEventExecutorImpl> implementation)
    : m_implementation(std::move(implementation))
{}

void EventExecutor::PostEvent(std::function<void()> function) const
{
    m_implementation->PostEvent(std::move(function), std::source_location::current());
}

void EventExecutor::WaitUntil(const std::function<bool()>& predicate, EEventToTreat what) const
{
    m_implementation->WaitUntil(predicate, what);
}

void EventExecutor::Clear() const { m_implementation->Clear(); }

TaskExecutor::TaskExecutor() : TaskExecutor(CreateDefaultTaskExecutorImpl()) {}

TaskExecutor::TaskExecutor(std::shared_ptr<ITaskExecutorImpl> implementation)
    : m_implementation(std::move(implementation))
{}

TaskExecutor& TaskExecutor::operator=(TaskExecutor&& other) noexcept
{
    if (this != &other)
    {
        WaitForAllQuietly(m_implementation.get());
        m_implementation = std::move(other.m_implementation);
    }
    return *this;
}

TaskExecutor::~TaskExecutor() { WaitForAllQuietly(m_implementation.get()); }

void TaskExecutor::ExecuteAsync(std::function<void()> function)
{
    m_implementation->ExecuteAsync(std::move(function));
}

void TaskExecutor::PostEvent(std::function<void()> function)
{
    m_implementation->PostEvent(std::move(function), std::source_location::current());
}

void TaskExecutor::WaitUntil(const std::function<bool()>& predicate, EEventToTreat what)
{
    m_implementation->WaitUntil(predicate, what);
}

void TaskExecutor::Clear() { m_implementation->Clear(); }

std::shared_ptr<RunningTaskChecker> TaskExecutor::GetRunningTaskChecker()
{
    return m_implementation->GetRunningTaskChecker();
}

TaskExecutor::operator EventExecutor() const { return EventExecutor(m_implementation); }

std::shared_ptr<ITaskExecutorImpl> CreateDefaultTaskExecutorImpl()
{
    return std::make_shared<DefaultTaskExecutorImpl>();
}

TaskExecutor CreateAppTaskExecutor() { return TaskExecutor(CreateDefaultTaskExecutorImpl()); }
} // namespace vek::Threading
