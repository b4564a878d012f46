#include "VekAppCore/App/Log.h"
#include <cstdio>
#include <gtest/gtest.h>

namespace vek::App
{
TEST(Log, CallsTheCallbackThenEchoesByVerbosity)
{
    const auto getOutput = [](int verbosity, const char* message) {
        testing::internal::CaptureStdout();
        Log(static_cast<Log::Verbosity>(verbosity), QString(message));
        std::fflush(stdout);
        return testing::internal::GetCapturedStdout();
    };
    using Row = std::tuple<const char*, int, const char*, std::string>;
    for (const auto& [fault, verbosity, message, echo] :
         {Row{"braces taken for a placeholder", 1, "a {} b", "[ERROR]: a {} b\n"},
          Row{"blank missing in the warning prefix", 2, "ü", "[WARN ]: ü\n"},
          Row{"information echoed", 3, "a", ""}, Row{"debug line with a prefix", 4, "a", "a\n"},
          Row{"empty trace line not echoed", 5, "", "\n"}, Row{"value below the first echoed", 0, "a", ""},
          Row{"value above the last echoed", 6, "a", ""}})
    {
        SCOPED_TRACE(fault);
        EXPECT_EQ(getOutput(verbosity, message), echo) << "without a callback";
        EXPECT_FALSE(SetLogCallback([](Log::Verbosity seen, const QString& text) {
            std::printf("%d %s;", static_cast<int>(seen), qUtf8Printable(text));
        }));
        EXPECT_EQ(getOutput(verbosity, message), std::to_string(verbosity) + ' ' + message + ';' + echo);
        EXPECT_TRUE(SetLogCallback({}));
    }
}
} // namespace vek::App
