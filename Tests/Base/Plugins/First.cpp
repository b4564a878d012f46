#include "TracedPlugin.h"

static constexpr char name[] = "First";
VEK_PLUGIN(vek::TestSupport::TracedPluginOf<name>)
