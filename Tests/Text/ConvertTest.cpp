#include "VekAppCore/Text/Convert.h"
#include "Support/TestSupport.h"
#include <QByteArrayList>
#include <QDateTime>
#include <QPointF>
#include <QRectF>
#include <QUuid>
#include <QVariant>
#include <bit>
#include <cmath>
#include <gtest/gtest.h>
#include <random>

namespace vek::Convert
{
namespace
{
const QLocale german(QLocale::German, QLocale::Germany);
const QLocale french(QLocale::French, QLocale::France); // groups with U+202F
const QLocale persian(QLocale::Persian);                // other digits and signs

struct NumberCase
{
    const char* fault;
    double value;
    NumberOptions options;
    QString text;
};
void PrintTo(const NumberCase& row, std::ostream* out) { *out << row.fault; }
class NumberText : public testing::TestWithParam<NumberCase>
{};

TEST_P(NumberText, IsWrittenAndReadAgain)
{
    EXPECT_EQ(ToString(GetParam().value, GetParam().options), GetParam().text);
    double back = 0;
    EXPECT_TRUE(FromString(' ' + GetParam().text + ' ', back, GetParam().options));
    EXPECT_EQ(ToString(back, GetParam().options), GetParam().text);
}
INSTANTIATE_TEST_SUITE_P(
    Rows, NumberText,
    testing::Values(
        NumberCase{"digits beyond the shortest", 0.1, {}, "0.1"},
        NumberCase{"integer with an exponent", 100'000, {}, "100000"},
        NumberCase{"zeros nobody reads", 1e16, {}, "1e+16"},
        NumberCase{"small number in fixed notation", 0.000009, {}, "9e-06"},
        NumberCase{"sign of zero lost", -0.0, {}, "-0"}, NumberCase{"infinity lost", -INFINITY, {}, "-inf"},
        NumberCase{"greatest number cut off", 1.7976931348623157e308, {}, "1.7976931348623157e+308"},
        NumberCase{"decimals cut", 12.5, {QLocale::c(), ENotation::Fixed, 3}, "12.500"},
        NumberCase{"negative decimals", 12.5, {QLocale::c(), ENotation::Fixed, -1}, "12"},
        NumberCase{"point without decimals", 0.5, {QLocale::c(), ENotation::Scientific, 0}, "5e-01"},
        NumberCase{"groups of the C locale left out",
                   1234567.5,
                   {QLocale::c(), ENotation::Shortest, 0, true},
                   "1,234,567.5"},
        NumberCase{
            "separator before the first digit", -123456, {german, ENotation::Fixed, 1, true}, "-123.456,0"},
        NumberCase{"separator without being asked for", 1234.5, {german}, "1234,5"},
        NumberCase{"separator of one byte",
                   1234.5,
                   {french, ENotation::Shortest, 0, true},
                   QStringLiteral(u"1\u202f234,5")},
        NumberCase{"digits of the locale", -1.5, {persian}, "-1" + persian.decimalPoint() + "5"}));

struct RefusedCase
{
    const char* fault;
    QString text;
    NumberOptions options{};
};
void PrintTo(const RefusedCase& row, std::ostream* out) { *out << row.fault; }
class RefusedNumber : public testing::TestWithParam<RefusedCase>
{};

TEST_P(RefusedNumber, LeavesTheValue)
{
    double value = 7;
    EXPECT_FALSE(FromString(GetParam().text, value, GetParam().options));
    EXPECT_EQ(value, 7);
}
INSTANTIATE_TEST_SUITE_P(
    Rows, RefusedNumber,
    testing::Values(RefusedCase{"empty text taken for zero", ""}, RefusedCase{"blanks taken for zero", "  "},
                    RefusedCase{"end of the text ignored", "12mm"}, RefusedCase{"two signs taken", "+-1"},
                    RefusedCase{"sign alone taken", "-"}, RefusedCase{"overflow taken for infinity", "1e400"},
                    RefusedCase{"hexadecimal taken", "0x10"},
                    RefusedCase{"wide digit taken", QStringLiteral(u"\uff11")},
                    RefusedCase{"short group taken", "1,23"}, RefusedCase{"long group taken", "1234,567"},
                    RefusedCase{"group behind the point taken", "1.234,567"},
                    RefusedCase{"group at the start taken", ",123"},
                    RefusedCase{"point of another locale taken", "1.5", {german}},
                    RefusedCase{"two points taken", "1.2.3"}));

TEST(Convert, NumbersComeBackBitForBit)
{
    std::mt19937_64 random(1);
    for (int i = 0; i < 100'000; ++i)
    {
        const auto number = std::bit_cast<double>(random());
        const auto shorter = std::bit_cast<float>(static_cast<std::uint32_t>(random()));
        double back = 0;
        float shorterBack = 0;
        if (!std::isnan(number))
        {
            ASSERT_TRUE(FromString(ToString(number), back)) << number;
            ASSERT_EQ(std::bit_cast<std::uint64_t>(back), std::bit_cast<std::uint64_t>(number));
        }
        if (!std::isnan(shorter))
        {
            ASSERT_TRUE(FromString(ToString(shorter), shorterBack)) << shorter;
            ASSERT_EQ(std::bit_cast<std::uint32_t>(shorterBack), std::bit_cast<std::uint32_t>(shorter));
        }
    }
    double nan = 0;
    EXPECT_TRUE(FromString(ToString(std::nan("")), nan) && std::isnan(nan));
}

TEST(Convert, IntegersAreReadWhereTheyFit)
{
    EXPECT_EQ(ToString(std::numeric_limits<qint64>::min()), "-9223372036854775808");
    EXPECT_EQ(ToString(std::numeric_limits<quint64>::max()), "18446744073709551615");
    EXPECT_EQ(ToString(static_cast<signed char>(-5)), "-5");
    EXPECT_EQ(ToString(-1234567, {QLocale::c(), {}, 0, true}), "-1,234,567");
    int number = 7;
    EXPECT_TRUE(FromString(u"+1.234", number, {german}) && number == 1234);
    quint8 small = 7;
    for (const char* text : {"256", "-1", "1.0", "1e1", "", "9223372036854775808"})
        EXPECT_FALSE(FromString(QString(text), small)) << text;
    EXPECT_EQ(small, 7);
    quint64 large = 0;
    EXPECT_TRUE(FromString(u"18446744073709551615", large) && large == std::numeric_limits<quint64>::max());
    EXPECT_FALSE(FromString(u"18446744073709551616", large));
    bool isTrue = false;
    EXPECT_TRUE(FromString(u"TRUE", isTrue) && isTrue);
    EXPECT_FALSE(FromString(u"2", isTrue));
    EXPECT_EQ(GetNumberOfDecimals(u"1,250 mm", {german}), 3);
    EXPECT_EQ(GetNumberOfDecimals(u"1250"), 0);
}

TEST(Convert, ListsComeBackWhateverStandsInThem)
{
    const QStringList texts{"a; b", "", " blank ", "\"quoted\"", "plain", ";"};
    QStringList back;
    EXPECT_EQ(ToString(texts), R"("a; b"; ""; " blank "; """quoted"""; plain; ";")");
    EXPECT_TRUE(FromString(ToString(texts), back));
    EXPECT_EQ(back, texts);
    EXPECT_TRUE(FromString(u"", back) && back.isEmpty());
    ListUnitNumberOptions options;
    options.locale = german;
    options.separator = QStringLiteral(" | ");
    std::vector<double> numbers;
    EXPECT_TRUE(FromString(u"1,5|2", numbers, options));
    EXPECT_EQ(ToString(numbers, options), "1,5 | 2");
    for (const char* const blank : {"", " "}) // cannot be told from the text around
    {
        options.separator = blank;
        EXPECT_EQ(ToString(numbers, options), "1,5; 2");
        EXPECT_TRUE(FromString(u"1,5; 2", numbers, options));
    }
    for (const char* text : {"1;x", "1;;2", "1;", "\"1", "\"1\"2"})
        EXPECT_FALSE(FromString(QString(text), numbers)) << text;
    EXPECT_EQ(numbers, (std::vector{1.5, 2.0}));
}

TEST(Convert, VariantsOfAllKindsHaveTexts)
{
    const std::vector<std::pair<QVariant, QString>> rows{
        {QVariant(), ""},
        {true, "true"},
        {0.1F, "0.1"},
        {"text", "text"},
        {QByteArray("a\0\xff%", 4), "a%00%FF%25"},
        {QStringList{"a", "b; c"}, "a; \"b; c\""},
        {QVariantList{1, QVariant(QVariantList{2, 3})}, "1; [2]"},
        {QVariantMap{{"k", 1}, {"m", QVariantMap{{"x", 1}}}}, "k: 1; m: {1}"},
        {QPointF(0.5, -1), "0.5; -1"},
        {QRect(1, 2, 3, 4), "1; 2; 3; 4"},
        {QDate(2026, 11, 21), "2026-11-21"},
        {QUuid("{67c8770b-44f1-410a-ab9a-f9b5446f13ee}"), "{67c8770b-44f1-410a-ab9a-f9b5446f13ee}"},
        {QVariant::fromValue(Qt::Vertical), "Vertical"},
        {QVariant::fromValue(QPair<QVariant, QVariant>(1, 2)),
         "QVariant(QVariantPair, std::pair(QVariant(int, 1),QVariant(int, 2)))"},
    };
    for (const auto& [value, text] : rows)
    {
        EXPECT_EQ(ToString(value), text);
        QVariant back = "before";
        const bool isRead = FromString(text, value.metaType(), back);
        const bool hasText =
            value.isValid() && !text.contains(u'[') && !text.contains(u'{') && !text.startsWith(u'Q');
        if (hasText)
        {
            EXPECT_TRUE(isRead && back == value) << text.toStdString();
        }
        else if (!isRead)
        {
            EXPECT_EQ(back, QVariant("before"));
        }
    }
    QVariant value;
    EXPECT_FALSE(FromString(u"1; 2; 3", QMetaType::fromType<QPointF>(), value));
    EXPECT_FALSE(FromString(u"Sideways", QMetaType::fromType<Qt::Orientation>(), value));
}
} // namespace
} // namespace vek::Convert
