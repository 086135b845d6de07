#include "polygon/QZReshapePolygon.h"

#include <algorithm>

#include <fmt/format.h>

#include "common/ErrorExit.h"
#include "platform/Error.h"
#include "platform/geometry/SetOperations.h"
#include "polygon/OverlapPriority.h"
#include "polygon/PolygonStorage.h"

namespace qz {

namespace {

enum class Step { prepare = 1, target = 2, overlaps = 3, store = 4 };

FeaturePtr targetAt(const Point& start, FeatureClass& featureClass) {
    const std::vector<FeaturePtr> found = featuresMeeting(start, featureClass);
    if (found.empty()) {
        throw PlatformError(fmt::format("There is no polygon at ({}, {}), where the sketch starts. Start it inside the "
                                        "polygon to be reshaped.",
                                        start.vertex.x, start.vertex.y));
    }
    return found.front();
}

// How the others are settled; nothing: not at all.
std::optional<OverlapPriority> priorityFor(std::int16_t code, bool meetsOthers) {
    if (!meetsOthers) {
        return OverlapPriority::existingFirst;
    }
    const auto priority = overlapPriorityOf(code);
    const bool isUsed = priority == OverlapPriority::existingFirst || priority == OverlapPriority::sketchFirst;
    return isUsed ? priority : std::nullopt;
}

Polygon extended(const Polygon& target, const std::vector<Polygon>& added) {
    return added.empty() ? target : unionOf(target, added.front()).as<Polygon>();
}

// The polygon to be extended comes last.
void extendLast(FeatureLayer& layer, const std::vector<FeaturePtr>& features, FittedSketch fitted,
                OverlapPriority priority, Step& step) {
    const Polygon target = std::move(fitted.met.back());
    fitted.met.pop_back();
    const ResolvedOverlaps resolved = resolvedOverlaps(priority, fitted);
    const Polygon larger = extended(target, resolved.added);
    step = Step::store;
    ShapeReplacement replacement(layer);
    replacement.replace(*features.back(), larger);
    for (std::size_t i = 0; i < resolved.rest.size(); ++i) {
        replacement.replace(*features[i], resolved.rest[i]);
    }
}

} // namespace

bool QZ_ReshapePolygon(FeatureLayer& layer, const Polygon& given, std::int16_t code, RefreshArea& refresh,
                       const Point& start) {
    return withSteppedExit(" QZ_ReshapePolygon w= ", Step::prepare, false, [&](Step& step) {
        FeatureClass& featureClass = layer.featureClass();
        const Polygon sketch = preparedFor(featureClass, given);
        refresh.add(sketch);
        step = Step::target;
        std::vector<FeaturePtr> features = featuresMeeting(sketch, featureClass);
        if (features.empty()) {
            return true;
        }
        FeaturePtr target = targetAt(start, featureClass);
        std::erase_if(features, [&](const FeaturePtr& met) { return met->objectId() == target->objectId(); });
        const auto priority = priorityFor(code, !features.empty());
        if (!priority) {
            return true;
        }
        step = Step::overlaps;
        features.push_back(std::move(target));
        extendLast(layer, features, fittedInto(sketch, polygonsOf(features)), *priority, step);
        return true;
    });
}

} // namespace qz
