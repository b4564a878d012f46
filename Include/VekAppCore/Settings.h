#pragma once
#include "VekAppCore/Settings/AppSettings.h"
#include "VekAppCore/Settings/VekQSettings.h"
