#include "VekBase/PluginMgr.h"

extern "C" Q_DECL_EXPORT vek::IO::IPlugin* VekCreatePlugin() { throw 5; }
