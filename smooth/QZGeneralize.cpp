#include "smooth/QZGeneralize.h"

#include "common/CursorWalk.h"
#include "common/ErrorExit.h"
#include "platform/Error.h"
#include "platform/app/Services.h"
#include "platform/geometry/Densify.h"
#include "platform/geometry/Generalize.h"
#include "smooth/MapUnits.h"

namespace qz {

namespace {

template <typename Shape, typename Edit>
Geometry editedShape(const Shape& shape, const References& references, Edit edit) {
    return editedIn(references.map, inReference(shape, references.data), edit);
}

// Calls `edit` with a Polyline& or Polygon&, in the map's reference.
template <typename Edit> Geometry edited(const Geometry& shape, const References& references, Edit edit) {
    if (const auto* polygon = shape.getIf<Polygon>()) {
        return editedShape(*polygon, references, edit);
    }
    return editedShape(shape.as<Polyline>(), references, edit);
}

// Writes what the edit makes of every feature. False when it left nothing of some, which then stay as they are.
template <typename Edit>
bool editAll(Application& application, FeatureCursor& cursor, const References& references, std::int32_t expected,
             RefreshArea& refresh, Edit edit) {
    bool allProcessed = true;
    walkShapes(application, cursor, expected, "Collecting polylines: ", [&](Feature& feature, const Geometry& shape) {
        refresh.add(shape);
        Geometry result = edited(shape, references, edit);
        if (result.isEmpty()) {
            allProcessed = false;
            return;
        }
        feature.setShape(std::move(result));
        cursor.update(feature);
    });
    return allProcessed;
}

} // namespace

bool QZ_Generalize(Application& application, FeatureCursor& cursor, double maximumOffset, const References& references,
                   std::int32_t expected, RefreshArea& refresh) {
    return withErrorExit(" QZ_Generalize", false, [&] {
        const bool allProcessed = editAll(application, cursor, references, expected, refresh,
                                          [&](auto& shape) { generalize(shape, maximumOffset); });
        if (!allProcessed) {
            showMessage("Some of the selected features were not generalized!\nThe tolerance is too big");
        }
        return true;
    });
}

bool QZ_Densify(Application& application, FeatureCursor& cursor, const std::string& sGenType, double iPar0,
                double iPar1, const References& references, std::int32_t expected, RefreshArea& refresh) {
    return withErrorExit(" QZ_Densify", false, [&] {
        const bool byDeviation = sGenType == "Normal";
        const bool allProcessed = editAll(application, cursor, references, expected, refresh, [&](auto& shape) {
            byDeviation ? densify(shape, iPar0, iPar1) : densifyByAngle(shape, iPar0, iPar1);
        });
        if (!allProcessed) {
            showMessage("Some of the selected features were not processed!");
        }
        return true;
    });
}

} // namespace qz
