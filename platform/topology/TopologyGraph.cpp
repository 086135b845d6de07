#include "platform/topology/TopologyGraph.h"

#include <algorithm>
#include <array>
#include <limits>

#include <fmt/format.h>

#include "platform/Error.h"
#include "platform/geometry/Noding.h"
#include "platform/geometry/XYHash.h"
#include "platform/topology/NumberSort.h"

namespace qz {

namespace {

constexpr std::uint32_t none = std::numeric_limits<std::uint32_t>::max();

void requireOneReference(std::span<FeatureClass* const> classes) {
    for (const FeatureClass* featureClass : classes) {
        if (!(featureClass->spatialReference() == classes.front()->spatialReference())) {
            throw PlatformError(fmt::format("{} and {} have different spatial references; a topology needs one.",
                                            classes.front()->schema().name, featureClass->schema().name));
        }
    }
}

FeatureFilter touching(const Envelope& extent, const SpatialReference& reference) {
    FeatureFilter filter;
    filter.shape = rectangle(extent, reference);
    filter.relation = SpatialRelation::envelopeIntersects;
    return filter;
}

// x and y of its ends, and of the middle of an arc.
using SegmentKey = std::array<double, 6>;

void appendSegments(const Path& path, std::vector<SegmentKey>& segments) {
    for (std::size_t i = 0; i < path.segmentCount(); ++i) {
        const ArcSegment* arc = path.arcAt(i);
        const XY from = path.xy()[i], to = path.xy()[i + 1], middle = arc ? arc->middle.xy() : from;
        segments.push_back({from.x, from.y, to.x, to.y, middle.x, middle.y});
    }
}

// A segment as the numbers of its ends, the smaller first: the same for all who run along it.
struct PieceEnds {
    std::uint32_t low = 0;
    std::uint32_t high = 0;

    friend bool operator==(const PieceEnds&, const PieceEnds&) = default;
};

struct PieceHash {
    [[nodiscard]] std::size_t operator()(const PieceEnds& ends) const noexcept {
        const std::uint64_t both = (std::uint64_t{ends.low} << 32) | ends.high;
        const std::uint64_t mixed = (both ^ (both >> 29)) * 0x9e3779b97f4a7c15U;
        return mixed ^ (mixed >> 32);
    }
};

// That a feature runs along a piece, and on which hand it has its inside.
struct PieceUse {
    std::uint32_t piece = 0;
    std::uint32_t feature = 0;
    std::int32_t direction = 0; // from the low to the high end, less the times against

    [[nodiscard]] auto key() const { return std::pair(piece, feature); }
};

} // namespace

// Finds the nodes of the network and goes along every feature from node to node.
class EdgeTracer {
public:
    explicit EdgeTracer(TopologyGraph& graph) : graph_(graph) {}

    void run() {
        for (std::uint32_t feature = 0; feature < graph_.featureCount(); ++feature) {
            addPaths(feature);
        }
        graph_.firstPath_.push_back(graph_.paths_.size());
        firstVertex_.push_back(vertices_.size());
        gatherUses();
        findNodes();
        edgeOf_.assign(pieces_.size(), none);
        runsUp_.assign(pieces_.size(), false);
        for (std::uint32_t path = 0; path < graph_.paths_.size(); ++path) {
            trace(path);
        }
    }

private:
    using Numbers = std::span<const std::uint32_t>;

    void addPaths(std::uint32_t feature) {
        graph_.firstPath_.push_back(graph_.paths_.size());
        const std::vector<Path>& paths = graph_.shapes_.paths(feature);
        for (std::uint32_t i = 0; i < paths.size(); ++i) {
            graph_.paths_.push_back({feature, i, {}});
            addPieces(feature, paths[i]);
        }
    }

    void addPieces(std::uint32_t feature, const Path& path) {
        firstVertex_.push_back(vertices_.size());
        for (const XY place : path.xy()) {
            const auto number = static_cast<std::uint32_t>(places_.add(place));
            if (vertices_.size() > firstVertex_.back()) {
                addPiece(feature, vertices_.back(), number);
            }
            vertices_.push_back(number);
        }
        segmentPieces_.push_back(none);
    }

    void addPiece(std::uint32_t feature, std::uint32_t from, std::uint32_t to) {
        const auto piece = static_cast<std::uint32_t>(pieces_.add({std::min(from, to), std::max(from, to)}));
        segmentPieces_.push_back(piece);
        pieceUses_.push_back({piece, feature, from < to ? 1 : -1});
    }

    // The numbers of a path's vertices.
    [[nodiscard]] Numbers verticesOf(std::uint32_t path) const {
        return Numbers(vertices_).subspan(firstVertex_[path], firstVertex_[path + 1] - firstVertex_[path]);
    }

    [[nodiscard]] std::uint32_t pieceAt(std::uint32_t path, std::uint32_t segment) const {
        return segmentPieces_[firstVertex_[path] + segment];
    }

    // Each feature once a piece.
    void gatherUses() {
        const auto pieceOf = [](const PieceUse& use) { return use.piece; };
        // They come by ascending feature, and stay so.
        pieceUses_ = sortedByNumber(std::span<const PieceUse>(pieceUses_), pieces_.size(), pieceOf);
        std::vector<PieceUse> gathered;
        gathered.reserve(pieceUses_.size());
        for (const PieceUse& use : pieceUses_) {
            if (!gathered.empty() && gathered.back().key() == use.key()) {
                gathered.back().direction += use.direction;
            } else {
                gathered.push_back(use);
            }
        }
        pieceUses_ = std::move(gathered);
        firstUse_ = firstOfEach(std::span<const PieceUse>(pieceUses_), pieces_.size(), pieceOf);
    }

    [[nodiscard]] std::span<const PieceUse> usesOf(std::uint32_t piece) const {
        return std::span(pieceUses_).subspan(firstUse_[piece], firstUse_[piece + 1] - firstUse_[piece]);
    }

    [[nodiscard]] bool haveSameFeatures(std::uint32_t one, std::uint32_t other) const {
        return std::ranges::equal(usesOf(one), usesOf(other), {}, &PieceUse::feature, &PieceUse::feature);
    }

    // Where a line ends, and where not just two pieces of the same features meet.
    void findNodes() {
        struct Meeting {
            std::uint32_t count = 0;
            std::uint32_t first = none;
        };
        std::vector<Meeting> meetings(places_.size());
        isNode_.assign(places_.size(), false);
        for (std::uint32_t piece = 0; piece < pieces_.size(); ++piece) {
            for (const std::uint32_t place : {pieces_[piece].low, pieces_[piece].high}) {
                Meeting& meeting = meetings[place];
                if (++meeting.count == 1) {
                    meeting.first = piece;
                } else {
                    isNode_[place] = isNode_[place] || meeting.count > 2 || !haveSameFeatures(meeting.first, piece);
                }
            }
        }
        for (std::uint32_t path = 0; path < graph_.paths_.size(); ++path) {
            if (graph_.originalShape(graph_.paths_[path].feature).getIf<Polyline>()) {
                isNode_[verticesOf(path).front()] = isNode_[verticesOf(path).back()] = true;
            }
        }
    }

    // From node to node; a ring from its first vertex when it has none.
    void trace(std::uint32_t path) {
        const Numbers numbers = verticesOf(path);
        const auto segments = static_cast<std::uint32_t>(numbers.size() - 1);
        const auto node = std::ranges::find_if(numbers, [this](std::uint32_t place) { return isNode_[place]; });
        const auto start = static_cast<std::uint32_t>(node - numbers.begin()) % (segments + 1);
        for (std::uint32_t done = 0; done < segments;) {
            std::uint32_t count = 1;
            while (done + count < segments && !isNode_[numbers[(start + done + count) % segments]]) {
                ++count;
            }
            addUse(path, {.first = (start + done) % segments, .count = count});
            done += count;
        }
    }

    void addUse(std::uint32_t path, TopologyGraph::EdgeUse use) {
        const std::uint32_t piece = pieceAt(path, use.first);
        const bool up = verticesOf(path)[use.first] == pieces_[piece].low;
        if (edgeOf_[piece] == none) {
            claimPieces(path, use);
            addEdge(path, piece, up);
        }
        use.edge = edgeOf_[piece];
        use.isReversed = runsUp_[piece] != up;
        graph_.paths_[path].uses.push_back(use);
    }

    // Gives the pieces on the way to the edge to be added.
    void claimPieces(std::uint32_t path, const TopologyGraph::EdgeUse& use) {
        const Numbers numbers = verticesOf(path);
        const auto segments = static_cast<std::uint32_t>(numbers.size() - 1);
        for (std::uint32_t i = 0; i < use.count; ++i) {
            const std::uint32_t segment = (use.first + i) % segments, piece = pieceAt(path, segment);
            edgeOf_[piece] = static_cast<std::uint32_t>(graph_.edges_.size());
            runsUp_[piece] = numbers[segment] == pieces_[piece].low;
        }
    }

    void addEdge(std::uint32_t path, std::uint32_t piece, bool up) {
        TopologyGraph::Edge& edge = graph_.edges_.emplace_back();
        edge.path = path;
        edge.use = static_cast<std::uint32_t>(graph_.paths_[path].uses.size());
        for (const PieceUse& use : usesOf(piece)) {
            edge.parents.push_back(use.feature);
            if (graph_.originalShape(use.feature).getIf<Polygon>() && use.direction != 0) {
                // The inside of a polygon is to the right of its rings.
                ((use.direction > 0) == up ? edge.right : edge.left).push_back(use.feature);
            }
        }
    }

    TopologyGraph& graph_;
    PlaceNumbers places_;
    Numbering<PieceEnds, PieceHash> pieces_;
    std::vector<std::uint32_t> vertices_;      // of all paths, as numbers of places
    std::vector<std::uint32_t> segmentPieces_; // from each vertex to the next of its path; none from the last
    std::vector<std::size_t> firstVertex_;     // of each path, and the number of vertices at last
    std::vector<PieceUse> pieceUses_;
    std::vector<std::size_t> firstUse_;
    std::vector<bool> isNode_;
    std::vector<std::uint32_t> edgeOf_; // by piece
    std::vector<bool> runsUp_;          // whether its edge goes from the low to the high end
};

TopologyGraph::Network TopologyGraph::read(std::span<FeatureClass* const> classes, const Envelope* extent) {
    requireOneReference(classes);
    Network network;
    for (std::size_t i = 0; i < classes.size(); ++i) {
        const FeatureFilter filter = extent ? touching(*extent, classes[i]->spatialReference()) : FeatureFilter{};
        const CursorPtr cursor = classes[i]->search(filter);
        for (FeaturePtr row = cursor->next(); row; row = cursor->next()) {
            const auto& shape = row->shape();
            if (shape && !shape->isEmpty()) {
                network.features.push_back({i, row->objectId()});
                network.shapes.push_back(*shape);
            }
        }
    }
    return network;
}

TopologyGraph::TopologyGraph(std::span<FeatureClass* const> classes, const Envelope* extent, double tolerance)
    : TopologyGraph(read(classes, extent), tolerance) {}

TopologyGraph::TopologyGraph(std::vector<Geometry> shapes, double tolerance)
    : TopologyGraph(
          [&] {
              Network network{.features = std::vector<Parent>(shapes.size()), .shapes = std::move(shapes)};
              for (std::size_t i = 0; i < network.features.size(); ++i) {
                  network.features[i].id = static_cast<ObjectId>(i);
              }
              return network;
          }(),
          tolerance) {}

TopologyGraph::TopologyGraph(Network network, double tolerance)
    : features_(std::move(network.features)), shapes_(std::move(network.shapes), tolerance) {
    EdgeTracer(*this).run();
    for (std::size_t feature = 0; feature < features_.size(); ++feature) {
        isUnchanged_.push_back(isAsGiven(feature));
    }
}

// The strokes of an arc that two features share are those of one of them, and the arc of both has come back all the
// same: so segments are compared.
bool TopologyGraph::isAsGiven(std::size_t feature) const {
    const std::vector<const Path*> originals = qz::pathsOf(originalShape(feature));
    if (std::ranges::none_of(originals, [](const Path* path) { return path->hasArcs(); })) {
        return shapes_.isUnchanged(feature);
    }
    std::vector<SegmentKey> before, after;
    for (const Path* path : originals) {
        appendSegments(*path, before);
    }
    for (const PathEdges& path : pathsOf(feature)) {
        for (const EdgeUse& use : path.uses) {
            appendSegments(along(path, use), after);
        }
    }
    std::ranges::sort(before);
    std::ranges::sort(after);
    return before == after;
}

Path TopologyGraph::along(const PathEdges& path, const EdgeUse& use) const {
    const Path& whole = shapes_.paths(path.feature)[path.path];
    Path way;
    way.reserve(use.count + 1);
    way.addVertex(whole.vertex(use.first));
    for (std::size_t i = 1; i <= use.count; ++i) {
        const std::size_t vertex = use.first + i;
        way.addVertex(whole.vertex(vertex > whole.segmentCount() ? vertex - whole.segmentCount() : vertex));
    }
    return shapes_.restored(way);
}

Polyline TopologyGraph::geometryOf(std::size_t edge) const {
    const PathEdges& path = paths_[edges_[edge].path];
    Polyline line;
    static_cast<GeometryTraits&>(line) = shapes_.original(path.feature).traits();
    line.paths.push_back(along(path, path.uses[edges_[edge].use]));
    return line;
}

} // namespace qz
