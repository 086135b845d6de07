#include "polyline/QZReshapePolyline.h"

#include <set>
#include <string>

#include <fmt/format.h>

#include "common/ErrorExit.h"
#include "common/FeatureShapes.h"
#include "common/InReference.h"
#include "common/NumberText.h"
#include "common/Numbers.h"
#include "platform/Error.h"
#include "platform/app/Services.h"
#include "platform/geometry/CurveIndex.h"
#include "platform/geometry/Reshape.h"
#include "platform/geometry/SetOperations.h"
#include "platform/geometry/Simplify.h"
#include "platform/geometry/Vectors.h"

namespace qz {

namespace {

constexpr int mostDecimals = 30;

// The places where one line has contact with the sketch, each by its text.
class ContactKeys {
public:
    ContactKeys(const Polyline& line, double tolerance, int decimals)
        : start_(line.paths.front().front().xy()), end_(line.paths.back().back().xy()), tolerance_(tolerance),
          decimals_(decimals) {}

    void addCrossing(XY place) {
        if (isNear(place, start_)) {
            place = start_;
        }
        if (isNear(place, end_)) {
            place = end_;
        }
        add(place);
    }

    void addEndsNear(const Polyline& sketch) {
        const CurveIndex index{Curve(sketch)};
        for (const XY end : {start_, end_}) {
            if (const auto position = index.positionOf(end); position && position->distanceFrom < tolerance_) {
                add(end);
            }
        }
    }

    [[nodiscard]] std::size_t count() const noexcept { return keys_.size(); }

private:
    [[nodiscard]] bool isNear(XY a, XY b) const { return dot(b - a, b - a) < tolerance_ * tolerance_; }
    void add(XY place) {
        keys_.insert(formatUngrouped(place.x, decimals_) + "|" + formatUngrouped(place.y, decimals_));
    }

    XY start_;
    XY end_;
    double tolerance_;
    int decimals_;
    std::set<std::string> keys_;
};

bool isCandidate(const Polyline& line, const Polyline& sketch, double tolerance, int decimals) {
    const Polyline simple = simplifiedPlanar(inReference(sketch, line.spatialReference));
    ContactKeys keys(line, tolerance, decimals);
    const Geometry crossings = intersection(line, simple, ResultDimension::points);
    for (const Vertex& place : crossings.as<Multipoint>().vertices) {
        keys.addCrossing(place.xy());
    }
    keys.addEndsNear(simple);
    return keys.count() > 1;
}

void requireDecimals(int decimals) {
    if (decimals < 0 || decimals > mostDecimals) {
        throw PlatformError(
            fmt::format("Points can't be told apart with {} decimals: 0 to {} are possible", decimals, mostDecimals));
    }
}

// The line reshaped, its ends where they were.
Polyline reshaped(const Polyline& line, const Path& path) {
    Polyline result = line;
    if (!reshape(result, path, line.spatialReference.grid().xyTolerance)) {
        return line;
    }
    result = simplifiedAlong(result);
    result.paths.front().setVertex(0, line.paths.front().front());
    Path& last = result.paths.back();
    last.setVertex(last.vertexCount() - 1, line.paths.back().back());
    return result;
}

enum class Step { sketch = 1, reshape = 2, store = 3 };

} // namespace

bool QZ_GetReshFeature(FeatureCursor& cursor, const Polyline& sketch, double tolerance, bool& single,
                       std::int32_t& last, std::int16_t decimals) {
    enum class Candidates { precision = 1, walk = 2 };
    return withSteppedExit(" QZ_GetReshFeature w=", Candidates::precision, false, [&](Candidates& step) {
        requireDecimals(decimals);
        step = Candidates::walk;
        int count = 0;
        for (FeaturePtr feature = cursor.next(); feature; feature = cursor.next()) {
            if (hasShape(*feature) && isCandidate(feature->shape()->as<Polyline>(), sketch, tolerance, decimals)) {
                last = toInteger32(static_cast<double>(feature->objectId()));
                ++count;
            }
        }
        single = count == 1;
        return true;
    });
}

bool QZ_ReshapePolyline(FeatureCursor& cursor, Feature* feature, const Polyline& sketch, RefreshArea& refresh) {
    return withSteppedExit(" QZ_ReshapePolyline w=", Step::sketch, false, [&](Step& step) {
        if (!hasShape(feature)) {
            return true;
        }
        const auto& line = feature->shape()->as<Polyline>();
        refresh.add(sketch);
        refresh.add(line);
        const Polyline simple = simplifiedPlanar(inReference(sketch, line.spatialReference));
        if (simple.paths.size() != 1) {
            showMessage("The reshape polyline must be single part geometry");
            return false;
        }
        step = Step::reshape;
        Polyline result = reshaped(line, simple.paths.front());
        step = Step::store;
        if (!identical(result, line)) {
            feature->setShape(std::move(result));
            cursor.update(*feature);
        }
        return true;
    });
}

} // namespace qz
