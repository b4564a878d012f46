#include "VekBase/RawPtr.h"
#include <QObject>
#include <algorithm>
#include <atomic>
#include <gtest/gtest.h>
#include <thread>

namespace vek
{
struct Plain : IObject
{};
struct Both : QObject, Plain // its Plain is not at its address
{};
static_assert(!std::convertible_to<RawPtr<Plain>, RawPtr<Both>>);
static_assert(!std::convertible_to<RawPtr<const Plain>, RawPtr<Plain>>);
static_assert(!std::convertible_to<RawPtr<Plain>, RawPtr<QObject>>);

template <typename T>
class RawPtrTo : public testing::Test
{};
using Objects = testing::Types<const Plain, const QObject, Both>;
TYPED_TEST_SUITE(RawPtrTo, Objects, );

TYPED_TEST(RawPtrTo, ReadsNullOnceTheObjectHasDied)
{
    auto object = std::make_unique<TypeParam>();
    const RawPtr<TypeParam> pointer(object.get());
    RawPtr<TypeParam> copy;
    EXPECT_EQ(copy, nullptr);
    copy = pointer;
    const RawPtr<TypeParam> moved = std::move(copy);
    EXPECT_EQ(&*pointer, object.get());
    EXPECT_EQ(moved.operator->(), object.get());
    object.reset();
    EXPECT_FALSE(pointer || moved);
    EXPECT_THROW(*pointer, Exception::NullptrException);
    EXPECT_THROW(moved.operator->(), Exception::NullptrException);
}

TEST(RawPtr, KnowsACopyOfTheObjectFromTheObject)
{
    Plain original;
    const RawPtr<Plain> pointer(&original);
    auto assigned = std::make_unique<Plain>(original);
    const RawPtr<Plain> toAssigned(assigned.get());
    *assigned = original;
    EXPECT_EQ(toAssigned.Get(), assigned.get());
    assigned.reset();
    EXPECT_EQ(toAssigned, nullptr);
    EXPECT_EQ(pointer.Get(), &original);
}

TEST(RawPtr, ConvertsLikeAPointer)
{
    auto object = std::make_unique<Both>();
    const RawPtr<Both> pointer(object.get());
    const RawPtr<Plain> toSecondBase = pointer;
    const RawPtr<const QObject> toOtherKind = RawPtr<QObject>(pointer);
    EXPECT_EQ(toSecondBase.Get(), static_cast<Plain*>(object.get())); // an unadjusted address would differ
    EXPECT_EQ(toOtherKind, pointer);
    object.reset();
    EXPECT_TRUE(toSecondBase == nullptr && toOtherKind == nullptr);
    EXPECT_EQ(RawPtr<QObject>(pointer), nullptr);
}

TEST(RawPtr, IsMadeAndCopiedByManyThreads)
{
    constexpr std::size_t count = 4000;
    auto objects = std::make_unique<Both[]>(count);
    std::atomic<std::size_t> demands = 0;
    std::vector<RawPtr<Plain>> pointers[2];
    const auto demand = [&](std::size_t thread) {
        for (std::size_t i = 0; i < count; ++i)
        {
            for (++demands; demands < 2 * (i + 1);) // so that the first demands of one object meet
                std::this_thread::yield();
            const RawPtr<Both> pointer(&objects[i]);
            pointers[thread].emplace_back(pointer);
        }
    };
    std::jthread other(demand, 0U);
    demand(1);
    other.join();
    objects.reset();
    for (const auto& each : pointers) // one that watched another block than the object's would not see it die
        EXPECT_EQ(std::ranges::count(each, nullptr), std::ptrdiff_t(count));
}
} // namespace vek
