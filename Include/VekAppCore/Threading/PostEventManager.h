#pragma once
#include "VekAppCore/Threading/EventQueue.h"

namespace vek::Threading
{
/// A queue that wakes the main thread: what is posted runs when the Qt event loop gets to it.
class VEKAPPCORE_EXPORT PostEventManager : public EventQueue
{
public:
    PostEventManager();
    ~PostEventManager() override;

    /// Thread-safe.
    /// @return 0 when the main thread was woken, 1 without a QCoreApplication: the event then waits for
    /// ProcessEvents.
    int PostEvent(const std::shared_ptr<IEvent>& event, const std::source_location& where) override;
};
} // namespace vek::Threading
