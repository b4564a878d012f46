#include "VekAppCore/Threading/EventQueue.h"
#include "Base/EnumText.h"
#include <QCoreApplication>
#include <oneapi/tbb/concurrent_queue.h>

namespace vek::Threading
{
namespace
{
struct Entry
{
    Entry() = default;
    Entry(const std::shared_ptr<IEvent>& posted, const std::source_location& poster)
        : event(posted), where(poster)
    {}

    std::shared_ptr<IEvent> event;
    std::source_location where; ///< For the debugger: who posted it.
};

void TakeQtStep(EEventToTreat what)
{
    switch (what)
    {
    case EEventToTreat::QueueOnly: break;
    case EEventToTreat::AllEvents: QCoreApplication::processEvents(); break;
    case EEventToTreat::ExcludeUserInput:
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
        break;
    }
}

/// A ProcessEvents under way on this thread, known to it so that an event may destroy the queue.
class Processing
{
public:
    explicit Processing(const EventQueue& queue) noexcept : m_queue(&queue), m_outer(t_innermost)
    {
        t_innermost = this;
    }
    Processing(const Processing&) = delete;
    Processing& operator=(const Processing&) = delete;
    ~Processing() { t_innermost = m_outer; }

    [[nodiscard]] bool IsQueueAlive() const noexcept { return m_queue != nullptr; }

    static void Forget(const EventQueue& queue) noexcept
    {
        for (Processing* processing = t_innermost; processing; processing = processing->m_outer)
            if (processing->m_queue == &queue)
                processing->m_queue = nullptr;
    }

private:
    static thread_local constinit Processing* t_innermost;

    const EventQueue* m_queue; ///< Null once it has been destroyed.
    Processing* const m_outer;
};
thread_local constinit Processing* Processing::t_innermost = nullptr;
} // namespace

struct EventQueue::Impl
{
    // The default allocator of the queue aligns its blocks to cache lines, which takes longer than it saves.
    tbb::concurrent_queue<Entry, std::allocator<Entry>> entries;
};

IEvent::~IEvent() = default;
IEventHolder::~IEventHolder() = default;

void FunctionEvent::Process() { m_function(); }

EventQueue::EventQueue() : m_impl(std::make_unique<Impl>()) {}

EventQueue::~EventQueue() { Processing::Forget(*this); }

int EventQueue::PostEvent(const std::shared_ptr<IEvent>& event, const std::source_location& where)
{
    m_impl->entries.emplace(event, where);
    return 0;
}

void EventQueue::ProcessEvents(EEventToTreat what)
{
    const Processing processing(*this);
    auto& entries = m_impl->entries;
    Entry entry;
    if (!entries.try_pop(entry))
    {
        TakeQtStep(what);
        return;
    }
    do
    {
        entry.event->Process();
        TakeQtStep(what);
    } while (processing.IsQueueAlive() && entries.try_pop(entry));
}

void EventQueue::Clear()
{
    bool isPopped = true;
    while (isPopped)
    {
        Entry entry; // dies before the next is looked for: what it holds may post
        isPopped = m_impl->entries.try_pop(entry);
    }
}

std::string ToLogText(EEventToTreat events)
{
    return Details::ToEnumText(events, EEventToTreat::QueueOnly,
                               {"QueueOnly", "AllEvents", "ExcludeUserInput"});
}
} // namespace vek::Threading
