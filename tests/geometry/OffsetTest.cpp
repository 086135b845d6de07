#include <algorithm>
#include <cmath>
#include <numbers>
#include <random>

#include <gtest/gtest.h>

#include "platform/geometry/CurveIndex.h"
#include "platform/geometry/Measures.h"
#include "platform/geometry/Noding.h"
#include "platform/geometry/Offset.h"
#include "platform/geometry/Orientation.h"
#include "platform/geometry/WellKnown.h"
#include "platform/geometry/geos/GeosGeometry.h"
#include "tests/geometry/CurveSamples.h"
#include "tests/geometry/RandomLines.h"

namespace qz {
namespace {

Polyline lineFrom(const char* wkt) {
    return geometryFromWkt(wkt).as<Polyline>();
}

// Rounded, so that rows can state what is no double.
std::string roundedText(Polyline line) {
    Geometry geometry(std::move(line));
    transformVertices(geometry, [](Vertex& vertex) {
        vertex.x = std::round(vertex.x * 1e6) / 1e6 + 0.0;
        vertex.y = std::round(vertex.y * 1e6) / 1e6 + 0.0;
    });
    return toWkt(geometry);
}

struct OffsetRow {
    const char* name;
    const char* line;
    double distance;
    int options;
    std::optional<double> reach;
    const char* expected;
};

void expectRows(std::span<const OffsetRow> rows) {
    for (const OffsetRow& row : rows) {
        SCOPED_TRACE(row.name);
        const Polyline line = lineFrom(row.line);
        EXPECT_EQ(roundedText(offset(line, row.distance, row.options, row.reach)), row.expected);
        Polyline reversed = line;
        reverseOrientation(reversed);
        Polyline back = offset(reversed, -row.distance, row.options, row.reach);
        reverseOrientation(back);
        std::ranges::reverse(back.paths);
        EXPECT_EQ(roundedText(back), row.expected) << "reversed";
    }
}

constexpr const char* corner = "LINESTRING (0 0,10 0,10 10)";
constexpr const char* pointed = "LINESTRING (0 -2,12 -2,12 10)";
constexpr const char* bevelled = "LINESTRING (0 -2,10 -2,12 0,12 10)";
constexpr const char* rounded =
    "COMPOUNDCURVE ((0 -2,10 -2),CIRCULARSTRING (10 -2,11.414214 -1.414214,12 0),(12 0,12 10))";
constexpr const char* inner = "LINESTRING (0 2,8 2,8 10)";

TEST(Offset, CornerOptions) {
    constexpr int simple = offsetSimple;
    const OffsetRow rows[] = {
        {"no corner bit", corner, 2, 1, {}, pointed},
        {"no bit", corner, 2, 0, {}, pointed},
        {"unknown bit only", corner, 2, 16, {}, pointed},
        {"negative value", corner, 2, -16, {}, pointed},
        {"mitered", corner, 2, simple | offsetMitered, {}, pointed},
        {"mitered, not simple", corner, 2, offsetMitered, {}, pointed},
        {"mitered, out of reach", corner, 2, simple | offsetMitered, 1.4, bevelled},
        {"mitered, just in reach", corner, 2, simple | offsetMitered, 1.4143, pointed},
        {"bevelled", corner, 2, simple | offsetBevelled, {}, bevelled},
        {"bevelled, not simple", corner, 2, offsetBevelled, {}, bevelled},
        {"bevelled, in reach", corner, 2, simple | offsetBevelled, 1.5, pointed},
        {"mitered and bevelled", corner, 2, simple | offsetMitered | offsetBevelled, {}, pointed},
        {"rounded", corner, 2, simple | offsetRounded, {}, rounded},
        {"rounded, not simple", corner, 2, offsetRounded, {}, rounded},
        {"rounded doesn't know a reach", corner, 2, simple | offsetRounded, 5.0, rounded},
        {"mitered and rounded", corner, 2, simple | offsetMitered | offsetRounded, {}, pointed},
        {"mitered and rounded, out of reach", corner, 2, simple | offsetMitered | offsetRounded, 1.2, rounded},
        {"inner, mitered", corner, -2, simple | offsetMitered, {}, inner},
        {"inner, rounded", corner, -2, simple | offsetRounded, {}, inner},
        {"inner, not simple", corner, -2, offsetBevelled, {}, inner},
        {"bend within the default reach of a bevel",
         "LINESTRING (0 0,10 0,18 6)",
         2,
         simple | offsetBevelled,
         {},
         "LINESTRING (0 -2,10.666667 -2,19.2 4.4)"},
        {"needle beyond the default reach",
         "LINESTRING (0 0,10 0,0 1)",
         1,
         simple | offsetMitered,
         {},
         "LINESTRING (0 -1,10 -1,10.099504 0.995037,0.099504 1.995037)"},
        {"back over itself",
         "LINESTRING (0 0,10 0,2 0)",
         1,
         simple | offsetRounded,
         {},
         "COMPOUNDCURVE ((0 -1,10 -1),CIRCULARSTRING (10 -1,11 0,10 1),(10 1,2 1))"},
    };
    expectRows(rows);
}

TEST(Offset, ArcsKeepTheirCentre) {
    constexpr const char* half = "CIRCULARSTRING (0 0,5 5,10 0)";
    constexpr const char* circle = "CIRCULARSTRING (0 0,10 0,0 0)";
    constexpr int simpleRounded = offsetSimple | offsetRounded;
    const OffsetRow rows[] = {
        {"half circle, inside", half, 2, simpleRounded, {}, "CIRCULARSTRING (2 0,5 3,8 0)"},
        {"half circle, outside", half, -2, simpleRounded, {}, "CIRCULARSTRING (-2 0,5 7,12 0)"},
        {"half circle, too tight", half, 6, simpleRounded, {}, "LINESTRING EMPTY"},
        {"half circle, turned inside out", half, 6, offsetRounded, {}, "CIRCULARSTRING (6 0,5 -1,4 0)"},
        {"with tangents, too tight",
         "COMPOUNDCURVE ((0 -9,0 0),CIRCULARSTRING (0 0,5 5,10 0),(10 0,10 -9))",
         5.5,
         simpleRounded,
         {},
         "LINESTRING EMPTY"},
        {"circle, to the outside", circle, 2, simpleRounded, {}, "CIRCULARSTRING (-2 0,12 0,-2 0)"},
        {"circle, to the inside", circle, -2, simpleRounded, {}, "CIRCULARSTRING (2 0,8 0,2 0)"},
        {"circle, to its centre", circle, -5, simpleRounded, {}, "LINESTRING EMPTY"},
        {"circle, beyond its centre", circle, -6, simpleRounded, {}, "LINESTRING EMPTY"},
    };
    for (const OffsetRow& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(roundedText(offset(lineFrom(row.line), row.distance, row.options)), row.expected);
    }
    Polyline clockwise = lineFrom(circle);
    reverseOrientation(clockwise);
    const Polyline inside = offset(clockwise, 2, simpleRounded);
    ASSERT_EQ(inside.paths.size(), 1U);
    EXPECT_NEAR(signedArea(inside.paths[0]), std::numbers::pi * 9, 1e-12) << "clockwise as the line";
}

TEST(Offset, LoopsAreRemoved) {
    constexpr int simpleRounded = offsetSimple | offsetRounded;
    const OffsetRow rows[] = {
        {"closed, inside",
         "LINESTRING (0 0,10 0,10 10,0 10,0 0)",
         -2,
         simpleRounded,
         {},
         "LINESTRING (2 2,8 2,8 8,2 8,2 2)"},
        {"closed, nothing left", "LINESTRING (0 0,10 0,10 10,0 10,0 0)", -5.5, simpleRounded, {}, "LINESTRING EMPTY"},
        {"notch narrower than twice the distance",
         "LINESTRING (0 0,10 0,10 -5,12 -5,12 0,22 0)",
         -2,
         simpleRounded,
         {},
         "COMPOUNDCURVE ((0 2,10 2),CIRCULARSTRING (10 2,10.517638 1.931852,11 1.732051,11.482362 1.931852,12 2),"
         "(12 2,22 2))"},
        {"beside another part",
         "MULTILINESTRING ((0 0,20 0),(5 -3,15 -3))",
         2,
         simpleRounded,
         {},
         "MULTILINESTRING ((0 -2,3.267949 -2),(16.732051 -2,20 -2),(5 -5,15 -5))"},
        {"repeated vertices", "LINESTRING (0 0,0 0,10 0,10 0,10 0,10 10,10 10)", -2, simpleRounded, {}, inner},
        {"no length", "LINESTRING (1 1,1 1)", 2, simpleRounded, {}, "LINESTRING EMPTY"},
        {"no vertex", "LINESTRING EMPTY", 2, simpleRounded, {}, "LINESTRING EMPTY"},
        {"distance 0", corner, 0, simpleRounded, {}, corner},
        {"loops stay",
         "LINESTRING (0 0,10 0,10 1,20 1)",
         3,
         offsetRounded,
         {},
         "COMPOUNDCURVE ((0 -3,10 -3),CIRCULARSTRING (10 -3,12.12132 -2.12132,13 0),(13 0,13 1,10 -2,20 -2))"},
    };
    expectRows(rows);
}

// What rounding may cost: of distances, and of coordinates that size. Crossings of flat arcs are found from their far
// centres, which costs some more.
double roundingFor(const RandomLineKind& kind) {
    return (kind.withArcs ? 1e-6 : 1e-9) * kind.step +
           8 * 0x1p-52 * std::max(std::abs(kind.centre.x), std::abs(kind.centre.y));
}

Polyline lineOf(Path path) {
    Polyline line;
    line.paths.push_back(std::move(path));
    return line;
}

// Calls `see(place, ratio)` for several places of every segment.
template <typename See> void forEachSample(const Polyline& line, See see) {
    for (const Path& path : line.paths) {
        forEachSegment(path, [&see](std::size_t, const CurveSegment& segment) {
            for (const double ratio : {0.0, 0.1, 0.37, 0.5, 0.83, 1.0}) {
                see(segment, ratio);
            }
        });
    }
}

// Places beside the line that are as near to it as to no other place of it.
std::vector<XY> freePlacesBeside(const Polyline& line, const CurveIndex& index, double distance, double rounding) {
    std::vector<XY> places;
    forEachSample(line, [&](const CurveSegment& segment, double ratio) {
        if (segment.length() == 0 || ratio == 0 || ratio == 1) {
            return;
        }
        const XY at = segment.at(ratio);
        const XY along = segment.direction(ratio);
        const XY beside{at.x + along.y * distance, at.y - along.x * distance};
        if (index.positionOf(beside)->distanceFrom >= std::abs(distance) - rounding) {
            places.push_back(beside);
        }
    });
    return places;
}

// Paths meet at their vertices only.
void expectNoOverlap(const Polyline& parallel, double rounding) {
    const Geometry geometry(parallel);
    const std::vector<std::vector<Node>> nodes = nodesOf(pathsOf(geometry));
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        for (const Node& node : nodes[i]) {
            const CurveSegment segment(parallel.paths[i], node.ratio > 0 ? node.segment : 0);
            const bool isAtVertex = node.ratio == 0 || distanceOf(node.position, segment.start()) <= rounding ||
                                    distanceOf(node.position, segment.end()) <= rounding;
            EXPECT_TRUE(isAtVertex || node.kind == NodeKind::touch)
                << static_cast<int>(node.kind) << " at " << node.position.x << " " << node.position.y;
        }
    }
}

void expectParallel(const Polyline& line, const Polyline& parallel, double distance, double rounding,
                    bool sidesAreClear) {
    const CurveIndex index{Curve(line)};
    forEachSample(parallel, [&](const CurveSegment& segment, double ratio) {
        const CurvePosition position = *index.positionOf(segment.at(ratio));
        ASSERT_NEAR(position.distanceFrom, std::abs(distance), rounding);
        if (sidesAreClear && ratio > 0 && ratio < 1 && segment.length() > 1e3 * rounding) {
            EXPECT_EQ(position.onRightSide, distance > 0);
        }
    });
    expectNoOverlap(parallel, rounding);
    const CurveIndex result{Curve(parallel)};
    for (const XY place : freePlacesBeside(line, index, distance, -rounding)) {
        const auto position = result.positionOf(place);
        ASSERT_TRUE(position && position->distanceFrom <= rounding)
            << "misses " << place.x << " " << place.y << " by " << (position ? position->distanceFrom : -1);
    }
}

TEST(OffsetProperty, EveryPlaceIsAtTheDistanceAndNoneIsMissing) {
    std::mt19937 random(7);
    std::size_t found = 0;
    for (const RandomLineKind& kind : randomLineKinds) {
        SCOPED_TRACE(kind.name);
        for (int round = 0; round < 40; ++round) {
            const Polyline line = lineOf(randomLine(random, kind, 3 + round % 30));
            for (const double distance : {0.2, -0.7, 3.0, -20.0}) {
                SCOPED_TRACE(toWkt(line) + " " + std::to_string(distance));
                const Polyline parallel = offset(line, distance * kind.step, offsetSimple | offsetRounded);
                // A line that runs back over itself has both sides on both sides.
                expectParallel(line, parallel, distance * kind.step, roundingFor(kind), !kind.onGrid);
                found += parallel.paths.size();
            }
        }
    }
    EXPECT_GT(found, 1000U);
}

// GEOS joins pieces of one side only and knows no arcs; on lines that bend gently and don't come back both agree.
TEST(OffsetProperty, PointedOffsetsAreThoseOfGeos) {
    std::mt19937 random(8);
    const GEOSContextHandle_t handle = GeosContext::ofThread().handle();
    const int mitered = 2;
    const double limit = 10;
    std::size_t compared = 0;
    for (int round = 0; round < 60; ++round) {
        std::uniform_real_distribution<double> rise(-4, 4);
        std::vector<XY> zigzag;
        for (int i = 0; i < 20; ++i) {
            zigzag.push_back({10.0 * i, rise(random)});
        }
        const Polyline line = lineOf(Path(std::move(zigzag)));
        for (const double distance : {0.5, -2.0}) {
            const GeosGeometryPtr expected(GEOSOffsetCurve_r(handle, toGeos(line).get(), -distance, 8, mitered, limit));
            double expectedLength = 0;
            ASSERT_EQ(GEOSLength_r(handle, expected.get(), &expectedLength), 1);
            const Polyline found = offset(line, distance, offsetSimple | offsetMitered);
            EXPECT_NEAR(length(found), expectedLength, 1e-9 * expectedLength) << toWkt(line) << distance;
            EXPECT_EQ(found.paths.size(), 1U);
            ++compared;
        }
    }
    EXPECT_EQ(compared, 120U);
}

// A point reaches farther than the distance, never nearer; a cut is nearer to its own corner only.
TEST(OffsetProperty, OtherCornersKeepOutOfTheDistance) {
    std::mt19937 random(9);
    for (const RandomLineKind& kind : randomLineKinds) {
        SCOPED_TRACE(kind.name);
        for (int round = 0; round < 20; ++round) {
            const Polyline line = lineOf(randomLine(random, kind, 3 + round));
            const CurveIndex index{Curve(line)};
            const double distance = (round % 2 == 0 ? 0.4 : -0.9) * kind.step;
            SCOPED_TRACE(toWkt(line) + " " + std::to_string(distance));
            const double rounding = roundingFor(kind);
            const Polyline pointedLine = offset(line, distance, offsetSimple | offsetMitered | offsetRounded, 3);
            forEachSample(pointedLine, [&](const CurveSegment& segment, double ratio) {
                const double apart = index.positionOf(segment.at(ratio))->distanceFrom;
                EXPECT_GE(apart, std::abs(distance) - rounding);
                EXPECT_LE(apart, 3 * std::abs(distance) + rounding);
            });
            expectNoOverlap(pointedLine, rounding);
            expectNoOverlap(offset(line, distance, offsetSimple | offsetBevelled), rounding);
        }
    }
}

TEST(Offset, PointsDontRunIntoOtherStretches) {
    // The needle's point would reach 20 beyond its tip, through the wall.
    const Polyline line = lineFrom("MULTILINESTRING ((0 0,10 0.5,0 1),(14 -9,14 9))");
    const Polyline found = offset(line, 1, offsetSimple | offsetMitered, 100);
    EXPECT_LT(found.paths.at(0).envelope().xMax, 11);
    const Polyline apart = offset(lineFrom("LINESTRING (0 0,10 0.5,0 1)"), 1, offsetSimple | offsetMitered, 100);
    EXPECT_GT(apart.paths.at(0).envelope().xMax, 20);
}

// Such parts come from outside; they bound nothing and have no side.
TEST(Offset, PartsOfOneVertexHaveNone) {
    const char* const bend = "COMPOUNDCURVE ((0 0,5 0),CIRCULARSTRING (5 0,6 1,5 2),(5 2,0 2))";
    for (const XY place : {XY{4, 1}, XY{50, 50}, XY{5, 0}}) {
        Polyline line = lineFrom(bend);
        line.paths.emplace_back(std::vector{place});
        for (const double distance : {3.0, -3.0}) {
            for (const Path& path : offset(line, distance, offsetSimple).paths) {
                EXPECT_GT(length(path), 0);
                EXPECT_FALSE(path.envelope().intersects({49, 49, 51, 51}));
            }
        }
    }
}

TEST(Offset, CarriesValuesAndTraits) {
    Polyline line = lineFrom("LINESTRING ZM (0 0 1 10,10 0 2 NaN,10 10 3 30,20 10 4 40)");
    line.spatialReference = SpatialReference::unknown();
    const Polyline found = offset(line, 2, offsetSimple | offsetRounded);
    EXPECT_TRUE(found.zAware && found.mAware);
    EXPECT_EQ(found.spatialReference, line.spatialReference);
    EXPECT_EQ(toWkt(found), "COMPOUNDCURVE ZM ((0 -2 1 10,10 -2 2 NaN),CIRCULARSTRING ZM (10 -2 2 NaN,"
                            "11.414213562373096 -1.4142135623730951 2 NaN,12 0 2 NaN),"
                            "(12 0 2 NaN,12 8 3 30,20 8 4 40))");
    // Cut off half-way by the part beside it.
    const Polyline cut =
        offset(lineFrom("MULTILINESTRING Z ((0 0 0,20 0 20),(20 -5 7,10 -5 7))"), 4, offsetSimple | offsetRounded);
    const Vertex end = cut.paths.at(0).back();
    EXPECT_NEAR(end.z, end.x, 1e-12);
    EXPECT_LT(end.x, 10);
}

TEST(Offset, RefusesWhatHasNoPlace) {
    const auto refusal = [](const char* wkt, double distance) {
        try {
            static_cast<void>(offset(lineFrom(wkt), distance, offsetSimple));
        } catch (const PlatformError& error) {
            return std::string(error.what());
        }
        return std::string("accepted");
    };
    EXPECT_EQ(refusal(corner, undefined), "The offset can't be built: the distance nan is not finite or too large.");
    EXPECT_EQ(refusal(corner, HUGE_VAL), "The offset can't be built: the distance inf is not finite or too large.");
    EXPECT_EQ(refusal("LINESTRING (0 0,1e300 0)", 1),
              "The offset can't be built: the coordinate 1e+300 is not finite or too large.");
}

} // namespace
} // namespace qz
