#include "polyline/QZDangles.h"

#include <vector>

#include "common/CursorWalk.h"
#include "common/ErrorExit.h"
#include "common/NodeKey.h"
#include "platform/geometry/Measures.h"
#include "platform/geometry/Project.h"
#include "platform/geometry/Relations.h"

namespace qz {

namespace {

constexpr double anyLength = 999999999999;

struct FoundLine {
    FeaturePtr feature;
    std::size_t fromNode = 0;
    std::size_t toNode = 0;
};

class EndCount {
public:
    explicit EndCount(std::int16_t decimals) : nodes_(decimals) {}

    void add(const FeaturePtr& feature) {
        const auto& line = feature->shape()->as<Polyline>();
        lines_.push_back({feature, count(line.paths.front().xy().front()), count(line.paths.back().xy().back())});
    }

    [[nodiscard]] const std::vector<FoundLine>& lines() const noexcept { return lines_; }
    [[nodiscard]] bool endsFreely(const FoundLine& line) const {
        return ends_[line.fromNode] == 1 || ends_[line.toNode] == 1;
    }

private:
    std::size_t count(XY end) {
        const std::size_t node = nodes_.add(end);
        ends_.resize(nodes_.size());
        ++ends_[node];
        return node;
    }

    NodeNumbers nodes_;
    std::vector<std::size_t> ends_; // by node
    std::vector<FoundLine> lines_;
};

FeatureFilter meeting(const Geometry& area, const SpatialReference& reference) {
    FeatureFilter filter;
    filter.shape = area;
    filter.relation = SpatialRelation::intersects;
    filter.outputReference = reference;
    return filter;
}

Geometry inSystem(Geometry area, const SpatialReference& reference) {
    project(area, reference);
    return area;
}

} // namespace

bool QZ_DeleteSelectedDangles(FeatureClass& featureClass, const SpatialReference& reference, const Geometry& area,
                              double dDangTol) {
    return withNumberedExit("QZ_DeleteSelectedDangles", false, [&] {
        const double limit = dDangTol <= 0 ? anyLength : dDangTol;
        EndCount ends(nodeDecimals(featureClass));
        const CursorPtr cursor = featureClass.search(meeting(area, reference));
        forEachShaped(*cursor, [&ends](const FeaturePtr& feature) { ends.add(feature); });
        const PreparedRelation within(inSystem(area, reference.isNone() ? featureClass.spatialReference() : reference),
                                      SpatialRelation::within);
        for (const FoundLine& line : ends.lines()) {
            const Geometry& shape = *line.feature->shape();
            if (ends.endsFreely(line) && length(shape.as<Polyline>()) < limit && within.holdsFor(shape)) {
                line.feature->remove();
            }
        }
        return true;
    });
}

} // namespace qz
