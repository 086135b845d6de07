#include "platform/geometry/SubCurve.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <string>
#include <string_view>

#include "platform/Error.h"

namespace qz {

namespace {

constexpr std::string_view operation = "piece of a curve";

void requireRatio(double ratio) {
    if (!std::isfinite(ratio)) {
        throw PlatformError("The " + std::string(operation) + " can't be found: " + std::to_string(ratio) +
                            " is no ratio of its length.");
    }
}

CurveEnd endAt(const Curve& curve, const CurvePlace& place) {
    return {place, vertexAt(curve, place)};
}

CurveEnd startOfPart(const Curve& curve, std::size_t part) {
    return endAt(curve, {part, 0, 0});
}

CurveEnd endOfPart(const Curve& curve, std::size_t part) {
    return endAt(curve, {part, curve.parts()[part].segmentCount(), 0});
}

bool isEndOfPart(const Curve& curve, const CurvePlace& place) {
    return place.segment == curve.parts()[place.part].segmentCount();
}

// The paths between two places. A part that ends where the stretch begins has no share in it, and the stretch begins
// with the next one.
std::vector<Path> pathsBetween(const Curve& curve, const CurveEnd& from, const CurveEnd& to) {
    std::vector<Path> paths;
    for (std::size_t part = from.place.part; part <= to.place.part; ++part) {
        const Path& path = curve.parts()[part];
        const bool first = part == from.place.part;
        if (path.isEmpty() ||
            (first && part != to.place.part && path.segmentCount() > 0 && isEndOfPart(curve, from.place))) {
            continue;
        }
        paths.push_back(pathBetween(path, first ? from : startOfPart(curve, part),
                                    part == to.place.part ? to : endOfPart(curve, part)));
    }
    return paths;
}

bool areOneCut(const CurveEnd& a, const CurveEnd& b) {
    return a.place == b.place ||
           (a.place.part == b.place.part && a.place.segment == b.place.segment && a.vertex.xy() == b.vertex.xy());
}

// Places of cuts strictly inside the curve, in order, none twice.
std::vector<CurveEnd> cutsInside(const Curve& curve, std::vector<CurveEnd> cuts) {
    const CurvePlace start = startPlace(curve);
    const CurvePlace end = endPlace(curve);
    std::erase_if(cuts, [&](const CurveEnd& cut) { return cut.place <= start || cut.place >= end; });
    const auto same = std::ranges::unique(cuts, areOneCut);
    cuts.erase(same.begin(), same.end());
    return cuts;
}

std::vector<CurvePlace> placesAtRatios(const Curve& curve, std::span<const double> ascendingRatios) {
    const double length = curve.lengthFor(operation);
    std::vector<double> distances;
    distances.reserve(ascendingRatios.size());
    for (const double ratio : ascendingRatios) {
        requireRatio(ratio);
        distances.push_back(ratio * length);
    }
    return placesAt(curve, length, distances);
}

std::vector<CurveEnd> cutsAt(const Curve& curve, std::span<const double> ratios) {
    std::vector<double> ascending(ratios.begin(), ratios.end());
    std::ranges::for_each(ascending, requireRatio);
    std::ranges::sort(ascending);
    std::vector<CurveEnd> cuts;
    cuts.reserve(ascending.size());
    for (const CurvePlace& place : placesAtRatios(curve, ascending)) {
        cuts.push_back(endAt(curve, place));
    }
    return cutsInside(curve, std::move(cuts));
}

void requireFinite(const CurveCut& cut) {
    requireRatio(cut.ratio);
    if (!isFinite(cut.vertex.xy())) {
        throw PlatformError("A curve can't be cut at the ratio " + std::to_string(cut.ratio) +
                            ": the coordinates to cut at are not finite.");
    }
}

std::vector<CurveEnd> cutsAt(const Curve& curve, std::span<const CurveCut> given) {
    std::vector<CurveCut> ascending(given.begin(), given.end());
    std::ranges::for_each(ascending, requireFinite);
    std::ranges::stable_sort(ascending, {}, &CurveCut::ratio);
    std::vector<double> ratios;
    std::ranges::transform(ascending, std::back_inserter(ratios), &CurveCut::ratio);
    const std::vector<CurvePlace> places = placesAtRatios(curve, ratios);
    std::vector<CurveEnd> cuts;
    for (std::size_t i = 0; i < places.size(); ++i) {
        const bool betweenParts = isEndOfPart(curve, places[i]);
        cuts.push_back({places[i], betweenParts ? vertexAt(curve, places[i]) : ascending[i].vertex});
    }
    return cutsInside(curve, std::move(cuts));
}

// Calls `take(from, to)` for the stretches from cut to cut.
template <typename Take> void forEachStretch(const Curve& curve, const std::vector<CurveEnd>& cuts, Take take) {
    CurveEnd from = endAt(curve, startPlace(curve));
    for (const CurveEnd& cut : cuts) {
        take(from, cut);
        from = cut;
    }
    take(from, endAt(curve, endPlace(curve)));
}

template <typename Cut> std::vector<Polyline> split(const Polyline& line, std::span<const Cut> cuts) {
    std::vector<Polyline> pieces;
    if (line.isEmpty()) {
        return pieces;
    }
    pieces.reserve(cuts.size() + 1);
    forEachStretch(line, cutsAt(line, cuts), [&](const CurveEnd& from, const CurveEnd& to) {
        pieces.push_back({line, pathsBetween(line, from, to)});
    });
    return pieces;
}

template <typename Cut> std::vector<Path> split(const Path& path, std::span<const Cut> cuts) {
    std::vector<Path> pieces;
    if (path.isEmpty()) {
        return pieces;
    }
    pieces.reserve(cuts.size() + 1);
    forEachStretch(path, cutsAt(path, cuts),
                   [&](const CurveEnd& from, const CurveEnd& to) { pieces.push_back(pathBetween(path, from, to)); });
    return pieces;
}

std::vector<Path> stretch(const Curve& curve, double from, double to) {
    requireRatio(from);
    requireRatio(to);
    if (curve.isEmpty() || from >= to) {
        return {};
    }
    const double ratios[] = {from, to};
    const std::vector<CurvePlace> places = placesAtRatios(curve, ratios);
    const CurvePlace first = from <= 0 ? startPlace(curve) : places[0];
    const CurvePlace last = to >= 1 ? endPlace(curve) : places[1];
    return first < last ? pathsBetween(curve, endAt(curve, first), endAt(curve, last)) : std::vector<Path>();
}

} // namespace

Path pathBetween(const Path& path, const CurveEnd& from, const CurveEnd& to) {
    Path piece;
    piece.reserve(to.place.segment - from.place.segment + 2);
    piece.addVertex(from.vertex);
    double ratio = from.place.ratio;
    auto arc = std::ranges::lower_bound(path.arcs(), from.place.segment, {}, &ArcSegment::segment);
    const auto arcOf = [&](std::size_t segment) {
        return arc != path.arcs().end() && arc->segment == segment ? &*arc++ : nullptr;
    };
    for (std::size_t i = from.place.segment; i < to.place.segment; ++i) {
        const bool last = i + 1 == to.place.segment && to.place.ratio == 0;
        appendStretch(piece, CurveSegment(path, i, arcOf(i)), ratio, 1, last ? to.vertex : path.vertex(i + 1));
        ratio = 0;
    }
    if (to.place.ratio > 0) {
        appendStretch(piece, CurveSegment(path, to.place.segment, arcOf(to.place.segment)), ratio, to.place.ratio,
                      to.vertex);
    }
    return piece;
}

Polyline subCurve(const Polyline& line, double from, double to) {
    return {line, stretch(line, from, to)};
}

Polyline subCurve(const Polygon& polygon, double from, double to) {
    return {polygon, stretch(polygon, from, to)};
}

std::vector<Polyline> splitAtRatios(const Polyline& line, std::span<const double> ratios) {
    return split(line, ratios);
}

std::vector<Path> splitAtRatios(const Path& path, std::span<const double> ratios) {
    return split(path, ratios);
}

std::vector<Polyline> splitAtVertices(const Polyline& line, std::span<const CurveCut> cuts) {
    return split(line, cuts);
}

std::vector<Path> splitAtVertices(const Path& path, std::span<const CurveCut> cuts) {
    return split(path, cuts);
}

} // namespace qz
