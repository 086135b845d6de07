#include "polyline/QZAddPolyline.h"

#include <vector>

#include "common/CopiedValues.h"
#include "common/ErrorExit.h"
#include "common/FeatureShapes.h"
#include "common/InReference.h"
#include "common/QZFeatureClass.h"
#include "common/QZFeatureStorage.h"
#include "common/QZSpatialSearch.h"
#include "common/StorableParts.h"
#include "platform/Error.h"
#include "platform/app/Services.h"
#include "platform/geometry/Boundary.h"
#include "platform/geometry/CurvePosition.h"
#include "platform/geometry/Grid.h"
#include "platform/geometry/Relations.h"
#include "platform/geometry/Simplify.h"
#include "polyline/QZIntersectSelected.h"

namespace qz {

namespace {

enum class Step { prepare = 1, store = 2, node = 3, erase = 4 };

void layFlat(Polyline& line) {
    line.zAware = true;
    for (Path& path : line.paths) {
        path.transform([](Vertex& vertex) { vertex.z = 0; });
    }
}

void fitHeights(Polyline& line, const FeatureClass& featureClass) {
    if (!QZ_FCHasZ(featureClass)) {
        line.zAware = false;
    } else if (!line.zAware) {
        layFlat(line);
    }
    line.mAware = QZ_FCHasM(featureClass);
}

void fitFlat(Polyline& line, const FeatureClass& featureClass) {
    if (QZ_FCHasZ(featureClass)) {
        layFlat(line);
    }
    line.mAware = line.mAware || QZ_FCHasM(featureClass);
}

// A new feature of the class with the shape, snapped, and the values that `fill` sets.
template <typename Fill> void storeSnapped(const Polyline& line, FeatureClass& featureClass, Fill fill) {
    Polyline snapped = line;
    snapToSpatialReference(snapped);
    const FeaturePtr feature = featureClass.createFeature();
    feature->setShape(std::move(snapped));
    fill(*feature);
    feature->store();
}

// One line on its way into a network.
class NetworkAddition {
public:
    NetworkAddition(Application& application, FeatureLayer& layer, RefreshArea& refresh, std::int32_t& expected,
                    const NetworkAction& action)
        : application_(application), layer_(layer), refresh_(refresh), expected_(expected), action_(action) {}

    // Calls `store(part)` for the line, or for each of its parts where the layer holds single ones. False when storing
    // or noding failed, which was reported.
    template <typename Store> bool run(const Polyline& line, Step& step, Store store) {
        if (line.isEmpty()) {
            throw PlatformError("The line to be added is empty.");
        }
        if (!action_.bAdd) {
            step = Step::node;
            return cutOthers(line);
        }
        step = Step::store;
        for (const Geometry& part : storableParts(line, layer_.featureClass())) {
            if (!store(part.as<Polyline>())) {
                return false;
            }
        }
        step = Step::node;
        return nodeWithOthers(line);
    }

    // Deletes the lines whose middle is inside the polygon; on its boundary they stay.
    void erase(const Polygon& polygon) {
        const PreparedRelation inside(polygon, SpatialRelation::within);
        const CursorPtr cursor = meeting(polygon);
        for (FeaturePtr feature = cursor->next(); feature; feature = cursor->next()) {
            checkInterrupt();
            if (!hasShape(*feature)) {
                feature->remove();
                continue;
            }
            refresh_.add(*feature->shape());
            const auto& line = feature->shape()->as<Polyline>();
            if (inside.holdsFor(Point(pointAtRatio(line, 0.5).value(), line))) {
                feature->remove();
            }
        }
    }

private:
    [[nodiscard]] CursorPtr meeting(const Geometry& shape) {
        return searchMeeting(shape, layer_.featureClass(), "The lines that meet the new one could not be found.");
    }

    bool nodeWithOthers(const Polyline& line) {
        if (action_.sAction == "Add") {
            refresh_.add(line);
            return true;
        }
        if (expected_ == 0) {
            expected_ = 1;
        }
        if (expected_ < 0) {
            refresh_.add(line);
            return true;
        }
        return intersectSelected(application_, layer_, *meeting(line), expected_, refresh_, action_.bOver).has_value();
    }

    bool cutOthers(const Polyline& line) {
        if (expected_ < 1) {
            refresh_.add(line);
            return true;
        }
        return QZ_SplitWithPolyline2(application_, layer_, *meeting(line), line, expected_, refresh_, action_.bOver);
    }

    Application& application_;
    FeatureLayer& layer_;
    RefreshArea& refresh_;
    std::int32_t& expected_;
    const NetworkAction& action_;
};

// The shape as the class has it.
template <typename Fit> Polyline prepared(const Polyline& line, const FeatureClass& featureClass, Fit fit) {
    Polyline result = inReference(line, featureClass.spatialReference());
    fit(result, featureClass);
    return simplified(Geometry(std::move(result))).as<Polyline>();
}

template <typename Fill>
bool addLine(NetworkAddition addition, const Polyline& line, FeatureClass& featureClass, Step& step, Fill fill) {
    return addition.run(prepared(line, featureClass, fitHeights), step, [&](const Polyline& part) {
        storeSnapped(part, featureClass, fill);
        return true;
    });
}

template <typename Fill>
bool addBoundary(NetworkAddition addition, const Polygon& polygon, FeatureClass& featureClass,
                 const NetworkAction& action, Step& step, Fill fill) {
    const Polygon moved = inReference(polygon, featureClass.spatialReference());
    if (!addLine(addition, boundary(moved), featureClass, step, fill)) {
        return false;
    }
    if (action.sAction == "Erase") {
        step = Step::erase;
        addition.erase(simplified(moved));
    }
    return true;
}

void keepDefaults(Feature&) {}

} // namespace

bool QZ_AddPolyline(Application& application, FeatureLayer& layer, const Polyline& line, RefreshArea& refresh,
                    std::int32_t& expected, const NetworkAction& action) {
    return withSteppedExit(" QZ_AddPolyline w=", Step::prepare, false, [&](Step& step) {
        return addLine({application, layer, refresh, expected, action}, line, layer.featureClass(), step, keepDefaults);
    });
}

bool QZ_AddPolylineA(Application& application, FeatureLayer& layer, const Polyline& line, RefreshArea& refresh,
                     std::int32_t& expected, const NetworkAction& action, const Dictionary* fieldDic, bool bEditing) {
    return withSteppedExit(" QZ_AddPolylineA w=", Step::prepare, false, [&](Step& step) {
        FeatureClass& featureClass = layer.featureClass();
        NetworkAddition addition(application, layer, refresh, expected, action);
        return addition.run(prepared(line, featureClass, fitFlat), step, [&](const Polyline& part) {
            return QZ_StoreFeature(part, featureClass, bEditing, fieldDic);
        });
    });
}

bool QZ_AddPolylineCopyAttributes(Application& application, FeatureLayer& layer, const Polyline& line,
                                  const Feature& source, RefreshArea& refresh, std::int32_t& expected,
                                  const NetworkAction& action) {
    return withSteppedExit(" QZ_AddPolylineCopyAttributes w=", Step::prepare, false, [&](Step& step) {
        FeatureClass& featureClass = layer.featureClass();
        return addLine({application, layer, refresh, expected, action}, line, featureClass, step,
                       CopiedValues(source, featureClass));
    });
}

bool QZ_PolygonAsPolyline(Application& application, FeatureLayer& layer, const Polygon& polygon, RefreshArea& refresh,
                          std::int32_t& expected, const NetworkAction& action) {
    return withSteppedExit(" QZ_PolygonAsPolyline w=", Step::prepare, false, [&](Step& step) {
        return addBoundary({application, layer, refresh, expected, action}, polygon, layer.featureClass(), action, step,
                           keepDefaults);
    });
}

bool QZ_PolygonAsPolylineCopyAttributes(Application& application, FeatureLayer& layer, const Polygon& polygon,
                                        const Feature& source, RefreshArea& refresh, std::int32_t& expected,
                                        const NetworkAction& action) {
    return withSteppedExit(" QZ_PolygonAsPolylineCopyAttributes w=", Step::prepare, false, [&](Step& step) {
        FeatureClass& featureClass = layer.featureClass();
        return addBoundary({application, layer, refresh, expected, action}, polygon, featureClass, action, step,
                           CopiedValues(source, featureClass));
    });
}

} // namespace qz
