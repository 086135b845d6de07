#pragma once

#include "common/Dictionary.h"
#include "platform/data/FeatureClass.h"

namespace qz {

// The values that new features take over from a feature of any class, in fields of the same names (see
// QZ_FieldMatchingDic). Not stored.
class CopiedValues {
public:
    CopiedValues(const Feature& source, const FeatureClass& target);

    // Throws DataError for a value that its field can't hold.
    void operator()(Feature& feature) const;

private:
    Dictionary values_; // by index of the field
};

} // namespace qz
