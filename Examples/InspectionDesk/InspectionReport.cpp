#include "InspectionReport.h"
#include "InspectionDesk/NumberText.h"
#include "VekAppCore/App/DeclarationSystem.h"
#include "VekAppCore/Xml/IXmlValidatorService.h"
#include <QFileInfo>
#include <cmath>

namespace vek::Desk
{
namespace
{
using namespace Qt::StringLiterals;

constexpr AsciiStringView root("InspectionReport");
constexpr int version = 1;

[[maybe_unused]] const bool isDeclared = [] {
    App::DeclarationSystem::GetInstance().Append<IXmlValidatorService>([](IXmlValidatorService& validator) {
        const auto length = [](const char* name) { return XmlDescription(name).Value<Unit::Length>(); };
        const auto extreme = [](const char* name) {
            return XmlDescription(name).Attribute<Unit::Length>("deviation").Value<Triplet>();
        };
        const auto colour = [](const char* name) { return XmlDescription(name).Value<QColor>(); };
        validator.Declare(XmlDescription(root)
                              .Attribute<int>("version")
                              .Child(XmlDescription("Title").OptionalValue<QString>())
                              .Child(XmlDescription("Points").Value<qint64>())
                              .Child(length("Flatness"))
                              .Child(length("StandardDeviation"))
                              .Child(extreme("Highest"))
                              .Child(extreme("Lowest"))
                              .Child(XmlDescription("Legend")
                                         .Attribute<Unit::Length>("tolerance")
                                         .Child(colour("Above"))
                                         .Child(colour("Below"))));
    });
    return true;
}();

void Write(XmlSerializer& element, const InspectionReport& report)
{
    const auto write = [](XmlSerializer& parent, const char* name, const auto& value) {
        parent.Child(name, [&value](XmlSerializer& child) { child.SetValue(value); });
    };
    const auto writeExtreme = [&element](const char* name, const InspectionReport::Extreme& extreme) {
        element.Child(name, [&extreme](XmlSerializer& child) {
            child.SetAttribute("deviation", extreme.deviation);
            child.SetValue(extreme.place);
        });
    };
    element.SetVersion(version);
    write(element, "Title", report.title);
    write(element, "Points", report.points);
    write(element, "Flatness", report.flatness);
    write(element, "StandardDeviation", report.standardDeviation);
    writeExtreme("Highest", report.highest);
    writeExtreme("Lowest", report.lowest);
    element.Child("Legend", [&](XmlSerializer& legend) {
        legend.SetAttribute("tolerance", report.tolerance);
        write(legend, "Above", report.above);
        write(legend, "Below", report.below);
    });
}

/// Each of these would be shown, or drawn, as what it is not.
bool IsSound(const QString&) { return true; }
bool IsSound(qint64 points) { return points > 0; }
bool IsSound(const QColor& colour) { return colour.isValid(); }
bool IsSound(const Unit::Length& length)
{
    return std::isfinite(length.GetValueIn(Unit::LengthUnit::Millimeter));
}
bool IsSound(const Triplet& place) { return std::isfinite(place.GetNorm()) && place.unit; }

void Require(const XmlDeserializer& element, bool isSound)
{
    if (!isSound)
        element.Throw(u"this cannot be"_s);
}

/// @param reason  in English: what is wrong with its XML.
[[noreturn]] void FailAsInvalid(const TrString& reason)
{
    FailReading(TrString::translate("InspectionDesk", "this is no valid report (%1)").Arg(reason));
}

InspectionReport Read(const XmlDeserializer& element)
{
    InspectionReport report;
    const auto read = [](const XmlDeserializer& parent, const char* name, auto& value) {
        const auto visit = [&value](const XmlDeserializer& child) {
            child.GetValue(value, false);
            Require(child, IsSound(value));
        };
        parent.Child(name, visit, true);
    };
    const auto readExtreme = [&element](const char* name, InspectionReport::Extreme& extreme) {
        const auto visit = [&extreme](const XmlDeserializer& child) {
            child.GetAttribute("deviation", extreme.deviation, true);
            child.GetValue(extreme.place, true);
            Require(child, IsSound(extreme.deviation) && IsSound(extreme.place));
        };
        element.Child(name, visit, true);
    };
    read(element, "Title", report.title);
    read(element, "Points", report.points);
    read(element, "Flatness", report.flatness);
    read(element, "StandardDeviation", report.standardDeviation);
    readExtreme("Highest", report.highest);
    readExtreme("Lowest", report.lowest);
    const auto readLegend = [&](const XmlDeserializer& legend) {
        legend.GetAttribute("tolerance", report.tolerance, true);
        Require(legend, IsSound(report.tolerance) && report.tolerance.GetValue() >= 0.0);
        read(legend, "Above", report.above);
        read(legend, "Below", report.below);
    };
    element.Child("Legend", readLegend, true);
    return report;
}
} // namespace

std::vector<std::pair<TrString, QString>> InspectionReport::GetFigures(const ShownUnit& unit) const
{
    Convert::NumberOptions options;
    options.locale = StringUtility::GetQSystemLocale();
    options.hasGroupSeparators = true;
    const auto toText = [&unit](const Unit::Length& length) {
        return ToText(length.GetValueIn(Unit::LengthUnit::Millimeter), unit);
    };
    return {{TrString::translate("InspectionDesk", "Points"), Convert::ToString(points, options)},
            {TrString::translate("InspectionDesk", "Flatness"), toText(flatness)},
            {TrString::translate("InspectionDesk", "Standard deviation"), toText(standardDeviation)},
            {TrString::translate("InspectionDesk", "Highest deviation"), toText(highest.deviation)},
            {TrString::translate("InspectionDesk", "Lowest deviation"), toText(lowest.deviation)}};
}

bool IsReport(const QString& path)
{
    return QFileInfo(path).suffix().compare(reportExtension, Qt::CaseInsensitive) == 0;
}

void WriteReport(const QString& path, const InspectionReport& report)
{
    NameInFailures(path, [&] {
        XmlDocument document;
        XmlSerializer element = document.Serializer(root);
        Write(element, report);
        if (!document.SaveFileReplacing(path, true))
            FailReading(TrString::translate("InspectionDesk", "it cannot be written"));
    });
}

InspectionReport ReadReport(const QString& path, const IXmlValidatorService& validator)
{
    return NameInFailures(path, [&] {
        if (!QFileInfo(path).isFile())
            FailReading(TrString::translate("InspectionDesk", "there is no such file"));
        XmlDocument document;
        try
        {
            document.LoadFile(path);
        }
        catch (const XmlException& exception)
        {
            const int line = exception.GetPlace().line;
            FailReading(line > 0
                            ? TrString::translate("InspectionDesk", "line %1: the XML is damaged").Arg(line)
                            : TrString::translate("InspectionDesk", "it cannot be read or is no XML text"));
        }
        try
        {
            const std::vector<XmlFinding> findings = validator.Validate(document, root);
            const XmlDeserializer element = document.Deserialize(root);
            if (element.GetVersion() > version)
                FailReading(TrString::translate("InspectionDesk", "this is a report of a newer version"));
            if (!findings.empty())
                FailAsInvalid(TrString::NoTranslate(findings.front().message));
            return Read(element);
        }
        catch (const XmlException& exception)
        {
            FailAsInvalid(exception.GetMessage());
        }
    });
}
} // namespace vek::Desk
