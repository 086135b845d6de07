#include "host/run/ResultPainting.h"

#include <algorithm>
#include <array>
#include <type_traits>

#include "common/InReference.h"
#include "platform/geometry/Project.h"

namespace qz {

namespace {

constexpr Color red{200, 30, 30};
constexpr std::array<Color, 3> colorsOfDegrees{red, {30, 90, 200}, {30, 140, 60}};

class ResultPainter {
public:
    explicit ResultPainter(HeadlessMap& map) : map_(map), display_(map.activeView().display()) {}

    void operator()(const NodePoints& nodes) {
        for (std::size_t i = 0; i < nodes.vertices.size(); ++i) {
            const auto degree = static_cast<std::size_t>(std::min(nodes.ids[i], 2));
            Point node(nodes.vertices[i], nodes);
            display_.drawPoint(inReference(std::move(node), map_.spatialReference()), {colorsOfDegrees.at(degree), 7});
        }
    }
    void operator()(const GeometryCollection& collection) {
        for (const Geometry& shape : collection.geometries) {
            paint(shape);
        }
    }
    template <typename Content> void operator()(const Content& content) {
        if constexpr (std::is_constructible_v<Geometry, Content>) {
            paint(content);
        }
    }

private:
    void paint(Geometry shape) {
        project(shape, map_.spatialReference());
        switch (shape.kind()) {
        case GeometryKind::point:
        case GeometryKind::multipoint:
            return display_.drawPoint(shape, {red, 7});
        case GeometryKind::polyline:
            return display_.drawPolyline(shape, {});
        case GeometryKind::polygon:
            return display_.drawPolygon(shape, {});
        }
    }

    HeadlessMap& map_;
    HeadlessDisplay& display_;
};

} // namespace

void paintResult(const Result& result, HeadlessMap& map) {
    std::visit(ResultPainter(map), result);
}

} // namespace qz
