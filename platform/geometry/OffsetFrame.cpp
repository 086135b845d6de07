#include "platform/geometry/OffsetFrame.h"

#include <algorithm>
#include <cmath>

#include <fmt/format.h>

#include "platform/geometry/Motion.h"

namespace qz {

namespace {

void requireUsable(std::string_view operation, const char* what, double value, double largest) {
    if (!(std::abs(value) <= largest)) {
        throw PlatformError(
            fmt::format("The {} can't be built: the {} {} is not finite or too large.", operation, what, value));
    }
}

// A whole number of steps of a power of two, which coordinates share with it to their last digit.
double originNear(double middle, double width) {
    const double step = std::exp2(std::ceil(std::log2(width)));
    return std::isfinite(step) && step > 0 ? std::round(middle / step) * step : middle;
}

} // namespace

OffsetFrame::OffsetFrame(std::string_view operation, const Geometry& shape, double distance, double largest) {
    requireUsable(operation, "distance", distance, largest);
    if (shape.isEmpty()) {
        return;
    }
    forEachVertex(shape, [operation, largest](const Vertex& vertex) {
        requireUsable(operation, "coordinate", vertex.x, largest);
        requireUsable(operation, "coordinate", vertex.y, largest);
    });
    // Arcs may reach far beyond their vertices.
    const Envelope extent = shape.envelope();
    requireUsable(operation, "width", extent.width(), largest);
    requireUsable(operation, "height", extent.height(), largest);
    const double width = std::max({extent.width(), extent.height(), std::abs(distance)});
    origin_ = {originNear(extent.centre().x, width), originNear(extent.centre().y, width)};
}

Geometry OffsetFrame::moved(Geometry shape, XY by) {
    move(shape, by.x, by.y);
    return shape;
}

} // namespace qz
