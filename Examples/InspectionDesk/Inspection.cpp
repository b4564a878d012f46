#include "InspectionDesk/Inspection.h"
#include <QElapsedTimer>
#include <QFileInfo>
#include <QLocale>
#include <algorithm>

namespace vek::Desk
{
namespace
{
using namespace Qt::StringLiterals;

constexpr double partOfReading = 0.9; // of the whole time

void Measure(const PointCloud& points, Inspection& inspection)
{
    double sumOfSquares = 0.0;
    inspection.points.reserve(points.size());
    for (const Eigen::Vector3d& point : points)
    {
        const Eigen::Vector3d offset = point - inspection.plane.centre;
        const double deviation = offset.dot(inspection.plane.normal);
        sumOfSquares += deviation * deviation;
        inspection.points.push_back({static_cast<float>(offset.dot(inspection.plane.xAxis)),
                                     static_cast<float>(offset.dot(inspection.plane.yAxis)), deviation});
    }
    inspection.standardDeviation = std::sqrt(sumOfSquares / static_cast<double>(points.size()));

    const auto [lowest, highest] = std::ranges::minmax(inspection.points, {}, &FlatPoint::deviation);
    inspection.lowest = lowest;
    inspection.highest = highest;
    const auto [left, right] = std::ranges::minmax(inspection.points, {}, &FlatPoint::x);
    const auto [bottom, top] = std::ranges::minmax(inspection.points, {}, &FlatPoint::y);
    inspection.bounds = QRectF(QPointF(left.x, bottom.y), QPointF(right.x, top.y));
}

QString ToText(double length) { return u"%1 mm"_s.arg(length, 0, 'f', 4); }

QString ToText(const Eigen::Vector3d& vector, int decimals)
{
    const auto number = [decimals](double value) { return QString::number(value, 'f', decimals); };
    return u"%1  %2  %3"_s.arg(number(vector.x()), number(vector.y()), number(vector.z()));
}
} // namespace

Inspection Inspect(const IPointCloudReader& reader, const IPlaneFitter& fitter, const QString& file,
                   const Progress& progress)
{
    Inspection inspection{};
    inspection.file = file;
    QElapsedTimer timer;
    timer.start();
    const PointCloud points = reader.Read(file, [&progress](double part) { progress(part * partOfReading); });
    inspection.readSeconds = static_cast<double>(timer.restart()) / 1000.0;
    progress(partOfReading);
    inspection.plane = fitter.Fit(points);
    Measure(points, inspection);
    inspection.fitSeconds = static_cast<double>(timer.elapsed()) / 1000.0;
    progress(1.0);
    return inspection;
}

std::vector<std::pair<QString, QString>> Inspection::GetFigures() const
{
    return {{u"File"_s, QFileInfo(file).fileName()},
            {u"Points"_s, QLocale(QLocale::English).toString(points.size())},
            {u"Flatness"_s, ToText(GetFlatness())},
            {u"Standard deviation"_s, ToText(standardDeviation)},
            {u"Highest deviation"_s, ToText(highest.deviation)},
            {u"Lowest deviation"_s, ToText(lowest.deviation)},
            {u"Normal"_s, ToText(plane.normal, 6)},
            {u"Centre"_s, ToText(plane.centre, 3) + u" mm"_s}};
}
} // namespace vek::Desk
