#pragma once
#include "VekAppCore/QtUtility/EventFilter.h"
