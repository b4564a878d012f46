#pragma once
#include "VekAppCore/Export.h"
#include "VekBase/LogText.h"
#include "VekBase/SafeObject.h"
#include <functional>
#include <memory>
#include <source_location>

namespace vek::Threading
{
/// What a processing loop does besides running queued events; any other value is like QueueOnly.
enum class EEventToTreat : int
{
    QueueOnly = 0,
    AllEvents = 1,       ///< Also lets Qt process its pending events.
    ExcludeUserInput = 2 ///< The same, except what the user does meanwhile.
};
[[nodiscard]] VEKAPPCORE_EXPORT std::string ToLogText(EEventToTreat events);
using vek::PrintTo;

/// One unit of posted work, always held by a shared pointer.
class VEKAPPCORE_EXPORT IEvent
{
public:
    virtual ~IEvent();
    /// Does the work, once; what it throws leaves the loop that runs it.
    virtual void Process() = 0;
};

/// Runs a function.
class VEKAPPCORE_EXPORT FunctionEvent final : public IEvent
{
public:
    /// @param function  not empty.
    explicit FunctionEvent(std::function<void()> function) : m_function(std::move(function)) {}
    /// @throws std::bad_function_call  the function is empty.
    void Process() override;

private:
    std::function<void()> m_function;
};

/// Takes posted work and runs it later.
class VEKAPPCORE_EXPORT IEventHolder : public SafeObject
{
public:
    ~IEventHolder() override;

    /// Thread-safe.
    /// @param where  who posts, kept for diagnostics.
    /// @return 0 when the event was taken.
    virtual int PostEvent(const std::shared_ptr<IEvent>& event, const std::source_location& where) = 0;

    /// Runs the pending events on the calling thread until none is left, also those posted meanwhile. May be
    /// called by an event. What an event throws leaves this function, and the events behind it stay queued.
    virtual void ProcessEvents(EEventToTreat what) = 0;
};

/// A lock-free queue of events, first in first out over all threads that post.
class VEKAPPCORE_EXPORT EventQueue : public IEventHolder
{
public:
    EventQueue();
    /// Drops the pending events without running them.
    ~EventQueue() override;

    int PostEvent(const std::shared_ptr<IEvent>& event, const std::source_location& where) override;

    /// With a Qt step, that step follows each event, and is taken once when no event was pending.
    void ProcessEvents(EEventToTreat what) override;

    /// Drops the pending events without running them. Thread-safe.
    void Clear();

private:
    struct Impl;
    const std::unique_ptr<Impl> m_impl;
};
} // namespace vek::Threading
