#include "polygon/QZFindSplitAreaLine.h"

#include <cmath>
#include <vector>

#include <fmt/format.h>

#include "cogo/QZDirections.h"
#include "common/ErrorExit.h"
#include "common/NumberText.h"
#include "platform/Error.h"
#include "platform/app/Services.h"
#include "platform/geometry/Measures.h"
#include "platform/geometry/Motion.h"
#include "platform/geometry/Simplify.h"
#include "polygon/QZPolygonCut.h"

namespace qz {

namespace {

constexpr int mostCuts = 32;
constexpr double stepDivisor = 5;

// A side of the envelope, with the polygon on its left hand, and the first step away from it.
struct Approach {
    XY from;
    XY to;
    XY step;
};

std::optional<Approach> approachFrom(const std::string& side, const Envelope& envelope) {
    const XY lowerLeft{envelope.xMin, envelope.yMin};
    const XY upperLeft{envelope.xMin, envelope.yMax};
    const XY upperRight{envelope.xMax, envelope.yMax};
    const XY lowerRight{envelope.xMax, envelope.yMin};
    const double across = envelope.width() / stepDivisor;
    const double up = envelope.height() / stepDivisor;
    if (side == "bot") {
        return Approach{lowerLeft, lowerRight, {0, up}};
    }
    if (side == "top") {
        return Approach{upperRight, upperLeft, {0, -up}};
    }
    if (side == "left") {
        return Approach{upperLeft, lowerLeft, {across, 0}};
    }
    if (side == "right") {
        return Approach{lowerRight, upperRight, {-across, 0}};
    }
    showMessage(fmt::format("The side \"{}\" is not known. Sides are bot, top, left and right.", side));
    return std::nullopt;
}

Polyline startLine(const Approach& approach, const Polygon& polygon) {
    Polyline line;
    line.spatialReference = polygon.spatialReference;
    line.paths.emplace_back(std::vector{approach.from, approach.to});
    return line;
}

struct AreaTarget {
    double area;
    double deviation;
    double firstDifference; // counts before the first cut
};

struct Found {
    Polyline line;
    double areaCutOff; // by the last line that cut
    bool converged;
};

Found search(Polygon polygon, const Approach& approach, const AreaTarget& target) {
    Geometry moving(startLine(approach, polygon));
    Geometry lastShort = moving;
    XY step = approach.step;
    double difference = target.firstDifference;
    double areaCutOff = 0;
    for (int cuts = 0; cuts < mostCuts; ++cuts) {
        if (std::abs(difference) < target.deviation) {
            return {moving.as<Polyline>(), areaCutOff, true};
        }
        checkInterrupt();
        if (cuts > 0) {
            move(moving, step.x, step.y);
        }
        const auto pieces = QZ_CutPolygon(moving.as<Polyline>(), polygon);
        if (!pieces) {
            continue;
        }
        areaCutOff = area(pieces->right);
        difference = target.area - areaCutOff;
        if (difference < 0) {
            moving = lastShort;
            step = {step.x / stepDivisor, step.y / stepDivisor};
        } else {
            lastShort = moving;
        }
    }
    return {moving.as<Polyline>(), areaCutOff, false};
}

// "then" belongs to the text as users know it.
bool isRefused(ShareKind kind, double required, double totalArea) {
    if (kind == ShareKind::area && required >= totalArea) {
        showMessage("The requested area is larger then the area of the polygon to be split!!!!");
        return true;
    }
    if (kind == ShareKind::percentage && required >= 100) {
        showMessage("The requested area is larger than the area of the polygon to be split!!!!");
        return true;
    }
    return false;
}

AreaTarget targetOf(ShareKind kind, double required, double deviation, double totalArea) {
    constexpr double aboveAnyDeviation = 999999999;
    return kind == ShareKind::area ? AreaTarget{required, deviation, aboveAnyDeviation}
                                   : AreaTarget{totalArea * required / 100, deviation, totalArea};
}

void showShortfall(double requested, double achieved) {
    showMessage("The required precision could not be achieved!\nThe closest option will be used\nRequested: " +
                defaultText(requested) + "\nAchieved: " + defaultText(achieved));
}

void requireSearchable(const Polygon& polygon, double required, double deviation) {
    if (polygon.isEmpty()) {
        throw PlatformError("The polygon to be split is empty.");
    }
    if (std::isnan(required) || std::isnan(deviation)) {
        throw PlatformError("The required share and its deviation must be numbers.");
    }
}

} // namespace

std::optional<Polyline> QZ_FindSplitAreaLine(const Polygon& polygon, const SplitAreaRequest& request, double& required,
                                             double& deviation) {
    return withErrorExit(" QZ_FindSplitAreaLine", std::optional<Polyline>(), [&]() -> std::optional<Polyline> {
        const Polygon simple = simplified(polygon);
        const double totalArea = area(simple);
        if (request.kind == ShareKind::area) {
            required = QZ_ConvertArea(required, request.unitIn, request.unitOut);
            deviation = QZ_ConvertArea(deviation, request.unitIn, request.unitOut);
        }
        requireSearchable(simple, required, deviation);
        const auto approach = approachFrom(request.start, simple.envelope());
        if (!approach || isRefused(request.kind, required, totalArea)) {
            return std::nullopt;
        }
        Found found = search(simple, *approach, targetOf(request.kind, required, deviation, totalArea));
        const double achieved = request.kind == ShareKind::area ? found.areaCutOff : found.areaCutOff / totalArea * 100;
        if (!found.converged && std::abs(required - achieved) >= deviation) {
            showShortfall(required, achieved);
        }
        return std::move(found.line);
    });
}

} // namespace qz
