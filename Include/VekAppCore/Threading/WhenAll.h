#pragma once
#include "VekAppCore/Threading/TaskExecutor.h"
#include "VekAppCore/Threading/TaskListener.h"
#include <vector>

namespace vek::Threading
{
/// One listener for several tasks. It finishes when all of them have; with the first exception if one of
/// them failed, else as cancelled if one was cancelled, else it succeeds. Its progress is their mean, in
/// which one that has ended counts as 100, however it ended. Cancelling it cancels all. Empty listeners do
/// not count. Main thread only.
VEKAPPCORE_EXPORT TaskListener WhenAll(const EventExecutor& executor, const TrString& title,
                                       const std::vector<TaskListener>& tasks);
} // namespace vek::Threading
