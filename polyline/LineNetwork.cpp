#include "polyline/LineNetwork.h"

#include <algorithm>
#include <cmath>
#include <span>
#include <tuple>

#include "platform/geometry/Curve.h"
#include "platform/geometry/Measures.h"
#include "platform/geometry/NodePlaces.h"
#include "platform/geometry/Noding.h"

namespace qz {

namespace {

// The paths of many lines as one list, with distances along each line.
class LinePaths {
public:
    void add(const Polyline& line) {
        const std::size_t number = lengths_.size();
        double along = 0;
        for (const Path& path : line.paths) {
            lineOf_.push_back(number);
            firstVertex_.push_back(distances_.size());
            paths_.push_back(&path);
            distances_.push_back(along);
            forEachSegment(path, [&](std::size_t, const CurveSegment& segment) {
                along += segment.length();
                distances_.push_back(along);
            });
        }
        lengths_.push_back(along);
    }

    [[nodiscard]] std::span<const Path* const> all() const noexcept { return paths_; }
    [[nodiscard]] std::size_t lineOf(std::size_t path) const noexcept { return lineOf_[path]; }
    // As a ratio of the length of the line.
    [[nodiscard]] double position(std::size_t path, std::size_t segment, double ratio) const {
        const double* const start = &distances_[firstVertex_[path] + segment];
        const double along = ratio > 0 ? start[0] + ratio * (start[1] - start[0]) : start[0];
        const double length = lengths_[lineOf_[path]];
        return length > 0 ? along / length : 0;
    }
    [[nodiscard]] double z(std::size_t path, std::size_t segment, double ratio) const {
        const Path& its = *paths_[path];
        return ratio > 0 ? CurveSegment(its, segment).vertexAt(ratio).z : its.vertex(segment).z;
    }

private:
    std::vector<const Path*> paths_;
    std::vector<std::size_t> lineOf_;
    std::vector<std::size_t> firstVertex_; // index into the distances
    std::vector<double> distances_;        // along the line, one a vertex
    std::vector<double> lengths_;
};

// A place that two lines have in common.
struct Meeting {
    std::size_t other = 0; // number of the other line
    XY position;
    double own = 0; // position on the first line
    double others = 0;
    double z = undefined;
    NodeKind kind = NodeKind::crossing;
};

bool isOverlap(const Meeting& meeting) {
    return meeting.kind == NodeKind::overlapBegin || meeting.kind == NodeKind::overlapEnd;
}

bool isBefore(const Meeting& a, const Meeting& b) {
    return std::tie(a.own, a.position.x, a.position.y, a.others) <
           std::tie(b.own, b.position.x, b.position.y, b.others);
}

bool isSamePlace(const Meeting& a, const Meeting& b) {
    return a.position == b.position && a.own == b.own && a.others == b.others;
}

// Of the meetings of one pair, in order, those to cut at, each once. Inside a shared stretch one shared segment ends
// where the next begins: no cut there.
std::vector<Meeting> cutsOf(std::span<const Meeting> pair) {
    std::vector<Meeting> cuts;
    for (auto first = pair.begin(); first != pair.end();) {
        const auto last = std::find_if(first, pair.end(), [&](const Meeting& m) { return !isSamePlace(*first, m); });
        if (std::count_if(first, last, isOverlap) < 2) {
            cuts.push_back(*first);
        }
        first = last;
    }
    return cuts;
}

// Meetings with other lines by their number, each pair in its order along the first line.
void sortByPair(std::vector<Meeting>& meetings) {
    std::ranges::stable_sort(meetings, [](const Meeting& a, const Meeting& b) {
        return a.other != b.other ? a.other < b.other : isBefore(a, b);
    });
}

// Calls `see(pair)` for the runs of meetings with one other line.
template <typename See> void forEachPair(std::span<const Meeting> sorted, See see) {
    for (auto first = sorted.begin(); first != sorted.end();) {
        const auto last = std::find_if(first, sorted.end(), [&](const Meeting& m) { return m.other != first->other; });
        see(std::span<const Meeting>(first, last));
        first = last;
    }
}

Meeting meetingAt(const LinePaths& paths, std::size_t path, const Node& node) {
    return {paths.lineOf(node.otherPath),
            node.position,
            paths.position(path, node.segment, node.ratio),
            paths.position(node.otherPath, node.otherSegment, node.otherRatio),
            paths.z(path, node.segment, node.ratio),
            node.kind};
}

// Whether the node is where parts of one line meet end to end, or at a vertex.
bool joinsParts(const LinePaths& paths, std::size_t path, const Node& node) {
    return node.kind == NodeKind::sharedEnd && node.otherPath != path &&
           paths.lineOf(node.otherPath) == paths.lineOf(path);
}

// Those of a path with its own line and with the lines after it.
void addMeetingsWithLater(const LinePaths& paths, std::size_t path, const std::vector<Node>& nodes,
                          std::vector<Meeting>& meetings) {
    for (const Node& node : nodes) {
        if (paths.lineOf(node.otherPath) >= paths.lineOf(path) && !joinsParts(paths, path, node)) {
            meetings.push_back(meetingAt(paths, path, node));
        }
    }
}

ContactTolerance contactTolerance(const Polyline& line) {
    const CoordinateGrid& grid = line.spatialReference.grid();
    return {grid.xyTolerance, grid.xyResolution};
}

// A place where two lines are cut.
struct Cut {
    std::size_t line;
    Meeting at;
};

// Gives cuts that lie within the tolerance of each other the position and height of one: a vertex where one of them is
// at a vertex, and the first height that is not 0.
void unitePlaces(std::vector<Cut>& cuts, double tolerance) {
    NodePlaces places(tolerance);
    std::vector<std::size_t> placeOf(cuts.size());
    for (const bool atVertex : {true, false}) {
        for (std::size_t i = 0; i < cuts.size(); ++i) {
            if ((cuts[i].at.kind != NodeKind::crossing) == atVertex) {
                placeOf[i] = places.add(cuts[i].at.position);
            }
        }
    }
    std::vector<double> heights(places.size(), 0);
    for (std::size_t i = 0; i < cuts.size(); ++i) {
        double& height = heights[placeOf[i]];
        height = height == 0 && !std::isnan(cuts[i].at.z) ? cuts[i].at.z : height;
    }
    for (std::size_t i = 0; i < cuts.size(); ++i) {
        cuts[i].at.position = places[placeOf[i]];
        cuts[i].at.z = heights[placeOf[i]];
    }
}

SplitPoint recordOf(const Meeting& meeting, double position, ObjectId id) {
    return {.x = meeting.position.x, .y = meeting.position.y, .z = meeting.z, .pos = position, .fid = id};
}

} // namespace

void LineNetwork::add(ObjectId id, const Polyline& line) {
    if (known_.insert(id).second) {
        lines_.push_back({id, line});
    }
}

std::vector<SplitPoint> LineNetwork::crossings(const std::function<void(std::size_t)>& progress) const {
    if (lines_.empty()) {
        return {};
    }
    LinePaths paths;
    for (const Line& line : lines_) {
        paths.add(line.shape);
    }
    const ContactTolerance tolerance = contactTolerance(lines_.front().shape);
    const std::vector<std::vector<Node>> nodes = nodesOf(paths.all(), tolerance);
    std::vector<Cut> cuts;
    for (std::size_t line = 0, path = 0; line < lines_.size(); ++line) {
        std::vector<Meeting> meetings;
        for (; path < nodes.size() && paths.lineOf(path) == line; ++path) {
            addMeetingsWithLater(paths, path, nodes[path], meetings);
        }
        sortByPair(meetings);
        forEachPair(meetings, [&](std::span<const Meeting> pair) {
            for (const Meeting& meeting : cutsOf(pair)) {
                cuts.push_back({line, meeting});
            }
        });
        progress(line);
    }
    unitePlaces(cuts, tolerance.endDistance);
    std::vector<SplitPoint> records;
    records.reserve(2 * cuts.size());
    for (const Cut& cut : cuts) {
        records.push_back(recordOf(cut.at, cut.at.own, lines_[cut.line].id));
        records.push_back(recordOf(cut.at, cut.at.others, lines_[cut.at.other].id));
    }
    return records;
}

std::vector<SplitPoint> LineNetwork::crossingsWith(const Polyline& cutter,
                                                   const std::function<void(std::size_t)>& progress) const {
    std::vector<SplitPoint> records;
    for (std::size_t line = 0; line < lines_.size(); ++line) {
        LinePaths pair;
        pair.add(lines_[line].shape);
        const std::size_t own = pair.all().size();
        pair.add(cutter);
        const std::vector<std::vector<Node>> nodes = nodesOf(pair.all(), contactTolerance(lines_[line].shape));
        std::vector<Meeting> meetings;
        for (std::size_t path = 0; path < own; ++path) {
            for (const Node& node : nodes[path]) {
                if (node.otherPath >= own) {
                    meetings.push_back(meetingAt(pair, path, node));
                }
            }
        }
        sortByPair(meetings);
        for (const Meeting& meeting : cutsOf(meetings)) {
            records.push_back(
                {.x = meeting.position.x, .y = meeting.position.y, .pos = meeting.own, .fid = lines_[line].id});
        }
        progress(line);
    }
    return records;
}

} // namespace qz
