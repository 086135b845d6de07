#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "platform/geometry/CurvePosition.h"

namespace qz {

// A curve made ready for many questions, each with the same answer as the function of that name. It keeps a copy of the
// paths. Building is O(n), a question O(log n) for a curve whose segments don't all lie at one distance from the point.
class CurveIndex {
public:
    explicit CurveIndex(const Curve& curve);

    [[nodiscard]] double length() const noexcept { return length_; }
    [[nodiscard]] std::optional<CurvePosition> positionOf(XY point) const;
    [[nodiscard]] std::optional<CurvePosition> positionOnExtended(XY point) const;

private:
    struct Place {
        std::size_t part;
        std::size_t segment;
        double before; // distance along at its start
        double after;
    };
    struct Nearest;

    // Returns the distance along at which the part ends.
    double addPart(std::size_t part, double before);
    void addLevel();
    void see(std::size_t place, XY point, Nearest& nearest) const;
    void search(std::size_t level, std::size_t first, XY point, Nearest& nearest) const;

    std::vector<Path> paths_;
    double length_ = 0;
    // Segments in their order along the curve, and above them levels of envelopes of so many neighbours each: a line
    // is near itself in the order of its segments.
    std::vector<Place> places_;
    std::vector<std::vector<Envelope>> levels_;
};

} // namespace qz
