#include "VekAppCore/Threading/ProcessEventsScheduler.h"
#include <QEventLoop>

using namespace std::chrono_literals;

namespace vek::Threading
{
ProcessEventsScheduler::ProcessEventsScheduler() : ProcessEventsScheduler(50ms, 5ms) {}

ProcessEventsScheduler::ProcessEventsScheduler(std::chrono::milliseconds interval,
                                               std::chrono::milliseconds maximumTime)
    : m_loop(std::make_unique<QEventLoop>()), m_interval(interval), m_maximumTime(maximumTime)
{}

ProcessEventsScheduler::~ProcessEventsScheduler() = default;

bool ProcessEventsScheduler::ProcessPendingEvents(bool force)
{
    if (!force)
    {
        const auto now = std::chrono::steady_clock::now();
        if (now - m_interval <= m_last)
            return false;
        m_last = now;
    }
    m_loop->processEvents(QEventLoop::AllEvents, static_cast<int>(m_maximumTime.count()));
    return true;
}
} // namespace vek::Threading
