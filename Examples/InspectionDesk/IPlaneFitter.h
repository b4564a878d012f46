#pragma once
#include "InspectionDesk/IPointCloudReader.h"

namespace vek::Desk
{
/// A plane with axes of its own. The axes and the normal are right-handed unit vectors.
struct Plane
{
    Eigen::Vector3d centre; ///< Of the points it was fitted to.
    Eigen::Vector3d normal; ///< The first of its z, y and x that is clearly not 0 is positive.
    Eigen::Vector3d xAxis;  ///< The direction in the plane that is nearest to the x axis of space, or to y.
    Eigen::Vector3d yAxis;
};

/// Fits planes. Any thread, once the application has started.
class IPlaneFitter : public App::IService<IPlaneFitter>
{
public:
    /// The plane with the least sum of squared distances.
    /// @throws Exception::AppException  the points do not span a plane.
    [[nodiscard]] virtual Plane Fit(const PointCloud& points) const = 0;
};
} // namespace vek::Desk
