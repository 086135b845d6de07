#pragma once

#include <algorithm>
#include <random>
#include <vector>

#include "platform/data/FeatureClass.h"
#include "platform/geometry/InteriorPoint.h"
#include "platform/geometry/Measures.h"
#include "platform/geometry/Simplify.h"
#include "tests/geometry/RandomShapes.h"

namespace qz::test {

// Polygons that a user could sketch over a layer of polygons: stars of all sizes, some with a hole; polygons from
// vertex to vertex; polygons along a side; spots inside a polygon; polygons drawn over again, exactly or but for less
// than the tolerance.
class RandomSketches {
public:
    RandomSketches(FeatureClass& featureClass, std::uint32_t seed) : class_(featureClass), random_(seed) {}

    [[nodiscard]] Polygon next() {
        for (;;) {
            Polygon sketch = anySketch();
            if (!sketch.isEmpty()) {
                return sketch;
            }
        }
    }

private:
    Polygon anySketch() {
        const Polygon polygon = anyPolygon();
        const double size = std::sqrt(qz::area(polygon)) + 1;
        switch (random_() % 7) {
        case 0:
            return star(placeNear(polygon, size), size * number(0.2, 2), false);
        case 1:
            return star(placeNear(polygon, size), size * number(0.5, 1.5), true);
        case 2:
            return fromVertexToVertex(polygon, size);
        case 3:
            return alongSide(polygon, size);
        case 4:
            return star(interiorPoint(polygon).value().vertex.xy(), 0.05 * size, false);
        case 5:
            return polygon;
        default:
            return again(polygon);
        }
    }

    double number(double from, double to) { return std::uniform_real_distribution<double>(from, to)(random_); }

    Polygon anyPolygon() {
        const std::vector<ObjectId> ids = class_.ids({});
        for (;;) {
            const FeaturePtr feature = class_.feature(ids[random_() % ids.size()]);
            if (feature->shape() && !feature->shape()->isEmpty()) {
                Polygon polygon = simplified(feature->shape()->as<Polygon>());
                if (!polygon.isEmpty()) {
                    return polygon;
                }
            }
        }
    }

    XY placeNear(const Polygon& polygon, double size) {
        const XY vertex = polygon.rings.front().xy()[random_() % polygon.rings.front().vertexCount()];
        return {vertex.x + number(-size, size), vertex.y + number(-size, size)};
    }

    [[nodiscard]] Polygon withReference(Polygon polygon) const {
        polygon.spatialReference = class_.spatialReference();
        return polygon;
    }

    Polygon star(XY centre, double size, bool withHole) {
        return withReference(
            randomStar(random_, {centre, size, 0}, 3 + static_cast<int>(random_() % 8), withHole, false));
    }

    // Through vertices of the polygons around, in the order of their directions from the middle.
    Polygon fromVertexToVertex(const Polygon& polygon, double size) {
        FeatureFilter around;
        around.shape = star(placeNear(polygon, 0.5 * size), size, false);
        std::vector<XY> vertices;
        const CursorPtr cursor = class_.search(around);
        for (FeaturePtr feature = cursor->next(); feature; feature = cursor->next()) {
            const auto ring = feature->shape()->as<Polygon>().rings.front().xy();
            vertices.push_back(ring[random_() % ring.size()]);
        }
        const XY middle = around.shape->envelope().centre();
        std::ranges::sort(vertices, std::ranges::greater(),
                          [middle](XY p) { return std::atan2(p.y - middle.y, p.x - middle.x); });
        Polygon sketch;
        sketch.rings.emplace_back(vertices);
        if (!vertices.empty()) {
            sketch.rings.back().addVertex(sketch.rings.back().front());
        }
        return simplified(withReference(sketch));
    }

    Polygon alongSide(const Polygon& polygon, double size) {
        const Path& ring = polygon.rings.front();
        const std::size_t side = random_() % ring.segmentCount();
        const XY apex = placeNear(polygon, size);
        Polygon sketch;
        sketch.rings.emplace_back(std::vector{ring.xy()[side], ring.xy()[side + 1], apex, ring.xy()[side]});
        return simplified(withReference(sketch));
    }

    Polygon again(Polygon polygon) {
        const double reach = polygon.spatialReference.grid().xyTolerance / 2;
        for (Path& ring : polygon.rings) {
            for (std::size_t i = 0; i + 1 < ring.vertexCount(); ++i) {
                Vertex vertex = ring.vertex(i);
                vertex.x += number(-reach, reach);
                vertex.y += number(-reach, reach);
                ring.setVertex(i, vertex);
            }
            ring.setVertex(ring.vertexCount() - 1, ring.front());
        }
        return simplified(polygon);
    }

    FeatureClass& class_;
    std::mt19937 random_;
};

} // namespace qz::test
