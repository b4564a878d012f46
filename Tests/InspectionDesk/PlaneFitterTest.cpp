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

TEST_P(PlaneFitterPlane, HasTheNormalAndItsAxesLookAlongIt)
{
    const auto& [fault, centre, x, y, normal] = GetParam();
    const Plane plane = GetFitter().Fit(MakeRectangle(centre, x, y, 0.0));
    EXPECT_LT((plane.normal - normal).norm(), 1e-9) << plane.normal.transpose();
    EXPECT_LT((plane.centre - centre).norm(), 1e-6) << plane.centre.transpose();
    EXPECT_LT((plane.xAxis.cross(plane.yAxis) - plane.normal).norm(), 1e-12);
    EXPECT_NEAR(plane.xAxis.norm(), 1.0, 1e-12);
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
    QByteArray text;
    for (const Eigen::Vector3d& point : MakeRectangle({10, 20, 30}, {1, 0, 0}, {0, 1, 0}, 0.2))
        text += QByteArray::number(point.x()) + ' ' + QByteArray::number(point.y()) + ' ' +
                QByteArray::number(point.z()) + '\n';
    const Inspection inspection =
        Inspect(GetReader(), GetFitter(), Write(QStringLiteral("a.xyz"), text), [](double) {});
    EXPECT_NEAR(inspection.plane.centre.z(), 30.1, 1e-12);
    EXPECT_NEAR(inspection.lowest.deviation, -0.1, 1e-12);
    EXPECT_NEAR(inspection.highest.deviation, 0.1, 1e-12);
    EXPECT_NEAR(inspection.GetFlatness(), 0.2, 1e-12);
    EXPECT_NEAR(inspection.standardDeviation, 0.1, 1e-12);
    EXPECT_EQ(inspection.bounds, QRectF(-2, -1, 4, 2));
    EXPECT_FLOAT_EQ(inspection.points[1].x, 2.0F) << "seen from behind, or in another order";
    EXPECT_FLOAT_EQ(inspection.points[1].y, -1.0F);
}

struct NoPlaneCase
{
    const char* fault;
    PointCloud points;
};
void PrintTo(const NoPlaneCase& row, std::ostream* out) { *out << row.fault; }

class PlaneFitterNoPlane : public testing::TestWithParam<NoPlaneCase>, public DeskFixture
{};

TEST_P(PlaneFitterNoPlane, IsRefused)
{
    EXPECT_THROW(static_cast<void>(GetFitter().Fit(GetParam().points)), Exception::AppException);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, PlaneFitterNoPlane,
    testing::Values(NoPlaneCase{"no points", {}}, NoPlaneCase{"two points", {{0, 0, 0}, {1, 0, 0}}},
                    NoPlaneCase{"one point three times", {{1, 2, 3}, {1, 2, 3}, {1, 2, 3}}},
                    NoPlaneCase{"line that rounding makes a little wide",
                                {{100.237, 200.491, 301.013},
                                 {100.374, 200.782, 301.726},
                                 {100.648, 201.364, 303.152},
                                 {101.196, 202.528, 306.004}}},
                    NoPlaneCase{"squares that overflow", {{1e300, 0, 0}, {0, 1e300, 0}, {0, 0, 1e300}}}));
} // namespace
} // namespace vek::Desk
