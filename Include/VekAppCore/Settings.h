#pragma once
#include "VekAppCore/Settings/AppSettings.h"
#include "VekAppCore/Settings/VekQSettings.h"

/// @defgroup Settings Settings
/// The stores of the user and of the machine, as maps of typed values. See [settings](Docs/Settings.md).
