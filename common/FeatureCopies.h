#pragma once

#include <memory>

#include "common/Dictionary.h"
#include "platform/data/FeatureClass.h"

namespace qz {

// Inserts copies of features of a class with other shapes; see QZ_InsertFeature. All give false after a failure, which
// was reported.
class FeatureCopies {
public:
    // `rules`: an attribute rule dictionary, which must outlive the object, or nothing.
    FeatureCopies(FeatureClass& featureClass, const Dictionary* rules);

    [[nodiscard]] bool insert(const Geometry& shape, const Feature* source);
    // A copy for each part of the shape that the class takes as one feature; see storableParts.
    [[nodiscard]] bool insertParts(const Geometry& shape, const Feature& source);

private:
    FeatureClass& class_;
    const Dictionary* rules_;
    CursorPtr cursor_;
    std::unique_ptr<FeatureBuffer> buffer_;
};

} // namespace qz
