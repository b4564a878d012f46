#include "VekBase/FeatureToggle.h"
#include "VekBase/CommandLine.h"
#include <gtest/gtest.h>

namespace vek::Debug
{
TEST(FeatureToggle, IsOverruledByTheArgumentsAndFoundWhileItLives)
{
    SetCmdLineArgs({{"--FeatureOn=Mesh", "--FeatureOff=Cloud"}});
    {
        const FeatureToggle off("Cloud", true);
        const FeatureToggle again("Cloud");
        EXPECT_FALSE(off.IsOn());
        EXPECT_TRUE(FeatureToggle("Mesh").IsOn());
        EXPECT_TRUE(FeatureToggle("Cloud2", true).IsOn()); // another one
        EXPECT_EQ(FeatureToggle::Find("Cloud"), &off);
        EXPECT_EQ(FeatureToggle::GetAll().back(), &again);
    }
    EXPECT_EQ(FeatureToggle::Find("Cloud"), nullptr);
    SetCmdLineArgs(std::nullopt);
}
} // namespace vek::Debug
