#pragma once

#include <cstdint>
#include <string>

#include "common/Dictionary.h"
#include "platform/app/Application.h"

namespace qz {

// The editing component: each method is one whole operation on the features it is given. None opens an edit operation
// of its own: the caller starts one before the call and stops it after, or aborts it when the result is false, so that
// one call is one step of undo. No exception leaves a method. One instance serves any number of calls; it has no state.
//
// The methods of the component that can be called by name, those to come included, are in MethodTable.h.
class MKQZGenFunRun {
public:
    // Reverses every polyline that the cursor delivers: the first vertex of each part becomes its last. Null and empty
    // shapes are left alone. Coordinates are snapped to the spatial reference of the class; z, m and arcs go along.
    // `fCount` is the number of features to expect and sizes the progress ("Flipping polylines: "), nothing else.
    // False, without a message, at the first shape that is no polyline; what was flipped before stays stored.
    bool QZ_Flip(FeatureCursor& pFeatureCursor, std::int32_t fCount, RefreshArea& pRefresh, Application& pApp) noexcept;

    // Deletes every feature that the cursor delivers, null shapes included; shapes are added to the refresh area
    // before. `fCount` sizes the progress ("Deleting features: "), nothing else; `sSource` has no effect. False after a
    // failure, which is reported; what was deleted before it stays deleted.
    bool QZ_QuickDelete(FeatureCursor& pFeatureCursor, std::int32_t fCount, RefreshArea& pRefresh,
                        const std::string& sSource, Application& pApp) noexcept;

    // Inserts a copy of a feature with another shape through the insert cursor. Numeric fields whose split rule in
    // `updateDic`, an attribute rule dictionary, is "Proportion" get their value times the new shape's share of the old
    // one's length or area; all other editable fields are copied, except "QZ_ID".
    // False after a failure, which is reported; nothing is inserted then.
    bool QZ_InsertFeatureRun(FeatureCursor& pInsertFeatureCursor, FeatureBuffer& pInsertFeatureBuffer,
                             Feature* pOrigFeature, const Geometry& pGeometry, const Dictionary* updateDic) noexcept;

    // Stores a new point with the values of `fieldDic`: field name to value, "<NULL>" for null. z is 0 and m undefined
    // in classes that have them. Values that domains or subtypes forbid are shown and left out. With `bEditing` false
    // data in a database are saved at once, in an edit session of the method's own.
    // False after a failure, which is reported.
    bool QZ_AddPointA(FeatureLayer& pFLayer, const Point& pPoint, RefreshArea& pRefresh, const Dictionary* fieldDic,
                      bool bEditing, Application& pApp) noexcept;

    // Writes the values of `fieldDic`, as QZ_AddPointA does, into every feature with a shape that the update cursor
    // delivers. With `bEditing` false each feature of a database is saved by itself.
    // False at the first feature that can't be written, after the failure was reported; those before it are written.
    bool QZ_PasteAttributes(FeatureLayer& pFLayer, FeatureCursor& pFeatureCursor, RefreshArea& pRefresh,
                            const Dictionary* fieldDic, bool bEditing, Application& pApp) noexcept;

    // "10.2", the version of the component. `sQZArcGIS` becomes the platform release it is built for ("9.2"),
    // `sQZBuilt` the day it was built ("30 May 2012").
    std::string GetQZVersion(std::string& sQZArcGIS, std::string& sQZBuilt) noexcept;
};

} // namespace qz
