#include "polyline/QZExplode.h"

#include "attributes/QZAttributeRules.h"
#include "common/CursorWalk.h"
#include "common/ErrorExit.h"
#include "common/FeatureCopies.h"
#include "platform/Error.h"
#include "platform/geometry/Boundary.h"
#include "platform/geometry/Measures.h"
#include "platform/geometry/Orientation.h"
#include "platform/geometry/Simplify.h"

namespace qz {

namespace {

// At least two, or none.
using Parts = std::vector<Geometry>;

Parts partsOf(const Polyline& line) {
    if (line.paths.size() < 2) {
        return {};
    }
    Parts parts = exploded(line);
    std::erase_if(parts, [](const Geometry& part) { return length(part.as<Polyline>()) == 0; });
    return parts;
}

Parts partsOf(const Polygon& polygon) {
    const Polygon simple = simplified(polygon);
    Parts parts = exploded(simple);
    return parts.size() > 1 ? parts : Parts();
}

Parts partsOf(const Geometry& shape) {
    const auto* polygon = shape.getIf<Polygon>();
    return polygon ? partsOf(*polygon) : partsOf(shape.as<Polyline>());
}

// Stores each part with the values of the source, then deletes the source.
void replace(Feature& source, const Parts& parts, FeatureClass& featureClass, const Dictionary& rules) {
    FeatureCopies copies(featureClass, &rules);
    for (const Geometry& part : parts) {
        if (!copies.insert(part, &source)) {
            throw PlatformError("A part could not be stored");
        }
    }
    source.remove();
}

} // namespace

bool QZ_Explode(Application& application, FeatureLayer& layer, FeatureCursor& cursor, std::int32_t expected,
                RefreshArea& refresh) {
    enum class Step { rules = 1, walk = 2 };
    return withSteppedExit(" QZ_Explode w=", Step::rules, false, [&](Step& step) {
        const auto rules = QZ_GetAttRules(layer.name());
        if (!rules) {
            return false;
        }
        step = Step::walk;
        walkShapes(application, cursor, expected, collectingText(layer.featureClass()),
                   [&](Feature& feature, const Geometry& shape) {
                       refresh.add(shape);
                       if (const Parts parts = partsOf(shape); !parts.empty()) {
                           replace(feature, parts, layer.featureClass(), *rules);
                       }
                   });
        return true;
    });
}

} // namespace qz
