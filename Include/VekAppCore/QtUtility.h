#pragma once
#include "VekAppCore/QtUtility/EventFilter.h"
#include "VekAppCore/QtUtility/SafeConnect.h"

/// @defgroup QtUtility Qt utilities
/// Small helpers for events and signals of Qt.

/// @namespace vek::QtUtility
/// Helpers for events and signals of Qt.
