#include "VekBase/CommandLine.h"
#include <gtest/gtest.h>

namespace vek
{
namespace
{
using Arguments = std::vector<std::string>;

struct ArgumentCase
{
    const char* fault;
    Arguments arguments;
    std::string name;
    std::wstring wideName;
    bool isPresent;
    std::optional<std::string> value;
    std::optional<std::wstring> wideValue;
};
void PrintTo(const ArgumentCase& row, std::ostream* out) { *out << row.fault; }
class CommandLineArgument : public testing::TestWithParam<ArgumentCase>
{
protected:
    ~CommandLineArgument() override { SetCmdLineArgs(std::nullopt); }
};

TEST_P(CommandLineArgument, IsFoundByItsName)
{
    const ArgumentCase& row = GetParam();
    SetCmdLineArgs(row.arguments);
    EXPECT_EQ(IsCmdLineArgPresent(row.name), row.isPresent);
    EXPECT_EQ(IsCmdLineArgPresent(row.wideName), row.isPresent);
    EXPECT_EQ(GetCmdLineArgValue(row.name), row.value);
    EXPECT_EQ(GetCmdLineArgValue(row.wideName), row.wideValue);
}
constexpr std::nullopt_t none = std::nullopt;
INSTANTIATE_TEST_SUITE_P(
    Rows, CommandLineArgument,
    testing::Values(
        ArgumentCase{"found without arguments", {}, "--a", L"--a", false, none, none},
        ArgumentCase{"prefix taken for the name", {"--ab", "--abc=1"}, "--a", L"--a", false, none, none},
        ArgumentCase{"case ignored", {"--A=1"}, "--a", L"--a", false, none, none},
        ArgumentCase{"value invented for the last argument", {"x", "--a"}, "--a", L"--a", true, none, none},
        ArgumentCase{
            "value behind the name not found", {"--a", "1", "--a", "2"}, "--a", L"--a", true, "1", L"1"},
        ArgumentCase{"value cut at its second equals sign", {"--a=b=c"}, "--a", L"--a", true, "b=c", L"b=c"},
        ArgumentCase{"empty value taken for none", {"--a=", "--a=1"}, "--a", L"--a", true, "", L""},
        ArgumentCase{"name with an equals sign not found", {"--a=b"}, "--a=b", L"--a=b", true, none, none},
        ArgumentCase{"text taken for Latin-1", {"--größe=µm"}, "--größe", L"--größe", true, "µm", L"µm"}));

TEST(CommandLine, HoldsTheProcessesOwnArgumentsWithoutTheProgramsName)
{
    const Arguments own = testing::internal::GetArgvs();
    EXPECT_FALSE(IsCmdLineArgPresent(own.front()));
    for (const std::string& argument : Arguments(own.begin() + 1, own.end()))
        EXPECT_TRUE(IsCmdLineArgPresent(argument)) << argument;
}

} // namespace
} // namespace vek
