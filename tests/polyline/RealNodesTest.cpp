// Merging at pseudo nodes, deleting dangles and uniting nodes in the line layers of the folder that QZ_REAL_LAYERS
// names; nothing is saved.

#include <limits>
#include <map>
#include <set>

#include "common/NodeKey.h"
#include "platform/geometry/Measures.h"
#include "polyline/QZDangles.h"
#include "polyline/QZRedundantNodes.h"
#include "polyline/QZRemovePseudo.h"
#include "tests/support/RealData.h"
#include "tests/support/StreetsFixture.h"
#include "topology/QZAnalyseNodes.h"

namespace qz::test {
namespace {

// The lines of a layer, of one part each.
struct RealLines : Streets {
    explicit RealLines(FeatureClass& source) : Streets(GeometryKind::polyline, source.spatialReference()) {
        const CursorPtr cursor = source.search({});
        for (FeaturePtr row = cursor->next(); row; row = cursor->next()) {
            if (row->shape() && !row->shape()->isEmpty() && row->shape()->as<Polyline>().paths.size() == 1) {
                table->add(*row->shape(), {});
            }
        }
        host.editor().startEditing(*workspace);
    }
    ~RealLines() {
        host.editor().stopEditing(false);
        EXPECT_EQ(messages, Rows());
    }

    [[nodiscard]] NodePoints nodes(const char* nType) {
        bool checked = false;
        return QZ_AnalyseNodes(host.focusMap().activeView(), *layer, reference, "All", nType, true,
                               std::numeric_limits<std::int32_t>::max(), checked)
            .value();
    }
    [[nodiscard]] std::map<ObjectId, Polyline> lines() {
        std::map<ObjectId, Polyline> found;
        const CursorPtr cursor = streets().search({});
        for (FeaturePtr row = cursor->next(); row; row = cursor->next()) {
            found.emplace(row->objectId(), row->shape()->as<Polyline>());
        }
        return found;
    }
    [[nodiscard]] XY key(XY place) { return nodeKey(place, nodeDecimals(streets())); }
};

double lengthOf(const std::map<ObjectId, Polyline>& lines) {
    double sum = 0;
    for (const auto& [id, line] : lines) {
        sum += length(line);
    }
    return sum;
}

// A node's ends may be as far apart as the cell of its key, which a segment then bridges.
void mergePseudoNodes(RealLines& data) {
    const auto before = data.lines();
    const std::size_t pseudo = data.nodes("pseudo").ids.size();
    EXPECT_TRUE(QZ_RemovePseudo(data.host, *data.layer, *data.all(), -1, 0, data.refresh));
    const auto after = data.lines();
    const double bridges = static_cast<double>(pseudo) * 1.5 * nodeWidth(nodeDecimals(data.streets()));
    EXPECT_GE(lengthOf(after), lengthOf(before) * (1 - 1e-12));
    EXPECT_LE(lengthOf(after), lengthOf(before) * (1 + 1e-12) + bridges);
    std::size_t closed = 0;
    for (const auto& [id, line] : after) {
        closed += data.key(line.paths.front().xy().front()) == data.key(line.paths.front().xy().back()) ? 1U : 0U;
    }
    EXPECT_LE(data.nodes("pseudo").ids.size(), closed) << "only closed lines have pseudo nodes";
}

void deleteDangles(RealLines& data) {
    const auto before = data.lines();
    std::set<std::pair<double, double>> free;
    for (const Vertex& node : data.nodes("dangle").vertices) {
        free.emplace(node.x, node.y);
    }
    const double limit = 2 * lengthOf(before) / static_cast<double>(before.size());
    const Envelope extent = data.streets().extent();
    EXPECT_TRUE(QZ_DeleteSelectedDangles(data.streets(), data.reference,
                                         rectangle(extent.expandedBy(extent.width(), extent.height()), data.reference),
                                         limit));
    const auto after = data.lines();
    for (const auto& [id, line] : before) {
        const auto endsFreely = [&](XY end) { return free.contains({data.key(end).x, data.key(end).y}); };
        const auto places = line.paths.front().xy();
        const bool isStub = length(line) < limit && (endsFreely(places.front()) || endsFreely(places.back()));
        EXPECT_EQ(after.contains(id), !isStub) << id;
        EXPECT_TRUE(isStub || identical(after.at(id), line)) << id;
    }
}

// Around every hundredth node: all ends there come onto one place, and nothing else moves.
void uniteNodes(RealLines& data) {
    const double reach = lengthOf(data.lines()) / static_cast<double>(data.lines().size()) / 4;
    const NodePoints nodes = data.nodes("all");
    for (std::size_t i = 0; i < nodes.vertices.size(); i += 100) {
        const XY at = nodes.vertices[i].xy();
        const Envelope window{at.x - reach, at.y - reach, at.x + reach, at.y + reach};
        const auto before = data.lines();
        data.messages.clear();
        EXPECT_TRUE(QZ_RemoveRedundantNodes(data.host, data.streets(), *data.all(), &window, 0, data.refresh));
        const bool someStay = !data.messages.empty(); // lines of which nothing would be left
        std::set<std::pair<double, double>> places;
        for (const auto& [id, line] : data.lines()) {
            const Path &now = line.paths.front(), &then = before.at(id).paths.front();
            for (const auto& [end, was] : {std::pair{now.front(), then.front()}, std::pair{now.back(), then.back()}}) {
                if (window.contains(was.xy()) && !someStay) {
                    places.emplace(data.key(end.xy()).x, data.key(end.xy()).y);
                }
                EXPECT_TRUE(window.contains(was.xy()) || sameBits(end.xy(), was.xy())) << id;
            }
        }
        EXPECT_LE(places.size(), 1U) << at.x << " " << at.y;
    }
    data.messages.clear();
}

TEST(RealNodes, AreMergedDeletedAndUnited) {
    if (realDataSets().empty()) {
        GTEST_SKIP() << "QZ_REAL_LAYERS names no folder with layers.";
    }
    forEachRealLayer(GeometryKind::polyline, [](FeatureClass& featureClass) {
        for (void (*check)(RealLines&) : {mergePseudoNodes, deleteDangles}) {
            RealLines data(featureClass);
            check(data);
        }
        if (featureClass.count() < 5000) {
            RealLines data(featureClass);
            uniteNodes(data);
        }
    });
}

} // namespace
} // namespace qz::test
