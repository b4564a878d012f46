#include "VekAppCore/App/VekQApplication.h"
#include "VekAppCore/App/ErrorReporting.h"
#include "VekBase/Process.h"
#include "VekBase/ScopeFPEDisabler.h"
#include <QEvent>
#include <QPointer>
#include <QWidget>
#include <optional>

namespace vek::App
{
VekQApplication::VekQApplication(int& argc, char** argv) : QApplication(argc, argv)
{
    installEventFilter(this);
}

VekQApplication::~VekQApplication() = default;

void VekQApplication::AddTopLevelEventFilter(RawPtr<QObject> filter)
{
    m_topLevelEventFilters.push_back(std::move(filter));
}

void VekQApplication::CleanUpEventFilters()
{
    std::erase_if(m_topLevelEventFilters, [](const RawPtr<QObject>& filter) { return !filter; });
}

bool VekQApplication::eventFilter(QObject* watched, QEvent* event)
{
    const bool isKey = event->type() == QEvent::KeyPress || event->type() == QEvent::KeyRelease;
    const QPointer<QObject> guard = isKey ? watched : nullptr; // a filter may destroy it
    try
    {
        if (isKey && _OfferToTopLevelFilters(watched, event))
            return true;
        return QObject::eventFilter(watched, event);
    }
    catch (...)
    {
        HandleEventException(guard, event);
        return true;
    }
}

bool VekQApplication::_OfferToTopLevelFilters(QObject* watched, QEvent* event)
{
    const QPointer<QWidget> widget = qobject_cast<QWidget*>(watched);
    // A copy: a filter may add others, or run an event loop in which dead ones are removed.
    for (const RawPtr<QObject>& filter : std::vector(m_topLevelEventFilters))
        if (filter && widget && widget->isWindow() && filter->eventFilter(widget, event))
            return true;
    CleanUpEventFilters();
    return false;
}

bool VekQApplication::notify(QObject* receiver, QEvent* event)
{
    const QPointer<QObject> guard = receiver; // a handler may destroy it before it throws
    try
    {
        std::optional<ScopeFPEDisabler> disabler;
        if (IsUnitTestMode())
            disabler.emplace();
        return QApplication::notify(receiver, event);
    }
    catch (const std::exception&)
    {
        HandleEventException(guard, event);
    }
    catch (...)
    {
        HandleEventException(guard, event);
    }
    return true;
}
} // namespace vek::App
