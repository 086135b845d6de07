#include "host/cairo/Canvas.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include <cairo-svg.h>
#include <cairo.h>
#include <fmt/format.h>

#include "host/ReplacedFile.h"
#include "host/cairo/WorldPath.h"

namespace qz {

namespace {

constexpr double pixelsPerPoint = 96.0 / 72.0;
constexpr double haloWidth = 3;     // pixels
constexpr int largestSheet = 32767; // of Cairo's images

struct SurfaceDeleter {
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
};
struct ContextDeleter {
    void operator()(cairo_t* context) const { cairo_destroy(context); }
};
using Surface = std::unique_ptr<cairo_surface_t, SurfaceDeleter>;
using Context = std::unique_ptr<cairo_t, ContextDeleter>;

bool isSvg(const std::string& path) {
    const std::string ending = lowerCaseEnding(path);
    if (ending != ".png" && ending != ".svg") {
        throw UsageError("Can't tell the format of the picture \"" + path + "\" by its ending; use .png or .svg.");
    }
    return ending == ".svg";
}

void checkSize(int width, int height) {
    if (width < 1 || height < 1 || width > largestSheet || height > largestSheet) {
        throw UsageError(
            fmt::format("A picture can't be {} x {} pixels; either may be 1 to {}.", width, height, largestSheet));
    }
}

Surface createSurface(const std::string& path, int width, int height) {
    checkSize(width, height);
    if (!isSvg(path)) {
        return Surface(cairo_image_surface_create(CAIRO_FORMAT_RGB24, width, height));
    }
    Surface surface(cairo_svg_surface_create(path.c_str(), width, height));
    cairo_svg_surface_set_document_unit(surface.get(), CAIRO_SVG_UNIT_PX);
    return surface;
}

void setColor(cairo_t* context, const Color& color) {
    cairo_set_source_rgba(context, color.red / 255.0, color.green / 255.0, color.blue / 255.0, color.alpha / 255.0);
}

void strokePath(cairo_t* context, const LineSymbol& symbol, const Dashes& dashes) {
    Dashes inPixels = dashes;
    std::transform(dashes.begin(), dashes.end(), inPixels.begin(), [](double d) { return d * pixelsPerPoint; });
    cairo_set_dash(context, inPixels.data(), static_cast<int>(inPixels.size()), 0);
    cairo_set_line_width(context, symbol.width * pixelsPerPoint);
    setColor(context, symbol.color);
    cairo_stroke(context);
}

void setFont(cairo_t* context, const TextStyle& style) {
    cairo_select_font_face(context, "sans-serif", CAIRO_FONT_SLANT_NORMAL,
                           style.bold ? CAIRO_FONT_WEIGHT_BOLD : CAIRO_FONT_WEIGHT_NORMAL);
    cairo_set_font_size(context, style.size);
}

double advanceOf(cairo_t* context, const std::string& text, const TextStyle& style) {
    setFont(context, style);
    cairo_text_extents_t extents;
    cairo_text_extents(context, text.c_str(), &extents);
    return extents.x_advance;
}

double shiftOf(TextAnchor anchor, double width) {
    switch (anchor) {
    case TextAnchor::left:
        return 0;
    case TextAnchor::centre:
        return -width / 2;
    case TextAnchor::right:
        return -width;
    }
    return 0;
}

void moveToText(cairo_t* context, const std::string& text, XY baseline, const TextStyle& style) {
    cairo_move_to(context, baseline.x + shiftOf(style.anchor, advanceOf(context, text, style)), baseline.y);
}

std::vector<XY> pointsOf(const Geometry& geometry) {
    if (const Point* point = geometry.getIf<Point>()) {
        return {point->vertex.xy()};
    }
    std::vector<XY> points;
    for (const Vertex& vertex : geometry.as<Multipoint>().vertices) {
        points.push_back(vertex.xy());
    }
    return points;
}

// Drawing in the window: clipped to its area until it ends.
class WindowClip {
public:
    WindowClip(cairo_t* context, const PixelRect& area) : context_(context) {
        cairo_save(context_);
        cairo_rectangle(context_, area.x, area.y, area.width, area.height);
        cairo_clip(context_);
    }
    ~WindowClip() { cairo_restore(context_); }
    WindowClip(const WindowClip&) = delete;
    WindowClip& operator=(const WindowClip&) = delete;

private:
    cairo_t* context_;
};

void circle(cairo_t* context, XY centre, double radius) {
    cairo_new_path(context);
    cairo_arc(context, centre.x, centre.y, radius, 0, 2 * std::numbers::pi);
}

} // namespace

struct Canvas::Impl {
    Impl(const std::string& path, int width, int height);

    void requireSound(cairo_status_t status) const;
    void addPath(const Geometry& geometry);

    std::string target;
    ReplacedFile file;
    Surface surface;
    Context context;
    PixelRect area;
    WorldToPixels toPixels;
};

Canvas::Impl::Impl(const std::string& path, int width, int height)
    : target(path), file(path), surface(createSurface(file.asidePath(), width, height)),
      context(cairo_create(surface.get())), area{0, 0, double(width), double(height)} {
    requireSound(cairo_surface_status(surface.get()));
    toPixels.top = height;
    cairo_set_line_cap(context.get(), CAIRO_LINE_CAP_ROUND);
    cairo_set_line_join(context.get(), CAIRO_LINE_JOIN_ROUND);
    cairo_set_fill_rule(context.get(), CAIRO_FILL_RULE_EVEN_ODD);
    cairo_set_source_rgb(context.get(), 1, 1, 1);
    cairo_paint(context.get());
}

void Canvas::Impl::requireSound(cairo_status_t status) const {
    if (status != CAIRO_STATUS_SUCCESS) {
        throw DataError("Can't write the picture \"" + target + "\": " + cairo_status_to_string(status) + ".");
    }
}

void Canvas::Impl::addPath(const Geometry& geometry) {
    cairo_new_path(context.get());
    addToPath(context.get(), geometry, toPixels, {area.x, area.y, area.x + area.width, area.y + area.height});
}

Canvas::Canvas(const std::string& path, int width, int height) : impl_(std::make_unique<Impl>(path, width, height)) {}
Canvas::~Canvas() = default;
Canvas::Canvas(Canvas&&) noexcept = default;
Canvas& Canvas::operator=(Canvas&&) noexcept = default;

void Canvas::setWindow(const Envelope& world, const PixelRect& area) {
    const double scale = std::min(area.width / world.width(), area.height / world.height());
    if (!std::isfinite(scale) || scale <= 0) {
        throw PlatformError(fmt::format("Can't show a world of {} x {} units in an area of {} x {} pixels.",
                                        world.width(), world.height(), area.width, area.height));
    }
    const XY centre = world.centre();
    impl_->area = area;
    impl_->toPixels = {centre.x, centre.y, scale, {area.x + area.width / 2, area.y + area.height / 2}};
}

Envelope Canvas::window() const {
    const WorldToPixels& map = impl_->toPixels;
    const PixelRect& area = impl_->area;
    const double left = map.left + (area.x - map.offset.x) / map.scale;
    const double top = map.top - (area.y - map.offset.y) / map.scale;
    return {left, top - area.height / map.scale, left + area.width / map.scale, top};
}

double Canvas::pixelsPerUnit() const {
    return impl_->toPixels.scale;
}

void Canvas::draw(const Geometry& geometry, const Symbol& symbol) {
    switch (geometry.kind()) {
    case GeometryKind::point:
    case GeometryKind::multipoint:
        return drawMarkers(geometry, symbol.marker);
    case GeometryKind::polyline:
        return drawLines(geometry, symbol.line);
    case GeometryKind::polygon:
        return drawFill(geometry, symbol.fill);
    }
}

void Canvas::drawMarkers(const Geometry& geometry, const MarkerSymbol& symbol) {
    const WindowClip clip(impl_->context.get(), impl_->area);
    const Envelope visible = window().expandedBy(symbol.size / pixelsPerUnit(), symbol.size / pixelsPerUnit());
    for (const XY point : pointsOf(geometry)) {
        if (visible.contains(point)) {
            fillCircle(impl_->toPixels(point), symbol.size * pixelsPerPoint / 2, symbol.color);
        }
    }
}

void Canvas::drawArrow(XY point, const ArrowMarkerSymbol& symbol) {
    cairo_t* context = impl_->context.get();
    const WindowClip clip(context, impl_->area);
    const XY centre = impl_->toPixels(point);
    const double length = symbol.length * pixelsPerPoint;
    const double width = symbol.width * pixelsPerPoint;
    cairo_translate(context, centre.x, centre.y);
    cairo_rotate(context, -symbol.angle * std::numbers::pi / 180);
    cairo_move_to(context, length / 2, 0);
    cairo_line_to(context, -length / 2, width / 2);
    cairo_line_to(context, -length / 2, -width / 2);
    cairo_close_path(context);
    setColor(context, symbol.color);
    cairo_fill(context);
}

void Canvas::drawLines(const Geometry& geometry, const LineSymbol& symbol, const Dashes& dashes) {
    cairo_t* context = impl_->context.get();
    const WindowClip clip(context, impl_->area);
    impl_->addPath(geometry);
    strokePath(context, symbol, dashes);
}

void Canvas::drawFill(const Geometry& geometry, const FillSymbol& symbol) {
    cairo_t* context = impl_->context.get();
    const WindowClip clip(context, impl_->area);
    impl_->addPath(geometry);
    setColor(context, symbol.color);
    cairo_fill_preserve(context);
    strokePath(context, symbol.outline, {});
}

void Canvas::drawLabel(const std::string& text, XY point, const TextStyle& style) {
    cairo_t* context = impl_->context.get();
    const WindowClip clip(context, impl_->area);
    moveToText(context, text, impl_->toPixels(point), style);
    cairo_text_path(context, text.c_str());
    cairo_set_source_rgba(context, 1, 1, 1, 0.85);
    cairo_set_line_width(context, haloWidth);
    cairo_stroke_preserve(context);
    setColor(context, style.color);
    cairo_fill(context);
}

void Canvas::fillRect(const PixelRect& rect, const Color& color) {
    cairo_t* context = impl_->context.get();
    cairo_rectangle(context, rect.x, rect.y, rect.width, rect.height);
    setColor(context, color);
    cairo_fill(context);
}

void Canvas::strokeRect(const PixelRect& rect, const LineSymbol& symbol) {
    cairo_t* context = impl_->context.get();
    cairo_rectangle(context, rect.x, rect.y, rect.width, rect.height);
    strokePath(context, symbol, {});
}

void Canvas::strokeLine(XY from, XY to, const LineSymbol& symbol, const Dashes& dashes) {
    cairo_t* context = impl_->context.get();
    cairo_move_to(context, from.x, from.y);
    cairo_line_to(context, to.x, to.y);
    strokePath(context, symbol, dashes);
}

void Canvas::fillCircle(XY centre, double radius, const Color& color) {
    cairo_t* context = impl_->context.get();
    circle(context, centre, radius);
    setColor(context, color);
    cairo_fill(context);
}

void Canvas::drawText(const std::string& text, XY baseline, const TextStyle& style) {
    cairo_t* context = impl_->context.get();
    moveToText(context, text, baseline, style);
    setColor(context, style.color);
    cairo_show_text(context, text.c_str());
    cairo_new_path(context);
}

double Canvas::textWidth(const std::string& text, const TextStyle& style) const {
    return advanceOf(impl_->context.get(), text, style);
}

void Canvas::save() {
    Impl& impl = *impl_;
    impl.context.reset();
    if (!isSvg(impl.target)) {
        impl.requireSound(cairo_surface_write_to_png(impl.surface.get(), impl.file.asidePath().c_str()));
    }
    cairo_surface_finish(impl.surface.get());
    impl.requireSound(cairo_surface_status(impl.surface.get()));
    impl.file.complete();
}

} // namespace qz
