#pragma once
#include "VekBase/CommandLine.h"
#include "VekBase/Exception.h"
#include "VekBase/FeatureToggle.h"
#include "VekBase/LogText.h"
#include "VekBase/Memory.h"
#include "VekBase/MoveOnlyFunction.h"
#include "VekBase/Multithread.h"
#include "VekBase/PluginMgr.h"
#include "VekBase/Process.h"
#include "VekBase/RawPtr.h"
#include "VekBase/SafeObject.h"
#include "VekBase/ScopeBase.h"
#include "VekBase/ScopeFPEDisabler.h"
#include "VekBase/ScopedTempFolder.h"
#include "VekBase/Signal.h"
#include "VekBase/TBBHelper.h"
#include "VekBase/TypeName.h"
#include "VekBase/Verbosity.h"

/// @defgroup Base Base library
/// What needs QtCore only: memory, scopes, safe pointers, signals, the root of the exceptions, command line,
/// threads, plug-ins, feature toggles.

/// @namespace vek
/// The library.

/// @namespace vek::Log
/// The weight of what is logged; the log itself is in App.

/// @namespace vek::Debug
/// Switches for developers.
