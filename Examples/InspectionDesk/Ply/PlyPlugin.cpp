#include "InspectionDesk/IPointCloudReader.h"
#include "InspectionDesk/NumberText.h"
#include "VekAppCore/App/DeclarationSystem.h"
#include "VekAppCore/App/Exception.h"
#include "VekAppCore/App/InitExtension.h"
#include <QByteArrayList>
#include <array>
#include <bit>
#include <cstring>

namespace vek::Desk
{
namespace
{
using namespace Qt::StringLiterals;
static_assert(std::endian::native == std::endian::little, "Binary numbers are taken as they lie in the file");

constexpr std::size_t longestHeader = 64 * 1024;
constexpr std::size_t rowsPerStep = 8192;

struct ScalarType
{
    const char* name;
    const char* otherName;
    std::size_t size;
    double (*load)(const char* bytes);
};

template <typename T>
double Load(const char* bytes)
{
    T value;
    std::memcpy(&value, bytes, sizeof(T));
    return static_cast<double>(value);
}

constexpr std::array<ScalarType, 8> scalarTypes{{{"char", "int8", 1, Load<qint8>},
                                                 {"uchar", "uint8", 1, Load<quint8>},
                                                 {"short", "int16", 2, Load<qint16>},
                                                 {"ushort", "uint16", 2, Load<quint16>},
                                                 {"int", "int32", 4, Load<qint32>},
                                                 {"uint", "uint32", 4, Load<quint32>},
                                                 {"float", "float32", 4, Load<float>},
                                                 {"double", "float64", 8, Load<double>}}};

/// Null for a name that is none.
const ScalarType* FindType(const QByteArray& name)
{
    for (const ScalarType& type : scalarTypes)
        if (name == type.name || name == type.otherName)
            return &type;
    return nullptr;
}

struct Property
{
    const ScalarType* type;
    const ScalarType* countType; ///< Of a list; null for a single number.
    qsizetype axis;              ///< Which coordinate it is, 0 to 2; -1 for none.
};

struct Element
{
    QByteArray name;
    quint64 count;
    std::vector<Property> properties;
};

struct Header
{
    bool isBinary = false;
    std::vector<Element> elements;
};

/// False when the line does not belong into a header.
bool ReadHeaderLine(const QByteArrayList& words, Header& header)
{
    const bool isList = words.size() == 5 && words[1] == "list";
    bool isGood = true;
    if (words[0] == "format" && words.size() == 3)
    {
        header.isBinary = words[1] == "binary_little_endian";
        return header.isBinary || words[1] == "ascii";
    }
    if (words[0] == "element" && words.size() == 3)
        header.elements.push_back({words[1], words[2].toULongLong(&isGood), {}});
    else if (words[0] == "property" && (isList || words.size() == 3) && !header.elements.empty())
    {
        const qsizetype axis = isList ? -1 : QByteArrayList{"x", "y", "z"}.indexOf(words[2]);
        const Property property{FindType(words[isList ? 3 : 1]), isList ? FindType(words[2]) : nullptr, axis};
        header.elements.back().properties.push_back(property);
        return property.type && (!isList || property.countType);
    }
    else
        return words[0] == "comment" || words[0] == "obj_info" || words[0] == "end_header";
    return isGood;
}

// Numbers come from the front of the bytes: of the rest of a binary file, or of one line of an ASCII file.

bool TakeNumber(std::string_view& bytes, bool isBinary, const ScalarType& type, double& value)
{
    if (!isBinary)
        return Desk::TakeNumber(bytes, value);
    if (bytes.size() < type.size)
        return false;
    value = type.load(bytes.data());
    bytes.remove_prefix(type.size);
    return std::isfinite(value);
}

// Whatever they are: a normal that is not finite does no harm.
bool SkipNumbers(std::string_view& bytes, bool isBinary, const ScalarType& type, double count)
{
    if (!(count >= 0.0 &&
          count * (isBinary ? static_cast<double>(type.size) : 1.0) <= static_cast<double>(bytes.size())))
        return false;
    if (isBinary)
        bytes.remove_prefix(static_cast<std::size_t>(count) * type.size);
    for (; !isBinary && count >= 1.0; --count)
    {
        SkipBlanks(bytes);
        if (bytes.empty())
            return false;
        bytes.remove_prefix(std::min(bytes.find_first_of(blanks), bytes.size()));
    }
    return true;
}

bool TakeRow(std::string_view& bytes, bool isBinary, const Element& element, Eigen::Vector3d& point)
{
    for (const auto& [type, countType, axis] : element.properties)
    {
        double count = 1.0;
        if (countType && !TakeNumber(bytes, isBinary, *countType, count))
            return false;
        if (axis < 0 ? !SkipNumbers(bytes, isBinary, *type, count)
                     : !TakeNumber(bytes, isBinary, *type, point[axis]))
            return false;
    }
    if (isBinary)
        return true;
    SkipBlanks(bytes);
    return bytes.empty();
}

/// The bytes that a row takes at least.
std::size_t GetSmallestRow(const Element& element, bool isBinary)
{
    std::size_t size = 0;
    for (const auto& [type, countType, axis] : element.properties)
        size += !isBinary ? std::string_view("1 ").size() : countType ? countType->size : type->size;
    return size;
}

/// The vertices of an ASCII or binary little-endian file. All else in it is skipped, and must be whole.
PointCloud ReadPly(std::string_view content, const QString& name, const Progress& progress)
{
    const auto fail = [&name](const QString& problem) {
        throw Exception::AppException(TrString::NoTranslate(u"%1: %2"_s.arg(name, problem)));
    };

    std::string_view rest = content;
    if (!TakeLine(rest).starts_with("ply"))
        fail(u"this is not a PLY file"_s);
    Header header;
    for (QByteArrayList words; words.value(0) != "end_header";)
    {
        if (rest.empty() || content.size() - rest.size() > longestHeader)
            fail(u"the header has no end"_s);
        const std::string_view line = TakeLine(rest).substr(0, longestHeader);
        words = QByteArray(line.data(), static_cast<qsizetype>(line.size())).simplified().split(' ');
        if (!ReadHeaderLine(words, header))
            fail(u"this header line is not understood: %1"_s.arg(
                QString::fromLatin1(words.join(' ').left(80))));
    }
    const bool isBinary = header.isBinary;
    if (!isBinary) // line feeds behind the last row are no data
        rest = rest.substr(0, rest.find_last_not_of(" \t\r\n") + 1);

    PointCloud points;
    for (const Element& element : header.elements)
    {
        const QString title = QString::fromLatin1(element.name);
        const bool isVertex = element.name == "vertex";
        for (qsizetype axis = 0; isVertex && axis < 3; ++axis)
            if (std::ranges::count(element.properties, axis, &Property::axis) != 1)
                fail(u"a vertex needs x, y and z, each once"_s);
        // The count may be a lie: found out before it costs memory or time. The last line may lack its end.
        const std::size_t smallestRow = GetSmallestRow(element, isBinary);
        if (element.count > 0 && (smallestRow == 0 || element.count > (rest.size() + 1) / smallestRow))
            fail(u"the file is too short for %1 rows of %2"_s.arg(element.count).arg(title));
        if (isVertex)
            points.reserve(points.size() + element.count);
        for (quint64 row = 1; row <= element.count; ++row)
        {
            Eigen::Vector3d point;
            std::string_view line = isBinary ? std::string_view() : TakeLine(rest);
            if (!TakeRow(isBinary ? rest : line, isBinary, element, point))
                fail(u"%1 %2 is cut off or has wrong numbers"_s.arg(title).arg(row));
            if (isVertex)
                points.push_back(point);
            if (row % rowsPerStep == 0)
                progress(1.0 - static_cast<double>(rest.size()) / static_cast<double>(content.size()));
        }
    }
    if (!rest.empty())
        fail(u"there are more data than its header says"_s);
    return points;
}

[[maybe_unused]] const bool g_isDeclared = [] {
    App::DeclarationSystem::GetInstance().Append<IPointCloudReader>(
        [](IPointCloudReader& reader) {
            reader.AddFormat({{u"ply"_s}, ReadPly});
        },
        "PLY files");
    return true;
}();

class PlyPlugin final : public App::IAppPlugin
{};
} // namespace

VEK_PLUGIN(PlyPlugin)
} // namespace vek::Desk
