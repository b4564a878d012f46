#include "InspectionDesk/IPlaneFitter.h"
#include "VekAppCore/App/Exception.h"
#include "VekAppCore/App/RegisterService.h"
#include <Eigen/Eigenvalues>
#include <Eigen/Geometry>

namespace vek::Desk
{
namespace
{
// Below this, the second largest scatter is what rounding leaves of a straight line.
constexpr double leastScatterRatio = 1e-13;
// In square millimetres; beyond, the figures would not fit the numbers that they are drawn with.
constexpr double leastScatter = 1e-30;
constexpr double mostScatter = 1e60;

/// A rule that noise does not turn around: one component at least is larger than 0.5.
Eigen::Vector3d Orient(const Eigen::Vector3d& normal)
{
    for (const double component : {normal.z(), normal.y(), normal.x()})
        if (std::abs(component) > 0.5)
            return component < 0.0 ? Eigen::Vector3d(-normal) : normal;
    return normal;
}

class PlaneFitter final : public IPlaneFitter
{
public:
    Plane Fit(const PointCloud& points) const override
    {
        Plane plane;
        plane.centre.setZero();
        for (const Eigen::Vector3d& point : points)
            plane.centre += point;
        plane.centre /= static_cast<double>(points.size());

        // Around the centre: far from the origin, squares of plain coordinates would swallow the form error.
        Eigen::Matrix3d scatter = Eigen::Matrix3d::Zero();
        for (const Eigen::Vector3d& point : points)
        {
            const Eigen::Vector3d offset = point - plane.centre;
            scatter += offset * offset.transpose();
        }
        const Eigen::SelfAdjointEigenSolver<Eigen::Matrix3d> solver(scatter);
        const double least = solver.eigenvalues()[1];
        const double most = solver.eigenvalues()[2];
        // Written so that NaN, which no points or an overflow lead to, is refused as well.
        const bool isPlane = least > leastScatterRatio * most && most > leastScatter && most < mostScatter;
        if (!isPlane || points.size() < 3)
            throw Exception::AppException(
                TrString::translate("InspectionDesk", "The points do not span a plane (%1 points)")
                    .Arg(points.size()));

        plane.normal = Orient(solver.eigenvectors().col(0));
        const bool isAcrossX = std::abs(plane.normal.x()) > 0.9;
        plane.yAxis =
            plane.normal.cross(isAcrossX ? Eigen::Vector3d::UnitY() : Eigen::Vector3d::UnitX()).normalized();
        plane.xAxis = plane.yAxis.cross(plane.normal);
        return plane;
    }
};

VEK_DECLARE_SERVICE(IPlaneFitter, PlaneFitter);
} // namespace
} // namespace vek::Desk
