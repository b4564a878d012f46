#include "Support/Pair.h"
#include "VekAppCore/Text/NumberExtractor.h"
#include <QDoubleValidator>
#include <QHash>
#include <QRegularExpression>

namespace vek::Convert
{
namespace
{
using Benchmark::Check;

const QLocale& GetLocale()
{
    static const QLocale locale("en_US");
    return locale;
}

/// What a user would write instead: the same pattern, compiled once.
QRegularExpression Compile(QString pattern)
{
    QRegularExpression expression(pattern.replace("%thousand", ",").replace("%decimal", "\\."));
    expression.optimize();
    return expression;
}

/// A round: a thousand texts of three kinds, each with one number.
template <typename ToNumber>
void ReadNumbers(benchmark::State& state, ToNumber toNumber)
{
    const QString texts[] = {"1234.5", "1,234.5", "abc 12.5 def"};
    double sum = 0;
    for ([[maybe_unused]] auto _ : state)
    {
        sum = 0;
        for (int i = 0; i < 999; ++i)
            sum += toNumber(texts[i % 3]);
    }
    Check(state, sum == 333 * (1234.5 + 1234.5 + 12.5), "A number is wrong");
}
void Double_Vek(benchmark::State& state)
{
    const ScopeBase locale = StringUtility::ChangeQSystemLocale(GetLocale());
    const DoubleExtractor extractor;
    ReadNumbers(state, [&](const QString& text) { return extractor.FromString(text).value_or(0); });
}
void Double_Qt(benchmark::State& state)
{
    const QRegularExpression expression = Compile(DoubleExtractor::GetUnlocalizedRegexStr());
    ReadNumbers(state, [&](const QString& text) {
        return GetLocale().toDouble(expression.match(text).captured("val"));
    });
}

/// The quantities of a user who has a table of units.
class QtQuantities
{
public:
    QtQuantities()
    {
        for (int unit = 2; unit < 14; ++unit)
            m_units[ToString(Unit::LengthUnit(unit))] = Unit::LengthUnit(unit);
    }
    [[nodiscard]] double Read(const QString& text) const
    {
        const QRegularExpressionMatch match = m_expression.match(text);
        const double value = GetLocale().toDouble(match.captured("val"));
        return Unit::Length(value, m_units.value(match.captured("unit"))).GetValueIn(Unit::LengthUnit::Meter);
    }

private:
    const QRegularExpression m_expression = Compile(LengthExtractor::GetUnlocalizedRegexStr());
    QHash<QString, Unit::LengthUnit> m_units;
};

/// A round: one text a thousand times.
template <typename ToMeters>
void ReadQuantity(benchmark::State& state, ToMeters toMeters)
{
    const QString text = "12.5 mm";
    double sum = 0;
    for ([[maybe_unused]] auto _ : state)
    {
        sum = 0;
        for (int i = 0; i < 1000; ++i)
            sum += toMeters(text);
    }
    Check(state, std::abs(sum - 12.5) < 1e-9, "A quantity is wrong");
}
void Quantity_Vek(benchmark::State& state)
{
    const ScopeBase locale = StringUtility::ChangeQSystemLocale(GetLocale());
    const LengthExtractor extractor;
    ReadQuantity(state, [&](const QString& text) {
        return extractor.FromString(text)->GetValueIn(Unit::LengthUnit::Meter);
    });
}
void Quantity_Qt(benchmark::State& state)
{
    const QtQuantities quantities;
    ReadQuantity(state, [&](const QString& text) { return quantities.Read(text); });
}

/// A round: a list of 10,000 quantities.
template <typename ToSum>
void ReadList(benchmark::State& state, ToSum toSum)
{
    QString text;
    double expected = 0;
    for (int i = 0; i < 10'000; ++i)
    {
        const Unit::Length length(i / 8.0, Unit::LengthUnit(2 + i % 12));
        text += (i > 0 ? "; " : "") + ToString(length);
        expected += length.GetValueIn(Unit::LengthUnit::Meter);
    }
    double sum = 0;
    for ([[maybe_unused]] auto _ : state)
        sum = toSum(text);
    Check(state, std::abs(sum - expected) < 1e-6 * expected, "The list is wrong");
}
void List_Vek(benchmark::State& state)
{
    const ScopeBase locale = StringUtility::ChangeQSystemLocale(GetLocale());
    const LengthExtractor extractor;
    ReadList(state, [&](const QString& text) {
        double sum = 0;
        for (const Unit::Length& length : extractor.ListFromString(text))
            sum += length.GetValueIn(Unit::LengthUnit::Meter);
        return sum;
    });
}
void List_Qt(benchmark::State& state)
{
    const QtQuantities quantities;
    ReadList(state, [&](const QString& text) {
        double sum = 0;
        for (const QString& item : text.split("; "))
            sum += quantities.Read(item);
        return sum;
    });
}

void Construct_Vek(benchmark::State& state)
{
    const ScopeBase locale = StringUtility::ChangeQSystemLocale(GetLocale());
    bool isRead = false;
    for ([[maybe_unused]] auto _ : state)
        isRead = LengthExtractor().UsesThousands();
    Check(state, isRead, "The extractor is wrong");
}
void Construct_Qt(benchmark::State& state)
{
    // For the user's and the C locale, with group separators and without.
    bool isValid = false;
    for ([[maybe_unused]] auto _ : state)
        for (int i = 0; i < 4; ++i)
            isValid = Compile(LengthExtractor::GetUnlocalizedRegexStr()).isValid();
    Check(state, isValid, "The pattern is wrong");
}

/// A round: twelve characters are typed.
template <typename Validator>
void Type(benchmark::State& state, Validator validate)
{
    const QString text = "-1,234.56789";
    QValidator::State last = QValidator::Invalid;
    for ([[maybe_unused]] auto _ : state)
        for (int size = 1; size <= text.size(); ++size)
        {
            QString typed = text.first(size);
            int pos = size;
            last = validate(typed, pos);
        }
    Check(state, last == QValidator::Acceptable, "The text is not accepted");
}
void Validate_Vek(benchmark::State& state)
{
    const ScopeBase locale = StringUtility::ChangeQSystemLocale(GetLocale());
    const DoubleExtractor extractor;
    Type(state, [&](QString& text, int& pos) { return extractor.Validate(text, pos); });
}
void Validate_Qt(benchmark::State& state)
{
    QDoubleValidator validator;
    validator.setLocale(GetLocale());
    Type(state, [&](QString& text, int& pos) { return validator.validate(text, pos); });
}

const Benchmark::Pairs pairs{
    {"Number/Double", "the pattern, toDouble", 2.0, &Double_Vek, &Double_Qt},
    {"Number/Quantity", "the pattern, toDouble", 2.0, &Quantity_Vek, &Quantity_Qt},
    {"Number/List", "split, the pattern", 2.0, &List_Vek, &List_Qt},
    {"Number/Construct", "compiling the patterns", 100.0, &Construct_Vek, &Construct_Qt},
    {"Number/Validate", "QDoubleValidator", 0.5, &Validate_Vek, &Validate_Qt}};
} // namespace
} // namespace vek::Convert
