#include "platform/geometry/CurveSources.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <tuple>

#include "platform/geometry/Curve.h"
#include "platform/geometry/Strokes.h"
#include "platform/geometry/Vectors.h"

namespace qz {

namespace {

// Strokes depart from their arc by no more than this part of the tolerance.
constexpr double strokesPerTolerance = 10;
// Places on a segment are off it by a few units in the last place of their coordinates.
constexpr double roundingOfPlaces = 0x1p-50;

bool definesValues(const Geometry& geometry) {
    const GeometryTraits& traits = geometry.traits();
    if (!traits.zAware && !traits.mAware) {
        return false;
    }
    bool defines = false;
    forEachVertex(geometry, [&](const Vertex& vertex) {
        defines = defines || (traits.zAware && !std::isnan(vertex.z)) || (traits.mAware && !std::isnan(vertex.m));
    });
    return defines;
}

double ratioOn(XY start, XY end, XY p) noexcept {
    const XY along{end.x - start.x, end.y - start.y};
    const double square = along.x * along.x + along.y * along.y;
    const double ratio = ((p.x - start.x) * along.x + (p.y - start.y) * along.y) / square;
    return square > 0 ? std::clamp(ratio, 0.0, 1.0) : 0.0;
}

double distanceTo(XY start, XY end, XY p) noexcept {
    const double ratio = ratioOn(start, end, p);
    return distance(p, {start.x + ratio * (end.x - start.x), start.y + ratio * (end.y - start.y)});
}

Envelope boxOf(XY a, XY b) {
    return {std::min(a.x, b.x), std::min(a.y, b.y), std::max(a.x, b.x), std::max(a.y, b.y)};
}

double largestCoordinate(const Envelope& box) {
    return std::max({std::abs(box.xMin), std::abs(box.yMin), std::abs(box.xMax), std::abs(box.yMax)});
}

CircularArc pieceOf(const CircularArc& circle, const CircularArc& arc, double from, double to) {
    return {circle.centre, circle.radius, arc.startAngle + from * arc.sweep, (to - from) * arc.sweep};
}

// The closed ring, beginning at that vertex.
std::vector<XY> ringFrom(std::span<const XY> ring, std::ptrdiff_t start) {
    std::vector<XY> xy;
    xy.reserve(ring.size());
    xy.insert(xy.end(), ring.begin() + start, ring.end());
    xy.insert(xy.end(), ring.begin() + 1, ring.begin() + start + 1);
    return xy;
}

} // namespace

CurveSources::CurveSources(std::span<const Geometry* const> operands) : operands_(operands.begin(), operands.end()) {
    const CoordinateGrid& grid = operands.front()->spatialReference().grid();
    resolution_ = grid.xyResolution;
    tolerance_ = grid.xyTolerance;
    for (const Geometry* operand : operands) {
        firstPath_.push_back(paths_.size());
        const std::vector<const Path*> paths = pathsOf(*operand);
        paths_.insert(paths_.end(), paths.begin(), paths.end());
        hasValues_ = hasValues_ || definesValues(*operand);
    }
    firstPath_.push_back(paths_.size());
    hasArcs_ = std::ranges::any_of(paths_, [](const Path* path) { return path->hasArcs(); });
    if (hasArcs_) {
        strokeOperands();
    }
    if (!isPlain()) {
        addVertexValues();
        indexStrokes();
    }
}

void CurveSources::strokeOperands() {
    const auto nodes = nodesOf(paths_, {0, resolution_});
    const std::vector<CircularArc> circles = unifiedCircles(resolution_);
    std::size_t firstCircle = 0;
    std::size_t path = 0;
    const auto strokeAll = [&](std::vector<Path>& paths) {
        for (Path& stroked : paths) {
            stroked = strokePath(path, nodes[path], std::span(circles).subspan(firstCircle));
            firstCircle += paths_[path]->arcs().size();
            ++path;
        }
    };
    for (const Geometry* operand : operands_) {
        Geometry& copy = stroked_.emplace_back(*operand);
        if (Polyline* polyline = copy.getIf<Polyline>()) {
            strokeAll(polyline->paths);
        } else if (Polygon* polygon = copy.getIf<Polygon>()) {
            strokeAll(polygon->rings);
        }
    }
}

// The circles of all arcs, in order; those that are one within the tolerance are equal.
std::vector<CircularArc> CurveSources::unifiedCircles(double tolerance) const {
    std::vector<CircularArc> circles;
    std::vector<Envelope> centres;
    for (const Path* path : paths_) {
        for (const ArcSegment& arc : path->arcs()) {
            circles.push_back(path->circularArc(arc));
            centres.push_back(boxOf(circles.back().centre, circles.back().centre));
        }
    }
    const PackedEnvelopeTree tree(centres);
    for (std::size_t i = 0; i < circles.size(); ++i) {
        std::size_t first = i;
        tree.query(centres[i].expandedBy(tolerance, tolerance), [&](std::size_t j) {
            if (j < first && std::abs(circles[j].radius - circles[i].radius) <= tolerance) {
                first = j;
            }
        });
        circles[i].centre = circles[first].centre;
        circles[i].radius = circles[first].radius;
    }
    return circles;
}

// Continues a line of strokes by the piece of a segment from one ratio to another, along that circle if it is an arc.
void CurveSources::strokePiece(std::vector<XY>& line, const Stroke& piece, const std::optional<CircularArc>& arc) {
    double reached = piece.from;
    const auto add = [&](double ratio, XY end) {
        strokes_.push_back({piece.path, piece.segment, reached, ratio, line.back(), end});
        line.push_back(end);
        reached = ratio;
    };
    if (arc && !arc->isFlat()) {
        for (const XY p : strokePoints(*arc, tolerance_ / strokesPerTolerance)) {
            // One that is an end but for rounding is left out.
            if (distance(p, line.back()) > resolution_ && distance(p, piece.end) > resolution_) {
                add(piece.from + (piece.to - piece.from) * std::clamp(arc->ratioOf(p), 0.0, 1.0), p);
            }
        }
    }
    if (!(line.back() == piece.end)) {
        add(piece.to, piece.end);
    }
}

// `circles`: of the path's arcs, to take the strokes from.
Path CurveSources::strokePath(std::size_t path, std::span<const Node> nodes, std::span<const CircularArc> circles) {
    const Path& curve = *paths_[path];
    std::vector<XY> line;
    line.reserve(curve.vertexCount());
    NodeWalk walk(curve, nodes);
    if (!curve.isEmpty()) {
        line.push_back(walk.vertex(0));
    }
    auto circle = circles.begin();
    forEachSegment(curve, [&](std::size_t index, const CurveSegment& segment) {
        double from = 0;
        const auto addPiece = [&](double to, XY end) {
            const auto arc =
                segment.circle() ? std::optional(pieceOf(*circle, *segment.circle(), from, to)) : std::nullopt;
            strokePiece(line, {path, index, from, to, line.back(), end}, arc);
            from = to;
        };
        for (; const Node* node = walk.nextInside(index);) {
            addPiece(node->ratio, node->position);
        }
        addPiece(1, walk.vertex(index + 1));
        circle += segment.circle() ? 1 : 0;
    });
    return Path(std::move(line));
}

void CurveSources::addVertexValues() {
    for (std::size_t operand = 0; operand < operands_.size(); ++operand) {
        const GeometryTraits& traits = operands_[operand]->traits();
        const auto add = [&](const Vertex& vertex) {
            const std::size_t number = vertices_.add(vertex.xy());
            vertexValues_.resize(vertices_.size());
            Values& values = vertexValues_[number];
            values.z = std::isnan(values.z) && traits.zAware ? vertex.z : values.z;
            values.m = std::isnan(values.m) && traits.mAware ? vertex.m : values.m;
        };
        for (std::size_t path = firstPath_[operand]; path < firstPath_[operand + 1]; ++path) {
            for (std::size_t i = 0; i < paths_[path]->vertexCount(); ++i) {
                add(paths_[path]->vertex(i));
            }
        }
        if (firstPath_[operand] == firstPath_[operand + 1]) {
            forEachVertex(*operands_[operand], add);
        }
    }
}

void CurveSources::indexStrokes() {
    if (tree_.size() > 0) {
        return;
    }
    for (std::size_t path = 0; path < paths_.size() && !hasArcs_; ++path) {
        (void)strokePath(path, {}, {});
    }
    std::vector<Envelope> envelopes;
    envelopes.reserve(strokes_.size());
    for (const Stroke& stroke : strokes_) {
        envelopes.push_back(boxOf(stroke.start, stroke.end));
    }
    tree_ = PackedEnvelopeTree(envelopes);
}

// The stroke on which an edge lies: the nearest, and of those that are equally near but for rounding the first.
const CurveSources::Stroke* CurveSources::strokeAt(XY start, XY end) const {
    const Envelope middle = boxOf({start.x + (end.x - start.x) / 2, start.y + (end.y - start.y) / 2},
                                  {start.x + (end.x - start.x) / 2, start.y + (end.y - start.y) / 2});
    const double rounding = largestCoordinate(boxOf(start, end)) * roundingOfPlaces;
    std::vector<std::pair<std::size_t, double>> near;
    const double reach = std::max(resolution_, rounding);
    tree_.query(middle.expandedBy(reach, reach), [&](std::size_t index) {
        const Stroke& stroke = strokes_[index];
        near.emplace_back(
            index, std::max(distanceTo(stroke.start, stroke.end, start), distanceTo(stroke.start, stroke.end, end)));
    });
    if (near.empty()) {
        return nullptr;
    }
    const double least = std::ranges::min(near, {}, &std::pair<std::size_t, double>::second).second;
    std::size_t first = strokes_.size();
    for (const auto& [index, distance] : near) {
        first = distance <= least + rounding ? std::min(first, index) : first;
    }
    return &strokes_[first];
}

CurveSources::Origin CurveSources::originOf(XY start, XY end) const {
    const Stroke* stroke = strokeAt(start, end);
    if (stroke == nullptr) {
        return {};
    }
    const auto ratioOf = [stroke](XY p) {
        return stroke->from + ratioOn(stroke->start, stroke->end, p) * (stroke->to - stroke->from);
    };
    return {true,           stroke->path, stroke->segment,
            ratioOf(start), ratioOf(end), paths_[stroke->path]->arcAt(stroke->segment) != nullptr};
}

std::vector<CurveSources::Origin> CurveSources::originsOf(std::span<const XY> line) const {
    std::vector<Origin> origins;
    origins.reserve(line.size() - 1);
    for (std::size_t i = 1; i < line.size(); ++i) {
        origins.push_back(originOf(line[i - 1], line[i]));
    }
    return origins;
}

CurveSources::Values CurveSources::valuesOn(const Origin& origin, double ratio) const {
    const auto operand = std::ranges::upper_bound(firstPath_, origin.path) - firstPath_.begin() - 1;
    const GeometryTraits& traits = operands_[static_cast<std::size_t>(operand)]->traits();
    const Vertex vertex = CurveSegment(*paths_[origin.path], origin.segment).vertexAt(ratio);
    return {traits.zAware ? vertex.z : undefined, traits.mAware ? vertex.m : undefined};
}

CurveSources::Values CurveSources::valuesAt(XY place, const Origin& before, const Origin& after) const {
    Values values;
    const auto fill = [&values](const Values& other) {
        values.z = std::isnan(values.z) ? other.z : values.z;
        values.m = std::isnan(values.m) ? other.m : values.m;
    };
    const auto fillFrom = [&](const Origin& origin, double ratio) {
        if (origin.isKnown) {
            fill(valuesOn(origin, ratio));
        }
    };
    if (const auto known = vertices_.find(place)) {
        fill(vertexValues_[*known]);
    }
    const bool afterFirst = std::tie(after.path, after.segment) < std::tie(before.path, before.segment);
    if (after.isKnown && afterFirst) {
        fillFrom(after, after.from);
    }
    fillFrom(before, before.to);
    fillFrom(after, after.from);
    return values;
}

bool CurveSources::continues(const Origin& before, const Origin& after, XY at) const {
    return before.curved && after.curved && before.path == after.path && before.segment == after.segment &&
           (before.from < before.to) == (after.from < after.to) && !vertices_.find(at);
}

void CurveSources::appendRun(Path& target, const Origin& run, const Vertex& end) const {
    const CurveSegment segment(*paths_[run.path], run.segment);
    if (run.from <= run.to) {
        appendStretch(target, segment, run.from, run.to, end);
        return;
    }
    Path backwards;
    backwards.addVertex(end);
    appendStretch(backwards, segment, run.to, run.from, target.back());
    backwards.reverse();
    target.append(backwards);
}

Path CurveSources::restored(std::span<const XY> line, std::span<const Origin> origins) const {
    const bool closed = line.front() == line.back();
    const Origin opening = closed ? origins.front() : Origin();
    const Origin closing = closed ? origins.back() : Origin();
    const auto vertexAt = [&](std::size_t i) {
        const Values values =
            valuesAt(line[i], i > 0 ? origins[i - 1] : closing, i < origins.size() ? origins[i] : opening);
        return Vertex{line[i].x, line[i].y, values.z, values.m};
    };
    Path result;
    result.reserve(line.size());
    result.addVertex(vertexAt(0));
    for (std::size_t i = 0, first = 0; i < origins.size(); ++i) {
        if (i + 1 < origins.size() && continues(origins[i], origins[i + 1], line[i + 1])) {
            continue;
        }
        if (origins[i].curved) {
            Origin run = origins[i];
            run.from = origins[first].from;
            appendRun(result, run, vertexAt(i + 1));
        } else {
            result.addVertex(vertexAt(i + 1));
        }
        first = i + 1;
    }
    return result;
}

Path CurveSources::restored(const Path& line) const {
    if (isPlain() || line.vertexCount() < 2) {
        return line;
    }
    return restored(line.xy(), originsOf(line.xy()));
}

std::size_t CurveSources::startOfRing(std::span<const XY> ring, std::span<const Origin> origins) const {
    const std::size_t none = origins.size();
    std::size_t best = none;
    for (std::size_t i = 0; i < origins.size(); ++i) {
        const Origin& before = origins[i == 0 ? origins.size() - 1 : i - 1];
        if (!continues(before, origins[i], ring[i]) && (best == none || precedes(ring[i], ring[best]))) {
            best = i;
        }
    }
    return best % none;
}

Path CurveSources::restoredRing(const Path& ring, std::vector<Origin> origins) const {
    const auto start = static_cast<std::ptrdiff_t>(startOfRing(ring.xy(), origins));
    std::ranges::rotate(origins, origins.begin() + start);
    return restored(ringFrom(ring.xy(), start), origins);
}

Path CurveSources::restoredRing(const Path& ring) const {
    if (isPlain()) {
        const std::span<const XY> open = ring.xy().first(ring.segmentCount());
        return Path(ringFrom(ring.xy(), std::ranges::min_element(open, precedes) - open.begin()));
    }
    return restoredRing(ring, originsOf(ring.xy()));
}

Path CurveSources::strokedRing(const Path& ring) const {
    std::vector<Origin> origins = originsOf(ring.xy());
    for (Origin& origin : origins) {
        origin.curved = false;
    }
    return restoredRing(ring, std::move(origins));
}

Vertex CurveSources::restored(XY place) const {
    const Values values = valuesAt(place, isPlain() ? Origin() : originOf(place, place), Origin());
    return {place.x, place.y, values.z, values.m};
}

Path CurveSources::directed(Path line) const {
    const Origin origin = originOf(line.xy()[0], line.xy()[1]);
    if (origin.isKnown && origin.from > origin.to) {
        line.reverse();
    }
    return line;
}

} // namespace qz
