#pragma once
#include "VekBase/PluginMgr.h"

/// Tells when it dies and when its module is unloaded.
struct Q_DECL_EXPORT TracedPlugin : vek::IO::IPlugin
{
    virtual void SetTrace(std::vector<std::string>* trace) = 0;
};
