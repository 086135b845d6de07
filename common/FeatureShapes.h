#pragma once

#include "platform/data/FeatureClass.h"

namespace qz {

// Whether there is a feature, and its shape is neither null nor empty.
[[nodiscard]] inline bool hasShape(const Feature* feature) {
    return feature && feature->shape() && !feature->shape()->isEmpty();
}

[[nodiscard]] inline bool hasShape(const Feature& feature) {
    return hasShape(&feature);
}

// The first feature of the cursor. Throws PlatformError with the text when there is none, or when it has no shape.
[[nodiscard]] FeaturePtr firstFeature(FeatureCursor& cursor, const char* otherwise);

} // namespace qz
