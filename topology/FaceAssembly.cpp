#include "topology/FaceAssembly.h"

#include <algorithm>
#include <iterator>

#include "platform/geometry/Boundary.h"
#include "platform/geometry/Measures.h"
#include "platform/geometry/Noding.h"
#include "platform/geometry/PolygonAssembly.h"
#include "platform/geometry/Simplify.h"
#include "platform/geometry/Vectors.h"

namespace qz {

namespace {

// Twice the area that an edge encloses with the origin, positive counter-clockwise.
double twiceArea(const Path& edge, XY origin) {
    double sum = 0;
    for (std::size_t i = 1; i < edge.vertexCount(); ++i) {
        sum += cross(edge.xy()[i - 1] - origin, edge.xy()[i] - origin);
    }
    for (const ArcSegment& arc : edge.arcs()) {
        sum += 2 * edge.circularArc(arc).signedSegmentArea();
    }
    return sum;
}

// Heights and measures of a ring's last vertex are those of its first.
void closeRing(Path& ring) {
    if (ring.hasDefinedZ() || ring.hasDefinedM()) {
        ring.setVertex(ring.vertexCount() - 1, ring.front());
    }
}

// Tells in near-linear time, for a lake of many islands too, that all is well. Rings that touch at a node are left to
// the full test.
bool areApart(const Polygon& polygon) {
    const double resolution = polygon.spatialReference.grid().xyResolution;
    return std::ranges::none_of(polygon.rings, [&](const Path& ring) { return isSliver(ring, resolution); }) &&
           meetNowhere(pathsOf(polygon));
}

// The way back is the way there: what lies between two lines that are one.
bool runsBack(const Path& ring) {
    const std::span<const XY> xy = ring.xy();
    return !ring.hasArcs() &&
           std::equal(xy.begin(), xy.begin() + static_cast<std::ptrdiff_t>(xy.size() / 2), xy.rbegin());
}

} // namespace

FaceAssembly::FaceAssembly(const LinkedNetwork& network, const FaceTrace& trace, const GeometryTraits& traits)
    : network_(network), trace_(trace), traits_(traits) {
    std::vector<double> areas(trace.rings().size());
    for (std::size_t ring = 0; ring < areas.size(); ++ring) {
        areas[ring] = signedAreaOf(ring);
    }
    findShells(areas);
    sortOutCourses(areas);
}

double FaceAssembly::signedAreaOf(std::size_t ring) const {
    const std::span<const EdgeEnd> halfEdges = trace_.rings()[ring];
    const XY origin = placeOf(network_.edge(edgeOf(halfEdges.front())), halfEdges.front());
    double sum = 0;
    for (const EdgeEnd halfEdge : halfEdges) {
        const double along = twiceArea(network_.edge(edgeOf(halfEdge)), origin);
        sum += isReversed(halfEdge) ? -along : along;
    }
    return -sum / 2;
}

Path FaceAssembly::pathOf(std::size_t ring) const {
    std::size_t vertices = 1;
    for (const EdgeEnd halfEdge : trace_.rings()[ring]) {
        vertices += network_.edge(edgeOf(halfEdge)).segmentCount();
    }
    Path path;
    path.reserve(vertices);
    for (const EdgeEnd halfEdge : trace_.rings()[ring]) {
        appendEdge(path, network_.edge(edgeOf(halfEdge)), isReversed(halfEdge));
    }
    closeRing(path);
    return path;
}

// A line across itself may enclose as much to its left as to its right; one of the two ways along it counts then.
bool FaceAssembly::isExterior(std::size_t ring, double area) const {
    return area > 0 || (area == 0 && !isReversed(trace_.rings()[ring].front()));
}

void FaceAssembly::findShells(const std::vector<double>& areas) {
    for (std::uint32_t ring = 0; ring < areas.size(); ++ring) {
        if (isExterior(ring, areas[ring])) {
            shells_.emplace_back();
            shells_.back().ring = ring;
            shells_.back().area = areas[ring];
        }
    }
    std::ranges::sort(shells_, {}, [this](const Shell& shell) { return trace_.rings()[shell.ring].front(); });
}

// The course around a bounded face has its exterior ring and, where it passes places twice, holes. One around a part of
// the network has none but outlines.
void FaceAssembly::sortOutCourses(const std::vector<double>& areas) {
    std::vector<std::uint32_t> shellOf(areas.size(), Groups::none);
    for (std::uint32_t shell = 0; shell < shells_.size(); ++shell) {
        shellOf[shells_[shell].ring] = shell;
    }
    for (std::size_t course = 0; course < trace_.courses().size(); ++course) {
        const std::span<const std::uint32_t> rings = trace_.courses()[course];
        const auto isShell = [&](std::uint32_t ring) { return shellOf[ring] != Groups::none; };
        const auto exterior = std::ranges::find_if(rings, isShell);
        const bool isFace = std::ranges::count_if(rings, isShell) == 1;
        std::vector<std::uint32_t>& holes = isFace ? shells_[shellOf[*exterior]].holes : outlines_;
        std::ranges::copy_if(rings, std::back_inserter(holes), [&](std::uint32_t ring) { return areas[ring] < 0; });
    }
}

void FaceAssembly::placeOutlines(const StageProgress& progress) {
    const auto partOf = [this](std::uint32_t ring) { return trace_.partOf(ring); };
    if (outlines_.empty() ||
        std::ranges::all_of(outlines_, [&](auto ring) { return partOf(ring) == partOf(outlines_.front()); })) {
        return; // one network, in nobody's face
    }
    std::vector<Envelope> extents;
    extents.reserve(shells_.size());
    std::ranges::transform(shells_, std::back_inserter(extents),
                           [this](const Shell& shell) { return pathOf(shell.ring).envelope(); });
    const PackedEnvelopeTree tree(extents);
    around_.assign(outlines_.size(), Groups::none);
    for (std::size_t i = 0; i < outlines_.size(); ++i) {
        progress(i, outlines_.size());
        if (Shell* shell = shellAround(outlines_[i], tree)) {
            shell->holes.push_back(outlines_[i]);
            around_[i] = shell->ring;
        }
    }
}

// The smallest of another part that holds the outline.
FaceAssembly::Shell* FaceAssembly::shellAround(std::uint32_t ring, const PackedEnvelopeTree& tree) {
    const EdgeEnd start = trace_.rings()[ring].front();
    const XY place = placeOf(network_.edge(edgeOf(start)), start);
    std::vector<std::size_t> candidates;
    tree.query({place.x, place.y, place.x, place.y}, [&](std::size_t shell) {
        if (trace_.partOf(shells_[shell].ring) != trace_.partOf(ring)) {
            candidates.push_back(shell);
        }
    });
    if (candidates.empty()) {
        return nullptr;
    }
    std::ranges::sort(candidates, [this](std::size_t a, std::size_t b) {
        return std::pair(shells_[a].area, a) < std::pair(shells_[b].area, b);
    });
    const Path outline = pathOf(ring);
    const double outlinedArea = -signedArea(outline);
    for (const std::size_t candidate : candidates) {
        if (shells_[candidate].area > outlinedArea && holds(shells_[candidate], outline)) {
            return &shells_[candidate];
        }
    }
    return nullptr;
}

// The outline lies wholly inside or outside; where it touches the shell without a node, a vertex aside tells which.
bool FaceAssembly::holds(Shell& shell, const Path& outline) const {
    if (!shell.locator) {
        const double tenthOfResolution = traits_.spatialReference.grid().xyResolution / 10;
        shell.locator = std::make_unique<RingLocator>(pathOf(shell.ring), tenthOfResolution);
    }
    for (const XY place : outline.xy()) {
        const RingSide side = shell.locator->sideOf(place);
        if (side != RingSide::boundary) {
            return side == RingSide::inside;
        }
    }
    return false;
}

Polygon FaceAssembly::polygonOf(const Shell& shell) const {
    Polygon polygon;
    static_cast<GeometryTraits&>(polygon) = traits_;
    polygon.rings.reserve(1 + shell.holes.size());
    polygon.rings.push_back(pathOf(shell.ring));
    std::ranges::transform(shell.holes, std::back_inserter(polygon.rings),
                           [this](std::uint32_t hole) { return pathOf(hole); });
    return polygon;
}

std::vector<Polygon> FaceAssembly::polygons() && {
    std::vector<Polygon> result;
    result.reserve(shells_.size());
    for (Shell& shell : shells_) {
        shell.locator.reset();
        Polygon polygon = polygonOf(shell);
        if (runsBack(polygon.rings.front())) {
            continue;
        }
        if (areApart(polygon) || isSimple(polygon)) {
            result.push_back(std::move(polygon));
            continue;
        }
        for (Geometry& part : exploded(simplified(polygon))) {
            result.push_back(std::move(part.as<Polygon>()));
        }
    }
    return result;
}

} // namespace qz
