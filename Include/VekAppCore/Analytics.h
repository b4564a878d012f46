#pragma once
#include "VekAppCore/Analytics/Analytics4Query.h"
#include "VekAppCore/Analytics/AnalyticsService.h"
#include "VekAppCore/Analytics/GoogleAnalyticsService.h"
#include "VekAppCore/Analytics/IMeasurementQuery.h"
#include "VekAppCore/Analytics/UniversalAnalyticsQuery.h"

/// @defgroup Analytics Usage statistics
/// What the application tells of its use, with the consent of the user. See [usage
/// statistics](Docs/Analytics.md).

/// @namespace vek::Analytics
/// The reports, and the service that sends them.
