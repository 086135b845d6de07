#pragma once

#include <vector>

#include "platform/geometry/EnvelopeIndex.h"
#include "platform/geometry/Geometry.h"

namespace qz {

// A straight piece of a line or of a ring; a point is one without length.
struct Segment {
    XY start;
    XY end;
};

// The segments of a geometry without arcs, in the order of its parts.
[[nodiscard]] std::vector<Segment> segmentsOf(const Geometry& geometry);

// 0 where they cross or touch.
[[nodiscard]] double distanceBetween(const Segment& a, const Segment& b) noexcept;

// The points, lines and rings of one geometry, made ready for many questions. Areas count by their rings only.
class SegmentIndex {
public:
    SegmentIndex() = default;
    explicit SegmentIndex(const Geometry& geometry);

    // Whether a point, line or ring of `other`, which has no arcs, comes that close; exactly that distance included.
    [[nodiscard]] bool isWithin(double distance, const Geometry& other) const;
    [[nodiscard]] bool isWithin(double distance, const Segment& segment) const;
    // Whether not even the envelope of a segment meets the window.
    [[nodiscard]] bool isClearOf(const Envelope& window) const;
    // The segments whose envelopes meet the window, joined where one goes on where the one before it ends.
    [[nodiscard]] std::vector<Path> linesIn(const Envelope& window) const;

private:
    std::vector<Segment> segments_;
    PackedEnvelopeTree tree_;
};

} // namespace qz
