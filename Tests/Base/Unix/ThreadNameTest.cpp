#include "VekBase/Multithread.h"
#include <fstream>
#include <gtest/gtest.h>
#include <string>
#include <thread>

namespace vek
{
namespace
{
std::string NameThread(const std::string& name)
{
    std::string seen;
    std::jthread([&] {
        Multithread::SetCurrentThreadName(name);
        std::getline(std::ifstream("/proc/thread-self/comm") >> std::ws, seen);
    }).join();
    return seen;
}

TEST(ThreadName, IsSeenByTheSystemCutBetweenCharacters)
{
    EXPECT_EQ(NameThread("0123456789abcde"), "0123456789abcde");
    EXPECT_EQ(NameThread("0123456789abcdef"), "0123456789abcde"); // the system refuses long ones
    EXPECT_EQ(NameThread("0123456789abcdé"), "0123456789abcd");
    EXPECT_EQ(NameThread("0123456789abcéx"), "0123456789abcé");
    EXPECT_EQ(NameThread("0123456789ab😀"), "0123456789ab");
}
} // namespace
} // namespace vek
