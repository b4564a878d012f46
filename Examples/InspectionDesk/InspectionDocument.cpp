#include "InspectionDocument.h"
#include "InspectionDesk/NumberText.h"
#include "VekAppCore/Data/VekQVariantMap.h"
#include <QDataStream>
#include <QFileInfo>
#include <QSaveFile>
#include <bit>
#include <cmath>
#include <cstring>

namespace vek::Desk
{
namespace
{
using namespace Qt::StringLiterals;
static_assert(std::endian::native == std::endian::little, "Points lie in a document as they do in memory");

constexpr auto streamVersion = QDataStream::Qt_6_0;
constexpr qint64 mostPointBytes = 0xfffffffe; // this stream version has no more in one value

const QString& DocumentType()
{
    static const QString type = u"InspectionDesk.Inspection"_s;
    return type;
}

std::vector<double> ToList(const Eigen::Vector3d& vector) { return {vector.begin(), vector.end()}; }

App::VekQVariant ToTree(const InspectionDocument& document)
{
    const Inspection& inspection = *document.inspection;
    const qint64 size = inspection.flat.size() * qint64{sizeof(double)};
    if (size > mostPointBytes)
        FailReading(TrString::translate("InspectionDesk", "a document cannot hold as many points"));
    App::VekQVariantMap map;
    map.SetType(DocumentType());
    map.SetValue(u"Title"_s, document.title);
    map.SetValue(u"Unit"_s, Convert::ToString(Unit::LengthUnit::Millimeter));
    map.SetValue(u"Centre"_s, ToList(inspection.centre));
    map.SetValue(u"Normal"_s, ToList(inspection.normal));
    map.SetValue(u"Points"_s, // not a copy: the inspection outlives the tree
                 QByteArray::fromRawData(reinterpret_cast<const char*>(inspection.flat.data()), size));
    return App::VekQVariant::From(map);
}

App::VekQVariant ReadTree(QIODevice& file)
{
    QDataStream stream(&file);
    stream.setVersion(streamVersion);
    App::VekQVariant tree;
    try
    {
        stream >> tree;
    }
    catch (const Exception::WrongVersionException&)
    {
        // Where the stream has run out, the version is merely missing.
        if (stream.status() == QDataStream::Ok)
            FailReading(
                TrString::translate("InspectionDesk", "this is no document, or one of a newer version"));
    }
    if (stream.status() != QDataStream::Ok || !stream.atEnd())
        FailReading(TrString::translate("InspectionDesk", "the document is cut off or damaged"));
    return tree;
}

InspectionDocument FromTree(const App::VekQVariant& tree)
{
    if (!tree.Is<App::VekQVariantMap>() || tree.AsConst<App::VekQVariantMap>().GetType() != DocumentType())
        FailReading(TrString::translate("InspectionDesk", "this is no document of an inspection"));
    const auto& map = tree.AsConst<App::VekQVariantMap>();
    const auto get = [&map]<typename T>(const QString& key, T) {
        auto value = map.GetValue<T>(key);
        if (!value)
            FailReading(
                TrString::translate("InspectionDesk", "the document has no valid value \"%1\"").Arg(key));
        return std::move(*value);
    };
    const auto title = get(u"Title"_s, QString());
    const auto unit = get(u"Unit"_s, Unit::LengthUnit::Millimeter);
    const auto centre = get(u"Centre"_s, std::vector<double>());
    const auto normal = get(u"Normal"_s, std::vector<double>());
    const auto bytes = get(u"Points"_s, QByteArray());
    constexpr qsizetype pointSize = 3 * sizeof(double);
    if (centre.size() != 3 || normal.size() != 3 || bytes.isEmpty() || bytes.size() % pointSize != 0)
        FailReading(TrString::translate("InspectionDesk", "the document has values of a wrong size"));

    if (!Unit::IsReal(unit))
        FailReading(TrString::translate("InspectionDesk", "the document has no valid value \"Unit\""));
    const double millimetres = Unit::GetValueIn(1.0, unit, Unit::LengthUnit::Millimeter);
    Inspection inspection{};
    inspection.centre = Eigen::Vector3d(centre.data()) * millimetres;
    inspection.normal = Eigen::Vector3d(normal.data());
    inspection.flat.resize(3, bytes.size() / pointSize);
    std::memcpy(inspection.flat.data(), bytes.data(), static_cast<std::size_t>(bytes.size()));
    inspection.flat *= millimetres;
    inspection.Measure();
    const Eigen::Vector3d extent = inspection.highest - inspection.lowest;
    // None of these points is drawn where one has no place: NaN, or so far that squares overflow, or a line.
    if (!inspection.centre.allFinite() || std::abs(inspection.normal.norm() - 1.0) > 1e-6 ||
        !std::isfinite(inspection.flat.squaredNorm()) || !std::isnormal(extent.x() * extent.y()))
        FailReading(
            TrString::translate("InspectionDesk", "the document has points that do not span a plane"));
    return MakeDocument(title, std::move(inspection));
}
} // namespace

InspectionDocument MakeDocument(const QString& title, Inspection inspection)
{
    InspectionReport report = inspection.GetReport();
    report.title = title;
    return {title, std::make_shared<const Inspection>(std::move(inspection)), std::move(report)};
}

bool IsDocument(const QString& path)
{
    return QFileInfo(path).suffix().compare(documentExtension, Qt::CaseInsensitive) == 0;
}

void WriteDocument(const QString& path, const InspectionDocument& document,
                   Threading::IProgression& progression)
{
    NameInFailures(path, [&] {
        QSaveFile file(path);
        const auto fail = [&file] {
            FailReading(
                TrString::translate("InspectionDesk", "it cannot be written (%1)").Arg(file.errorString()));
        };
        if (!file.open(QIODevice::WriteOnly))
            fail();
        QDataStream stream(&file);
        stream.setVersion(streamVersion);
        stream << ToTree(document);
        progression.SetProgression(90); // may end the work; the file of before stays
        if (stream.status() != QDataStream::Ok || !file.commit())
            fail();
    });
}

InspectionDocument ReadDocument(const QString& path, Threading::IProgression& progression)
{
    return NameInFailures(path, [&] {
        QFile file(path);
        if (!QFileInfo(path).isFile())
            FailReading(TrString::translate("InspectionDesk", "there is no such file"));
        if (!file.open(QIODevice::ReadOnly))
            FailReading(
                TrString::translate("InspectionDesk", "it cannot be read (%1)").Arg(file.errorString()));
        const App::VekQVariant tree = ReadTree(file);
        progression.SetProgression(percentOfReading);
        return FromTree(tree);
    });
}
} // namespace vek::Desk
