#include "graphics/QZGraphics.h"

#include <utility>

#include "common/ErrorExit.h"
#include "platform/geometry/Boundary.h"
#include "platform/geometry/Project.h"

namespace qz {

namespace {

void draw(Application& application, GraphicKind kind, Geometry geometry, const std::string& name) {
    Map& map = application.focusMap();
    project(geometry, map.spatialReference());
    const Envelope area = geometry.envelope();
    map.activeView().graphics().add({name, kind, std::move(geometry), QZ_GetDefaultSymbol(), false});
    map.activeView().partialRefresh(area);
}

std::string trimmed(const std::string& text) {
    const auto first = text.find_first_not_of(' ');
    return first == std::string::npos ? "" : text.substr(first, text.find_last_not_of(' ') - first + 1);
}

} // namespace

Symbol QZ_GetDefaultSymbol() {
    return {};
}

void QZ_DrawPointGraphic(Application& application, const Geometry& point, const std::string& name) {
    draw(application, GraphicKind::marker, point, name);
}

void QZ_DrawPolylineGraphic(Application& application, const Geometry& line, const std::string& name) {
    draw(application, GraphicKind::line, line, name);
}

void QZ_DrawPolygonGraphic(Application& application, const Geometry& polygon, const std::string& name) {
    draw(application, GraphicKind::fill, polygon, name);
}

void drawGraphic(Application& application, const Geometry& shape, const std::string& name) {
    switch (shape.kind()) {
    case GeometryKind::polyline:
        QZ_DrawPolylineGraphic(application, shape, name);
        break;
    case GeometryKind::polygon:
        QZ_DrawPolygonGraphic(application, shape, name);
        break;
    default:
        for (const Geometry& point : exploded(shape)) {
            QZ_DrawPointGraphic(application, point, name);
        }
    }
}

void redrawGraphics(Application& application) {
    ActiveView& view = application.focusMap().activeView();
    view.partialRefresh(view.visibleBounds());
}

void QZ_DeleteSelectedGraphics(Application& application, const std::vector<std::size_t>& indexes) noexcept {
    enum class Step { remove = 1 };
    static_cast<void>(withSteppedExit(" QZ_DeleteSelectedGraphics w=", Step::remove, false, [&](Step&) {
        application.focusMap().activeView().graphics().remove(indexes);
        return true;
    }));
}

GraphicLabel::GraphicLabel(std::string& sName) : text_(sName), field_(trimmed(sName)) {}

void GraphicLabel::read(const Feature& feature) {
    if (field_.empty()) {
        return;
    }
    if (const auto field = feature.schema().findField(field_)) {
        const Value& value = feature.value(*field);
        text_ = isNull(value) ? "" : toText(value);
    }
}

} // namespace qz
