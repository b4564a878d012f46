#include "VekAppCore/Text/QuantityLineEdit.h"
#include "Text/Quantities.h"
#include <QCoreApplication>
#include <algorithm>
#include <cmath>

namespace vek
{
template <Unit::AnyQuantity U>
QuantityLineEdit<U>::QuantityLineEdit(QWidget* parent)
    : NumberLineEditBase(parent), m_unitChanged(Unit::OnDefaultUnitChanged([this] { _Update(); }))
{
    _Update();
}

template <Unit::AnyQuantity U>
QuantityLineEdit<U>::~QuantityLineEdit() = default;

template <Unit::AnyQuantity U>
void QuantityLineEdit<U>::SetValue(const U& value)
{
    m_value = m_range ? std::clamp(value, m_range->first, m_range->second) : value;
    _ShowValue();
}

template <Unit::AnyQuantity U>
void QuantityLineEdit<U>::SetRange(const U& lowest, const U& highest)
{
    m_range.emplace(lowest, std::max(lowest, highest));
    SetValue(m_value);
}

template <Unit::AnyQuantity U>
void QuantityLineEdit<U>::SetUnit(std::optional<UnitType> unit)
{
    m_unit = unit;
    _Update();
}

template <Unit::AnyQuantity U>
std::unique_ptr<Convert::NumberExtractorBase> QuantityLineEdit<U>::_MakeExtractor() const
{
    return std::make_unique<Convert::ValueWithUnitExtractor<U>>(_GetUnit());
}

template <Unit::AnyQuantity U>
QString QuantityLineEdit<U>::_GetValueText(const Convert::NumberOptions& options) const
{
    return Convert::ToString(_GetShown(m_value), options);
}

template <Unit::AnyQuantity U>
bool QuantityLineEdit<U>::_TakeValue(const Convert::NumberExtractorBase& extractor, const QString& text)
{
    const auto value = static_cast<const Convert::ValueWithUnitExtractor<U>&>(extractor).FromString(text);
    if (!value)
        return false;
    const bool isOther = std::exchange(m_value, *value) != *value;
    if (value->GetUnit() != _GetUnit()) // else the decimals stay as they were typed
        _ShowValue();
    return isOther;
}

template <Unit::AnyQuantity U>
QString QuantityLineEdit<U>::_Explain(const Convert::NumberExtractorBase& extractor, const QString& text,
                                      const Convert::NumberOptions& options) const
{
    QString judged = text;
    int pos = 0;
    if (extractor.Validate(judged, pos) == QValidator::Invalid)
    {
        QStringList symbols;
        for (const UnitType unit : Unit::GetUnits<UnitType>())
            symbols += Convert::ToString(unit);
        return QCoreApplication::translate("NumberLineEdit",
                                           "\"%1\" is not a number with one of the units %2.")
            .arg(text, symbols.join(QStringLiteral(", ")));
    }
    const auto value = static_cast<const Convert::ValueWithUnitExtractor<U>&>(extractor).FromString(text);
    const auto info = extractor.ExtractNumber(text, true);
    if (!value || !info->whole || _IsInRange(*value))
        return {};
    return QCoreApplication::translate("NumberLineEdit", "A number from %1 to %2 is expected.")
        .arg(Convert::ToString(_GetShown(m_range->first), options),
             Convert::ToString(_GetShown(m_range->second), options));
}

template <Unit::AnyQuantity U>
bool QuantityLineEdit<U>::_StepBy(double steps)
{
    const U shown = _GetShown(m_value);
    U next(_Round(shown.GetValue() + steps * _GetStep(shown.GetValue())), shown.GetUnit());
    if (m_range)
        next = std::clamp(next, m_range->first, m_range->second);
    return std::isfinite(next.GetValue()) && std::exchange(m_value, next) != next;
}

template <Unit::AnyQuantity U>
typename U::UnitType QuantityLineEdit<U>::_GetUnit() const
{
    return m_unit ? *m_unit : U(0.0).GetUnit();
}

template <Unit::AnyQuantity U>
U QuantityLineEdit<U>::_GetShown(const U& quantity) const
{
    return quantity.GetUnit() == _GetUnit() ? quantity
                                            : U(_Round(quantity.GetValueIn(_GetUnit())), _GetUnit());
}

template <Unit::AnyQuantity U>
bool QuantityLineEdit<U>::_IsInRange(const U& quantity) const
{
    return !m_range || (quantity >= m_range->first && quantity <= m_range->second);
}

#define VEK_INSTANTIATE(Q) template class QuantityLineEdit<Unit::Q>;
VEK_FOR_EACH_QUANTITY(VEK_INSTANTIATE)
#undef VEK_INSTANTIATE
} // namespace vek
