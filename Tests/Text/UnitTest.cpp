#include "VekAppCore/Text/Unit.h"
#include "Text/TextRows.h"
#include "VekAppCore/Data/VekQVariantMap.h"
#include "VekAppCore/Text/Format.h"
#include "VekAppCore/Text/UnitConvert.h"
#include <QDataStream>
#include <QIODevice>
#include <cmath>
#include <sstream>
#include <unordered_set>

namespace vek::Unit
{
namespace
{
using enum LengthUnit;

ScopeBase ChangeDefault(LengthUnit unit)
{
    const LengthUnit before = GetDefaultLengthUnit();
    SetDefaultUnit(unit);
    return ScopeBase([before] { SetDefaultUnit(before); });
}

TEST(UnitTable, SquaresAndCubesFitTheLengths)
{
    for (std::size_t i = 0; i < lengthUnits.size(); ++i)
    {
        const auto& [name, symbol, factor] = lengthUnits[i];
        EXPECT_NEAR(areaUnits[i].factor / (factor * factor), 1, 1e-14) << i;
        EXPECT_NEAR(volumeUnits[i].factor / (factor * factor * factor), 1, 1e-14) << i;
        EXPECT_EQ(areaUnits[i].symbol, std::u16string(symbol) + u"\u00b2");
        EXPECT_EQ(volumeUnits[i].symbol, std::u16string(symbol) + u"\u00b3");
        EXPECT_EQ(areaUnits[i].name, i < 2 ? "" : std::string(name) + "2");
        EXPECT_EQ(volumeUnits[i].name, i < 2 ? "" : std::string(name) + "3");
    }
    EXPECT_EQ(lengthUnits[11].factor, 0.304800609601219); // 1200 / 3937 has one more digit
}

TEST(UnitTable, ConversionKeepsTheOrderOfOperations)
{
    EXPECT_EQ(Length(1, Inch).GetValueIn(Millimeter), 1 * 0.0254 / 0.001);
    EXPECT_EQ(Length(15.7, Millimeter).GetValueIn(Millimeter), 15.7); // not by way of m
    EXPECT_EQ(Volume(3, VolumeUnit::GallonLiquidUS).GetValueIn(VolumeUnit::Liter),
              3 * 0.003785411784 / 0.001);
    EXPECT_EQ(GetValuesIn(std::vector{Length(1, Meter), Length(2, Kilometer)}, Meter),
              (std::vector{1.0, 2000.0}));
}

TEST(UnitTable, AnalogsAndFamilies)
{
    EXPECT_EQ(fmt::format("{}, {}, {}, {}, {}", GetAnalogAreaUnit(Meter), GetAnalogAreaUnit(Miles),
                          GetAnalogVolumeUnit(FeetUS), GetAnalogAreaUnit(END),
                          GetAnalogAreaUnit(LengthUnit(0))),
              "Meter2, Miles2, FeetUS3, Meter2, Meter2");
    for (int unit = 14; unit < 20; ++unit)
        EXPECT_EQ(GetAnalogLengthUnit(VolumeUnit(unit)), Meter) << unit;
    const auto getFamilies = []<typename Q>(Q) {
        std::string families;
        for (int i = 0; i <= int(Q::UnitType::END); ++i)
        {
            const auto unit = static_cast<typename Q::UnitType>(i);
            families += Q::IsMetric(unit) ? 'm' : Q::IsImperial(unit) ? 'i' : '-';
        }
        return families;
    };
    EXPECT_EQ(getFamilies(Volume()), "--mmmmmiiiiiiimiiiii-");
    EXPECT_EQ(getFamilies(Area()), "--mmmmmiiiiiii-");
}

TEST(Angle, SlopesGoByTheTangent)
{
    using enum AngleUnit;
    EXPECT_DOUBLE_EQ(GetValueIn(100, Percent, Degree), 45);
    EXPECT_DOUBLE_EQ(GetValueIn(45, Degree, Percent), 100);
    EXPECT_EQ(GetValueIn(3.3, Percent, Percent), 3.3); // not by way of the tangent
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
    for (const auto& angle :
         {Angle(90, Degree), Angle(-90, Degree), Angle(std::acos(0.0), Radian), Angle(100, Gradian)})
        EXPECT_FALSE(IsAngleConvertibleToPercent(angle.GetValue(), angle.GetUnit())) << angle;
    for (const auto& angle : {Angle(45, Degree), Angle(90, Percent)})
        EXPECT_TRUE(IsAngleConvertibleToPercent(angle.GetValue(), angle.GetUnit())) << angle;
}

TEST(Quantity, NeverKeepsAUnitThatIsNone)
{
    const ScopeBase inch = ChangeDefault(Inch);
    EXPECT_EQ(fmt::format("{}, {}, {}, {}, {}, {}, {}", Length(1, LengthUnit(0)), Length(1, END), Length(),
                          Area(1), Volume(1, VolumeUnit(-1)), Angle(1, AngleUnit(9)),
                          Percent(1, PercentUnit(0))),
              "1 in, 1 in, 0 in, 1 in², 1 in³, 1°, 1 %");
    const ScopeBase none = ChangeDefault(LengthUnit(77)); // is not checked
    EXPECT_EQ(GetDefaultLengthUnit(), LengthUnit(77));
    EXPECT_EQ(GetDefaultAreaUnit(), AreaUnit::Meter2);
    EXPECT_EQ(Length(1).GetUnit(), Meter);
}

TEST(Quantity, CalculatesAndComparesAcrossUnits)
{
    const Length inch(1, Inch);
    const Length sum = Length(0.6, Millimeter) + inch;
    EXPECT_EQ(sum.GetUnit(), Millimeter);
    EXPECT_DOUBLE_EQ(sum.GetValue(), 26);
    EXPECT_EQ(inch, Length(25.4, Millimeter));
    EXPECT_EQ(std::unordered_set({inch, Length(25.4, Millimeter)}).size(), 1U);
    EXPECT_LT(Length(25, Millimeter), inch);
    EXPECT_FALSE(Length(NAN, Meter) <= inch);
    EXPECT_EQ((inch * inch).GetUnit(), AreaUnit::Inch2);
    EXPECT_DOUBLE_EQ((Length(2, Meter) * inch).GetValueIn(AreaUnit::Meter2), 0.0508);
    const Volume volume(5, VolumeUnit::Liter);
    EXPECT_DOUBLE_EQ((volume / Area(1, AreaUnit::Meter2)).GetValueIn(Millimeter), 5);
    EXPECT_DOUBLE_EQ((volume / Length(5, Millimeter)).GetValueIn(AreaUnit::Meter2), 1);
    EXPECT_DOUBLE_EQ(inch * Area(1, AreaUnit::Inch2) / (inch * inch * inch), 1);
    Length length = -2.0 * inch;
    length -= inch;
    length /= 3;
    EXPECT_EQ(length, -inch);
    EXPECT_DOUBLE_EQ(Length(1, Feet) / inch, 12);
}

/// The hexadecimal digits of the bytes.
QByteArray Write(const auto& value)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << value;
    return bytes.toHex();
}

template <typename T>
T Read(const QByteArray& digits)
{
    T value{};
    QDataStream stream(QByteArray::fromHex(digits));
    stream >> value;
    return value;
}

TEST(Quantity, StreamHoldsValueThenUnit)
{
    EXPECT_EQ(Write(Length(1, Inch)), "3ff000000000000000000009");
    EXPECT_EQ(Write(AngleUnit::Degree), "00000003");
    const ScopeBase inch = ChangeDefault(Inch);
    EXPECT_EQ(fmt::format("{}, {}, {}, {}, {}, {}, {}, {}", Read<AngleUnit>("00000004"),
                          Read<Length>("3ff00000000000000000000a"), Read<Length>("3ff000000000000000000000"),
                          Read<Area>("3ff00000000000000000000e"), Read<Volume>("3ff000000000000000000013"),
                          Read<Volume>("3ff000000000000000000014"), Read<Angle>("3ff000000000000000000009"),
                          Read<Percent>("3ff0000000000000ffffffff")),
              "Gradian, 1 ft, 1 in, 1 in², 1 US oil barrel, 1 in³, 1°, 1 %");
}

TEST(Quantity, IsAValueOfTreesAndSettings)
{
    App::VekQVariantMap map;
    map.SetValue("l", Length(12.5, Millimeter));
    EXPECT_EQ(Read<App::VekQVariantMap>(Write(map)).GetValue<Length>("l"), Length(12.5, Millimeter));
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

/// What is read of a text over @p value.
auto ReadOver(auto value)
{
    return [value](const QString& text) {
        auto read = value;
        const char* const mark = Convert::FromString(text, read) ? "" : ", unread";
        return QString::fromStdString(ToLogText(read)) + mark;
    };
}

TEST(UnitText, SymbolsThenNamesAreRead)
{
    TestSupport::ExpectRows(ReadOver(Yard),
                            {"µin -> Microinch", "m -> Meter", "Micrometer -> Micrometer", "Miles -> Miles",
                             "END -> 14", " -> Yard, unread", "MM -> Yard, unread", "mm  -> Yard, unread",
                             "meter -> Yard, unread", "END2 -> Yard, unread", "\u03bcm -> Yard, unread"});
    TestSupport::ExpectRows(ReadOver(PercentUnit()), {"Percent -> Percent", "END -> 2"});
    using Convert::ToString;
    EXPECT_EQ(ToString(LengthUnit(0)) + ToString(END) + ToString(AngleUnit(1)), "mm°");
}

TEST(UnitText, QuantitiesComeBack)
{
    using Convert::ToString;
    const Convert::NumberOptions german{QLocale(QLocale::German), Convert::ENotation::Fixed, 2, true};
    const Length mil(1, Mil);
    EXPECT_EQ(ToString(Length(12345.678, Millimeter), german), "12.345,68 mm");
    EXPECT_EQ(ToString(Angle(1, AngleUnit::Minute)), "1'");
    std::ostringstream log;
    log << mil;
    EXPECT_EQ(log.str(), "1 mil");
    EXPECT_EQ(fmt::format("{:>6}|", mil), " 1 mil|");
    TestSupport::ExpectRows(ReadOver(Volume()), {" 1.5 US liquid gallon  -> 1.5 US liquid gallon"});
    TestSupport::ExpectRows(ReadOver(Length(7, Yard)),
                            {"1e3mm -> 1000 mm", " -> 7 yd, unread", "mm -> 7 yd, unread",
                             "12 -> 7 yd, unread", "12 l -> 7 yd, unread", "12 mm mm -> 7 yd, unread",
                             "1,5 mm -> 7 yd, unread", "12 ' mm -> 7 yd, unread"});
}

/// @param rows  "quantity -> its best display".
template <typename Q>
void ExpectBest(bool allowLarger, std::initializer_list<const char*> rows)
{
    for (const char* const row : rows)
    {
        SCOPED_TRACE(row);
        Q given;
        Q expected;
        ASSERT_TRUE(Convert::FromString(QString(row).section(" -> ", 0, 0), given) &&
                    Convert::FromString(QString(row).section(" -> ", 1, 1), expected));
        const Q best = Convert::ToBestDisplay(given, allowLarger);
        EXPECT_EQ(best.GetUnit(), expected.GetUnit());
        EXPECT_DOUBLE_EQ(best.GetValue(), expected.GetValue());
    }
}

TEST(BestDisplay, OfALengthMovesToTheUnitThatSuits)
{
    ExpectBest<Length>(false, {"50 cm -> 500 mm", "100 cm -> 100 cm", "150 m -> 150 m"});
    ExpectBest<Length>(true, {"50 cm -> 0.5 m", "150 cm -> 1.5 m", "0.05 m -> 50 mm", "0.00001 km -> 10 mm",
                              "150 m -> 0.15 km", "100 m -> 100 m", "18 in -> 1.5 ft", "12 in -> 12 in",
                              "6 usft -> 2.000004000007999 yd", "0.5 mi -> 0.5 mi", "0.05 mi -> 88 yd",
                              "0.01 yd -> 0.36 in", "0.00005 in -> 50 µin", "-3 km -> -3 km",
                              "-50 cm -> -50 cm", "0 m -> 0 m", "1e-12 µm -> 1e-12 µm"});
}

TEST(BestDisplay, OfAPowerIsTheLargestUnitWithAtLeastOne)
{
    ExpectBest<Area>(true, {"2000000 mm² -> 2 m²", "-0.5 m² -> -500000 mm²"});
    ExpectBest<Area>(false, {"2000000 mm² -> 2000000 mm²", "5 µm² -> 5 µm²"});
    ExpectBest<Volume>(true, {"54 ft³ -> 2 yd³", "0 l -> 0 l"});
    ExpectBest<Angle>(true, {"720° -> 720°"});
}
} // namespace
} // namespace vek::Unit
