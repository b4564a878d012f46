#include "VekBase/FeatureToggle.h"
#include "VekBase/CommandLine.h"
#include <gtest/gtest.h>

namespace vek::Debug
{
namespace
{
TEST(FeatureToggle, IsOverruledByTheArguments)
{
    const auto isOn = [](const char* argument, bool isOnAtStart) {
        SetCmdLineArgs({{argument}});
        const bool result = FeatureToggle("Mesh", isOnAtStart).IsOn();
        SetCmdLineArgs(std::nullopt);
        return result;
    };
    EXPECT_TRUE(isOn("", true));
    EXPECT_TRUE(isOn("--FeatureOn=Mesh", false));
    EXPECT_FALSE(isOn("--FeatureOff=Mesh", true));
    EXPECT_FALSE(isOn("--FeatureOn=Mesh2", false)); // another one
}

TEST(FeatureToggle, IsFoundByNameWhileItLives)
{
    {
        FeatureToggle first("Twice");
        FeatureToggle second("Twice");
        EXPECT_EQ(FeatureToggle::Find("Twice"), &first);
        EXPECT_EQ(FeatureToggle::GetAll().back(), &second);
    }
    EXPECT_EQ(FeatureToggle::Find("Twice"), nullptr);
}
} // namespace
} // namespace vek::Debug
