#pragma once
#include "VekAppCore/Threading/EventQueue.h"
#include "VekAppCore/Threading/PostEventManager.h"
#include "VekAppCore/Threading/ProcessEventsScheduler.h"
#include "VekAppCore/Threading/TaskExecutor.h"
#include "VekAppCore/Threading/VekQFuncEvent.h"
