#include "platform/topology/ArcStrokes.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "platform/geometry/Curve.h"
#include "platform/geometry/Strokes.h"
#include "platform/geometry/Vectors.h"

namespace qz {

namespace {

// Strokes depart from their arc by no more than this part of the tolerance, where they can be so short.
constexpr double strokesPerTolerance = 10;
// The length of strokes in tolerances, at least; rounding their number to a power of two may halve it.
constexpr double tolerancesPerStroke = 3;

double sagittaFor(double radius, double tolerance) {
    const double ofLongStrokes = std::pow(tolerancesPerStroke * tolerance, 2) / (8 * radius);
    return std::max(tolerance / strokesPerTolerance, ofLongStrokes);
}

} // namespace

std::vector<XY> ArcStrokes::strokesOf(const CircularArc& arc, XY end) const {
    std::vector<XY> places = strokePoints(arc, sagittaFor(arc.radius, tolerance_));
    const XY start = arc.at(0);
    std::erase_if(places, [&](XY p) { return distance(p, start) <= tolerance_ || distance(p, end) <= tolerance_; });
    return places;
}

Path ArcStrokes::stroked(const Path& path) {
    const std::size_t number = pathCount_++;
    if (!path.hasArcs()) {
        return path;
    }
    Path result;
    result.addVertex(path.front());
    forEachSegment(path, [&](std::size_t index, const CurveSegment& segment) {
        if (segment.circle()) {
            StrokedArc& arc =
                arcs_.emplace_back(StrokedArc{number, {segment.start()}, segment.arc().middle, segment.arc().sense});
            for (const XY place : strokesOf(*segment.circle(), segment.end())) {
                Vertex vertex = segment.vertexAt(std::clamp(segment.circle()->ratioOf(place), 0.0, 1.0));
                vertex.x = place.x;
                vertex.y = place.y;
                result.addVertex(vertex);
                arc.places.push_back(place);
            }
            arc.places.push_back(segment.end());
        }
        result.addVertex(path.vertex(index + 1));
    });
    return result;
}

void ArcStrokes::settle(std::span<const Path> noded, double resolution) {
    for (auto first = arcs_.begin(); first != arcs_.end();) {
        const Path& path = noded[first->path];
        PlaceNumbers places;
        for (const XY place : path.xy()) {
            places.add(place); // that of the end of a ring is known from its start
        }
        const bool isPlain = places.size() + (path.isClosed() ? 1 : 0) == path.vertexCount();
        for (; first != arcs_.end() && &noded[first->path] == &path; ++first) {
            if (isPlain) {
                settleArc(*first, path, places, resolution);
            }
        }
    }
}

void ArcStrokes::settleArc(StrokedArc& arc, const Path& noded, const PlaceNumbers& places, double resolution) {
    const auto start = places.find(arc.places.front());
    if (!start || *start + arc.places.size() > noded.vertexCount()) {
        return;
    }
    const std::span<const XY> run = noded.xy().subspan(*start, arc.places.size());
    const auto isNear = [&](XY a, XY b) { return distance(a, b) <= resolution; };
    if (!std::ranges::equal(run, arc.places, isNear) || !(run.back() == arc.places.back())) {
        return;
    }
    arc.places.assign(run.begin(), run.end());
    const auto number = static_cast<std::size_t>(&arc - arcs_.data());
    offer({run[0], run[1]}, {number, false});
    offer({run[run.size() - 1], run[run.size() - 2]}, {number, true});
}

void ArcStrokes::offer(DirectedEdge firstStroke, Candidate candidate) {
    const std::size_t number = firstStrokes_.add(firstStroke);
    candidates_.resize(firstStrokes_.size());
    candidates_[number].push_back(candidate);
}

bool ArcStrokes::runsAlong(const Path& stretch, std::size_t first, const Candidate& candidate) const {
    const std::vector<XY>& places = arcs_[candidate.arc].places;
    if (first + places.size() > stretch.vertexCount()) {
        return false;
    }
    const std::span<const XY> run = stretch.xy().subspan(first, places.size());
    return candidate.isReversed ? std::equal(run.begin(), run.end(), places.rbegin())
                                : std::equal(run.begin(), run.end(), places.begin());
}

// Of several the shortest, so that no vertex of another is passed over, and of these the first.
const ArcStrokes::Candidate* ArcStrokes::arcAt(const Path& stretch, std::size_t first) const {
    if (first + 1 >= stretch.vertexCount()) {
        return nullptr;
    }
    const auto number = firstStrokes_.find({stretch.xy()[first], stretch.xy()[first + 1]});
    const Candidate* best = nullptr;
    for (std::size_t i = 0; number && i < candidates_[*number].size(); ++i) {
        const Candidate& candidate = candidates_[*number][i];
        const std::size_t strokes = arcs_[candidate.arc].places.size();
        if (runsAlong(stretch, first, candidate) && (!best || strokes < arcs_[best->arc].places.size())) {
            best = &candidate;
        }
    }
    return best;
}

Path ArcStrokes::restored(const Path& stretch) const {
    if (candidates_.empty()) {
        return stretch;
    }
    Path result;
    result.addVertex(stretch.front());
    for (std::size_t i = 0; i + 1 < stretch.vertexCount();) {
        const Candidate* candidate = arcAt(stretch, i);
        const std::size_t next = i + (candidate ? arcs_[candidate->arc].places.size() - 1 : 1);
        const Vertex from = stretch.vertex(i), to = stretch.vertex(next);
        if (candidate) {
            const StrokedArc& arc = arcs_[candidate->arc];
            const bool turnsLeft = (arc.sense == ArcSense::counterClockwise) != candidate->isReversed;
            result.addArc({arc.middle.x, arc.middle.y, std::midpoint(from.z, to.z), std::midpoint(from.m, to.m)}, to,
                          turnsLeft ? ArcSense::counterClockwise : ArcSense::clockwise);
        } else {
            result.addVertex(to);
        }
        i = next;
    }
    return result;
}

} // namespace qz
