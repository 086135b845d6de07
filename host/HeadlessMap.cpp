#include "host/HeadlessMap.h"

#include <algorithm>

#include "platform/geometry/Project.h"

namespace qz {

namespace {

constexpr double marginRatio = 0.05;
// A millimetre is the tolerance of a usual grid, whatever its unit; a thousand of them make a metre.
constexpr double tolerancesPerMetre = 1000;

Envelope withMargin(const Envelope& extent, double leastSize) {
    const auto missing = [leastSize](double size) { return std::max(size * marginRatio, leastSize - size) / 2; };
    return extent.expandedBy(missing(extent.width()), missing(extent.height()));
}

} // namespace

FeatureFilter HeadlessSelection::filter() const {
    FeatureFilter filter;
    filter.ids = selected_;
    return filter;
}

std::int64_t HeadlessSelection::count() {
    return class_.count(filter());
}

std::vector<ObjectId> HeadlessSelection::ids() {
    return class_.ids(filter());
}

void HeadlessSelection::select(std::vector<ObjectId> ids) {
    std::sort(ids.begin(), ids.end());
    ids.erase(std::unique(ids.begin(), ids.end()), ids.end());
    selected_ = std::move(ids);
}

CursorPtr HeadlessSelection::search() {
    return class_.search(filter());
}

CursorPtr HeadlessSelection::update() {
    return class_.update(filter());
}

Envelope HeadlessView::visibleBounds() const {
    if (!bounds_.isEmpty()) {
        return bounds_;
    }
    const Envelope extent = map_.fullExtent();
    if (extent.isEmpty()) {
        return extent;
    }
    return withMargin(extent, tolerancesPerMetre * map_.spatialReference().grid().xyTolerance);
}

const SpatialReference& HeadlessView::spatialReference() const {
    return map_.spatialReference();
}

const SpatialReference& HeadlessMap::spatialReference() const {
    if (!reference_.isNone() || layers_.empty()) {
        return reference_;
    }
    return layers_.front()->featureClass().spatialReference();
}

std::vector<FeatureLayer*> HeadlessMap::layers() {
    std::vector<FeatureLayer*> result;
    result.reserve(layers_.size());
    for (const auto& layer : layers_) {
        result.push_back(layer.get());
    }
    return result;
}

FeatureLayer& HeadlessMap::addLayer(std::string name, FeatureClass& featureClass) {
    layers_.push_back(std::make_unique<HeadlessLayer>(std::move(name), featureClass));
    return *layers_.back();
}

Envelope HeadlessMap::fullExtent() const {
    Envelope result;
    for (const auto& layer : layers_) {
        FeatureClass& featureClass = layer->featureClass();
        const Envelope extent = featureClass.extent();
        if (!extent.isEmpty()) {
            result.expandToInclude(projected(extent, featureClass.spatialReference(), spatialReference()));
        }
    }
    return result;
}

} // namespace qz
