#include "common/FeatureCopies.h"

#include <algorithm>

#include "common/QZInsertFeature.h"
#include "common/StorableParts.h"

namespace qz {

FeatureCopies::FeatureCopies(FeatureClass& featureClass, const Dictionary* rules)
    : class_(featureClass), rules_(rules), cursor_(featureClass.insert()), buffer_(featureClass.createBuffer()) {}

bool FeatureCopies::insert(const Geometry& shape, const Feature* source) {
    return QZ_InsertFeature(*cursor_, *buffer_, source, shape, rules_);
}

bool FeatureCopies::insertParts(const Geometry& shape, const Feature& source) {
    return std::ranges::all_of(storableParts(shape, class_),
                               [&](const Geometry& part) { return insert(part, &source); });
}

} // namespace qz
