#pragma once
#include "VekAppCore/Export.h"
#include "VekAppCore/Threading/EventQueue.h"
#include <functional>
#include <memory>
#include <source_location>

namespace vek::Threading
{
/// Posts functions to the main thread and waits there.
class VEKAPPCORE_EXPORT IEventExecutorImpl
{
public:
    virtual ~IEventExecutorImpl();
    /// @{
    /// As the functions of the same names of EventExecutor.
    virtual void PostEvent(std::function<void()> function, const std::source_location& where) = 0;
    virtual void WaitUntil(const std::function<bool()>& predicate, EEventToTreat what) = 0;
    virtual void Clear() = 0;
    /// @}
};

/// Lives as long as its executor: who must know whether an executor still exists keeps a weak pointer to it.
struct RunningTaskChecker
{};

/// Runs functions on worker threads as well.
class VEKAPPCORE_EXPORT ITaskExecutorImpl : public IEventExecutorImpl
{
public:
    ~ITaskExecutorImpl() override;
    /// @{
    /// As the functions of the same names of TaskExecutor.
    /// WaitForAll is what its destructor calls.
    virtual void ExecuteAsync(std::function<void()> function) = 0;
    virtual std::shared_ptr<RunningTaskChecker> GetRunningTaskChecker() = 0;
    virtual void WaitForAll() = 0;
    /// @}
};

/// A handle that posts functions to the main thread. Copies share one implementation and do not wait for it.
class VEKAPPCORE_EXPORT EventExecutor
{
public:
    /// @param implementation  not null.
    explicit EventExecutor(std::shared_ptr<IEventExecutorImpl> implementation);

    /// Runs @p function later on the main thread, in the order of posting. Thread-safe.
    void PostEvent(std::function<void()> function) const;

    /// Waits on the main thread, which goes on running posted events and, as @p what says, Qt's, at least
    /// every millisecond. Main thread only.
    /// @throws std::bad_function_call  @p predicate is empty.
    void WaitUntil(const std::function<bool()>& predicate, EEventToTreat what) const;

    /// Drops the pending posted events unrun. Main thread only.
    void Clear() const;

private:
    std::shared_ptr<IEventExecutorImpl> m_implementation;
};

/// Runs functions on the worker pool. Destroying it waits for all that it started. Move-only.
class VEKAPPCORE_EXPORT TaskExecutor
{
public:
    /// On an implementation of its own.
    TaskExecutor();
    /// @param implementation  not null.
    explicit TaskExecutor(std::shared_ptr<ITaskExecutorImpl> implementation);
    TaskExecutor(TaskExecutor&&) noexcept = default;
    /// Waits for all that this one started before it takes over the other's.
    TaskExecutor& operator=(TaskExecutor&& other) noexcept;
    ~TaskExecutor();

    /// Runs @p function on a worker thread and returns at once. Thread-safe. @p function should not throw: an
    /// exception that leaves it cancels the functions that have not started yet, and is reported when the
    /// executor is destroyed.
    void ExecuteAsync(std::function<void()> function);

    /// As EventExecutor::PostEvent.
    void PostEvent(std::function<void()> function);
    /// As EventExecutor::WaitUntil.
    void WaitUntil(const std::function<bool()>& predicate, EEventToTreat what);
    /// As EventExecutor::Clear.
    void Clear();

    /// Thread-safe.
    [[nodiscard]] std::shared_ptr<RunningTaskChecker> GetRunningTaskChecker();

    /// A handle on the same main-thread queue that does not wait.
    operator EventExecutor() const;

private:
    std::shared_ptr<ITaskExecutorImpl> m_implementation; ///< Null in a moved-from executor only.
};

/// An executor on oneTBB's worker pool whose posted events the Qt event loop runs. It is a PostEventManager
/// too.
[[nodiscard]] VEKAPPCORE_EXPORT std::shared_ptr<ITaskExecutorImpl> CreateDefaultTaskExecutorImpl();

/// The executor that an application creates at start-up and destroys at shut-down.
[[nodiscard]] VEKAPPCORE_EXPORT TaskExecutor CreateAppTaskExecutor();
} // namespace vek::Threading
