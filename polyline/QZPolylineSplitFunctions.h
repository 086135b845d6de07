#pragma once

#include <memory>
#include <utility>
#include <vector>

#include "attributes/QZAttributeTransfer.h"
#include "common/QZSort.h"
#include "platform/app/Application.h"
#include "platform/geometry/CurvePosition.h"

namespace qz {

// Cutting one line feature into consecutive pieces, each stored as a new feature. Positions are ratios of the line's
// length. All of it throws PlatformError; the source feature is never deleted here.

// Where the point's nearest place on the line is, and how far off the point lies. Throws for an empty line.
[[nodiscard]] CurvePosition QZ_PointPosition(const Polyline& line, XY point);

// x, y and position of every vertex of the line, without those at its two ends.
[[nodiscard]] std::vector<SplitPoint> QZ_InteriorVertexPositions(const Polyline& line);

// The stretch of a line that a piece covers.
struct FromTo {
    double from = 0;
    double to = 1;
};

// Stores pieces of one line in their order along it.
class PieceStore {
public:
    // All but the flag must outlive the store.
    PieceStore(FeatureCursor& insertCursor, FeatureBuffer& buffer, const Feature& source, const SplitRules& rules,
               bool bOver);

    // Inserts the piece, snapped to its spatial reference, with the values that the rules give it, and returns its
    // object id. Fields without a rule are empty, except that binary data are copied.
    ObjectId QZ_InsertSplitFeatureLocal(const FromTo& stretch, Polyline piece);

private:
    FeatureCursor& cursor_;
    FeatureBuffer& buffer_;
    const Feature& source_;
    const SplitRules& rules_;
    bool bOver_;
    double sourceLength_;
    RangeTotals totals_;
};

// Cuts the line at the positions that lie inside it and stores every piece. Each cut lands exactly on the record's x
// and y, and on its z where that is not 0; else z, and always m where the record's is 0, run along the line. Measures
// that are undefined between two known ones are filled. A stretch that the grid doesn't tell from a point makes no
// piece. True: the source feature may be deleted. Without a cut inside there is one piece, a copy of the line.
[[nodiscard]] bool QZ_DoSplitPolylineLocal2(FeatureCursor& insertCursor, FeatureBuffer& buffer, const Feature& source,
                                            std::vector<SplitPoint> records, const SplitRules& rules, bool bOver);

// Splits features of one layer by the attribute rules in force for it.
class LineSplitter {
public:
    // Throws PlatformError when the layer's rules can't be had.
    LineSplitter(FeatureLayer& layer, bool bOver);

    [[nodiscard]] FeatureClass& featureClass() const noexcept { return class_; }
    // Cuts the feature at the records and deletes it once all its pieces are stored.
    void split(Feature& feature, std::vector<SplitPoint> records);
    // Replaces the feature by pieces of it, given in their order along it with the stretch that each covers.
    std::vector<ObjectId> replace(Feature& feature, std::vector<std::pair<FromTo, Polyline>> pieces);

private:
    FeatureClass& class_;
    SplitRules rules_;
    bool bOver_;
    CursorPtr insertCursor_;
    std::unique_ptr<FeatureBuffer> buffer_;
};

} // namespace qz
