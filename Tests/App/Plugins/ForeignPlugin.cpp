#include "VekBase/PluginMgr.h"

namespace
{
/// A plug-in of some other kind.
class ForeignPlugin final : public vek::IO::IPlugin
{};
} // namespace

VEK_PLUGIN(ForeignPlugin)
