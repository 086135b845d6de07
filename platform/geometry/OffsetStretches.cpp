#include "platform/geometry/OffsetStretches.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>
#include <tuple>
#include <unordered_map>

#include "platform/geometry/CurveIndex.h"
#include "platform/geometry/NodePlaces.h"
#include "platform/geometry/Noding.h"
#include "platform/geometry/Vectors.h"
#include "platform/geometry/XYHash.h"

namespace qz {

namespace {

// Of a source of that extent: places closer than this are one. Parallels of the same line, made from different
// segments, are apart by their rounding, some 1e-15 of the extent; what is gone with it is no feature of the source.
double sameNodeDistance(const Envelope& extent, double distance) noexcept {
    return 1e-12 * (extent.width() + extent.height() + distance);
}

Envelope extentOf(const Curve& source) {
    Envelope extent;
    for (const Path& part : source.parts()) {
        extent.expandToInclude(part.envelope());
    }
    return extent;
}

XY middleOf(const OffsetStretch& stretch, std::span<const ParallelCurve> curves) {
    return CurveSegment(curves[stretch.curve].path, stretch.segment).at((stretch.from + stretch.to) / 2);
}

// The source and how near to it is too near.
class Clearance {
public:
    Clearance(const Curve& source, double distance) : source_(source), index_(source), distance_(distance) {}

    [[nodiscard]] bool isHeldAt(XY place) const { return !(index_.positionOf(place)->distanceFrom < distance_); }

    // Whether no place of the segment holds it. Known for straight ones beside straight ones only: along them the
    // distance to a segment of the source is largest at an end.
    [[nodiscard]] bool isBrokenBy(const CurveSegment& segment) const {
        if (segment.circle()) {
            return false;
        }
        const CurvePosition position = *index_.positionOf(segment.at(0.5));
        const Path& part = source_.parts()[position.part];
        if (part.segmentCount() == 0) {
            return false; // a part of one vertex
        }
        const CurveSegment nearest(part, position.segment);
        const auto isTooNear = [&](XY place) {
            return nearest.squaredDistance(place, nearest.nearestRatio(place)) < distance_ * distance_;
        };
        return !nearest.circle() && isTooNear(segment.start()) && isTooNear(segment.end());
    }

private:
    const Curve& source_;
    CurveIndex index_;
    double distance_;
};

bool isInside(const ParallelCurve& curve, std::size_t segment) {
    return segment < curve.roles.size() && curve.roles[segment] == ParallelRole::inside;
}

// Beside a bend that is tighter than the distance neighbours don't meet. About its centre each would cross every other
// one, though most are too near to the source as a whole.
bool isBesideTightBend(const ParallelCurve& curve, std::size_t segment) {
    return (segment > 0 && isInside(curve, segment - 1)) || isInside(curve, segment + 1);
}

// The segments of the curves that may bound something, as lines of their own, so that the ends of all are tested for
// being near to others.
struct SingleSegments {
    std::vector<Path> paths;
    std::vector<OffsetStretch> whole; // the segment of each path
};

SingleSegments singleSegments(std::span<const ParallelCurve> curves, const Clearance& clearance) {
    SingleSegments singles;
    for (std::size_t i = 0; i < curves.size(); ++i) {
        const ParallelCurve& curve = curves[i];
        forEachSegment(curve.path, [&](std::size_t index, const CurveSegment& segment) {
            if (isInside(curve, index) || !(segment.length() > 0) ||
                (isBesideTightBend(curve, index) && clearance.isBrokenBy(segment))) {
                return;
            }
            Path& single = singles.paths.emplace_back(std::vector{segment.start()});
            appendStretch(single, segment, 0, 1, {segment.end().x, segment.end().y});
            singles.whole.push_back({i, index, 0, 1, segment.start(), segment.end()});
        });
    }
    return singles;
}

// Calls `see(OffsetStretch)` for the stretches of a segment from node to node.
template <typename See> void forEachStretch(const OffsetStretch& whole, std::span<const Node> nodes, const See& see) {
    OffsetStretch stretch = whole;
    for (const Node& node : nodes) {
        if (node.ratio > stretch.from) {
            stretch.to = node.ratio;
            stretch.end = node.position;
            see(stretch);
            stretch.from = stretch.to;
            stretch.start = stretch.end;
        }
    }
    stretch.to = 1;
    stretch.end = whole.end;
    see(stretch);
}

std::vector<OffsetStretch> nodedStretches(const SingleSegments& singles, double sameNode) {
    std::vector<const Path*> paths;
    std::ranges::transform(singles.paths, std::back_inserter(paths), [](const Path& path) { return &path; });
    const std::vector<std::vector<Node>> nodes = nodesOf(paths, {sameNode, sameNode});
    NodePlaces places(sameNode);
    std::vector<OffsetStretch> stretches;
    for (std::size_t i = 0; i < paths.size(); ++i) {
        const bool isFullCircle = singles.whole[i].start == singles.whole[i].end;
        forEachStretch(singles.whole[i], nodes[i], [&](OffsetStretch stretch) {
            stretch.start = places[places.add(stretch.start)];
            stretch.end = places[places.add(stretch.end)];
            const bool isWhole = stretch.from == 0 && stretch.to == 1;
            if (!(stretch.start == stretch.end) || (isFullCircle && isWhole)) {
                stretches.push_back(stretch);
            }
        });
    }
    return stretches;
}

// How many ends of stretches are at each place.
class PlaceDegrees {
public:
    explicit PlaceDegrees(std::span<const OffsetStretch> stretches) {
        places_.reserve(stretches.size() + 1);
        for (const OffsetStretch& stretch : stretches) {
            count(stretch.start);
            count(stretch.end);
        }
    }

    [[nodiscard]] std::size_t operator[](XY place) const { return degrees_[*places_.find(place)]; }

private:
    void count(XY place) {
        const std::size_t number = places_.add(place);
        degrees_.resize(places_.size());
        ++degrees_[number];
    }

    PlaceNumbers places_;
    std::vector<std::size_t> degrees_;
};

// Calls `see(run)` for stretches that follow each other with no other curve between: the distance from the source can
// fall below that of the curves only where two of them meet, so that they are outer ones together.
template <typename See> void forEachRun(std::span<const OffsetStretch> stretches, const See& see) {
    const PlaceDegrees degrees(stretches);
    for (std::size_t first = 0, end = 0; first < stretches.size(); first = end) {
        const auto goesOn = [&](const OffsetStretch& before, const OffsetStretch& after) {
            return before.curve == after.curve && before.end == after.start && degrees[after.start] == 2;
        };
        for (end = first + 1; end < stretches.size() && goesOn(stretches[end - 1], stretches[end]); ++end) {
        }
        see(stretches.subspan(first, end - first));
    }
}

const OffsetStretch& longestOf(std::span<const OffsetStretch> run) {
    return *std::ranges::max_element(run, {}, [](const OffsetStretch& stretch) {
        const XY chord = stretch.end - stretch.start;
        return dot(chord, chord);
    });
}

using StretchTable = std::unordered_map<DirectedEdge, std::vector<std::size_t>, DirectedEdgeHash>;

DirectedEdge directedEnds(const OffsetStretch& stretch) {
    return {stretch.start, stretch.end};
}

DirectedEdge ascendingEnds(const OffsetStretch& stretch) {
    const bool descends = std::tie(stretch.end.x, stretch.end.y) < std::tie(stretch.start.x, stretch.start.y);
    return descends ? DirectedEdge{stretch.end, stretch.start} : DirectedEdge{stretch.start, stretch.end};
}

// Between the same two nodes, curves are one or far apart: a circle and its chord, two halves of a circle.
bool coverEachOther(const OffsetStretch& a, const OffsetStretch& b, std::span<const ParallelCurve> curves) {
    const XY apart = middleOf(b, curves) - middleOf(a, curves);
    const XY chord = a.end - a.start;
    return std::hypot(apart.x, apart.y) <= 1e-6 * std::hypot(chord.x, chord.y);
}

template <typename EndsOf>
std::vector<OffsetStretch> withoutRepeats(std::vector<OffsetStretch> stretches, std::span<const ParallelCurve> curves,
                                          EndsOf endsOf) {
    StretchTable known;
    known.reserve(stretches.size());
    std::vector<OffsetStretch> kept;
    kept.reserve(stretches.size());
    for (const OffsetStretch& stretch : stretches) {
        std::vector<std::size_t>& sameEnds = known[endsOf(stretch)];
        const bool isRepeat = std::ranges::any_of(
            sameEnds, [&](std::size_t other) { return coverEachOther(kept[other], stretch, curves); });
        if (!isRepeat) {
            sameEnds.push_back(kept.size());
            kept.push_back(stretch);
        }
    }
    return kept;
}

// Finds for every stretch the one that goes on where it ends.
class StretchLinks {
public:
    explicit StretchLinks(std::span<const OffsetStretch> stretches)
        : stretches_(stretches), next_(stretches.size(), none), hasPrevious_(stretches.size(), false) {
        linkNeighbours();
        linkRest();
    }

    std::vector<StretchChain> chains() {
        std::vector<StretchChain> result;
        std::vector<bool> isUsed(stretches_.size(), false);
        for (const bool startsOpen : {true, false}) {
            for (std::size_t i = 0; i < stretches_.size(); ++i) {
                if (!isUsed[i] && hasPrevious_[i] != startsOpen) {
                    result.push_back(chainFrom(i, isUsed));
                }
            }
        }
        return result;
    }

private:
    static constexpr std::size_t none = std::numeric_limits<std::size_t>::max();

    void link(std::size_t from, std::size_t to) {
        next_[from] = to;
        hasPrevious_[to] = true;
    }

    void linkNeighbours() {
        for (std::size_t i = 1; i < stretches_.size(); ++i) {
            if (stretches_[i].curve == stretches_[i - 1].curve && stretches_[i].start == stretches_[i - 1].end) {
                link(i - 1, i);
            }
        }
    }

    void linkRest() {
        std::unordered_map<XY, std::vector<std::size_t>, XYHash> starts;
        for (std::size_t i = 0; i < stretches_.size(); ++i) {
            if (!hasPrevious_[i]) {
                starts[stretches_[i].start].push_back(i);
            }
        }
        for (std::size_t i = 0; i < stretches_.size(); ++i) {
            const auto found = next_[i] == none ? starts.find(stretches_[i].end) : starts.end();
            if (found == starts.end()) {
                continue;
            }
            const auto open = std::ranges::find_if(found->second, [this](std::size_t to) { return !hasPrevious_[to]; });
            if (open != found->second.end()) {
                link(i, *open);
            }
        }
    }

    StretchChain chainFrom(std::size_t first, std::vector<bool>& isUsed) const {
        StretchChain chain;
        for (std::size_t i = first; i != none && !isUsed[i]; i = next_[i]) {
            isUsed[i] = true;
            if (!chain.empty() && isOneStretch(chain.back(), stretches_[i])) {
                chain.back().to = stretches_[i].to;
                chain.back().end = stretches_[i].end;
            } else {
                chain.push_back(stretches_[i]);
            }
        }
        return chain;
    }

    // Divided by a node that bounds nothing.
    static bool isOneStretch(const OffsetStretch& before, const OffsetStretch& after) noexcept {
        return before.curve == after.curve && before.segment == after.segment && before.to == after.from;
    }

    std::span<const OffsetStretch> stretches_;
    std::vector<std::size_t> next_;
    std::vector<bool> hasPrevious_;
};

} // namespace

std::vector<OffsetStretch> outerStretches(std::span<const ParallelCurve> curves, const Curve& source, double distance) {
    const double sameNode = sameNodeDistance(extentOf(source), distance);
    const Clearance clearance(source, distance - sameNode);
    std::vector<OffsetStretch> outer;
    const std::vector<OffsetStretch> stretches = nodedStretches(singleSegments(curves, clearance), sameNode);
    forEachRun(stretches, [&](std::span<const OffsetStretch> run) {
        if (clearance.isHeldAt(middleOf(longestOf(run), curves))) {
            outer.insert(outer.end(), run.begin(), run.end());
        }
    });
    return withoutRepeats(std::move(outer), curves, directedEnds);
}

std::vector<OffsetStretch> withoutWaysBack(std::vector<OffsetStretch> stretches,
                                           std::span<const ParallelCurve> curves) {
    return withoutRepeats(std::move(stretches), curves, ascendingEnds);
}

std::vector<StretchChain> chained(std::span<const OffsetStretch> stretches) {
    return StretchLinks(stretches).chains();
}

Vertex startOf(const OffsetStretch& stretch, std::span<const ParallelCurve> curves) {
    Vertex vertex = CurveSegment(curves[stretch.curve].path, stretch.segment).vertexAt(stretch.from);
    vertex.x = stretch.start.x;
    vertex.y = stretch.start.y;
    return vertex;
}

void append(Path& target, const OffsetStretch& stretch, std::span<const ParallelCurve> curves) {
    const CurveSegment segment(curves[stretch.curve].path, stretch.segment);
    Vertex end = segment.vertexAt(stretch.to);
    end.x = stretch.end.x;
    end.y = stretch.end.y;
    appendStretch(target, segment, stretch.from, stretch.to, end);
}

Path chainPath(const StretchChain& chain, std::span<const ParallelCurve> curves) {
    Path path;
    path.addVertex(startOf(chain.front(), curves));
    for (const OffsetStretch& stretch : chain) {
        append(path, stretch, curves);
    }
    return path;
}

} // namespace qz
