#pragma once
#include "VekAppCore/Export.h"
#include "VekBase/SafeObject.h"
#include <chrono>
#include <memory>

class QEventLoop;

namespace vek::Threading
{
/// Lets long work on the main thread keep the user interface alive, at a bounded rate. Main thread only.
class VEKAPPCORE_EXPORT ProcessEventsScheduler : public IObject
{
public:
    /// Every 50 ms, for 5 ms.
    ProcessEventsScheduler();
    /// @param interval  least time between two processings.
    /// @param maximumTime  longest time one processing may take.
    ProcessEventsScheduler(std::chrono::milliseconds interval, std::chrono::milliseconds maximumTime);
    ~ProcessEventsScheduler() override;

    /// Processes Qt's pending events if the interval has passed.
    /// @param force  at once, whatever the time, and without counting for the interval.
    /// @return true when it processed.
    bool ProcessPendingEvents(bool force);

private:
    std::unique_ptr<QEventLoop> m_loop;
    /// At first long ago: the clock may have been started less than an interval before.
    std::chrono::steady_clock::time_point m_last = (std::chrono::steady_clock::time_point::min)();
    std::chrono::milliseconds m_interval;
    std::chrono::milliseconds m_maximumTime;
};
} // namespace vek::Threading
