#include "platform/geometry/ConvexHull.h"

#include <cmath>
#include <limits>
#include <numbers>
#include <random>

#include <gtest/gtest.h>

#include "platform/geometry/Measures.h"
#include "platform/geometry/Orientation.h"
#include "platform/geometry/WellKnown.h"

namespace qz {
namespace {

// Clouds with many equal coordinates, so that collinear points and repeated ones occur.
Multipoint cloud(std::mt19937& random, int count, int grid) {
    Multipoint points;
    for (int i = 0; i < count; ++i) {
        points.vertices.push_back({static_cast<double>(random() % static_cast<unsigned>(grid)),
                                   static_cast<double>(random() % static_cast<unsigned>(grid))});
    }
    return points;
}

std::vector<XY> coordinates(const Multipoint& points) {
    std::vector<XY> result;
    for (const Vertex& vertex : points.vertices) {
        result.push_back(vertex.xy());
    }
    return result;
}

TEST(ConvexHull, KindFollowsTheShapeOfTheCloud) {
    const std::pair<const char*, const char*> rows[] = {
        {"MULTIPOINT ((0 0),(2 0),(1 0.1),(2 2),(0 2),(1 1),(2 1))", "POLYGON ((0 0,0 2,2 2,2 0,0 0))"},
        {"LINESTRING Z (0 0 5,1 1 6,3 3 7,2 2 8)", "LINESTRING (0 0,3 3)"},
        {"MULTIPOINT ((4 5),(4 5))", "POINT (4 5)"},
        {"POINT EMPTY", "POLYGON EMPTY"},
    };
    for (const auto& [given, hull] : rows) {
        EXPECT_EQ(toWkt(convexHull(geometryFromWkt(given))), hull) << given;
    }
}

TEST(ConvexHull, IsConvexAndHoldsEveryPoint) {
    std::mt19937 random(7);
    for (int round = 0; round < 200; ++round) {
        const Multipoint points = cloud(random, 3 + round, 2 + round % 40);
        const std::vector<XY> corners = hullCorners(coordinates(points));
        for (std::size_t i = 0; corners.size() > 2 && i < corners.size(); ++i) {
            const XY a = corners[i];
            const XY b = corners[(i + 1) % corners.size()];
            ASSERT_EQ(turn(a, b, corners[(i + 2) % corners.size()]), Turn::left);
            for (const Vertex& point : points.vertices) {
                ASSERT_NE(turn(a, b, point.xy()), Turn::right);
            }
        }
    }
}

TEST(ConvexHull, RefusesCoordinatesThatAreNotFinite) {
    Multipoint points;
    points.vertices.push_back({1, std::numeric_limits<double>::infinity()});
    EXPECT_THROW(static_cast<void>(convexHull(points)), PlatformError);
}

// What the best of all directions of hull sides gives, one by one.
double bruteForceArea(const std::vector<XY>& hull) {
    double best = std::numeric_limits<double>::infinity();
    for (std::size_t i = 0; i < hull.size(); ++i) {
        const XY a = hull[i];
        const XY b = hull[(i + 1) % hull.size()];
        const double angle = std::atan2(b.y - a.y, b.x - a.x);
        Envelope turned;
        for (const XY p : hull) {
            turned.expandToInclude(
                XY{p.x * std::cos(angle) + p.y * std::sin(angle), p.y * std::cos(angle) - p.x * std::sin(angle)});
        }
        best = std::min(best, turned.width() * turned.height());
    }
    return best;
}

TEST(MinimumAreaRectangle, HasTheLeastAreaAndHoldsEveryPoint) {
    std::mt19937 random(11);
    int checked = 0;
    for (int round = 0; round < 400; ++round) {
        const Multipoint points = cloud(random, 3 + round % 60, 1000);
        const std::vector<XY> hull = hullCorners(coordinates(points));
        const std::optional<Polygon> rectangle = minimumAreaRectangle(points);
        ASSERT_EQ(rectangle.has_value(), hull.size() > 2);
        if (!rectangle) {
            continue;
        }
        ++checked;
        ASSERT_NEAR(area(*rectangle), bruteForceArea(hull), 1e-6);
        const auto corners = rectangle->rings[0].xy();
        for (std::size_t i = 0; i < 4; ++i) {
            const double side = std::hypot(corners[i + 1].x - corners[i].x, corners[i + 1].y - corners[i].y);
            for (const XY p : hull) {
                const double outward = (corners[i + 1].x - corners[i].x) * (p.y - corners[i].y) -
                                       (corners[i + 1].y - corners[i].y) * (p.x - corners[i].x);
                ASSERT_LE(outward, 1e-9 * side + 1e-6);
            }
        }
    }
    EXPECT_GT(checked, 390);
}

} // namespace
} // namespace qz
