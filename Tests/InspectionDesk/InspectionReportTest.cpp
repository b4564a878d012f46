#include "InspectionDesk/InspectionReport.h"
#include "InspectionDesk/DeskFixture.h"
#include "VekAppCore/Xml/IXmlValidatorService.h"

namespace vek::Desk
{
class InspectionReportTest : public DeskFixture
{
protected:
    const IXmlValidatorService& m_validator = App::Services().Require<IXmlValidatorService>();
    const QByteArray m_golden = R"(<?xml version="1.0" encoding="UTF-8"?>
<InspectionReport version="1">
    <Title>A &amp; B</Title>
    <Points>8</Points>
    <Flatness>2 mm</Flatness>
    <StandardDeviation>0.5 mm</StandardDeviation>
    <Highest deviation="1 mm" x="20" y="20" z="6" unit="mm"/>
    <Lowest deviation="-1 mm" x="20" y="20" z="4" unit="mm"/>
    <Legend tolerance="12.5 µm">
        <Above r="178" g="24" b="43"/>
        <Below r="33" g="102" b="172"/>
    </Legend>
</InspectionReport>
)";
};

TEST_F(InspectionReportTest, IsWrittenAndReadAsItIsMeantToBe)
{
    const PointCloud points{{0, 0, 5},  {40, 0, 5},  {40, 40, 5}, {0, 40, 5},
                            {20, 0, 5}, {20, 40, 5}, {20, 20, 6}, {20, 20, 4}};
    InspectionReport report = App::Services().Require<IPlaneFitter>().Fit(points, m_progress).GetReport();
    report.title = "A & B";
    report.tolerance = Unit::Length(12.5, Unit::LengthUnit::Micrometer);
    report.above = QColor(178, 24, 43);
    report.below = QColor(33, 102, 172);
    const QString path = Write("r.xml", "before");
    WriteReport(path, report);
    EXPECT_EQ(TestSupport::ReadFile(path).toStdString(), m_golden.toStdString());

    const InspectionReport read = ReadReport(path, m_validator);
    EXPECT_EQ(read.GetFigures(), report.GetFigures());
    EXPECT_EQ(read.title, report.title);
    EXPECT_EQ(read.lowest.place, (Triplet{20, 20, 4, Unit::LengthUnit::Millimeter}));
    EXPECT_EQ(read.tolerance, report.tolerance);
    EXPECT_EQ(read.below, report.below);
}

TEST_F(InspectionReportTest, DamagedOneIsExplainedWithItsLine)
{
    const std::array<const char*, 3> rows[] = {
        {"</Flatness>", "</Flat>", "line 5: the XML is damaged"},
        {"2 mm", "2 parsec", "this is no valid report (Line 5: <Flatness> bad cast)"},
        {"x=\"20\" y=\"20\" z=\"4\"", "x=\"20\" y=\"?\" z=\"4\"",
         "this is no valid report (Line 8: <Lowest> unable to retrieve the value)"},
        {"<Title>", "<Author/><Title>",
         "this is no valid report (Line 3: <Author>: this element is not expected)"},
        {">8<", ">0<", "this is no valid report (Line 4: <Points>: this cannot be)"},
        {"2 mm", "inf mm", "this is no valid report (Line 5: <Flatness>: this cannot be)"},
        {"z=\"6\"", "z=\"nan\"", "this is no valid report (Line 7: <Highest>: this cannot be)"},
        {"12.5", "-12.5", "this is no valid report (Line 9: <Legend>: this cannot be)"},
        {"g=\"102\"", "g=\"1020\"",
         "this is no valid report (Line 11: <Below> unable to retrieve the value)"},
        {"version=\"1\"", "version=\"2\"", "this is a report of a newer version"},
        {"\xc2\xb5m", "\xb5m", "it cannot be read or is no XML text"},
        {"InspectionReport", "Other",
         "this is no valid report (Xml document does not contain the root element: <InspectionReport>)"}};
    for (const auto& [before, after, reason] : rows)
    {
        const QString path = Write("r.xml", QByteArray(m_golden).replace(before, after));
        EXPECT_EQ(GetRefusal(path, [&] { static_cast<void>(ReadReport(path, m_validator)); }), reason)
            << after;
    }
}
} // namespace vek::Desk
