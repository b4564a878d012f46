#pragma once
#include "InspectionDesk/IPointCloudReader.h"
#include "InspectionDesk/InspectionReport.h"

namespace vek::Desk
{
/// A point cloud compared with its plane. Lengths in millimetres.
struct Inspection
{
    Eigen::Vector3d centre; ///< Of the points.
    Eigen::Vector3d normal; ///< Of length 1. The first of its z, y and x that is clearly not 0 is positive.
    Eigen::Matrix3Xd flat;  ///< A column a point, from the centre: x and y along the normal, deviation.
    Eigen::Vector3d lowest; ///< Of each row of flat; the deviation is positive on the side of the normal.
    Eigen::Vector3d highest;
    double standardDeviation;

    /// Takes what follows from flat: the bounds and the standard deviation.
    void Measure();

    /// Its columns are the directions of the rows of flat.
    [[nodiscard]] Eigen::Matrix3d GetAxes() const;

    /// Without title and legend.
    [[nodiscard]] InspectionReport GetReport() const;
};

/// Fits planes. Any thread, once the application has started.
class IPlaneFitter : public App::IService<IPlaneFitter>
{
public:
    /// Takes the plane with the least sum of squared distances. Reports from percentOfReading on.
    /// @throws Exception::AppException  the points do not span a plane.
    [[nodiscard]] virtual Inspection Fit(const PointCloud& points,
                                         Threading::IProgression& progression) const = 0;
};
} // namespace vek::Desk
