#include "platform/geometry/Distance.h"

#include "platform/geometry/Strokes.h"
#include "platform/geometry/geos/GeosGeometry.h"

namespace qz {

namespace {

// Strokes are this much closer to their arc than places have to be to be told apart.
constexpr double strokesPerTolerance = 10;

constexpr const char* measuring = "measuring the distance of two geometries";

GeosGeometryPtr strokedForGeos(const Geometry& geometry) {
    if (geometry.isEmpty()) {
        throw PlatformError("The distance can't be measured: a " + std::string(nameOf(geometry.kind())) +
                            " without coordinates has no place.");
    }
    return toGeos(straightened(geometry, geometry.spatialReference().grid().xyTolerance / strokesPerTolerance));
}

} // namespace

double distance(const Geometry& a, const Geometry& b) {
    const GeosContext& context = GeosContext::ofThread();
    const GeosGeometryPtr one = strokedForGeos(a);
    const GeosGeometryPtr other = strokedForGeos(b);
    // The indexed distance below is that of the outlines.
    if (context.answer(GEOSIntersects_r(context.handle(), one.get(), other.get()), measuring)) {
        return 0;
    }
    double result = 0;
    if (GEOSDistanceIndexed_r(context.handle(), one.get(), other.get(), &result) == 0) {
        context.fail(measuring);
    }
    return result;
}

} // namespace qz
