#pragma once
#include "VekBase/Export.h"
#include "VekBase/LogText.h"
#include <functional>
#include <memory>

namespace vek::Multithread::TBBHelper
{
/// How the work of a StandaloneTaskGroup ended.
enum class ETaskGroupStatus
{
    Complete,
    Canceled
};
[[nodiscard]] VEKBASE_EXPORT std::string ToLogText(ETaskGroupStatus status);
using vek::PrintTo;

/// A task arena with a task group of its own on the worker pool. Thread-safe, except for its destruction.
class VEKBASE_EXPORT StandaloneTaskGroup
{
public:
    StandaloneTaskGroup();
    StandaloneTaskGroup(const StandaloneTaskGroup&) = delete;
    StandaloneTaskGroup& operator=(const StandaloneTaskGroup&) = delete;
    /// Waits for what runs; an exception that nobody waited for is reported with HandleException.
    ~StandaloneTaskGroup();

    /// Starts @p function on a worker and returns at once. An exception that leaves it cancels what has not
    /// started yet, and leaves the next Wait.
    void Run(std::function<void()> function);

    /// Blocks until all is done; the calling thread helps, the first one where several wait.
    ETaskGroupStatus Wait();

private:
    struct Impl;
    std::unique_ptr<Impl> m_impl;
};

/// Runs @p function in an isolated region and waits for it: while it waits, it picks up no unrelated task of
/// the arena it was called in. An exception of @p function cancels what it started and left pending, then
/// passes on.
VEKBASE_EXPORT void InvokeInIsolatedTBBContext(const std::function<void()>& function);
} // namespace vek::Multithread::TBBHelper
