#include "common/QZNaNs.h"

#include <cmath>
#include <span>

#include "common/ErrorExit.h"

namespace qz {

namespace {

enum class Step { setUp = 1, start = 2, part = 3, vertices = 4, vertex = 41, added = 5, partDone = 6, done = 7 };

// Every vertex of the geometry, a point or multipoint being one part.
class UnmeasuredVertices {
public:
    UnmeasuredVertices(Multipoint& found, Step& step) : found_(found), step_(step) {}

    void operator()(const Point& point) { see(std::span(&point.vertex, point.isEmpty() ? 0 : 1)); }
    void operator()(const Multipoint& multipoint) { see(multipoint.vertices); }
    void operator()(const Polyline& polyline) { see(polyline.paths); }
    void operator()(const Polygon& polygon) { see(polygon.rings); }

private:
    void see(std::span<const Path> parts) {
        for (const Path& part : parts) {
            step_ = Step::part;
            for (std::size_t i = 0; i < part.vertexCount(); ++i) {
                see(part.vertex(i));
            }
            step_ = Step::partDone;
        }
    }
    void see(std::span<const Vertex> vertices) {
        step_ = Step::vertices;
        for (const Vertex& vertex : vertices) {
            see(vertex);
        }
    }
    void see(const Vertex& vertex) {
        step_ = Step::vertex;
        if (!QZ_IsValidZM(vertex, false)) {
            found_.vertices.push_back(vertex);
        }
        step_ = Step::added;
    }

    Multipoint& found_;
    Step& step_;
};

} // namespace

bool QZ_IsValidZM(const Vertex& vertex, bool useZ) {
    return !std::isnan(useZ ? vertex.z : vertex.m);
}

Multipoint QZ_GetNaNs(const Geometry& geometry) {
    return withSteppedExit(" QZ_GetNaNs w=", Step::setUp, Multipoint(), [&](Step& step) {
        Multipoint found;
        static_cast<GeometryTraits&>(found) = geometry.traits();
        step = Step::start;
        geometry.visit(UnmeasuredVertices(found, step));
        step = Step::done;
        return found;
    });
}

} // namespace qz
