#include "platform/Error.h"
#include "platform/geometry/Orientation.h"
#include "platform/geometry/ogr/OgrGeometry.h"

namespace qz {

namespace {

Vertex vertexOf(const OGRPoint& point) {
    Vertex vertex{point.getX(), point.getY()};
    if (point.Is3D()) {
        vertex.z = point.getZ();
    }
    if (point.IsMeasured()) {
        vertex.m = point.getM();
    }
    return vertex;
}

// In bulk: copying a run of coordinates costs next to nothing, asking for them one by one does.
Path straightPath(const OGRSimpleCurve& curve) {
    const auto count = static_cast<std::size_t>(curve.getNumPoints());
    if (count == 0) {
        return {};
    }
    std::vector<XY> xy(count);
    std::vector<double> z(curve.Is3D() ? count : 0);
    std::vector<double> m(curve.IsMeasured() ? count : 0);
    curve.getPoints(&xy[0].x, sizeof(XY), &xy[0].y, sizeof(XY), z.empty() ? nullptr : z.data(), sizeof(double),
                    m.empty() ? nullptr : m.data(), sizeof(double));
    return Path(std::move(xy), std::move(z), std::move(m));
}

Path arcPath(const OGRCircularString& curve, ArcSense fullCircleSense) {
    const Path points = straightPath(curve);
    Path path;
    path.reserve(points.vertexCount() / 2 + 1);
    if (!points.isEmpty()) {
        path.addVertex(points.front());
    }
    for (std::size_t i = 2; i < points.vertexCount(); i += 2) {
        path.addArc(points.vertex(i - 1), points.vertex(i), fullCircleSense);
    }
    return path;
}

Path pathOf(const OGRCurve& curve, ArcSense fullCircleSense) {
    switch (wkbFlatten(curve.getGeometryType())) {
    case wkbCircularString:
        return arcPath(*curve.toCircularString(), fullCircleSense);
    case wkbCompoundCurve: {
        Path path;
        for (const OGRCurve* part : *curve.toCompoundCurve()) {
            path.append(pathOf(*part, fullCircleSense));
        }
        return path;
    }
    default:
        return straightPath(*curve.toSimpleCurve());
    }
}

enum class RingRole { exterior, hole };

Path ringOf(const OGRCurve& curve, RingRole role) {
    const ArcSense sense = role == RingRole::exterior ? ArcSense::clockwise : ArcSense::counterClockwise;
    Path ring = pathOf(curve, sense);
    if (!ring.isEmpty() && !ring.isClosed()) {
        ring.addVertex(ring.front());
    }
    if (isExterior(ring) != (role == RingRole::exterior)) {
        ring.reverse();
        ring.setFullCircleSense(sense);
    }
    return ring;
}

void appendRing(std::vector<Path>& rings, const OGRCurve* curve, RingRole role) {
    if (curve != nullptr && !curve->IsEmpty()) {
        rings.push_back(ringOf(*curve, role));
    }
}

void appendRings(std::vector<Path>& rings, const OGRCurvePolygon& polygon) {
    appendRing(rings, polygon.getExteriorRingCurve(), RingRole::exterior);
    for (int i = 0; i < polygon.getNumInteriorRings(); ++i) {
        appendRing(rings, polygon.getInteriorRingCurve(i), RingRole::hole);
    }
}

void appendPath(std::vector<Path>& paths, const OGRCurve& curve) {
    if (!curve.IsEmpty()) {
        paths.push_back(pathOf(curve, ArcSense::counterClockwise));
    }
}

Multipoint multipointOf(const OGRMultiPoint& source) {
    Multipoint multipoint;
    multipoint.vertices.reserve(static_cast<std::size_t>(source.getNumGeometries()));
    for (const OGRPoint* point : source) {
        if (!point->IsEmpty()) {
            multipoint.vertices.push_back(vertexOf(*point));
        }
    }
    return multipoint;
}

Point pointOf(const OGRPoint& source) {
    return source.IsEmpty() ? Point() : Point(vertexOf(source));
}

Polyline polylineOf(const OGRCurve& source) {
    Polyline polyline;
    appendPath(polyline.paths, source);
    return polyline;
}

Polyline polylineOf(const OGRMultiCurve& source) {
    Polyline polyline;
    polyline.paths.reserve(static_cast<std::size_t>(source.getNumGeometries()));
    for (const OGRCurve* curve : source) {
        appendPath(polyline.paths, *curve);
    }
    return polyline;
}

Polygon polygonOf(const OGRCurvePolygon& source) {
    Polygon polygon;
    appendRings(polygon.rings, source);
    return polygon;
}

Polygon polygonOf(const OGRMultiSurface& source) {
    Polygon polygon;
    for (const OGRSurface* surface : source) {
        appendRings(polygon.rings, *surface->toCurvePolygon());
    }
    return polygon;
}

Geometry shapeOf(const OGRGeometry& geometry) {
    switch (wkbFlatten(geometry.getGeometryType())) {
    case wkbPoint:
        return pointOf(*geometry.toPoint());
    case wkbMultiPoint:
        return multipointOf(*geometry.toMultiPoint());
    case wkbLineString:
    case wkbCircularString:
    case wkbCompoundCurve:
        return polylineOf(*geometry.toCurve());
    case wkbMultiLineString:
    case wkbMultiCurve:
        return polylineOf(*geometry.toMultiCurve());
    case wkbPolygon:
    case wkbCurvePolygon:
        return polygonOf(*geometry.toCurvePolygon());
    case wkbMultiPolygon:
    case wkbMultiSurface:
        return polygonOf(*geometry.toMultiSurface());
    default:
        throw PlatformError(std::string("A geometry of the kind ") + geometry.getGeometryName() +
                            " can't be used. Points, multipoints, lines and polygons can, straight or with circular "
                            "arcs.");
    }
}

} // namespace

Geometry fromOgr(const OGRGeometry& geometry) {
    Geometry result = shapeOf(geometry);
    result.traits().zAware = geometry.Is3D() != 0;
    result.traits().mAware = geometry.IsMeasured() != 0;
    return result;
}

} // namespace qz
