#include "InspectionDesk/IPointCloudReader.h"
#include "InspectionDesk/NumberText.h"
#include "VekAppCore/App/DeclarationSystem.h"
#include "VekAppCore/App/InitExtension.h"
#include "VekAppCore/Threading/StepProgression.h"
#include <QByteArrayList>
#include <QMap>
#include <bit>
#include <cstring>

namespace vek::Desk
{
namespace
{
using namespace Qt::StringLiterals;
static_assert(std::endian::native == std::endian::little, "Binary numbers are taken as they lie in the file");

constexpr std::size_t longestHeaderLine = 1024;
constexpr std::size_t rowsPerStep = 8192;

/// Takes a number from the front of the bytes; false when it is cut off or none.
using TakeFunction = bool (*)(std::string_view& bytes, double& value);

template <typename T>
bool TakeBinary(std::string_view& bytes, double& value)
{
    T number;
    if (bytes.size() < sizeof(T))
        return false;
    std::memcpy(&number, bytes.data(), sizeof(T));
    bytes.remove_prefix(sizeof(T));
    value = static_cast<double>(number);
    return true;
}

/// Null for a name that is none.
TakeFunction FindType(const QByteArray& name, bool isBinary)
{
    static const QMap<QByteArray, TakeFunction> types{
        {"char", TakeBinary<qint8>},     {"int8", TakeBinary<qint8>},     {"uchar", TakeBinary<quint8>},
        {"uint8", TakeBinary<quint8>},   {"short", TakeBinary<qint16>},   {"int16", TakeBinary<qint16>},
        {"ushort", TakeBinary<quint16>}, {"uint16", TakeBinary<quint16>}, {"int", TakeBinary<qint32>},
        {"int32", TakeBinary<qint32>},   {"uint", TakeBinary<quint32>},   {"uint32", TakeBinary<quint32>},
        {"float", TakeBinary<float>},    {"float32", TakeBinary<float>},  {"double", TakeBinary<double>},
        {"float64", TakeBinary<double>}};
    const TakeFunction take = types.value(name);
    return take && !isBinary ? TakeNumber : take;
}

struct Property
{
    TakeFunction take;
    TakeFunction takeCount; ///< Of a list; null for a single number.
    qsizetype axis;         ///< Which coordinate it is, 0 to 2; -1 for none.
};

struct Element
{
    QByteArray name;
    quint64 count;
    std::vector<Property> properties;
};

std::vector<Element> TakeHeader(std::string_view& rest, bool& isBinary)
{
    if (!TakeLine(rest).starts_with("ply"))
        FailReading(TrString::translate("InspectionDeskPly", "this is not a PLY file"));
    std::vector<Element> elements;
    while (!rest.empty())
    {
        const std::string_view line = TakeLine(rest).substr(0, longestHeaderLine);
        const QByteArrayList words =
            QByteArray(line.data(), static_cast<qsizetype>(line.size())).simplified().split(' ');
        bool isGood = words[0] == "comment" || words[0] == "obj_info";
        if (words[0] == "end_header")
            return elements;
        if (words[0] == "format")
        {
            isBinary = words.value(1) == "binary_little_endian";
            isGood = isBinary || words.value(1) == "ascii";
        }
        else if (words[0] == "element")
            elements.push_back({words.value(1), words.value(2).toULongLong(&isGood), {}});
        else if (words[0] == "property" && !elements.empty())
        {
            const bool isList = words.value(1) == "list";
            const Property property{FindType(words.value(isList ? 3 : 1), isBinary),
                                    isList ? FindType(words.value(2), isBinary) : nullptr,
                                    isList ? -1 : QByteArrayList{"x", "y", "z"}.indexOf(words.value(2))};
            elements.back().properties.push_back(property);
            isGood = property.take && (!isList || property.takeCount);
        }
        if (!isGood)
            FailReading(TrString::translate("InspectionDeskPly", "this header line is not understood: %1")
                            .Arg(QString::fromLatin1(words.join(' ').left(80))));
    }
    FailReading(TrString::translate("InspectionDeskPly", "the header has no end"));
}

/// A list longer than the bytes ends where they do: its count may be a lie.
bool TakeRow(std::string_view& bytes, const Element& element, Eigen::Vector3d& point)
{
    for (const auto& [take, takeCount, axis] : element.properties)
    {
        double count = 1.0;
        if (takeCount && !(takeCount(bytes, count) && count >= 0.0))
            return false;
        for (double value = 0.0; count >= 1.0; --count)
        {
            if (!take(bytes, value))
                return false;
            if (axis >= 0)
                point[axis] = value;
        }
    }
    return !element.properties.empty(); // rows of nothing would never come to the end of the file
}

/// The vertices of an ASCII or binary little-endian file. All else in it is skipped, and must be whole.
PointCloud ReadPly(std::string_view content, Threading::IProgression& progression)
{
    Threading::StepProgression bytes(progression, content.size(), 0, percentOfReading);
    std::size_t told = 0;
    std::string_view rest = content;
    bool isBinary = false;
    const std::vector<Element> elements = TakeHeader(rest, isBinary);
    if (!isBinary) // line feeds behind the last row are no data
        rest = rest.substr(0, rest.find_last_not_of(" \t\r\n") + 1);

    PointCloud points;
    for (const Element& element : elements)
    {
        const bool isVertex = element.name == "vertex";
        for (qsizetype axis = 0; isVertex && axis < 3; ++axis)
            if (std::ranges::count(element.properties, axis, &Property::axis) != 1)
                FailReading(TrString::translate("InspectionDeskPly", "a vertex needs x, y and z, each once"));
        for (quint64 row = 1; row <= element.count; ++row)
        {
            Eigen::Vector3d point = Eigen::Vector3d::Zero();
            std::string_view line = isBinary ? std::string_view() : TakeLine(rest);
            if (!TakeRow(isBinary ? rest : line, element, point) || !line.empty() || !point.allFinite())
                FailReading(TrString::translate("InspectionDeskPly", "%1 %2 is cut off or has wrong numbers")
                                .Arg(QString::fromLatin1(element.name))
                                .Arg(row));
            if (isVertex)
                points.push_back(point);
            if (row % rowsPerStep == 0)
                bytes.Advance(content.size() - rest.size() -
                              std::exchange(told, content.size() - rest.size()));
        }
    }
    if (!rest.empty())
        FailReading(TrString::translate("InspectionDeskPly", "there are more data than its header says"));
    return points;
}

[[maybe_unused]] const bool g_isDeclared = [] {
    App::DeclarationSystem::GetInstance().Append<IPointCloudReader>(
        [](IPointCloudReader& reader) { reader.AddFormat(u"ply"_s, ReadPly); }, "PLY files");
    return true;
}();
} // namespace

VEK_PLUGIN(App::IAppPlugin)
} // namespace vek::Desk
