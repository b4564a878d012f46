#pragma once
#include "VekAppCore/Threading/AsyncTask.h"
#include "VekAppCore/Threading/EventQueue.h"
#include "VekAppCore/Threading/IProgression.h"
#include "VekAppCore/Threading/PostEventManager.h"
#include "VekAppCore/Threading/ProcessEventsScheduler.h"
#include "VekAppCore/Threading/SeededExecutor.h"
#include "VekAppCore/Threading/StepProgression.h"
#include "VekAppCore/Threading/TaskExecutor.h"
#include "VekAppCore/Threading/TaskListener.h"
#include "VekAppCore/Threading/VekQFuncEvent.h"
#include "VekAppCore/Threading/WhenAll.h"

/// @defgroup Threading Threading
/// Functions posted to the main thread, and tasks: work on a pool of threads whose results and reports arrive
/// on the main thread. The page [Threading](Docs/Threading.md) tells how they go together.

/// @namespace vek::Threading
/// Posted events, executors and tasks.
