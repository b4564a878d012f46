#include "VekBase/Memory.h"
#include "VekBase/Exception.h"
#include <QtGlobal>
#include <cstdint>
#include <gtest/gtest.h>
#include <limits>
#include <memory>

// Read by the sanitizers, where they are used: an allocation that cannot succeed gives null, as without them.
extern "C" Q_DECL_EXPORT const char* __asan_default_options() { return "allocator_may_return_null=1"; }
extern "C" Q_DECL_EXPORT const char* __tsan_default_options() { return "allocator_may_return_null=1"; }

namespace vek
{
namespace
{
TEST(Memory, TooMuchOfItThrowsNotEnoughMemory) // of the family: no null, no bad_alloc
{
    const volatile std::size_t tooMuch = std::numeric_limits<std::ptrdiff_t>::max();
    EXPECT_THROW(std::ignore = Malloc(tooMuch), Exception::E_NotEnoughMemory);
    EXPECT_THROW(AllocatedObject::operator new(tooMuch), Exception::E_NotEnoughMemory);
    EXPECT_THROW(AllocatedObject::operator new(tooMuch, std::align_val_t(64)), Exception::E_NotEnoughMemory);
}

TEST(Memory, OverAlignedObjectsAreAligned)
{
    struct alignas(256) Wide : AllocatedObject
    {};
    const auto first = std::make_unique<Wide>();
    const auto second = std::make_unique<Wide>(); // one alone may be aligned by luck
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(first.get()) % 256, 0U);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(second.get()) % 256, 0U);
}
} // namespace
} // namespace vek
