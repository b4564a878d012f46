#pragma once
#include "VekBase/Export.h"
#include <cstddef>
#include <cstdint>
#include <limits>
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

/// Makes what the standard library allocates for us live in memory of Malloc as well.
template <typename T>
struct Allocator
{
    /// What the standard library asks of an allocator.
    using value_type = T;

    Allocator() noexcept = default;
    template <typename U>
    Allocator(const Allocator<U>&) noexcept
    {}

    /// @throws Exception::E_NotEnoughMemory  there is none left.
    [[nodiscard]] T* allocate(std::size_t count)
    {
        const std::size_t bytes =
            count <= (std::numeric_limits<std::size_t>::max)() / sizeof(T) ? count * sizeof(T) : SIZE_MAX;
        if constexpr (isWide)
            return static_cast<T*>(AllocatedObject::operator new(bytes, std::align_val_t(alignof(T))));
        else
            return static_cast<T*>(AllocatedObject::operator new(bytes));
    }
    /// Gives back what allocate returned.
    void deallocate(T* memory, std::size_t) noexcept
    {
        if constexpr (isWide)
            AllocatedObject::operator delete(memory, std::align_val_t(alignof(T)));
        else
            AllocatedObject::operator delete(memory);
    }

    template <typename U>
    bool operator==(const Allocator<U>&) const noexcept
    {
        return true;
    }

private:
    static constexpr bool isWide = alignof(T) > __STDCPP_DEFAULT_NEW_ALIGNMENT__;
};
} // namespace vek
