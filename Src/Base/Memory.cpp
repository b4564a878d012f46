#include "VekBase/Memory.h"
#include "Base/SystemMemory.h"
#include "VekBase/Exception.h"

namespace vek
{
void* Malloc(std::size_t bytes)
{
    void* const memory = AllocateBytes(bytes != 0 ? bytes : 1);
    if (!memory)
        throw Exception::E_NotEnoughMemory();
    return memory;
}

void Free(void* memory) noexcept { FreeBytes(memory); }

void* AllocatedObject::operator new(std::size_t bytes) { return Malloc(bytes); }

void AllocatedObject::operator delete(void* memory) noexcept { Free(memory); }

// Malloc aligns for fundamental types only.
void* AllocatedObject::operator new(std::size_t bytes, std::align_val_t alignment)
{
    void* const memory = ::operator new(bytes, alignment, std::nothrow);
    if (!memory)
        throw Exception::E_NotEnoughMemory();
    return memory;
}

void AllocatedObject::operator delete(void* memory, std::align_val_t alignment) noexcept
{
    ::operator delete(memory, alignment);
}
} // namespace vek
