#include "VekBase/Multithread.h"
#include "Platform/Platform.h"
#include <atomic>

namespace vek::Multithread
{
namespace
{
std::atomic<std::uint32_t> g_mainThreadId{0}; // no thread has id 0
} // namespace

void SetMainThread() noexcept { g_mainThreadId = Platform::GetThreadId(); }

bool IsInMainThread() noexcept { return g_mainThreadId == Platform::GetThreadId(); }

void SetCurrentThreadName(const std::string& name) { Platform::SetThreadName(name); }
} // namespace vek::Multithread
