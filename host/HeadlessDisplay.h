#pragma once

#include <string>
#include <variant>
#include <vector>

#include "platform/app/Application.h"

namespace qz {

// Something painted, with the symbol that it was painted with.
struct Drawing {
    std::string kind; // "point", "arrow", "polyline" or "polygon"
    Geometry geometry;
    std::variant<MarkerSymbol, ArrowMarkerSymbol, LineSymbol, FillSymbol> symbol;
};

// Records what is painted, in order. A refresh of the view takes nothing away: there is no screen that forgets.
// The map fills a screen of 900 by 675 points, the sheet of a picture.
class HeadlessDisplay final : public Display {
public:
    // The view must outlive the display.
    explicit HeadlessDisplay(const ActiveView& view) : view_(view) {}

    void drawPoint(const Geometry& geometry, const MarkerSymbol& symbol) override;
    void drawArrow(const Point& point, const ArrowMarkerSymbol& symbol) override;
    void drawPolyline(const Geometry& geometry, const LineSymbol& symbol) override;
    void drawPolygon(const Geometry& geometry, const FillSymbol& symbol) override;
    [[nodiscard]] double lengthOnMap(double points) const override;

    [[nodiscard]] const std::vector<Drawing>& drawings() const noexcept { return drawings_; }
    void clear() { drawings_.clear(); }

private:
    const ActiveView& view_;
    std::vector<Drawing> drawings_;
};

} // namespace qz
