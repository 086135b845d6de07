#pragma once

#include "common/Dictionary.h"
#include "platform/data/FeatureClass.h"

namespace qz {

// Inserts a copy of the source feature with another shape. Numeric fields whose split rule in `updateDic` is
// "Proportion" get their value times the share that the new shape has in the source's: of its length for a line, of its
// area for a polygon, 1 for points and when the source has none. All other editable fields are copied, except "QZ_ID".
// A point that becomes part of a multipoint class is put into a multipoint.
// A failure is reported, a source that is nothing included (the description and " insert feature") and gives false.
[[nodiscard]] bool QZ_InsertFeature(FeatureCursor& insertCursor, FeatureBuffer& buffer, const Feature* source,
                                    const Geometry& geometry, const Dictionary* updateDic);

} // namespace qz
