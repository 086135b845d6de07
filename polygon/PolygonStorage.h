#pragma once

#include <optional>
#include <vector>

#include "common/CopiedValues.h"
#include "common/Dictionary.h"
#include "common/FeatureCopies.h"
#include "platform/app/Application.h"

namespace qz {

// The polygon in the reference of the class, with heights and measures as the class has them, simplified. A height that
// is not known is 0.
[[nodiscard]] Polygon preparedFor(const FeatureClass& featureClass, const Polygon& polygon);

// The features with a shape that meet the geometry. Throws PlatformError when the search failed.
[[nodiscard]] std::vector<FeaturePtr> featuresMeeting(const Geometry& geometry, FeatureClass& featureClass);

[[nodiscard]] std::vector<Polygon> polygonsOf(const std::vector<FeaturePtr>& features);

// Stores the shape as a new feature, without values.
void storeNew(const Geometry& shape, FeatureClass& featureClass);
// A feature for each part of the shape that the class takes as one; see storableParts.
void storeNewParts(const Geometry& shape, FeatureClass& featureClass);
void storeNew(const Geometry& shape, FeatureClass& featureClass, const CopiedValues& values);

// Writes what became of features of one layer.
class ShapeReplacement {
public:
    explicit ShapeReplacement(FeatureLayer& layer);

    // A feature whose shape is the same stays untouched; of which nothing is left, it is deleted. In a layer of single
    // parts the feature keeps the largest part, and the others become features with values by the split rules.
    void replace(Feature& feature, const Polygon& polygon);

private:
    void insert(const Geometry& part, const Feature& source);

    FeatureLayer& layer_;
    // Read and made when a part needs them.
    std::optional<Dictionary> rules_;
    std::optional<FeatureCopies> copies_;
};

} // namespace qz
