#include "polyline/QZVertexEditing.h"

#include <algorithm>

#include "common/CursorWalk.h"
#include "common/ErrorExit.h"
#include "common/InReference.h"
#include "platform/geometry/Measures.h"
#include "platform/geometry/Orientation.h"
#include "platform/geometry/Simplify.h"
#include "platform/geometry/VertexEditing.h"

namespace qz {

namespace {

XY placeIn(const Geometry& shape, const Point& point) {
    return inReference(point, shape.spatialReference()).vertex.xy();
}

std::vector<Path>& partsOf(Geometry& shape) {
    auto* polygon = shape.getIf<Polygon>();
    return polygon ? polygon->rings : shape.as<Polyline>().paths;
}

template <typename Shape> std::optional<VertexPlace> insertInto(Shape& shape, XY place, bool bSame) {
    const double tolerance = shape.spatialReference.grid().xyTolerance;
    return bSame ? insertVertexThrough(shape, place, tolerance) : insertVertexOn(shape, place, tolerance);
}

// Nothing when no vertex was inserted.
std::optional<Vertex> insertInto(Geometry& shape, XY place, bool bSame) {
    auto* polygon = shape.getIf<Polygon>();
    const auto at = polygon ? insertInto(*polygon, place, bSame) : insertInto(shape.as<Polyline>(), place, bSame);
    return at ? std::optional(partsOf(shape)[at->part].vertex(at->vertex)) : std::nullopt;
}

// Goes along a path and leaves vertices out.
class VertexRemoval {
public:
    VertexRemoval(const Path& path, const Envelope& envelope) : path_(path), envelope_(envelope) {}

    [[nodiscard]] bool removesAny() const {
        return std::ranges::any_of(path_.xy(), [this](XY p) { return envelope_.contains(p); });
    }

    // Empty when no vertex is left.
    [[nodiscard]] Path line() const {
        Path rest;
        for (std::size_t i = 0; i < path_.vertexCount(); ++i) {
            if (stays(i)) {
                append(rest, i);
            }
        }
        return rest;
    }

    // Starts at its first vertex that stays and ends there. Empty for fewer than three places.
    [[nodiscard]] Path ring() const {
        Path rest = line();
        if (!rest.isEmpty() && !rest.isClosed()) {
            rest.addVertex(rest.front());
        }
        const bool encloses = rest.vertexCount() > 3 || (rest.hasArcs() && rest.vertexCount() > 1);
        return encloses ? rest : Path();
    }

private:
    [[nodiscard]] bool stays(std::size_t vertex) const { return !envelope_.contains(path_.xy()[vertex]); }

    // An arc stays where both its ends do.
    void append(Path& rest, std::size_t vertex) const {
        const ArcSegment* arc = vertex > 0 && stays(vertex - 1) ? path_.arcAt(vertex - 1) : nullptr;
        if (arc) {
            rest.addArc(arc->middle, path_.vertex(vertex), arc->sense);
        } else {
            rest.addVertex(path_.vertex(vertex));
        }
    }

    const Path& path_;
    const Envelope& envelope_;
};

bool hasVertexIn(const std::vector<Path>& parts, const Envelope& envelope) {
    return std::ranges::any_of(parts, [&](const Path& part) { return VertexRemoval(part, envelope).removesAny(); });
}

Polyline withoutVertices(const Polyline& line, const Envelope& envelope) {
    Polyline rest = line;
    rest.paths.clear();
    for (const Path& path : line.paths) {
        Path part = VertexRemoval(path, envelope).line();
        if (length(part) > 0) {
            rest.paths.push_back(std::move(part));
        }
    }
    return rest;
}

Polygon withoutVertices(const Polygon& polygon, const Envelope& envelope) {
    Polygon rest = polygon;
    rest.rings.clear();
    for (const std::span<const Path> rings : polygonParts(polygon)) {
        const Path exterior = VertexRemoval(rings.front(), envelope).ring();
        if (length(exterior) == 0) {
            continue; // its holes go with it
        }
        rest.rings.push_back(exterior);
        for (const Path& hole : rings.subspan(1)) {
            Path kept = VertexRemoval(hole, envelope).ring();
            if (length(kept) > 0) {
                rest.rings.push_back(std::move(kept));
            }
        }
    }
    return isSimple(rest) ? rest : simplified(rest);
}

Geometry withoutVertices(const Geometry& shape, const Envelope& envelope) {
    const auto* polygon = shape.getIf<Polygon>();
    return polygon ? Geometry(withoutVertices(*polygon, envelope))
                   : Geometry(withoutVertices(shape.as<Polyline>(), envelope));
}

void removeVertices(Feature& feature, const Envelope& envelope) {
    Geometry shape = *feature.shape();
    if (!hasVertexIn(partsOf(shape), envelope)) {
        return;
    }
    Geometry rest = withoutVertices(shape, envelope);
    if (rest.isEmpty()) {
        feature.remove();
    } else {
        feature.setShape(std::move(rest));
        feature.store();
    }
}

double lengthOf(const Geometry& shape) {
    const auto* polygon = shape.getIf<Polygon>();
    return polygon ? perimeter(*polygon) : length(shape.as<Polyline>());
}

} // namespace

bool QZ_InsertVertexRun(FeatureCursor& cursor, Feature* feature, const Point& point, RefreshArea& refresh,
                        Point& inserted, bool bSame) {
    enum class Step { shape = 1, insert = 2, store = 3 };
    return withSteppedExit(" QZ_InsertVertexRun w=", Step::shape, false, [&](Step& step) {
        if (!hasShape(feature) || !(lengthOf(*feature->shape()) > 0)) {
            return true;
        }
        Geometry shape = *feature->shape();
        refresh.add(shape);
        step = Step::insert;
        const auto vertex = insertInto(shape, placeIn(shape, point), bSame);
        if (!vertex) {
            return true;
        }
        step = Step::store;
        inserted = bSame ? point : Point(*vertex, shape.traits());
        feature->setShape(std::move(shape));
        cursor.update(*feature);
        return true;
    });
}

bool QZ_DeleteMultiVertices(Application& application, FeatureLayer& layer, FeatureCursor& cursor,
                            const Envelope* envelope, std::int32_t expected, RefreshArea& refresh) {
    enum class Step { text = 1, walk = 2 };
    return withSteppedExit(" QZ_DeleteMultiVertices w=", Step::text, false, [&](Step& step) {
        const std::string text = collectingText(layer.featureClass());
        const Envelope inside = envelope ? *envelope : Envelope();
        step = Step::walk;
        walkShapes(application, cursor, expected, text, [&](Feature& feature, const Geometry& shape) {
            refresh.add(shape);
            removeVertices(feature, inside);
        });
        return true;
    });
}

} // namespace qz
