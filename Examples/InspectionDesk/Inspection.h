#pragma once
#include "InspectionDesk/IPlaneFitter.h"
#include <QRectF>
#include <utility>

namespace vek::Desk
{
/// A point as seen along the normal of the plane, in millimetres from the plane's centre.
struct FlatPoint
{
    float x;
    float y;
    double deviation; ///< Signed distance from the plane, positive on the side of the normal.
};

/// A point cloud compared with its plane. Lengths in millimetres.
struct Inspection
{
    QString file;
    Plane plane;
    std::vector<FlatPoint> points; ///< In the order of the file.
    QRectF bounds;                 ///< Of the flat points; its top is the lowest y.
    FlatPoint lowest;              ///< The point with the lowest deviation.
    FlatPoint highest;
    double standardDeviation;
    double readSeconds;
    double fitSeconds;

    [[nodiscard]] double GetFlatness() const { return highest.deviation - lowest.deviation; }
    /// The largest deviation to either side.
    [[nodiscard]] double GetLimit() const { return std::max(highest.deviation, -lowest.deviation); }
    /// Names and values for people.
    [[nodiscard]] std::vector<std::pair<QString, QString>> GetFigures() const;
};

/// Reads a file, fits the plane and measures every point. Any thread.
/// @throws Exception::AppException  see the services.
[[nodiscard]] Inspection Inspect(const IPointCloudReader& reader, const IPlaneFitter& fitter,
                                 const QString& file, const Progress& progress);
} // namespace vek::Desk
