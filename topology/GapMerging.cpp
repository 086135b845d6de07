#include "topology/GapMerging.h"

#include "platform/geometry/Measures.h"
#include "platform/geometry/SetOperations.h"
#include "platform/geometry/Simplify.h"
#include "polygon/SketchFitting.h"

namespace qz {

namespace {

std::vector<Polygon> gapAnd(Polygon gap, std::vector<Polygon> neighbours) {
    neighbours.insert(neighbours.begin(), std::move(gap));
    return neighbours;
}

} // namespace

// A gap between polygons as they are gets their vertices only. One that comes from elsewhere may lie beside their
// borders by up to the tolerance, and is moved onto them.
void GapMerging::add(const Polygon& gap) {
    if (!gapsGiven_.query(gap.envelope()).empty()) {
        finish();
    }
    const std::vector<FeaturePtr> neighbours = featuresMeeting(gap, layer_.featureClass());
    if (giveToLargest(withCommonVertices(gapAnd(gap, polygonsOf(neighbours))), neighbours)) {
        return;
    }
    FittedSketch fitted = fittedInto(gap, polygonsOf(neighbours));
    giveToLargest(gapAnd(std::move(fitted.sketch), std::move(fitted.met)), neighbours);
}

// The border is looked for on those alone that are larger than the ones before.
bool GapMerging::giveToLargest(const std::vector<Polygon>& gapAndNeighbours, const std::vector<FeaturePtr>& features) {
    const Polygon& gap = gapAndNeighbours.front();
    std::optional<ObjectId> largest;
    double largestArea = 0;
    for (std::size_t i = 0; i < features.size(); ++i) {
        const double size = areaOf(*features[i]);
        if (size > largestArea && !intersection(gap, gapAndNeighbours[i + 1], ResultDimension::lines).isEmpty()) {
            largestArea = size;
            largest = features[i]->objectId();
        }
    }
    if (largest) {
        Growth& growth = growing_[*largest];
        growth.area += area(gap);
        growth.gaps.emplace_back(gap);
        gapsGiven_.insert(count_++, gap.envelope());
    }
    return largest.has_value();
}

void GapMerging::finish() {
    for (auto& [id, growth] : growing_) {
        const FeaturePtr feature = layer_.featureClass().feature(id);
        growth.gaps.insert(growth.gaps.begin(), *feature->shape());
        replacement_.replace(*feature, simplified(unionOf(growth.gaps).as<Polygon>()));
    }
    growing_.clear();
    gapsGiven_ = EnvelopeIndex();
}

double GapMerging::areaOf(const Feature& feature) const {
    const auto growth = growing_.find(feature.objectId());
    return area(feature.shape()->as<Polygon>()) + (growth == growing_.end() ? 0 : growth->second.area);
}

} // namespace qz
