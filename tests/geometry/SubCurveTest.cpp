#include <algorithm>
#include <cmath>
#include <numbers>
#include <span>
#include <string>

#include <gtest/gtest.h>

#include "platform/geometry/CurvePosition.h"
#include "platform/geometry/Measures.h"
#include "platform/geometry/SubCurve.h"
#include "platform/geometry/WellKnown.h"
#include "tests/geometry/CurveSamples.h"

namespace qz {
namespace {

Polyline lineOf(const char* wkt) {
    return geometryFromWkt(wkt).as<Polyline>();
}

TEST(SubCurve, OfKnownLines) {
    const char* const twoParts = "MULTILINESTRING Z ((0 0 0,4 0 4),(100 0 7,100 6 13))";
    const struct {
        const char* wkt;
        double from;
        double to;
        const char* piece;
    } rows[] = {
        {"LINESTRING (0 0,10 0,10 10)", 0, 1, "LINESTRING (0 0,10 0,10 10)"},
        {"LINESTRING (0 0,10 0,10 10)", -3, 0.5, "LINESTRING (0 0,10 0)"},
        {"LINESTRING (0 0,10 0,10 10)", 0.25, 0.75, "LINESTRING (5 0,10 0,10 5)"},
        {"LINESTRING (0 0,10 0,10 10)", 0.5, 7, "LINESTRING (10 0,10 10)"},
        {"LINESTRING (0 0,10 0,10 10)", 0.5, 0.5, "LINESTRING EMPTY"},
        {"LINESTRING (0 0,10 0,10 10)", 0.75, 0.25, "LINESTRING EMPTY"},
        {"LINESTRING EMPTY", 0, 1, "LINESTRING EMPTY"},
        {"LINESTRING M (0 0 1,10 0 2,20 0 NaN)", 0.25, 0.75, "LINESTRING M (5 0 1.5,10 0 2,15 0 NaN)"},
        {"LINESTRING (0 0,10 0,10 0,20 0)", 0.5, 1, "LINESTRING (10 0,20 0)"},
        {"LINESTRING (1 1,1 1)", 0, 1, "LINESTRING (1 1,1 1)"},
        {twoParts, 0.2, 0.6, "MULTILINESTRING Z ((2 0 2,4 0 4),(100 0 7,100 2 9))"},
        {twoParts, 0.4, 1, "LINESTRING Z (100 0 7,100 6 13)"},
        {twoParts, 0, 0.4, "LINESTRING Z (0 0 0,4 0 4)"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(std::string(row.wkt) + " from " + std::to_string(row.from));
        EXPECT_EQ(toWkt(subCurve(lineOf(row.wkt), row.from, row.to)), row.piece);
    }
}

TEST(SubCurve, OfAPolygonRunsAlongItsBoundary) {
    const Geometry square = geometryFromWkt("POLYGON ((0 0,0 10,10 10,10 0,0 0))");
    EXPECT_EQ(toWkt(subCurve(square.as<Polygon>(), 0.125, 0.5)), "LINESTRING (0 5,0 10,10 10)");
}

TEST(SubCurve, QuarterOfAFullCircleIsAnArcOnIt) {
    const Polyline circle = lineOf("CIRCULARSTRING (0 0,10 0,0 0)");
    const Path quarter = subCurve(circle, 0.5, 0.75).paths.at(0);
    ASSERT_EQ(quarter.arcs().size(), 1U);
    const CircularArc arc = quarter.circularArc(quarter.arcs()[0]);
    EXPECT_NEAR(distanceOf(arc.centre, {5, 0}), 0, 1e-12);
    EXPECT_NEAR(arc.radius, 5, 1e-12);
    EXPECT_NEAR(arc.sweep, std::numbers::pi / 2, 1e-12);
    EXPECT_NEAR(distanceOf(quarter.back().xy(), {5, 5}), 0, 1e-12);
    const double leg = 5 * std::numbers::sqrt2 / 2;
    EXPECT_NEAR(distanceOf(quarter.arcs()[0].middle.xy(), {5 + leg, leg}), 0, 1e-12);
}

TEST(SubCurve, ArcTakesHeightsByWayOfItsMiddle) {
    const Polyline arc = lineOf("CIRCULARSTRING Z (0 0 0,5 5 10,10 0 0)");
    EXPECT_NEAR(subCurve(arc, 0, 0.25).paths.at(0).back().z, 5, 1e-9);
    EXPECT_NEAR(subCurve(arc, 0, 0.75).paths.at(0).back().z, 5, 1e-9);
}

void expectCutArcsOnCircle(const Path& piece, const Path& path) {
    for (const ArcSegment& segment : piece.arcs()) {
        const CircularArc cut = piece.circularArc(segment);
        const bool found = std::ranges::any_of(path.arcs(), [&](const ArcSegment& source) {
            const CircularArc whole = path.circularArc(source);
            // The rounding of coordinates of 5e6, seen through the shape of a short arc.
            const double rise = cut.radius * (1 - std::cos(std::min(std::abs(cut.sweep) / 2, 1.0)));
            const double tolerance = 1e-8 * (1 + cut.radius / rise);
            return distanceOf(cut.centre, whole.centre) < tolerance && std::abs(cut.radius - whole.radius) < tolerance;
        });
        EXPECT_TRUE(found);
    }
}

TEST(SubCurve, PiecesJoinAndAddUp) {
    CurveSamples samples(21);
    for (int i = 0; i < 200; ++i) {
        const Path path = samples.path(8);
        std::vector<double> ratios;
        for (int k = 0; k < 10; ++k) {
            ratios.push_back(samples.uniform(0, 1));
        }
        const std::vector<Path> pieces = splitAtRatios(path, ratios);
        ASSERT_EQ(pieces.size(), 11U);
        double sum = 0;
        for (std::size_t k = 0; k < pieces.size(); ++k) {
            sum += length(pieces[k]);
            expectCutArcsOnCircle(pieces[k], path);
            EXPECT_TRUE(k == 0 || sameVertex(pieces[k - 1].back(), pieces[k].front()));
        }
        EXPECT_NEAR(sum, length(path), 1e-7);
        EXPECT_TRUE(sameVertex(pieces.front().front(), path.front()));
        EXPECT_TRUE(sameVertex(pieces.back().back(), path.back()));
    }
}

TEST(SubCurve, OneByOneIsTheSameAsAllAtOnce) {
    CurveSamples samples(22);
    for (int i = 0; i < 100; ++i) {
        const Polyline line = samples.line(3, 5);
        std::vector<double> ratios{samples.uniform(0, 1), samples.uniform(0, 1), samples.uniform(0, 1)};
        const std::vector<Polyline> pieces = splitAtRatios(line, ratios);
        std::ranges::sort(ratios);
        ratios.insert(ratios.begin(), 0);
        ratios.push_back(1);
        ASSERT_EQ(pieces.size() + 1, ratios.size());
        for (std::size_t k = 0; k < pieces.size(); ++k) {
            EXPECT_TRUE(identical(pieces[k], subCurve(line, ratios[k], ratios[k + 1])));
        }
    }
}

TEST(SubCurve, WholeLineComesBackBitForBit) {
    CurveSamples samples(23);
    for (int i = 0; i < 50; ++i) {
        const Polyline line = samples.line(3, 10);
        EXPECT_TRUE(identical(subCurve(line, 0, 1), line));
        EXPECT_TRUE(identical(splitAtRatios(line, {}).at(0), line));
    }
}

TEST(SubCurve, CutsAtVerticesTakeNoPieceOfThem) {
    CurveSamples samples(24);
    for (int i = 0; i < 50; ++i) {
        const Path path = samples.path(20);
        std::vector<double> ratios;
        double distance = 0;
        for (std::size_t k = 0; k < path.segmentCount(); ++k) {
            ratios.push_back(distance / length(path));
            ratios.push_back(std::nextafter(distance / length(path), 2));
            distance += segmentLength(path, k);
        }
        const std::vector<Path> pieces = splitAtRatios(path, ratios);
        ASSERT_EQ(pieces.size(), path.segmentCount());
        for (std::size_t k = 0; k < pieces.size(); ++k) {
            EXPECT_EQ(pieces[k].segmentCount(), 1U);
            EXPECT_TRUE(sameVertex(pieces[k].back(), path.vertex(k + 1)));
        }
    }
}

TEST(SubCurve, IgnoresDuplicatesAndEnds) {
    const Polyline line = lineOf("LINESTRING (0 0,10 0)");
    const double ratios[] = {0.5, 1, 0, 0.5, -2, 1e-17, 1 - 1e-16, 7};
    const std::vector<Polyline> pieces = splitAtRatios(line, ratios);
    ASSERT_EQ(pieces.size(), 2U);
    EXPECT_EQ(toWkt(pieces[0]), "LINESTRING (0 0,5 0)");
    EXPECT_TRUE(splitAtRatios(Polyline(), ratios).empty());
    EXPECT_EQ(splitAtRatios(lineOf("LINESTRING (1 1,1 1)"), ratios).size(), 1U);
}

TEST(SubCurve, LandsOnGivenCoordinates) {
    const Polyline line = lineOf("LINESTRING Z (0 0 0,10 0 0,10 10 0)");
    const CurveCut cuts[] = {{0.75, {10, 5.0001, 3}}, {0.5, {10.0001, 0, 2}}, {0.1, {2, 0.0001, 1}}};
    const char* const expected[] = {
        "LINESTRING Z (0 0 0,2 0.0001 1)",
        "LINESTRING Z (2 0.0001 1,10.0001 0 2)",
        "LINESTRING Z (10.0001 0 2,10 5.0001 3)",
        "LINESTRING Z (10 5.0001 3,10 10 0)",
    };
    const std::vector<Polyline> pieces = splitAtVertices(line, cuts);
    ASSERT_EQ(pieces.size(), std::size(expected));
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        EXPECT_EQ(toWkt(pieces[i]), expected[i]);
    }
}

TEST(SubCurve, PartsKeepTheirEndsWhereACutIsBetweenThem) {
    const Polyline line = lineOf("MULTILINESTRING ((0 0,4 0),(100 0,100 6))");
    const CurveCut cut{0.4, {50, 50}};
    const std::vector<Polyline> pieces = splitAtVertices(line, std::span(&cut, 1));
    ASSERT_EQ(pieces.size(), 2U);
    EXPECT_EQ(toWkt(pieces[0]), "LINESTRING (0 0,4 0)");
    EXPECT_EQ(toWkt(pieces[1]), "LINESTRING (100 0,100 6)");
}

TEST(SubCurve, ArcsEndOnGivenCoordinatesToo) {
    const Path path = lineOf("CIRCULARSTRING (0 0,5 5,10 0)").paths.at(0);
    const CurveCut cuts[] = {{0.5, {5, 5.001}}, {0.5, {5, 5.002}}};
    const std::vector<Path> pieces = splitAtVertices(path, cuts);
    ASSERT_EQ(pieces.size(), 2U);
    EXPECT_EQ(pieces[0].back().xy(), (XY{5, 5.001}));
    EXPECT_EQ(pieces[1].front().xy(), (XY{5, 5.001}));
    EXPECT_TRUE(pieces[0].hasArcs() && pieces[1].hasArcs());
}

TEST(SubCurve, TinyPieceOfAnArcIsStraightAndNoFullCircle) {
    const Path path = lineOf("CIRCULARSTRING (500000 5500000,500005 5500005,500010 5500000)").paths.at(0);
    const double ratios[] = {0.4, 0.4 + 1e-9};
    const std::vector<Path> pieces = splitAtRatios(path, ratios);
    ASSERT_EQ(pieces.size(), 3U);
    EXPECT_LT(length(pieces[1]), 1e-7);
    EXPECT_NEAR(length(pieces[0]) + length(pieces[2]), length(path), 1e-7);
}

TEST(SubCurve, RefusesWhatIsNotFinite) {
    const Polyline line = lineOf("LINESTRING (0 0,10 0)");
    const double ratios[] = {0.5, undefined};
    const CurveCut cuts[] = {{0.5, {undefined, 0}}};
    const Path broken(std::vector<XY>{{0, 0}, {undefined, 1}});
    EXPECT_THROW(static_cast<void>(subCurve(line, undefined, 1)), PlatformError);
    EXPECT_THROW(static_cast<void>(splitAtRatios(line, ratios)), PlatformError);
    EXPECT_THROW(static_cast<void>(splitAtVertices(line, cuts)), PlatformError);
    EXPECT_THROW(static_cast<void>(splitAtRatios(broken, std::span(ratios, 1))), PlatformError);
}

} // namespace
} // namespace qz
