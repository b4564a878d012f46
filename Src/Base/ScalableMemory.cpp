#include "Base/SystemMemory.h"
#include <oneapi/tbb/scalable_allocator.h>

// What one thread makes and another deletes, as with everything posted to the main thread, is what common
// allocators are slow at.
namespace vek
{
void* AllocateBytes(std::size_t bytes) noexcept { return scalable_malloc(bytes); }
void FreeBytes(void* memory) noexcept { scalable_free(memory); }
} // namespace vek
