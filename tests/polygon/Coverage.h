#pragma once

#include <map>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "platform/data/FeatureClass.h"
#include "platform/geometry/Measures.h"
#include "platform/geometry/SetOperations.h"

namespace qz::test {

// What two states of a layer that tiles the ground have in common.
struct Coverage {
    double area = 0;
    // Of the segments that no second polygon has with the very same ends: the outline and the edges of gaps and
    // overlaps.
    double unshared = 0;
};

inline Coverage coverageOf(FeatureClass& featureClass) {
    using Place = std::pair<double, double>;
    std::map<std::pair<Place, Place>, std::pair<int, double>> segments;
    Coverage coverage;
    const CursorPtr cursor = featureClass.search({});
    for (FeaturePtr row = cursor->next(); row; row = cursor->next()) {
        if (!row->shape() || row->shape()->isEmpty()) {
            continue;
        }
        const auto& polygon = row->shape()->as<Polygon>();
        coverage.area += area(polygon);
        for (const Path& ring : polygon.rings) {
            for (std::size_t i = 0; i < ring.segmentCount(); ++i) {
                const XY from = ring.xy()[i];
                const XY to = ring.xy()[i + 1];
                const std::pair<Place, Place> ends{{from.x, from.y}, {to.x, to.y}};
                auto& [count, length] = segments[std::minmax(ends.first, ends.second)];
                ++count;
                length = segmentLength(ring, i);
            }
        }
    }
    for (const auto& [ends, segment] : segments) {
        coverage.unshared += segment.first % 2 == 0 ? 0 : segment.second;
    }
    return coverage;
}

inline Polygon coveredBy(FeatureClass& featureClass) {
    std::vector<Geometry> shapes;
    const CursorPtr cursor = featureClass.search({});
    for (FeaturePtr feature = cursor->next(); feature; feature = cursor->next()) {
        shapes.push_back(*feature->shape());
    }
    return unionOf(shapes).as<Polygon>();
}

// Nothing overlaps, and whatever touches has the same vertices. The tip of a wedge, less wide than the resolution, may
// stay open behind a sketch that covers its mouth; none of the sketches in the tests makes one.
inline void expectCoverage(FeatureClass& featureClass, const Polygon& covered) {
    const Coverage coverage = coverageOf(featureClass);
    const double resolution = featureClass.spatialReference().grid().xyResolution;
    EXPECT_NEAR(coverage.area, area(covered), resolution);
    EXPECT_NEAR(coverage.unshared, perimeter(covered), resolution);
}

} // namespace qz::test
