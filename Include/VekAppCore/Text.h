#pragma once
#include "VekAppCore/Text/Convert.h"
#include "VekAppCore/Text/LanguageChange.h"
#include "VekAppCore/Text/TrString.h"
