#pragma once
#include "VekAppCore/Export.h"
#include <QObject>
#include <functional>

namespace vek::QtUtility
{
/// Hands each event of one object to a callback before the object gets it, and never consumes one. It belongs
/// to the object and lives on its thread. What the callback throws is reported, not passed on.
class VEKAPPCORE_EXPORT EventFilter : public QObject
{
public:
    /// @param watched  owns the filter.
    EventFilter(QObject* watched, std::function<void(QEvent*)> callback);
    ~EventFilter() override;

    /// No callback from now on; also when called by the callback itself.
    void Stop();

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    std::function<void(QEvent*)> m_callback;
    bool m_isStopped = false;
};
} // namespace vek::QtUtility
