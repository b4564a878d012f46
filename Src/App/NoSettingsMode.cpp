#include "VekAppCore/App/NoSettingsMode.h"
#include "VekBase/CommandLine.h"

namespace vek::App
{
namespace
{
bool g_isNoSettingsMode = false; // set at start-up, before it is read
} // namespace

bool IsNoSettingsModeEnabled() { return IsCmdLineArgPresent(L"--NoSettings") || g_isNoSettingsMode; }

void SetNoSettingsMode(bool isOn) { g_isNoSettingsMode = isOn; }
} // namespace vek::App
