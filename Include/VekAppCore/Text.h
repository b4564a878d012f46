#pragma once
#include "VekAppCore/Text/Convert.h"
#include "VekAppCore/Text/LanguageChange.h"
#include "VekAppCore/Text/NumberExtractor.h"
#include "VekAppCore/Text/StringUtility.h"
#include "VekAppCore/Text/TrString.h"
#include "VekAppCore/Text/Unit.h"
#include "VekAppCore/Text/UnitConvert.h"
