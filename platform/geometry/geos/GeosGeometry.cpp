#include "platform/geometry/geos/GeosGeometry.h"

#include <algorithm>
#include <vector>

#include <fmt/format.h>

#include "platform/geometry/Orientation.h"

namespace qz {

namespace {

constexpr const char* conversion = "taking over a geometry";

GEOSContextHandle_t handle() {
    return GeosContext::ofThread().handle();
}

GeosGeometryPtr checked(GEOSGeometry* made) {
    if (made == nullptr) {
        GeosContext::ofThread().fail(conversion);
    }
    return GeosGeometryPtr(made);
}

GEOSCoordSequence* sequenceOf(std::span<const XY> xy) {
    const auto bad = std::ranges::find_if(xy, [](XY p) { return !isFinite(p); });
    if (bad != xy.end()) {
        throw PlatformError(fmt::format("The coordinate ({}, {}) is not finite.", bad->x, bad->y));
    }
    GEOSCoordSequence* sequence =
        GEOSCoordSeq_copyFromBuffer_r(handle(), &xy.data()->x, static_cast<unsigned>(xy.size()), 0, 0);
    if (sequence == nullptr) {
        GeosContext::ofThread().fail(conversion);
    }
    return sequence;
}

GeosGeometryPtr pointOf(XY p) {
    return checked(GEOSGeom_createPoint_r(handle(), sequenceOf({&p, 1})));
}

// GEOS wants at least that many points in a curve; a shorter one stands still at its end.
GEOSCoordSequence* sequenceOf(const Path& path, std::size_t leastCount) {
    if (path.vertexCount() >= leastCount) {
        return sequenceOf(path.xy());
    }
    std::vector<XY> padded(path.xy().begin(), path.xy().end());
    padded.resize(leastCount, padded.back());
    return sequenceOf(padded);
}

GeosGeometryPtr lineOf(const Path& path) {
    return checked(GEOSGeom_createLineString_r(handle(), sequenceOf(path, 2)));
}

GeosGeometryPtr ringOf(const Path& path) {
    return checked(GEOSGeom_createLinearRing_r(handle(), sequenceOf(path, 4)));
}

std::vector<GEOSGeometry*> released(std::vector<GeosGeometryPtr>& owned) {
    std::vector<GEOSGeometry*> raw;
    std::ranges::transform(owned, std::back_inserter(raw), [](GeosGeometryPtr& one) { return one.release(); });
    return raw;
}

GeosGeometryPtr polygonOf(GeosGeometryPtr exterior, std::vector<GeosGeometryPtr> holes) {
    std::vector<GEOSGeometry*> raw = released(holes);
    return checked(
        GEOSGeom_createPolygon_r(handle(), exterior.release(), raw.data(), static_cast<unsigned>(raw.size())));
}

GeosGeometryPtr collected(std::vector<GeosGeometryPtr> parts, int type) {
    if (parts.size() == 1) {
        return std::move(parts.front());
    }
    std::vector<GEOSGeometry*> raw = released(parts);
    return checked(GEOSGeom_createCollection_r(handle(), type, raw.data(), static_cast<unsigned>(raw.size())));
}

GeosGeometryPtr makeShape(const Point& point) {
    return point.isEmpty() ? checked(GEOSGeom_createEmptyPoint_r(handle())) : pointOf(point.vertex.xy());
}

GeosGeometryPtr makeShape(const Multipoint& multipoint) {
    std::vector<GeosGeometryPtr> points;
    for (const Vertex& vertex : multipoint.vertices) {
        points.push_back(pointOf(vertex.xy()));
    }
    return collected(std::move(points), GEOS_MULTIPOINT);
}

GeosGeometryPtr makeShape(const Polyline& polyline) {
    std::vector<GeosGeometryPtr> lines;
    for (const Path& path : polyline.paths) {
        if (!path.isEmpty()) {
            lines.push_back(lineOf(path));
        }
    }
    return collected(std::move(lines), GEOS_MULTILINESTRING);
}

GeosGeometryPtr partOf(std::span<const Path> rings) {
    std::vector<GeosGeometryPtr> holes;
    for (const Path& hole : rings.subspan(1)) {
        if (!hole.isEmpty()) {
            holes.push_back(ringOf(hole));
        }
    }
    return polygonOf(ringOf(rings.front()), std::move(holes));
}

GeosGeometryPtr makeShape(const Polygon& polygon) {
    std::vector<GeosGeometryPtr> polygons;
    for (const std::span<const Path> rings : polygonParts(polygon)) {
        if (!rings.front().isEmpty()) {
            polygons.push_back(partOf(rings));
        }
    }
    return collected(std::move(polygons), GEOS_MULTIPOLYGON);
}

std::vector<XY> coordinatesOf(const GEOSGeometry& curve) {
    const GEOSCoordSequence* sequence = GEOSGeom_getCoordSeq_r(handle(), &curve);
    unsigned size = 0;
    if (sequence == nullptr || GEOSCoordSeq_getSize_r(handle(), sequence, &size) == 0) {
        GeosContext::ofThread().fail(conversion);
    }
    std::vector<XY> xy(size);
    if (size > 0 && GEOSCoordSeq_copyToBuffer_r(handle(), sequence, &xy.data()->x, 0, 0) == 0) {
        GeosContext::ofThread().fail(conversion);
    }
    return xy;
}

// Calls `see` for every part of that type that is not empty.
template <typename See> void forEachPart(const GEOSGeometry& geometry, int type, const See& see) {
    const int own = GEOSGeomTypeId_r(handle(), &geometry);
    if (GEOSisEmpty_r(handle(), &geometry) != 0) {
        return;
    }
    if (own == type) {
        see(geometry);
    } else if (own >= GEOS_MULTIPOINT) {
        const int count = GEOSGetNumGeometries_r(handle(), &geometry);
        for (int i = 0; i < count; ++i) {
            forEachPart(*GEOSGetGeometryN_r(handle(), &geometry, i), type, see);
        }
    }
}

PolygonRings polygonRings(const GEOSGeometry& polygon) {
    PolygonRings rings;
    rings.emplace_back(coordinatesOf(*GEOSGetExteriorRing_r(handle(), &polygon)));
    const int count = GEOSGetNumInteriorRings_r(handle(), &polygon);
    for (int i = 0; i < count; ++i) {
        rings.emplace_back(coordinatesOf(*GEOSGetInteriorRingN_r(handle(), &polygon, i)));
    }
    return rings;
}

} // namespace

GeosGeometryPtr collect(std::vector<GeosGeometryPtr> parts, int type) {
    return collected(std::move(parts), type);
}

std::vector<PolygonRings> polygonsIn(const GEOSGeometry& geometry) {
    std::vector<PolygonRings> polygons;
    forEachPart(geometry, GEOS_POLYGON, [&](const GEOSGeometry& part) { polygons.push_back(polygonRings(part)); });
    return polygons;
}

std::vector<Path> linesIn(const GEOSGeometry& geometry) {
    std::vector<Path> lines;
    forEachPart(geometry, GEOS_LINESTRING, [&](const GEOSGeometry& part) { lines.emplace_back(coordinatesOf(part)); });
    return lines;
}

std::vector<XY> pointsIn(const GEOSGeometry& geometry) {
    std::vector<XY> points;
    forEachPart(geometry, GEOS_POINT, [&](const GEOSGeometry& part) { points.push_back(coordinatesOf(part).front()); });
    return points;
}

GeosGeometryPtr toGeos(const Geometry& geometry) {
    return geometry.visit([](const auto& shape) { return makeShape(shape); });
}

} // namespace qz
