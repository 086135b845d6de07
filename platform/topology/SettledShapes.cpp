#include "platform/topology/SettledShapes.h"

#include <algorithm>

#include "platform/Error.h"
#include "platform/geometry/CoordinateLimits.h"
#include "platform/geometry/Measures.h"
#include "platform/geometry/Noding.h"
#include "platform/geometry/Simplify.h"
#include "platform/geometry/Vectors.h"
#include "platform/topology/ClusterNoding.h"

namespace qz {

namespace {

void requireCurve(const Geometry& shape) {
    if (!shape.getIf<Polyline>() && !shape.getIf<Polygon>()) {
        throw PlatformError("A topology is built of lines and polygons, not of points.");
    }
    requireUsableCoordinates(shape, "topology");
}

// No place is a vertex of two of the rings, or twice of one.
bool areSimpleAndApart(std::span<const Path> rings) {
    std::vector<XY> vertices;
    for (const Path& ring : rings) {
        vertices.insert(vertices.end(), ring.xy().begin() + 1, ring.xy().end());
    }
    std::ranges::sort(vertices, [](XY a, XY b) { return precedes(a, b); });
    return std::ranges::adjacent_find(vertices) == vertices.end();
}

// Each ring is still an exterior one, or a hole.
bool keepRoles(std::span<const Path> source, std::span<const Path> noded) {
    for (std::size_t i = 0; i < source.size(); ++i) {
        const double before = signedArea(source[i]), after = noded[i].isEmpty() ? 0 : signedArea(noded[i]);
        const bool vanishedHole = noded[i].isEmpty() && before < 0;
        if (!vanishedHole && !(before * after > 0)) {
            return false;
        }
    }
    return true;
}

std::vector<Path> takeNotEmpty(std::span<Path> paths) {
    std::vector<Path> taken;
    taken.reserve(paths.size());
    for (Path& path : paths) {
        if (!path.isEmpty()) {
            taken.push_back(std::move(path));
        }
    }
    return taken;
}

bool haveSameXY(std::span<const Path> a, std::span<const Path> b) {
    return std::ranges::equal(a, b, [](const Path& one, const Path& other) { return one.hasSameXY(other); });
}

double resolutionOf(std::span<const Geometry> shapes) {
    return shapes.empty() ? 0 : shapes.front().spatialReference().grid().xyResolution;
}

} // namespace

SettledShapes::SettledShapes(std::vector<Geometry> shapes, double tolerance)
    : originals_(std::move(shapes)), arcs_(std::max(tolerance, resolutionOf(originals_))), paths_(originals_.size()),
      isUnchanged_(originals_.size()) {
    std::ranges::for_each(originals_, requireCurve);
    const std::vector<Path> source = sourcePaths();
    const bool isCurved = std::ranges::any_of(originals_, hasArcs);
    std::vector<Path> noded = clusterNoded(source, tolerance, isCurved ? givenVertices() : std::vector<XY>());
    arcs_.settle(noded, resolutionOf(originals_));
    std::size_t first = 0;
    for (std::size_t shape = 0; shape < originals_.size(); ++shape) {
        const std::size_t count = pathsOf(originals_[shape]).size();
        settle(shape, std::span(source).subspan(first, count), std::span(noded).subspan(first, count));
        first += count;
    }
}

std::vector<Path> SettledShapes::sourcePaths() {
    std::vector<Path> paths;
    for (const Geometry& shape : originals_) {
        for (const Path* path : pathsOf(shape)) {
            paths.push_back(arcs_.stroked(*path));
        }
    }
    return paths;
}

std::vector<XY> SettledShapes::givenVertices() const {
    std::vector<XY> vertices;
    for (const Geometry& shape : originals_) {
        for (const Path* path : pathsOf(shape)) {
            vertices.insert(vertices.end(), path->xy().begin(), path->xy().end());
        }
    }
    return vertices;
}

void SettledShapes::settle(std::size_t shape, std::span<const Path> source, std::span<Path> noded) {
    isUnchanged_[shape] = haveSameXY(source, noded);
    if (originals_[shape].getIf<Polygon>()) {
        settlePolygon(shape, source, noded);
    } else {
        paths_[shape] = takeNotEmpty(noded);
    }
}

void SettledShapes::settlePolygon(std::size_t shape, std::span<const Path> source, std::span<Path> noded) {
    const bool hasRoles = keepRoles(source, noded);
    Polygon rings;
    static_cast<GeometryTraits&>(rings) = originals_[shape].traits();
    rings.rings = takeNotEmpty(noded);
    const bool areProper = hasRoles && areSimpleAndApart(rings.rings);
    const bool isOneShell = rings.rings.size() == 1 && signedArea(rings.rings.front()) > 0;
    // Rings that are proper on their own may still be nested as they shouldn't.
    if (!(areProper && isOneShell) && !((areProper || isUnchanged_[shape]) && isSimple(rings))) {
        rings = simplified(rings);
        isUnchanged_[shape] = false;
    }
    paths_[shape] = std::move(rings.rings);
}

} // namespace qz
