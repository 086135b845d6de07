#pragma once

#include <cmath>
#include <numbers>
#include <random>

#include "platform/geometry/Geometry.h"

namespace qz {

// How a random line is made. Lengths in steps, so that one kind of line can be had anywhere and in any unit.
struct RandomLineKind {
    const char* name = "";
    XY centre = {};
    double step = 1;   // mean length of a segment
    double bend = 0.6; // largest change of direction but for sharp corners, radians
    bool withArcs = false;
    bool closed = false; // back to the start
    bool onGrid = false; // vertices at whole steps: collinear stretches, retraced ones, repeated vertices
};

// A walk that bends a little all the time and sharply at every tenth vertex or so; it crosses itself.
inline Path randomLine(std::mt19937& random, const RandomLineKind& kind, int segments) {
    std::uniform_real_distribution<double> share(-1, 1);
    const auto placed = [&kind](XY at) {
        const auto settled = [&kind](double value) { return kind.onGrid ? std::round(value) : value; };
        return Vertex{kind.centre.x + kind.step * settled(at.x), kind.centre.y + kind.step * settled(at.y)};
    };
    XY at{0.25, 0.5};
    double heading = share(random) * std::numbers::pi;
    Path path;
    path.addVertex(placed(at));
    for (int i = 0; i < segments; ++i) {
        heading += share(random) > 0.8 ? share(random) * std::numbers::pi : share(random) * kind.bend;
        const double size = 1 + 0.9 * share(random);
        const XY along{size * std::cos(heading), size * std::sin(heading)};
        const XY next{at.x + along.x, at.y + along.y};
        if (kind.withArcs && share(random) > 0.2) {
            const double rise = 0.5 * share(random);
            path.addArc(placed({at.x + along.x / 2 - rise * along.y, at.y + along.y / 2 + rise * along.x}),
                        placed(next));
        } else {
            path.addVertex(placed(next));
        }
        at = next;
    }
    if (kind.closed) {
        path.addVertex(path.front());
    }
    return path;
}

inline constexpr RandomLineKind randomLineKinds[] = {
    {.name = "straight"},
    {.name = "smooth", .bend = 0.1},
    {.name = "with arcs", .withArcs = true},
    {.name = "closed", .closed = true},
    {.name = "closed with arcs", .withArcs = true, .closed = true},
    {.name = "on a grid", .bend = 2, .onGrid = true},
    {.name = "far from zero", .centre = {1e7, 2e7}, .step = 5},
    {.name = "far from zero, with arcs", .centre = {1e7, 2e7}, .step = 5, .withArcs = true},
    {.name = "degrees", .centre = {15.123, 48.456}, .step = 1e-4},
    {.name = "degrees with arcs", .centre = {15.123, 48.456}, .step = 1e-4, .withArcs = true},
};

} // namespace qz
