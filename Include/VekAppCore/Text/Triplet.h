#pragma once
#include "VekAppCore/Text/UnitConvert.h"
#include <iosfwd>
#include <optional>

namespace vek
{
/// A point or a vector in space. With a unit its coordinates are lengths, without one plain numbers; the two
/// do not mix. Sums have the unit of their first summand. Reentrant.
struct VEKAPPCORE_EXPORT Triplet
{
    double x = 0;                         ///< In the unit.
    double y = 0;                         ///< In the unit.
    double z = 0;                         ///< In the unit.
    std::optional<Unit::LengthUnit> unit; ///< A real one.

    /// In another unit; one without a unit gets it, and keeps its numbers.
    [[nodiscard]] Triplet ConvertedTo(Unit::LengthUnit target) const;

    /// Its distance from the origin, in its unit.
    [[nodiscard]] double GetNorm() const;

    /// The same place, in whatever units; one without a unit equals none with one.
    friend VEKAPPCORE_EXPORT bool operator==(const Triplet& a, const Triplet& b);

    /// @throws Exception::WrongTypeException  only one of them has a unit.
    friend VEKAPPCORE_EXPORT Triplet operator+(const Triplet& a, const Triplet& b);
    friend VEKAPPCORE_EXPORT Triplet operator-(const Triplet& a, const Triplet& b);
    friend Triplet operator-(const Triplet& a) { return {-a.x, -a.y, -a.z, a.unit}; }
    friend Triplet operator*(const Triplet& a, double factor)
    {
        return {a.x * factor, a.y * factor, a.z * factor, a.unit};
    }
    friend Triplet operator*(double factor, const Triplet& a) { return a * factor; }
    friend Triplet operator/(const Triplet& a, double divisor)
    {
        return {a.x / divisor, a.y / divisor, a.z / divisor, a.unit};
    }

    /// As Convert::ToString writes it in the C locale; for logs.
    friend VEKAPPCORE_EXPORT std::ostream& operator<<(std::ostream& stream, const Triplet& triplet);
};
[[nodiscard]] VEKAPPCORE_EXPORT std::string ToLogText(const Triplet& triplet);

namespace Convert
{
/// @{
/// Three numbers and, where there is one, the unit: "1; 2.5; -3 mm".
[[nodiscard]] VEKAPPCORE_EXPORT QString ToString(const Triplet& triplet,
                                                 const ListUnitNumberOptions& options = {});
[[nodiscard]] VEKAPPCORE_EXPORT bool FromString(QStringView text, Triplet& triplet,
                                                const ListUnitNumberOptions& options = {});
/// @}
} // namespace Convert
} // namespace vek
