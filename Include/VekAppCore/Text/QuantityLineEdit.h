#pragma once
#include "VekAppCore/Text/NumberLineEdit.h"
#include <optional>

namespace vek
{
/// A field for a quantity: Unit::Angle, Area, Length, Percent or Volume. It is typed in any unit, and shown
/// in that of the project, which is the default unit unless one is set; a change of it is followed at once.
template <Unit::AnyQuantity U>
class VEKAPPCOREWIDGETS_EXPORT QuantityLineEdit : public NumberLineEditBase
{
public:
    /// The enumeration of units of U.
    using UnitType = typename U::UnitType;

    /// Shows 0.
    explicit QuantityLineEdit(QWidget* parent = nullptr);
    ~QuantityLineEdit() override;

    /// In the unit in which it was typed or set.
    [[nodiscard]] const U& GetValue() const noexcept { return m_value; }
    /// Tells nobody.
    /// @param value  put into the range.
    void SetValue(const U& value);
    /// All quantities unless set.
    void SetRange(const U& lowest, const U& highest);
    /// @param unit  in which the value is shown, and read where none is typed; empty for the default.
    void SetUnit(std::optional<UnitType> unit);

protected:
    [[nodiscard]] std::unique_ptr<Convert::NumberExtractorBase> _MakeExtractor() const override;
    [[nodiscard]] QString _GetValueText(const Convert::NumberOptions& options) const override;
    bool _TakeValue(const Convert::NumberExtractorBase& extractor, const QString& text) override;
    [[nodiscard]] QString _Explain(const Convert::NumberExtractorBase& extractor, const QString& text,
                                   const Convert::NumberOptions& options) const override;
    bool _StepBy(double steps) override;

private:
    [[nodiscard]] UnitType _GetUnit() const;
    [[nodiscard]] U _GetShown(const U& quantity) const;
    [[nodiscard]] bool _IsInRange(const U& quantity) const;

    std::optional<UnitType> m_unit;
    U m_value;
    std::optional<std::pair<U, U>> m_range;
    Connection m_unitChanged;
};

/// A field for a length.
using LengthLineEdit = QuantityLineEdit<Unit::Length>;
/// A field for an angle.
using AngleLineEdit = QuantityLineEdit<Unit::Angle>;
} // namespace vek
