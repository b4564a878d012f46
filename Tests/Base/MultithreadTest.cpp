#include "VekBase/Multithread.h"
#include <gtest/gtest.h>
#include <thread>

namespace vek
{
namespace
{
TEST(Multithread, OnlyOneThreadIsTheMainThread)
{
    EXPECT_TRUE(Multithread::IsInMainThread()); // the test program has made it so
    std::jthread([] { EXPECT_FALSE(Multithread::IsInMainThread()); }).join();
    std::jthread([] {
        Multithread::SetMainThread();
        EXPECT_TRUE(Multithread::IsInMainThread());
    }).join();
    EXPECT_FALSE(Multithread::IsInMainThread());
    Multithread::SetMainThread();
}
} // namespace
} // namespace vek
