#include "VekBase/Multithread.h"
#include <fstream>
#include <gtest/gtest.h>
#include <string>
#include <thread>

namespace vek
{
namespace
{
struct ThreadNameCase
{
    const char* fault;
    std::string name;
    std::string seen;
};
void PrintTo(const ThreadNameCase& row, std::ostream* out) { *out << row.fault; }
class ThreadName : public testing::TestWithParam<ThreadNameCase>
{};

TEST_P(ThreadName, IsSeenByTheSystem)
{
    std::string seen;
    std::jthread([&seen] {
        Multithread::SetCurrentThreadName(GetParam().name);
        std::ifstream file("/proc/thread-self/comm");
        std::getline(file, seen);
    }).join();
    EXPECT_EQ(seen, GetParam().seen);
}
INSTANTIATE_TEST_SUITE_P(
    Rows, ThreadName,
    testing::Values(ThreadNameCase{"last byte that fits lost", "0123456789abcde", "0123456789abcde"},
                    ThreadNameCase{"long name refused by the system", "0123456789abcdef", "0123456789abcde"},
                    ThreadNameCase{"character of two bytes cut", "0123456789abcdé", "0123456789abcd"},
                    ThreadNameCase{"whole character before the cut lost", "0123456789abcéx",
                                   "0123456789abcé"},
                    ThreadNameCase{"character of four bytes cut", "0123456789ab😀", "0123456789ab"}));
} // namespace
} // namespace vek
