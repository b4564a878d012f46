#pragma once
#include "VekAppCore/QtUtility/EventFilter.h"
#include "VekAppCore/QtUtility/SafeConnect.h"
