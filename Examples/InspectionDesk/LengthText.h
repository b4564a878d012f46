#pragma once
#include "VekAppCore/Text/StringUtility.h"
#include "VekAppCore/Text/UnitConvert.h"
#include <cmath>
#include <optional>

/// Lengths for people, in the locale in force.
namespace vek::Desk
{
/// Empty for the unit that suits the length.
using ShownUnit = std::optional<Unit::LengthUnit>;

[[nodiscard]] inline Unit::LengthUnit ChooseUnit(double millimetres, const ShownUnit& unit)
{
    const Unit::Length length(millimetres, Unit::LengthUnit::Millimeter);
    return unit ? *unit : Convert::ToBestDisplay(length).GetUnit();
}

/// To a tenth of a micrometre, which no point that is measured here is better than.
[[nodiscard]] inline Convert::NumberOptions GetLengthOptions(Unit::LengthUnit unit)
{
    constexpr double resolution = 1e-7; // in metres
    Convert::NumberOptions options;
    options.locale = StringUtility::GetQSystemLocale();
    options.notation = Convert::ENotation::Fixed;
    options.decimals =
        std::max(0, static_cast<int>(std::ceil(std::log10(Unit::GetRow(unit).factor / resolution) - 1e-9)));
    return options;
}

[[nodiscard]] inline QString ToText(double millimetres, const ShownUnit& unit)
{
    const Unit::LengthUnit shown = ChooseUnit(millimetres, unit);
    return Convert::ToString(Unit::Length(millimetres, Unit::LengthUnit::Millimeter).ConvertedTo(shown),
                             GetLengthOptions(shown));
}
} // namespace vek::Desk
