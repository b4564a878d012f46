#include "VekBase/Memory.h"
#include "VekBase/Exception.h"
#include <QtGlobal>
#include <cstdint>
#include <functional>
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
struct AllocationCase
{
    const char* fault;
    std::function<void*(std::size_t)> allocate;
};
void PrintTo(const AllocationCase& row, std::ostream* out) { *out << row.fault; }
class AllocationOfTooMuch : public testing::TestWithParam<AllocationCase>
{};

TEST_P(AllocationOfTooMuch, ThrowsNotEnoughMemory)
{
    EXPECT_THROW(GetParam().allocate(std::numeric_limits<std::ptrdiff_t>::max()),
                 Exception::E_NotEnoughMemory);
}
INSTANTIATE_TEST_SUITE_P(
    Rows, AllocationOfTooMuch,
    testing::Values(AllocationCase{"null returned by Malloc", Malloc},
                    AllocationCase{"bad_alloc or null from new",
                                   [](std::size_t bytes) { return AllocatedObject::operator new(bytes); }},
                    AllocationCase{"bad_alloc or null from new of an over-aligned type",
                                   [](std::size_t bytes) {
                                       return AllocatedObject::operator new(bytes, std::align_val_t(64));
                                   }}));

TEST(Memory, NothingCanBeAllocatedAndFreed)
{
    void* const empty = Malloc(0);
    EXPECT_NE(empty, nullptr);
    Free(empty);
    Free(nullptr);
}

TEST(Memory, OverAlignedObjectsAreAligned)
{
    struct alignas(256) Wide : AllocatedObject
    {};
    const auto first = std::make_unique<Wide>();
    const auto second = std::make_unique<Wide>(); // one alone may be aligned by luck
    EXPECT_EQ(
        (reinterpret_cast<std::uintptr_t>(first.get()) | reinterpret_cast<std::uintptr_t>(second.get())) %
            256,
        0U);
}
} // namespace
} // namespace vek
