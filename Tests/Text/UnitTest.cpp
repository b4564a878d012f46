#include "VekAppCore/Text/Unit.h"
#include "Support/TestSupport.h"
#include "VekAppCore/Data/VekQVariantMap.h"
#include "VekAppCore/Text/Format.h"
#include "VekAppCore/Text/UnitConvert.h"
#include <QDataStream>
#include <QDebug>
#include <QIODevice>
#include <cmath>
#include <gtest/gtest.h>
#include <sstream>
#include <unordered_set>

namespace vek::Unit
{
namespace
{
/// Sets the default length unit for a test.
class DefaultUnit
{
public:
    explicit DefaultUnit(LengthUnit unit) { SetDefaultUnit(unit); }
    ~DefaultUnit() { SetDefaultUnit(m_before); }

private:
    const LengthUnit m_before = GetDefaultLengthUnit();
};

TEST(UnitTable, SquaresAndCubesFitTheLengths)
{
    for (int i = 0; i < 14; ++i)
    {
        const auto row = static_cast<std::size_t>(i);
        const double length = lengthUnits[row].factor;
        EXPECT_NEAR(areaUnits[row].factor / (length * length), 1, 1e-14) << i;
        EXPECT_NEAR(volumeUnits[row].factor / (length * length * length), 1, 1e-14) << i;
        EXPECT_EQ(std::u16string(lengthUnits[row].symbol) + u"\u00b2", areaUnits[row].symbol);
        EXPECT_EQ(std::u16string(lengthUnits[row].symbol) + u"\u00b3", volumeUnits[row].symbol);
        if (i >= 2)
        {
            EXPECT_EQ(std::string(lengthUnits[row].name) + "2", areaUnits[row].name);
            EXPECT_EQ(std::string(lengthUnits[row].name) + "3", volumeUnits[row].name);
        }
    }
    EXPECT_EQ(lengthUnits[11].factor, 0.304800609601219); // 1200 / 3937 has one more digit
}

TEST(UnitTable, ConversionKeepsTheOrderOfOperations)
{
    EXPECT_EQ(Length(1, LengthUnit::Inch).GetValueIn(LengthUnit::Millimeter), 1 * 0.0254 / 0.001);
    EXPECT_EQ(Length(15.7, LengthUnit::Millimeter).GetValueIn(LengthUnit::Millimeter),
              15.7); // not by way of m
    EXPECT_EQ(Volume(3, VolumeUnit::GallonLiquidUS).GetValueIn(VolumeUnit::Liter),
              3 * 0.003785411784 / 0.001);
    EXPECT_EQ(GetValuesIn(std::vector{Length(1, LengthUnit::Meter), Length(2, LengthUnit::Kilometer)},
                          LengthUnit::Meter),
              (std::vector{1.0, 2000.0}));
}

TEST(UnitTable, AnalogsAndFamilies)
{
    using enum LengthUnit;
    EXPECT_EQ(GetAnalogAreaUnit(Meter), AreaUnit::Meter2);
    EXPECT_EQ(GetAnalogAreaUnit(Miles), AreaUnit::Miles2);
    EXPECT_EQ(GetAnalogVolumeUnit(FeetUS), VolumeUnit::FeetUS3);
    EXPECT_EQ(GetAnalogAreaUnit(END), AreaUnit::Meter2);
    EXPECT_EQ(GetAnalogAreaUnit(LengthUnit(0)), AreaUnit::Meter2);
    for (int unit = 14; unit < 20; ++unit)
        EXPECT_EQ(GetAnalogLengthUnit(VolumeUnit(unit)), Meter) << unit;
    std::string families;
    for (int unit = 0; unit < 21; ++unit)
        families += Volume::IsMetric(VolumeUnit(unit))     ? 'm'
                    : Volume::IsImperial(VolumeUnit(unit)) ? 'i'
                                                           : '-';
    EXPECT_EQ(families, "--mmmmmiiiiiiimiiiii-");
    families.clear();
    for (int unit = 0; unit < 15; ++unit)
        families += Area::IsMetric(AreaUnit(unit)) ? 'm' : Area::IsImperial(AreaUnit(unit)) ? 'i' : '-';
    EXPECT_EQ(families, "--mmmmmiiiiiii-");
}

TEST(Angle, SlopesGoByTheTangent)
{
    using enum AngleUnit;
    EXPECT_DOUBLE_EQ(GetValueIn(100, Percent, Degree), 45);
    EXPECT_DOUBLE_EQ(GetValueIn(45, Degree, Percent), 100);
    EXPECT_EQ(GetValueIn(0.1, Percent, Percent), 0.1);
    EXPECT_EQ(GetValueIn(100, Percent, Radian), std::atan(1.0));
    EXPECT_DOUBLE_EQ(GetValueIn(1, Degree, Minute), 60);
    EXPECT_DOUBLE_EQ((Angle(100, Percent) + Angle(15, Degree)).GetValueIn(Degree), 60);
    EXPECT_DOUBLE_EQ((Angle(100, Percent) / 3).GetValueIn(Degree), 15);
    Angle angle = Unit::Radian{1.5};
    EXPECT_EQ(angle.GetUnit(), Radian);
    angle = Unit::Radian{0.5};
    EXPECT_EQ(static_cast<Unit::Radian>(angle.ConvertedTo(Radian)).value, 0.5);
}

TEST(Angle, OddRightAnglesHaveNoSlope)
{
    using enum AngleUnit;
    for (const double degrees : {90.0, -90.0})
        EXPECT_FALSE(IsAngleConvertibleToPercent(degrees, Degree));
    EXPECT_TRUE(IsAngleConvertibleToPercent(45, Degree));
    EXPECT_TRUE(IsAngleConvertibleToPercent(90, Percent));
    EXPECT_FALSE(IsAngleConvertibleToPercent(std::acos(0.0), Radian));
    EXPECT_FALSE(IsAngleConvertibleToPercent(100, Gradian));
}

TEST(Quantity, NeverKeepsAUnitThatIsNone)
{
    const DefaultUnit inch(LengthUnit::Inch);
    EXPECT_EQ(Length(1, LengthUnit(0)).GetUnit(), LengthUnit::Inch);
    EXPECT_EQ(Length(1, LengthUnit::END).GetUnit(), LengthUnit::Inch);
    EXPECT_EQ(Length().GetUnit(), LengthUnit::Inch);
    EXPECT_EQ(Area(1).GetUnit(), AreaUnit::Inch2);
    EXPECT_EQ(Volume(1, VolumeUnit(-1)).GetUnit(), VolumeUnit::Inch3);
    EXPECT_EQ(Angle(1, AngleUnit(9)).GetUnit(), AngleUnit::Degree);
    EXPECT_EQ(Percent(1, PercentUnit(0)).GetUnit(), PercentUnit::Percent);
    const DefaultUnit none(LengthUnit(77)); // is not checked
    EXPECT_EQ(GetDefaultLengthUnit(), LengthUnit(77));
    EXPECT_EQ(GetDefaultAreaUnit(), AreaUnit::Meter2);
    EXPECT_EQ(Length(1).GetUnit(), LengthUnit::Meter);
}

TEST(Quantity, CalculatesAndComparesAcrossUnits)
{
    const Length inch(1, LengthUnit::Inch);
    const Length sum = Length(0.6, LengthUnit::Millimeter) + inch;
    EXPECT_EQ(sum.GetUnit(), LengthUnit::Millimeter);
    EXPECT_DOUBLE_EQ(sum.GetValue(), 26);
    EXPECT_EQ(inch, Length(25.4, LengthUnit::Millimeter));
    EXPECT_EQ(std::unordered_set({inch, Length(25.4, LengthUnit::Millimeter)}).size(), 1U);
    EXPECT_LT(Length(25, LengthUnit::Millimeter), inch);
    EXPECT_FALSE(Length(NAN, LengthUnit::Meter) <= inch);
    EXPECT_EQ((inch * inch).GetUnit(), AreaUnit::Inch2);
    EXPECT_DOUBLE_EQ((Length(2, LengthUnit::Meter) * inch).GetValueIn(AreaUnit::Meter2), 0.0508);
    EXPECT_DOUBLE_EQ(
        (Volume(5, VolumeUnit::Liter) / Area(1, AreaUnit::Meter2)).GetValueIn(LengthUnit::Millimeter), 5);
    EXPECT_DOUBLE_EQ(
        (Volume(5, VolumeUnit::Liter) / Length(5, LengthUnit::Millimeter)).GetValueIn(AreaUnit::Meter2), 1);
    EXPECT_DOUBLE_EQ(inch * Area(1, AreaUnit::Inch2) / (inch * inch * inch), 1);
    Length length = -2.0 * inch;
    length -= inch;
    length /= 3;
    EXPECT_EQ(length, -inch);
    EXPECT_DOUBLE_EQ(Length(1, LengthUnit::Feet) / inch, 12);
}

template <typename Q>
QByteArray Write(const Q& quantity)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << quantity;
    return bytes;
}

template <typename Q>
void ExpectRead(const QByteArray& bytes, const Q& expected)
{
    Q read(7.0);
    QDataStream stream(bytes);
    stream >> read;
    EXPECT_EQ(read.GetValue(), expected.GetValue());
    EXPECT_EQ(read.GetUnit(), expected.GetUnit());
}

TEST(Quantity, StreamHoldsValueThenUnit)
{
    EXPECT_EQ(Write(Length(1, LengthUnit::Inch)).toHex(), "3ff0000000000000"
                                                          "00000009");
    EXPECT_EQ(Write(AngleUnit::Degree).toHex(), "00000003");
    QDataStream units(QByteArray::fromHex("00000004"));
    AngleUnit unit{};
    units >> unit;
    EXPECT_EQ(unit, AngleUnit::Gradian);
    ExpectRead(QByteArray::fromHex("3ff000000000000000000009"), Length(1, LengthUnit::Inch));
    const DefaultUnit inch(LengthUnit::Inch);
    ExpectRead(QByteArray::fromHex("3ff000000000000000000000"), Length(1, LengthUnit::Inch));
    ExpectRead(QByteArray::fromHex("3ff00000000000000000000e"), Area(1, AreaUnit::Inch2));
    ExpectRead(QByteArray::fromHex("3ff000000000000000000013"), Volume(1, VolumeUnit::BarrelOilUS));
    ExpectRead(QByteArray::fromHex("3ff000000000000000000014"), Volume(1, VolumeUnit::Inch3));
    ExpectRead(QByteArray::fromHex("3ff000000000000000000009"), Angle(1, AngleUnit::Degree));
    ExpectRead(QByteArray::fromHex("3ff0000000000000ffffffff"), Percent(1, PercentUnit::Percent));
}

TEST(Quantity, IsAValueOfTreesAndSettings)
{
    App::VekQVariantMap map;
    map.SetValue("l", Length(12.5, LengthUnit::Millimeter));
    QByteArray bytes;
    QDataStream writer(&bytes, QIODevice::WriteOnly);
    writer << map;
    App::VekQVariantMap back;
    QDataStream reader(bytes);
    reader >> back;
    EXPECT_EQ(back.GetValue<Length>("l"), Length(12.5, LengthUnit::Millimeter));
    map.SetPreferedStoreFormat(App::EVariantStoreFormat::Readable);
    map.SetValue("s", Angle(0.1, AngleUnit::Second));
    map.SetValue("u", VolumeUnit::Liter);
    EXPECT_EQ(map["s"].ToQVariant(), QVariant("0.1\""));
    EXPECT_EQ(map["u"].ToQVariant(), QVariant("l"));
    EXPECT_EQ(map.GetValue<Angle>("s"), Angle(0.1, AngleUnit::Second));
    EXPECT_EQ(map.GetValue<VolumeUnit>("u"), VolumeUnit::Liter);
    EXPECT_FALSE(map.GetValue<Length>("s"));
    EXPECT_EQ(map["l"].ToString(), "12.5 mm");
}

TEST(UnitText, SymbolsThenNamesAreRead)
{
    using namespace Convert;
    for (const auto& [text, unit] : std::initializer_list<std::pair<QString, LengthUnit>>{
             {QStringLiteral(u"\u00b5in"), LengthUnit::Microinch},
             {"m", LengthUnit::Meter},
             {"Micrometer", LengthUnit::Micrometer},
             {"Miles", LengthUnit::Miles},
             {"END", LengthUnit::END}})
    {
        LengthUnit read{};
        EXPECT_TRUE(FromString(text, read)) << text.toStdString();
        EXPECT_EQ(read, unit);
    }
    LengthUnit unit = LengthUnit::Yard;
    for (const char* text : {"", "MM", "mm ", "meter", "END2", "\xce\xbcm"})
        EXPECT_FALSE(FromString(QString(text), unit)) << text;
    EXPECT_EQ(unit, LengthUnit::Yard);
    PercentUnit percent{};
    EXPECT_TRUE(FromString(u"Percent", percent) && percent == PercentUnit::Percent);
    EXPECT_TRUE(FromString(u"END", percent) && percent == PercentUnit::END);
    EXPECT_EQ(ToString(LengthUnit(0)), "m");
    EXPECT_EQ(ToString(AngleUnit(1)), QStringLiteral(u"\u00b0"));
    EXPECT_EQ(ToString(VolumeUnit::BarrelOilUS), "US oil barrel");
    EXPECT_EQ(ToString(LengthUnit::END), "m");
}

TEST(UnitText, QuantitiesComeBack)
{
    using namespace Convert;
    NumberOptions german;
    german.locale = QLocale(QLocale::German);
    german.notation = ENotation::Fixed;
    german.decimals = 2;
    german.hasGroupSeparators = true;
    EXPECT_EQ(ToString(Length(12345.678, LengthUnit::Millimeter), german), "12.345,68 mm");
    EXPECT_EQ(ToString(Length(12.5, LengthUnit::Millimeter)), "12.5 mm");
    EXPECT_EQ(ToString(Angle(1, AngleUnit::Minute)), "1'");
    EXPECT_EQ(ToString(Angle(1, AngleUnit::Gradian)), "1 gon");
    EXPECT_EQ(ToString(Unit::Percent(50)), "50 %");
    std::ostringstream log;
    log << Length(1, LengthUnit::Mil);
    EXPECT_EQ(log.str(), "1 mil");
    QString debug;
    QDebug(&debug).nospace() << Length(1, LengthUnit::Mil) << '|';
    EXPECT_EQ(debug, "1 mil|");
    EXPECT_EQ(fmt::format("{:>6}|", Length(1, LengthUnit::Mil)), " 1 mil|");
    Volume volume(0);
    EXPECT_TRUE(FromString(u" 1.5 US liquid gallon ", volume));
    EXPECT_EQ(volume.GetUnit(), VolumeUnit::GallonLiquidUS);
    Length length(7, LengthUnit::Yard);
    EXPECT_TRUE(FromString(u"1e3mm", length) && length.GetValueIn(LengthUnit::Meter) == 1);
    for (const char* text : {"", "mm", "12", "12 l", "12 mm mm", "1,5 mm", "12 ' mm"})
        EXPECT_FALSE(FromString(QString(text), length)) << text;
    EXPECT_EQ(length.GetUnit(), LengthUnit::Millimeter);
}

struct DisplayCase
{
    const char* fault;
    Length length;
    bool allowLarger;
    Length best;
};
void PrintTo(const DisplayCase& row, std::ostream* out) { *out << row.fault; }
class BestDisplay : public testing::TestWithParam<DisplayCase>
{};

TEST_P(BestDisplay, MovesToTheUnitThatSuits)
{
    const Length best = Convert::ToBestDisplay(GetParam().length, GetParam().allowLarger);
    EXPECT_EQ(best.GetUnit(), GetParam().best.GetUnit());
    EXPECT_DOUBLE_EQ(best.GetValue(), GetParam().best.GetValue());
}
using enum LengthUnit;
INSTANTIATE_TEST_SUITE_P(
    Rows, BestDisplay,
    testing::Values(DisplayCase{"centimetres kept", {50, Centimeter}, false, {500, Millimeter}},
                    DisplayCase{"step from the millimetres missed", {50, Centimeter}, true, {0.5, Meter}},
                    DisplayCase{"100 cm became mm", {100, Centimeter}, false, {100, Centimeter}},
                    DisplayCase{"centimetres not moved to metres", {150, Centimeter}, true, {1.5, Meter}},
                    DisplayCase{"small metres kept", {0.05, Meter}, true, {50, Millimeter}},
                    DisplayCase{"only one step down", {0.00001, Kilometer}, true, {10, Millimeter}},
                    DisplayCase{"large metres kept", {150, Meter}, true, {0.15, Kilometer}},
                    DisplayCase{"larger unit without leave", {150, Meter}, false, {150, Meter}},
                    DisplayCase{"exactly 100 moved", {100, Meter}, true, {100, Meter}},
                    DisplayCase{"inches kept", {18, Inch}, true, {1.5, Feet}},
                    DisplayCase{"exactly 12 inches moved", {12, Inch}, true, {12, Inch}},
                    DisplayCase{
                        "survey feet not moved", {6, FeetUS}, true, {6 * 0.304800609601219 / 0.9144, Yard}},
                    DisplayCase{"half a mile in yards", {0.5, Miles}, true, {0.5, Miles}},
                    DisplayCase{"small miles kept", {0.05, Miles}, true, {88, Yard}},
                    DisplayCase{"small yards stop at feet", {0.01, Yard}, true, {0.36, Inch}},
                    DisplayCase{"mils not reached", {0.00005, Inch}, true, {50, Microinch}},
                    DisplayCase{"negative length moved", {-3, Kilometer}, true, {-3, Kilometer}},
                    DisplayCase{"negative centimetres moved", {-50, Centimeter}, true, {-50, Centimeter}},
                    DisplayCase{"zero moved", {0, Meter}, true, {0, Meter}},
                    DisplayCase{"tiny length moved", {1e-12, Micrometer}, true, {1e-12, Micrometer}}));

TEST(BestDisplayOfPowers, IsTheLargestUnitWithAtLeastOne)
{
    const auto check = [](const auto& best, const auto& expected) {
        EXPECT_EQ(best.GetUnit(), expected.GetUnit());
        EXPECT_DOUBLE_EQ(best.GetValue(), expected.GetValue());
    };
    using Convert::ToBestDisplay;
    check(ToBestDisplay(Area(2'000'000, AreaUnit::Millimeter2)), Area(2, AreaUnit::Meter2));
    check(ToBestDisplay(Area(-0.5, AreaUnit::Meter2)), Area(-500'000, AreaUnit::Millimeter2));
    check(ToBestDisplay(Area(2'000'000, AreaUnit::Millimeter2), false),
          Area(2'000'000, AreaUnit::Millimeter2));
    check(ToBestDisplay(Area(5, AreaUnit::Micrometer2), false), Area(5, AreaUnit::Micrometer2));
    check(ToBestDisplay(Volume(54, VolumeUnit::Feet3)), Volume(2, VolumeUnit::Yard3));
    check(ToBestDisplay(Volume(0, VolumeUnit::Liter)), Volume(0, VolumeUnit::Liter));
    check(ToBestDisplay(Angle(720, AngleUnit::Degree)), Angle(720, AngleUnit::Degree));
}
} // namespace
} // namespace vek::Unit
