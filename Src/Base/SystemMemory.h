#pragma once
#include <cstddef>

namespace vek
{
/// Null when there is no memory left. @p bytes is 1 or more.
void* AllocateBytes(std::size_t bytes) noexcept;
void FreeBytes(void* memory) noexcept;
} // namespace vek
