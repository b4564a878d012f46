#include "VekAppCore/Text/NumberExtractor.h"
#include <QHash>
#include <QMutex>
#include <QRegularExpression>
#include <QVarLengthArray>
#include <algorithm>
#include <charconv>
#include <cmath>

namespace vek::Convert
{
namespace
{
using namespace Qt::StringLiterals;

// The fragments of the grammar; %thousand and %decimal are filled in for a locale.
constexpr QStringView sign = u"(?:[+-])?";
constexpr QStringView integerPart = u"\\d{1,3}(?:%thousand?\\d{3})*(?=[^\\d]|$)";
constexpr QStringView decimalPart = u"%decimal(?<dec%1>\\d*)";
constexpr QStringView exponent = u"(?:[eE](?<exp>[+-]?\\d*))?";
constexpr QStringView coordinatePrefix =
    u"(?:(?:\\b(?<prefix>[dD]?(?:[xX]+|[yY]+|[zZ]+)) *[=:]? *)|^|(?<!\\d|\\w))";

/// The groups of the patterns, in the order in which they stand there.
enum EGroup
{
    Value = 1,
    FirstDecimals,
    SecondDecimals,
    Exponent,
    UnitSymbol,
};

constexpr int mostDecimals = 15;

/// "(?<val>...)", and for a real number the fragments after the sign.
const QString& GetIntegerPattern()
{
    static const QString pattern = u"(?<val>%1%2)"_s.arg(sign, integerPart);
    return pattern;
}

const QString& GetRealPattern()
{
    static const QString pattern = u"(?<val>%1(?:%2%3|%2|%4)%5)"_s.arg(
        sign.toString(), integerPart.toString(), decimalPart.toString().arg(1), decimalPart.toString().arg(2),
        exponent.toString());
    return pattern;
}

template <Unit::AnyUnit U>
QString MakeQuantityPattern()
{
    QStringList symbols;
    for (auto unit = static_cast<int>(Unit::UnitTraits<U>::first); unit < static_cast<int>(U::END); ++unit)
        symbols += ToString(static_cast<U>(unit));
    // A longer symbol wins over one that it begins with.
    std::ranges::stable_sort(symbols, std::greater(), &QString::size);
    return u"%1(?: ?%2)?"_s.arg(GetRealPattern(), u"(?<unit>%1)"_s.arg(symbols.join(u'|')));
}

QString Localize(QString pattern, const QLocale& locale, const QLocale* other, bool hasThousands)
{
    const auto getSeparator = [other](const QString& own, const QString& others) {
        return other && own != others ? u"[%1%2]"_s.arg(own, others) : QRegularExpression::escape(own);
    };
    if (hasThousands)
        pattern.replace(u"%thousand"_s,
                        getSeparator(locale.groupSeparator(), other ? other->groupSeparator() : QString()));
    else
        pattern.remove(u"%thousand?"_s);
    return pattern.replace(u"%decimal"_s,
                           getSeparator(locale.decimalPoint(), other ? other->decimalPoint() : QString()));
}

QRegularExpression Compile(const QString& pattern)
{
    QRegularExpression expression(pattern);
    expression.optimize();
    return expression;
}

/// Reads as QLocale::toDouble does; by itself where that is sure to read the same.
class NumberReader
{
public:
    explicit NumberReader(const QLocale& locale) : m_locale(locale)
    {
        const QString group = locale.groupSeparator();
        const QString decimal = locale.decimalPoint();
        const auto reads = [&locale](const QString& text, double value) {
            bool isRead = false;
            return locale.toDouble(text, &isRead) == value && isRead;
        };
        m_readsExponents = reads(u"2e-3"_s, 2e-3) && reads(u"2E+3"_s, 2e3);
        m_readsGroups = group.size() == 1 && reads(u"1%1234"_s.arg(group), 1234) &&
                        reads(u"12%1345%1678"_s.arg(group), 12345678);
        m_isUsual = group.size() <= 1 && decimal.size() == 1 && group != decimal &&
                    reads(u"-12%15"_s.arg(decimal), -12.5);
        m_group = group.isEmpty() ? QChar() : group[0];
        m_decimal = decimal.isEmpty() ? QChar() : decimal[0];
    }

    [[nodiscard]] std::optional<double> Read(QStringView text) const
    {
        if (const auto value = _ReadUsual(text))
            return value;
        bool isRead = false;
        const double value = m_locale.toDouble(text, &isRead);
        return isRead ? std::optional(value) : std::nullopt;
    }

private:
    /// Empty for what QLocale is to decide.
    [[nodiscard]] std::optional<double> _ReadUsual(QStringView text) const
    {
        if (!m_isUsual)
            return std::nullopt;
        QVarLengthArray<char, 64> ascii;
        qsizetype digits = 0; // since the begin or the last separator
        bool isGrouped = false;
        bool isInteger = true;
        for (const QChar unit : text.sliced(text.startsWith(u'+') ? 1 : 0))
        {
            if (unit >= u'0' && unit <= u'9')
                ++digits;
            else if (isInteger && unit == m_group)
            {
                if (!m_readsGroups || digits == 0 || digits > 3 || (isGrouped && digits != 3))
                    return std::nullopt;
                isGrouped = true;
                digits = 0;
                continue;
            }
            else if (isInteger)
            {
                const bool isEnd = unit == m_decimal || unit == u'e' || unit == u'E';
                if (isEnd && ((isGrouped && digits != 3) || (unit != m_decimal && !m_readsExponents)))
                    return std::nullopt;
                isInteger = !isEnd;
            }
            else if ((unit == u'e' || unit == u'E') && !m_readsExponents)
                return std::nullopt;
            ascii.push_back(unit == m_decimal ? '.' : unit.toLatin1());
        }
        if (isGrouped && isInteger && digits != 3)
            return std::nullopt;
        double value = 0;
        const auto [end, error] = std::from_chars(ascii.begin(), ascii.end(), value);
        return error == std::errc() && end == ascii.end() ? std::optional(value) : std::nullopt;
    }

    QLocale m_locale;
    QChar m_group;
    QChar m_decimal;
    bool m_isUsual = false;
    bool m_readsGroups = false;
    bool m_readsExponents = false;
};
} // namespace

/// A pattern, compiled for one locale.
struct Details::NumberPatterns
{
    /// @param other  another locale whose separators are read as well; null for none.
    NumberPatterns(const QString& pattern, const QLocale& numberLocale, const QLocale* other)
        : locale(numberLocale),
          reader(numberLocale),
          withThousands(Compile(Localize(pattern, numberLocale, other, true))),
          withoutThousands(Compile(Localize(pattern, numberLocale, other, false)))
    {}

    [[nodiscard]] const QRegularExpression& Get(bool useThousands) const
    {
        return useThousands ? withThousands : withoutThousands;
    }

    const QLocale locale;
    const NumberReader reader;
    const QRegularExpression withThousands;
    const QRegularExpression withoutThousands;
};

namespace
{
using Details::NumberPatterns;

struct PatternKey
{
    const QString* pattern;
    QLocale locale;
    QString separators; ///< What the system's locale has for them may change.

    bool operator==(const PatternKey&) const = default;
    friend std::size_t qHash(const PatternKey& key, std::size_t seed) noexcept
    {
        return qHashMulti(seed, key.pattern, key.locale, key.separators);
    }
};

/// Compiled once for each pattern, which lives for ever, and locale. Thread-safe.
std::shared_ptr<const NumberPatterns> GetPatterns(const QString& pattern, const QLocale& locale,
                                                  const QLocale* other = nullptr)
{
    static QMutex mutex;
    static QHash<PatternKey, std::shared_ptr<const NumberPatterns>> cache;
    const PatternKey key{&pattern, locale, locale.groupSeparator() + locale.decimalPoint()};
    const QMutexLocker lock(&mutex);
    auto& patterns = cache[key];
    if (!patterns)
        patterns = std::make_shared<NumberPatterns>(pattern, locale, other);
    return patterns;
}

std::optional<ExtractedNumberInfo> Extract(const QString& text, const NumberPatterns& patterns,
                                           bool useThousands, bool flag)
{
    const QRegularExpressionMatch match = patterns.Get(useThousands).match(text);
    if (!match.hasMatch())
        return std::nullopt;
    const auto value = patterns.reader.Read(match.capturedView(Value));
    if (!value)
        return std::nullopt;
    ExtractedNumberInfo info;
    info.value = *value;
    info.length = static_cast<int>(match.capturedLength());
    info.whole = match.capturedLength() == text.size();
    info.exponent = match.capturedView(Exponent).toInt();
    if (!flag || info.whole)
    {
        const auto written = match.capturedLength(FirstDecimals) + match.capturedLength(SecondDecimals);
        info.decimals = static_cast<int>(
            std::clamp<qint64>(qint64{written} - info.exponent, 0, std::numeric_limits<int>::max()));
    }
    if (match.lastCapturedIndex() >= UnitSymbol)
        info.text = match.captured(UnitSymbol);
    return info;
}

template <typename Integer>
std::optional<Integer> ToInteger(double value)
{
    // The greatest integer may have no double: the bound above it has.
    constexpr double bound = -static_cast<double>(std::numeric_limits<Integer>::min());
    const double integer = std::trunc(value);
    if (!(integer >= -bound && integer < bound))
        return std::nullopt;
    return static_cast<Integer>(integer);
}

template <typename Integer>
std::optional<Integer> ToInteger(const std::optional<ExtractedNumberInfo>& info)
{
    return info ? ToInteger<Integer>(info->value) : std::nullopt;
}

bool IsBlankGroupSeparator() { return StringUtility::GetThousandSeparator(true).trimmed().isEmpty(); }

const QRegularExpression& GetBlanksBetweenDigits()
{
    static const QRegularExpression blanks(u"(?<=\\d)[ \u00a0\u202f](?=\\d)"_s);
    return blanks;
}
} // namespace

NumberExtractorBase::NumberExtractorBase(EKind kind)
    : m_locale(StringUtility::GetQSystemLocale()), m_listSeparator(StringUtility::SemiColon())
{
    const QString& pattern = [kind]() -> const QString& {
        switch (kind)
        {
        case EKind::Integer: return IntExtractor::GetUnlocalizedRegexStr();
        case EKind::Real: return DoubleExtractor::GetUnlocalizedRegexStr();
        case EKind::Length: return LengthExtractor::GetUnlocalizedRegexStr();
        case EKind::Area: return AreaExtractor::GetUnlocalizedRegexStr();
        case EKind::Volume: return VolumeExtractor::GetUnlocalizedRegexStr();
        case EKind::Angle: return AngleExtractor::GetUnlocalizedRegexStr();
        default: return PercentExtractor::GetUnlocalizedRegexStr();
        }
    }();
    m_system = GetPatterns(pattern, m_locale);
    m_c = GetPatterns(pattern, QLocale::c());
}

NumberExtractorBase::NumberExtractorBase(const NumberExtractorBase&) = default;
NumberExtractorBase& NumberExtractorBase::operator=(const NumberExtractorBase&) = default;
NumberExtractorBase::~NumberExtractorBase() = default;

std::optional<ExtractedNumberInfo> NumberExtractorBase::ExtractNumber(const QString& text, bool flag) const
{
    auto system = Extract(text, *m_system, m_useThousands, flag);
    if (system && system->whole)
        return system;
    const bool isSame = m_system->Get(m_useThousands) == m_c->Get(m_useThousands);
    if (isSame && system)
        return system; // the other would match the same
    auto c = Extract(text, *m_c, m_useThousands, flag);
    if (c && (c->whole || !system || c->length > system->length))
        return c;
    return system;
}

QValidator::State NumberExtractorBase::_Validate(const QString& text, const Formatter& format,
                                                 const NumberPatterns& patterns) const
{
    if (text.isEmpty())
        return QValidator::Intermediate;
    const QRegularExpression& expression = patterns.Get(m_useThousands);
    const QRegularExpressionMatch match = expression.match(text);
    if (match.hasMatch() && match.capturedLength() == text.size())
    {
        NumberOptions options;
        options.locale = patterns.locale;
        options.notation = ENotation::Fixed;
        options.decimals = std::clamp(GetNumberOfDecimals(text, options), 0, mostDecimals);
        options.hasGroupSeparators = text.contains(patterns.locale.groupSeparator());
        return format(text, options) == text ? QValidator::Acceptable : QValidator::Intermediate;
    }
    QRegularExpressionMatchIterator matches =
        expression.globalMatch(text, 0, QRegularExpression::PartialPreferFirstMatch);
    if (!matches.hasNext())
        return QValidator::Invalid;
    return matches.next().capturedLength() == text.size() ? QValidator::Intermediate : QValidator::Invalid;
}

QValidator::State NumberExtractorBase::_Validate(const QString& text, const Formatter& format) const
{
    const QValidator::State state = _Validate(text, format, *m_system);
    return state == QValidator::Acceptable ? state : std::max(state, _Validate(text, format, *m_c));
}

QValidator::State NumberExtractorBase::_ValidateList(const QString& text, const Formatter& format) const
{
    const auto validate = [&](const NumberPatterns& patterns) {
        QValidator::State worst = QValidator::Acceptable;
        _ForEachItem(
            text, [&](const QString& item) { worst = std::min(worst, _Validate(item, format, patterns)); });
        return worst;
    };
    const QValidator::State state = validate(*m_system);
    return state == QValidator::Acceptable ? state : std::max(state, validate(*m_c));
}

void NumberExtractorBase::_FixupList(QString& text) const
{
    QStringList items;
    _ForEachItem(text, [&](const QString& item) {
        items += item;
        Fixup(items.back());
    });
    text = items.join(m_listSeparator);
}

void NumberExtractorBase::_ForEachItem(const QString& text,
                                       const std::function<void(const QString&)>& read) const
{
    for (const QStringView item : QStringView(text).split(m_listSeparator.trimmed()))
        read(item.trimmed().toString());
}

NumberOptions NumberExtractorBase::_GetFixupOptions(const QString& text) const
{
    const auto info = ExtractNumber(text, false);
    NumberOptions options;
    options.locale = m_locale;
    options.notation = ENotation::Fixed;
    options.decimals = info ? std::min(info->decimals, mostDecimals) : 0;
    options.hasGroupSeparators = m_useThousands && text.contains(m_locale.groupSeparator());
    return options;
}

IntExtractor::IntExtractor() : NumberExtractorBase(EKind::Integer) {}

std::optional<int> IntExtractor::FromString(const QString& text) const
{
    return ToInteger<int>(ExtractNumber(text, true));
}

std::optional<qint64> IntExtractor::FromString64(const QString& text) const
{
    return ToInteger<qint64>(ExtractNumber(text, true));
}

std::vector<int> IntExtractor::ListFromString(const QString& text) const
{
    std::vector<int> values;
    _ForEachItem(text, [&](const QString& item) {
        if (const auto value = FromString(item))
            values.push_back(*value);
    });
    return values;
}

std::vector<qint64> IntExtractor::ListFromString64(const QString& text) const
{
    std::vector<qint64> values;
    _ForEachItem(text, [&](const QString& item) {
        if (const auto value = FromString64(item))
            values.push_back(*value);
    });
    return values;
}

namespace
{
auto MakeFormatter(const IntExtractor& extractor)
{
    return [&extractor](const QString& text, const NumberOptions& options) {
        const auto value = extractor.FromString64(text);
        return value ? ToString(*value, options) : QString();
    };
}

auto MakeFormatter(const auto& extractor)
{
    return [&extractor](const QString& text, const NumberOptions& options) {
        const auto value = extractor.FromString(text);
        return value ? ToString(*value, options) : QString();
    };
}
} // namespace

QValidator::State IntExtractor::Validate(QString& text, int&) const
{
    return _Validate(text, MakeFormatter(*this));
}

void IntExtractor::Fixup(QString& text) const
{
    text = text.trimmed();
    NumberOptions options;
    options.locale = GetLocale();
    options.hasGroupSeparators = UsesThousands();
    text = ToString(FromString64(text).value_or(0), options);
}

QValidator::State IntExtractor::ValidateList(QString& text, int&) const
{
    return _ValidateList(text, MakeFormatter(*this));
}

void IntExtractor::FixupList(QString& text) const { _FixupList(text); }

const QString& IntExtractor::GetUnlocalizedRegexStr() { return GetIntegerPattern(); }

DoubleExtractor::DoubleExtractor() : NumberExtractorBase(EKind::Real) {}

std::optional<double> DoubleExtractor::FromString(const QString& text) const
{
    const auto info = ExtractNumber(text, true);
    return info ? std::optional(info->value) : std::nullopt;
}

std::vector<double> DoubleExtractor::ListFromString(const QString& text) const
{
    std::vector<double> values;
    _ForEachItem(text, [&](const QString& item) {
        if (const auto value = FromString(item))
            values.push_back(*value);
    });
    return values;
}

QValidator::State DoubleExtractor::Validate(QString& text, int&) const
{
    return _Validate(text, MakeFormatter(*this));
}

void DoubleExtractor::Fixup(QString& text) const
{
    text = text.trimmed();
    text = ToString(FromString(text).value_or(0.0), _GetFixupOptions(text));
}

QValidator::State DoubleExtractor::ValidateList(QString& text, int&) const
{
    return _ValidateList(text, MakeFormatter(*this));
}

void DoubleExtractor::FixupList(QString& text) const { _FixupList(text); }

const QString& DoubleExtractor::GetUnlocalizedRegexStr() { return GetRealPattern(); }

namespace
{
template <typename U>
constexpr auto kindIndex = std::same_as<U, Unit::Length>   ? 2
                           : std::same_as<U, Unit::Area>   ? 3
                           : std::same_as<U, Unit::Volume> ? 4
                           : std::same_as<U, Unit::Angle>  ? 5
                                                           : 6;
} // namespace

template <Unit::AnyQuantity U>
ValueWithUnitExtractor<U>::ValueWithUnitExtractor() : NumberExtractorBase(static_cast<EKind>(kindIndex<U>))
{}

template <Unit::AnyQuantity U>
ValueWithUnitExtractor<U>::ValueWithUnitExtractor(UnitType projectUnit) : ValueWithUnitExtractor()
{
    m_projectUnit = projectUnit;
}

template <Unit::AnyQuantity U>
std::optional<U> ValueWithUnitExtractor<U>::FromString(const QString& text) const
{
    const auto info = ExtractNumber(text, true);
    if (!info)
        return std::nullopt;
    UnitType unit = GetProjectUnit();
    if (!info->text.isEmpty() && !Convert::FromString(info->text, unit))
        return std::nullopt;
    return U(info->value, unit);
}

template <Unit::AnyQuantity U>
std::vector<U> ValueWithUnitExtractor<U>::ListFromString(const QString& text) const
{
    std::vector<U> values;
    _ForEachItem(text, [&](const QString& item) {
        if (const auto value = FromString(item))
            values.push_back(*value);
    });
    return values;
}

template <Unit::AnyQuantity U>
typename U::UnitType ValueWithUnitExtractor<U>::GetProjectUnit() const
{
    return m_projectUnit ? *m_projectUnit : Unit::UnitTraits<UnitType>::GetDefault();
}

template <Unit::AnyQuantity U>
bool ValueWithUnitExtractor<U>::IsTypedValue(const QString& text) const
{
    const auto info = ExtractNumber(text, true);
    UnitType unit{};
    return info && info->whole && Convert::FromString(info->text, unit);
}

template <Unit::AnyQuantity U>
QValidator::State ValueWithUnitExtractor<U>::Validate(QString& text, int&) const
{
    return _Validate(text, MakeFormatter(*this));
}

template <Unit::AnyQuantity U>
void ValueWithUnitExtractor<U>::Fixup(QString& text) const
{
    text = text.trimmed();
    text = ToString(FromString(text).value_or(U(0.0, GetProjectUnit())), _GetFixupOptions(text));
}

template <Unit::AnyQuantity U>
QValidator::State ValueWithUnitExtractor<U>::ValidateList(QString& text, int&) const
{
    return _ValidateList(text, MakeFormatter(*this));
}

template <Unit::AnyQuantity U>
void ValueWithUnitExtractor<U>::FixupList(QString& text) const
{
    _FixupList(text);
}

template <Unit::AnyQuantity U>
const QString& ValueWithUnitExtractor<U>::GetUnlocalizedRegexStr()
{
    static const QString pattern = MakeQuantityPattern<UnitType>();
    return pattern;
}

template class ValueWithUnitExtractor<Unit::Length>;
template class ValueWithUnitExtractor<Unit::Area>;
template class ValueWithUnitExtractor<Unit::Volume>;
template class ValueWithUnitExtractor<Unit::Angle>;
template class ValueWithUnitExtractor<Unit::Percent>;

std::vector<DoubleWithPrefix> ExtractDoubleWithPrefixList(const QString& text)
{
    static const QString pattern = u"%1%2\\b"_s.arg(coordinatePrefix, GetRealPattern());
    const QLocale c = QLocale::c();
    const auto patterns = GetPatterns(pattern, StringUtility::GetQSystemLocale(), &c);
    const NumberReader cReader(c);
    std::vector<DoubleWithPrefix> numbers;
    for (const QRegularExpressionMatch& match : patterns->withThousands.globalMatch(text))
    {
        const QStringView written = match.capturedView(u"val");
        auto value = patterns->reader.Read(written);
        if (!value)
            value = cReader.Read(written);
        if (value)
            numbers.push_back({match.captured(u"prefix"_s).toLower(), *value});
    }
    return numbers;
}

void SanitizeSingleValue(QString& text)
{
    text = text.trimmed();
    if (IsBlankGroupSeparator())
        text.remove(GetBlanksBetweenDigits());
}

void SanitizeListOfValues(QString& text)
{
    static const QRegularExpression separators(u"[;\\n\\t]"_s);
    static const QRegularExpression tabs(u"[\\t\\n]"_s);
    text = text.trimmed();
    if (IsBlankGroupSeparator())
        text.replace(GetBlanksBetweenDigits(), text.contains(separators) ? QString() : u";"_s);
    text.replace(tabs, u";"_s);
}
} // namespace vek::Convert
