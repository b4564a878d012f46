#include "VekAppCore/Threading/PostEventManager.h"
#include "VekAppCore/App/SafeCallable.h"
#include "VekAppCore/Threading/VekQFuncEvent.h"
#include "VekBase/RawPtr.h"
#include <QCoreApplication>
#include <mutex>
#include <shared_mutex>

namespace vek::Threading
{
namespace
{
/// Drains the queue of its manager, if that still lives, like a function event. It holds the manager itself:
/// as a function it would cost each post one more allocation.
class WakeUp final : public VekQFuncEvent
{
public:
    explicit WakeUp(PostEventManager& manager) : VekQFuncEvent({}), m_manager(&manager) { _Publish(); }
    ~WakeUp() override
    {
        _Receive();
        if (PostEventManager* const manager = m_manager.Get())
            App::SafeCallable([manager] { manager->ProcessEvents(EEventToTreat::QueueOnly); })();
    }

private:
    const RawPtr<PostEventManager> m_manager;
};

std::shared_mutex g_applicationMutex; // others may post while the application object dies
bool g_isApplicationAlive = false;

void OnApplicationStart()
{
    const std::lock_guard lock(g_applicationMutex);
    g_isApplicationAlive = true;
    qAddPostRoutine([] {
        const std::lock_guard end(g_applicationMutex);
        g_isApplicationAlive = false;
    });
}
Q_COREAPP_STARTUP_FUNCTION(OnApplicationStart)
} // namespace

PostEventManager::PostEventManager() = default;
PostEventManager::~PostEventManager() = default;

int PostEventManager::PostEvent(const std::shared_ptr<IEvent>& event, const std::source_location& where)
{
    if (const int result = EventQueue::PostEvent(event, where); result != 0)
        return result;
    const std::shared_lock lock(g_applicationMutex);
    if (!g_isApplicationAlive)
        return 1;
    QCoreApplication::postEvent(QCoreApplication::instance(), new WakeUp(*this));
    return 0;
}
} // namespace vek::Threading
