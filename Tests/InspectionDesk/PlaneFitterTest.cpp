#include "InspectionDesk/DeskFixture.h"
#include <Eigen/Geometry>

namespace vek::Desk
{
using PlaneFitterTest = DeskFixture;

TEST_F(PlaneFitterTest, PlaneIsSeenAlongANormalThatHasARule)
{
    const struct
    {
        const char* fault;
        Eigen::Vector3d centre, x, y, normal; ///< Of a rectangle of 4 x 2.
    } rows[] = {{"left as the solver turns it", {1, 2, 3}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}},
                {"wall towards y has no rule", {0, 0, 0}, {0, 0, 1}, {1, 0, 0}, {0, 1, 0}},
                {"noise turns that of a wall", {0, 0, 0}, {1, 0, 0}, {0, 0.28, 0.96}, {0, 0.96, -0.28}},
                {"wall across x has no axis", {0, 0, 0}, {0, 0, 1}, {0, 1, 0}, {1, 0, 0}},
                {"plain coordinates squared", {1e7, -1e7, 1e7}, {0.8, 0, -0.6}, {0, 1, 0}, {0.6, 0, 0.8}}};
    for (const auto& [fault, centre, x, y, normal] : rows)
    {
        SCOPED_TRACE(fault);
        const double turn = x.cross(y).dot(normal);
        const Eigen::Vector3d up = 0.2 * normal; // two corners: the plane lies between, each 0.1 away from it
        const Inspection twist = App::Services().Require<IPlaneFitter>().Fit(
            {centre - 2 * x - y + up, centre + 2 * x - y, centre + 2 * x + y + up, centre - 2 * x + y},
            m_progress);
        EXPECT_LT((twist.normal - normal).norm(), 1e-7) << twist.normal.transpose();
        EXPECT_LT((twist.centre - centre - up / 2).norm(), 1e-7) << twist.centre.transpose();
        const Eigen::Vector3d side = twist.flat.col(1) - twist.flat.col(0);
        EXPECT_NEAR(side.cross(twist.flat.col(2) - twist.flat.col(1)).z(), 8.0 * turn, 1e-7) << "mirrored";
        EXPECT_LT((twist.flat.row(2) - Eigen::RowVector4d(0.1, -0.1, 0.1, -0.1)).norm(), 1e-7);
    }
}

TEST_F(PlaneFitterTest, RefusesPointsWithoutAPlane)
{
    const PointCloud clouds[] = {{}, // the mean of nothing
                                 {{1, 2, 3}, {1, 2, 3}, {1, 2, 3}},
                                 {{0, 0, 0}, {1, 0, 0}},
                                 {{100.237, 200.491, 301.013}, // rounding makes the line a little wide
                                  {100.374, 200.782, 301.726},
                                  {101.196, 202.528, 306.004}},
                                 {{1e300, 0, 0}, {0, 1e300, 0}, {0, 0, 1e300}}}; // squares that overflow
    const IPlaneFitter& fitter = App::Services().Require<IPlaneFitter>();
    for (const PointCloud& points : clouds)
        EXPECT_THROW(static_cast<void>(fitter.Fit(points, m_progress)), Exception::AppException)
            << points.size();
}
} // namespace vek::Desk
