#pragma once
#include "VekAppCore/App.h"
#include "VekAppCore/Data.h"
#include "VekAppCore/QtUtility.h"
#include "VekAppCore/Settings.h"
#include "VekAppCore/Text.h"
#include "VekAppCore/Threading.h"
#include "VekAppCore/Xml.h"
