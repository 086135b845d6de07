#include "platform/geometry/Reshape.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/geometry/Curve.h"
#include "platform/geometry/MeasureInterpolation.h"
#include "platform/geometry/Noding.h"
#include "platform/geometry/SubCurve.h"

namespace qz {

namespace {

void requireFinite(const Polyline& line, const Path& path, double tolerance) {
    if (!std::isfinite(tolerance) || tolerance < 0) {
        throw PlatformError("A line can't be reshaped within a tolerance of " + std::to_string(tolerance) + ".");
    }
    static_cast<void>(Curve(line).lengthFor("reshaped line"));
    static_cast<void>(Curve(path).lengthFor("path to reshape a line with"));
}

// At a vertex the segment is its number and the ratio 0.
CurvePlace placeOf(std::size_t segment, double ratio) {
    return ratio < 1 ? CurvePlace{0, segment, ratio} : CurvePlace{0, segment + 1, 0};
}

// Where the path meets a part of the line.
struct Meeting {
    CurvePlace onPath;
    CurvePlace onPart;
    XY position;

    // The vertex a cut makes in the part: its own one, where there is one.
    [[nodiscard]] CurveEnd endOn(const Path& part) const {
        Vertex vertex = vertexAt(part, onPart);
        if (onPart.ratio > 0) {
            vertex.x = position.x;
            vertex.y = position.y;
        }
        return {onPart, vertex};
    }
};

// In the order along the path, by part of the line.
std::vector<std::vector<Meeting>> meetingsOf(const Polyline& line, const Path& path, double tolerance) {
    std::vector<const Path*> paths;
    for (const Path& part : line.paths) {
        paths.push_back(&part);
    }
    paths.push_back(&path);
    const auto nodes = nodesOf(paths, {.endDistance = tolerance, .circleDistance = tolerance});
    std::vector<std::vector<Meeting>> meetings(line.paths.size());
    for (const Node& node : nodes.back()) {
        if (node.otherPath < line.paths.size()) {
            meetings[node.otherPath].push_back(
                {placeOf(node.segment, node.ratio), placeOf(node.otherSegment, node.otherRatio), node.position});
        }
    }
    return meetings;
}

bool areApart(const std::vector<Meeting>& meetings) {
    return !meetings.empty() && meetings.front().onPart != meetings.back().onPart &&
           meetings.front().onPath != meetings.back().onPath;
}

// The part met first of those met in two places.
std::optional<std::size_t> partToReshape(const std::vector<std::vector<Meeting>>& meetings) {
    std::optional<std::size_t> best;
    for (std::size_t part = 0; part < meetings.size(); ++part) {
        if (areApart(meetings[part]) && (!best || meetings[part].front().onPath < meetings[*best].front().onPath)) {
            best = part;
        }
    }
    return best;
}

void exchangeZAndM(Path& path) {
    path.transform([](Vertex& vertex) { std::swap(vertex.z, vertex.m); });
}

// The stretch of the path between the two meetings, from and to the given vertices of the line.
Path replacement(const Path& path, const Meeting& first, const Vertex& start, const Meeting& last, const Vertex& end) {
    Path stretch = pathBetween(path, {first.onPath, start}, {last.onPath, end});
    interpolateMeasures(stretch);
    exchangeZAndM(stretch);
    interpolateMeasures(stretch); // heights run between known ones like measures do
    exchangeZAndM(stretch);
    return stretch;
}

Path reshaped(const Path& part, const Path& path, const Meeting& first, const Meeting& last) {
    CurveEnd from = first.endOn(part);
    CurveEnd to = last.endOn(part);
    Path stretch = replacement(path, first, from.vertex, last, to.vertex);
    if (to.place < from.place) {
        std::swap(from, to);
        stretch.reverse();
    }
    Path result = pathBetween(part, {{0, 0, 0}, part.front()}, from);
    result.append(stretch);
    result.append(pathBetween(part, to, {{0, part.segmentCount(), 0}, part.back()}));
    return result;
}

} // namespace

bool reshape(Polyline& line, const Path& path, double tolerance) {
    requireFinite(line, path, tolerance);
    const auto meetings = meetingsOf(line, path, tolerance);
    const auto index = partToReshape(meetings);
    if (!index) {
        return false;
    }
    Path& part = line.paths[*index];
    Path result = reshaped(part, path, meetings[*index].front(), meetings[*index].back());
    if (result.hasSameXY(part)) {
        return false;
    }
    part = std::move(result);
    return true;
}

} // namespace qz
