#include "VekBase/Exception.h"
#include <QtGlobal>
#include <gtest/gtest.h>

// Read by the sanitizers, where they are used: an allocation that cannot succeed gives null, as without them.
extern "C" Q_DECL_EXPORT const char* __asan_default_options() { return "allocator_may_return_null=1"; }
extern "C" Q_DECL_EXPORT const char* __tsan_default_options() { return "allocator_may_return_null=1"; }

namespace vek
{
TEST(Memory, IsAlignedOrThrowsNotEnoughMemory) // of the family: no null, no bad_alloc
{
    const volatile std::size_t tooMuch = PTRDIFF_MAX;
    EXPECT_THROW(std::ignore = Malloc(tooMuch), Exception::E_NotEnoughMemory);
    EXPECT_THROW(AllocatedObject::operator new(tooMuch), Exception::E_NotEnoughMemory);
    EXPECT_THROW(AllocatedObject::operator new(tooMuch, std::align_val_t(64)), Exception::E_NotEnoughMemory);

    struct alignas(4096) Wide : AllocatedObject
    {};
    const auto object = std::make_unique<Wide>();
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(object.get()) % alignof(Wide), 0U);
}
} // namespace vek
