#include "VekBase/ScopeFPEDisabler.h"
#include <cfenv>
#include <cmath>
#include <gtest/gtest.h>
#include <optional>

TEST(ScopeFPEDisabler, NothingTrapsInsideAndAllIsAsBeforeBehind)
{
    const auto divideByZero = [] {
        volatile double zero = 0.0;
        volatile long double longZero = 0.0L; // for the x87 unit
        return 1.0 / zero + static_cast<double>(1.0L / longZero);
    };
    feenableexcept(FE_DIVBYZERO);
    {
        const vek::ScopeFPEDisabler outer;
        std::optional<vek::ScopeFPEDisabler> inner(std::in_place);
        EXPECT_TRUE(std::isinf(divideByZero()));
        inner.reset(); // must not bring the traps back
        EXPECT_TRUE(std::isinf(divideByZero()));
        feenableexcept(FE_INVALID);
    }
    EXPECT_EQ(fegetexcept(), FE_DIVBYZERO); // nothing more than before
    volatile long double value = 2.0L;
    value = value * value; // where the x87 unit traps for a division of before
    fedisableexcept(FE_ALL_EXCEPT);
    std::feclearexcept(FE_ALL_EXCEPT);
}
