#pragma once

#include <cmath>
#include <random>

#include "platform/geometry/Geometry.h"

namespace qz {

// Seeded random lines of straight segments and arcs, all vertices with z and m, around coordinates of usual size.
class CurveSamples {
public:
    explicit CurveSamples(unsigned seed) : random_(seed) {}

    double uniform(double low, double high) { return std::uniform_real_distribution<double>(low, high)(random_); }

    XY pointNear(XY centre, double reach) {
        return {centre.x + uniform(-reach, reach), centre.y + uniform(-reach, reach)};
    }

    Vertex vertexNear(XY centre, double reach) {
        const XY xy = pointNear(centre, reach);
        return {xy.x, xy.y, uniform(0, 100), uniform(0, 1000)};
    }

    Path path(int segments) {
        Path path;
        path.addVertex(vertexNear({500000, 5500000}, 50));
        for (int i = 0; i < segments; ++i) {
            const XY last = path.back().xy();
            if (uniform(0, 1) < 0.4) {
                path.addArc(vertexNear(last, 20), vertexNear(last, 20));
            } else {
                path.addVertex(vertexNear(last, 20));
            }
        }
        return path;
    }

    Polyline line(int parts, int segments) {
        Polyline line;
        line.zAware = line.mAware = true;
        for (int i = 0; i < parts; ++i) {
            line.paths.push_back(path(segments));
        }
        return line;
    }

private:
    std::mt19937 random_;
};

inline double distanceOf(XY a, XY b) {
    return std::hypot(b.x - a.x, b.y - a.y);
}

inline bool sameVertex(const Vertex& a, const Vertex& b) {
    return sameBits(a.xy(), b.xy()) && sameBits(a.z, b.z) && sameBits(a.m, b.m);
}

} // namespace qz
