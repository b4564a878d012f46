#include "VekAppCore/Text/Convert.h"
#include "Support/TestSupport.h"
#include <QDateTime>
#include <QPointF>
#include <QRectF>
#include <QRegularExpression>
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

TEST(Convert, NumbersAreWrittenAndReadAgain)
{
    using enum ENotation;
    const QLocale c = QLocale::c();
    const QLocale french(QLocale::French, QLocale::France); // groups with U+202F
    const QLocale persian(QLocale::Persian);                // other digits and signs
    const struct
    {
        const char* fault;
        double value;
        NumberOptions options;
        QString text;
    } rows[] = {
        {"digits beyond the shortest", 0.1, {}, "0.1"},
        {"integer with an exponent", 100'000, {}, "100000"},
        {"zeros nobody reads", 1e16, {}, "1e+16"},
        {"small number in fixed notation", 0.000009, {}, "9e-06"},
        {"sign of zero lost", -0.0, {}, "-0"},
        {"infinity lost", -INFINITY, {}, "-inf"},
        {"greatest number cut off", 1.7976931348623157e308, {}, "1.7976931348623157e+308"},
        {"decimals cut", 12.5, {c, Fixed, 3}, "12.500"},
        {"negative decimals", 12.5, {c, Fixed, -1}, "12"},
        {"point without decimals", 0.5, {c, Scientific, 0}, "5e-01"},
        {"groups of the C locale left out", 1234567.5, {c, Shortest, 0, true}, "1,234,567.5"},
        {"separator before the first digit", -123456, {german, Fixed, 1, true}, "-123.456,0"},
        {"separator without being asked for", 1234.5, {german}, "1234,5"},
        {"separator of one byte", 1234.5, {french, Shortest, 0, true}, QStringLiteral(u"1\u202f234,5")},
        {"digits of the locale", -1.5, {persian}, "-1" + persian.decimalPoint() + "5"}};
    for (const auto& [fault, value, options, text] : rows)
    {
        EXPECT_EQ(ToString(value, options), text) << fault;
        double back = 0;
        EXPECT_TRUE(FromString(' ' + text + ' ', back, options)) << fault;
        EXPECT_EQ(ToString(back, options), text) << fault;
    }
}

TEST(Convert, WhatIsNoNumberLeavesTheValue)
{
    double value = 7;
    for (const char* text : {"", "  ", "12mm", "+-1", "-", "1e400", "0x10", "\xef\xbc\x91", "1,23", "1,2345",
                             "1234,567", "1.234,567", ",123", "1.2.3"})
        EXPECT_FALSE(FromString(QString(text), value, {})) << text;
    EXPECT_FALSE(FromString(u"1.5", value, {german}));
    EXPECT_EQ(value, 7);
}

TEST(Convert, NumbersComeBackBitForBit)
{
    std::mt19937_64 random(1);
    const auto check = []<typename Bits>(auto number, Bits) {
        decltype(number) back = 0;
        ASSERT_TRUE(FromString(ToString(number), back)) << number;
        ASSERT_EQ(std::isnan(back), std::isnan(number));
        ASSERT_EQ(std::bit_cast<Bits>(std::isnan(number) ? number : back), std::bit_cast<Bits>(number));
    };
    for (int i = 0; i < 100'000 && !HasFatalFailure(); ++i)
    {
        check(std::bit_cast<double>(random()), std::uint64_t());
        check(std::bit_cast<float>(static_cast<std::uint32_t>(random())), std::uint32_t());
    }
}

TEST(Convert, IntegersAreReadWhereTheyFit)
{
    EXPECT_EQ((QStringList{
                  ToString(std::numeric_limits<qint64>::min()), ToString(std::numeric_limits<quint64>::max()),
                  ToString(static_cast<signed char>(-5)), ToString(-1234567, {QLocale::c(), {}, 0, true})}),
              (QStringList{"-9223372036854775808", "18446744073709551615", "-5", "-1,234,567"}));
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
        const bool hasText = value.isValid() && !text.contains(QRegularExpression("\\{1}|\\[2]|^Q"));
        QVariant back = "before";
        EXPECT_EQ(FromString(text, value.metaType(), back), hasText) << text.toStdString();
        EXPECT_EQ(back, hasText ? value : "before") << text.toStdString();
    }
    QVariant value;
    EXPECT_FALSE(FromString(u"1; 2; 3", QMetaType::fromType<QPointF>(), value));
    EXPECT_FALSE(FromString(u"x", QMetaType::fromType<QUuid>(), value));
    EXPECT_FALSE(FromString(u"Sideways", QMetaType::fromType<Qt::Orientation>(), value));
}
} // namespace
} // namespace vek::Convert
