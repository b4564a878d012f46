#include "VekAppCore/Text/NumberExtractor.h"
#include "Text/Quantities.h"
#include <QHash>
#include <QMutex>
#include <QRegularExpression>
#include <QVarLengthArray>
#include <algorithm>
#include <charconv>
#include <cmath>

namespace vek::Convert
{
/// What an extractor reads, before it is localised.
struct Details::NumberGrammar
{
    QString pattern;
    bool hasDecimals = true;
    QStringList symbols; ///< Of units, longer ones first: they win over those that they begin with.
};

namespace
{
using namespace Qt::StringLiterals;
using Grammar = Details::NumberGrammar;

// The fragments of the grammar; %thousand and %decimal are filled in for a locale.
constexpr QStringView sign = u"(?:[+-])?";
constexpr QStringView integerPart = u"\\d{1,3}(?:%thousand?\\d{3})*(?=[^\\d]|$)";
constexpr QStringView decimalPart = u"%decimal(?<dec%1>\\d*)";
constexpr QStringView exponent = u"(?:[eE](?<exp>[+-]?\\d*))?";
// The blanks are not given back: no number begins with one, and a run of them would be tried over and over.
constexpr QStringView coordinatePrefix =
    u"(?:(?:\\b(?<prefix>[dD]?(?:[xX]+|[yY]+|[zZ]+)) *+[=:]? *+)|^|(?<!\\d|\\w))";

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

const Grammar& GetIntegerGrammar()
{
    static const Grammar grammar{GetIntegerPattern(), false, {}};
    return grammar;
}

const Grammar& GetRealGrammar()
{
    static const Grammar grammar{GetRealPattern(), true, {}};
    return grammar;
}

template <Unit::AnyUnit U>
const Grammar& GetQuantityGrammar()
{
    static const Grammar grammar = [] {
        QStringList symbols;
        for (const U unit : Unit::GetUnits<U>())
            symbols += ToString(unit);
        std::ranges::stable_sort(symbols, std::greater(), &QString::size);
        const QString unitPattern = u"(?<unit>%1)"_s.arg(symbols.join(u'|'));
        return Grammar{u"%1(?: ?%2)?"_s.arg(GetRealPattern(), unitPattern), true, symbols};
    }();
    return grammar;
}

QString Localize(QString pattern, const QLocale& locale, const QLocale* other, bool hasThousands)
{
    const auto getSeparator = [other](const QString& own, const QString& others) {
        return other && own != others ? u"[%1%2]"_s.arg(own, others) : QRegularExpression::escape(own);
    };
    if (hasThousands && !locale.groupSeparator().isEmpty())
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
        m_readsGroups = group.size() == 1 && reads(u'1' + group + u"234"_s, 1234) &&
                        reads(u"12"_s + group + u"345"_s + group + u"678"_s, 12345678);
        m_isUsual = group.size() <= 1 && decimal.size() == 1 && group != decimal &&
                    reads(u"-12"_s + decimal + u'5', -12.5);
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
            else
            {
                const bool isExponent = unit == u'e' || unit == u'E';
                if (isExponent && (isGrouped || !m_readsExponents)) // they do not go together everywhere
                    return std::nullopt;
                if (isInteger && isGrouped && digits != 3)
                    return std::nullopt;
                if (isExponent || unit == m_decimal)
                    isInteger = false;
            }
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
/// A number in a text, as the pattern matches it.
struct FoundNumber
{
    QStringView value;
    QStringView exponent;
    QStringView unit;
    qsizetype decimals = 0; ///< As many as are written.
    qsizetype length = 0;   ///< With the unit.
};

bool IsDigit(QChar c) { return c >= u'0' && c <= u'9'; }
} // namespace

/// A grammar for one locale.
struct Details::NumberPatterns
{
    /// @param other  another locale whose separators are read as well; null for none.
    NumberPatterns(const Grammar& numberGrammar, const QLocale& numberLocale, const QLocale* other)
        : locale(numberLocale),
          reader(numberLocale),
          withThousands(Compile(Localize(numberGrammar.pattern, numberLocale, other, true))),
          withoutThousands(Compile(Localize(numberGrammar.pattern, numberLocale, other, false))),
          grammar(numberGrammar),
          m_group(numberLocale.groupSeparator()),
          m_decimal(numberLocale.decimalPoint())
    {}

    /// What the pattern matches first. By ourselves: a QRegularExpressionMatch costs more than all the rest
    /// of reading a number. The separators of all locales are one character each, and differ; there, a number
    /// begins at the first digit, decimal separator, or sign before one of them, and nothing is to be tried
    /// twice.
    [[nodiscard]] std::optional<FoundNumber> Find(const QString& written, bool useThousands) const
    {
        if (m_group.size() != 1 || m_decimal.size() != 1 || m_group == m_decimal)
            return _FindByPattern(written, useThousands);
        const QStringView text = written;
        const QChar decimal = grammar.hasDecimals ? m_decimal[0] : u'0';
        const auto isSign = [](QChar c) { return c == u'+' || c == u'-'; };
        qsizetype begin = 0;
        for (;; ++begin)
        {
            if (begin >= text.size())
                return std::nullopt;
            const qsizetype first = begin + (isSign(text[begin]) ? 1 : 0);
            if (first < text.size() && (IsDigit(text[first]) || text[first] == decimal))
                break;
        }
        FoundNumber found;
        qsizetype at = begin + (isSign(text[begin]) ? 1 : 0);
        const auto skipDigits = [text](qsizetype from) {
            while (from < text.size() && IsDigit(text[from]))
                ++from;
            return from;
        };
        const auto isAt = [text, &at](QChar c) { return at < text.size() && text[at] == c; };
        at = skipDigits(at);
        while (useThousands && isAt(m_group[0]))
        {
            const qsizetype end = skipDigits(at + 1);
            if (end == at + 1 || (end - at - 1) % 3 != 0)
                break;
            at = end;
        }
        if (grammar.hasDecimals)
        {
            if (isAt(decimal))
            {
                const qsizetype end = skipDigits(at + 1);
                found.decimals = end - at - 1;
                at = end;
            }
            if (isAt(u'e') || isAt(u'E'))
            {
                const qsizetype exponentBegin = ++at;
                if (at < text.size() && isSign(text[at]))
                    ++at;
                at = skipDigits(at);
                found.exponent = text.sliced(exponentBegin, at - exponentBegin);
            }
        }
        found.value = text.sliced(begin, at - begin);
        const QStringView rest = text.sliced(at).sliced(isAt(u' ') ? 1 : 0);
        for (const QString& symbol : grammar.symbols)
            if (rest.startsWith(symbol))
            {
                found.unit = rest.first(symbol.size());
                at = text.size() - rest.size() + symbol.size();
                break;
            }
        found.length = at - begin;
        return found;
    }

    [[nodiscard]] bool HasGroups(QStringView number) const
    {
        return !m_group.isEmpty() && number.contains(m_group);
    }

    [[nodiscard]] QString WithoutGroups(QString text) const
    {
        return m_group.isEmpty() ? text : text.remove(m_group);
    }

    [[nodiscard]] const QRegularExpression& GetExpression(bool useThousands) const
    {
        return useThousands ? withThousands : withoutThousands;
    }

    const QLocale locale;
    const NumberReader reader;
    const QRegularExpression withThousands;
    const QRegularExpression withoutThousands;
    const Grammar& grammar;

private:
    [[nodiscard]] std::optional<FoundNumber> _FindByPattern(const QString& text, bool useThousands) const
    {
        const QRegularExpressionMatch match = GetExpression(useThousands).match(text);
        if (!match.hasMatch())
            return std::nullopt;
        return FoundNumber{
            match.capturedView(u"val"), match.capturedView(u"exp"), match.capturedView(u"unit"),
            match.capturedLength(u"dec1") + match.capturedLength(u"dec2"), match.capturedLength()};
    }

    const QString m_group;
    const QString m_decimal;
};

namespace
{
using Details::NumberPatterns;

struct PatternKey
{
    const Grammar* grammar; // is read with another locale's separators always or never
    QLocale locale;
    QString separators; // what the system's locale has for them may change

    bool operator==(const PatternKey&) const = default;
    friend std::size_t qHash(const PatternKey& key, std::size_t seed) noexcept
    {
        return qHashMulti(seed, key.grammar, key.locale, key.separators);
    }
};

/// Made once for each grammar, which lives for ever, and locale. Thread-safe.
std::shared_ptr<const NumberPatterns> GetPatterns(const Grammar& grammar, const QLocale& locale,
                                                  const QLocale* other = nullptr)
{
    static QMutex mutex;
    static QHash<PatternKey, std::shared_ptr<const NumberPatterns>> cache;
    const PatternKey key{&grammar, locale, locale.groupSeparator() + locale.decimalPoint()};
    const QMutexLocker lock(&mutex);
    auto& patterns = cache[key];
    if (!patterns)
        patterns = std::make_shared<NumberPatterns>(grammar, locale, other);
    return patterns;
}

struct Reading
{
    ExtractedNumberInfo info;
    bool hasGroups = false;
};

std::optional<Reading> Extract(const QString& text, const NumberPatterns& patterns, bool useThousands,
                               bool flag)
{
    const auto found = patterns.Find(text, useThousands);
    if (!found)
        return std::nullopt;
    const auto value = patterns.reader.Read(found->value);
    if (!value)
        return std::nullopt;
    ExtractedNumberInfo info;
    info.value = *value;
    info.length = static_cast<int>(found->length);
    info.whole = found->length == text.size();
    if (!found->exponent.isEmpty())
        info.exponent = found->exponent.toInt();
    if (!flag || info.whole)
        info.decimals = static_cast<int>(
            std::clamp<qint64>(found->decimals - qint64{info.exponent}, 0, std::numeric_limits<int>::max()));
    info.text = found->unit.toString();
    return Reading{std::move(info), patterns.HasGroups(found->value)};
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

/// What @p read reads of each item; items that have nothing to read are left out.
template <typename T, typename Read>
std::vector<T> ReadItems(const QStringList& items, const Read& read)
{
    std::vector<T> values;
    for (const QString& item : items)
        if (const auto value = read(item))
            values.push_back(*value);
    return values;
}

/// Writes what the extractor reads; empty where it reads nothing.
auto MakeFormatter(const auto& extractor)
{
    return [&extractor](const QString& text, const NumberOptions& options) {
        const auto value = extractor.FromString(text);
        return value ? ToString(*value, options) : QString();
    };
}

bool IsBlankGroupSeparator()
{
    const QString separator = StringUtility::GetThousandSeparator(true);
    return !separator.isEmpty() && separator.trimmed().isEmpty();
}

const QRegularExpression& GetBlanksBetweenDigits()
{
    static const QRegularExpression blanks(u"(?<=\\d)[ \u00a0\u202f](?=\\d)"_s);
    return blanks;
}
} // namespace

NumberExtractorBase::NumberExtractorBase(const Details::NumberGrammar& grammar)
    : m_locale(StringUtility::GetQSystemLocale()),
      m_system(GetPatterns(grammar, m_locale)),
      m_c(GetPatterns(grammar, QLocale::c())),
      m_hasCSeparators(m_system->withThousands == m_c->withThousands),
      m_listSeparator(StringUtility::SemiColon())
{}

NumberExtractorBase::NumberExtractorBase(const NumberExtractorBase&) = default;
NumberExtractorBase& NumberExtractorBase::operator=(const NumberExtractorBase&) = default;
NumberExtractorBase::~NumberExtractorBase() = default;

std::optional<ExtractedNumberInfo> NumberExtractorBase::ExtractNumber(const QString& text, bool flag) const
{
    bool hasGroups = false;
    return _Extract(text, flag, hasGroups);
}

std::optional<ExtractedNumberInfo> NumberExtractorBase::_Extract(const QString& text, bool flag,
                                                                 bool& hasGroups) const
{
    auto best = Extract(text, *m_system, m_useThousands, flag);
    // With the same separators, the other would match the same.
    if (!best || (!best->info.whole && !m_hasCSeparators))
    {
        auto c = Extract(text, *m_c, m_useThousands, flag);
        if (c && (c->info.whole || !best || c->info.length > best->info.length))
            best = std::move(c);
    }
    if (!best)
        return std::nullopt;
    hasGroups = best->hasGroups;
    return std::move(best->info);
}

QValidator::State NumberExtractorBase::_Validate(const QString& text, const Formatter& format,
                                                 const NumberPatterns& patterns) const
{
    if (text.isEmpty())
        return QValidator::Intermediate;
    const auto found = patterns.Find(text, m_useThousands);
    if (found && found->length == text.size())
    {
        NumberOptions options;
        options.locale = patterns.locale;
        options.notation = ENotation::Fixed;
        options.decimals = std::clamp(GetNumberOfDecimals(text, options), 0, mostDecimals);
        options.hasGroupSeparators = patterns.HasGroups(found->value);
        return format(text, options) == text ? QValidator::Acceptable : QValidator::Intermediate;
    }
    const QRegularExpressionMatch match =
        patterns.GetExpression(m_useThousands).match(text, 0, QRegularExpression::PartialPreferFirstMatch);
    if ((match.hasMatch() || match.hasPartialMatch()) && match.capturedLength() == text.size())
        return QValidator::Intermediate;
    // A digit that is deleted or typed among groups misplaces their separators for a while.
    const QString plain = m_useThousands ? patterns.WithoutGroups(text) : text;
    const auto plainNumber = plain.size() < text.size() ? patterns.Find(plain, false) : std::nullopt;
    return plainNumber && plainNumber->length == plain.size() ? QValidator::Intermediate
                                                              : QValidator::Invalid;
}

QValidator::State NumberExtractorBase::_Validate(const QString& text, const Formatter& format) const
{
    const QValidator::State state = _Validate(text, format, *m_system);
    return state == QValidator::Acceptable ? state : std::max(state, _Validate(text, format, *m_c));
}

QValidator::State NumberExtractorBase::_ValidateList(const QString& text, const Formatter& format) const
{
    const auto validate = [&, items = _Split(text)](const NumberPatterns& patterns) {
        QValidator::State worst = QValidator::Acceptable;
        for (const QString& item : items)
            worst = std::min(worst, _Validate(item, format, patterns));
        return worst;
    };
    const QValidator::State state = validate(*m_system);
    return state == QValidator::Acceptable ? state : std::max(state, validate(*m_c));
}

void NumberExtractorBase::FixupList(QString& text) const
{
    QStringList items = _Split(text);
    items.removeAll(QString());
    for (QString& item : items)
        Fixup(item);
    text = items.join(m_listSeparator);
}

QStringList NumberExtractorBase::_Split(const QString& text) const
{
    const QString mark = m_listSeparator.trimmed();
    QStringList items = text.split(mark.isEmpty() ? u";"_s : mark);
    for (QString& item : items)
        item = item.trimmed();
    return items;
}

NumberOptions NumberExtractorBase::_GetFixupOptions(const QString& text) const
{
    NumberOptions options;
    const auto info = _Extract(text, false, options.hasGroupSeparators);
    options.locale = m_locale;
    options.notation = ENotation::Fixed;
    options.decimals = info ? std::min(info->decimals, mostDecimals) : 0;
    return options;
}

IntExtractor::IntExtractor() : NumberExtractorBase(GetIntegerGrammar()) {}

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
    return ReadItems<int>(_Split(text), [this](const QString& item) { return FromString(item); });
}

std::vector<qint64> IntExtractor::ListFromString64(const QString& text) const
{
    return ReadItems<qint64>(_Split(text), [this](const QString& item) { return FromString64(item); });
}

QValidator::State IntExtractor::Validate(QString& text, int&) const
{
    return _Validate(text, MakeFormatter(*this));
}

QValidator::State IntExtractor::ValidateList(QString& text, int&) const
{
    return _ValidateList(text, MakeFormatter(*this));
}

void IntExtractor::Fixup(QString& text) const
{
    NumberOptions options;
    options.locale = GetLocale();
    options.hasGroupSeparators = UsesThousands();
    text = ToString(FromString64(text.trimmed()).value_or(0), options);
}

const QString& IntExtractor::GetUnlocalizedRegexStr() { return GetIntegerGrammar().pattern; }

DoubleExtractor::DoubleExtractor() : NumberExtractorBase(GetRealGrammar()) {}

std::optional<double> DoubleExtractor::FromString(const QString& text) const
{
    const auto info = ExtractNumber(text, true);
    return info ? std::optional(info->value) : std::nullopt;
}

std::vector<double> DoubleExtractor::ListFromString(const QString& text) const
{
    return ReadItems<double>(_Split(text), [this](const QString& item) { return FromString(item); });
}

QValidator::State DoubleExtractor::Validate(QString& text, int&) const
{
    return _Validate(text, MakeFormatter(*this));
}

QValidator::State DoubleExtractor::ValidateList(QString& text, int&) const
{
    return _ValidateList(text, MakeFormatter(*this));
}

void DoubleExtractor::Fixup(QString& text) const
{
    text = text.trimmed();
    text = ToString(FromString(text).value_or(0.0), _GetFixupOptions(text));
}

const QString& DoubleExtractor::GetUnlocalizedRegexStr() { return GetRealGrammar().pattern; }

template <Unit::AnyQuantity U>
ValueWithUnitExtractor<U>::ValueWithUnitExtractor() : NumberExtractorBase(GetQuantityGrammar<UnitType>())
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
    return ReadItems<U>(_Split(text), [this](const QString& item) { return FromString(item); });
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
QValidator::State ValueWithUnitExtractor<U>::ValidateList(QString& text, int&) const
{
    return _ValidateList(text, MakeFormatter(*this));
}

template <Unit::AnyQuantity U>
void ValueWithUnitExtractor<U>::Fixup(QString& text) const
{
    text = text.trimmed();
    text = ToString(FromString(text).value_or(U(0.0, GetProjectUnit())), _GetFixupOptions(text));
}

template <Unit::AnyQuantity U>
const QString& ValueWithUnitExtractor<U>::GetUnlocalizedRegexStr()
{
    return GetQuantityGrammar<UnitType>().pattern;
}

#define VEK_INSTANTIATE(Q) template class ValueWithUnitExtractor<Unit::Q>;
VEK_FOR_EACH_QUANTITY(VEK_INSTANTIATE)
#undef VEK_INSTANTIATE

std::vector<DoubleWithPrefix> ExtractDoubleWithPrefixList(const QString& text)
{
    static const Grammar grammar{u"%1%2\\b"_s.arg(coordinatePrefix, GetRealPattern()), true, {}};
    static const QLocale c = QLocale::c();
    static const NumberReader cReader(c);
    const auto patterns = GetPatterns(grammar, StringUtility::GetQSystemLocale(), &c);
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

std::string ToLogText(const ExtractedNumberInfo& number)
{
    return (ToString(number.value) + u' ' + number.text).trimmed().toStdString();
}

std::string ToLogText(const DoubleWithPrefix& number)
{
    const QString text = ToString(number.value);
    return (number.prefix.isEmpty() ? text : number.prefix + u'=' + text).toStdString();
}
} // namespace vek::Convert
