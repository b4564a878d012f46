#include "VekBase/Process.h"
#include "Platform/Platform.h"
#include <atomic>

namespace vek
{
namespace
{
std::atomic<bool> g_isUnitTestMode{false};
} // namespace

std::filesystem::path GetExecutablePath()
{
    static const std::filesystem::path folder = Platform::GetExecutableFile().parent_path();
    return folder;
}

bool IsUnitTestMode() noexcept { return g_isUnitTestMode; }

void SetUnitTestMode(bool isOn) noexcept { g_isUnitTestMode = isOn; }
} // namespace vek
