#pragma once
#include "VekAppCore/Export.h"
#include "VekAppCore/Text/TrString.h"
#include "VekBase/SafeObject.h"

namespace vek::Threading
{
/// What the work of a task reports to, and learns from that it is to stop. Thread-safe: parallel loops inside
/// the work may use it. Reports reach the main thread in the order in which they were made.
class VEKAPPCORE_EXPORT IProgression : public IObject
{
public:
    ~IProgression() override;

    /// @param value  percent of the work done, 0 to 100.
    /// @throws Exception::E_Escape  the task is cancelled; let it out of the work.
    virtual void SetProgression(int value) = 0;

    /// What the task does from now on.
    virtual void SetTitle(const TrString& title) = 0;

    /// @{
    /// Whether the next report throws; called by the listener, on the main thread.
    virtual void SetCanceled(bool isCanceled) = 0;
    [[nodiscard]] virtual bool IsCanceled() const = 0;
    /// @}
};
} // namespace vek::Threading
