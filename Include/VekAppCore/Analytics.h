#pragma once
#include "VekAppCore/Analytics/Analytics4Query.h"
#include "VekAppCore/Analytics/AnalyticsService.h"
#include "VekAppCore/Analytics/GoogleAnalyticsService.h"
#include "VekAppCore/Analytics/IMeasurementQuery.h"
#include "VekAppCore/Analytics/UniversalAnalyticsQuery.h"
