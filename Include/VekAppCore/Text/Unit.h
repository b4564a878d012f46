#pragma once
#include "VekAppCore/Export.h"
#include "VekBase/LogText.h"
#include "VekBase/Signal.h"
#include <array>
#include <compare>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <iosfwd>
#include <optional>
#include <string_view>
#include <vector>

class QDataStream;
class QVariant;

/// Measured values that carry their unit. Quantities are plain values, reentrant; the default length unit is
/// set on the main thread and read anywhere.
///
/// @code
/// using enum Unit::LengthUnit;
/// Unit::Length thickness(1, Inch);
/// thickness += Unit::Length(0.6, Millimeter); // stays in inches
/// const double metres = thickness.GetValueIn(Meter);
/// @endcode
namespace vek::Unit
{
/// END is behind the last one; 0 and 1 are reserved, and name no unit.
enum class LengthUnit : std::int32_t
{
    Micrometer = 2,
    Millimeter,
    Centimeter,
    Meter,
    Kilometer,
    Microinch,
    Mil,
    Inch,
    Feet,
    FeetUS,
    Yard,
    Miles,
    END,
};

/// As LengthUnit, with the same numbers for the same units.
enum class AreaUnit : std::int32_t
{
    Micrometer2 = 2,
    Millimeter2,
    Centimeter2,
    Meter2,
    Kilometer2,
    Microinch2,
    Mil2,
    Inch2,
    Feet2,
    FeetUS2,
    Yard2,
    Miles2,
    END,
};

/// As LengthUnit, with the same numbers for the same units; what is no cube follows.
enum class VolumeUnit : std::int32_t
{
    Micrometer3 = 2,
    Millimeter3,
    Centimeter3,
    Meter3,
    Kilometer3,
    Microinch3,
    Mil3,
    Inch3,
    Feet3,
    FeetUS3,
    Yard3,
    Miles3,
    Liter,
    GallonLiquidUS,
    GallonDryUS,
    BarrelLiquidUS,
    BarrelDryUS,
    BarrelOilUS,
    END,
};

/// END is behind the last one; 0 and 1 are reserved, and name no unit.
enum class AngleUnit : std::int32_t
{
    Radian = 2,
    Degree,
    Gradian,
    Percent, ///< Of slope: the tangent times 100.
    Minute,
    Second,
    END,
};

/// There is but one; END is behind it.
enum class PercentUnit : std::int32_t
{
    Percent = 1,
    END,
};

/// What is known of a unit.
struct UnitRow
{
    std::string_view name;      ///< Of the enumerator.
    std::u16string_view symbol; ///< As people write it.
    double factor;              ///< Of one unit in the base unit.
};

/// Factors to the metre.
inline constexpr std::array<UnitRow, 14> lengthUnits{{
    {"", u"m", 1.0},
    {"", u"m", 1.0},
    {"Micrometer", u"\u00b5m", 1e-06},
    {"Millimeter", u"mm", 0.001},
    {"Centimeter", u"cm", 0.01},
    {"Meter", u"m", 1.0},
    {"Kilometer", u"km", 1000.0},
    {"Microinch", u"\u00b5in", 2.54e-08},
    {"Mil", u"mil", 2.54e-05},
    {"Inch", u"in", 0.0254},
    {"Feet", u"ft", 0.3048},
    {"FeetUS", u"usft", 0.304800609601219},
    {"Yard", u"yd", 0.9144},
    {"Miles", u"mi", 1609.344},
}};

/// Factors to the square metre.
inline constexpr std::array<UnitRow, 14> areaUnits{{
    {"", u"m\u00b2", 1.0},
    {"", u"m\u00b2", 1.0},
    {"Micrometer2", u"\u00b5m\u00b2", 1e-12},
    {"Millimeter2", u"mm\u00b2", 1e-06},
    {"Centimeter2", u"cm\u00b2", 0.0001},
    {"Meter2", u"m\u00b2", 1.0},
    {"Kilometer2", u"km\u00b2", 1000000.0},
    {"Microinch2", u"\u00b5in\u00b2", 6.4516e-16},
    {"Mil2", u"mil\u00b2", 6.4516e-10},
    {"Inch2", u"in\u00b2", 0.00064516},
    {"Feet2", u"ft\u00b2", 0.09290304},
    {"FeetUS2", u"usft\u00b2", 0.09290341161327471},
    {"Yard2", u"yd\u00b2", 0.83612736},
    {"Miles2", u"mi\u00b2", 2589988.110336},
}};

/// Factors to the cubic metre.
inline constexpr std::array<UnitRow, 20> volumeUnits{{
    {"", u"m\u00b3", 1.0},
    {"", u"m\u00b3", 1.0},
    {"Micrometer3", u"\u00b5m\u00b3", 1e-18},
    {"Millimeter3", u"mm\u00b3", 1e-09},
    {"Centimeter3", u"cm\u00b3", 1e-06},
    {"Meter3", u"m\u00b3", 1.0},
    {"Kilometer3", u"km\u00b3", 1000000000.0},
    {"Microinch3", u"\u00b5in\u00b3", 1.6387064e-23},
    {"Mil3", u"mil\u00b3", 1.6387064e-14},
    {"Inch3", u"in\u00b3", 1.6387064e-05},
    {"Feet3", u"ft\u00b3", 0.028316846592},
    {"FeetUS3", u"usft\u00b3", 0.028317016493759103},
    {"Yard3", u"yd\u00b3", 0.764554857984},
    {"Miles3", u"mi\u00b3", 4168181825.4405794},
    {"Liter", u"l", 0.001},
    {"GallonLiquidUS", u"US liquid gallon", 0.003785411784},
    {"GallonDryUS", u"US dry gallon", 0.00440488377086},
    {"BarrelLiquidUS", u"US liquid barrel", 0.119240471196},
    {"BarrelDryUS", u"US dry barrel", 0.115628198985075},
    {"BarrelOilUS", u"US oil barrel", 0.158987294928},
}};

/// Factors to the radian. That of Percent is not used: a slope is converted by its tangent.
inline constexpr std::array<UnitRow, 8> angleUnits{{
    {"", u"\u00b0", 0.017453292519943295},
    {"", u"\u00b0", 0.017453292519943295},
    {"Radian", u"rad", 1.0},
    {"Degree", u"\u00b0", 0.017453292519943295},
    {"Gradian", u"gon", 0.015707963267948967},
    {"Percent", u"%", 0.06283185307179402},
    {"Minute", u"'", 0.0002908882086657216},
    {"Second", u"\"", 4.84813681109536e-06},
}};

/// Nothing is converted.
inline constexpr std::array<UnitRow, 2> percentUnits{{
    {"", u"%", 1.0},
    {"Percent", u"%", 1.0},
}};

/// Meter at first.
[[nodiscard]] VEKAPPCORE_EXPORT LengthUnit GetDefaultLengthUnit();
/// Main thread only. Values that are already built keep their units.
/// @param unit  not checked.
VEKAPPCORE_EXPORT void SetDefaultUnit(LengthUnit unit);
/// Calls @p callback after every change of the default length unit, while the connection is kept. Main thread
/// only.
[[nodiscard]] VEKAPPCORE_EXPORT Connection OnDefaultUnitChanged(std::function<void()> callback);
/// What replaces a unit that is none.
[[nodiscard]] constexpr LengthUnit GetAbsoluteDefaultLengthUnit() { return LengthUnit::Meter; }

namespace Details
{
// The units of length, area and volume have the same numbers; what has no counterpart is in metres.
template <typename To, typename From>
[[nodiscard]] constexpr To GetAnalog(From unit)
{
    const auto number = static_cast<std::int32_t>(unit);
    const bool hasAnalog = number >= 2 && number <= 13;
    return static_cast<To>(hasAnalog ? number : static_cast<std::int32_t>(LengthUnit::Meter));
}
} // namespace Details

/// @{
/// The unit of the same base; Meter or its power where there is none.
[[nodiscard]] constexpr AreaUnit GetAnalogAreaUnit(LengthUnit unit)
{
    return Details::GetAnalog<AreaUnit>(unit);
}
[[nodiscard]] constexpr VolumeUnit GetAnalogVolumeUnit(LengthUnit unit)
{
    return Details::GetAnalog<VolumeUnit>(unit);
}
[[nodiscard]] constexpr LengthUnit GetAnalogLengthUnit(AreaUnit unit)
{
    return Details::GetAnalog<LengthUnit>(unit);
}
/// @}

/// Meter for the units that are no cubes.
[[nodiscard]] constexpr LengthUnit GetAnalogLengthUnit(VolumeUnit unit)
{
    return Details::GetAnalog<LengthUnit>(unit);
}

/// @{
/// They follow the default length unit.
[[nodiscard]] inline AreaUnit GetDefaultAreaUnit() { return GetAnalogAreaUnit(GetDefaultLengthUnit()); }
[[nodiscard]] inline VolumeUnit GetDefaultVolumeUnit() { return GetAnalogVolumeUnit(GetDefaultLengthUnit()); }
/// @}

/// What the enumerations of units have in common.
template <typename U>
struct UnitTraits;
/// The table of rows by number, the first real unit, and the default.
template <>
struct UnitTraits<LengthUnit>
{
    static constexpr auto& table = lengthUnits;
    static constexpr LengthUnit first = LengthUnit::Micrometer;
    static LengthUnit GetDefault() { return GetDefaultLengthUnit(); }
};
/// As of LengthUnit.
template <>
struct UnitTraits<AreaUnit>
{
    static constexpr auto& table = areaUnits;
    static constexpr AreaUnit first = AreaUnit::Micrometer2;
    static AreaUnit GetDefault() { return GetDefaultAreaUnit(); }
};
/// As of LengthUnit.
template <>
struct UnitTraits<VolumeUnit>
{
    static constexpr auto& table = volumeUnits;
    static constexpr VolumeUnit first = VolumeUnit::Micrometer3;
    static VolumeUnit GetDefault() { return GetDefaultVolumeUnit(); }
};
/// As of LengthUnit; the default is Degree.
template <>
struct UnitTraits<AngleUnit>
{
    static constexpr auto& table = angleUnits;
    static constexpr AngleUnit first = AngleUnit::Radian;
    static constexpr AngleUnit GetDefault() { return AngleUnit::Degree; }
};
/// As of LengthUnit.
template <>
struct UnitTraits<PercentUnit>
{
    static constexpr auto& table = percentUnits;
    static constexpr PercentUnit first = PercentUnit::Percent;
    static constexpr PercentUnit GetDefault() { return PercentUnit::Percent; }
};

/// One of the enumerations of units.
template <typename U>
concept AnyUnit = requires
{
    UnitTraits<U>::first;
};

/// Neither reserved nor out of range.
template <AnyUnit U>
[[nodiscard]] constexpr bool IsReal(U unit)
{
    return unit >= UnitTraits<U>::first && unit < U::END;
}

/// The real ones, in their order.
template <AnyUnit U>
[[nodiscard]] constexpr auto GetUnits()
{
    constexpr auto first = static_cast<std::size_t>(UnitTraits<U>::first);
    std::array<U, UnitTraits<U>::table.size() - first> units{};
    for (std::size_t i = 0; i < units.size(); ++i)
        units[i] = static_cast<U>(first + i);
    return units;
}

/// That of the row of the absolute default for what is no real unit.
template <AnyUnit U>
[[nodiscard]] constexpr const UnitRow& GetRow(U unit)
{
    return UnitTraits<U>::table[IsReal(unit) ? static_cast<std::size_t>(unit) : 0];
}

/// The value unchanged when the units are the same.
template <AnyUnit U>
[[nodiscard]] constexpr double GetValueIn(double value, U from, U to)
{
    return from == to ? value : value * GetRow(from).factor / GetRow(to).factor;
}
/// From and to Percent by way of the tangent: an odd multiple of a right angle has no finite one.
template <>
[[nodiscard]] VEKAPPCORE_EXPORT double GetValueIn(double value, AngleUnit from, AngleUnit to);

/// False for what is an odd multiple of a right angle, as nearly as numbers tell.
[[nodiscard]] VEKAPPCORE_EXPORT bool IsAngleConvertibleToPercent(double value, AngleUnit unit);

/// A magnitude and its unit, which is always a real one: where another would enter, the default of its kind
/// replaces it. Quantities of one kind are compared and added across units; a sum has the unit of its first
/// summand. They are compared in the base unit, where neighbours may coincide: 1 in equals 25.4 mm, also in
/// trees, for which a change of unit alone is none.
template <typename Derived, AnyUnit U>
class Quantity
{
public:
    /// The enumeration of its units.
    using UnitType = U;

    /// 0 in the default unit.
    Quantity() : Quantity(0.0) {}
    /// In the default unit.
    explicit Quantity(double value) : Quantity(value, UnitTraits<U>::GetDefault()) {}
    /// @param unit  one that is not real is replaced by the default.
    constexpr Quantity(double value, U unit) : m_value(value), m_unit(IsReal(unit) ? unit : _GetRealDefault())
    {}

    /// In GetUnit.
    [[nodiscard]] constexpr double GetValue() const { return m_value; }
    /// A real one.
    [[nodiscard]] constexpr U GetUnit() const { return m_unit; }
    /// By way of the base unit; slopes by way of the tangent.
    [[nodiscard]] constexpr double GetValueIn(U target) const
    {
        return Unit::GetValueIn(m_value, m_unit, target);
    }
    /// The same quantity in another unit.
    [[nodiscard]] constexpr Derived ConvertedTo(U target) const { return {GetValueIn(target), target}; }

    friend constexpr bool operator==(const Derived& a, const Derived& b)
    {
        return a._GetBaseValue() == b._GetBaseValue();
    }
    friend constexpr std::partial_ordering operator<=>(const Derived& a, const Derived& b)
    {
        return a._GetBaseValue() <=> b._GetBaseValue();
    }
    /// Equal quantities have equal hashes, in whatever units.
    friend std::size_t qHash(const Derived& quantity, std::size_t seed = 0)
    {
        return std::hash<double>()(quantity._GetBaseValue()) ^ seed;
    }

    friend constexpr Derived operator+(const Derived& a, const Derived& b)
    {
        return a._Calculate([&b](double value, U unit) { return value + b.GetValueIn(unit); });
    }
    friend constexpr Derived operator-(const Derived& a, const Derived& b)
    {
        return a._Calculate([&b](double value, U unit) { return value - b.GetValueIn(unit); });
    }
    friend constexpr Derived operator-(const Derived& a) { return {-a.m_value, a.m_unit}; }
    friend constexpr Derived operator*(const Derived& a, double factor)
    {
        return a._Calculate([factor](double value, U) { return value * factor; });
    }
    friend constexpr Derived operator*(double factor, const Derived& a) { return a * factor; }
    friend constexpr Derived operator/(const Derived& a, double divisor)
    {
        return a._Calculate([divisor](double value, U) { return value / divisor; });
    }
    /// How many times @p b goes into @p a.
    friend constexpr double operator/(const Derived& a, const Derived& b)
    {
        if constexpr (std::same_as<U, AngleUnit>)
            return a._GetBaseValue() / b._GetBaseValue();
        else
            return a.m_value / b.GetValueIn(a.m_unit);
    }
    constexpr Derived& operator+=(const Derived& other) { return _Get() = _Get() + other; }
    constexpr Derived& operator-=(const Derived& other) { return _Get() = _Get() - other; }
    constexpr Derived& operator*=(double factor) { return _Get() = _Get() * factor; }
    constexpr Derived& operator/=(double divisor) { return _Get() = _Get() / divisor; }

private:
    constexpr Derived& _Get() { return static_cast<Derived&>(*this); }

    /// The default that was set is not checked.
    static constexpr U _GetRealDefault()
    {
        const U unit = UnitTraits<U>::GetDefault();
        return IsReal(unit) ? unit : static_cast<U>(LengthUnit::Meter);
    }

    [[nodiscard]] constexpr double _GetBaseValue() const
    {
        if constexpr (std::same_as<U, AngleUnit>)
            return GetValueIn(AngleUnit::Radian);
        else
            return m_value * GetRow(m_unit).factor;
    }

    /// Slopes are no sum of slopes: they are calculated with as angles.
    [[nodiscard]] constexpr Derived _Calculate(const auto& function) const
    {
        if constexpr (std::same_as<U, AngleUnit>)
            if (m_unit == AngleUnit::Percent)
                return Derived(function(_GetBaseValue(), AngleUnit::Radian), AngleUnit::Radian)
                    .ConvertedTo(m_unit);
        return {function(m_value, m_unit), m_unit};
    }

    double m_value;
    U m_unit;
};

class VEKAPPCORE_EXPORT Length : public Quantity<Length, LengthUnit>
{
public:
    using Quantity::Quantity;
};

/// Its units are the squares of those of length.
class VEKAPPCORE_EXPORT Area : public Quantity<Area, AreaUnit>
{
public:
    using Quantity::Quantity;

    /// @{
    /// False for reserved units, as for the other three.
    [[nodiscard]] static constexpr bool IsMetric(AreaUnit unit)
    {
        return unit >= AreaUnit::Micrometer2 && unit <= AreaUnit::Kilometer2;
    }
    [[nodiscard]] static constexpr bool IsImperial(AreaUnit unit)
    {
        return unit >= AreaUnit::Microinch2 && unit <= AreaUnit::Miles2;
    }
    /// @}
};

/// Its units are the cubes of those of length, litres, gallons and barrels.
class VEKAPPCORE_EXPORT Volume : public Quantity<Volume, VolumeUnit>
{
public:
    using Quantity::Quantity;

    /// @{
    /// As of Area.
    [[nodiscard]] static constexpr bool IsMetric(VolumeUnit unit)
    {
        return (unit >= VolumeUnit::Micrometer3 && unit <= VolumeUnit::Kilometer3) ||
               unit == VolumeUnit::Liter;
    }
    [[nodiscard]] static constexpr bool IsImperial(VolumeUnit unit)
    {
        return (unit >= VolumeUnit::Microinch3 && unit <= VolumeUnit::Miles3) ||
               (unit >= VolumeUnit::GallonLiquidUS && unit <= VolumeUnit::BarrelOilUS);
    }
    /// @}
};

/// An angle in radians.
struct Radian
{
    double value = 0; ///< In radians.
};

/// Slopes in percent are angles too: they are added and scaled as such.
class VEKAPPCORE_EXPORT Angle : public Quantity<Angle, AngleUnit>
{
public:
    using Quantity::Quantity;
    /// What calculates in radians need not name the unit.
    constexpr Angle(const Radian& radian) : Quantity(radian.value, AngleUnit::Radian) {}
    constexpr Angle& operator=(const Radian& radian) { return *this = Angle(radian); }
    operator Radian() const { return {GetValueIn(AngleUnit::Radian)}; }
};

class VEKAPPCORE_EXPORT Percent : public Quantity<Percent, PercentUnit>
{
public:
    using Quantity::Quantity;
};

/// Length, Area, Volume, Angle or Percent.
template <typename Q>
concept AnyQuantity = requires
{
    typename Q::UnitType;
}
&&std::derived_from<Q, Quantity<Q, typename Q::UnitType>>;

// A product is in the power of its first factor's unit, a quotient in the unit that its dividend is a power
// of.

[[nodiscard]] constexpr Area operator*(const Length& a, const Length& b)
{
    return {a.GetValue() * b.GetValueIn(a.GetUnit()), GetAnalogAreaUnit(a.GetUnit())};
}
[[nodiscard]] constexpr Volume operator*(const Area& a, const Length& b)
{
    const LengthUnit unit = GetAnalogLengthUnit(a.GetUnit());
    return {a.GetValue() * b.GetValueIn(unit), GetAnalogVolumeUnit(unit)};
}
[[nodiscard]] constexpr Volume operator*(const Length& a, const Area& b)
{
    return {a.GetValue() * b.GetValueIn(GetAnalogAreaUnit(a.GetUnit())), GetAnalogVolumeUnit(a.GetUnit())};
}
[[nodiscard]] constexpr Length operator/(const Area& a, const Length& b)
{
    const LengthUnit unit = GetAnalogLengthUnit(a.GetUnit());
    return {a.GetValue() / b.GetValueIn(unit), unit};
}
[[nodiscard]] constexpr Area operator/(const Volume& a, const Length& b)
{
    const LengthUnit unit = GetAnalogLengthUnit(a.GetUnit());
    return {a.GetValueIn(GetAnalogVolumeUnit(unit)) / b.GetValueIn(unit), GetAnalogAreaUnit(unit)};
}
[[nodiscard]] constexpr Length operator/(const Volume& a, const Area& b)
{
    const LengthUnit unit = GetAnalogLengthUnit(a.GetUnit());
    return {a.GetValueIn(GetAnalogVolumeUnit(unit)) / b.GetValueIn(GetAnalogAreaUnit(unit)), unit};
}

/// Their values in @p target, in their order.
template <AnyQuantity Q>
[[nodiscard]] std::vector<double> GetValuesIn(const std::vector<Q>& quantities, typename Q::UnitType target)
{
    std::vector<double> values;
    values.reserve(quantities.size());
    for (const Q& quantity : quantities)
        values.push_back(quantity.GetValueIn(target));
    return values;
}

/// The value as a floating-point number, then the unit as a signed 32-bit integer.
template <AnyQuantity Q>
VEKAPPCORE_EXPORT QDataStream& operator<<(QDataStream& stream, const Q& quantity);
template <AnyQuantity Q>
VEKAPPCORE_EXPORT QDataStream& operator>>(QDataStream& stream, Q& quantity);

/// As Convert::ToString writes it in the C locale; for logs.
template <AnyQuantity Q>
VEKAPPCORE_EXPORT std::ostream& operator<<(std::ostream& stream, const Q& quantity);
template <AnyQuantity Q>
[[nodiscard]] VEKAPPCORE_EXPORT std::string ToLogText(const Q& quantity);
[[nodiscard]] VEKAPPCORE_EXPORT std::string ToLogText(const Radian& radian);
/// The name of the enumerator; the number of what is no real unit.
template <AnyUnit U>
[[nodiscard]] std::string ToLogText(U unit)
{
    return IsReal(unit) ? std::string(GetRow(unit).name) : std::to_string(static_cast<std::int32_t>(unit));
}
using vek::PrintTo;
} // namespace vek::Unit

namespace vek::App
{
enum class EVariantStoreFormat : std::int32_t;
template <typename T>
struct VariantConverter;

namespace Details
{
// No members of a template: clang would hide them as it hides their arguments, which are enumerations.
template <typename T>
[[nodiscard]] VEKAPPCORE_EXPORT QVariant UnitToVariant(const T& value, EVariantStoreFormat format);
template <typename T>
[[nodiscard]] VEKAPPCORE_EXPORT std::optional<T> UnitFromVariant(const QVariant& variant);
} // namespace Details

/// Quantities are readable as text with the unit, units as their symbols.
template <typename T>
struct UnitVariantConverter
{
    /// @{
    /// As VariantConverter has them.
    [[nodiscard]] static auto ToVariant(const T& value, EVariantStoreFormat format)
    {
        return Details::UnitToVariant(value, format);
    }
    [[nodiscard]] static std::optional<T> FromVariant(const QVariant& variant)
    {
        return Details::UnitFromVariant<T>(variant);
    }
    /// @}
};
template <Unit::AnyQuantity Q>
struct VariantConverter<Q> : UnitVariantConverter<Q>
{};
template <>
struct VariantConverter<Unit::LengthUnit> : UnitVariantConverter<Unit::LengthUnit>
{};
template <>
struct VariantConverter<Unit::AreaUnit> : UnitVariantConverter<Unit::AreaUnit>
{};
template <>
struct VariantConverter<Unit::VolumeUnit> : UnitVariantConverter<Unit::VolumeUnit>
{};
template <>
struct VariantConverter<Unit::AngleUnit> : UnitVariantConverter<Unit::AngleUnit>
{};
template <>
struct VariantConverter<Unit::PercentUnit> : UnitVariantConverter<Unit::PercentUnit>
{};
} // namespace vek::App

template <vek::Unit::AnyQuantity Q>
struct std::hash<Q>
{
    std::size_t operator()(const Q& quantity) const noexcept { return qHash(quantity); }
};
