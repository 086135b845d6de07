#include "common/CopiedValues.h"

#include "common/QZFeatureClass.h"

namespace qz {

CopiedValues::CopiedValues(const Feature& source, const FeatureClass& target)
    : values_(QZ_FieldMatchingDic(source, target)) {}

void CopiedValues::operator()(Feature& feature) const {
    for (const Value& index : values_.keys()) {
        feature.setValue(static_cast<std::size_t>(std::get<std::int32_t>(index)), *values_.find(index));
    }
}

} // namespace qz
