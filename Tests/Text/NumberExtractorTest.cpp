#include "VekAppCore/Text/NumberExtractor.h"
#include "Support/TestSupport.h"
#include <QRegularExpression>
#include <cmath>
#include <gtest/gtest.h>
#include <random>

namespace vek::Convert
{
namespace
{
using State = QValidator::State;
using enum Unit::LengthUnit;

constexpr State invalid = QValidator::Invalid;
constexpr State partial = QValidator::Intermediate;
constexpr State good = QValidator::Acceptable;

/// Puts a locale into force, by name.
ScopeBase Use(const char* locale) { return StringUtility::ChangeQSystemLocale(QLocale(locale)); }

struct NumberCase
{
    const char* locale;
    QString text;
    std::optional<double> value;
    bool whole = true;
    int decimals = 0;
    int exponent = 0;
};
void PrintTo(const NumberCase& row, std::ostream* out)
{
    *out << row.locale << " " << row.text.toStdString();
}
class ExtractedNumber : public testing::TestWithParam<NumberCase>
{};

TEST_P(ExtractedNumber, IsTheFirstOne)
{
    const auto& row = GetParam();
    const ScopeBase locale = Use(row.locale);
    const auto info = DoubleExtractor().ExtractNumber(row.text, true);
    ASSERT_EQ(info.has_value(), row.value.has_value());
    EXPECT_EQ(DoubleExtractor().FromString(row.text), row.value);
    if (!info)
        return;
    EXPECT_EQ(info->whole, row.whole);
    EXPECT_EQ(info->decimals, row.decimals);
    EXPECT_EQ(info->exponent, row.exponent);
}
INSTANTIATE_TEST_SUITE_P(
    Rows, ExtractedNumber,
    testing::Values(
        NumberCase{"en_US", "1,234.5", 1234.5, true, 1}, NumberCase{"en_US", "1234.5", 1234.5, true, 1},
        NumberCase{"en_US", "1,23", 1, false}, NumberCase{"en_US", ".5", 0.5, true, 1},
        NumberCase{"en_US", "2e3", 2000, true, 0, 3}, NumberCase{"en_US", "1.25e1", 12.5, true, 1, 1},
        NumberCase{"en_US", "1e-3", 0.001, true, 3, -3}, NumberCase{"en_US", "abc 12.5 def", 12.5, false},
        NumberCase{"en_US", "-3", -3}, NumberCase{"en_US", "+3", 3}, NumberCase{"en_US", "5.", 5},
        NumberCase{"en_US", "abc. 12.5", {}}, NumberCase{"en_US", "12eggs", {}}, NumberCase{"en_US", ".", {}},
        NumberCase{"en_US", ",", {}}, NumberCase{"en_US", "", {}}, NumberCase{"en_US", "1e400", {}},
        NumberCase{"en_US", "1e-400", {}}, NumberCase{"en_US", "1e9999999999", {}},
        NumberCase{"en_US", "nan inf", {}},
        NumberCase{"en_US", "1234,567", {}}, // groups from the first digit
        NumberCase{"en_US", "12 345", 12, false}, NumberCase{"en_US", QStringLiteral(u"\u0665 7"), 7, false},
        NumberCase{"en_US", QStringLiteral(u"\U0001f600\u0301-4\u0301"), -4, false},
        NumberCase{"de_DE", "1.234,5", 1234.5, true, 1}, NumberCase{"de_DE", "1,234.5", 1234.5, true, 1},
        NumberCase{"de_DE", "1.234", 1234}, NumberCase{"de_DE", "12.5", 12.5, true, 1},
        NumberCase{"de_DE", "1.5,5", 1.5, false},
        NumberCase{"fr_FR", QStringLiteral(u"1\u202f234,5"), 1234.5, true, 1},
        NumberCase{"fr_FR", QStringLiteral(u"1\u00a0234"), 1, false},
        NumberCase{"pl_PL", QStringLiteral(u"12\u00a0345,5"), 12345.5, true, 1},
        NumberCase{"es_ES", "1.234", 1.234, true, 3}, // no single digit stands before a separator there
        NumberCase{"es_ES", "12.345", 12345}, NumberCase{"sv_SE", "1,5e3", 1, false},
        NumberCase{"ar_EG", QStringLiteral(u"1\u066c234\u066b5"), 1234.5, true, 1}));

TEST(NumberExtractor, GroupsAreReadOnlyWhenTheyAreUsed)
{
    const ScopeBase locale = Use("en_US");
    DoubleExtractor extractor;
    extractor.SetUseThousands(false);
    EXPECT_EQ(extractor.FromString("1,234"), 1);
    EXPECT_EQ(extractor.FromString("1234567"), 1234567);
    QString text = "1,234";
    int pos = 0;
    EXPECT_EQ(extractor.Validate(text, pos), invalid);
    extractor.Fixup(text = "1234.5");
    EXPECT_EQ(text, "1234.5");
    const auto info = extractor.ExtractNumber("a 12.50 mm", false);
    EXPECT_TRUE(info && info->decimals == 2 && info->length == 5 && info->text.isEmpty());
}

TEST(IntExtractor, IntegersThatDoNotFitAreNone)
{
    const ScopeBase locale = Use("en_US");
    const IntExtractor extractor;
    EXPECT_EQ(extractor.FromString("2,147,483,647"), 2147483647);
    EXPECT_EQ(extractor.FromString("2147483648"), std::nullopt);
    EXPECT_EQ(extractor.FromString("-2147483648"), std::numeric_limits<int>::min());
    EXPECT_EQ(extractor.FromString("12.9"), 12);
    EXPECT_EQ(extractor.FromString64("2147483648"), 2147483648);
    EXPECT_EQ(extractor.FromString64("-9223372036854775808"), std::numeric_limits<qint64>::min());
    for (const char* text : {"9223372036854775808", "1234567890123456789012345678901234567890"})
        EXPECT_EQ(extractor.FromString64(text), std::nullopt) << text;
    EXPECT_EQ(extractor.ListFromString("1; 2;x;-3;"), (std::vector{1, 2, -3}));
    EXPECT_EQ(extractor.ListFromString64("5000000000"), std::vector{qint64(5'000'000'000)});
}

struct LengthCase
{
    const char* text;
    std::optional<Unit::Length> length;
    bool isTyped = false;
};
void PrintTo(const LengthCase& row, std::ostream* out) { *out << row.text; }
class ExtractedLength : public testing::TestWithParam<LengthCase>
{};

TEST_P(ExtractedLength, HasItsUnitOrTheProjects)
{
    const ScopeBase locale = Use("en_US");
    const LengthExtractor extractor(Millimeter);
    const auto length = extractor.FromString(GetParam().text);
    ASSERT_EQ(length.has_value(), GetParam().length.has_value());
    EXPECT_EQ(extractor.IsTypedValue(GetParam().text), GetParam().isTyped);
    if (!length)
        return;
    EXPECT_EQ(length->GetValue(), GetParam().length->GetValue());
    EXPECT_EQ(length->GetUnit(), GetParam().length->GetUnit());
}
INSTANTIATE_TEST_SUITE_P(
    Rows, ExtractedLength,
    testing::Values(
        LengthCase{"12", Unit::Length(12, Millimeter)}, LengthCase{"12 in", Unit::Length(12, Inch), true},
        LengthCase{"12in", Unit::Length(12, Inch), true}, LengthCase{"12  in", Unit::Length(12, Millimeter)},
        LengthCase{"12 bananas", Unit::Length(12, Millimeter)},
        LengthCase{"12 mango", Unit::Length(12, Meter)}, LengthCase{"12 mil", Unit::Length(12, Mil), true},
        LengthCase{"12 mi", Unit::Length(12, Miles), true},
        LengthCase{"x = 12.5 mm;", Unit::Length(12.5, Millimeter)},
        LengthCase{"1.5 \xc2\xb5m", Unit::Length(1.5, Micrometer), true},
        LengthCase{"1.5 \xce\xbcm", Unit::Length(1.5, Millimeter)}, // another letter
        LengthCase{"5 usft", Unit::Length(5, FeetUS), true}, LengthCase{"mm", {}}, LengthCase{"12eggs", {}}));

TEST(LengthExtractor, ProjectUnitFollowsTheDefaultUnlessItIsSet)
{
    LengthExtractor extractor;
    EXPECT_EQ(extractor.GetProjectUnit(), Meter);
    const ScopeBase restore([] { Unit::SetDefaultUnit(Meter); });
    Unit::SetDefaultUnit(Inch);
    EXPECT_EQ(extractor.GetProjectUnit(), Inch);
    EXPECT_EQ(AreaExtractor().GetProjectUnit(), Unit::AreaUnit::Inch2);
    extractor.SetProjectUnit(Unit::LengthUnit(0)); // replaced in the quantity
    EXPECT_EQ(extractor.FromString("1").value_or(Unit::Length(0, Meter)).GetUnit(), Inch);
    EXPECT_EQ(AngleExtractor().FromString("7\""), Unit::Angle(7, Unit::AngleUnit::Second));
    EXPECT_EQ(VolumeExtractor().FromString("2 US dry gallon"),
              Unit::Volume(2, Unit::VolumeUnit::GallonDryUS));
    EXPECT_EQ(PercentExtractor().FromString("3"), Unit::Percent(3));
}

struct StateCase
{
    const char* locale;
    QString text;
    State number;
    State length;
    State integer;
};
void PrintTo(const StateCase& row, std::ostream* out) { *out << row.locale << " " << row.text.toStdString(); }
class Validation : public testing::TestWithParam<StateCase>
{};

TEST_P(Validation, TellsWhatIsTyped)
{
    const ScopeBase locale = Use(GetParam().locale);
    QString text = GetParam().text;
    int pos = 0;
    EXPECT_EQ(DoubleExtractor().Validate(text, pos), GetParam().number);
    EXPECT_EQ(LengthExtractor().Validate(text, pos), GetParam().length);
    EXPECT_EQ(IntExtractor().Validate(text, pos), GetParam().integer);
    EXPECT_EQ(text, GetParam().text);
}
INSTANTIATE_TEST_SUITE_P(Rows, Validation,
                         testing::Values(StateCase{"en_US", "", partial, partial, partial},
                                         StateCase{"en_US", "-", partial, partial, partial},
                                         StateCase{"en_US", "x", invalid, invalid, invalid},
                                         StateCase{"en_US", "1234.5", good, partial, invalid},
                                         StateCase{"en_US", "1,234.5", good, partial, invalid},
                                         StateCase{"en_US", "12,34.5", partial, partial, invalid},
                                         StateCase{"en_US", "1,23", partial, partial, partial},
                                         StateCase{"en_US", "+5", partial, partial, partial},
                                         StateCase{"en_US", "05", partial, partial, partial},
                                         StateCase{"en_US", "5", good, partial, good},
                                         StateCase{"en_US", "1,234", good, partial, good},
                                         StateCase{"en_US", "2e3", partial, partial, invalid},
                                         StateCase{"en_US", "2e", partial, partial, invalid},
                                         StateCase{"en_US", "1e400", partial, partial, invalid},
                                         StateCase{"en_US", "12.50 mm", invalid, good, invalid},
                                         StateCase{"en_US", "12.50mm", invalid, partial, invalid},
                                         StateCase{"en_US", "12 k", invalid, partial, invalid},
                                         StateCase{"en_US", "12 q", invalid, invalid, invalid},
                                         StateCase{"en_US", " 5", invalid, invalid, invalid},
                                         StateCase{"de_DE", "1.234,5", good, partial, invalid},
                                         StateCase{"de_DE", "1234.5", good, partial, partial},
                                         StateCase{"de_DE", "1.234,50 mm", invalid, good, invalid},
                                         StateCase{"fr_FR", QStringLiteral(u"1\u202f234"), good, partial,
                                                   good}));

TEST(Validation, ListsAreAsGoodAsTheirWorstItem)
{
    const ScopeBase locale = Use("de_DE");
    const DoubleExtractor extractor;
    const auto validate = [&extractor](QString text) {
        int pos = 2;
        const State state = extractor.ValidateList(text, pos);
        EXPECT_EQ(pos, 2);
        return state;
    };
    EXPECT_EQ(validate("1,5; 2"), good);
    EXPECT_EQ(validate("1.5;2"), good);
    EXPECT_EQ(validate("1,5; 1.5"), partial); // of two locales
    EXPECT_EQ(validate("1,5;"), partial);
    EXPECT_EQ(validate("1,5; +2"), partial);
    EXPECT_EQ(validate("1,5; x; +2"), invalid);
    EXPECT_EQ(extractor.ListFromString("1,5; x;;2.5"), (std::vector{1.5, 2.5}));
    EXPECT_EQ(LengthExtractor(Inch).ListFromString("1;2 mm").at(1), Unit::Length(2, Millimeter));
    EXPECT_EQ(validate(""), partial);
}

TEST(Fixup, WritesTheNumberThatWasMeant)
{
    const auto fix = [](const NumberExtractorBase& extractor, QString text) {
        extractor.Fixup(text);
        return text;
    };
    const ScopeBase german = Use("de_DE");
    const LengthExtractor length(Millimeter);
    EXPECT_EQ(fix(DoubleExtractor(), " +12,50 "), "12,50");
    EXPECT_EQ(fix(DoubleExtractor(), "12.50"), "12,50");
    EXPECT_EQ(fix(DoubleExtractor(), "1,25e-2"), "0,0125");
    EXPECT_EQ(fix(DoubleExtractor(), "x"), "0");
    EXPECT_EQ(fix(DoubleExtractor(), "1.234,5"), "1.234,5");
    EXPECT_EQ(fix(DoubleExtractor(), "0,12345678901234567890"), "0,123456789012346");
    EXPECT_EQ(fix(IntExtractor(), " 12345,9 "), "12.345");
    EXPECT_EQ(fix(IntExtractor(), "-"), "0");
    EXPECT_EQ(fix(length, "12,5in"), "12,5 in");
    EXPECT_EQ(fix(length, "12"), "12 mm");
    EXPECT_EQ(fix(length, ""), "0 mm");
    EXPECT_EQ(fix(DoubleExtractor(), "1234.50"), "1234,50"); // its point is no group separator
    EXPECT_EQ(fix(IntExtractor(), "99999999999999999999"), "0");
    QString list = "1;x;;2,50 m;";
    length.FixupList(list);
    EXPECT_EQ(list, "1 mm; 0 mm; 2,50 m");
}

TEST(Fixup, SanitizingRemovesOrSeparatesAtBlanks)
{
    const auto sanitize = [](QString text, auto function) {
        function(text);
        return text;
    };
    const QString blanks = QStringLiteral(u" 1\u00a0234\u202f567 8 x 9 ");
    {
        const ScopeBase french = Use("fr_FR");
        EXPECT_EQ(sanitize(blanks, SanitizeSingleValue), "12345678 x 9");
        EXPECT_EQ(sanitize("1 2\t3 4", SanitizeListOfValues), "12;34");
        EXPECT_EQ(sanitize("1 234;5", SanitizeListOfValues), "1234;5");
        EXPECT_EQ(sanitize("1 2 3", SanitizeListOfValues), "1;2;3");
    }
    const ScopeBase english = Use("en_US");
    EXPECT_EQ(sanitize(blanks, SanitizeSingleValue), blanks.trimmed());
    EXPECT_EQ(sanitize("1 2\n3", SanitizeListOfValues), "1 2;3");
}

TEST(PrefixList, EachNumberHasItsCoordinate)
{
    const ScopeBase german = Use("de_DE");
    EXPECT_EQ(ExtractDoubleWithPrefixList("X=1,5 y: -2 dZ3.25 4"),
              (std::vector<DoubleWithPrefix>{{"x", 1.5}, {"y", -2}, {"dz", 3.25}, {"", 4}}));
    EXPECT_TRUE(ExtractDoubleWithPrefixList("").empty());
}

TEST(NumberText, ComesBackInAllLocalesAndUnits)
{
    std::mt19937_64 random(5); // NOLINT: the same values each time
    const auto check = [&random]<typename U>(const QLocale& locale, U, int count) {
        ValueWithUnitExtractor<U> extractor;
        using UnitType = typename U::UnitType;
        NumberOptions options;
        options.locale = locale;
        for (int i = 0; i < count; ++i)
        {
            constexpr int first = static_cast<int>(Unit::UnitTraits<UnitType>::first);
            const auto units = static_cast<std::uint64_t>(static_cast<int>(UnitType::END) - first);
            const auto unit = static_cast<UnitType>(first + static_cast<int>(random() % units));
            const auto exponent = static_cast<int>(random() % 41) - 20;
            const double value =
                std::ldexp(static_cast<double>(static_cast<qint64>(random())), exponent - 63);
            options.hasGroupSeparators = i % 2 == 0;
            const QString text = ToString(U(value, unit), options);
            const auto extracted = extractor.FromString(text);
            ASSERT_TRUE(extracted && extracted->GetValue() == value && extracted->GetUnit() == unit)
                << locale.name().toStdString() << ' ' << text.toStdString();
            U back(0.0);
            ASSERT_TRUE(FromString(text, back, options) && back.GetValue() == value && back.GetUnit() == unit)
                << text.toStdString();
        }
    };
    const auto locales =
        QLocale::matchingLocales(QLocale::AnyLanguage, QLocale::AnyScript, QLocale::AnyTerritory);
    const int each = 100'000 / static_cast<int>(locales.size()) / 5 + 1;
    for (const QLocale& locale : locales)
    {
        const ScopeBase inForce = StringUtility::ChangeQSystemLocale(locale);
        check(locale, Unit::Length(), each);
        check(locale, Unit::Area(), each);
        check(locale, Unit::Volume(), each);
        check(locale, Unit::Angle(), each);
        check(locale, Unit::Percent(), each);
        if (HasFatalFailure())
            return;
    }
}

/// What the patterns find, by Qt.
struct Reference
{
    explicit Reference(const QLocale& numberLocale) : locale(numberLocale)
    {
        QString pattern = LengthExtractor::GetUnlocalizedRegexStr();
        pattern.replace("%thousand", QRegularExpression::escape(locale.groupSeparator()));
        expression.setPattern(pattern.replace("%decimal", QRegularExpression::escape(locale.decimalPoint())));
    }

    [[nodiscard]] std::optional<std::pair<double, QRegularExpressionMatch>> Find(const QString& text) const
    {
        QRegularExpressionMatch match = expression.match(text);
        bool isRead = false;
        const double value = locale.toDouble(match.captured("val"), &isRead);
        return match.hasMatch() && isRead ? std::optional(std::pair(value, match)) : std::nullopt;
    }

    QLocale locale;
    QRegularExpression expression;
};

TEST(NumberText, IsFoundAsThePatternsFindIt)
{
    std::mt19937 random(3); // NOLINT: the same texts each time
    for (const char* const name : {"en_US", "de_DE", "fr_FR", "pl_PL", "sv_SE", "hi_IN", "ar_EG", "C"})
    {
        const ScopeBase inForce = Use(name);
        const LengthExtractor extractor;
        const Reference system{QLocale(name)};
        const Reference c(QLocale::c());
        const QString characters = QStringLiteral("01234567890123456789000+-eE.,  minx") +
                                   system.locale.decimalPoint() + system.locale.groupSeparator().repeated(3);
        for (int round = 0; round < 125'000; ++round)
        {
            QString text;
            for (auto size = random() % 14 + 1; size > 0; --size)
                text += characters[static_cast<qsizetype>(random()) % characters.size()];
            auto expected = system.Find(text);
            const auto isWhole = [&text](const auto& found) {
                return found->second.capturedLength() == text.size();
            };
            if (!expected || !isWhole(expected))
                if (auto other = c.Find(text);
                    other && (isWhole(other) || !expected ||
                              other->second.capturedLength() > expected->second.capturedLength()))
                    expected = other;
            const auto info = extractor.ExtractNumber(text, true);
            ASSERT_EQ(info.has_value(), expected.has_value()) << name << " \"" << text.toStdString();
            if (!info)
                continue;
            ASSERT_EQ(info->value, expected->first) << name << " \"" << text.toStdString();
            ASSERT_EQ(info->length, expected->second.capturedLength()) << name << " \"" << text.toStdString();
            ASSERT_EQ(info->text, expected->second.captured("unit")) << name << " \"" << text.toStdString();
        }
    }
}

template <typename U>
void CheckPrefixes(const QLocale& locale)
{
    using UnitType = typename U::UnitType;
    const ValueWithUnitExtractor<U> extractor;
    NumberOptions options;
    options.locale = locale;
    options.notation = ENotation::Fixed;
    for (const double value : {0.0, -12.5, 1234567.891, 999.0})
        for (int unit = static_cast<int>(Unit::UnitTraits<UnitType>::first); unit < int(UnitType::END);
             ++unit)
            for (const bool hasGroups : {false, true})
            {
                options.hasGroupSeparators = hasGroups;
                options.decimals = unit % 4;
                QString text = ToString(U(value, UnitType(unit)), options);
                int pos = 0;
                ASSERT_EQ(extractor.Validate(text, pos), good)
                    << locale.name().toStdString() << ' ' << text.toStdString();
                for (; !text.isEmpty(); text.chop(1))
                    ASSERT_NE(extractor.Validate(text, pos), invalid)
                        << locale.name().toStdString() << ' ' << text.toStdString();
            }
}

TEST(NumberText, EveryPrefixOfWhatIsValidMayBecomeIt)
{
    const auto locales =
        QLocale::matchingLocales(QLocale::AnyLanguage, QLocale::AnyScript, QLocale::AnyTerritory);
    for (qsizetype i = 0; i < locales.size() && !HasFatalFailure(); i += 16)
    {
        const ScopeBase inForce = StringUtility::ChangeQSystemLocale(locales[i]);
        CheckPrefixes<Unit::Length>(locales[i]);
        CheckPrefixes<Unit::Area>(locales[i]);
        CheckPrefixes<Unit::Volume>(locales[i]);
        CheckPrefixes<Unit::Angle>(locales[i]);
        CheckPrefixes<Unit::Percent>(locales[i]);
    }
}

TEST(NumberText, LengthOfTheTextCostsNoMoreThanItself)
{
    const ScopeBase locale = Use("en_US");
    const DoubleExtractor numbers;
    const LengthExtractor lengths;
    constexpr int size = 10'000'000;
    for (const char* const part : {"x", "+", "e ", ",", "xyz=", "mm ", "x "})
    {
        const QString text = QString(part).repeated(size / static_cast<int>(qstrlen(part))) + " 12.5";
        QString copy = text;
        int pos = 0;
        EXPECT_EQ(numbers.FromString(text), 12.5) << part;
        EXPECT_EQ(lengths.FromString(text)->GetValue(), 12.5) << part;
        EXPECT_EQ(lengths.Validate(copy, pos), invalid) << part;
    }
    EXPECT_EQ(ExtractDoubleWithPrefixList("x" + QString(size, u' ') + "12.5"),
              (std::vector<DoubleWithPrefix>{{"x", 12.5}}));
    EXPECT_TRUE(ExtractDoubleWithPrefixList("x" + QString(size / 10, u' ') + "y").empty());
    EXPECT_FALSE(numbers.FromString(QString(size, u'1'))); // greater than all doubles
    QString blanks(size, u' ');
    SanitizeListOfValues(blanks);
    EXPECT_TRUE(blanks.isEmpty());
    EXPECT_EQ(StringUtility::ExtractRttiClassName(QString(size, u'x')).size(), size);
    EXPECT_EQ(StringUtility::CleanString(QString(size, u'+')).size(), size * 4);
}
} // namespace
} // namespace vek::Convert
