#pragma once
#include "VekAppCore/Threading/TaskExecutor.h"
#include <deque>
#include <exception>
#include <random>
#include <vector>

namespace vek::Threading
{
/// An executor for tests: runs all on the calling thread, one after the other, in an order drawn from a seed,
/// so that an order that breaks something is a number to try again. Functions for the pool run in any order;
/// posted ones in theirs, with any number of the others between them. The same everywhere for the same seed.
/// A function runs in one piece: races inside one, as of a cancellation with the work, are not to be found
/// with it. One thread only, which is both the main thread and the pool. End a test with RunAll, or with
/// WaitForAll and Clear: what is posted may hold the executor, as tasks do.
///
/// @code
/// const auto seeded = std::make_shared<Threading::SeededExecutor>(42);
/// Threading::TaskExecutor executor(seeded);
/// @endcode
class VEKAPPCORE_EXPORT SeededExecutor : public ITaskExecutorImpl
{
public:
    /// @param seed  of the order.
    explicit SeededExecutor(std::uint32_t seed);
    ~SeededExecutor() override;

    void PostEvent(std::function<void()> function, const std::source_location& where) override;

    /// Runs what is waiting until @p predicate is true; then once more all that is posted.
    /// @throws std::bad_function_call  @p predicate is empty.
    /// @throws Exception::InternalAppException  nothing is waiting any more: it would never become true.
    void WaitUntil(const std::function<bool()>& predicate, EEventToTreat what) override;

    /// Drops what is posted.
    void Clear() override;

    /// An exception that leaves @p function drops the ones that wait for the pool.
    void ExecuteAsync(std::function<void()> function) override;
    std::shared_ptr<RunningTaskChecker> GetRunningTaskChecker() override;

    /// Runs what waits for the pool, and nothing that is posted. The first exception leaves it at the end.
    void WaitForAll() override;

    /// Runs one function, posted or for the pool.
    /// @return false when none is waiting.
    bool RunOne();

    /// Runs until none is waiting.
    void RunAll();

private:
    void _RunAsync(std::size_t index);
    void _RunPosted();

    std::mt19937 m_random;
    std::vector<std::function<void()>> m_async;
    std::deque<std::function<void()>> m_posted;
    std::exception_ptr m_exception; ///< The first that left a function of the pool since WaitForAll.
    const std::shared_ptr<RunningTaskChecker> m_checker;
};
} // namespace vek::Threading
