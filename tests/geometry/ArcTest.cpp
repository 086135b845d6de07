#include <algorithm>
#include <cmath>
#include <numbers>
#include <random>

#include <gtest/gtest.h>

#include "platform/geometry/CircularArc.h"
#include "platform/geometry/Measures.h"
#include "platform/geometry/Orientation.h"
#include "platform/geometry/Strokes.h"
#include "platform/geometry/WellKnown.h"

namespace qz {
namespace {

using std::numbers::pi;

double distance(XY a, XY b) {
    return std::hypot(a.x - b.x, a.y - b.y);
}

TEST(CircularArc, LengthAreaAndExtentOfKnownShapes) {
    const double r = 5;
    const struct {
        const char* wkt;
        double length;
        double area;
        Envelope envelope;
    } rows[] = {
        {"CIRCULARSTRING (0 0,5 5,10 0)", pi * r, pi * r * r / 2, {0, 0, 10, 5}},
        {"CIRCULARSTRING (10 0,5 5,0 0)", pi * r, -pi * r * r / 2, {0, 0, 10, 5}},
        {"CIRCULARSTRING (0 0,5 -5,10 0)", pi * r, -pi * r * r / 2, {0, -5, 10, 0}},
        {"CIRCULARSTRING (0 0,10 0,0 0)", 2 * pi * r, -pi * r * r, {0, -5, 10, 5}},
        // Three quarters from south over west and north to east: the circle's area less a quarter, plus the triangle.
        {"CIRCULARSTRING (5 -5,0 0,10 0)", 1.5 * pi * r, 0.75 * pi * r * r + r * r / 2, {0, -5, 10, 5}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.wkt);
        const Geometry geometry = geometryFromWkt(row.wkt);
        const Path& path = geometry.as<Polyline>().paths.at(0);
        EXPECT_NEAR(length(path), row.length, 1e-12);
        EXPECT_NEAR(signedArea(path), row.area, 1e-12);
        EXPECT_EQ(geometry.envelope(), row.envelope);
    }
}

TEST(CircularArc, AreaOfCircularPolygonIsThatOfTheCircle) {
    const Geometry ring = geometryFromWkt("CURVEPOLYGON (CIRCULARSTRING (500000 5500000,500010 5500000,500000 5500000),"
                                          "CIRCULARSTRING (500004 5500000,500006 5500000,500004 5500000))");
    EXPECT_NEAR(area(ring.as<Polygon>()), pi * (25 - 1), 1e-9);
    EXPECT_NEAR(perimeter(ring.as<Polygon>()), 2 * pi * (5 + 1), 1e-9);
}

TEST(CircularArc, PassesItsThreePoints) {
    std::mt19937 random(5);
    std::uniform_real_distribution<double> coordinate(-1000, 1000);
    for (int i = 0; i < 2000; ++i) {
        const XY start{coordinate(random), coordinate(random)};
        const XY middle{coordinate(random), coordinate(random)};
        const XY end{coordinate(random), coordinate(random)};
        const auto arc = arcThrough(start, middle, end);
        ASSERT_TRUE(arc);
        const double precision = 1e-11 * (arc->radius + 1000); // rounding of an angle, carried to the circle
        ASSERT_NEAR(distance(arc->at(0), start), 0, precision);
        ASSERT_NEAR(distance(arc->at(1), end), 0, precision);
        ASSERT_NEAR(distance(arc->at(arc->ratioOf(middle)), middle), 0, precision);
        ASSERT_LT(arc->ratioOf(middle), 1);
        ASSERT_EQ(arc->sweep > 0, turn(start, middle, end) == Turn::left);
    }
}

TEST(CircularArc, FlatArcKeepsItsDigits) {
    // Sagitta 1 mm over a chord of 100 m, far from the origin: radius = chord² / 8 s + s / 2.
    const XY start{4500000, 5500000};
    const auto arc = arcThrough(start, {4500050, 5500000.0009765625}, {4500100, 5500000});
    ASSERT_TRUE(arc);
    const double sagitta = 0.0009765625;
    EXPECT_NEAR(arc->radius, 100 * 100 / (8 * sagitta) + sagitta / 2, 1e-6);
    EXPECT_NEAR(arc->length(), 100 + 8 * sagitta * sagitta / 300, 1e-10);
    EXPECT_NEAR(arc->signedSegmentArea(), -2.0 / 3 * 100 * sagitta, 1e-9);
}

// However far the centre, points of the arc lie between its chord and a parallel through its middle.
TEST(CircularArc, HasItsPointsWhereItsControlPointsAre) {
    for (const double sagitta : {1e-300, 1e-100, 1e-12, 1e-6, 1e-3, 1.0, 4.9}) {
        SCOPED_TRACE(sagitta);
        const auto arc = arcThrough({0, 0}, {5, sagitta}, {10, 0});
        ASSERT_TRUE(arc);
        EXPECT_EQ(arc->at(0), (XY{0, 0}));
        EXPECT_NEAR(distance(arc->at(1), {10, 0}), 0, 1e-14);
        EXPECT_NEAR(arc->at(0.5).x, 5, 1e-14);
        EXPECT_NEAR(arc->at(0.5).y / sagitta, 1, 1e-9 + 1e-14 / sagitta);
        EXPECT_NEAR(arc->ratioOf({5, sagitta}), 0.5, 1e-12);
        EXPECT_NEAR(arc->envelope().yMax, sagitta, 1e-14);
        EXPECT_NEAR(arc->envelope().yMin, 0, 1e-14);
        EXPECT_NEAR(arc->signedSegmentArea() / sagitta, sagitta < 1e-3 ? -20.0 / 3 : arc->signedSegmentArea() / sagitta,
                    1e-6);
        EXPECT_GT(arc->ratioOf({-1, -sagitta / 5}), 1);
    }
}

TEST(CircularArc, RatioCountsOnThePartLeftOutAboveOne) {
    const CircularArc arc{{0, 0}, 1, 0, pi / 2};
    EXPECT_NEAR(arc.ratioOf({0, 1}), 1, 1e-15);
    EXPECT_NEAR(arc.ratioOf({-1, 0}), 2, 1e-15);
    const CircularArc clockwise{{0, 0}, 1, 0, -pi / 2};
    EXPECT_NEAR(clockwise.ratioOf({0, 1}), 3, 1e-15);
}

TEST(Strokes, StayWithinTheSagittaAndOnTheArc) {
    std::mt19937 random(6);
    std::uniform_real_distribution<double> angle(-2 * pi, 2 * pi);
    std::uniform_real_distribution<double> logRadius(-1, 6);
    std::size_t strokes = 0;
    for (int i = 0; i < 300; ++i) {
        const CircularArc arc{{1000, 2000}, std::pow(10, logRadius(random)), angle(random) / 2, angle(random)};
        const double sagitta = arc.radius * 1e-5;
        std::vector<XY> points = strokePoints(arc, sagitta);
        strokes += points.size();
        points.insert(points.begin(), arc.at(0));
        points.push_back(arc.at(1));
        double along = 0;
        for (std::size_t p = 1; p < points.size(); ++p) {
            const XY chordMiddle{(points[p - 1].x + points[p].x) / 2, (points[p - 1].y + points[p].y) / 2};
            ASSERT_LE(arc.radius - distance(chordMiddle, arc.centre), sagitta * 1.000001 + 1e-9);
            along += distance(points[p - 1], points[p]);
        }
        ASSERT_NEAR(along, arc.length(), 1e-4 * arc.length() + 1e-9) << "in order and once round";
    }
    EXPECT_GT(strokes, 10000U);
}

TEST(Strokes, AreSharedByArcsOfOneCircle) {
    const CircularArc arc{{0, 0}, 10, 0.3, 2};
    const CircularArc backFromFarther{{0, 0}, 10, 3.1 + 2 * pi, -2.9};
    const std::vector<XY> one = strokePoints(arc, 0.01);
    const std::vector<XY> other = strokePoints(backFromFarther, 0.01);
    ASSERT_GT(one.size(), 10U);
    for (const XY p : one) {
        EXPECT_NE(std::ranges::find(other, p), other.end());
    }
}

} // namespace
} // namespace qz
