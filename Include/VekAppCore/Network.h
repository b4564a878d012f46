#pragma once
#include "VekAppCore/Network/HttpException.h"
#include "VekAppCore/Network/HttpService.h"

/// @defgroup Network Network
/// HTTP requests, sent and answered on a thread of their own. See [HTTP](Docs/Network.md).

/// @namespace vek::Network
/// The HTTP service.
