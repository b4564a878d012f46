#include "VekBase/CommandLine.h"
#include <QString>
#include <gtest/gtest.h>

namespace vek
{
TEST(CommandLine, ArgumentIsFoundByItsName)
{
    const auto find = [](std::vector<std::string> arguments, const std::string& name = "--a") {
        SetCmdLineArgs(std::move(arguments));
        const std::wstring wide = QString::fromStdString(name).toStdWString();
        const std::string value = GetCmdLineArgValue(name).value_or("none");
        const std::wstring wideValue = GetCmdLineArgValue(wide).value_or(L"none");
        EXPECT_EQ(QString::fromStdWString(wideValue).toStdString(), value);
        EXPECT_EQ(IsCmdLineArgPresent(wide), IsCmdLineArgPresent(name));
        return (IsCmdLineArgPresent(name) ? "present, " : "absent, ") + value;
    };
    EXPECT_EQ(find({"--ab", "--abc=1"}), "absent, none") << "prefix taken for the name";
    EXPECT_EQ(find({"--A=1"}), "absent, none") << "case ignored";
    EXPECT_EQ(find({"x", "--a"}), "present, none") << "value invented for the last";
    EXPECT_EQ(find({"--a", "1", "--a", "2"}), "present, 1") << "value behind the name missed";
    EXPECT_EQ(find({"--a=b=c"}), "present, b=c") << "value cut at its equals sign";
    EXPECT_EQ(find({"--a=", "--a=1"}), "present, ") << "empty value taken for none";
    EXPECT_EQ(find({"--größe=µm"}, "--größe"), "present, µm") << "text taken for Latin-1";

    SetCmdLineArgs(std::nullopt);
    const std::vector<std::string> own = testing::internal::GetArgvs();
    for (std::size_t i = 0; i < own.size(); ++i) // the program's name is none of the arguments
        EXPECT_EQ(IsCmdLineArgPresent(own[i]), i > 0) << own[i];
}
} // namespace vek
