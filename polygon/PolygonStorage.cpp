#include "polygon/PolygonStorage.h"

#include <algorithm>
#include <cmath>

#include <fmt/format.h>

#include "attributes/QZAttributeRules.h"
#include "common/InReference.h"
#include "common/QZFeatureClass.h"
#include "common/QZInsertFeature.h"
#include "common/QZSpatialSearch.h"
#include "common/StorableParts.h"
#include "platform/Error.h"
#include "platform/app/Services.h"
#include "platform/geometry/Measures.h"
#include "platform/geometry/Simplify.h"

namespace qz {

namespace {

void fillHeights(Polygon& polygon) {
    const bool hasOwn = polygon.zAware;
    polygon.zAware = true;
    for (Path& ring : polygon.rings) {
        ring.transform([hasOwn](Vertex& vertex) { vertex.z = hasOwn && !std::isnan(vertex.z) ? vertex.z : 0; });
    }
}

} // namespace

Polygon preparedFor(const FeatureClass& featureClass, const Polygon& polygon) {
    Polygon prepared = inReference(polygon, featureClass.spatialReference());
    prepared.spatialReference = featureClass.spatialReference();
    if (QZ_FCHasZ(featureClass)) {
        fillHeights(prepared);
    }
    prepared.zAware = QZ_FCHasZ(featureClass);
    prepared.mAware = QZ_FCHasM(featureClass);
    return simplified(prepared);
}

std::vector<FeaturePtr> featuresMeeting(const Geometry& geometry, FeatureClass& featureClass) {
    const CursorPtr cursor =
        QZ_FindFeaturesSpatialy(geometry, featureClass, featureClass.spatialReference(), "Intersects", "Search");
    if (!cursor) {
        throw PlatformError(
            fmt::format("The polygons of {} that meet the sketch could not be found.", featureClass.schema().name));
    }
    std::vector<FeaturePtr> features;
    for (FeaturePtr feature = cursor->next(); feature; feature = cursor->next()) {
        checkInterrupt();
        if (feature->shape() && !feature->shape()->isEmpty()) {
            features.push_back(std::move(feature));
        }
    }
    return features;
}

std::vector<Polygon> polygonsOf(const std::vector<FeaturePtr>& features) {
    std::vector<Polygon> polygons;
    std::ranges::transform(features, std::back_inserter(polygons),
                           [](const FeaturePtr& feature) { return feature->shape()->as<Polygon>(); });
    return polygons;
}

void storeNew(const Geometry& shape, FeatureClass& featureClass) {
    const FeaturePtr feature = featureClass.createFeature();
    feature->setShape(shape);
    feature->store();
}

void storeNew(const Geometry& shape, FeatureClass& featureClass, const CopiedValues& values) {
    const FeaturePtr feature = featureClass.createFeature();
    feature->setShape(shape);
    values(*feature);
    feature->store();
}

ShapeReplacement::ShapeReplacement(FeatureLayer& layer) : layer_(layer) {}

void ShapeReplacement::replace(Feature& feature, const Polygon& polygon) {
    if (identical(polygon, *feature.shape())) {
        return;
    }
    if (polygon.isEmpty()) {
        feature.remove();
        return;
    }
    const std::vector<Geometry> parts = storableParts(polygon, layer_.featureClass());
    const auto largest =
        std::ranges::max_element(parts, {}, [](const Geometry& part) { return area(part.as<Polygon>()); });
    for (auto part = parts.begin(); part != parts.end(); ++part) {
        if (part != largest) {
            insert(*part, feature);
        }
    }
    feature.setShape(*largest);
    feature.store();
}

void ShapeReplacement::insert(const Geometry& part, const Feature& source) {
    if (!insertCursor_) {
        insertCursor_ = layer_.featureClass().insert();
        buffer_ = layer_.featureClass().createBuffer();
        rules_ = QZ_GetAttRules(layer_.name());
    }
    if (!QZ_InsertFeature(*insertCursor_, *buffer_, &source, part, rules_ ? &*rules_ : nullptr)) {
        throw PlatformError(fmt::format("A part of feature {} could not be stored.", source.objectId()));
    }
}

} // namespace qz
