#include "VekAppCore/Text/Triplet.h"
#include "VekAppCore/App/Exception.h"
#include <array>
#include <cmath>
#include <ostream>

namespace vek
{
namespace
{
/// In the unit of @p a.
Triplet ToUnitOf(const Triplet& a, const Triplet& b)
{
    if (a.unit.has_value() != b.unit.has_value())
        throw Exception::WrongTypeException(QStringLiteral("Wrong type"));
    return a.unit ? b.ConvertedTo(*a.unit) : b;
}
} // namespace

Triplet Triplet::ConvertedTo(Unit::LengthUnit target) const
{
    const Unit::LengthUnit from = unit.value_or(target);
    return {Unit::GetValueIn(x, from, target), Unit::GetValueIn(y, from, target),
            Unit::GetValueIn(z, from, target), target};
}

double Triplet::GetNorm() const { return std::hypot(x, y, z); }

bool operator==(const Triplet& a, const Triplet& b)
{
    if (!a.unit || !b.unit)
        return a.unit == b.unit && a.x == b.x && a.y == b.y && a.z == b.z;
    const auto equals = [&a, &b](double left, double right) {
        return Unit::Length(left, *a.unit) == Unit::Length(right, *b.unit);
    };
    return equals(a.x, b.x) && equals(a.y, b.y) && equals(a.z, b.z);
}

Triplet operator+(const Triplet& a, const Triplet& b)
{
    const Triplet other = ToUnitOf(a, b);
    return {a.x + other.x, a.y + other.y, a.z + other.z, a.unit};
}

Triplet operator-(const Triplet& a, const Triplet& b) { return a + -b; }

std::ostream& operator<<(std::ostream& stream, const Triplet& triplet)
{
    return stream << ToLogText(triplet);
}

std::string ToLogText(const Triplet& triplet) { return Convert::ToString(triplet).toStdString(); }

namespace Convert
{
QString ToString(const Triplet& triplet, const ListUnitNumberOptions& options)
{
    const QString numbers = ToString(std::vector{triplet.x, triplet.y, triplet.z}, options);
    return triplet.unit ? numbers + u' ' + ToString(*triplet.unit) : numbers;
}

bool FromString(QStringView text, Triplet& triplet, const ListUnitNumberOptions& options)
{
    std::optional<Unit::LengthUnit> unit;
    const qsizetype blank = text.trimmed().lastIndexOf(u' ');
    Unit::LengthUnit read{};
    if (blank >= 0 && FromString(text.trimmed().sliced(blank + 1), read) && Unit::IsReal(read))
    {
        unit = read;
        text = text.trimmed().first(blank);
    }
    std::vector<double> numbers;
    if (!FromString(text, numbers, options) || numbers.size() != 3)
        return false;
    triplet = {numbers[0], numbers[1], numbers[2], unit};
    return true;
}
} // namespace Convert
} // namespace vek
