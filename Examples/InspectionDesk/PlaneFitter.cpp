#include "InspectionDesk/IPlaneFitter.h"
#include "VekAppCore/App/Exception.h"
#include "VekAppCore/App/RegisterService.h"
#include <Eigen/Eigenvalues>
#include <Eigen/Geometry>

namespace vek::Desk
{
namespace
{
using namespace Qt::StringLiterals;

// Below this, the second largest scatter is what rounding leaves of a straight line.
constexpr double leastScatterRatio = 1e-13;

/// A rule that noise does not turn around: one component at least is larger than 0.5.
Eigen::Vector3d Orient(const Eigen::Vector3d& normal)
{
    for (const double component : {normal.z(), normal.y(), normal.x()})
        if (std::abs(component) > 0.5)
            return std::copysign(1.0, component) * normal;
    return normal;
}

[[noreturn]] void Refuse(const PointCloud& points)
{
    throw Exception::AppException(
        TrString::translate("InspectionDesk", "The points do not span a plane (%1 points)")
            .Arg(points.size()));
}

class PlaneFitter final : public IPlaneFitter
{
public:
    Inspection Fit(const PointCloud& points, Threading::IProgression& progression) const override
    {
        if (points.empty())
            Refuse(points);
        const auto count = static_cast<Eigen::Index>(points.size());
        const Eigen::Map<const Eigen::Matrix3Xd> matrix(points[0].data(), 3, count);
        Inspection result{};
        result.centre = matrix.rowwise().sum() / static_cast<double>(count);
        // Around the centre: far from the origin, squares of plain coordinates would swallow the form error.
        const Eigen::Matrix3Xd offsets = matrix.colwise() - result.centre;
        progression.SetProgression(percentOfReading + 5); // may end the work
        const Eigen::SelfAdjointEigenSolver<Eigen::Matrix3d> solver(offsets * offsets.transpose());
        const double least = solver.eigenvalues()[1];
        const double most = solver.eigenvalues()[2];
        // Written so that NaN, which an overflow leads to, is refused as well.
        if (!(least > leastScatterRatio * most))
            Refuse(points);

        result.normal = Orient(solver.eigenvectors().col(0));
        progression.SetProgression(percentOfReading + 10);
        result.flat = result.GetAxes().transpose() * offsets;
        progression.SetProgression(percentOfReading + 15);
        result.Measure();
        return result;
    }
};

VEK_DECLARE_SERVICE(IPlaneFitter, PlaneFitter);
} // namespace

void Inspection::Measure()
{
    lowest = flat.rowwise().minCoeff();
    highest = flat.rowwise().maxCoeff();
    standardDeviation = flat.row(2).norm() / std::sqrt(static_cast<double>(flat.cols()));
}

Eigen::Matrix3d Inspection::GetAxes() const
{
    const bool isAcrossX = std::abs(normal.x()) > 0.9;
    Eigen::Matrix3d axes;
    axes.col(2) = normal;
    axes.col(1) = normal.cross(isAcrossX ? Eigen::Vector3d::UnitY() : Eigen::Vector3d::UnitX()).normalized();
    axes.col(0) = axes.col(1).cross(axes.col(2));
    return axes;
}

InspectionReport Inspection::GetReport() const
{
    constexpr auto unit = Unit::LengthUnit::Millimeter;
    const auto getExtreme = [&](Eigen::Index column) -> InspectionReport::Extreme {
        const Eigen::Vector3d place = centre + GetAxes() * flat.col(column);
        return {Unit::Length(flat(2, column), unit), {place.x(), place.y(), place.z(), unit}};
    };
    InspectionReport report;
    report.points = flat.cols();
    report.flatness = Unit::Length(highest.z() - lowest.z(), unit);
    report.standardDeviation = Unit::Length(standardDeviation, unit);
    Eigen::Index column = 0;
    flat.row(2).maxCoeff(&column);
    report.highest = getExtreme(column);
    flat.row(2).minCoeff(&column);
    report.lowest = getExtreme(column);
    return report;
}
} // namespace vek::Desk
