#pragma once

#include <compare>
#include <cstddef>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "platform/geometry/CircularArc.h"
#include "platform/geometry/Geometry.h"
#include "platform/geometry/Orientation.h"

namespace qz {

// A path, the parts of a line or the rings of a polygon, looked at as one curve: distances run on from part to part,
// the gaps between them count nothing. A view; the geometry must outlive it.
class Curve {
public:
    Curve(const Path& path) : parts_(&path, 1) {}
    Curve(const Polyline& polyline) : parts_(polyline.paths) {}
    Curve(const Polygon& polygon) : parts_(polygon.rings) {}
    Curve(std::span<const Path> parts) : parts_(parts) {}

    [[nodiscard]] std::span<const Path> parts() const noexcept { return parts_; }
    // No part has a vertex.
    [[nodiscard]] bool isEmpty() const noexcept;
    // Throws PlatformError that names the operation when a coordinate is not finite.
    [[nodiscard]] double lengthFor(std::string_view operation) const;

private:
    std::span<const Path> parts_;
};

// One segment of a path, which must outlive it. Ratios are of its length: 0 at the start, 1 at the end, and exactly the
// vertices there.
class CurveSegment {
public:
    CurveSegment(const Path& path, std::size_t segment) : CurveSegment(path, segment, path.arcAt(segment)) {}
    // With the arc of that segment, or nothing, where it is known already.
    CurveSegment(const Path& path, std::size_t segment, const ArcSegment* arc);

    [[nodiscard]] const std::optional<CircularArc>& circle() const noexcept { return circle_; }
    // Only of an arc, as it was given.
    [[nodiscard]] const ArcSegment& arc() const noexcept { return *arc_; }
    [[nodiscard]] XY start() const noexcept { return start_; }
    [[nodiscard]] XY end() const noexcept { return end_; }
    [[nodiscard]] double length() const noexcept;
    [[nodiscard]] Envelope envelope() const;

    [[nodiscard]] XY at(double ratio) const noexcept;
    // z and m run linearly from vertex to vertex, along an arc by way of its middle point where that has a value; they
    // are undefined between an undefined value and its neighbour.
    [[nodiscard]] Vertex vertexAt(double ratio) const;
    // Unit vector; (0, 0) for a segment without length.
    [[nodiscard]] XY direction(double ratio) const noexcept;
    // Of the points equally near the one with the smaller ratio.
    [[nodiscard]] double nearestRatio(XY p) const noexcept;
    [[nodiscard]] double squaredDistance(XY p, double ratio) const noexcept;
    // Positive when p is left of the segment's tangent at `ratio`.
    [[nodiscard]] Turn sideOf(XY p, double ratio) const noexcept;

private:
    [[nodiscard]] double valueAt(double ratio, double Vertex::*value) const;

    const Path* path_;
    std::size_t index_;
    const ArcSegment* arc_;
    XY start_;
    XY end_;
    std::optional<CircularArc> circle_;
};

// Calls `see(segment, const CurveSegment&)` for all segments of a path, in order and in linear time.
template <typename See> void forEachSegment(const Path& path, See see) {
    auto arc = path.arcs().begin();
    for (std::size_t i = 0; i < path.segmentCount(); ++i) {
        const bool curved = arc != path.arcs().end() && arc->segment == i;
        see(i, CurveSegment(path, i, curved ? &*arc : nullptr));
        arc += curved ? 1 : 0;
    }
}

// Continues `target`, which ends where the segment is at `from`, with the stretch to the ratio `to`, ending at `end`. A
// whole arc keeps its control point, a part of it gets one in its middle; a part that rises over its chord by no more
// than coordinates can express is straight.
void appendStretch(Path& target, const CurveSegment& segment, double from, double to, const Vertex& end);

// A place on a curve. At a vertex `ratio` is 0 and `segment` the index of the vertex, whether or not a segment follows.
struct CurvePlace {
    std::size_t part = 0;
    std::size_t segment = 0;
    double ratio = 0; // in [0, 1)

    friend auto operator<=>(const CurvePlace&, const CurvePlace&) = default;
};

[[nodiscard]] CurvePlace startPlace(const Curve& curve);
[[nodiscard]] CurvePlace endPlace(const Curve& curve);
[[nodiscard]] Vertex vertexAt(const Curve& curve, const CurvePlace& place);

// The places at the distances, which ascend, along a curve of that length: one each, in one walk. A distance that is a
// vertex's but for rounding gives the vertex, the last of several; where two parts meet it gives the end of the first.
// Distances out of range give the ends. The curve is not empty.
[[nodiscard]] std::vector<CurvePlace> placesAt(const Curve& curve, double length,
                                               std::span<const double> ascendingDistances);

} // namespace qz
