#pragma once
#include "VekBase/Export.h"
#include <cstddef>
#include <new>

namespace vek
{
/// Memory of the library's own allocator, aligned for every fundamental type. Thread-safe.
/// @throws Exception::E_NotEnoughMemory  there is none left.
[[nodiscard]] VEKBASE_EXPORT void* Malloc(std::size_t bytes);

/// Gives back what Malloc returned; null is allowed. Thread-safe.
VEKBASE_EXPORT void Free(void* memory) noexcept;

/// Base of objects that live in memory of Malloc, so that any module may delete what another one made.
class VEKBASE_EXPORT AllocatedObject
{
public:
    static void* operator new(std::size_t bytes);
    static void* operator new(std::size_t bytes, std::align_val_t alignment);
    static void* operator new(std::size_t, void* place) noexcept { return place; }
    static void operator delete(void* memory) noexcept;
    static void operator delete(void* memory, std::align_val_t alignment) noexcept;
    static void operator delete(void*, void*) noexcept {}
};
} // namespace vek
