#include "VekAppCore/Text/NumberLineEdit.h"
#include "VekAppCore/App/SafeCallable.h"
#include <QCoreApplication>
#include <QEvent>
#include <QKeyEvent>
#include <QWheelEvent>
#include <cmath>

namespace vek
{
namespace
{
constexpr double wheelStep = 120; // of a usual mouse
constexpr double page = 10;

/// A letter of the Greek alphabet is what keyboards give; symbols have the sign.
void UseMicroSign(QString& text) { text.replace(u'\u03bc', u'\u00b5'); }
} // namespace

/// Lets everything be typed, since what is impossible is explained, and fixes up what is a number.
class NumberLineEditBase::Validator : public QValidator
{
public:
    explicit Validator(NumberLineEditBase& edit) : QValidator(&edit), m_edit(edit) {}

    State validate(QString& text, int& pos) const override
    {
        UseMicroSign(text);
        QString plain = text;
        Convert::SanitizeSingleValue(plain);
        const bool isPossible = m_edit._Explain(*m_edit.m_extractor, plain, m_edit._GetOptions()).isEmpty();
        const bool isGood =
            isPossible && plain == text && m_edit.m_extractor->Validate(plain, pos) == QValidator::Acceptable;
        return isGood ? Acceptable : Intermediate;
    }

    void fixup(QString& text) const override
    {
        QString plain = text;
        Convert::SanitizeSingleValue(plain);
        const auto info = m_edit.m_extractor->ExtractNumber(plain, true);
        if (!info || !info->whole)
            return;
        m_edit.m_extractor->Fixup(plain);
        text = plain;
    }

private:
    NumberLineEditBase& m_edit;
};

NumberLineEditBase::NumberLineEditBase(QWidget* parent) : QLineEdit(parent), m_validator(new Validator(*this))
{
    connect(this, &QLineEdit::textChanged, this, App::SafeCallable([this] { _Judge(); }));
    connect(this, &QLineEdit::editingFinished, this, App::SafeCallable([this] { _Commit(); }));
}

NumberLineEditBase::~NumberLineEditBase() = default;

Connection NumberLineEditBase::OnValueChanged(std::function<void()> callback)
{
    return m_valueChanged.Connect(std::move(callback));
}

void NumberLineEditBase::_Update()
{
    m_extractor = _MakeExtractor();
    setValidator(m_validator);
    if (text() != m_shownText)
        _Judge();
    else
        _ShowValue();
}

void NumberLineEditBase::_ShowValue()
{
    m_shownText = _GetValueText(_GetOptions());
    setText(m_shownText);
    _Judge();
}

double NumberLineEditBase::_GetStep(double value)
{
    return value == 0 ? 1 : std::pow(10.0, std::floor(std::log10(std::abs(value))) - 1);
}

double NumberLineEditBase::_Round(double value)
{
    Convert::NumberOptions options;
    options.notation = Convert::ENotation::Scientific;
    options.decimals = 11;
    static_cast<void>(Convert::FromString(Convert::ToString(value, options), value));
    return value;
}

Convert::NumberOptions NumberLineEditBase::_GetOptions() const
{
    Convert::NumberOptions options;
    options.locale = m_extractor->GetLocale();
    return options;
}

void NumberLineEditBase::_Commit()
{
    if (std::exchange(m_shownText, text()) == text())
        return;
    if (_TakeValue(*m_extractor, text()))
        m_valueChanged.Emit();
}

void NumberLineEditBase::_Judge()
{
    if (!m_extractor)
        return;
    QString plain = text();
    Convert::SanitizeSingleValue(plain);
    const bool wasImpossible = IsImpossible();
    m_explanation = _Explain(*m_extractor, plain, _GetOptions());
    setToolTip(IsImpossible() ? m_explanation : m_toolTip);
    if (IsImpossible() == wasImpossible)
        return;
    QPalette colours;
    if (IsImpossible())
    {
        // Readable on a light base and on a dark one.
        const bool isDark = palette().color(QPalette::Text).lightness() > 127;
        colours.setColor(QPalette::Base, isDark ? QColor(96, 24, 24) : QColor(255, 214, 214));
    }
    setPalette(colours);
}

bool NumberLineEditBase::_Step(double steps)
{
    if (isReadOnly() || IsImpossible())
        return false;
    if (!hasAcceptableInput())
    {
        QString fixed = text();
        m_validator->fixup(fixed);
        setText(fixed);
    }
    if (hasAcceptableInput())
        _Commit();
    if (!_StepBy(steps))
        return false;
    _ShowValue();
    selectAll();
    m_valueChanged.Emit();
    return true;
}

void NumberLineEditBase::keyPressEvent(QKeyEvent* event)
{
    switch (event->key())
    {
    case Qt::Key_Up: _Step(1); return;
    case Qt::Key_Down: _Step(-1); return;
    case Qt::Key_PageUp: _Step(page); return;
    case Qt::Key_PageDown: _Step(-page); return;
    case Qt::Key_Escape:
        if (text() == m_shownText)
            break; // of the dialog, then
        _ShowValue();
        selectAll();
        return;
    default: break;
    }
    QLineEdit::keyPressEvent(event);
}

void NumberLineEditBase::wheelEvent(QWheelEvent* event)
{
    // Without the focus, a page is being scrolled over.
    const double steps = event->angleDelta().y() / wheelStep;
    if (hasFocus() && steps != 0 && _Step(steps))
        event->accept();
    else
        event->ignore();
}

bool NumberLineEditBase::event(QEvent* event)
{
    if (event->type() == QEvent::ToolTipChange)
    {
        if (!IsImpossible())
            m_toolTip = toolTip();
        else if (toolTip() != m_explanation)
        {
            m_toolTip = toolTip();
            setToolTip(m_explanation);
        }
    }
    return QLineEdit::event(event);
}

void NumberLineEditBase::changeEvent(QEvent* event)
{
    QLineEdit::changeEvent(event);
    if (m_extractor && (event->type() == QEvent::LanguageChange || event->type() == QEvent::LocaleChange))
        _Update();
}

NumberLineEdit::NumberLineEdit(QWidget* parent) : NumberLineEditBase(parent) { _Update(); }
NumberLineEdit::~NumberLineEdit() = default;

void NumberLineEdit::SetValue(double value)
{
    m_value = std::clamp(value, m_lowest, m_highest);
    _ShowValue();
}

void NumberLineEdit::SetRange(double lowest, double highest)
{
    m_lowest = lowest;
    m_highest = std::max(lowest, highest);
    SetValue(m_value);
}

std::unique_ptr<Convert::NumberExtractorBase> NumberLineEdit::_MakeExtractor() const
{
    return std::make_unique<Convert::DoubleExtractor>();
}

QString NumberLineEdit::_GetValueText(const Convert::NumberOptions& options) const
{
    return Convert::ToString(m_value, options);
}

bool NumberLineEdit::_TakeValue(const Convert::NumberExtractorBase& extractor, const QString& text)
{
    const auto value = static_cast<const Convert::DoubleExtractor&>(extractor).FromString(text);
    return value && std::exchange(m_value, *value) != *value;
}

QString NumberLineEdit::_Explain(const Convert::NumberExtractorBase& extractor, const QString& text,
                                 const Convert::NumberOptions& options) const
{
    QString judged = text;
    int pos = 0;
    if (extractor.Validate(judged, pos) == QValidator::Invalid)
        return QCoreApplication::translate("NumberLineEdit", "\"%1\" is not a number.").arg(text);
    const auto info = extractor.ExtractNumber(text, true);
    if (!info || !info->whole || _IsInRange(info->value))
        return {};
    return QCoreApplication::translate("NumberLineEdit", "A number from %1 to %2 is expected.")
        .arg(Convert::ToString(m_lowest, options), Convert::ToString(m_highest, options));
}

bool NumberLineEdit::_StepBy(double steps)
{
    const double next = std::clamp(_Round(m_value + steps * _GetStep(m_value)), m_lowest, m_highest);
    return std::isfinite(next) && std::exchange(m_value, next) != next;
}

bool NumberLineEdit::_IsInRange(double value) const { return value >= m_lowest && value <= m_highest; }
} // namespace vek
