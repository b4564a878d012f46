#include "Support/TestSupport.h"
#include "VekAppCore/Data/VekQVariantMap.h"
#include <QColor>
#include <QDateTime>
#include <QKeySequence>
#include <QRectF>
#include <QTimeZone>
#include <QUuid>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <map>
#include <unordered_map>

namespace vek::App
{
// Without names: their numbers are all that is kept.
enum class Plain : short;
enum class Wide : quint64;
enum class Flag : bool;

/// Known to nobody but the specialisation below.
struct Temperature
{
    double kelvin = 0;
    bool operator==(const Temperature&) const = default;
};

template <>
struct VariantConverter<Temperature>
{
    static QVariant ToVariant(const Temperature& value, EVariantStoreFormat)
    {
        return Convert::ToString(value.kelvin) + " K";
    }
    static std::optional<Temperature> FromVariant(const QVariant& variant)
    {
        Temperature read;
        const QString text = variant.toString();
        if (!text.endsWith(" K") || !Convert::FromString(text.chopped(2), read.kelvin))
            return std::nullopt;
        return read;
    }
};

namespace
{
/// Stores a value in both formats, with what a readable one is kept as.
template <typename T>
void CheckBothFormats(const T& value, const QVariant& readable)
{
    SCOPED_TRACE(QMetaType::fromType<T>().name() ? QMetaType::fromType<T>().name() : "own type");
    const std::optional<T> whole(std::in_place, value);
    VekQVariantMap map;
    map.SetValue("k", value);
    EXPECT_EQ(map.GetValue<T>("k"), whole);
    map.SetPreferedStoreFormat(EVariantStoreFormat::Readable);
    EXPECT_EQ(map.GetValue<T>("k"), whole) << "the other form is not read";
    map.SetValue("k", value);
    EXPECT_EQ(map.GetValue<T>("k"), whole);
    EXPECT_EQ(map["k"].ToQVariant().metaType(), readable.metaType());
    EXPECT_EQ(map["k"].ToQVariant(), readable) << map["k"].ToString().toStdString();
}

TEST(TypedAccess, ValuesComeBackFromBothFormats)
{
    CheckBothFormats(true, true);
    CheckBothFormats(-5, -5);
    CheckBothFormats(std::numeric_limits<quint64>::max(), std::numeric_limits<quint64>::max());
    CheckBothFormats(short(-3), QString("-3"));
    CheckBothFormats(0.1, 0.1);
    CheckBothFormats(0.1F, QString("0.1"));
    CheckBothFormats(QString(" text; "), QString(" text; "));
    CheckBothFormats(std::string("\xc3\x84"), QStringLiteral(u"\u00c4"));
    CheckBothFormats(QStringList{"a", "b"}, QVariantList{"a", "b"});
    CheckBothFormats(QByteArray("\0\xff", 2), QByteArray("\0\xff", 2));
    CheckBothFormats(QDateTime({2026, 11, 21}, {1, 2, 3, 4}, Qt::UTC), QString("2026-11-21T01:02:03.004Z"));
    CheckBothFormats(QColor(1, 2, 3, 4), QString("#04010203"));
    CheckBothFormats(QRectF(0.1, 1, 2, 3), QString("0.1; 1; 2; 3"));
    CheckBothFormats(Qt::Horizontal, QString("Horizontal"));
    CheckBothFormats(Qt::Alignment(Qt::AlignHCenter | Qt::AlignTop), QString("AlignHCenter|AlignTop"));
    CheckBothFormats(Plain(-1), qint64(-1));
    CheckBothFormats(Wide(~quint64(0)), qint64(-1));
    CheckBothFormats(Flag(true), qint64(1));
    const auto unnamed = static_cast<QLocale::Language>(60'000);
    CheckBothFormats(unnamed, QVariant::fromValue(unnamed));
    CheckBothFormats(QUuid(), QUuid().toString());
    CheckBothFormats(QKeySequence("Ctrl+O"), QString("Ctrl+O"));
    const QDateTime inZone({2026, 7, 1}, {12, 0}, QTimeZone("Europe/Paris"));
    CheckBothFormats(inZone, inZone); // text keeps the offset only
    CheckBothFormats(std::optional<int>(3), 3);
    CheckBothFormats(std::optional<int>(), QVariant());
    CheckBothFormats(std::vector{0.5, 1e300}, QVariantList{0.5, 1e300});
    CheckBothFormats(std::vector<Qt::Orientation>{Qt::Vertical}, QString("Vertical")); // a list of one
    CheckBothFormats(std::vector<std::vector<int>>{{1, 2}, {}}, QVariantList{"1; 2", ""});
    CheckBothFormats(std::map<QString, int>{{"a", 1}, {"b", 2}}, QVariantList{"a", 1, "b", 2});
    CheckBothFormats(std::unordered_map<std::string, int>{{"a", 1}}, QVariantList{"a", 1});
    CheckBothFormats(std::map<std::string, Plain, std::less<>>{{"a", Plain(7)}},
                     QVariantList{"a", qint64(7)});
    CheckBothFormats(std::vector<bool>{true, false}, QVariantList{true, false});
    CheckBothFormats(QList<float>{0.1F, 2}, QVariantList{"0.1", "2"});
    CheckBothFormats(QMap<QString, float>{{"a", 0.1F}}, QVariantList{"a", "0.1"});
    CheckBothFormats(QVariantMap{{"a", 1}}, QVariantMap{{"a", 1}});
    CheckBothFormats(Temperature{0.1}, QString("0.1 K"));
}

template <typename T>
void CheckReadings(std::initializer_list<std::pair<QVariant, std::optional<T>>> readings)
{
    for (const auto& [kept, value] : readings)
        EXPECT_EQ(VariantConverter<T>::FromVariant(kept), value)
            << kept.typeName() << ' ' << Convert::ToString(kept).toStdString();
}

TEST(TypedAccess, WhatDoesNotFitIsNoValue)
{
    CheckReadings<int>({{"12", 12}, {" 12 ", 12}, {12.0, 12}, {quint64(12), 12}});
    CheckReadings<int>({{"12a", {}}, {"", {}}, {12.5, {}}, {1e300, {}}, {std::nan(""), {}}, {true, {}}});
    CheckReadings<int>({{qint64(1) << 31, {}}, {"2147483648", {}}, {QVariantList{1}, {}}, {QVariant(), {}}});
    CheckReadings<quint8>({{255, 255}, {256, {}}, {-1, {}}, {"-1", {}}});
    CheckReadings<bool>({{"true", true}, {"False", false}, {"1", true}, {"yes", {}}, {"", {}}, {1, {}}});
    CheckReadings<double>({{"1e3", 1000.0}, {3, 3.0}, {"1e400", {}}, {"1,5", {}}, {"0x10", {}}});
    CheckReadings<double>({{(qint64(1) << 53) + 1, {}}, {qint64(1) << 60, std::ldexp(1.0, 60)}});
    CheckReadings<float>({{0.1, 0.1F}, {1e300, {}}, {std::numeric_limits<double>::infinity(), INFINITY}});
    CheckReadings<QUuid>({{"no identifier", {}}});
    CheckReadings<QKeySequence>({{"no keys", {}}});
    CheckReadings<QString>({{5, {}}, {QStringList{"a"}, {}}});
    CheckReadings<QStringList>({{"a; b", QStringList{"a; b"}}, {QVariant(), QStringList()}, {5, {}}});
    CheckReadings<Qt::Orientation>(
        {{"Vertical", Qt::Vertical}, {2, Qt::Vertical}, {3, {}}, {"vertical", {}}});
    CheckReadings<Plain>({{7, Plain(7)}, {"7", Plain(7)}, {70'000, {}}, {"High", {}}});
    CheckReadings<QDate>({{"2026-11-21", QDate(2026, 11, 21)}, {"2026-13-21", {}}, {"", {}}});
    CheckReadings<std::vector<int>>({{"7", std::vector{7}}, {QVariant(), std::vector<int>()}});
    CheckReadings<std::vector<int>>({{QStringList{"1", "x"}, {}}, {QVariantList{1, 2.5}, {}}});
    CheckReadings<std::vector<int>>({{QVariant::fromValue(QList<int>{1, 2}), std::vector{1, 2}}});
    using Map = std::map<QString, int>;
    CheckReadings<Map>({{QVariantList{"a"}, {}}, {QVariantList{"a", "x"}, {}}, {5, {}}});
    CheckReadings<Map>({{QVariantList{"a", 1, "a", 2}, {}}, {QVariantList{1, 1}, {}}});
    CheckReadings<Map>({{QVariantHash{{"a", 1}}, Map{{"a", 1}}}, {QVariantMap{{"a", "x"}}, {}}});
    CheckReadings<Temperature>({{"1 C", {}}, {5, {}}});
}

TEST(TypedAccess, DefaultStandsInAndGroupsCount)
{
    VekQVariantMap map;
    map.BeginGroup("g");
    map.SetValue("k", 5);
    map.SetValue("text", "literal");
    map.SetValue("none", QVariant());
    EXPECT_EQ(map.GetValue("k", 1), 5);
    EXPECT_EQ(map.GetValue("k", QString("default")), "default");
    EXPECT_EQ(map.GetValue("absent", 1.5), 1.5);
    EXPECT_EQ(map.GetValue("text", "default"), "literal");
    EXPECT_EQ(map.GetValue("absent", "default"), "default");
    map.SetValue("1", QStringView(u"view"));
    map.SetValue("2", QLatin1String("view"));
    map.SetValue("3", std::string_view("views", 4));
    map.SetValue("4", std::string("view").c_str());
    for (const char* key : {"1", "2", "3", "4"})
        EXPECT_EQ(map.GetValueAsVariant(key), VekQVariant::From(QString("view"))) << key;
    EXPECT_FALSE(map.GetValue<int>("none"));
    EXPECT_FALSE(map.GetValue<std::vector<int>>("absent"));
    map.EndGroup();
    EXPECT_EQ(map.GetValue<int>("g/k"), 5);
    VekQVariant shared = VekQVariant::From(1);
    shared.Share();
    map.SetValue("s", shared);
    EXPECT_TRUE(map.GetValue<VekQVariant>("s")->IsShared());
}
} // namespace
} // namespace vek::App
