#include "polyline/QZPolylineSplitFunctions.h"

#include <cmath>

#include "attributes/QZAttributeRules.h"
#include "platform/Error.h"
#include "platform/Rounding.h"
#include "platform/geometry/Grid.h"
#include "platform/geometry/MeasureInterpolation.h"
#include "platform/geometry/Measures.h"
#include "platform/geometry/SubCurve.h"

namespace qz {

namespace {

const Polyline& lineOf(const Feature& feature) {
    if (!feature.shape()) {
        throw PlatformError("A feature without a shape can't be split");
    }
    const auto& line = feature.shape()->as<Polyline>();
    if (line.isEmpty()) {
        throw PlatformError("An empty line can't be split");
    }
    return line;
}

// Records from elsewhere have 0 where a value is not known.
bool isKnown(double value) {
    return !std::isnan(value) && roundedHalfToEven(value * 1e5) != 0;
}

// Cuts strictly inside the line, ascending, one a place.
class CutList {
public:
    explicit CutList(const Polyline& line)
        : line_(line), length_(length(line)), end_(endPlace(line)), last_(startPlace(line)) {}

    [[nodiscard]] std::vector<CurveCut> cutsAt(const std::vector<SplitPoint>& ascending) {
        std::vector<double> distances;
        for (const SplitPoint& record : ascending) {
            distances.push_back(record.pos * length_);
        }
        const std::vector<CurvePlace> places = placesAt(line_, length_, distances);
        for (std::size_t i = 0; i < places.size(); ++i) {
            add(ascending[i], places[i]);
        }
        return std::move(cuts_);
    }

private:
    void add(const SplitPoint& record, const CurvePlace& place) {
        if (record.pos <= 0 || record.pos >= 1 || place <= last_ || place >= end_ || isSameCut(record)) {
            return;
        }
        const Vertex onLine = vertexAt(line_, place);
        cuts_.push_back(
            {record.pos,
             {record.x, record.y, isKnown(record.z) ? record.z : onLine.z, isKnown(record.m) ? record.m : onLine.m}});
        last_ = place;
    }

    // Several lines that meet in one place cut each other a little apart.
    [[nodiscard]] bool isSameCut(const SplitPoint& record) const {
        const double tolerance = line_.spatialReference.grid().xyTolerance;
        return !cuts_.empty() && cuts_.back().vertex.xy() == XY{record.x, record.y} &&
               (record.pos - cuts_.back().ratio) * length_ <= 4 * tolerance;
    }

    const Polyline& line_;
    double length_;
    CurvePlace end_;
    CurvePlace last_;
    std::vector<CurveCut> cuts_;
};

std::vector<CurveCut> cutsOf(const Polyline& line, std::vector<SplitPoint> records) {
    QZ_SortPoints(std::span(records), &SplitPoint::pos, SortOrder::ascending);
    std::erase_if(records, [](const SplitPoint& record) { return std::isnan(record.pos); });
    return CutList(line).cutsAt(records);
}

// Whether snapping makes one place of it.
bool isOnePlace(const Polyline& piece) {
    if (piece.isEmpty()) {
        return true;
    }
    const Envelope envelope = piece.envelope();
    const CoordinateGrid& grid = piece.spatialReference.grid();
    const auto onGrid = [&grid](double value, double origin) { return snapped(value, origin, grid.xyResolution); };
    return onGrid(envelope.xMin, grid.xOrigin) == onGrid(envelope.xMax, grid.xOrigin) &&
           onGrid(envelope.yMin, grid.yOrigin) == onGrid(envelope.yMax, grid.yOrigin);
}

Dictionary rulesOf(const FeatureLayer& layer) {
    if (auto rules = QZ_GetAttRules(layer.name())) {
        return std::move(*rules);
    }
    throw PlatformError("There are no attribute rules to split features of " + layer.name() + " by");
}

struct Piece {
    FromTo stretch;
    Polyline line;
};

// At least one piece; the last ends at 1.
std::vector<Piece> piecesOf(const Polyline& line, const std::vector<CurveCut>& cuts) {
    std::vector<Polyline> lines = splitAtVertices(line, cuts);
    std::vector<Piece> pieces;
    double from = 0;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (lines.size() == 1 || !isOnePlace(lines[i])) {
            const double to = i < cuts.size() ? cuts[i].ratio : 1.0;
            pieces.push_back({{from, to}, std::move(lines[i])});
            from = to;
        }
    }
    if (pieces.empty()) {
        pieces.push_back({{}, line});
    }
    pieces.back().stretch.to = 1.0;
    return pieces;
}

} // namespace

CurvePosition QZ_PointPosition(const Polyline& line, XY point) {
    if (auto position = positionOf(point, line)) {
        return *position;
    }
    throw PlatformError("An empty line has no position nearest to a point");
}

std::vector<SplitPoint> QZ_InteriorVertexPositions(const Polyline& line) {
    std::vector<SplitPoint> records;
    const double total = length(line);
    double along = 0;
    for (const Path& path : line.paths) {
        for (std::size_t i = 0; i < path.vertexCount(); ++i) {
            const XY place = path.xy()[i];
            records.push_back({.x = place.x, .y = place.y, .pos = total > 0 ? along / total : 0});
            along += i < path.segmentCount() ? segmentLength(path, i) : 0;
        }
    }
    if (records.size() <= 2) {
        return {};
    }
    return {records.begin() + 1, records.end() - 1};
}

PieceStore::PieceStore(FeatureCursor& insertCursor, FeatureBuffer& buffer, const Feature& source,
                       const SplitRules& rules, bool bOver)
    : cursor_(insertCursor), buffer_(buffer), source_(source), rules_(rules), bOver_(bOver),
      sourceLength_(length(lineOf(source))), totals_(rules.all().size()) {}

ObjectId PieceStore::QZ_InsertSplitFeatureLocal(const FromTo& stretch, Polyline piece) {
    const double share = sourceLength_ > 0 ? length(piece) / sourceLength_ : 1;
    snapToSpatialReference(piece);
    buffer_.setShape(std::move(piece));
    writeSplitValues(buffer_, source_, rules_, {share, stretch.to == 1.0}, bOver_, totals_);
    const auto& fields = source_.schema().fields;
    for (std::size_t i = 0; i < fields.size(); ++i) {
        if (fields[i].type == FieldType::blob && fields[i].editable) {
            buffer_.setValue(i, source_.value(i));
        }
    }
    const ObjectId id = cursor_.insert(buffer_);
    cursor_.flush();
    return id;
}

bool QZ_DoSplitPolylineLocal2(FeatureCursor& insertCursor, FeatureBuffer& buffer, const Feature& source,
                              std::vector<SplitPoint> records, const SplitRules& rules, bool bOver) {
    Polyline line = lineOf(source);
    if (line.mAware) {
        interpolateMeasures(line);
    }
    const std::vector<CurveCut> cuts = cutsOf(line, std::move(records));
    PieceStore store(insertCursor, buffer, source, rules, bOver);
    for (Piece& piece : piecesOf(line, cuts)) {
        store.QZ_InsertSplitFeatureLocal(piece.stretch, std::move(piece.line));
    }
    return true;
}

LineSplitter::LineSplitter(FeatureLayer& layer, bool bOver)
    : class_(layer.featureClass()), rules_(rulesOf(layer), class_.schema()), bOver_(bOver),
      insertCursor_(class_.insert()), buffer_(class_.createBuffer()) {}

void LineSplitter::split(Feature& feature, std::vector<SplitPoint> records) {
    if (QZ_DoSplitPolylineLocal2(*insertCursor_, *buffer_, feature, std::move(records), rules_, bOver_)) {
        feature.remove();
    }
}

std::vector<ObjectId> LineSplitter::replace(Feature& feature, std::vector<std::pair<FromTo, Polyline>> pieces) {
    PieceStore store(*insertCursor_, *buffer_, feature, rules_, bOver_);
    std::vector<ObjectId> ids;
    for (auto& [stretch, piece] : pieces) {
        ids.push_back(store.QZ_InsertSplitFeatureLocal(stretch, std::move(piece)));
    }
    feature.remove();
    return ids;
}

} // namespace qz
