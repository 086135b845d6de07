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

GEOSGeometry* overlaid(OverlayKind kind, const GEOSGeometry& a, const GEOSGeometry& b) {
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

GEOSGeometry* overlaidOnGrid(OverlayKind kind, const GEOSGeometry& a, const GEOSGeometry& b, double resolution) {
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

double outlineOf(const GEOSGeometry& geometry) {
    double length = 0;
    if (GEOSLength_r(handle(), &geometry, &length) == 0) {
        GeosContext::ofThread().fail("measuring a length");
    }
    return length;
}

struct AreaRange {
    double least = 0;
    double most = 0;
    double slack = 0;

    [[nodiscard]] bool contains(double area) const { return least - slack <= area && area <= most + slack; }
};

// Rounding changes areas by a part in 10^9 of those involved at most.
AreaRange areaRange(double least, double most, double involved) {
    return {least, most, 1e-9 * involved};
}

// What the areas of the operands allow that of the result to be.
AreaRange possibleArea(OverlayKind kind, double a, double b) {
    switch (kind) {
    case OverlayKind::intersection:
        return areaRange(0, std::min(a, b), a + b);
    case OverlayKind::unite:
        return areaRange(std::max(a, b), a + b, a + b);
    case OverlayKind::difference:
        return areaRange(a - b, a, a + b);
    }
    return {};
}

// The same for the union of many.
AreaRange possibleUnion(const GEOSGeometry& collection) {
    double largest = 0;
    double sum = 0;
    const int count = GEOSGetNumGeometries_r(handle(), &collection);
    for (int i = 0; i < count; ++i) {
        const double area = areaOf(*GEOSGetGeometryN_r(handle(), &collection, i));
        largest = std::max(largest, area);
        sum += area;
    }
    return areaRange(largest, sum, sum);
}

// Rings that have no place in common, each simple; how they are nested is not looked at.
bool areApart(const std::vector<PolygonRings>& polygons) {
    std::vector<const Path*> rings;
    for (const PolygonRings& polygon : polygons) {
        for (const Path& ring : polygon) {
            rings.push_back(&ring);
        }
    }
    return meetNowhere(rings);
}

// Where rings are apart an overlay can only have gone wrong in the nesting, which shows in the area.
bool hasSoundRings(const GEOSGeometry& result) {
    return areApart(polygonsIn(result)) || isValid(result);
}

std::string faultOf(const GEOSGeometry& result) {
    std::unique_ptr<char, void (*)(char*)> reason(GEOSisValidReason_r(handle(), &result),
                                                  [](char* text) { GEOSFree_r(handle(), text); });
    return isValid(result) || reason == nullptr ? "its area is impossible" : reason.get();
}

// What was found on floating coordinates, else what was found on the grid, where that is sound. The grid moves every
// place of the outlines, `outline` long together, by no more than the resolution.
template <typename Floating, typename OnGrid, typename Outline>
GeosGeometryPtr soundResult(const char* task, Floating floating, OnGrid onGrid, AreaRange possible, double resolution,
                            Outline outline) {
    const auto isSound = [&](const GeosGeometryPtr& result) {
        return result != nullptr && possible.contains(areaOf(*result)) && hasSoundRings(*result);
    };
    GeosGeometryPtr result(floating());
    if (isSound(result)) {
        return result;
    }
    result.reset(onGrid());
    if (result == nullptr) {
        GeosContext::ofThread().fail(task);
    }
    possible.slack += outline() * resolution;
    if (!isSound(result)) {
        throw PlatformError(std::string("The geometry library gave a wrong result at ") + task + ": " +
                            faultOf(*result) + ".");
    }
    return result;
}

} // namespace

bool isValid(const GEOSGeometry& geometry) {
    return GeosContext::ofThread().answer(GEOSisValid_r(handle(), &geometry), "testing the validity of a geometry");
}

GeosGeometryPtr overlay(OverlayKind kind, const GEOSGeometry& a, const GEOSGeometry& b, double resolution) {
    return soundResult(
        taskOf(kind), [&] { return overlaid(kind, a, b); }, [&] { return overlaidOnGrid(kind, a, b, resolution); },
        possibleArea(kind, areaOf(a), areaOf(b)), resolution, [&] { return outlineOf(a) + outlineOf(b); });
}

GeosGeometryPtr unionOfAll(const GEOSGeometry& collection, double resolution) {
    return soundResult(
        "uniting many geometries", [&] { return GEOSUnaryUnion_r(handle(), &collection); },
        [&] { return GEOSUnaryUnionPrec_r(handle(), &collection, resolution); }, possibleUnion(collection), resolution,
        [&] { return outlineOf(collection); });
}

} // namespace qz
