#pragma once
#include "VekAppCore/App.h"
#include "VekAppCore/QtUtility.h"
#include "VekAppCore/Text.h"
#include "VekAppCore/Threading.h"
