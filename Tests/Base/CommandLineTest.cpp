#include "VekBase/CommandLine.h"
#include <gtest/gtest.h>

namespace vek
{
namespace
{
struct ArgumentCase
{
    const char* fault;
    std::vector<std::string> arguments;
    std::string name;
    std::wstring wideName;
    bool isPresent;
    std::optional<std::string> value;
    std::optional<std::wstring> wideValue;
};
void PrintTo(const ArgumentCase& row, std::ostream* out) { *out << row.fault; }
class CommandLineArgument : public testing::TestWithParam<ArgumentCase>
{};

TEST_P(CommandLineArgument, IsFoundByItsName)
{
    const ArgumentCase& row = GetParam();
    SetCmdLineArgs(row.arguments);
    EXPECT_EQ(IsCmdLineArgPresent(row.name), row.isPresent);
    EXPECT_EQ(IsCmdLineArgPresent(row.wideName), row.isPresent);
    EXPECT_EQ(GetCmdLineArgValue(row.name), row.value);
    EXPECT_EQ(GetCmdLineArgValue(row.wideName), row.wideValue);
    SetCmdLineArgs(std::nullopt);
}
constexpr std::nullopt_t none = std::nullopt;
INSTANTIATE_TEST_SUITE_P(
    Rows, CommandLineArgument,
    testing::Values(
        ArgumentCase{"found without arguments", {}, "--a", L"--a", false, none, none},
        ArgumentCase{"prefix taken for the name", {"--ab", "--abc=1"}, "--a", L"--a", false, none, none},
        ArgumentCase{"case ignored", {"--A=1"}, "--a", L"--a", false, none, none},
        ArgumentCase{"value invented for the last", {"x", "--a"}, "--a", L"--a", true, none, none},
        ArgumentCase{
            "value behind the name missed", {"--a", "1", "--a", "2"}, "--a", L"--a", true, "1", L"1"},
        ArgumentCase{"value cut at its equals sign", {"--a=b=c"}, "--a", L"--a", true, "b=c", L"b=c"},
        ArgumentCase{"empty value taken for none", {"--a=", "--a=1"}, "--a", L"--a", true, "", L""},
        ArgumentCase{"text taken for Latin-1", {"--größe=µm"}, "--größe", L"--größe", true, "µm", L"µm"}));

TEST(CommandLine, HoldsTheProcessesOwnArgumentsWithoutTheProgramsName)
{
    const std::vector<std::string> own = testing::internal::GetArgvs();
    for (std::size_t i = 0; i < own.size(); ++i)
        EXPECT_EQ(IsCmdLineArgPresent(own[i]), i > 0) << own[i];
}
} // namespace
} // namespace vek
