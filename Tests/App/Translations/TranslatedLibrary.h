#pragma once
#include "VekAppCore/Text/TrString.h"

/// From a static library, with a translation of its own.
[[nodiscard]] vek::TrString GetGreeting();
