#include "TracedPlugin.h"

static constexpr char name[] = "Second";
VEK_PLUGIN(vek::TestSupport::TracedPluginOf<name>)
