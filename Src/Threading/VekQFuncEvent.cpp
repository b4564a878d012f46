#include "VekAppCore/Threading/VekQFuncEvent.h"
#include "VekAppCore/App/ErrorReporting.h"
#include <QCoreApplication>
#include <utility>

namespace vek::Threading
{
namespace
{
constexpr QEvent::Type eventType = QEvent::User;
} // namespace

VekQFuncEvent::VekQFuncEvent(std::function<void()> function)
    : QEvent(eventType), m_function(std::move(function))
{}
VekQFuncEvent::VekQFuncEvent(const VekQFuncEvent& other) = default;
VekQFuncEvent& VekQFuncEvent::operator=(const VekQFuncEvent& other) = default;

VekQFuncEvent::~VekQFuncEvent()
{
    _Receive();
    if (!m_function)
        return;
    try
    {
        m_function();
    }
    catch (...)
    {
        App::HandleAppException(TrString());
    }
}

VekQFuncEvent* VekQFuncEvent::clone() const { return new VekQFuncEvent(*this); }

void VekQFuncEvent::PostEvent(QObject* receiver, std::function<void()> function)
{
    auto* const event = new VekQFuncEvent(std::move(function));
    event->_Publish();
    QCoreApplication::postEvent(receiver, event, Qt::NormalEventPriority);
}
} // namespace vek::Threading
