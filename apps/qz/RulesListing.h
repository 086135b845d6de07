#pragma once

#include <iosfwd>

#include "platform/data/FeatureClass.h"

namespace qz {

// Prints the attribute rules in force for a layer, field by field, and where each came from.
void listAttributeRules(std::ostream& out, FeatureClass& featureClass);

} // namespace qz
