#include "graphics/QZCopySelected.h"

#include <functional>
#include <iterator>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "common/CursorWalk.h"
#include "common/ErrorExit.h"
#include "common/MapGround.h"
#include "common/NumberText.h"
#include "common/Numbers.h"
#include "common/QZSpatialSearch.h"
#include "graphics/ShapeActions.h"
#include "platform/Error.h"
#include "platform/app/Services.h"
#include "polygon/QZAddPolygon.h"
#include "polygon/QZSplitPolygon.h"

namespace qz {

namespace {

enum class Step { layers = 1, actions = 2, features = 3, copy = 4 };

struct Target {
    Application& application;
    FeatureLayer& layer;
    RefreshArea& refresh;
};

// Copies a feature with its shape; false after a failure, which is reported.
using Copy = std::function<bool(const Feature& source, const Geometry& shape)>;

// The polygon that a line or polygon becomes in the layer is added with the source's values.
Copy addingPolygons(const Target& target, std::int16_t priority) {
    return [=](const Feature& source, const Geometry& shape) {
        return QZ_CopyPolygonAttributes(target.layer, shape.as<Polygon>(), source, priority, target.refresh);
    };
}

Copy addingBuffers(const Target& target, std::int16_t priority, double distance) {
    return [=](const Feature& source, const Geometry& shape) {
        const SpatialReference& reference = target.layer.featureClass().spatialReference();
        const Polygon around = bufferToAdd(shape.as<Polyline>(), reference, distance);
        return QZ_CopyPolygonAttributes(target.layer, around, source, priority, target.refresh);
    };
}

Copy splittingPolygons(const Target& target) {
    return [=](const Feature&, const Geometry& shape) {
        return QZ_SplitPolygon(target.layer, shape.as<Polyline>(), target.refresh);
    };
}

Copy addingLines(const Target& target, NetworkAction action) {
    return [=](const Feature& source, const Geometry& shape) {
        std::int32_t lines = 1; // so that an action that cuts always does
        return QZ_AddPolylineCopyAttributes(target.application, target.layer, shape.as<Polyline>(), source,
                                            target.refresh, lines, action);
    };
}

Copy addingOutlines(const Target& target, NetworkAction action) {
    return [=](const Feature& source, const Geometry& shape) {
        std::int32_t lines = 1;
        return QZ_PolygonAsPolylineCopyAttributes(target.application, target.layer, shape.as<Polygon>(), source,
                                                  target.refresh, lines, action);
    };
}

std::int16_t priorityOf(const std::string& text) {
    return toInteger16(toDouble(Value(text)));
}

std::optional<GeometryKind> kindOf(FeatureLayer& layer) {
    const auto& shape = layer.featureClass().schema().shape;
    return shape ? shape->kind : std::nullopt;
}

std::string describe(FeatureLayer& layer) {
    const auto kind = kindOf(layer);
    return fmt::format("{} ({})", layer.name(), kind ? nameOf(*kind) : "no single kind of shapes");
}

Copy copyBetween(FeatureLayer& source, const Target& target, const CopyActions& actions) {
    const bool ofLines = kindOf(source) == GeometryKind::polyline, ofPolygons = kindOf(source) == GeometryKind::polygon;
    if (kindOf(target.layer) == GeometryKind::polyline && ofLines) {
        return addingLines(target, lineActionOf(actions.sPlPlA, actions.bOver));
    }
    if (kindOf(target.layer) == GeometryKind::polyline && ofPolygons) {
        return addingOutlines(target, outlineActionOf(actions.sPlPgA, actions.bOver));
    }
    if (kindOf(target.layer) == GeometryKind::polygon && ofPolygons) {
        return addingPolygons(target, priorityOf(actions.sPgPgA));
    }
    if (kindOf(target.layer) == GeometryKind::polygon && ofLines) {
        return actions.sPgPlA == bufferAndAdd ? addingBuffers(target, priorityOf(actions.sPgPgA), actions.dBuf)
                                              : splittingPolygons(target);
    }
    throw PlatformError(fmt::format("Features of {} can't be copied into {}; both have to be of lines or polygons.",
                                    describe(source), describe(target.layer)));
}

struct SourceFeatures {
    CursorPtr cursor; // none when none is selected
    std::int64_t count = 0;
};

SourceFeatures sourceFeatures(Application& application, FeatureLayer& source, const Envelope* envelope) {
    if (!envelope) {
        SelectedFeatures selected = QZ_GetSelectedFromLayer(source);
        return {std::move(selected.cursor), selected.count};
    }
    FeatureClass& featureClass = source.featureClass();
    FeatureFilter there;
    there.shape = groundOf(application, *envelope, featureClass);
    there.relation = SpatialRelation::intersects;
    FeatureFilter found;
    found.ids = featureClass.ids(there);
    return {featureClass.search(found), std::ssize(*found.ids)};
}

} // namespace

FeatureLayer& QZ_FindLayerByName(Application& application, const std::string& name) {
    if (FeatureLayer* layer = application.focusMap().findLayer(name)) {
        return *layer;
    }
    std::vector<std::string> names;
    for (const FeatureLayer* layer : application.focusMap().layers()) {
        names.push_back(layer->name());
    }
    throw PlatformError(fmt::format("The map has no layer {}; its layers are: {}.", name, fmt::join(names, ", ")));
}

bool QZ_CopySelectedFromLayer(Application& application, FeatureLayer& layer, const std::string& sSourceLayerName,
                              RefreshArea& refresh, const Envelope* envelope, const CopyActions& actions,
                              std::optional<std::int32_t> expected) {
    return withSteppedExit(" QZ_CopySelectedFromLayer w=", Step::layers, false, [&](Step& step) {
        FeatureLayer& source = QZ_FindLayerByName(application, sSourceLayerName);
        step = Step::actions;
        const Copy copy = copyBetween(source, {application, layer, refresh}, actions);
        step = Step::features;
        const SourceFeatures found = sourceFeatures(application, source, envelope);
        if (!found.cursor) {
            showMessage("No selected features in " + source.name());
            return false;
        }
        step = Step::copy;
        walkShapes(application, *found.cursor, expected.value_or(toInteger32(static_cast<double>(found.count))),
                   "Copying shapes: ", [&](const Feature& feature, const Geometry& shape) {
                       static_cast<void>(withSteppedExit(" QZ_CopySelectedFromLayer w=", Step::copy, false,
                                                         [&](Step&) { return copy(feature, shape); }));
                   });
        return true;
    });
}

} // namespace qz
