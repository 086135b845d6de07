#include "platform/topology/ClusterNoding.h"

#include <algorithm>
#include <cmath>
#include <random>

#include <gtest/gtest.h>

#include "platform/Error.h"
#include "platform/geometry/EnvelopeIndex.h"
#include "platform/geometry/SegmentIndex.h"
#include "platform/geometry/WellKnown.h"
#include "platform/geometry/XYHash.h"
#include "tests/topology/DirtyPavement.h"

namespace qz::test {
namespace {

std::string noded(const std::string& wkt, double tolerance) {
    Polyline lines = geometryFromWkt(wkt).as<Polyline>();
    lines.paths = clusterNoded(lines.paths, tolerance);
    return toWkt(lines);
}

TEST(ClusterNoding, PlacesAndOrder) {
    const struct {
        const char* name;
        const char* lines;
        double tolerance;
        const char* result;
    } rows[] = {
        {"a vertex goes to the one before it", "MULTILINESTRING ((0 0,10 0),(10.3 0,10 10))", 0.5,
         "MULTILINESTRING ((0 0,10 0),(10 0,10 10))"},
        {"and to the nearest", "MULTILINESTRING ((0 0,10 0),(10.8 0,20 0),(10.45 0,10 10))", 0.5,
         "MULTILINESTRING ((0 0,10 0),(10.8 0,20 0),(10.8 0,10 10))"},
        {"chains don't merge end to end", "LINESTRING (0 0,0.4 0,0.8 0,1.2 0,9 0)", 0.5, "LINESTRING (0 0,0.8 0,9 0)"},
        {"a segment is led through a near vertex", "MULTILINESTRING ((0 0,10 0),(5 0.3,5 9))", 0.5,
         "MULTILINESTRING ((0 0,5 0.3,10 0),(5 0.3,5 9))"},
        {"a crossing is a vertex of both", "MULTILINESTRING ((0 0,10 0),(4 -3,4 3))", 0.5,
         "MULTILINESTRING ((0 0,4 0,10 0),(4 -3,4 0,4 3))"},
        {"many lines through nearly one place", "MULTILINESTRING ((0 0,10 0),(4 -3,4 3),(1 -3,7 3),(7 -3,1 3))", 0.5,
         "MULTILINESTRING ((0 0,4 0,10 0),(4 -3,4 0,4 3),(1 -3,4 0,7 3),(7 -3,4 0,1 3))"},
        {"heights are interpolated", "MULTILINESTRING Z ((0 0 0,10 0 10),(4 -3 7,4 3 9))", 0.5,
         "MULTILINESTRING Z ((0 0 0,4 0 4,10 0 10),(4 -3 7,4 0 8,4 3 9))"},
        {"what is smaller vanishes", "MULTILINESTRING ((0 0,0.1 0.1,0 0.2),(5 5,9 9))", 0.5, "LINESTRING (5 5,9 9)"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(noded(row.lines, row.tolerance), row.result) << row.name;
    }
}

TEST(ClusterNoding, ToleranceMustBeUsable) {
    EXPECT_THROW((void)noded("LINESTRING (0 0,1 1)", -1), PlatformError);
    EXPECT_THROW((void)noded("LINESTRING (0 0,1 1)", NAN), PlatformError);
}

std::vector<Segment> segmentsOfAll(const std::vector<Path>& paths) {
    Polyline all;
    std::ranges::copy_if(paths, std::back_inserter(all.paths), [](const Path& path) { return !path.isEmpty(); });
    return segmentsOf(Geometry(all));
}

Envelope envelopeOf(const Segment& segment) {
    Envelope envelope;
    envelope.expandToInclude(segment.start);
    envelope.expandToInclude(segment.end);
    return envelope;
}

bool shareAnEnd(const Segment& a, const Segment& b) {
    return a.start == b.start || a.start == b.end || a.end == b.start || a.end == b.end;
}

// Vertices apart by more than the tolerance from each other and, but for the height of an equilateral triangle of that
// side, from segments; segments meet at their ends only; doing it again changes nothing.
void expectClean(const std::vector<Path>& paths, double tolerance) {
    EXPECT_EQ(clusterNoded(paths, tolerance), paths);
    const std::vector<Segment> segments = segmentsOfAll(paths);
    std::vector<Envelope> envelopes;
    std::ranges::transform(segments, std::back_inserter(envelopes), envelopeOf);
    const PackedEnvelopeTree tree(envelopes);
    for (std::size_t i = 0; i < segments.size(); ++i) {
        tree.query(envelopes[i].expandedBy(tolerance, tolerance), [&](std::size_t j) {
            const Segment &a = segments[i], &b = segments[j];
            EXPECT_TRUE(j <= i || shareAnEnd(a, b) || distanceBetween(a, b) > 0) << i << " crosses " << j;
            for (const XY end : {b.start, b.end}) {
                for (const XY own : {a.start, a.end}) {
                    EXPECT_TRUE(own == end || std::hypot(own.x - end.x, own.y - end.y) > tolerance);
                }
                EXPECT_TRUE(a.start == end || a.end == end || distanceBetween(a, {end, end}) > 0.866 * tolerance);
            }
        });
    }
}

TEST(ClusterNoding, LeavesNothingToDo) {
    for (const double tolerance : {0.0, 0.01, 0.1, 1.0, 3.0}) {
        for (const double jitter : {0.006, 0.012, 0.05}) {
            SCOPED_TRACE(tolerance);
            expectClean(clusterNoded(dirtyRings(6, jitter, 1), tolerance), tolerance);
        }
    }
    std::mt19937 random(3);
    std::uniform_real_distribution<double> place(0, 100);
    for (const double tolerance : {0.0, 0.04, 0.64, 5.0}) {
        std::vector<Path> lines;
        for (int i = 0; i < 60; ++i) {
            std::vector<XY> line;
            for (int k = 0; k < 4; ++k) {
                line.push_back({place(random), place(random)});
            }
            lines.emplace_back(std::move(line));
        }
        expectClean(clusterNoded(lines, tolerance), tolerance);
    }
}

TEST(ClusterNoding, CopiesWithinTheToleranceBecomeOne) {
    const double tolerance = 0.01;
    for (const double position : {0.0, 0.25 * tolerance, 0.5 * tolerance, 0.75 * tolerance}) {
        for (const double offset : {0.2, 0.5, 0.9}) {
            const double x = 10 + position, y = x + offset * tolerance;
            const std::vector<Path> rings = {Path(std::vector<XY>{{0, 0}, {0, 10}, {x, 10}, {x, 0}, {0, 0}}),
                                             Path(std::vector<XY>{{y, 0}, {y, 5}, {y, 10}, {20, 10}, {20, 0}, {y, 0}})};
            const std::vector<Path> clean = clusterNoded(rings, tolerance);
            EXPECT_EQ(clean[0].xy().size(), 6u);
            EXPECT_TRUE(std::ranges::count(clean[1].xy(), XY{x, 10}) == 1);
            EXPECT_TRUE(std::ranges::count(clean[0].xy(), XY{y, 5}) == 1);
        }
    }
}

} // namespace
} // namespace qz::test
