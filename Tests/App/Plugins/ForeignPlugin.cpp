#include "VekBase/PluginMgr.h"

/// A plug-in of some other kind.
struct ForeignPlugin final : vek::IO::IPlugin
{};
VEK_PLUGIN(ForeignPlugin)
