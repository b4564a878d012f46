#include "VekAppCore/Text/UnitConvert.h"
#include "Text/Quantities.h"
#include "VekAppCore/Data/VariantConverter.h"
#include <algorithm>
#include <cmath>

namespace vek::Convert
{
using namespace Unit;

namespace
{
QStringView GetSymbol(const UnitRow& row)
{
    return {row.symbol.data(), static_cast<qsizetype>(row.symbol.size())};
}

bool HasBlank(QStringView symbol) { return symbol != u"\u00b0" && symbol != u"'" && symbol != u"\""; }

/// The unit that the text ends with, the longest where several do; its symbol is cut off.
template <AnyUnit U>
bool TakeUnit(QStringView& text, U& unit)
{
    qsizetype longest = 0;
    for (const U candidate : GetUnits<U>())
    {
        const QStringView symbol = GetSymbol(GetRow(candidate));
        if (symbol.size() <= longest || !text.endsWith(symbol))
            continue;
        longest = symbol.size();
        unit = candidate;
    }
    text.chop(longest);
    return longest > 0;
}

/// The largest of @p units, from small to large, in which the magnitude is at least 1.
template <typename Q>
Q ToLargestUnit(const Q& quantity, std::initializer_list<typename Q::UnitType> units, bool allowLarger)
{
    const double factor = GetRow(quantity.GetUnit()).factor;
    const bool canShrink = allowLarger || GetRow(*units.begin()).factor <= factor;
    if (quantity.GetValue() == 0 || !std::isfinite(quantity.GetValue()) || !canShrink)
        return quantity;
    Q best = quantity.ConvertedTo(*units.begin());
    for (const auto unit : units)
    {
        const bool isAllowed = allowLarger || GetRow(unit).factor <= factor;
        const Q candidate = quantity.ConvertedTo(unit);
        if (isAllowed && std::abs(candidate.GetValue()) >= 1)
            best = candidate;
    }
    return std::isfinite(best.GetValue()) ? best : quantity;
}
} // namespace

template <AnyUnit U>
QString ToString(U unit)
{
    return GetSymbol(GetRow(unit)).toString();
}

template <AnyUnit U>
bool FromString(QStringView text, U& unit)
{
    const std::u16string_view symbol(text.utf16(), static_cast<std::size_t>(text.size()));
    const auto& rows = UnitTraits<U>::table;
    constexpr auto first = static_cast<std::size_t>(UnitTraits<U>::first);
    const auto hasSymbol = [symbol](const UnitRow& row) { return row.symbol == symbol; };
    const auto hasName = [text](const UnitRow& row) {
        return text == QLatin1String(row.name.data(), static_cast<qsizetype>(row.name.size()));
    };
    auto row = std::find_if(rows.begin() + first, rows.end(), hasSymbol);
    if (row == rows.end())
        row = std::find_if(rows.begin() + first, rows.end(), hasName);
    if (row == rows.end() && text != QLatin1String("END"))
        return false;
    unit = static_cast<U>(row - rows.begin()); // END stands behind the last row
    return true;
}

template <AnyQuantity Q>
QString ToString(const Q& quantity, const NumberOptions& options)
{
    const QStringView symbol = GetSymbol(GetRow(quantity.GetUnit()));
    QString text = ToString(quantity.GetValue(), options);
    if (HasBlank(symbol))
        text += u' ';
    return text += symbol;
}

template <AnyQuantity Q>
bool FromString(QStringView text, Q& quantity, const NumberOptions& options)
{
    double value = 0;
    typename Q::UnitType unit{};
    text = text.trimmed();
    if (!TakeUnit(text, unit) || !FromString(text, value, options))
        return false;
    quantity = Q(value, unit);
    return true;
}

Length ToBestDisplay(const Length& length, bool allowLarger)
{
    Length best = length;
    const auto value = [&best] { return best.GetValue(); };
    const auto magnitude = [&best] { return std::abs(best.GetValue()); };
    const auto move = [&best](bool isDue, LengthUnit from, LengthUnit to) {
        if (isDue && best.GetUnit() == from)
            best = best.ConvertedTo(to);
    };
    using enum LengthUnit;
    if (length.GetUnit() <= Kilometer)
    {
        move(magnitude() < 100, Centimeter, Millimeter);
        if (value() < 0.1)
        {
            move(magnitude() < 0.1, Kilometer, Meter);
            move(magnitude() < 0.1, Meter, Millimeter);
            move(magnitude() < 0.1, Millimeter, Micrometer);
        }
        else if (allowLarger && value() > 100)
        {
            move(magnitude() >= 100, Micrometer, Millimeter);
            move(magnitude() >= 100, Millimeter, Meter);
            move(magnitude() >= 100, Meter, Kilometer);
            move(magnitude() >= 100, Centimeter, Meter);
        }
    }
    else if (value() < 1)
    {
        move(value() < 0.1, Miles, Yard);
        move(value() < 1, Yard, Feet);
        move(value() < 1, Feet, Inch);
        move(value() < 1, FeetUS, Inch);
        move(value() < 0.1, Inch, Mil);
        move(value() < 0.1, Mil, Microinch);
    }
    else if (allowLarger && value() > 1)
    {
        move(value() > 100, Microinch, Mil);
        move(value() > 100, Mil, Inch);
        move(value() > 12, Inch, Feet);
        move(value() > 3, Feet, Yard);
        move(value() > 3, FeetUS, Yard);
        move(value() > 100, Yard, Miles);
    }
    return value() < 0.00001 ? length : best;
}

Area ToBestDisplay(const Area& area, bool allowLarger)
{
    using enum AreaUnit;
    return Area::IsMetric(area.GetUnit())
               ? ToLargestUnit(area, {Millimeter2, Meter2, Kilometer2}, allowLarger)
               : ToLargestUnit(area, {Inch2, Feet2, Yard2, Miles2}, allowLarger);
}

Volume ToBestDisplay(const Volume& volume, bool allowLarger)
{
    using enum VolumeUnit;
    return Volume::IsMetric(volume.GetUnit())
               ? ToLargestUnit(volume, {Millimeter3, Meter3, Kilometer3}, allowLarger)
               : ToLargestUnit(volume, {Inch3, Feet3, Yard3, Miles3}, allowLarger);
}

#define VEK_INSTANTIATE(Q)                                                                                   \
    template VEKAPPCORE_EXPORT QString ToString(Q::UnitType);                                                \
    template VEKAPPCORE_EXPORT bool FromString(QStringView, Q::UnitType&);                                   \
    template VEKAPPCORE_EXPORT QString ToString(const Q&, const NumberOptions&);                             \
    template VEKAPPCORE_EXPORT bool FromString(QStringView, Q&, const NumberOptions&);
VEK_FOR_EACH_QUANTITY(VEK_INSTANTIATE)
#undef VEK_INSTANTIATE
} // namespace vek::Convert

namespace vek::App
{
template <typename T>
QVariant Details::UnitToVariant(const T& value, EVariantStoreFormat format)
{
    return format == EVariantStoreFormat::Typed ? QVariant::fromValue(value)
                                                : QVariant(Convert::ToString(value));
}

template <typename T>
std::optional<T> Details::UnitFromVariant(const QVariant& variant)
{
    T value{};
    if (variant.metaType() == QMetaType::fromType<T>())
        value = variant.value<T>();
    else if (variant.typeId() != QMetaType::QString || !Convert::FromString(variant.toString(), value))
        return std::nullopt;
    return value;
}

#define VEK_INSTANTIATE(Q)                                                                                   \
    template VEKAPPCORE_EXPORT QVariant Details::UnitToVariant(const Unit::Q&, EVariantStoreFormat);         \
    template VEKAPPCORE_EXPORT QVariant Details::UnitToVariant(const Unit::Q::UnitType&,                     \
                                                               EVariantStoreFormat);                         \
    template VEKAPPCORE_EXPORT std::optional<Unit::Q> Details::UnitFromVariant(const QVariant&);             \
    template VEKAPPCORE_EXPORT std::optional<Unit::Q::UnitType> Details::UnitFromVariant(const QVariant&);
VEK_FOR_EACH_QUANTITY(VEK_INSTANTIATE)
#undef VEK_INSTANTIATE
} // namespace vek::App
