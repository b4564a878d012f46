#include "VekAppCore/Text/Unit.h"
#include "Text/Quantities.h"
#include "VekAppCore/Text/UnitConvert.h"
#include <QDataStream>
#include <cmath>
#include <limits>
#include <numbers>
#include <ostream>
#include <utility>

namespace vek::Unit
{
namespace
{
LengthUnit g_defaultUnit = GetAbsoluteDefaultLengthUnit(); // set on the main thread

Signal<void()>& GetDefaultUnitChanged()
{
    static Signal<void()> changed;
    return changed;
}

// Qt finds a type by its name in a stream once it has been registered.
const bool isRegistered = [] {
#define VEK_REGISTER(Q)                                                                                      \
    qRegisterMetaType<Q>();                                                                                  \
    qRegisterMetaType<Q::UnitType>();
    VEK_FOR_EACH_QUANTITY(VEK_REGISTER)
#undef VEK_REGISTER
    return true;
}();
} // namespace

LengthUnit GetDefaultLengthUnit() { return g_defaultUnit; }

void SetDefaultUnit(LengthUnit unit)
{
    if (std::exchange(g_defaultUnit, unit) != unit)
        GetDefaultUnitChanged().Emit();
}

Connection OnDefaultUnitChanged(std::function<void()> callback)
{
    return GetDefaultUnitChanged().Connect(std::move(callback));
}

template <>
double GetValueIn(double value, AngleUnit from, AngleUnit to)
{
    if (from == to)
        return value;
    if (from == AngleUnit::Percent)
    {
        value = std::atan(value / 100.0);
        from = AngleUnit::Radian;
        if (to == AngleUnit::Radian)
            return value;
    }
    if (to == AngleUnit::Percent)
        return std::tan(GetValueIn(value, from, AngleUnit::Radian)) * 100.0;
    return value * GetRow(from).factor / GetRow(to).factor;
}

bool IsAngleConvertibleToPercent(double value, AngleUnit unit)
{
    if (unit == AngleUnit::Percent)
        return true;
    const double radians = unit == AngleUnit::Radian ? value : value * GetRow(unit).factor;
    return !(std::abs(std::fmod(radians + std::numbers::pi / 2, std::numbers::pi)) <
             std::numeric_limits<double>::epsilon());
}

template <AnyQuantity Q>
QDataStream& operator<<(QDataStream& stream, const Q& quantity)
{
    return stream << quantity.GetValue() << static_cast<qint32>(quantity.GetUnit());
}

template <AnyQuantity Q>
QDataStream& operator>>(QDataStream& stream, Q& quantity)
{
    double value = 0;
    qint32 unit = 0;
    stream >> value >> unit;
    quantity = Q(value, static_cast<typename Q::UnitType>(unit));
    return stream;
}

template <AnyQuantity Q>
std::ostream& operator<<(std::ostream& stream, const Q& quantity)
{
    return stream << ToLogText(quantity);
}

template <AnyQuantity Q>
std::string ToLogText(const Q& quantity)
{
    return Convert::ToString(quantity).toStdString();
}

std::string ToLogText(const Radian& radian) { return ToLogText(Angle(radian)); }

#define VEK_INSTANTIATE(Q)                                                                                   \
    template VEKAPPCORE_EXPORT QDataStream& operator<<(QDataStream&, const Q&);                              \
    template VEKAPPCORE_EXPORT QDataStream& operator>>(QDataStream&, Q&);                                    \
    template VEKAPPCORE_EXPORT std::ostream& operator<<(std::ostream&, const Q&);                            \
    template VEKAPPCORE_EXPORT std::string ToLogText(const Q&);
VEK_FOR_EACH_QUANTITY(VEK_INSTANTIATE)
#undef VEK_INSTANTIATE
} // namespace vek::Unit
