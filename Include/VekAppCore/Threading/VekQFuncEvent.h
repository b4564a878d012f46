#pragma once
#include "VekAppCore/Export.h"
#include "VekBase/Memory.h"
#include <QEvent>
#include <atomic>
#include <functional>

class QObject;

namespace vek::Threading
{
/// A Qt event that runs its function when Qt deletes it: after delivery, or when it is discarded because its
/// receiver died first. So the function always runs, and no receiver needs to handle the event. What it
/// throws is reported with App::HandleAppException. A copy runs the function too.
class VEKAPPCORE_EXPORT VekQFuncEvent : public QEvent, public AllocatedObject
{
public:
    /// @param function  run once for every event that holds it.
    explicit VekQFuncEvent(std::function<void()> function);
    VekQFuncEvent(const VekQFuncEvent& other);
    VekQFuncEvent& operator=(const VekQFuncEvent& other);
    ~VekQFuncEvent() override;
    [[nodiscard]] VekQFuncEvent* clone() const override;

    /// Runs @p function on the thread of @p receiver, with normal priority. Thread-safe.
    static void PostEvent(QObject* receiver, std::function<void()> function);

protected:
    /// Called by the thread that posts, before it does, and by the destructor of the event. Qt hands the
    /// event over anyway; these make it known to the thread sanitizer, which cannot see into Qt.
    void _Publish() noexcept { m_handOver.flag.store(true, std::memory_order_release); }
    void _Receive() const noexcept { static_cast<void>(m_handOver.flag.load(std::memory_order_acquire)); }

private:
    /// A copy is handed over by itself.
    struct HandOver
    {
        HandOver() = default;
        HandOver(const HandOver&) noexcept {}
        HandOver& operator=(const HandOver&) noexcept { return *this; }
        std::atomic<bool> flag{false};
    };

    HandOver m_handOver;
    std::function<void()> m_function;
};
} // namespace vek::Threading
