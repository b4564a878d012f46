#include "VekBase/RawPtr.h"
#include <QObject>
#include <algorithm>
#include <atomic>
#include <barrier>
#include <gtest/gtest.h>
#include <memory>
#include <thread>
#include <vector>

namespace vek
{
namespace
{
struct Plain : IObject
{};
struct Derived : Plain
{};
struct Both : QObject, Plain // its Plain is not at its address
{};

template <typename T>
class RawPtrTo : public testing::Test
{};
using Objects = testing::Types<Plain, const Plain, QObject, const QObject, Both>;
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
    const RawPtr<TypeParam> late = pointer;
    for (const RawPtr<TypeParam>& each : {pointer, moved, late})
    {
        EXPECT_FALSE(each);
        EXPECT_THROW(*each, Exception::NullptrException);
        EXPECT_THROW(each.operator->(), Exception::NullptrException);
    }
}

TEST(RawPtr, DeathOfACopyOfTheObjectLeavesTheOriginalAlive)
{
    Plain original;
    const RawPtr<Plain> pointer(&original);
    std::ignore = std::make_unique<Plain>(original);
    std::ignore = std::make_unique<Plain>(std::move(original));
    auto assigned = std::make_unique<Plain>();
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
    const RawPtr<const Both> toConst = pointer;
    const RawPtr<Plain> toSecondBase = pointer;
    const RawPtr<QObject> toOtherKind = pointer;
    const RawPtr<const QObject> toConstOfOtherKind = toOtherKind;
    EXPECT_EQ(toConst.Get(), object.get());
    EXPECT_EQ(toSecondBase.Get(), static_cast<Plain*>(object.get())); // an unadjusted address would differ
    EXPECT_EQ(toOtherKind.Get(), object.get());
    EXPECT_EQ(toConstOfOtherKind, pointer);

    object.reset();
    EXPECT_TRUE(toConst == nullptr && toSecondBase == nullptr && toOtherKind == nullptr);
    EXPECT_EQ(RawPtr<Plain>(pointer), nullptr);
    EXPECT_EQ(RawPtr<QObject>(pointer), nullptr);

    static_assert(!std::convertible_to<RawPtr<Plain>, RawPtr<Derived>>);
    static_assert(!std::convertible_to<RawPtr<const Plain>, RawPtr<Plain>>);
    static_assert(!std::convertible_to<RawPtr<Plain>, RawPtr<QObject>>);
}

TEST(RawPtr, IsMadeAndCopiedByManyThreadsWhileTheObjectsDie)
{
    constexpr int threadCount = 2;
    for (int round = 0; round < 20; ++round)
    {
        std::vector<std::unique_ptr<Derived>> objects(200);
        std::ranges::generate(objects, &std::make_unique<Derived>);
        std::barrier together(threadCount + 1);
        std::atomic<int> demands = 0;
        std::atomic<bool> areDead = false;
        std::vector<std::jthread> threads;
        for (int i = 0; i < threadCount; ++i)
            threads.emplace_back([&] {
                std::vector<RawPtr<Derived>> pointers;
                for (const auto& object : objects)
                {
                    const int all = threadCount * static_cast<int>(pointers.size() + 1);
                    for (++demands; demands < all;) // so that the first demands of one object meet
                        std::this_thread::yield();
                    pointers.emplace_back(object.get());
                }
                together.arrive_and_wait();
                for (bool isLast = false; !isLast;) // from here on the objects die
                {
                    isLast = areDead;
                    const std::vector<RawPtr<Derived>> copies = pointers;
                    const std::vector<RawPtr<Plain>> converted(copies.begin(), copies.end());
                    pointers = copies;
                    // One that watches another block than the object's would never see it die.
                    EXPECT_FALSE(isLast && std::ranges::count(converted, nullptr) < std::ssize(converted));
                }
            });
        together.arrive_and_wait();
        objects.clear();
        areDead = true;
    }
}
} // namespace
} // namespace vek
