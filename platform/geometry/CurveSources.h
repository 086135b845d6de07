#pragma once

#include <optional>
#include <span>
#include <vector>

#include "platform/geometry/EnvelopeIndex.h"
#include "platform/geometry/Geometry.h"
#include "platform/geometry/Noding.h"
#include "platform/geometry/XYHash.h"

namespace qz {

// Takes curves through an operation that knows straight segments in x and y only: gives them out as strokes, remembers
// which stroke is a piece of which segment, and puts arcs, z and m back into what comes out.
//
// Where an arc meets anything, both get a vertex there first, so that joints are exact and strokes of arcs that meet
// share their ends. Arcs of one circle, also of one digitised twice, have their strokes at the same places.
//
// z and m of a vertex that lies on a given vertex are that vertex's, of the operand given first; else they are
// interpolated along the segment it lies on, again first operand first. Where the first has none the next gives its
// own.
class CurveSources {
public:
    // The operands must outlive the object.
    explicit CurveSources(std::span<const Geometry* const> operands);

    // One of the operands as strokes; where no operand has arcs, as it was given.
    [[nodiscard]] const Geometry& stroked(std::size_t operand) const {
        return hasArcs_ ? stroked_[operand] : *operands_[operand];
    }
    [[nodiscard]] bool hasArcs() const noexcept { return hasArcs_; }
    // Straight segments without z and m come back as they are.
    [[nodiscard]] bool isPlain() const noexcept { return !hasArcs_ && !hasValues_; }
    // An open line or a ring made of pieces of strokes, with its arcs, z and m; a ring starts at one of the vertices
    // that the operands have or the operation made, the one with the smallest x, then y.
    [[nodiscard]] Path restored(const Path& line) const;
    [[nodiscard]] Path restoredRing(const Path& ring) const;
    // A ring with its z and m only: strokes stay.
    [[nodiscard]] Path strokedRing(const Path& ring) const;
    [[nodiscard]] Vertex restored(XY place) const;
    // Makes `directed` work for straight segments without z and m too.
    void indexStrokes();
    // The line in the direction of the segment on which it begins.
    [[nodiscard]] Path directed(Path line) const;

private:
    // A piece of a segment given out as a straight stroke.
    struct Stroke {
        std::size_t path = 0;
        std::size_t segment = 0;
        double from = 0; // ratios along the segment
        double to = 1;
        XY start;
        XY end;
    };
    struct Values {
        double z = undefined;
        double m = undefined;
    };
    // Where an edge of a result came from: the ratios of its ends, descending when it runs against the segment.
    struct Origin {
        bool isKnown = false;
        std::size_t path = 0;
        std::size_t segment = 0;
        double from = 0;
        double to = 0;
        bool curved = false;
    };

    void strokePiece(std::vector<XY>& line, const Stroke& piece, const std::optional<CircularArc>& arc);
    [[nodiscard]] Path strokePath(std::size_t path, std::span<const Node> nodes, std::span<const CircularArc> circles);
    void strokeOperands();
    [[nodiscard]] std::vector<CircularArc> unifiedCircles(double tolerance) const;
    void addVertexValues();
    [[nodiscard]] const Stroke* strokeAt(XY start, XY end) const;
    [[nodiscard]] Origin originOf(XY start, XY end) const;
    [[nodiscard]] std::vector<Origin> originsOf(std::span<const XY> line) const;
    [[nodiscard]] Values valuesOn(const Origin& origin, double ratio) const;
    [[nodiscard]] Values valuesAt(XY place, const Origin& before, const Origin& after) const;
    [[nodiscard]] bool continues(const Origin& before, const Origin& after, XY at) const;
    [[nodiscard]] std::size_t startOfRing(std::span<const XY> ring, std::span<const Origin> origins) const;
    [[nodiscard]] Path restored(std::span<const XY> line, std::span<const Origin> origins) const;
    [[nodiscard]] Path restoredRing(const Path& ring, std::vector<Origin> origins) const;
    void appendRun(Path& target, const Origin& run, const Vertex& end) const;

    std::vector<const Path*> paths_;
    std::vector<std::size_t> firstPath_; // of each operand, and the number of paths at last
    std::vector<const Geometry*> operands_;
    std::vector<Geometry> stroked_; // of each operand, when any has arcs
    std::vector<Stroke> strokes_;
    PackedEnvelopeTree tree_;
    PlaceNumbers vertices_;
    std::vector<Values> vertexValues_; // by number
    double resolution_ = 0;
    double tolerance_ = 0;
    bool hasArcs_ = false;
    bool hasValues_ = false;
};

} // namespace qz
