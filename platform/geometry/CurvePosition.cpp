#include "platform/geometry/CurvePosition.h"

#include <cmath>
#include <string>

#include "platform/Error.h"
#include "platform/geometry/CurveFoot.h"

namespace qz {

namespace {

void requireFinite(double along) {
    if (!std::isfinite(along)) {
        throw PlatformError("The point along a curve can't be found: " + std::to_string(along) +
                            " is no position on it.");
    }
}

void seeFoot(Foot& best, const Foot& foot) {
    if (foot.square < best.square) {
        best = foot;
    }
}

struct WalkedFoot {
    Foot foot;
    double length = 0;
};

void walkPart(WalkedFoot& walked, const Path& path, std::size_t part, XY p) {
    if (path.vertexCount() == 1) {
        requireFinite(path.xy()[0]);
        Foot foot = footOnVertex(path, p);
        foot.part = part;
        foot.before = foot.after = walked.length;
        seeFoot(walked.foot, foot);
    }
    double sum = 0;
    forEachSegment(path, [&](std::size_t i, const CurveSegment& segment) {
        Foot foot = footOn(segment, p);
        foot.part = part;
        foot.segment = i;
        foot.before = walked.length + sum;
        sum += segment.length();
        foot.after = walked.length + sum;
        seeFoot(walked.foot, foot);
    });
    walked.length += sum;
}

WalkedFoot walkTo(XY p, const Curve& curve) {
    requireFinite(p);
    WalkedFoot walked;
    for (std::size_t part = 0; part < curve.parts().size(); ++part) {
        walkPart(walked, curve.parts()[part], part, p);
    }
    if (!std::isfinite(walked.length) || !std::isfinite(walked.foot.square)) {
        throw PlatformError("The position on a curve can't be found: the curve has coordinates that are not finite.");
    }
    return walked;
}

CurvePosition positionOf(XY p, const Curve& curve, const WalkedFoot& walked) {
    return positionAt(curve.parts()[walked.foot.part], walked.foot, p, walked.length);
}

Vertex pointAlong(const Curve& curve, double distance, double length) {
    if (distance <= 0) {
        return vertexAt(curve, startPlace(curve));
    }
    const double distances[] = {distance};
    return vertexAt(curve, placesAt(curve, length, distances).front());
}

} // namespace

std::optional<CurvePosition> positionOf(XY point, const Curve& curve) {
    return curve.isEmpty() ? std::nullopt : std::optional(positionOf(point, curve, walkTo(point, curve)));
}

std::optional<CurvePosition> positionOnExtended(XY point, const Curve& curve) {
    if (curve.isEmpty()) {
        return std::nullopt;
    }
    const WalkedFoot walked = walkTo(point, curve);
    return extended(positionOf(point, curve, walked), curve, walked.length, point);
}

std::optional<Vertex> pointAtDistance(const Curve& curve, double distance) {
    requireFinite(distance);
    const double length = curve.lengthFor("point along a curve");
    return curve.isEmpty() ? std::nullopt : std::optional(pointAlong(curve, distance, length));
}

std::optional<Vertex> pointAtRatio(const Curve& curve, double ratio) {
    requireFinite(ratio);
    const double length = curve.lengthFor("point along a curve");
    return curve.isEmpty() ? std::nullopt : std::optional(pointAlong(curve, ratio * length, length));
}

} // namespace qz
