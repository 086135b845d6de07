#include "platform/geometry/MeasureInterpolation.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <optional>
#include <ranges>
#include <span>
#include <utility>
#include <vector>

#include "platform/geometry/Curve.h"

namespace qz {

namespace {

constexpr const char* operation = "measure along a line";

// A vertex or the control point of an arc.
struct Station {
    double distance;
    double m;
};

// All stations of a path in their order along it.
std::vector<Station> stationsOf(const Path& path, double before) {
    std::vector<Station> stations;
    stations.reserve(path.vertexCount() + path.arcs().size());
    double sum = 0;
    forEachSegment(path, [&](std::size_t i, const CurveSegment& segment) {
        stations.push_back({before + sum, path.vertex(i).m});
        if (segment.circle()) {
            const Vertex& middle = segment.arc().middle;
            stations.push_back({before + sum + segment.length() * segment.circle()->ratioOf(middle.xy()), middle.m});
        }
        sum += segment.length();
    });
    if (!path.isEmpty()) {
        stations.push_back({before + sum, path.back().m});
    }
    return stations;
}

std::vector<Station> checkedStationsOf(const Path& path) {
    static_cast<void>(Curve(path).lengthFor(operation));
    return stationsOf(path, 0);
}

Path withMeasures(const Path& path, const std::vector<Station>& stations) {
    Path result;
    result.reserve(path.vertexCount());
    auto station = stations.begin();
    const auto measured = [&station](Vertex vertex) {
        vertex.m = (station++)->m;
        return vertex;
    };
    if (!path.isEmpty()) {
        result.addVertex(measured(path.front()));
    }
    forEachSegment(path, [&](std::size_t i, const CurveSegment& segment) {
        if (segment.circle()) {
            const Vertex middle = measured(segment.arc().middle);
            result.addArc(middle, measured(path.vertex(i + 1)), segment.arc().sense);
        } else {
            result.addVertex(measured(path.vertex(i + 1)));
        }
    });
    return result;
}

double linear(const Station& a, const Station& b, double distance) {
    if (distance == a.distance || a.distance == b.distance) {
        return a.m;
    }
    return distance == b.distance ? b.m : a.m + (b.m - a.m) * ((distance - a.distance) / (b.distance - a.distance));
}

bool isDefined(const Station& station) {
    return !std::isnan(station.m);
}

using StationIterator = std::vector<Station>::iterator;

void fillBetween(StationIterator known, StationIterator next) {
    for (auto station = std::next(known); station < next; ++station) {
        station->m = linear(*known, *next, station->distance);
    }
}

// Two defined stations some distance apart: the first one met and the nearest to it.
template <typename Stations> std::optional<std::pair<Station, Station>> nearestKnown(const Stations& stations) {
    const auto first = std::ranges::find_if(stations, isDefined);
    if (first == stations.end()) {
        return std::nullopt;
    }
    const auto second = std::find_if(first, stations.end(), [&](const Station& station) {
        return isDefined(station) && station.distance != first->distance;
    });
    return second == stations.end() ? std::nullopt : std::optional(std::pair(*first, *second));
}

// Fills the undefined stations at the front of the range.
template <typename Stations> void extendFront(Stations&& stations) {
    const auto known = nearestKnown(stations);
    if (!known) {
        return;
    }
    for (Station& station : stations) {
        if (isDefined(station)) {
            return;
        }
        station.m = linear(known->first, known->second, station.distance);
    }
}

void setLinearMeasures(std::span<Path> parts, double start, double end) {
    const double length = Curve(std::span<const Path>(parts)).lengthFor(operation);
    if (std::isnan(start) || std::isnan(end)) {
        return;
    }
    double before = 0;
    for (Path& path : parts) {
        std::vector<Station> stations = stationsOf(path, before);
        for (Station& station : stations) {
            station.m = linear({0, start}, {length, end}, station.distance);
        }
        path = withMeasures(path, stations);
        before = stations.empty() ? before : stations.back().distance;
    }
}

} // namespace

void interpolateMeasures(Path& path) {
    std::vector<Station> stations = checkedStationsOf(path);
    auto known = std::ranges::find_if(stations, isDefined);
    while (known != stations.end()) {
        const auto next = std::find_if(std::next(known), stations.end(), isDefined);
        if (next != stations.end()) {
            fillBetween(known, next);
        }
        known = next;
    }
    path = withMeasures(path, stations);
}

void interpolateMeasures(Polyline& line) {
    for (Path& path : line.paths) {
        interpolateMeasures(path);
    }
}

void extrapolateMeasures(Path& path) {
    std::vector<Station> stations = checkedStationsOf(path);
    extendFront(stations);
    extendFront(std::ranges::reverse_view(stations));
    path = withMeasures(path, stations);
}

void extrapolateMeasures(Polyline& line) {
    for (Path& path : line.paths) {
        extrapolateMeasures(path);
    }
}

void setLinearMeasures(Path& path, double start, double end) {
    setLinearMeasures(std::span<Path>(&path, 1), start, end);
}

void setLinearMeasures(Polyline& line, double start, double end) {
    setLinearMeasures(std::span<Path>(line.paths), start, end);
}

} // namespace qz
