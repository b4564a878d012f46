#include "VekAppCore/Text/NumberExtractor.h"
#include "Text/TextRows.h"
#include <QRegularExpression>
#include <cmath>
#include <random>

namespace vek::Convert
{
namespace
{
using enum Unit::LengthUnit;

/// Puts a locale into force, by name.
ScopeBase Use(const char* locale) { return StringUtility::ChangeQSystemLocale(QLocale(locale)); }

/// With a locale in force.
void Expect(const char* locale, const auto& function, std::initializer_list<const char*> rows)
{
    const ScopeBase inForce = Use(locale);
    SCOPED_TRACE(locale);
    TestSupport::ExpectRows(function, rows);
}

/// The text after @p function has changed it.
auto Change(const auto& function)
{
    return [function](QString text) {
        function(text);
        return text;
    };
}

TEST(NumberExtractor, FindsTheFirstNumber)
{
    const auto find = [](const QString& text) -> QString {
        const DoubleExtractor extractor;
        const auto info = extractor.ExtractNumber(text, true);
        EXPECT_EQ(extractor.FromString(text), info ? std::optional(info->value) : std::nullopt);
        if (!info)
            return "none";
        return ToString(info->value) + QString(" .%1 e%2").arg(info->decimals).arg(info->exponent) +
               (info->whole ? "" : " part");
    };
    Expect("en_US", find,
           {"1,234.5 -> 1234.5 .1 e0", "1234.5 -> 1234.5 .1 e0", "1,23 -> 1 .0 e0 part", ".5 -> 0.5 .1 e0",
            "2e3 -> 2000 .0 e3", "1.25e1 -> 12.5 .1 e1", "1e-3 -> 0.001 .3 e-3", "-3 -> -3 .0 e0",
            "abc 12.5 def -> 12.5 .0 e0 part", "+3 -> 3 .0 e0", "5. -> 5 .0 e0", "12 345 -> 12 .0 e0 part",
            "\u0665 7 -> 7 .0 e0 part", "\U0001f600\u0301-4\u0301 -> -4 .0 e0 part"});
    Expect("en_US", find,
           {"abc. 12.5 -> none", "12eggs -> none", ". -> none", ", -> none", " -> none", "1e400 -> none",
            "1e-400 -> none", "1e9999999999 -> none", "nan inf -> none",
            "1234,567 -> none"}); // groups from the first digit
    Expect("de_DE", find,
           {"1.234,5 -> 1234.5 .1 e0", "1,234.5 -> 1234.5 .1 e0", "1.234 -> 1234 .0 e0", "12.5 -> 12.5 .1 e0",
            "1.5,5 -> 1.5 .0 e0 part"});
    Expect("fr_FR", find, {"1\u202f234,5 -> 1234.5 .1 e0", "1\u00a0234 -> 1 .0 e0 part"});
    Expect("pl_PL", find, {"12\u00a0345,5 -> 12345.5 .1 e0"});
    // No single digit stands before a separator there.
    Expect("es_ES", find, {"1.234 -> 1.234 .3 e0", "12.345 -> 12345 .0 e0"});
    Expect("sv_SE", find, {"1,5e3 -> 1 .0 e0 part"});
    Expect("ar_EG", find, {"1\u066c234\u066b5 -> 1234.5 .1 e0"});
}

TEST(NumberExtractor, GroupsAreReadOnlyWhenTheyAreUsed)
{
    const ScopeBase locale = Use("en_US");
    DoubleExtractor extractor;
    extractor.SetUseThousands(false);
    EXPECT_EQ(extractor.FromString("1,234"), 1);
    EXPECT_EQ(extractor.FromString("1234567"), 1234567);
    QString text = "1,234";
    int pos = 0;
    EXPECT_EQ(extractor.Validate(text, pos), QValidator::Invalid);
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

TEST(LengthExtractor, LengthHasItsUnitOrTheProjects)
{
    const auto read = [](const QString& text) {
        const LengthExtractor extractor(Millimeter);
        const auto length = extractor.FromString(text);
        return (length ? ToString(*length) : "none") + (extractor.IsTypedValue(text) ? ", typed" : "");
    };
    Expect("en_US", read,
           {"12 -> 12 mm", "12 in -> 12 in, typed", "12in -> 12 in, typed", "12  in -> 12 mm",
            "12 bananas -> 12 mm", "12 mango -> 12 m", "12 mil -> 12 mil, typed", "12 mi -> 12 mi, typed",
            "x = 12.5 mm; -> 12.5 mm", "1.5 \u00b5m -> 1.5 \u00b5m, typed",
            "1.5 \u03bcm -> 1.5 mm", // another letter
            "5 usft -> 5 usft, typed", "mm -> none", "12eggs -> none"});
}

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

/// The state in which the text is valid.
constexpr const char* states[] = {"invalid", "partial", "good"};

TEST(Validation, TellsNumbersLengthsAndIntegers)
{
    const auto judge = [](QString text) {
        const QString before = text;
        int pos = 0;
        QStringList all{states[DoubleExtractor().Validate(text, pos)],
                        states[LengthExtractor().Validate(text, pos)],
                        states[IntExtractor().Validate(text, pos)]};
        EXPECT_EQ(text, before);
        return all.join(' ');
    };
    Expect("en_US", judge,
           {" -> partial partial partial", "- -> partial partial partial", "x -> invalid invalid invalid",
            "1234.5 -> good partial invalid", "1,234.5 -> good partial invalid",
            "12,34.5 -> partial partial invalid", "1,23 -> partial partial partial",
            "+5 -> partial partial partial", "05 -> partial partial partial", "5 -> good partial good",
            "1,234 -> good partial good", "2e3 -> partial partial invalid", "2e -> partial partial invalid",
            "1e400 -> partial partial invalid", "12.50 mm -> invalid good invalid",
            "12.50mm -> invalid partial invalid", "12 k -> invalid partial invalid",
            "12 q -> invalid invalid invalid", " 5 -> invalid invalid invalid"});
    Expect("de_DE", judge,
           {"1.234,5 -> good partial invalid", "1234.5 -> good partial partial",
            "1.234,50 mm -> invalid good invalid"});
    Expect("fr_FR", judge, {"1\u202f234 -> good partial good"});
}

TEST(Validation, ListsAreAsGoodAsTheirWorstItem)
{
    const auto judge = [](QString text) {
        int pos = 2;
        const auto state = DoubleExtractor().ValidateList(text, pos);
        EXPECT_EQ(pos, 2);
        return states[state];
    };
    Expect("de_DE", judge,
           {"1,5; 2 -> good", "1.5;2 -> good", "1,5; 1.5 -> partial", // of two locales
            "1,5; -> partial", "1,5; +2 -> partial", "1,5; x; +2 -> invalid", " -> partial"});
    const ScopeBase locale = Use("de_DE");
    EXPECT_EQ(DoubleExtractor().ListFromString("1,5; x;;2.5"), (std::vector{1.5, 2.5}));
    EXPECT_EQ(LengthExtractor(Inch).ListFromString("1;2 mm").at(1), Unit::Length(2, Millimeter));
}

TEST(Fixup, WritesTheNumberThatWasMeant)
{
    Expect("de_DE", Change([](QString& text) { DoubleExtractor().Fixup(text); }),
           {" +12,50  -> 12,50", "12.50 -> 12,50", "1,25e-2 -> 0,0125", "x -> 0", "1.234,5 -> 1.234,5",
            "0,12345678901234567890 -> 0,123456789012346",
            "1234.50 -> 1234,50"}); // its point is no group separator
    Expect("de_DE", Change([](QString& text) { IntExtractor().Fixup(text); }),
           {" 12345,9  -> 12.345", "- -> 0", "99999999999999999999 -> 0"});
    Expect("de_DE", Change([](QString& text) { LengthExtractor(Millimeter).Fixup(text); }),
           {"12,5in -> 12,5 in", "12 -> 12 mm", " -> 0 mm"});
    Expect("de_DE", Change([](QString& text) { LengthExtractor(Millimeter).FixupList(text); }),
           {"1;x;;2,50 m; -> 1 mm; 0 mm; 2,50 m"});
}

TEST(Fixup, SanitizingRemovesOrSeparatesAtBlanks)
{
    Expect("fr_FR", Change(SanitizeSingleValue), {" 1\u00a0234\u202f567 8 x 9  -> 12345678 x 9"});
    Expect("fr_FR", Change(SanitizeListOfValues),
           {"1 2\t3 4 -> 12;34", "1 234;5 -> 1234;5", "1 2 3 -> 1;2;3"});
    Expect("en_US", Change(SanitizeSingleValue),
           {" 1\u00a0234\u202f567 8 x 9  -> 1\u00a0234\u202f567 8 x 9"});
    Expect("en_US", Change(SanitizeListOfValues), {"1 2\n3 -> 1 2;3"});
}

TEST(PrefixList, EachNumberHasItsCoordinate)
{
    const ScopeBase german = Use("de_DE");
    EXPECT_EQ(ExtractDoubleWithPrefixList("X=1,5 y: -2 dZ3.25 4"),
              (std::vector<DoubleWithPrefix>{{"x", 1.5}, {"y", -2}, {"dz", 3.25}, {"", 4}}));
    EXPECT_TRUE(ExtractDoubleWithPrefixList("").empty());
}

/// Calls @p check for every kind of quantity with every @p step th locale in force.
void InLocales(qsizetype step, const auto& check)
{
    const auto locales =
        QLocale::matchingLocales(QLocale::AnyLanguage, QLocale::AnyScript, QLocale::AnyTerritory);
    for (qsizetype i = 0; i < locales.size() && !testing::Test::HasFatalFailure(); i += step)
    {
        SCOPED_TRACE(locales[i].name().toStdString());
        const ScopeBase inForce = StringUtility::ChangeQSystemLocale(locales[i]);
        const NumberOptions options{locales[i]};
        check(options, Unit::Length());
        check(options, Unit::Area());
        check(options, Unit::Volume());
        check(options, Unit::Angle());
        check(options, Unit::Percent());
    }
}

TEST(NumberText, ComesBackInAllLocalesAndUnits)
{
    std::mt19937_64 random(5); // NOLINT: the same values each time
    InLocales(1, [&random]<typename Q>(NumberOptions options, Q) {
        constexpr auto units = Unit::GetUnits<typename Q::UnitType>();
        const ValueWithUnitExtractor<Q> extractor;
        for (int i = 0; i < 30; ++i)
        {
            const auto unit = units[random() % units.size()];
            const auto exponent = static_cast<int>(random() % 41) - 20;
            const double value =
                std::ldexp(static_cast<double>(static_cast<qint64>(random())), exponent - 63);
            options.hasGroupSeparators = i % 2 == 0;
            const QString text = ToString(Q(value, unit), options);
            const auto extracted = extractor.FromString(text);
            ASSERT_TRUE(extracted && extracted->GetValue() == value && extracted->GetUnit() == unit)
                << text.toStdString();
            Q back(0.0);
            ASSERT_TRUE(FromString(text, back, options) && back.GetValue() == value && back.GetUnit() == unit)
                << text.toStdString();
        }
    });
}

/// What the pattern finds by Qt: value, length and unit.
using Found = std::optional<std::tuple<double, qsizetype, QString>>;

auto MakeReference(const QLocale& locale)
{
    QString pattern = LengthExtractor::GetUnlocalizedRegexStr();
    pattern.replace("%thousand", QRegularExpression::escape(locale.groupSeparator()));
    pattern.replace("%decimal", QRegularExpression::escape(locale.decimalPoint()));
    return [locale, expression = QRegularExpression(pattern)](const QString& text) {
        const QRegularExpressionMatch match = expression.match(text);
        bool isRead = false;
        const double value = locale.toDouble(match.captured("val"), &isRead);
        return match.hasMatch() && isRead ? Found({value, match.capturedLength(), match.captured("unit")})
                                          : std::nullopt;
    };
}

TEST(NumberText, IsFoundAsThePatternsFindIt)
{
    std::mt19937 random(3); // NOLINT: the same texts each time
    const auto findInC = MakeReference(QLocale::c());
    for (const char* const name : {"en_US", "de_DE", "fr_FR", "pl_PL", "sv_SE", "hi_IN", "ar_EG", "C"})
    {
        const ScopeBase inForce = Use(name);
        const LengthExtractor extractor;
        const QLocale locale(name);
        const auto find = MakeReference(locale);
        const QString characters = QStringLiteral("01234567890123456789000+-eE.,  minx") +
                                   locale.decimalPoint() + locale.groupSeparator().repeated(3);
        for (int round = 0; round < 125'000; ++round)
        {
            QString text;
            for (auto size = random() % 14 + 1; size > 0; --size)
                text += characters[static_cast<qsizetype>(random()) % characters.size()];
            const auto getLength = [](const Found& found) { return found ? std::get<1>(*found) : 0; };
            Found expected = find(text);
            if (const Found inC = findInC(text); getLength(inC) > getLength(expected))
                expected = inC;
            const auto info = extractor.ExtractNumber(text, true);
            ASSERT_EQ(info ? Found({info->value, info->length, info->text}) : std::nullopt, expected)
                << name << " \"" << text.toStdString();
        }
    }
}

TEST(NumberText, EveryPrefixOfWhatIsValidMayBecomeIt)
{
    InLocales(16, []<typename Q>(NumberOptions options, Q) {
        using UnitType = typename Q::UnitType;
        const ValueWithUnitExtractor<Q> extractor;
        options.notation = ENotation::Fixed;
        for (const double value : {0.0, -12.5, 1234567.891, 999.0})
            for (int unit = static_cast<int>(Unit::UnitTraits<UnitType>::first); unit < int(UnitType::END);
                 ++unit)
                for (const bool hasGroups : {false, true})
                {
                    options.hasGroupSeparators = hasGroups;
                    options.decimals = unit % 4;
                    QString text = ToString(Q(value, UnitType(unit)), options);
                    int pos = 0;
                    ASSERT_EQ(extractor.Validate(text, pos), QValidator::Acceptable) << text.toStdString();
                    for (; !text.isEmpty(); text.chop(1))
                        ASSERT_NE(extractor.Validate(text, pos), QValidator::Invalid) << text.toStdString();
                }
    });
}

TEST(NumberText, LengthOfTheTextCostsNoMoreThanItself)
{
    const ScopeBase locale = Use("en_US");
    const DoubleExtractor numbers;
    const LengthExtractor lengths;
    constexpr int size = 2'000'000; // with its square, it would take hours
    for (const char* const part : {"x", "+", "e ", ",", "xyz=", "mm ", "x "})
    {
        const QString text = QString(part).repeated(size / static_cast<int>(qstrlen(part))) + " 12.5";
        QString copy = text;
        int pos = 0;
        EXPECT_EQ(numbers.FromString(text), 12.5) << part;
        EXPECT_EQ(lengths.FromString(text)->GetValue(), 12.5) << part;
        EXPECT_EQ(lengths.Validate(copy, pos), QValidator::Invalid) << part;
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
