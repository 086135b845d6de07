// Cutting the lines of the folder that QZ_REAL_LAYERS names where they meet; nothing is saved. Lines that retrace
// themselves or have segments shorter than the tolerance are left out: stretches that a line goes twice are stored
// once, and what is finer than the tolerance may fold onto itself when a node moves. Layers without a reference are
// samples stacked on one place, so that lines run along each other closer than the tolerance.

#include <cmath>
#include <map>
#include <set>

#include "platform/geometry/Curve.h"
#include "platform/geometry/Grid.h"
#include "platform/geometry/Measures.h"
#include "platform/geometry/Noding.h"
#include "platform/geometry/Vectors.h"
#include "polyline/QZIntersectSelected.h"
#include "tests/support/RealData.h"
#include "tests/support/StreetsFixture.h"

namespace qz::test {
namespace {

constexpr std::size_t nameField = 2;
constexpr std::size_t fromField = 3;
constexpr std::size_t toField = 4;
constexpr std::size_t lengthField = 5;
constexpr std::int32_t firstNumber = 101;
constexpr std::int32_t lastNumber = 999;

bool isFine(const Path& path, double tolerance) {
    for (std::size_t i = 0; i < path.segmentCount(); ++i) {
        if (segmentLength(path, i) <= tolerance) {
            return true;
        }
    }
    return false;
}

bool retracesItself(const Polyline& line) {
    std::vector<const Path*> paths;
    std::ranges::transform(line.paths, std::back_inserter(paths), [](const Path& path) { return &path; });
    const std::vector<std::vector<Node>> nodes = nodesOf(paths);
    return std::ranges::any_of(nodes, [](const std::vector<Node>& ofPath) {
        return std::ranges::any_of(ofPath, [](const Node& node) { return node.kind == NodeKind::overlapBegin; });
    });
}

bool isStreet(const Polyline& line) {
    const double tolerance = line.spatialReference.grid().xyTolerance;
    return !line.isEmpty() && !retracesItself(line) &&
           std::ranges::none_of(line.paths, [&](const Path& path) { return isFine(path, tolerance); });
}

// The lines of a layer as streets with a number for a name, their length and house numbers.
struct RealStreets : Streets {
    explicit RealStreets(FeatureClass& source) : Streets(GeometryKind::polyline, source.spatialReference()) {
        const CursorPtr cursor = source.search({});
        for (FeaturePtr row = cursor->next(); row; row = cursor->next()) {
            if (row->shape()) {
                add(row->shape()->as<Polyline>());
            }
        }
    }

    bool intersect() {
        return IntersectSelected2(host, *layer, *all(), static_cast<std::int32_t>(streets().count()), refresh, true);
    }

    std::vector<Polyline> lines;

private:
    void add(Polyline line) {
        line.zAware = true;
        line.mAware = true;
        snapToSpatialReference(line);
        if (isStreet(line)) {
            table->add(line, {std::to_string(lines.size()), firstNumber, lastNumber, length(line)});
            lines.push_back(std::move(line));
        }
    }
};

// The place of a line's end with the house number there.
using NumberedEnd = std::tuple<double, double, std::int32_t>;

NumberedEnd numbered(const Vertex& end, std::int32_t number) {
    return {end.x, end.y, number};
}

// What the pieces of one line amount to.
struct Pieces {
    int count = 0;
    double length = 0;
    double share = 0;
    std::multiset<NumberedEnd> begins;
    std::multiset<NumberedEnd> ends;
};

std::map<std::string, Pieces> piecesByLine(Streets& data) {
    std::map<std::string, Pieces> lines;
    const CursorPtr cursor = data.all();
    for (FeaturePtr row = cursor->next(); row; row = cursor->next()) {
        const auto& piece = row->shape()->as<Polyline>();
        Pieces& line = lines[toText(row->value(nameField))];
        ++line.count;
        line.length += length(piece);
        line.share += std::get<double>(row->value(lengthField));
        line.begins.insert(numbered(piece.paths.front().front(), std::get<std::int32_t>(row->value(fromField))));
        line.ends.insert(numbered(piece.paths.back().back(), std::get<std::int32_t>(row->value(toField))));
    }
    return lines;
}

// Where a piece ends its neighbour begins, bit for bit and with the same house number.
void expectToFollowEachOther(const Polyline& line, Pieces pieces) {
    pieces.begins.insert(numbered(line.paths.back().back(), lastNumber));
    pieces.ends.insert(numbered(line.paths.front().front(), firstNumber));
    EXPECT_EQ(pieces.begins, pieces.ends);
}

void expectPiecesToAddUp(RealStreets& data) {
    const std::map<std::string, Pieces> lines = piecesByLine(data);
    ASSERT_EQ(lines.size(), data.lines.size());
    for (std::size_t i = 0; i < data.lines.size(); ++i) {
        const Polyline& line = data.lines[i];
        const Pieces& pieces = lines.at(std::to_string(i));
        SCOPED_TRACE("line " + std::to_string(i));
        // Each end of a piece may move by the tolerance to come onto another line, and once more onto the grid.
        const double allowed = 4 * pieces.count * line.spatialReference.grid().xyTolerance;
        EXPECT_NEAR(pieces.length, length(line), allowed);
        EXPECT_NEAR(pieces.share, length(line), allowed);
        if (line.paths.size() == 1) {
            expectToFollowEachOther(line, pieces);
        }
    }
}

// The segments of a layer, found by place.
class Segments {
public:
    explicit Segments(const std::vector<Path>& paths) {
        for (const Path& path : paths) {
            forEachSegment(path, [&](std::size_t, const CurveSegment& segment) {
                segments_.push_back(segment);
                paths_.push_back(&path);
                envelopes_.push_back(segment.envelope());
            });
        }
        tree_ = PackedEnvelopeTree(envelopes_);
    }

    // Calls `see(segment, its path)` for those that come so near to the place.
    template <typename See> void forEachNear(const Envelope& window, double distance, See see) const {
        tree_.query(window.expandedBy(distance, distance), [&](std::size_t i) { see(segments_[i], *paths_[i]); });
    }
    [[nodiscard]] const std::vector<CurveSegment>& all() const { return segments_; }

private:
    std::vector<CurveSegment> segments_;
    std::vector<const Path*> paths_;
    std::vector<Envelope> envelopes_;
    PackedEnvelopeTree tree_;
};

// The ends of `b` are on both sides of `a`, farther off than the clearance.
bool straddle(const CurveSegment& a, const CurveSegment& b, double clearance) {
    const XY along = a.direction(0);
    const double start = cross(along, b.start() - a.start());
    const double end = cross(along, b.end() - a.start());
    return std::min(start, end) < -clearance && std::max(start, end) > clearance;
}

std::vector<Path> storedPaths(Streets& data) {
    std::vector<Path> paths;
    const CursorPtr cursor = data.all();
    for (FeaturePtr row = cursor->next(); row; row = cursor->next()) {
        std::ranges::copy(row->shape()->as<Polyline>().paths, std::back_inserter(paths));
    }
    return paths;
}

double distanceFromEnds(XY place, const Path& path) {
    const XY fromStart = place - path.front().xy();
    const XY fromEnd = place - path.back().xy();
    return std::sqrt(std::min(dot(fromStart, fromStart), dot(fromEnd, fromEnd)));
}

// No two straight segments cross, and where a piece ends all the pieces that come there end as well.
void expectMeetingsAtEndsOnly(Streets& data) {
    const double tolerance = data.reference.grid().xyTolerance;
    const std::vector<Path> paths = storedPaths(data);
    const Segments segments(paths);
    int crossings = 0;
    for (const CurveSegment& a : segments.all()) {
        segments.forEachNear(a.envelope(), 0, [&](const CurveSegment& b, const Path&) {
            const bool crosses = !a.circle() && !b.circle() && straddle(a, b, tolerance) && straddle(b, a, tolerance);
            crossings += crosses ? 1 : 0;
        });
    }
    EXPECT_EQ(crossings, 0);
    for (const Path& path : paths) {
        for (const XY end : {path.front().xy(), path.back().xy()}) {
            segments.forEachNear(
                {end.x, end.y, end.x, end.y}, tolerance, [&](const CurveSegment& segment, const Path& other) {
                    const double squaredDistance = segment.squaredDistance(end, segment.nearestRatio(end));
                    EXPECT_FALSE(squaredDistance < tolerance * tolerance / 4 &&
                                 distanceFromEnds(end, other) > 4 * tolerance)
                        << end.x << " " << end.y;
                });
        }
    }
}

// Gives how many pieces came of it.
std::int64_t cutTwice(FeatureClass& source) {
    RealStreets data(source);
    data.host.editor().startEditing(*data.workspace);
    data.intersect();
    expectPiecesToAddUp(data);
    expectMeetingsAtEndsOnly(data);
    const Rows once = data.sortedShapes();
    data.intersect();
    EXPECT_EQ(data.sortedShapes(), once) << "cutting again changed something";
    EXPECT_EQ(data.messages, Rows());
    data.host.editor().stopEditing(false);
    return static_cast<std::int64_t>(once.size() - data.lines.size());
}

TEST(RealStreets, AreNodedOnceAndForAll) {
    if (realDataSets().empty()) {
        GTEST_SKIP() << "QZ_REAL_LAYERS names no folder with layers.";
    }
    std::int64_t cuts = 0;
    forEachRealLayer(GeometryKind::polyline, [&cuts](FeatureClass& featureClass) {
        if (!featureClass.spatialReference().isUnknown()) {
            cuts += cutTwice(featureClass);
        }
    });
    EXPECT_GT(cuts, 0) << "no line of the folder was cut";
}

} // namespace
} // namespace qz::test
