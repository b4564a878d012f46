#pragma once
#include "VekAppCore/Network/HttpException.h"
#include "VekAppCore/Network/HttpService.h"
