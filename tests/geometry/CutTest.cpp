#include <algorithm>
#include <numbers>
#include <random>

#include <gtest/gtest.h>

#include "platform/geometry/Boundary.h"
#include "platform/geometry/Cut.h"
#include "platform/geometry/Distance.h"
#include "platform/geometry/Measures.h"
#include "platform/geometry/SetOperations.h"
#include "platform/geometry/Simplify.h"
#include "platform/geometry/WellKnown.h"
#include "tests/geometry/HeightSamples.h"
#include "tests/geometry/RandomShapes.h"

namespace qz {
namespace {

constexpr const char* square = "POLYGON ((0 0,0 10,10 10,10 0,0 0))";
constexpr const char* ring = "POLYGON ((0 0,0 10,10 10,10 0,0 0),(4 4,6 4,6 6,4 6,4 4))";

std::string cutText(const char* polygon, const char* line) {
    const auto pieces = cut(geometryFromWkt(polygon).as<Polygon>(), geometryFromWkt(line).as<Polyline>());
    return pieces ? toWkt(pieces->left) + " | " + toWkt(pieces->right) : "no cut";
}

TEST(Cut, IntoLeftAndRight) {
    const struct {
        const char* name;
        const char* polygon;
        const char* line;
        const char* pieces;
    } rows[] = {
        {"upwards", square, "LINESTRING (4 -1,4 11)",
         "POLYGON ((0 0,0 10,4 10,4 0,0 0)) | POLYGON ((4 0,4 10,10 10,10 0,4 0))"},
        {"downwards", square, "LINESTRING (4 11,4 -1)",
         "POLYGON ((4 0,4 10,10 10,10 0,4 0)) | POLYGON ((0 0,0 10,4 10,4 0,0 0))"},
        {"from boundary to boundary", square, "LINESTRING (4 0,4 10)",
         "POLYGON ((0 0,0 10,4 10,4 0,0 0)) | POLYGON ((4 0,4 10,10 10,10 0,4 0))"},
        {"through corners", square, "LINESTRING (0 0,10 10)",
         "POLYGON ((0 0,0 10,10 10,0 0)) | POLYGON ((0 0,10 10,10 0,0 0))"},
        {"ending inside", square, "LINESTRING (4 -1,4 9)", "no cut"},
        {"outside", square, "LINESTRING (20 -1,20 9)", "no cut"},
        {"along the boundary", square, "LINESTRING (-5 0,15 0)", "no cut"},
        {"along part of the boundary, then across", square, "LINESTRING (0 0,4 0,4 10)",
         "POLYGON ((0 0,0 10,4 10,4 0,0 0)) | POLYGON ((4 0,4 10,10 10,10 0,4 0))"},
        {"touching a corner", square, "LINESTRING (-5 5,0 10,5 15)", "no cut"},
        {"a hole is opened", ring, "LINESTRING (5 -1,5 11)",
         "POLYGON ((0 0,0 10,5 10,5 6,4 6,4 4,5 4,5 0,0 0)) | POLYGON ((5 0,5 4,6 4,6 6,5 6,5 10,10 10,10 0,5 0))"},
        {"from the hole outward only", ring, "LINESTRING (5 5,5 11)", "no cut"},
        {"a hole stays where it is", ring, "LINESTRING (2 -1,2 11)",
         "POLYGON ((0 0,0 10,2 10,2 0,0 0)) | POLYGON ((2 0,2 10,10 10,10 0,2 0),(4 4,6 4,6 6,4 6,4 4))"},
        {"parts not touched are right", "MULTIPOLYGON (((0 0,0 10,10 10,10 0,0 0)),((20 0,20 9,29 9,20 0)))",
         "LINESTRING (4 -1,4 11)",
         "POLYGON ((0 0,0 10,4 10,4 0,0 0)) | "
         "MULTIPOLYGON (((4 0,4 10,10 10,10 0,4 0)),((20 0,20 9,29 9,20 0)))"},
        {"out and in again", square, "LINESTRING (4 -1,4 12,6 12,6 -1)",
         "MULTIPOLYGON (((0 0,0 10,4 10,4 0,0 0)),((6 0,6 10,10 10,10 0,6 0))) | POLYGON ((4 0,4 10,6 10,6 0,4 0))"},
        {"two paths", square, "MULTILINESTRING ((3 -1,3 11),(6 11,6 -1))",
         "MULTIPOLYGON (((0 0,0 10,3 10,3 0,0 0)),((6 0,6 10,10 10,10 0,6 0))) | POLYGON ((3 0,3 10,6 10,6 0,3 0))"},
        {"a loop inside", square, "LINESTRING (2 2,4 2,4 4,2 4,2 2)",
         "POLYGON ((2 2,2 4,4 4,4 2,2 2)) | POLYGON ((0 0,0 10,10 10,10 0,0 0),(2 2,4 2,4 4,2 4,2 2))"},
        {"vertices of the line stay", square, "LINESTRING (4 -1,4 3,5 5,4 7,4 11)",
         "POLYGON ((0 0,0 10,4 10,4 7,5 5,4 3,4 0,0 0)) | POLYGON ((4 0,4 3,5 5,4 7,4 10,10 10,10 0,4 0))"},
        {"heights of the polygon", "POLYGON Z ((0 0 0,0 10 10,10 10 10,10 0 0,0 0 0))",
         "LINESTRING Z (4 -1 7,4 5 8,4 11 9)",
         "POLYGON Z ((0 0 0,0 10 10,4 10 10,4 5 8,4 0 0,0 0 0)) | "
         "POLYGON Z ((4 0 0,4 5 8,4 10 10,10 10 10,10 0 0,4 0 0))"},
        {"empty line", square, "LINESTRING EMPTY", "no cut"},
        {"empty polygon", "POLYGON EMPTY", "LINESTRING (4 -1,4 11)", "no cut"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(cutText(row.polygon, row.line), row.pieces);
    }
}

TEST(Cut, LeavesAFullCircleOnItsCircle) {
    const auto pieces = cut(geometryFromWkt("CURVEPOLYGON (CIRCULARSTRING (1 2,7 10,1 2))").as<Polygon>(),
                            geometryFromWkt("LINESTRING (-9 7,20 5)").as<Polyline>());
    ASSERT_TRUE(pieces);
    EXPECT_NEAR(area(pieces->left) + area(pieces->right), 25 * std::numbers::pi, 1e-9);
    for (const Polygon* piece : {&pieces->left, &pieces->right}) {
        ASSERT_EQ(piece->rings.size(), 1u);
        ASSERT_GE(piece->rings[0].arcs().size(), 1u);
        for (const ArcSegment& segment : piece->rings[0].arcs()) {
            const CircularArc arc = piece->rings[0].circularArc(segment);
            EXPECT_NEAR(arc.centre.x, 4, 1e-9);
            EXPECT_NEAR(arc.centre.y, 6, 1e-9);
            EXPECT_NEAR(arc.radius, 5, 1e-9);
        }
    }
}

bool runsAlong(const Polygon& polygon, XY p) {
    return std::ranges::any_of(polygon.rings,
                               [p](const Path& path) { return std::ranges::find(path.xy(), p) != path.xy().end(); });
}

// A line through the frame, which now and then crosses itself.
Polyline randomCutter(std::mt19937& random, const ShapeFrame& frame, bool withArcs) {
    std::uniform_real_distribution<double> angle(0, 2 * std::numbers::pi);
    const double from = angle(random);
    Polyline line;
    Path& path = line.paths.emplace_back();
    const auto vertex = [&](double polar, double ratio) {
        const XY p = frame.at(polar, ratio);
        return Vertex{p.x, p.y};
    };
    path.addVertex(vertex(from, 1.5));
    for (int i = 0; i < 4; ++i) {
        const Vertex next = vertex(angle(random), 0.7);
        if (withArcs && i % 2 == 1) {
            path.addArc(vertex(angle(random), 0.5), next);
        } else {
            path.addVertex(next);
        }
    }
    path.addVertex(vertex(from + 2.5, 1.5));
    return line;
}

TEST(Cut, PiecesAddUpToTheSource) {
    const ShapeFrame frames[] = {{{0, 0}, 100, 0}, {{1.2e7, 5.4e6}, 250, 1e-4}};
    std::mt19937 random(41);
    std::size_t cuts = 0;
    for (int round = 0; round < 300; ++round) {
        SCOPED_TRACE(round);
        const ShapeFrame& frame = frames[round % 2];
        const bool withArcs = round % 3 == 0;
        const Polygon source = simplified(randomStar(random, frame, 24, round % 4 < 2, withArcs));
        const Polyline line = randomCutter(random, frame, round % 5 == 0);
        const auto pieces = cut(source, line);
        if (!pieces) {
            continue;
        }
        ++cuts;
        EXPECT_TRUE(isSimple(pieces->left));
        EXPECT_TRUE(isSimple(pieces->right));
        // Slivers of less than the resolution may go along the whole cut.
        const double slack = 1e-4 * (perimeter(source) + length(line));
        EXPECT_NEAR(area(pieces->left) + area(pieces->right), area(source), slack);
        EXPECT_NEAR(area(intersection(pieces->left, pieces->right, ResultDimension::areas).as<Polygon>()), 0, slack);
        EXPECT_NEAR(area(difference(pieces->left, source).as<Polygon>()), 0, slack);
        const Geometry outline = boundary(source);
        for (const Path& path : pieces->left.rings) {
            for (const XY p : path.xy()) {
                EXPECT_TRUE(runsAlong(pieces->right, p) || distance(Point({p.x, p.y}), outline) < 1e-3);
            }
        }
    }
    EXPECT_GT(cuts, 250u);
}

TEST(Cut, HeightsAreThoseOfTheSegments) {
    const ShapeFrame frames[] = {{{0, 0}, 100, 0}, {{4.5e6, 5.4e6}, 100, 1e-4}};
    std::mt19937 random(43);
    std::size_t vertices = 0;
    for (int round = 0; round < 60; ++round) {
        SCOPED_TRACE(round);
        const ShapeFrame& frame = frames[round % 2];
        Polygon source = randomStar(random, frame, 24, true, false);
        Polyline line = randomCutter(random, frame, false);
        raise(source, source.rings, random);
        raise(line, line.paths, random);
        const auto pieces = cut(source, line);
        for (const Polygon* piece : {pieces ? &pieces->left : nullptr, pieces ? &pieces->right : nullptr}) {
            forEachVertex(Geometry(piece != nullptr ? *piece : Polygon()), [&](const Vertex& vertex) {
                EXPECT_LE(heightError(source, line, vertex), 1e-9) << vertex.x << " " << vertex.y;
                EXPECT_EQ(vertex.m, -vertex.z);
                ++vertices;
            });
        }
    }
    EXPECT_GT(vertices, 1000u);
}

TEST(Cut, TakesShapesOfAnyKind) {
    std::mt19937 random(47);
    std::size_t cuts = 0;
    for (int round = 0; round < 300; ++round) {
        SCOPED_TRACE(round);
        const Polygon source = randomScribble(random, round % 2 == 0, round % 3 == 0);
        Polyline line;
        line.paths = randomScribble(random, round % 2 == 0, round % 5 == 0).rings;
        const auto pieces = cut(source, line);
        if (pieces) {
            ++cuts;
            // Slivers of less than the resolution may go along outline and line.
            const double slack = 1e-4 * (perimeter(source) + length(line));
            EXPECT_NEAR(area(pieces->left) + area(pieces->right), area(simplified(source)), slack) << toWkt(source);
            EXPECT_TRUE(isSimple(pieces->left));
            EXPECT_TRUE(isSimple(pieces->right));
        }
    }
    EXPECT_GT(cuts, 250u);
}

} // namespace
} // namespace qz
