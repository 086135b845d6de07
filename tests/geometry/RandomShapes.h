#pragma once

#include <cmath>
#include <numbers>
#include <random>

#include "platform/geometry/Geometry.h"

namespace qz {

// Rings that cross themselves and each other; on the grid they meet in vertices and run along each other as well.
inline Polygon randomScribble(std::mt19937& random, bool onGrid, bool withArcs) {
    std::uniform_real_distribution<double> place(0, 12);
    const auto coordinate = [&] { return onGrid ? std::round(place(random)) : place(random); };
    Polygon polygon;
    for (int ring = 0; ring < 2; ++ring) {
        Path path;
        const Vertex start{coordinate(), coordinate()};
        path.addVertex(start);
        for (int i = 0; i < 7; ++i) {
            const Vertex next{coordinate(), coordinate()};
            if (withArcs && i % 3 == 1) {
                path.addArc({coordinate(), coordinate()}, next);
            } else {
                path.addVertex(next);
            }
        }
        path.addVertex(start);
        polygon.rings.push_back(std::move(path));
    }
    return polygon;
}

struct ShapeFrame {
    XY centre;
    double size = 1;
    double grid = 0; // coordinates are rounded to it unless it is 0

    [[nodiscard]] XY at(double polarAngle, double ratio) const {
        const auto rounded = [this](double value) { return grid > 0 ? std::round(value / grid) * grid : value; };
        return {rounded(centre.x + size * ratio * std::cos(polarAngle)),
                rounded(centre.y + size * ratio * std::sin(polarAngle))};
    }
};

// A star seen from its centre, clockwise, with a hole of the same form when `holeRatio` is above 0; every third segment
// is an arc where `withArcs`. z and m are linear in x and y when `zOf` and `mOf` are applied by the caller.
inline Path randomStarRing(std::mt19937& random, const ShapeFrame& frame, int vertices, double ratio, bool withArcs) {
    std::uniform_real_distribution<double> radius(0.55, 1);
    std::vector<XY> corners;
    for (int i = 0; i < vertices; ++i) {
        corners.push_back(frame.at(-2 * std::numbers::pi * i / vertices, ratio * radius(random)));
    }
    corners.push_back(corners.front());
    Path ring;
    ring.addVertex({corners[0].x, corners[0].y});
    for (std::size_t i = 1; i < corners.size(); ++i) {
        const XY from = corners[i - 1];
        const XY to = corners[i];
        if (withArcs && i % 3 == 0) {
            ring.addArc({(from.x + to.x) / 2 + 0.1 * (to.y - from.y), (from.y + to.y) / 2 - 0.1 * (to.x - from.x)},
                        {to.x, to.y});
        } else {
            ring.addVertex({to.x, to.y});
        }
    }
    return ring;
}

inline Polygon randomStar(std::mt19937& random, const ShapeFrame& frame, int vertices, bool withHole, bool withArcs) {
    Polygon polygon;
    polygon.rings.push_back(randomStarRing(random, frame, vertices, 1, withArcs));
    if (withHole) {
        polygon.rings.push_back(randomStarRing(random, frame, vertices, 0.4, withArcs));
        polygon.rings.back().reverse();
    }
    return polygon;
}

} // namespace qz
