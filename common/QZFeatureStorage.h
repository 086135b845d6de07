#pragma once

#include <cstdint>

#include "common/Dictionary.h"
#include "platform/app/Application.h"

namespace qz {

// Writing features with values from a field dictionary: field name to the value to write, a number, a text or a date.
// The text "<NULL>", in any letter case, and null stand for null.
//
// Names that the class doesn't have are ignored. Null goes to nullable fields only, and becomes the default code in the
// subtype field. A value that subtypes or domains forbid is shown ("Invalid value for field: " and the name) and left
// out. Numeric fields take numbers and numeric texts, date fields dates and ISO 8601 texts, text fields everything;
// other values are left out silently. A value that its field can't hold is a failure.
//
// With `bEditing` false each call opens an edit session of its own on data in a database, and saves it.

// Makes a feature of the class, with the default subtype, and stores it. A failure is reported
// (" QZ_StoreFeature w=" and the stage) and gives false; a session opened here is then left open.
[[nodiscard]] bool QZ_StoreFeature(const Geometry& geometry, FeatureClass& featureClass, bool bEditing,
                                   const Dictionary* fieldDic);

// Writes the values into the feature that the update cursor gave last, which gets the default subtype first, and
// releases it. A failure is reported (" QZ_UpdateAttributes w=" and the stage) and gives false.
[[nodiscard]] bool QZ_UpdateAttributes(FeatureCursor& cursor, FeaturePtr& feature, FeatureClass& featureClass,
                                       bool bEditing, const Dictionary* fieldDic);

} // namespace qz
