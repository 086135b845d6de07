#include "polyline/QZRedundantNodes.h"

#include <cmath>
#include <optional>
#include <vector>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "common/CursorWalk.h"
#include "common/ErrorExit.h"
#include "common/InReference.h"
#include "common/NodeKey.h"
#include "platform/Error.h"
#include "platform/app/Services.h"
#include "platform/geometry/EnclosingCircle.h"
#include "platform/geometry/Measures.h"

namespace qz {

namespace {

enum class Step { collect = 1, node = 2, move = 3 };

// A line with the ends that lie in the envelope.
struct TaggedLine {
    FeaturePtr feature;
    bool from = false;
    bool to = false;
};

// The search area in the units of the map.
class EndSearch {
public:
    EndSearch(const Envelope& envelope, const SpatialReference& map) : envelope_(envelope), map_(map) {}

    [[nodiscard]] bool contains(const Vertex& end, const SpatialReference& reference) const {
        Point point;
        point.spatialReference = reference;
        point.vertex = end;
        return envelope_.contains(inReference(std::move(point), map_).vertex.xy());
    }

private:
    Envelope envelope_;
    const SpatialReference& map_;
};

class EndGathering {
public:
    EndGathering(std::int16_t decimals, const EndSearch& search) : keys_(decimals), search_(search) {}

    void add(const FeaturePtr& feature) {
        const auto& line = feature->shape()->as<Polyline>();
        const Vertex from = line.paths.front().front(), to = line.paths.back().back();
        const TaggedLine tagged{feature, search_.contains(from, line.spatialReference),
                                search_.contains(to, line.spatialReference)};
        if (tagged.from) {
            addNode(from);
        }
        if (tagged.to) {
            addNode(to);
        }
        if (tagged.from || tagged.to) {
            lines_.push_back(tagged);
        }
    }

    [[nodiscard]] const std::vector<TaggedLine>& lines() const noexcept { return lines_; }

    // Nothing to do for one node. Without a measure, and without a height that not all have.
    [[nodiscard]] std::optional<Vertex> commonNode() const {
        if (nodes_.size() < 2) {
            return std::nullopt;
        }
        if (nodes_.size() == 2) {
            return Vertex{(nodes_[0].x + nodes_[1].x) / 2, (nodes_[0].y + nodes_[1].y) / 2,
                          (nodes_[0].z + nodes_[1].z) / 2};
        }
        std::vector<XY> places;
        for (const Vertex& node : nodes_) {
            places.push_back(node.xy());
        }
        const XY centre = smallestEnclosingCircle(std::move(places))->centre;
        return Vertex{centre.x, centre.y};
    }

private:
    void addNode(const Vertex& end) {
        if (keys_.add(end.xy()) == nodes_.size()) {
            nodes_.push_back(end);
        }
    }

    NodeNumbers keys_;
    const EndSearch& search_;
    std::vector<Vertex> nodes_; // the first of each key
    std::vector<TaggedLine> lines_;
};

void moveEnd(Path& path, std::size_t index, const Vertex& node, bool zAware) {
    Vertex end = path.vertex(index);
    end.x = node.x;
    end.y = node.y;
    end.z = zAware && !std::isnan(node.z) ? node.z : end.z;
    path.setVertex(index, end);
}

Polyline moved(const TaggedLine& tagged, const Vertex& node) {
    Polyline line = tagged.feature->shape()->as<Polyline>();
    if (tagged.from) {
        moveEnd(line.paths.front(), 0, node, line.zAware);
    }
    if (tagged.to) {
        moveEnd(line.paths.back(), line.paths.back().vertexCount() - 1, node, line.zAware);
    }
    return line;
}

void moveAll(const std::vector<TaggedLine>& lines, const Vertex& node) {
    std::vector<ObjectId> tooShort;
    for (const TaggedLine& tagged : lines) {
        Polyline line = moved(tagged, node);
        if (length(line) > 0) {
            tagged.feature->setShape(std::move(line));
            tagged.feature->store();
        } else {
            tooShort.push_back(tagged.feature->objectId());
        }
    }
    if (!tooShort.empty()) {
        showMessage(fmt::format("Left as they are, having no length otherwise: {}", fmt::join(tooShort, ", ")));
    }
}

} // namespace

bool QZ_RemoveRedundantNodes(Application& application, FeatureClass& featureClass, FeatureCursor& cursor,
                             const Envelope* envelope, std::int32_t expected, RefreshArea& refresh) {
    return withSteppedExit(" RemoveRedundantNodes w=", Step::collect, false, [&](Step& step) {
        if (!envelope) {
            throw PlatformError("The envelope of the nodes to be united is missing.");
        }
        const EndSearch search(*envelope, application.focusMap().spatialReference());
        EndGathering ends(nodeDecimals(featureClass), search);
        walkFeatures(application, cursor, expected, "Collecting polylines: ", [&](const FeaturePtr& feature) {
            if (hasShape(*feature)) {
                refresh.add(*feature->shape());
                ends.add(feature);
            } else {
                feature->remove();
            }
        });
        step = Step::node;
        if (const std::optional<Vertex> node = ends.commonNode()) {
            step = Step::move;
            moveAll(ends.lines(), *node);
        }
        return true;
    });
}

} // namespace qz
