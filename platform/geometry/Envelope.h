#pragma once

#include "platform/geometry/Coordinates.h"

namespace qz {

// Axis-parallel rectangle, sides included. An empty envelope has NaN sides, and nothing intersects it.
struct Envelope {
    double xMin = undefined;
    double yMin = undefined;
    double xMax = undefined;
    double yMax = undefined;

    [[nodiscard]] bool isEmpty() const noexcept { return !(xMin <= xMax && yMin <= yMax); }
    // NaN when empty.
    [[nodiscard]] double width() const noexcept { return xMax - xMin; }
    [[nodiscard]] double height() const noexcept { return yMax - yMin; }
    [[nodiscard]] XY centre() const noexcept { return {xMin + (xMax - xMin) / 2, yMin + (yMax - yMin) / 2}; }

    [[nodiscard]] bool intersects(const Envelope& other) const noexcept {
        return xMin <= other.xMax && other.xMin <= xMax && yMin <= other.yMax && other.yMin <= yMax;
    }
    [[nodiscard]] bool contains(const Envelope& other) const noexcept {
        return xMin <= other.xMin && other.xMax <= xMax && yMin <= other.yMin && other.yMax <= yMax;
    }
    [[nodiscard]] bool contains(XY p) const noexcept {
        return xMin <= p.x && p.x <= xMax && yMin <= p.y && p.y <= yMax;
    }

    // Coordinates that are not finite are left out. Written so that the NaN sides of an empty envelope give way.
    void expandToInclude(XY p) noexcept {
        if (isFinite(p)) {
            xMin = xMin <= p.x ? xMin : p.x;
            yMin = yMin <= p.y ? yMin : p.y;
            xMax = xMax >= p.x ? xMax : p.x;
            yMax = yMax >= p.y ? yMax : p.y;
        }
    }
    void expandToInclude(const Envelope& other) noexcept;
    // Each side moved outward by (dx, dy), inward when negative; empty when nothing is left.
    [[nodiscard]] Envelope expandedBy(double dx, double dy) const noexcept {
        const Envelope moved{xMin - dx, yMin - dy, xMax + dx, yMax + dy};
        return moved.isEmpty() ? Envelope{} : moved;
    }

    friend bool operator==(const Envelope&, const Envelope&) = default;
};

} // namespace qz
