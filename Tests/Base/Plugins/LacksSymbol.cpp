#include "VekBase/PluginMgr.h"

void DefinedNowhere();

extern "C" Q_DECL_EXPORT vek::IO::IPlugin* VekCreatePlugin()
{
    DefinedNowhere();
    return nullptr;
}
