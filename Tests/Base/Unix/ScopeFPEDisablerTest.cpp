#include "VekBase/ScopeFPEDisabler.h"
#include "VekBase/ScopeBase.h"
#include <cfenv>
#include <cmath>
#include <gtest/gtest.h>

namespace vek
{
namespace
{
double DivideByZero()
{
    volatile double zero = 0.0;
    volatile long double longZero = 0.0L; // for the x87 unit
    volatile double quotient = 1.0 / zero;
    volatile long double longQuotient = 1.0L / longZero;
    return quotient + static_cast<double>(longQuotient);
}

class ScopeFPEDisablerUse : public testing::Test
{
protected:
    ScopeFPEDisablerUse() { feenableexcept(FE_DIVBYZERO); }
    ~ScopeFPEDisablerUse() override
    {
        fedisableexcept(FE_ALL_EXCEPT);
        std::feclearexcept(FE_ALL_EXCEPT);
    }
};

TEST_F(ScopeFPEDisablerUse, NothingTrapsInside)
{
    {
        const ScopeFPEDisabler outer;
        {
            const ScopeFPEDisabler inner;
            EXPECT_TRUE(std::isinf(DivideByZero()));
        }
        EXPECT_TRUE(std::isinf(DivideByZero())); // the inner one's end must not bring the traps back
        feenableexcept(FE_INVALID);
    }
    EXPECT_EQ(fegetexcept(), FE_DIVBYZERO); // nothing more than before
    volatile long double value = 2.0L;
    value = value * value; // where the x87 unit traps for a division of before
}

TEST_F(ScopeFPEDisablerUse, FlagsThatDoNotTrapAreKept)
{
    std::feraiseexcept(FE_OVERFLOW);
    {
        const ScopeFPEDisabler disabler;
    }
    EXPECT_TRUE(std::fetestexcept(FE_OVERFLOW));
}
} // namespace
} // namespace vek
