#include "VekBase/FeatureToggle.h"
#include "VekBase/CommandLine.h"
#include <gtest/gtest.h>

namespace vek::Debug
{
namespace
{
struct ToggleCase
{
    const char* fault;
    std::vector<std::string> arguments;
    bool isOnAtStart;
    bool isOn;
};
void PrintTo(const ToggleCase& row, std::ostream* out) { *out << row.fault; }
class FeatureToggleAtStart : public testing::TestWithParam<ToggleCase>
{
protected:
    ~FeatureToggleAtStart() override { SetCmdLineArgs(std::nullopt); }
};

TEST_P(FeatureToggleAtStart, IsOverruledByTheArguments)
{
    SetCmdLineArgs(GetParam().arguments);
    const FeatureToggle toggle("Mesh", GetParam().isOnAtStart);
    EXPECT_EQ(toggle.IsOn(), GetParam().isOn);
}
INSTANTIATE_TEST_SUITE_P(
    Rows, FeatureToggleAtStart,
    testing::Values(ToggleCase{"default ignored", {}, true, true},
                    ToggleCase{"not turned on", {"--FeatureOn=Mesh"}, false, true},
                    ToggleCase{"not turned off", {"--FeatureOff=Mesh"}, true, false},
                    ToggleCase{"turned by a longer name", {"--FeatureOn=Mesh2"}, false, false}));

TEST(FeatureToggle, IsFoundByNameWhileItLives)
{
    const std::size_t count = FeatureToggle::GetAll().size();
    {
        FeatureToggle first("Twice");
        FeatureToggle second("Twice");
        EXPECT_EQ(FeatureToggle::Find("Twice"), &first);
        EXPECT_EQ(FeatureToggle::GetAll().back(), &second);
    }
    EXPECT_EQ(FeatureToggle::Find("Twice"), nullptr);
    EXPECT_EQ(FeatureToggle::GetAll().size(), count);
}
} // namespace
} // namespace vek::Debug
