#include "polyline/QZOffset.h"

#include "common/CursorWalk.h"
#include "common/ErrorExit.h"
#include "common/FeatureCopies.h"
#include "common/InReference.h"
#include "platform/app/Services.h"
#include "platform/geometry/CurvePosition.h"
#include "platform/geometry/Offset.h"

namespace qz {

namespace {

enum class Step { line = 1, offset = 2, store = 3 };

constexpr const char* noLine = "There is no line to offset.";

const Polyline& lineOf(const Feature& feature) {
    return feature.shape()->as<Polyline>();
}

// The distance with the sign of the side on which the click lies.
double towards(const Point& click, const Polyline& line, double distance) {
    const XY place = inReference(click, line.spatialReference).vertex.xy();
    const auto position = positionOnExtended(place, line);
    return position && position->onRightSide ? distance : -distance;
}

// Builds offsets in the map's reference and gives them back in that of the data.
class OffsetBuilder {
public:
    OffsetBuilder(const OffsetRequest& request, int options) : request_(request), options_(options) {}

    [[nodiscard]] Polyline of(const Polyline& line, double distance) const {
        Polyline source = line;
        source.spatialReference = request_.dataReference;
        Polyline result = qz::offset(inReference(source, request_.mapReference), distance, options_);
        result.spatialReference = request_.mapReference;
        return inReference(result, request_.dataReference);
    }

private:
    const OffsetRequest& request_;
    int options_;
};

// Inserts offsets as copies of their sources.
class OffsetStore {
public:
    OffsetStore(FeatureClass& featureClass, RefreshArea& refresh) : refresh_(refresh), copies_(featureClass, nullptr) {}

    // False after a failure, which was reported.
    bool insert(const Polyline& line, const Feature& source) {
        refresh_.add(line);
        return copies_.insertParts(line, source);
    }

private:
    RefreshArea& refresh_;
    FeatureCopies copies_;
};

int optionsOfSingle(std::int16_t vMethod) {
    return vMethod == offsetMitered || vMethod == offsetBevelled || vMethod == offsetRounded ? offsetSimple + vMethod
                                                                                             : offsetSimple;
}

int optionsOfSeveral(std::int16_t vMethod) {
    return offsetSimple + vMethod;
}

} // namespace

bool QZ_OffsetPolyline(FeatureClass& featureClass, FeatureCursor& cursor, const Point& click,
                       const OffsetRequest& request, bool bCopy, RefreshArea& refresh) {
    return withSteppedExit(" QZ_OffsetPolyline w=", Step::line, false, [&](Step& step) {
        const FeaturePtr feature = firstFeature(cursor, noLine);
        const Polyline& line = lineOf(*feature);
        refresh.add(line);
        step = Step::offset;
        const OffsetBuilder builder(request, optionsOfSingle(request.vMethod));
        const Polyline copy = builder.of(line, towards(click, line, request.distance));
        step = Step::store;
        if (copy.isEmpty()) {
            return true;
        }
        if (!OffsetStore(featureClass, refresh).insert(copy, *feature)) {
            return false;
        }
        if (!bCopy) {
            feature->remove();
        }
        return true;
    });
}

bool QZ_OffsetDouble(Application& application, FeatureClass& featureClass, FeatureCursor& cursor, std::int32_t expected,
                     const OffsetRequest& request, bool bCopy, RefreshArea& refresh) {
    return withSteppedExit(" QZ_OffsetDouble w=", Step::line, false, [&](Step& step) {
        const OffsetBuilder builder(request, optionsOfSeveral(request.vMethod));
        OffsetStore store(featureClass, refresh);
        bool allProcessed = true, allStored = true;
        walkShapes(application, cursor, expected, "Offsetting polylines: ", [&](Feature& feature, const Geometry&) {
            refresh.add(*feature.shape());
            step = Step::offset;
            const Polyline right = builder.of(lineOf(feature), request.distance);
            const Polyline left = builder.of(lineOf(feature), -request.distance);
            step = Step::store;
            if (right.isEmpty() || left.isEmpty()) {
                allProcessed = false;
            } else if (!store.insert(right, feature) || !store.insert(left, feature)) {
                allStored = false;
            } else if (!bCopy) {
                feature.remove();
            }
        });
        if (!allProcessed) {
            showMessage("Some of the selected features were not processed!\nCheck the offset distance");
        }
        return allStored;
    });
}

bool QZ_OffsetPolylineMulti(FeatureClass& featureClass, FeatureCursor& cursor, const Point& click,
                            const OffsetRequest& request, std::int32_t number, RefreshArea& refresh) {
    return withSteppedExit(" QZ_OffsetPolylineMulti w=", Step::line, false, [&](Step& step) {
        const FeaturePtr feature = firstFeature(cursor, noLine);
        const Polyline& line = lineOf(*feature);
        refresh.add(line);
        const double distance = towards(click, line, request.distance);
        const OffsetBuilder builder(request, optionsOfSeveral(request.vMethod));
        OffsetStore store(featureClass, refresh);
        for (std::int32_t k = 1; k <= number; ++k) {
            checkInterrupt();
            step = Step::offset;
            const Polyline copy = builder.of(line, k * distance);
            step = Step::store;
            if (!copy.isEmpty() && !store.insert(copy, *feature)) {
                return false;
            }
        }
        return true;
    });
}

} // namespace qz
