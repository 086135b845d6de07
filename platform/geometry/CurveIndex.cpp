#include "platform/geometry/CurveIndex.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "platform/geometry/CurveFoot.h"

namespace qz {

namespace {

constexpr std::size_t nodeSize = 8;

double squaredDistanceTo(const Envelope& envelope, XY p) noexcept {
    const double dx = std::max({envelope.xMin - p.x, 0.0, p.x - envelope.xMax});
    const double dy = std::max({envelope.yMin - p.y, 0.0, p.y - envelope.yMax});
    return dx * dx + dy * dy;
}

// For the search: an arc's points are rounded, its envelope must not be.
Envelope searchEnvelope(const CurveSegment& segment) {
    Envelope envelope = segment.envelope();
    if (segment.circle()) {
        const double size = segment.circle()->radius + std::abs(segment.start().x) + std::abs(segment.start().y);
        const double rounding = 16 * std::numeric_limits<double>::epsilon() * size;
        envelope = envelope.expandedBy(rounding, rounding);
    }
    return envelope;
}

// An envelope this much farther holds nothing as near, whatever was rounded.
constexpr double roundingSlack = 1 - 1e-12;

} // namespace

struct CurveIndex::Nearest {
    double square = std::numeric_limits<double>::infinity();
    std::size_t place = 0;
    double ratio = 0;
};

CurveIndex::CurveIndex(const Curve& curve)
    : paths_(curve.parts().begin(), curve.parts().end()), length_(curve.lengthFor("position on a curve")) {
    levels_.emplace_back();
    double before = 0;
    for (std::size_t part = 0; part < paths_.size(); ++part) {
        before = addPart(part, before);
    }
    while (levels_.back().size() > nodeSize) {
        addLevel();
    }
}

double CurveIndex::addPart(std::size_t part, double before) {
    const Path& path = paths_[part];
    if (path.vertexCount() == 1) {
        places_.push_back({part, 0, before, before});
        levels_.front().push_back(path.envelope());
    }
    double sum = 0;
    forEachSegment(path, [&](std::size_t i, const CurveSegment& segment) {
        const double from = before + sum;
        sum += segment.length();
        places_.push_back({part, i, from, before + sum});
        levels_.front().push_back(searchEnvelope(segment));
    });
    return before + sum;
}

void CurveIndex::addLevel() {
    const std::vector<Envelope>& below = levels_.back();
    std::vector<Envelope> level((below.size() + nodeSize - 1) / nodeSize);
    for (std::size_t i = 0; i < below.size(); ++i) {
        level[i / nodeSize].expandToInclude(below[i]);
    }
    levels_.push_back(std::move(level));
}

void CurveIndex::see(std::size_t place, XY point, Nearest& nearest) const {
    const Place& at = places_[place];
    const Path& path = paths_[at.part];
    const Foot foot =
        path.vertexCount() == 1 ? footOnVertex(path, point) : footOn(CurveSegment(path, at.segment), point);
    if (foot.square < nearest.square || (foot.square == nearest.square && place < nearest.place)) {
        nearest = {foot.square, place, foot.ratio};
    }
}

// The nearer children first, so that most of the others can be left out.
void CurveIndex::search(std::size_t level, std::size_t first, XY point, Nearest& nearest) const {
    struct Child {
        double square;
        std::size_t index;

        auto operator<=>(const Child&) const = default;
    };
    std::array<Child, nodeSize> children;
    const std::size_t count = std::min(nodeSize, levels_[level].size() - first);
    for (std::size_t i = 0; i < count; ++i) {
        children[i] = {squaredDistanceTo(levels_[level][first + i], point), first + i};
    }
    std::sort(children.begin(), children.begin() + static_cast<std::ptrdiff_t>(count));
    for (std::size_t i = 0; i < count && children[i].square * roundingSlack <= nearest.square; ++i) {
        if (level == 0) {
            see(children[i].index, point, nearest);
        } else {
            search(level - 1, children[i].index * nodeSize, point, nearest);
        }
    }
}

std::optional<CurvePosition> CurveIndex::positionOf(XY point) const {
    requireFinite(point);
    if (places_.empty()) {
        return std::nullopt;
    }
    Nearest nearest;
    search(levels_.size() - 1, 0, point, nearest);
    const Place& place = places_[nearest.place];
    const Foot foot{nearest.square, place.part, place.segment, nearest.ratio, place.before, place.after};
    return positionAt(paths_[place.part], foot, point, length_);
}

std::optional<CurvePosition> CurveIndex::positionOnExtended(XY point) const {
    const auto within = positionOf(point);
    return within ? std::optional(extended(*within, Curve(paths_), length_, point)) : std::nullopt;
}

} // namespace qz
