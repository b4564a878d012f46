#include "VekAppCore/Text/Triplet.h"
#include "Support/TestSupport.h"
#include "VekAppCore/App/Exception.h"
#include <gtest/gtest.h>

namespace vek
{
using enum Unit::LengthUnit;

TEST(Triplet, IsCalculatedWithAcrossUnits)
{
    const Triplet metres{1, 2, -2, Meter};
    const Triplet millimetres{500, 0, 1000, Millimeter};
    const Triplet plain{1, 2, -2, {}};
    EXPECT_EQ(metres + millimetres, (Triplet{1.5, 2, -1, Meter}));
    EXPECT_EQ((metres - millimetres).unit, Meter);
    EXPECT_EQ(millimetres - metres, (Triplet{-500, -2000, 3000, Millimeter}));
    EXPECT_EQ(2.0 * -plain / 4.0, (Triplet{-0.5, -1, 1, {}}));
    EXPECT_EQ(metres.GetNorm(), 3);
    EXPECT_EQ((Triplet{1e200, 0, 0, {}}.GetNorm()), 1e200); // no overflow on the way
    EXPECT_EQ(metres, metres.ConvertedTo(Inch));
    EXPECT_EQ(plain.ConvertedTo(Meter), metres);
    EXPECT_NE(plain, metres);
    EXPECT_NE(metres, (Triplet{1, 2, -2, Inch}));
    EXPECT_THROW(static_cast<void>(plain + metres), Exception::WrongTypeException);
}

TEST(Triplet, TextComesBack)
{
    for (const auto& [triplet, text, locale] :
         {std::tuple(Triplet{1, 2.5, -3, Micrometer}, "1; 2.5; -3 \u00b5m", "C"),
          std::tuple(Triplet{1, 2.5, -3, {}}, "1; 2,5; -3", "de"),
          std::tuple(Triplet{1e300, 0.1, 0, Miles}, "1e+300; 0.1; 0 mi", "C")})
    {
        Convert::ListUnitNumberOptions options;
        options.locale = QLocale(QString(locale));
        EXPECT_EQ(Convert::ToString(triplet, options), QString(text));
        Triplet read;
        EXPECT_TRUE(Convert::FromString(QString(text), read, options));
        EXPECT_EQ(read, triplet);
        EXPECT_EQ(read.unit, triplet.unit);
    }
    Triplet read{7, 7, 7, Inch};
    for (const char* text : {"", "1; 2", "1; 2; 3; 4", "1; 2; 3 parsec", "1; 2; 3 END", "1; 2; x mm", "mm"})
        EXPECT_FALSE(Convert::FromString(QString(text), read)) << text;
    EXPECT_EQ(read, (Triplet{7, 7, 7, Inch}));
}
} // namespace vek
