#pragma once
#include "VekAppCore/App/AppConfiguration.h"
#include "VekAppCore/App/Application.h"
#include "VekAppCore/App/ApplicationFrame.h"
#include "VekAppCore/App/DeclarationSystem.h"
#include "VekAppCore/App/ErrorReporting.h"
#include "VekAppCore/App/Exception.h"
#include "VekAppCore/App/FactoryService.h"
#include "VekAppCore/App/Folders.h"
#include "VekAppCore/App/IApp.h"
#include "VekAppCore/App/IAppFeatureService.h"
#include "VekAppCore/App/InitExtension.h"
#include "VekAppCore/App/Log.h"
#include "VekAppCore/App/LogFile.h"
#include "VekAppCore/App/NoSettingsMode.h"
#include "VekAppCore/App/Notifier.h"
#include "VekAppCore/App/RegisterService.h"
#include "VekAppCore/App/SafeCallable.h"
#include "VekAppCore/App/ServiceBase.h"
#include "VekAppCore/App/ServiceManager.h"
#include "VekAppCore/App/Translations.h"

/// @defgroup App Application
/// Services and their declarations, the application frame with its configuration and folders, log and
/// notifications, exceptions and their reporting, translations, the table of features.

/// @namespace vek::App
/// The application and what its parts share; also the trees of values and the settings.

/// @namespace vek::Declaration
/// How modules declare what they bring.
