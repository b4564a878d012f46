#pragma once
#include "VekAppCore/Text/NumberExtractor.h"
#include "VekAppCoreWidgets/Export.h"
#include "VekBase/Signal.h"
#include <QLineEdit>
#include <functional>
#include <memory>

namespace vek
{
/// What the fields for numbers and quantities have in common. A text is judged while it is typed: one that is
/// impossible is coloured, and the tool tip says what is expected. It becomes the value with Return or when
/// the focus leaves; Esc restores the value of before. The arrow keys and, with the focus, the wheel step by
/// a tenth of the value's order of magnitude, the page keys by ten times that. A change of the language is
/// followed at once, and with it or QEvent::LocaleChange the locale in force, in which the numbers are, is
/// asked anew; StringUtility::ChangeQSystemLocale sends neither. Main thread only.
class VEKAPPCOREWIDGETS_EXPORT NumberLineEditBase : public QLineEdit
{
public:
    ~NumberLineEditBase() override;

    /// What is typed cannot become a value.
    [[nodiscard]] bool IsImpossible() const noexcept { return !m_explanation.isEmpty(); }

    /// Calls @p callback when the user has changed the value.
    [[nodiscard]] Connection OnValueChanged(std::function<void()> callback);

protected:
    /// A derived class calls _Update at the end of its constructor.
    explicit NumberLineEditBase(QWidget* parent);

    /// For the locale in force.
    [[nodiscard]] virtual std::unique_ptr<Convert::NumberExtractorBase> _MakeExtractor() const = 0;
    /// As it is shown.
    [[nodiscard]] virtual QString _GetValueText(const Convert::NumberOptions& options) const = 0;
    /// Takes the value of a text; false when it has none, or one that is the present one.
    virtual bool _TakeValue(const Convert::NumberExtractorBase& extractor, const QString& text) = 0;
    /// Why the text is impossible, for the user; empty when it is not.
    [[nodiscard]] virtual QString _Explain(const Convert::NumberExtractorBase& extractor, const QString& text,
                                           const Convert::NumberOptions& options) const = 0;
    /// Changes the value; false when that is not possible.
    virtual bool _StepBy(double steps) = 0;

    /// Makes extractor and text anew; what is being typed stays. Derived classes call it once they are made.
    void _Update();
    /// Shows the value, whatever is being typed.
    void _ShowValue();

    /// One step from a value.
    [[nodiscard]] static double _GetStep(double value);
    /// Without what calculating has left behind the twelfth digit.
    [[nodiscard]] static double _Round(double value);

    void keyPressEvent(QKeyEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    bool event(QEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    class Validator;

    [[nodiscard]] Convert::NumberOptions _GetOptions() const;
    void _Commit();
    void _Judge();
    bool _Step(double steps);

    std::unique_ptr<Convert::NumberExtractorBase> m_extractor; ///< Null until _Update.
    Validator* const m_validator;
    Signal<void()> m_valueChanged;
    QString m_shownText;   ///< Of the value; what differs from it is being typed.
    QString m_toolTip;     ///< The application's own.
    QString m_explanation; ///< Of what is impossible, in place of m_toolTip; else empty.
};

/// A field for a number.
class VEKAPPCOREWIDGETS_EXPORT NumberLineEdit : public NumberLineEditBase
{
public:
    /// Shows 0.
    explicit NumberLineEdit(QWidget* parent = nullptr);
    ~NumberLineEdit() override;

    /// The one that was taken last; what is being typed is not.
    [[nodiscard]] double GetValue() const noexcept { return m_value; }
    /// Tells nobody.
    /// @param value  put into the range.
    void SetValue(double value);
    /// All numbers unless set.
    void SetRange(double lowest, double highest);

protected:
    [[nodiscard]] std::unique_ptr<Convert::NumberExtractorBase> _MakeExtractor() const override;
    [[nodiscard]] QString _GetValueText(const Convert::NumberOptions& options) const override;
    bool _TakeValue(const Convert::NumberExtractorBase& extractor, const QString& text) override;
    [[nodiscard]] QString _Explain(const Convert::NumberExtractorBase& extractor, const QString& text,
                                   const Convert::NumberOptions& options) const override;
    bool _StepBy(double steps) override;

private:
    [[nodiscard]] bool _IsInRange(double value) const;

    double m_value = 0;
    double m_lowest = -std::numeric_limits<double>::infinity();
    double m_highest = std::numeric_limits<double>::infinity();
};
} // namespace vek
