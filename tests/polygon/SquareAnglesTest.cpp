#include <cmath>
#include <numbers>
#include <random>

#include "common/InReference.h"
#include "common/QZPlane.h"
#include "platform/geometry/Measures.h"
#include "platform/geometry/Simplify.h"
#include "polygon/QZSquareAngles.h"
#include "polygon/QZSquarePolygon.h"
#include "polygon/RightAngledRing.h"
#include "tests/support/StreetsFixture.h"

namespace qz::test {
namespace {

constexpr const char* crossing =
    "The operation results in a self intersecting ring!\nDecrease the angle tolerance and try again";

struct SquareAngles : testing::Test {
    bool square(ObjectId id, double angleTolerance, const Point* start = nullptr) {
        const CursorPtr cursor = layer.only(id);
        return QZ_SquarePolygonAnglesRun(*cursor, start, layer.refresh, angleTolerance);
    }
    Polygon polygon(ObjectId id) { return layer.streets().feature(id)->shape()->as<Polygon>(); }
    ObjectId add(Polygon polygon) {
        polygon.spatialReference = layer.reference;
        const FeaturePtr made = layer.streets().createFeature();
        made->setShape(std::move(polygon));
        made->store();
        return made->objectId();
    }

    Streets layer{GeometryKind::polygon};
};

// How far an angle of the ring is from a right or straight one, at most; degrees.
double worstAngle(const Path& ring) {
    const std::size_t n = ring.segmentCount();
    double worst = 0;
    for (std::size_t i = 0; i < n; ++i) {
        const double angle = QZ_Angle3Points(ring.xy()[i], ring.xy()[i + 1], ring.xy()[(i + n - 1) % n]);
        worst = std::max(worst, std::abs(std::remainder(angle, 90)));
    }
    return worst;
}

Path rounded(const Path& ring, double digits) {
    Path result = ring;
    result.transform([digits](Vertex& vertex) {
        vertex.x = std::round(vertex.x * digits) / digits + 0.0;
        vertex.y = std::round(vertex.y * digits) / digits + 0.0;
    });
    return result;
}

std::string roundedWkt(Polygon polygon) {
    polygon.zAware = polygon.mAware = false;
    for (Path& ring : polygon.rings) {
        ring = rounded(ring, 1e4);
    }
    return toWkt(polygon);
}

TEST_F(SquareAngles, RingsWithinTheTolerance) {
    const struct {
        const char* name;
        const char* wkt;
        double tolerance;
        const char* squared;
    } rows[] = {
        {"the longest side and its direction stay, the side that closes is fitted",
         "POLYGON ((0 0,0 20,10 20.5,10.4 0.1,0 0))", 10,
         "POLYGON ((10 20.5,10.4 0.1,0.3894 -0.0963,-0.0106 20.3037,10 20.5))"},
        {"a square stays", "POLYGON ((0 0,0 10,10 10,10 0,0 0))", 10, "POLYGON ((0 0,0 10,10 10,10 0,0 0))"},
        {"nothing is within the tolerance", "POLYGON ((0 0,2 10,9 11,10 0,0 0))", 1,
         "POLYGON ((0 0,2 10,9 11,10 0,0 0))"},
        {"a vertex on a side goes", "POLYGON ((0 0,0 10,5 10.1,10 10,10 0,0 0))", 10,
         "POLYGON ((0 0,0 10,10 10,10 0,0 0))"},
        {"whole degrees are snapped whatever the tolerance", "POLYGON ((0 0,0 10,10 10.05,10 0,0 0))", 0.1,
         "POLYGON ((10 10.05,10 0,0 0,0 10.05,10 10.05))"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const ObjectId id = insertRow(layer.streets(), row.wkt);
        EXPECT_TRUE(square(id, row.tolerance));
        EXPECT_EQ(roundedWkt(polygon(id)), row.squared);
    }
    EXPECT_TRUE(layer.messages.empty());
}

// A building of towers side by side, their walls out of true by up to `error`, somewhere and turned somehow.
Polygon randomBuilding(std::mt19937& random, double error) {
    std::uniform_real_distribution<double> size(4, 12);
    std::uniform_real_distribution<double> off(-error, error);
    std::uniform_real_distribution<double> turn(0, 2 * std::numbers::pi);
    std::vector<XY> corners = {{0, 0}};
    double x = 0;
    double height = 10;
    for (int tower = 0; tower < 4; ++tower) {
        height += (tower % 2 == 0 ? 1 : -1) * size(random) / 2;
        corners.push_back({x, height});
        x += size(random);
        corners.push_back({x, height});
    }
    corners.push_back({x, 0});
    const double angle = turn(random);
    Polygon building;
    Path& ring = building.rings.emplace_back();
    for (const XY& corner : corners) {
        const double px = corner.x + off(random);
        const double py = corner.y + off(random);
        ring.addVertex({500000 + px * std::cos(angle) - py * std::sin(angle),
                        5800000 + px * std::sin(angle) + py * std::cos(angle), corner.x, corner.y});
    }
    ring.addVertex(ring.front());
    return building;
}

TEST_F(SquareAngles, BuildingsBecomeRightAngled) {
    std::mt19937 random(5);
    for (int round = 0; round < 200; ++round) {
        SCOPED_TRACE(round);
        const double error = 0.1;
        const Polygon building = randomBuilding(random, error);
        for (const double tolerance : {12.0, 0.0}) {
            const ObjectId id = add(building);
            ASSERT_TRUE(square(id, tolerance));
            const Polygon squared = polygon(id);
            ASSERT_EQ(squared.rings.size(), 1U);
            EXPECT_LT(worstAngle(squared.rings[0]), 1e-4);
            EXPECT_TRUE(isSimple(squared));
            EXPECT_EQ(squared.rings[0].vertexCount(), building.rings[0].vertexCount());
            // Each wall moves by no more than its ends were off, along a perimeter of some 100.
            EXPECT_NEAR(area(squared), area(building), perimeter(building) * error * (tolerance > 0 ? 10 : 2));
            ASSERT_TRUE(square(id, tolerance));
            EXPECT_TRUE(identical(polygon(id), squared));
        }
    }
    EXPECT_TRUE(layer.messages.empty());
}

TEST_F(SquareAngles, AnglesOutOfToleranceTakeUpTheChange) {
    // A house with a gable: its walls become right-angled, the ridge and the eaves take up the rest.
    const ObjectId id = insertRow(layer.streets(), "POLYGON ((0 0,0.2 10,5 14,10 10.3,10.1 0.2,0 0))");
    ASSERT_TRUE(square(id, 8));
    const Path ring = polygon(id).rings[0];
    int right = 0;
    for (std::size_t i = 0; i < ring.segmentCount(); ++i) {
        const std::size_t before = (i + ring.segmentCount() - 1) % ring.segmentCount();
        const double angle = QZ_Angle3Points(ring.xy()[i], ring.xy()[i + 1], ring.xy()[before]);
        right += std::abs(angle - 90) < 1e-6 ? 1 : 0;
    }
    EXPECT_EQ(ring.segmentCount(), 5U);
    EXPECT_GE(right, 2);
}

double squaredDistances(std::span<const Vertex> source, std::span<const double> places) {
    // The integral over segment i of the squared distance to the line at places[i], across or along by turns.
    double sum = 0;
    for (std::size_t i = 0; i < source.size(); ++i) {
        const Vertex& a = source[i];
        const Vertex& b = source[(i + 1) % source.size()];
        const double from = (i % 2 == 0 ? a.x : a.y) - places[i];
        const double to = (i % 2 == 0 ? b.x : b.y) - places[i];
        sum += std::hypot(b.x - a.x, b.y - a.y) * (from * from + from * to + to * to) / 3;
    }
    return sum;
}

TEST(RightAngledRing, NoOtherPlacesOfTheSidesAreNearer) {
    std::mt19937 random(6);
    std::uniform_real_distribution<double> off(-0.5, 0.5);
    for (int round = 0; round < 100; ++round) {
        std::vector<Vertex> ring = {{0, 0}, {0, 10}, {6, 0}, {0, 0}, {0, 0}, {0, 0}};
        const XY corners[] = {{0, 0}, {0, 12}, {6, 12}, {6, 6}, {14, 6}, {14, 0}};
        for (std::size_t i = 0; i < ring.size(); ++i) {
            ring[i] = {corners[i].x + (i > 1 ? off(random) : 0), corners[i].y + off(random)};
        }
        const std::vector<Vertex> squared = rightAngled(ring);
        ASSERT_EQ(squared.size(), ring.size());
        // The sides in the order of the segments; the first runs north.
        std::vector<double> places(ring.size());
        for (std::size_t i = 0; i < ring.size(); ++i) {
            const auto start = std::ranges::min_element(squared, {}, [&](const Vertex& vertex) {
                return std::hypot(vertex.x - ring[i].x, vertex.y - ring[i].y);
            });
            places[i] = i % 2 == 0 ? start->x : start->y;
        }
        const double least = squaredDistances(ring, places);
        for (std::size_t i = 0; i < places.size(); ++i) {
            for (const double step : {-0.01, 0.01}) {
                std::vector<double> moved = places;
                moved[i] += step;
                EXPECT_GT(squaredDistances(ring, moved), least);
            }
        }
    }
}

TEST(RightAngledRing, VerticesInsideASideStayInOrder) {
    const std::vector<Vertex> ring = {{0, 0, 1}, {0, 6, 2}, {0, 12, 3}, {9, 12, 4}, {9, 7, 5}, {9, 8, 6}, {9, 0, 7}};
    Polyline line;
    line.zAware = true;
    line.paths = {Path(rightAngled(ring))};
    EXPECT_EQ(toWkt(line), "LINESTRING Z (0 0 1,0 6 2,0 12 3,9 12 4,9 7 5,9 0 7)");
    EXPECT_TRUE(rightAngled(std::vector<Vertex>{{0, 0}, {0, 10}, {5, 3}}).empty());
}

TEST_F(SquareAngles, TheSegmentNearestToThePointKeepsItsDirection) {
    const ObjectId id = insertRow(
        layer.streets(), "POLYGON ((500000 5800000,500000 5800020,500010 5800021,500010 5800000,500000 5800000))");
    Point bySlantedSide({500004, 5800025}, {.zAware = false, .mAware = false, .spatialReference = layer.reference});
    bySlantedSide = inReference(bySlantedSide, SpatialReference::fromEpsg(4326));
    ASSERT_TRUE(square(id, 0, &bySlantedSide));
    const Path ring = polygon(id).rings[0];
    bool found = false;
    for (std::size_t i = 0; i < ring.segmentCount(); ++i) {
        const XY way{ring.xy()[i + 1].x - ring.xy()[i].x, ring.xy()[i + 1].y - ring.xy()[i].y};
        found = found || (way.x > 0 && std::abs(way.y / way.x - 0.1) < 1e-8);
    }
    EXPECT_TRUE(found);
    EXPECT_LT(worstAngle(ring), 1e-6);
}

TEST_F(SquareAngles, HolesAndOtherPartsAreSquaredByThemselves) {
    const ObjectId id =
        insertRow(layer.streets(), "MULTIPOLYGON (((0 0,0 20,20 20.4,20 0,0 0),(5 5,10 5.3,10 10,5 10,5 5)),"
                                   "((30 0,30 9,39 9.2,39 0,30 0)))");
    ASSERT_TRUE(square(id, 0));
    const Polygon squared = polygon(id);
    ASSERT_EQ(squared.rings.size(), 3U);
    for (const Path& ring : squared.rings) {
        EXPECT_LT(worstAngle(ring), 1e-6);
    }
    EXPECT_TRUE(isSimple(squared));
    EXPECT_LT(signedArea(squared.rings[1]), 0);
    EXPECT_TRUE(layer.messages.empty());
}

TEST_F(SquareAngles, WhatIsRefused) {
    const struct {
        const char* name;
        const char* wkt;
        double tolerance;
        Rows messages;
    } rows[] = {
        {"null shape", "", 10, {}},
        {"two rings that touch",
         "POLYGON ((0 0,0 10,10 10,10 20,20 20,20 10,10 10,10 0,0 0))",
         10,
         {"Multi-Part geometries cannot be processed"}},
        {"a triangle has no right angles", "POLYGON ((0 0,0 10,5 3,0 0))", 0, {"Invalid shape"}},
        {"five right angles are no ring",
         "POLYGON ((0 10,9.51 3.09,5.88 -8.09,-5.88 -8.09,-9.51 3.09,0 10))",
         45,
         {crossing}},
        {"a fan closes no ring", "POLYGON ((0 0,1 10,30 10,26 4,22 1,0 0))", 45, {crossing}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        layer.messages.clear();
        const FeaturePtr made = layer.streets().createFeature();
        if (*row.wkt != '\0') {
            made->setShape(geometryFromWkt(row.wkt));
        }
        made->store();
        const auto before = made->shape();
        EXPECT_FALSE(square(made->objectId(), row.tolerance));
        EXPECT_EQ(layer.messages, row.messages);
        const auto after = layer.streets().feature(made->objectId())->shape();
        EXPECT_EQ(after.has_value(), before.has_value());
        EXPECT_TRUE(!after || identical(*after, *before));
    }
    const CursorPtr none = layer.only(999);
    EXPECT_FALSE(QZ_SquarePolygonAnglesRun(*none, nullptr, layer.refresh, 10));
}

TEST_F(SquareAngles, RingsWithArcsStay) {
    const char* wkt = "CURVEPOLYGON (COMPOUNDCURVE ((0 0,0 10),CIRCULARSTRING (0 10,5 13,10 10),(10 10,10 0.2,0 0)))";
    const ObjectId id = insertRow(layer.streets(), wkt);
    const Polygon before = polygon(id);
    for (const double tolerance : {10.0, 0.0}) {
        EXPECT_TRUE(square(id, tolerance));
        EXPECT_TRUE(identical(polygon(id), before));
    }
}

} // namespace
} // namespace qz::test
