#pragma once

#include <map>
#include <optional>
#include <vector>

#include "platform/geometry/EnvelopeIndex.h"
#include "polygon/PolygonStorage.h"

namespace qz {

// Gives gaps to their largest neighbours, in the order in which they come. A polygon takes all its gaps in one union,
// unless a later gap meets one of them and so may have it for a neighbour.
class GapMerging {
public:
    explicit GapMerging(FeatureLayer& layer) : layer_(layer), replacement_(layer) {}

    // In the reference of the layer's class, and simple.
    void add(const Polygon& gap);
    // Stores what has not been.
    void finish();

private:
    struct Growth {
        double area = 0; // of the gaps
        std::vector<Geometry> gaps;
    };

    // False when the gap shares a border with none.
    bool giveToLargest(const std::vector<Polygon>& gapAndNeighbours, const std::vector<FeaturePtr>& features);
    [[nodiscard]] double areaOf(const Feature& feature) const;

    FeatureLayer& layer_;
    ShapeReplacement replacement_;
    std::map<ObjectId, Growth> growing_;
    EnvelopeIndex gapsGiven_; // by number
    std::int64_t count_ = 0;
};

} // namespace qz
