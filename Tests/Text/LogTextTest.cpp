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
/// A line for each value, as all three print it.
template <typename... T>
std::string Print(const T&... values)
{
    QString byQDebug;
    (static_cast<void>(QDebug(&byQDebug).nospace() << values << '\n'), ...);
    std::string byFmt;
    ((byFmt += fmt::format("{}\n", values)), ...);
    EXPECT_EQ(byQDebug.toStdString(), byFmt);
    EXPECT_EQ(((testing::PrintToString(values) + '\n') + ...), byFmt);
    return byFmt;
}

App::VekQVariantMap MakeMap()
{
    App::VekQVariantMap map;
    map["b"] = App::VekQVariant::From(QString("ä"));
    map["a"] = App::VekQVariant::From(App::VekQVariantList{{}, {}});
    return map;
}

struct Watched : SafeObject
{};

TEST(LogText, IsPrintedByAllThree)
{
    TrString dead = TrString::NoTranslate("x");
    const TrString taken = std::move(dead);
    App::VekQVariant shared;
    shared.Share();
    EXPECT_EQ(Print(dead, Bool(true), TrString::NoTranslate("µ \"%1\"").Arg(2), AsciiStringView("Width")),
              "\nYes\nµ \"2\"\nWidth\n");
    using namespace Unit;
    EXPECT_EQ(Print(Length(-0.5, LengthUnit::Micrometer), Area(2, AreaUnit::Feet2),
                    Volume(2, VolumeUnit::Liter), Angle(90, AngleUnit::Degree), Percent(5), Radian{0.5},
                    Triplet{1, 2.5, -3, {}}),
              "-0.5 µm\n2 ft²\n2 l\n90°\n5 %\n0.5 rad\n1; 2.5; -3\n");
    EXPECT_EQ(Print(LengthUnit::Miles, AreaUnit::Micrometer2, VolumeUnit::BarrelOilUS, AngleUnit{1},
                    PercentUnit::END),
              "Miles\nMicrometer2\nBarrelOilUS\n1\n2\n");
    using namespace Convert;
    EXPECT_EQ(Print(ENotation::Scientific, ExtractedNumberInfo{.value = 1.5, .text = "mm"},
                    DoubleWithPrefix{"dz", 2}, DoubleWithPrefix{"", 2}),
              "Scientific\n1.5 mm\ndz=2\n2\n");
    using namespace App;
    EXPECT_EQ(
        Print(HPath("a//b"), VekQVariant::From(2.5), shared, MakeMap(),
              VekQVariantList{VekQVariant::From(1), {}}),
        "a/b\nVekQVariant(\"double\", \"2.5\")\nVekQVariant(shared, \"\", \"\")\n{a: [2]; b: ä}\n[1; \"\"]\n");
    EXPECT_EQ(Print(EVariantStoreFormat::Readable, EAppType::Beta, EExceptionType::GeneralError,
                    SettingsPath{"Ostrafel", "Desk 2.0"}, DeclarationInfo{"Context", "Reader", {}, {}},
                    NotifierMessage{TrString::translate("C", "Saved"), Log::Verbosity::Info,
                                    TrString::NoTranslate("Desk"), "a.bin"}),
              "Readable\nBeta\nGeneralError\nOstrafel/Desk 2.0\nContext: Reader\nInfo: Saved (Desk) a.bin\n");
    EXPECT_EQ(Print(Log::Verbosity::Trace, Log::Verbosity{0}, Log::Verbosity{6},
                    Multithread::TBBHelper::ETaskGroupStatus::Canceled,
                    Threading::EEventToTreat::ExcludeUserInput, SignalBase::EPriority::Default,
                    SignalBase::EPriority(1)),
              "Trace\n0\n6\nCanceled\nExcludeUserInput\nDefault\n1\n");
    EXPECT_EQ(Print(RawPtr<Watched>(), XmlFinding{3, "Line 3: no Width"},
                    XmlException::Place{12, "Width", "plate.xml"}),
              "(vek::(anonymous namespace)::Watched*) null\nLine 3: no Width\nplate.xml:12: Width\n");
    using namespace Analytics;
    EXPECT_EQ(
        Print(ApplicationMode::Demonstration, EApplicationParameter::HostName, EApplicationParameter{13},
              GoogleAnalyticsService::Sent{{}, "/batch", "v=1"}, CustomDimension{2, "CAD"},
              CustomMetric{3, "7"}, Analytics4Query::Event{.name = "open", .parameters = {{"a b", 1}}}),
        "Demonstration\nHostName\n13\n/batch v=1\n2: CAD\n3: 7\n{\"name\":\"open\",\"params\":{\"a_b\":1}}\n");
}

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
