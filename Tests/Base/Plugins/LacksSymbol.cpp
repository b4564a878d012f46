#include "VekBase/PluginMgr.h"

vek::IO::IPlugin* DefinedNowhere();

extern "C" Q_DECL_EXPORT vek::IO::IPlugin* VekCreatePlugin() { return DefinedNowhere(); }
