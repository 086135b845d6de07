#include "polygon/QZSplitPolygon.h"

#include <algorithm>
#include <optional>

#include "attributes/QZAttributeRules.h"
#include "common/CursorWalk.h"
#include "common/ErrorExit.h"
#include "common/FeatureCopies.h"
#include "common/InReference.h"
#include "common/QZFuzzyTolerance.h"
#include "common/QZSpatialSearch.h"
#include "platform/Error.h"
#include "platform/geometry/EnvelopeIndex.h"
#include "polygon/QZPolygonCut.h"
#include "polygon/SharedVertices.h"

namespace qz {

namespace {

const Polyline& required(const Polyline& line) {
    if (line.isEmpty()) {
        throw PlatformError("The cutting line is empty");
    }
    return line;
}

// Cuts polygons of one layer by one line, and remembers what the neighbours have to know of it.
class PolygonSplitter {
public:
    PolygonSplitter(FeatureLayer& layer, const Polyline& line, RefreshArea& refresh)
        : class_(layer.featureClass()), line_(inReference(required(line), class_.spatialReference())),
          refresh_(refresh), rules_(QZ_GetAttRules(layer.name())), tolerance_(fuzzyToleranceOf(class_)),
          copies_(class_, rules_ ? &*rules_ : nullptr), cutVertices_(line_, tolerance_) {}

    // Calls `meet(Feature&)` for every feature with a shape that the line meets.
    template <typename Meet> void forEachMet(Meet meet) {
        const CursorPtr cursor =
            QZ_FindFeaturesSpatialy(line_, class_, class_.spatialReference(), "Intersects", "Update");
        if (!cursor) {
            return; // the failure was reported
        }
        forEachShaped(*cursor, [&meet](const FeaturePtr& feature) { meet(*feature); });
    }

    // Replaces the feature by its pieces; it is a neighbour when the line doesn't cut it.
    void split(Feature& feature) {
        refresh_.add(*feature.shape());
        Polygon polygon = feature.shape()->as<Polygon>();
        const std::optional<CutPieces> pieces = QZ_CutPolygon(line_, polygon);
        if (!pieces) {
            remember(feature);
        } else if (store(*pieces, feature)) {
            feature.remove();
        }
    }

    void remember(const Feature& neighbour) { neighbours_.push_back(neighbour.objectId()); }

    // Gives the neighbours the vertices that the cuts made on their boundaries.
    void shareCutVertices() {
        std::vector<Envelope> places;
        std::ranges::transform(cutVertices_.all(), std::back_inserter(places), [](XY p) {
            return Envelope{p.x, p.y, p.x, p.y};
        });
        const PackedEnvelopeTree tree(places);
        for (const ObjectId id : neighbours_) {
            if (const FeaturePtr neighbour = class_.feature(id)) {
                share(tree, *neighbour);
            }
        }
    }

private:
    // False when one of the two could not be stored, which was reported.
    bool store(const CutPieces& pieces, const Feature& source) {
        if (!copies_.insertParts(pieces.left, source)) {
            return false;
        }
        cutVertices_.QZ_GetInsertedVerteces(pieces.left);
        if (!copies_.insertParts(pieces.right, source)) {
            return false;
        }
        // A line that crosses itself may leave vertices on one side only.
        cutVertices_.QZ_GetInsertedVerteces(pieces.right);
        return true;
    }

    // In the order in which they were made.
    [[nodiscard]] std::vector<XY> cutVerticesNear(const PackedEnvelopeTree& tree, const Envelope& window) const {
        std::vector<std::size_t> found;
        tree.query(window, [&](std::size_t i) { found.push_back(i); });
        std::ranges::sort(found);
        std::vector<XY> vertices;
        std::ranges::transform(found, std::back_inserter(vertices),
                               [&](std::size_t i) { return cutVertices_.all()[i]; });
        return vertices;
    }

    void share(const PackedEnvelopeTree& tree, Feature& neighbour) {
        Polygon polygon = neighbour.shape()->as<Polygon>();
        const Envelope window = polygon.envelope().expandedBy(tolerance_, tolerance_);
        if (insertSharedVertices(polygon, cutVerticesNear(tree, window), tolerance_)) {
            refresh_.add(*neighbour.shape());
            neighbour.setShape(std::move(polygon));
            neighbour.store();
        }
    }

    FeatureClass& class_;
    Polyline line_;
    RefreshArea& refresh_;
    std::optional<Dictionary> rules_;
    double tolerance_;
    FeatureCopies copies_;
    CutVertices cutVertices_;
    std::vector<ObjectId> neighbours_;
};

enum class Step { prepare = 1, cut = 2, neighbours = 3 };

} // namespace

bool QZ_SplitPolygon(FeatureLayer& layer, const Polyline& line, RefreshArea& refresh) {
    return withSteppedExit(" Split Polygon w = ", Step::prepare, false, [&](Step& step) {
        PolygonSplitter splitter(layer, line, refresh);
        step = Step::cut;
        splitter.forEachMet([&](Feature& feature) { splitter.split(feature); });
        step = Step::neighbours;
        splitter.shareCutVertices();
        return true;
    });
}

bool QZ_SplitPolygon2(FeatureLayer& layer, double lFID, const Polyline& line, RefreshArea& refresh) {
    return withSteppedExit(" Split Polygon2 w = ", Step::prepare, false, [&](Step& step) {
        PolygonSplitter splitter(layer, line, refresh);
        step = Step::cut;
        splitter.forEachMet([&](Feature& feature) {
            if (static_cast<double>(feature.objectId()) == lFID) {
                splitter.split(feature);
            } else {
                splitter.remember(feature);
            }
        });
        step = Step::neighbours;
        splitter.shareCutVertices();
        return true;
    });
}

} // namespace qz
