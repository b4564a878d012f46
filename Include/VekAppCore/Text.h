#pragma once
#include "VekAppCore/Text/Convert.h"
#include "VekAppCore/Text/LanguageChange.h"
#include "VekAppCore/Text/NumberExtractor.h"
#include "VekAppCore/Text/StringUtility.h"
#include "VekAppCore/Text/TrString.h"
#include "VekAppCore/Text/Triplet.h"
#include "VekAppCore/Text/Unit.h"
#include "VekAppCore/Text/UnitConvert.h"

/// @defgroup Text Text, numbers, units
/// Texts that follow the language of the user, values as text and back, quantities with units, the numbers
/// that people type and the fields for them. See [units and numbers](Docs/Numbers.md).
