#pragma once

#include "common/InReference.h"
#include "platform/geometry/XYHash.h"

namespace qz {

namespace detail {

// Gives vertices of `result` that come from one of `source` the coordinates that this vertex has in `original`. The
// two have the same vertices; `edited` has those of `result` in the reference of `source`.
template <typename Shape, typename PartsOf>
void takeOriginals(Shape& result, const Shape& edited, const Shape& source, const Shape& original, PartsOf partsOf) {
    PlaceNumbers places;
    std::vector<XY> originals;
    for (std::size_t part = 0; part < partsOf(source).size(); ++part) {
        for (std::size_t i = 0; i < partsOf(source)[part].vertexCount(); ++i) {
            if (places.add(partsOf(source)[part].xy()[i]) == originals.size()) {
                originals.push_back(partsOf(original)[part].xy()[i]);
            }
        }
    }
    for (std::size_t part = 0; part < partsOf(edited).size(); ++part) {
        for (std::size_t i = 0; i < partsOf(edited)[part].vertexCount(); ++i) {
            if (const auto known = places.find(partsOf(edited)[part].xy()[i])) {
                Vertex vertex = partsOf(result)[part].vertex(i);
                vertex.x = originals[*known].x;
                vertex.y = originals[*known].y;
                partsOf(result)[part].setVertex(i, vertex);
            }
        }
    }
}

inline auto& pathsOrRings(auto& shape) {
    if constexpr (requires { shape.paths; }) {
        return shape.paths;
    } else {
        return shape.rings;
    }
}

} // namespace detail

// Edits a line or polygon in another reference: `edit(shape)` sees it there, and what it leaves comes back. Vertices
// that the edit kept come back bit for bit. Where both are the same the shape itself is edited.
template <typename Shape, typename Edit>
[[nodiscard]] Shape editedIn(const SpatialReference& reference, Shape shape, Edit edit) {
    if (QZ_SameSpatialReference(shape.spatialReference, reference)) {
        edit(shape);
        return shape;
    }
    const Shape source = inReference(shape, reference);
    Shape edited = source;
    edit(edited);
    Shape result = inReference(edited, shape.spatialReference);
    detail::takeOriginals(
        result, edited, source, shape, [](auto& any) -> auto& { return detail::pathsOrRings(any); });
    return result;
}

} // namespace qz
