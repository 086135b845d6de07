#include "common/QZPlane.h"

#include <cmath>

#include "common/ErrorExit.h"
#include "platform/geometry/Boundary.h"
#include "platform/geometry/Determinant.h"
#include "platform/geometry/Vectors.h"

namespace qz {

namespace {

const double pi = 4 * std::atan(1.0);

void requireFinite(XY point) {
    if (!std::isfinite(point.x) || !std::isfinite(point.y)) {
        throw PlatformError("An angle needs points whose coordinates are numbers.");
    }
}

// An angle that rounding closed to the full circle is none.
double belowFullCircle(double angle) {
    return angle < 360 ? angle : 0;
}

double degreesFromGons(double gons) {
    return gons / 1.11111111111111;
}

// Between the two directions, 0 to 180. The half-angle formula of the side lengths gives the same but loses its digits
// towards 0 and 180.
double unsignedAngle(double sine, double cosine) {
    if (sine == 0) {
        return cosine < 0 ? 180 : 0;
    }
    return cosine == 0 ? 90 : degreesFromGons(std::atan2(std::abs(sine), cosine) * 200 / pi);
}

} // namespace

double QZ_Distance2D(double x1, double y1, double x2, double y2) {
    return std::hypot(x2 - x1, y2 - y1);
}

double QZ_DirectionAngle(XY a, XY b) {
    const double dx = b.x - a.x;
    const double dy = b.y - a.y;
    if (dx == 0) {
        return dy < 0 ? 180 : 0;
    }
    if (dy == 0) {
        return dx > 0 ? 90 : 270;
    }
    const double fromEastWestAxis = std::atan(std::abs(dy / dx)) * 180 / pi;
    const double eastern = dy > 0 ? 90 - fromEastWestAxis : 90 + fromEastWestAxis;
    return dx > 0 ? eastern : belowFullCircle(360 - eastern);
}

double QZ_Angle3Points(XY vertex, XY from, XY to) {
    return withErrorExit(" QZ_Angle3Points", 0.0, [&] {
        requireFinite(vertex);
        requireFinite(from);
        requireFinite(to);
        if (from == to || from == vertex || to == vertex) {
            return 0.0;
        }
        // Positive: `to` lies counter-clockwise of `from`.
        const double sine = orientationDeterminant(vertex, from, to);
        const double angle = unsignedAngle(sine, dot(from - vertex, to - vertex));
        return sine > 0 ? belowFullCircle(360 - angle) : angle;
    });
}

Polyline QZ_PolylineFromEnvelope(const Envelope& envelope) {
    return withErrorExit(" QZ_PolylineFromEnvelope", Polyline(), [&] { return boundary(rectangle(envelope, {})); });
}

} // namespace qz
