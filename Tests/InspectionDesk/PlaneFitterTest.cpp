#include "InspectionDesk/DeskFixture.h"
#include <Eigen/Geometry>

namespace vek::Desk
{
namespace
{
/// Four points of a rectangle of 4 x 2 around @p centre; two diagonal corners are lifted by @p height.
PointCloud MakeRectangle(const Eigen::Vector3d& centre, const Eigen::Vector3d& x, const Eigen::Vector3d& y,
                         double height)
{
    const Eigen::Vector3d up = height * x.cross(y).normalized();
    return {centre - 2 * x - y + up, centre + 2 * x - y, centre + 2 * x + y + up, centre - 2 * x + y};
}

struct PlaneCase
{
    const char* fault;
    Eigen::Vector3d centre;
    Eigen::Vector3d x;
    Eigen::Vector3d y;
    Eigen::Vector3d normal;
};
void PrintTo(const PlaneCase& row, std::ostream* out) { *out << row.fault; }

class PlaneFitterPlane : public testing::TestWithParam<PlaneCase>, public DeskFixture
{};

TEST_P(PlaneFitterPlane, HasTheNormalAndIsSeenAlongIt)
{
    const auto& [fault, centre, x, y, normal] = GetParam();
    const Inspection plane = GetFitter().Fit(MakeRectangle(centre, x, y, 0.0));
    EXPECT_LT((plane.normal - normal).norm(), 1e-9) << plane.normal.transpose();
    EXPECT_LT((plane.centre - centre).norm(), 1e-6) << plane.centre.transpose();
    // The corners run around as they do in space, and keep their distances.
    const double turn = x.cross(y).dot(normal);
    const Eigen::Vector3d side = plane.flat.col(1) - plane.flat.col(0);
    EXPECT_NEAR(side.cross(plane.flat.col(2) - plane.flat.col(1)).z(), 8.0 * turn, 1e-6);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, PlaneFitterPlane,
    testing::Values(
        PlaneCase{"normal left as the solver turns it", {1, 2, 3}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}},
        PlaneCase{"order of the points turns the normal", {1, 2, 3}, {0, 1, 0}, {1, 0, 0}, {0, 0, 1}},
        PlaneCase{"wall towards y has no rule", {0, 0, 0}, {0, 0, 1}, {1, 0, 0}, {0, 1, 0}},
        PlaneCase{
            "noise turns the normal of a wall", {0, 0, 0}, {1, 0, 0}, {0, 0.28, 0.96}, {0, 0.96, -0.28}},
        PlaneCase{"wall across x has no axis", {0, 0, 0}, {0, 0, 1}, {0, 1, 0}, {1, 0, 0}},
        PlaneCase{"tilted: z must be up", {5, 5, 5}, {0.8, 0, -0.6}, {0, 1, 0}, {0.6, 0, 0.8}},
        PlaneCase{"plain coordinates squared", {1e7, -1e7, 1e7}, {0.8, 0, -0.6}, {0, 1, 0}, {0.6, 0, 0.8}}));

class PlaneFitterTest : public testing::Test, public DeskFixture
{};

TEST_F(PlaneFitterTest, FiguresOfAHandMadeTwist)
{
    // Two corners up by 0.2: the plane lies between, every corner 0.1 away from it.
    const Inspection twist = GetFitter().Fit(MakeRectangle({10, 20, 30}, {1, 0, 0}, {0, 1, 0}, 0.2));
    EXPECT_NEAR(twist.centre.z(), 30.1, 1e-12);
    EXPECT_NEAR(twist.standardDeviation, 0.1, 1e-12);
    EXPECT_LT((twist.lowest - Eigen::Vector3d(-2, -1, -0.1)).norm(), 1e-12) << twist.lowest.transpose();
    EXPECT_LT((twist.highest - Eigen::Vector3d(2, 1, 0.1)).norm(), 1e-12) << twist.highest.transpose();
    EXPECT_LT((twist.flat.col(1) - Eigen::Vector3d(2, -1, -0.1)).norm(), 1e-12)
        << "seen from behind, in another order, or with another sign";
}

TEST_F(PlaneFitterTest, RefusesPointsWithoutAPlane)
{
    const PointCloud clouds[] = {{}, // the mean of nothing
                                 {{1, 2, 3}, {1, 2, 3}, {1, 2, 3}},
                                 {{0, 0, 0}, {1, 0, 0}},
                                 {{100.237, 200.491, 301.013}, // a line that rounding makes a little wide
                                  {100.374, 200.782, 301.726},
                                  {100.648, 201.364, 303.152},
                                  {101.196, 202.528, 306.004}},
                                 {{1e300, 0, 0}, {0, 1e300, 0}, {0, 0, 1e300}}}; // squares that overflow
    for (const PointCloud& points : clouds)
        EXPECT_THROW(static_cast<void>(GetFitter().Fit(points)), Exception::AppException) << points.size();
}
} // namespace
} // namespace vek::Desk
