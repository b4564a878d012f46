#include "VekAppCore/App/Log.h"
#include "Support/TestSupport.h"
#include <gmock/gmock.h>

namespace vek::App
{
namespace
{
struct EchoCase
{
    const char* fault;
    int verbosity;
    const char* message;
    const char* printed;
};
void PrintTo(const EchoCase& row, std::ostream* out) { *out << row.fault; }
class LogEcho : public testing::TestWithParam<EchoCase>
{};
} // namespace

TEST_P(LogEcho, FollowsTheVerbosity)
{
    const TestSupport::LogRecorder recorder;
    testing::internal::CaptureStdout();
    const auto verbosity = static_cast<Log::Verbosity>(GetParam().verbosity);
    Log(verbosity, QString::fromUtf8(GetParam().message));
    std::fflush(stdout);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), GetParam().printed);
    EXPECT_THAT(recorder.GetLines(),
                testing::ElementsAre(TestSupport::LogLine{verbosity, QString::fromUtf8(GetParam().message)}));
}

INSTANTIATE_TEST_SUITE_P(Rows, LogEcho,
                         testing::Values(EchoCase{"error prefix", 1, "a {} b", "[ERROR]: a {} b\n"},
                                         EchoCase{"blank missing in the warning prefix", 2, "ü",
                                                  "[WARN ]: ü\n"},
                                         EchoCase{"information echoed", 3, "a", ""},
                                         EchoCase{"debug line with a prefix", 4, "a", "a\n"},
                                         EchoCase{"trace line not echoed", 5, "", "\n"},
                                         EchoCase{"value below the first echoed", 0, "a", ""},
                                         EchoCase{"value above the last echoed", 6, "a", ""}));

TEST(Log, CallsTheCallbackBeforeTheEcho)
{
    testing::internal::CaptureStdout();
    const LogCallback before =
        SetLogCallback([](Log::Verbosity, const QString&) { std::fputs("callback ", stdout); });
    Log(Log::Verbosity::Debug, QStringLiteral("echo"));
    EXPECT_TRUE(SetLogCallback({}));
    Log(Log::Verbosity::Debug, QStringLiteral("alone"));
    std::fflush(stdout);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "callback echo\nalone\n");
    EXPECT_FALSE(before);
}

TEST(Log, AChainedCallbackComesFirst)
{
    const TestSupport::LogRecorder last;
    std::vector<std::size_t> linesBefore;
    ChainLogCallback([&](Log::Verbosity, const QString&) { linesBefore.push_back(last.GetLines().size()); });
    Log(Log::Verbosity::Info, QStringLiteral("a"));
    Log(Log::Verbosity::Info, QStringLiteral("b"));
    EXPECT_THAT(linesBefore, testing::ElementsAre(0U, 1U));
}
} // namespace vek::App
