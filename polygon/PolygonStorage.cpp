#include "polygon/PolygonStorage.h"

#include <algorithm>
#include <cmath>

#include <fmt/format.h>

#include "attributes/QZAttributeRules.h"
#include "common/CursorWalk.h"
#include "common/InReference.h"
#include "common/QZFeatureClass.h"
#include "common/QZSpatialSearch.h"
#include "common/StorableParts.h"
#include "platform/Error.h"
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
    const CursorPtr cursor = searchMeeting(
        geometry, featureClass,
        fmt::format("The polygons of {} that meet the sketch could not be found.", featureClass.schema().name));
    std::vector<FeaturePtr> features;
    forEachShaped(*cursor, [&features](const FeaturePtr& feature) { features.push_back(feature); });
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

void storeNewParts(const Geometry& shape, FeatureClass& featureClass) {
    for (const Geometry& part : storableParts(shape, featureClass)) {
        storeNew(part, featureClass);
    }
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
    if (!copies_) {
        rules_ = QZ_GetAttRules(layer_.name());
        copies_.emplace(layer_.featureClass(), rules_ ? &*rules_ : nullptr);
    }
    if (!copies_->insert(part, &source)) {
        throw PlatformError(fmt::format("A part of feature {} could not be stored.", source.objectId()));
    }
}

} // namespace qz
