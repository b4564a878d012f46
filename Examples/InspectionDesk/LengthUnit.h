#pragma once
#include "VekAppCore/Data/VariantConverter.h"
#include <algorithm>

namespace vek::Desk
{
/// In which lengths are shown and kept in files; the desk itself has them in millimetres.
struct LengthUnit
{
    QStringView symbol; ///< Its name in files, too.
    QStringView name;
    double millimetres;
    int decimals; ///< Of figures.

    [[nodiscard]] QString ToText(double lengthInMillimetres) const
    {
        return QStringLiteral("%1 %2").arg(lengthInMillimetres / millimetres, 0, 'f', decimals).arg(symbol);
    }
    bool operator==(const LengthUnit& other) const { return symbol == other.symbol; }
};

constexpr LengthUnit lengthUnits[] = {{u"mm", u"Millimetre", 1.0, 4}, {u"in", u"Inch", 25.4, 6}};
} // namespace vek::Desk

/// Kept as its symbol.
template <>
struct vek::App::VariantConverter<vek::Desk::LengthUnit>
{
    [[nodiscard]] static QVariant ToVariant(const Desk::LengthUnit& unit, EVariantStoreFormat)
    {
        return unit.symbol.toString();
    }
    [[nodiscard]] static std::optional<Desk::LengthUnit> FromVariant(const QVariant& variant)
    {
        const auto* const unit =
            std::ranges::find(Desk::lengthUnits, variant.toString(), &Desk::LengthUnit::symbol);
        return unit == std::end(Desk::lengthUnits) ? std::nullopt : std::optional(*unit);
    }
};
