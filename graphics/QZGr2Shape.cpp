#include "graphics/QZGr2Shape.h"

#include <optional>
#include <vector>

#include "common/CursorWalk.h"
#include "common/ErrorExit.h"
#include "common/QZFeatureMethods.h"
#include "graphics/QZGraphics.h"
#include "graphics/ShapeActions.h"
#include "platform/app/Services.h"
#include "polygon/QZAddPolygon.h"
#include "polygon/QZSplitPolygon.h"

namespace qz {

namespace {

enum class Step { actions = 1, convert = 2, remove = 3 };

class GraphicsConverter {
public:
    GraphicsConverter(Application& application, FeatureLayer& layer, RefreshArea& refresh,
                      const GraphicsConversion& conversion)
        : application_(application), layer_(layer), refresh_(refresh), conversion_(conversion) {
        if (conversion.sOut == "pl" && conversion.sIn1 == "pg") {
            action_ = outlineActionOf(conversion.sPg2Pl, conversion.bOver);
        } else if (conversion.sOut == "pl" && conversion.sIn1 == "pl") {
            action_ = lineActionOf(conversion.sPlA, conversion.bOver);
        }
    }

    // False for an element that doesn't fit, and after a failure, which is reported.
    [[nodiscard]] bool convert(const GraphicElement& element) {
        return withSteppedExit(" QZ_Gr2ShapeDo w=", Step::convert, false, [&](Step&) {
            if (element.geometry.isEmpty()) {
                return false;
            }
            switch (element.kind) {
            case GraphicKind::fill:
                return conversion_.sIn1 == "pg" && convertFill(element.geometry.as<Polygon>());
            case GraphicKind::line:
                return conversion_.sIn1 == "pl" && convertLine(element.geometry.as<Polyline>());
            case GraphicKind::marker:
                return conversion_.sOut == "pnt" && QZ_AddPoint(layer_, element.geometry.as<Point>(), refresh_);
            }
            return false;
        });
    }

private:
    [[nodiscard]] bool convertFill(const Polygon& fill) {
        if (conversion_.sOut == "pg") {
            return QZ_AddPolygon(layer_, fill, conversion_.iPriority, refresh_);
        }
        std::int32_t lines = 1; // so that an action that cuts always does
        return conversion_.sOut == "pl" && QZ_PolygonAsPolyline(application_, layer_, fill, refresh_, lines, *action_);
    }

    [[nodiscard]] bool convertLine(const Polyline& line) {
        if (conversion_.sOut == "pg") {
            return conversion_.sPl2Pg == bufferAndAdd ? addBuffer(line) : QZ_SplitPolygon(layer_, line, refresh_);
        }
        std::int32_t lines = 1;
        return conversion_.sOut == "pl" && QZ_AddPolyline(application_, layer_, line, refresh_, lines, *action_);
    }

    [[nodiscard]] bool addBuffer(const Polyline& line) {
        const SpatialReference& reference = layer_.featureClass().spatialReference();
        return QZ_AddPolygon(layer_, bufferToAdd(line, reference, conversion_.dBuff), conversion_.iPriority, refresh_);
    }

    Application& application_;
    FeatureLayer& layer_;
    RefreshArea& refresh_;
    const GraphicsConversion& conversion_;
    std::optional<NetworkAction> action_; // in layers of lines
};

} // namespace

bool QZ_Gr2ShapeDo(Application& application, FeatureLayer& layer, RefreshArea& refresh,
                   const GraphicsConversion& conversion, std::int32_t expected) {
    return withSteppedExit(" QZ_Gr2ShapeDo w=", Step::actions, false, [&](Step& step) {
        GraphicsConverter converter(application, layer, refresh, conversion);
        step = Step::convert;
        WalkProgress progress(application, expected, "Converting graphics: ");
        const std::vector<GraphicElement>& elements = application.focusMap().activeView().graphics().elements();
        std::vector<std::size_t> converted;
        for (std::size_t i = 0; i < elements.size(); ++i) {
            checkInterrupt();
            if ((!conversion.bSel || elements[i].selected) && converter.convert(elements[i])) {
                converted.push_back(i);
            }
            progress.advance(static_cast<std::int32_t>(i));
        }
        progress.hide();
        step = Step::remove;
        if (conversion.bDelete) {
            QZ_DeleteSelectedGraphics(application, converted);
        }
        redrawGraphics(application);
        return true;
    });
}

} // namespace qz
