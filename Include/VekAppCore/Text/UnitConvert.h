#pragma once
#include "VekAppCore/Text/Convert.h"
#include "VekAppCore/Text/Unit.h"

/// @file
/// Units and quantities as text, and back. Reentrant.
namespace vek::Convert
{
/// The symbol; that of the absolute default for what is no real unit.
template <Unit::AnyUnit U>
[[nodiscard]] VEKAPPCORE_EXPORT QString ToString(U unit);

/// Reads a symbol or the name of an enumerator, "END" included, as a whole and case-sensitively.
template <Unit::AnyUnit U>
[[nodiscard]] VEKAPPCORE_EXPORT bool FromString(QStringView text, U& unit);

/// Number, blank and symbol, such as "12.5 mm"; no blank before degrees, minutes and seconds of arc.
template <Unit::AnyQuantity Q>
[[nodiscard]] VEKAPPCORE_EXPORT QString ToString(const Q& quantity, const NumberOptions& options = {});

/// Reads a number and a symbol with or without a blank between them; a number alone is no quantity.
template <Unit::AnyQuantity Q>
[[nodiscard]] VEKAPPCORE_EXPORT bool FromString(QStringView text, Q& quantity,
                                                const NumberOptions& options = {});

/// In the unit of the same family, metric or imperial, that suits its magnitude: 0.05 m becomes 50 mm, and
/// less than 100 cm always millimetres. What is zero, negative or would come below 0.00001 stays as it is.
/// @param allowLarger  it may become a larger unit, too: 150 m become 0.15 km.
[[nodiscard]] VEKAPPCORE_EXPORT Unit::Length ToBestDisplay(const Unit::Length& length,
                                                           bool allowLarger = true);

/// @{
/// In the largest unit of the same family in which the magnitude is at least 1, among the powers of mm, m and
/// km, or of in, ft, yd and mi; in the smallest of them where there is none. Zero and what is not finite stay
/// as they are.
/// @param allowLarger  false keeps it from becoming a larger unit than it has.
[[nodiscard]] VEKAPPCORE_EXPORT Unit::Area ToBestDisplay(const Unit::Area& area, bool allowLarger = true);
[[nodiscard]] VEKAPPCORE_EXPORT Unit::Volume ToBestDisplay(const Unit::Volume& volume,
                                                           bool allowLarger = true);
/// @}

/// @{
/// As they are.
[[nodiscard]] inline Unit::Angle ToBestDisplay(const Unit::Angle& angle, bool = true) { return angle; }
[[nodiscard]] inline Unit::Percent ToBestDisplay(const Unit::Percent& percent, bool = true)
{
    return percent;
}
/// @}
} // namespace vek::Convert
