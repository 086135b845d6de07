#pragma once

#include <cstddef>
#include <span>
#include <utility>
#include <vector>

#include "platform/geometry/CircularArc.h"
#include "platform/geometry/Coordinates.h"
#include "platform/geometry/Envelope.h"

namespace qz {

// The third control point of a curved segment, as it was given: it has coordinates, z and m of its own and is kept bit
// for bit, so that an arc nobody touches is written as it was read.
struct ArcSegment {
    std::size_t segment = 0; // runs from vertex `segment` to vertex `segment + 1`
    Vertex middle;           // on the arc between the two; for a full circle opposite the start
    // Follows from the three points, except for a full circle (both ends equal), where it is the only source.
    ArcSense sense = ArcSense::counterClockwise;
};

// A run of vertices joined by segments, each straight or a circular arc. A ring is a path whose last vertex repeats its
// first. z and m take memory only when one of them was ever defined.
//   segmentCount() == max(vertexCount(), 1) - 1
class Path {
public:
    Path() = default;
    explicit Path(std::vector<XY> coordinates) : xy_(std::move(coordinates)) {}
    explicit Path(std::span<const Vertex> vertices);
    // `z` and `m`: empty, or one a vertex.
    Path(std::vector<XY> coordinates, std::vector<double> z, std::vector<double> m);

    [[nodiscard]] std::size_t vertexCount() const noexcept { return xy_.size(); }
    [[nodiscard]] std::size_t segmentCount() const noexcept { return xy_.empty() ? 0 : xy_.size() - 1; }
    [[nodiscard]] bool isEmpty() const noexcept { return xy_.empty(); }
    // First and last vertex have equal x and y, and there are at least two.
    [[nodiscard]] bool isClosed() const noexcept { return xy_.size() > 1 && xy_.front() == xy_.back(); }

    // The control points of arcs are not among them.
    [[nodiscard]] std::span<const XY> xy() const noexcept { return xy_; }
    [[nodiscard]] Vertex vertex(std::size_t index) const;
    [[nodiscard]] Vertex front() const { return vertex(0); }
    [[nodiscard]] Vertex back() const { return vertex(xy_.size() - 1); }
    // An arc whose control points come onto one line becomes a straight segment. The two ends of a full circle are
    // moved by `transform`, since one by one they would break it up.
    void setVertex(std::size_t index, const Vertex& vertex);
    // Empty when never defined, else one a vertex.
    [[nodiscard]] std::span<const double> z() const noexcept { return z_; }
    [[nodiscard]] std::span<const double> m() const noexcept { return m_; }

    [[nodiscard]] bool hasArcs() const noexcept { return !arcs_.empty(); }
    // Ascending by segment.
    [[nodiscard]] std::span<const ArcSegment> arcs() const noexcept { return arcs_; }
    // Nothing for a straight segment.
    [[nodiscard]] const ArcSegment* arcAt(std::size_t segment) const noexcept;
    // Only for a segment with an arc.
    [[nodiscard]] CircularArc circularArc(const ArcSegment& arc) const;

    void reserve(std::size_t vertices);
    // Starts the path, or continues it with a straight segment.
    void addVertex(const Vertex& vertex);
    // Continues a non-empty path with an arc through `middle`. Three control points on one line give two straight
    // segments, or one when `middle` equals an end; equal ends with a `middle` apart give a full circle with the given
    // sense.
    void addArc(const Vertex& middle, const Vertex& end, ArcSense fullCircleSense = ArcSense::counterClockwise);
    // Appends `next`, whose first vertex must equal the last of this path, without repeating it.
    void append(const Path& next);

    // The same points in the opposite order; arcs keep their control points and change their sense.
    void reverse();
    // Only of use for a full circle, whose sense the control points don't tell.
    void setFullCircleSense(ArcSense sense);

    // Calls `change(Vertex&)` for every vertex and every control point of an arc. An arc whose control points come onto
    // one line becomes a straight segment. A full circle keeps its sense, even when it is mirrored.
    template <typename Change> void transform(Change change);

    // Calls `see(Vertex)` for every vertex and every control point of an arc.
    template <typename See> void forEachVertex(See see) const;

    [[nodiscard]] bool hasDefinedZ() const noexcept { return !z_.empty(); }
    [[nodiscard]] bool hasDefinedM() const noexcept { return !m_.empty(); }

    // Arcs count with their true extent.
    [[nodiscard]] Envelope envelope() const;

    // Comparisons are bit for bit, control points included; undefined equals undefined.
    [[nodiscard]] bool hasSameXY(const Path& other) const;
    [[nodiscard]] bool hasSameZ(const Path& other) const;
    [[nodiscard]] bool hasSameM(const Path& other) const;
    friend bool operator==(const Path& a, const Path& b) { return a.hasSameXY(b) && a.hasSameZ(b) && a.hasSameM(b); }

private:
    void storeVertex(std::size_t index, const Vertex& vertex);
    [[nodiscard]] bool settleSense(ArcSegment& arc) const;
    // Puts right what follows from the control points after some of the segments from `first` to `last` changed.
    void settleArcs(std::size_t first, std::size_t last);

    std::vector<XY> xy_;
    std::vector<double> z_; // empty, or one a vertex
    std::vector<double> m_; // empty, or one a vertex
    std::vector<ArcSegment> arcs_;
};

template <typename See> void Path::forEachVertex(See see) const {
    for (std::size_t i = 0; i < xy_.size(); ++i) {
        see(vertex(i));
    }
    for (const ArcSegment& arc : arcs_) {
        see(arc.middle);
    }
}

template <typename Change> void Path::transform(Change change) {
    for (std::size_t i = 0; i < xy_.size(); ++i) {
        Vertex v = vertex(i);
        change(v);
        storeVertex(i, v);
    }
    for (ArcSegment& arc : arcs_) {
        change(arc.middle);
    }
    settleArcs(0, xy_.size());
}

} // namespace qz
