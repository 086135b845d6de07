#pragma once

#include <cstdint>
#include <string>

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

    // "10.2", the version of the component. `sQZArcGIS` becomes the platform release it is built for ("9.2"),
    // `sQZBuilt` the day it was built ("30 May 2012").
    std::string GetQZVersion(std::string& sQZArcGIS, std::string& sQZBuilt) noexcept;
};

} // namespace qz
