#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include <gtest/gtest.h>

#include "platform/geometry/Cut.h"
#include "platform/geometry/Measures.h"
#include "platform/geometry/SetOperations.h"
#include "platform/geometry/Simplify.h"
#include "platform/geometry/SubCurve.h"
#include "platform/geometry/WellKnown.h"

namespace qz {

// What has to hold for shapes of any origin. Polygons given here are simple.

inline double areaOf(const Geometry& geometry) {
    return area(geometry.as<Polygon>());
}

// An outline may be moved by the resolution wherever it meets another.
inline double outlineSlack(const Polygon& polygon, double otherLength) {
    return polygon.spatialReference.grid().xyResolution * (perimeter(polygon) + otherLength);
}

// Returns whether the two share an area.
inline bool expectAreasAddUp(const Polygon& a, const Polygon& b) {
    const Geometry common = intersection(a, b, ResultDimension::areas);
    const Geometry rest = difference(a, b);
    const Geometry all = unionOf(a, b);
    for (const Geometry* result : {&common, &rest, &all}) {
        EXPECT_TRUE(isSimple(result->as<Polygon>())) << toWkt(a) << "\n" << toWkt(b);
    }
    const double slack = outlineSlack(a, perimeter(b));
    EXPECT_NEAR(areaOf(common) + areaOf(rest), area(a), slack) << toWkt(a) << "\n" << toWkt(b);
    EXPECT_NEAR(areaOf(all), area(a) + area(b) - areaOf(common), slack) << toWkt(a) << "\n" << toWkt(b);
    return !common.isEmpty();
}

// The pieces are inside the source, don't overlap and add up to it. Returns whether there were any.
inline bool expectPiecesAddUp(const Polygon& source, const Polyline& line) {
    const auto pieces = cut(source, line);
    if (!pieces) {
        return false;
    }
    const double slack = outlineSlack(source, length(line));
    const auto text = [&] { return toWkt(source) + "\n" + toWkt(line); };
    EXPECT_TRUE(isSimple(pieces->left) && isSimple(pieces->right)) << text();
    EXPECT_NEAR(area(pieces->left) + area(pieces->right), area(source), slack) << text();
    EXPECT_NEAR(areaOf(intersection(pieces->left, pieces->right, ResultDimension::areas)), 0, slack) << text();
    EXPECT_NEAR(areaOf(difference(pieces->left, source)), 0, slack) << text();
    EXPECT_NEAR(areaOf(difference(pieces->right, source)), 0, slack) << text();
    return true;
}

inline bool sameEnds(const Vertex& a, const Vertex& b) {
    return sameBits(a.xy(), b.xy()) && sameBits(a.z, b.z) && sameBits(a.m, b.m);
}

// Of one path: the pieces join bit for bit, and their lengths add up.
inline void expectSubCurvesJoin(const Polyline& line) {
    const std::vector<Polyline> pieces = splitAtRatios(line, std::array{0.13, 0.5, 0.77});
    double sum = 0;
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        ASSERT_EQ(pieces[i].paths.size(), 1U) << toWkt(line);
        sum += length(pieces[i]);
        EXPECT_TRUE(i == 0 || sameEnds(pieces[i - 1].paths[0].back(), pieces[i].paths[0].front())) << toWkt(line);
    }
    // Each length is the sum of as many roundings as there are segments, of coordinates of that size.
    const Envelope box = line.envelope();
    const double size = std::max({std::abs(box.xMin), std::abs(box.xMax), std::abs(box.yMin), std::abs(box.yMax)});
    const double rounding = 0x1p-50 * size * static_cast<double>(line.paths[0].vertexCount() + 8);
    EXPECT_NEAR(sum, length(line), rounding) << toWkt(line);
}

inline void expectIdempotent(const Geometry& simple) {
    EXPECT_TRUE(identical(simplified(simple), simple)) << toWkt(simple) << "\n" << toWkt(simplified(simple));
}

// From corner to corner of the envelope, by way of its middle.
inline Polyline diagonalOf(const Geometry& geometry) {
    const Envelope box = geometry.envelope();
    const double margin = 0.1 * (box.xMax - box.xMin);
    Polyline line;
    line.paths.emplace_back(std::vector<XY>{{box.xMin - margin, box.yMin},
                                            {(box.xMin + box.xMax) / 2, (box.yMin + box.yMax) / 2},
                                            {box.xMax + margin, box.yMin + 0.8 * (box.yMax - box.yMin)}});
    return line;
}

} // namespace qz
