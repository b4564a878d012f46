#pragma once
#include "VekAppCore/Text/LanguageChange.h"
#include "VekAppCore/Text/TrString.h"
