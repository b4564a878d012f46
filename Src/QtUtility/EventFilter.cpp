#include "VekAppCore/QtUtility/EventFilter.h"
#include "VekAppCore/App/ErrorReporting.h"
#include <utility>

namespace vek::QtUtility
{
EventFilter::EventFilter(QObject* watched, std::function<void(QEvent*)> callback)
    : QObject(watched), m_callback(std::move(callback))
{
    watched->installEventFilter(this);
}

EventFilter::~EventFilter() = default;

void EventFilter::Stop()
{
    if (std::exchange(m_isStopped, true))
        return;
    parent()->removeEventFilter(this);
    deleteLater(); // not now: the callback may be running
}

bool EventFilter::eventFilter(QObject* watched, QEvent* event)
{
    // A filter of the application object is shown the events of all objects.
    if (m_isStopped || watched != parent())
        return false;
    try
    {
        m_callback(event);
    }
    catch (...)
    {
        App::HandleEventException(parent(), event);
    }
    return false;
}
} // namespace vek::QtUtility
