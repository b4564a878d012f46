#include "Support/TestSupport.h"
#include "VekAppCore/Text/Format.h"
#include "VekAppCore/VekAppCore.h"
#include "VekBase/VekBase.h"
#include <QDebug>
#include <QJsonValue>
#include <fmt/ranges.h>
#include <gtest/gtest.h>

namespace vek
{
namespace
{
struct PrintCase
{
    std::string expected;
    std::string byQDebug;
    std::string byFmt;
    std::string byGoogleTest;
};
void PrintTo(const PrintCase& row, std::ostream* out) { *out << row.expected; }

template <typename T>
PrintCase Case(const T& value, std::string expected)
{
    QString debug;
    QDebug(&debug).nospace() << value;
    return {std::move(expected), debug.toStdString(), fmt::format("{}", value),
            testing::PrintToString(value)};
}

class LogText : public testing::TestWithParam<PrintCase>
{};

TEST_P(LogText, IsPrintedByAllThree)
{
    EXPECT_EQ(GetParam().byQDebug, GetParam().expected);
    EXPECT_EQ(GetParam().byFmt, GetParam().expected);
    EXPECT_EQ(GetParam().byGoogleTest, GetParam().expected);
}

App::VekQVariantMap MakeMap()
{
    App::VekQVariantMap map;
    map["b"] = App::VekQVariant::From(QString("ä"));
    map["a"] = App::VekQVariant::From(App::VekQVariantList{{}, {}});
    return map;
}

App::VekQVariant Share(App::VekQVariant node)
{
    node.Share();
    return node;
}

TrString MakeDead()
{
    TrString text = TrString::NoTranslate("x");
    const TrString taken = std::move(text);
    return text;
}

struct Watched : SafeObject
{};

INSTANTIATE_TEST_SUITE_P(
    Text, LogText,
    testing::Values(Case(Bool(true), "Yes"), Case(TrString::NoTranslate("µ \"%1\"").Arg(2), "µ \"2\""),
                    Case(MakeDead(), ""), Case(Unit::Length(-0.5, Unit::LengthUnit::Micrometer), "-0.5 µm"),
                    Case(Unit::Area(2, Unit::AreaUnit::Feet2), "2 ft²"),
                    Case(Unit::Volume(2, Unit::VolumeUnit::Liter), "2 l"),
                    Case(Unit::Angle(90, Unit::AngleUnit::Degree), "90°"), Case(Unit::Percent(5), "5 %"),
                    Case(Unit::Radian{0.5}, "0.5 rad"), Case(Unit::LengthUnit::Miles, "Miles"),
                    Case(Unit::AreaUnit::Micrometer2, "Micrometer2"),
                    Case(Unit::VolumeUnit::BarrelOilUS, "BarrelOilUS"), Case(Unit::AngleUnit{1}, "1"),
                    Case(Unit::PercentUnit::END, "2"), Case(Triplet{1, 2.5, -3, {}}, "1; 2.5; -3"),
                    Case(Convert::ENotation::Scientific, "Scientific"),
                    Case(Convert::ExtractedNumberInfo{.value = 1.5, .text = "mm"}, "1.5 mm"),
                    Case(Convert::DoubleWithPrefix{"dz", 2}, "dz=2"),
                    Case(Convert::DoubleWithPrefix{"", 2}, "2")));

INSTANTIATE_TEST_SUITE_P(
    Data, LogText,
    testing::Values(Case(App::HPath("a//b"), "a/b"),
                    Case(App::VekQVariant::From(2.5), R"(VekQVariant("double", "2.5"))"),
                    Case(Share({}), R"(VekQVariant(shared, "", ""))"), Case(MakeMap(), "{a: [2]; b: ä}"),
                    Case(App::VekQVariantList{App::VekQVariant::From(1), {}}, R"([1; ""])"),
                    Case(App::EVariantStoreFormat::Readable, "Readable")));

INSTANTIATE_TEST_SUITE_P(
    Others, LogText,
    testing::Values(
        Case(RawPtr<Watched>(), "(vek::(anonymous namespace)::Watched*) null"),
        Case(Log::Verbosity::Trace, "Trace"), Case(Log::Verbosity{0}, "0"), Case(Log::Verbosity{6}, "6"),
        Case(Multithread::TBBHelper::ETaskGroupStatus::Canceled, "Canceled"),
        Case(Threading::EEventToTreat::ExcludeUserInput, "ExcludeUserInput"),
        Case(App::EAppType::Beta, "Beta"), Case(App::EAppType{-1}, "-1"),
        Case(App::EExceptionType::GeneralError, "GeneralError"),
        Case(App::NotifierMessage{TrString::translate("C", "Saved"), Log::Verbosity::Info,
                                  TrString::NoTranslate("Desk"), "a.bin"},
             "Info: Saved (Desk) a.bin"),
        Case(App::SettingsPath{"Ostrafel", "Desk 2.0"}, "Ostrafel/Desk 2.0"),
        Case(AsciiStringView("Width"), "Width"), Case(XmlFinding{3, "Line 3: no Width"}, "Line 3: no Width"),
        Case(XmlException::Place{12, "Width", "plate.xml"}, "plate.xml:12: Width"),
        Case(Analytics::ApplicationMode::Demonstration, "Demonstration"),
        Case(Analytics::EApplicationParameter::HostName, "HostName"),
        Case(Analytics::EApplicationParameter{13}, "13"),
        Case(Analytics::GoogleAnalyticsService::Sent{{}, "/batch", "v=1"}, "/batch v=1"),
        Case(App::DeclarationInfo{"Context", "Reader", {}, {}}, "Context: Reader"),
        Case(Analytics::CustomDimension{2, "CAD"}, "2: CAD"), Case(Analytics::CustomMetric{3, "7"}, "3: 7"),
        Case(Analytics::Analytics4Query::Event{.name = "open", .parameters = {{"a b", 1}}},
             R"({"name":"open","params":{"a_b":1}})")));

TEST(LogText, OfAPointerIsItsAddress)
{
    Watched watched;
    const RawPtr<Watched> pointer(&watched);
    EXPECT_EQ(testing::PrintToString(pointer),
              fmt::format("(vek::(anonymous namespace)::Watched*) {}", fmt::ptr(&watched)));
    // Everything in vek converts to a Bool by its address.
    const Bool* const null = nullptr;
    QString debug;
    QDebug(&debug) << null;
    EXPECT_EQ(debug, "0x0 ");
    static_assert(!HasLogText<Triplet[3]> && !HasLogText<double Triplet::*> &&
                  !HasLogText<void (*)(Triplet)>);
}

TEST(LogText, IsThatOfTheItemsWithinContainers)
{
    const std::vector<std::optional<Unit::Length>> lengths{Unit::Length(1, Unit::LengthUnit::Inch), {}};
    EXPECT_EQ(testing::PrintToString(lengths), "{ (1 in), (nullopt) }");
    EXPECT_EQ(fmt::format("{}", std::vector{MakeMap()}), "[{a: [2]; b: ä}]");
    QString debug;
    QDebug(&debug).nospace() << QList<App::HPath>{"a/b", "c"};
    EXPECT_EQ(debug, "QList(a/b, c)");
}
} // namespace
} // namespace vek
