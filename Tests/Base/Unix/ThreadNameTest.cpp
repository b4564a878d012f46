#include "VekBase/Multithread.h"
#include <fstream>
#include <gtest/gtest.h>
#include <thread>

TEST(ThreadName, IsSeenByTheSystemCutBetweenCharacters)
{
    for (const auto& [wanted, kept] :
         {std::pair("0123456789abcdef", "0123456789abcde"), // refused uncut
          std::pair("0123456789abcdé", "0123456789abcd"), std::pair("0123456789abcéx", "0123456789abcé"),
          std::pair("0123456789ab😀", "0123456789ab")})
        std::jthread([wanted = wanted, kept = kept] {
            vek::Multithread::SetCurrentThreadName(wanted);
            std::string seen;
            std::getline(std::ifstream("/proc/thread-self/comm") >> std::ws, seen);
            EXPECT_EQ(seen, kept);
        }).join();
}
