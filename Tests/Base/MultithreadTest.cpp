#include "VekBase/Multithread.h"
#include <gtest/gtest.h>
#include <thread>

namespace vek::Multithread
{
static const bool g_wasMainThreadBeforeMain = IsInMainThread(); // the first SetMainThread is in main

TEST(Multithread, OnlyTheThreadThatSaidSoLastIsTheMainThread)
{
    EXPECT_FALSE(g_wasMainThreadBeforeMain);
    EXPECT_TRUE(IsInMainThread());
    std::jthread([] {
        EXPECT_FALSE(IsInMainThread());
        SetMainThread();
        EXPECT_TRUE(IsInMainThread());
    }).join();
    EXPECT_FALSE(IsInMainThread());
    SetMainThread();
}
} // namespace vek::Multithread
