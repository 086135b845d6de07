#pragma once

#include <string_view>

#include "platform/geometry/Geometry.h"

namespace qz {

// Coordinates about the middle of a shape, so that those far from the zero point cost no digits. The way there is
// exact but for coordinates much finer than the shape is wide; the way back rounds to what coordinates can express.
class OffsetFrame {
public:
    // Throws PlatformError that names the operation when the distance or a coordinate is not finite or beyond
    // `largest`.
    OffsetFrame(std::string_view operation, const Geometry& shape, double distance, double largest);

    [[nodiscard]] Geometry toLocal(const Geometry& shape) const { return moved(shape, {-origin_.x, -origin_.y}); }
    template <typename Shape> [[nodiscard]] Shape toLocal(const Shape& shape) const {
        return moved(shape, {-origin_.x, -origin_.y}).template as<Shape>();
    }
    template <typename Shape> [[nodiscard]] Shape fromLocal(const Shape& shape) const {
        return moved(shape, origin_).template as<Shape>();
    }

private:
    [[nodiscard]] static Geometry moved(Geometry shape, XY by);

    XY origin_;
};

} // namespace qz
