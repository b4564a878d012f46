#pragma once
#include "VekAppCore/Export.h"
#include <QEvent>
#include <functional>

class QObject;

namespace vek::Threading
{
/// A Qt event that runs its function when Qt deletes it: after delivery, or when it is discarded because its
/// receiver died first. So the function always runs, and no receiver needs to handle the event. What it
/// throws is reported with App::HandleAppException. A copy runs the function too.
class VEKAPPCORE_EXPORT VekQFuncEvent : public QEvent
{
public:
    explicit VekQFuncEvent(std::function<void()> function);
    VekQFuncEvent(const VekQFuncEvent& other);
    VekQFuncEvent& operator=(const VekQFuncEvent& other);
    ~VekQFuncEvent() override;
    [[nodiscard]] VekQFuncEvent* clone() const override;

    /// Runs @p function on the thread of @p receiver, with normal priority. Thread-safe.
    static void PostEvent(QObject* receiver, std::function<void()> function);

private:
    std::function<void()> m_function;
};
} // namespace vek::Threading
