#include "Base/SystemMemory.h"
#include <cstdlib>

// For the sanitizers, which see into this memory only.
namespace vek
{
void* AllocateBytes(std::size_t bytes) noexcept { return std::malloc(bytes); }
void FreeBytes(void* memory) noexcept { std::free(memory); }
} // namespace vek
