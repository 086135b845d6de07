#include "platform/geometry/geos/Overlay.h"

#include <algorithm>

#include "platform/geometry/Noding.h"

namespace qz {

namespace {

GEOSContextHandle_t handle() {
    return GeosContext::ofThread().handle();
}

const char* taskOf(OverlayKind kind) {
    switch (kind) {
    case OverlayKind::intersection:
        return "intersecting two geometries";
    case OverlayKind::unite:
        return "uniting two geometries";
    case OverlayKind::difference:
        return "subtracting a geometry from another";
    }
    return "";
}

GEOSGeometry* floating(OverlayKind kind, const GEOSGeometry& a, const GEOSGeometry& b) {
    switch (kind) {
    case OverlayKind::intersection:
        return GEOSIntersection_r(handle(), &a, &b);
    case OverlayKind::unite:
        return GEOSUnion_r(handle(), &a, &b);
    case OverlayKind::difference:
        return GEOSDifference_r(handle(), &a, &b);
    }
    return nullptr;
}

GEOSGeometry* onGrid(OverlayKind kind, const GEOSGeometry& a, const GEOSGeometry& b, double resolution) {
    switch (kind) {
    case OverlayKind::intersection:
        return GEOSIntersectionPrec_r(handle(), &a, &b, resolution);
    case OverlayKind::unite:
        return GEOSUnionPrec_r(handle(), &a, &b, resolution);
    case OverlayKind::difference:
        return GEOSDifferencePrec_r(handle(), &a, &b, resolution);
    }
    return nullptr;
}

double areaOf(const GEOSGeometry& geometry) {
    double area = 0;
    if (GEOSArea_r(handle(), &geometry, &area) == 0) {
        GeosContext::ofThread().fail("measuring an area");
    }
    return area;
}

// The bounds that the areas of the operands set to that of the result; rounding moves outlines by a part in 10^9 of
// the area at most.
bool hasPossibleArea(OverlayKind kind, double a, double b, double result) {
    const double slack = 1e-9 * (a + b);
    switch (kind) {
    case OverlayKind::intersection:
        return result <= std::min(a, b) + slack;
    case OverlayKind::unite:
        return std::max(a, b) - slack <= result && result <= a + b + slack;
    case OverlayKind::difference:
        return a - b - slack <= result && result <= a + slack;
    }
    return false;
}

// Rings that have no place in common, each simple; how they are nested is not looked at.
bool areApart(const std::vector<PolygonRings>& polygons) {
    std::vector<const Path*> rings;
    for (const PolygonRings& polygon : polygons) {
        for (const Path& ring : polygon) {
            rings.push_back(&ring);
        }
    }
    return std::ranges::all_of(nodesOf(rings), [](const std::vector<Node>& nodes) { return nodes.empty(); });
}

// Where rings are apart an overlay can only have gone wrong in the nesting, which shows in the area.
bool hasSoundRings(const GEOSGeometry& result) {
    return areApart(polygonsIn(result)) || isValid(result);
}

} // namespace

bool isValid(const GEOSGeometry& geometry) {
    return GeosContext::ofThread().answer(GEOSisValid_r(handle(), &geometry), "testing the validity of a geometry");
}

GeosGeometryPtr overlay(OverlayKind kind, const GEOSGeometry& a, const GEOSGeometry& b, double resolution) {
    GeosGeometryPtr result(floating(kind, a, b));
    const auto isSound = [&] {
        return result != nullptr && hasPossibleArea(kind, areaOf(a), areaOf(b), areaOf(*result)) &&
               hasSoundRings(*result);
    };
    if (isSound()) {
        return result;
    }
    result.reset(onGrid(kind, a, b, resolution));
    if (result == nullptr) {
        GeosContext::ofThread().fail(taskOf(kind));
    }
    if (!isSound()) {
        throw PlatformError(std::string("The geometry library gave an impossible area at ") + taskOf(kind) + ".");
    }
    return result;
}

GeosGeometryPtr unionOfAll(const GEOSGeometry& collection, double resolution) {
    GeosGeometryPtr result(GEOSUnaryUnion_r(handle(), &collection));
    if (result == nullptr || !hasSoundRings(*result)) {
        result.reset(GEOSUnaryUnionPrec_r(handle(), &collection, resolution));
    }
    if (result == nullptr) {
        GeosContext::ofThread().fail("uniting many geometries");
    }
    return result;
}

} // namespace qz
