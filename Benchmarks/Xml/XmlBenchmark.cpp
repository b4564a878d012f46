#include "Support/Pair.h"
#include "VekAppCore/Xml/XmlDocument.h"
#include <QXmlStreamReader>
#include <array>
#include <pugixml.hpp>
#include <random>

namespace vek
{
namespace
{
using Benchmark::Check;

constexpr std::array names{"x", "y", "z", "deviation"};
using Point = std::array<double, names.size()>;

/// 200,000 numbers as they are measured, all digits of them.
const std::vector<Point>& GetPoints()
{
    static const std::vector<Point> points = [] {
        std::mt19937 random(1);
        std::vector<Point> made(50'000);
        for (Point& point : made)
            for (double& number : point)
                number = std::uniform_real_distribution(-1000.0, 1000.0)(random);
        return made;
    }();
    return points;
}

double GetSum()
{
    double sum = 0;
    for (const Point& point : GetPoints())
        for (const double number : point)
            sum += number;
    return sum;
}

QString Write_Vek()
{
    XmlDocument document;
    XmlSerializer root = document.Serializer("points");
    for (const Point& point : GetPoints())
        root.Child("point", [&point](XmlSerializer& element) {
            for (std::size_t i = 0; i < names.size(); ++i)
                element.SetAttribute(names[i], point[i]);
        });
    return document.ToString(false);
}

QString Write_Tinyxml2()
{
    tinyxml2::XMLDocument document;
    document.InsertEndChild(document.NewDeclaration());
    tinyxml2::XMLElement* const root = document.NewElement("points");
    document.InsertEndChild(root);
    for (const Point& point : GetPoints())
    {
        tinyxml2::XMLElement* const element = root->InsertNewChildElement("point");
        for (std::size_t i = 0; i < names.size(); ++i)
            element->SetAttribute(names[i], point[i]);
    }
    tinyxml2::XMLPrinter printer(nullptr, true);
    document.Print(&printer);
    return QString::fromUtf8(printer.CStr(), printer.CStrSize() - 1);
}

/// A round: the document is built and printed.
template <typename Write>
void WriteAll(benchmark::State& state, Write write)
{
    QString text;
    for ([[maybe_unused]] auto _ : state)
        text = write();
    Check(state, text == Write_Tinyxml2(), "The text is wrong");
}
void WriteNumbers_Vek(benchmark::State& state) { WriteAll(state, Write_Vek); }
void WriteNumbers_Tinyxml2(benchmark::State& state) { WriteAll(state, Write_Tinyxml2); }

/// A round: the document is parsed and all its numbers are read.
template <typename Read>
void ReadAll(benchmark::State& state, Read read)
{
    const QByteArray utf8 = Write_Tinyxml2().toUtf8();
    double sum = 0;
    for ([[maybe_unused]] auto _ : state)
        sum = read(utf8);
    Check(state, sum == GetSum(), "A number is wrong");
}
void ReadNumbers_Vek(benchmark::State& state)
{
    ReadAll(state, [](const QByteArray& utf8) {
        const XmlDocument document = XmlDocument::FromString(QString::fromUtf8(utf8));
        double sum = 0;
        const auto add = [&sum](const XmlDeserializer& point) {
            for (const char* name : names)
                sum += point.GetAttribute<double>(name);
        };
        document.Deserialize("points").ForEachChild("point", add, true);
        return sum;
    });
}
void ReadNumbers_Tinyxml2(benchmark::State& state)
{
    ReadAll(state, [](const QByteArray& utf8) {
        tinyxml2::XMLDocument document;
        document.Parse(utf8.data(), static_cast<std::size_t>(utf8.size()));
        double sum = 0;
        const auto* point = document.FirstChildElement("points")->FirstChildElement("point");
        for (; point; point = point->NextSiblingElement("point"))
            for (const char* name : names)
            {
                double number = 0;
                if (point->QueryDoubleAttribute(name, &number) == tinyxml2::XML_SUCCESS)
                    sum += number;
            }
        return sum;
    });
}
void ReadNumbers_QXmlStreamReader(benchmark::State& state)
{
    ReadAll(state, [](const QByteArray& utf8) {
        QXmlStreamReader reader(utf8);
        double sum = 0;
        while (!reader.atEnd())
            if (reader.readNext() == QXmlStreamReader::StartElement && reader.name() == u"point")
            {
                const QXmlStreamAttributes attributes = reader.attributes();
                for (const char* name : names)
                    sum += attributes.value(QLatin1String(name)).toDouble();
            }
        return sum;
    });
}
void ReadNumbers_Pugixml(benchmark::State& state)
{
    ReadAll(state, [](const QByteArray& utf8) {
        pugi::xml_document document;
        document.load_buffer(utf8.data(), static_cast<std::size_t>(utf8.size()));
        double sum = 0;
        for (const pugi::xml_node& point : document.child("points").children("point"))
            for (const char* name : names)
                sum += point.attribute(name).as_double();
        return sum;
    });
}

/// A round: 50,000 children are visited.
void Walk_Vek(benchmark::State& state)
{
    const XmlDocument document = XmlDocument::FromString(Write_Vek());
    const XmlDeserializer root = document.Deserialize("points");
    std::size_t count = 0;
    for ([[maybe_unused]] auto _ : state)
    {
        count = 0;
        root.ForEachChild(
            "point", [&count](const XmlDeserializer& point) { count += point.HasAttribute("x"); }, true);
    }
    Check(state, count == GetPoints().size(), "A child was missed");
}
void Walk_Tinyxml2(benchmark::State& state)
{
    tinyxml2::XMLDocument document;
    document.Parse(Write_Tinyxml2().toUtf8().constData());
    const tinyxml2::XMLElement* const root = document.FirstChildElement("points");
    std::size_t count = 0;
    for ([[maybe_unused]] auto _ : state)
    {
        count = 0;
        for (const auto* point = root->FirstChildElement("point"); point;
             point = point->NextSiblingElement("point"))
            count += point->FindAttribute("x") != nullptr;
    }
    Check(state, count == GetPoints().size(), "A child was missed");
}

const Benchmark::Pairs pairs{
    {"Xml/ReadNumbers", "tinyxml2", 1.1, ReadNumbers_Vek, ReadNumbers_Tinyxml2},
    {"Xml/ReadNumbers", "QXmlStreamReader", 2.0, ReadNumbers_Vek, ReadNumbers_QXmlStreamReader},
    {"Xml/ReadNumbers", "pugixml", std::nullopt, ReadNumbers_Vek, ReadNumbers_Pugixml},
    {"Xml/Walk", "tinyxml2", 0.8, Walk_Vek, Walk_Tinyxml2},
    {"Xml/WriteNumbers", "tinyxml2", 1.0, WriteNumbers_Vek, WriteNumbers_Tinyxml2},
};
} // namespace
} // namespace vek
