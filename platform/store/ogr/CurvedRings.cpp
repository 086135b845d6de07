#include "platform/store/ogr/CurvedRings.h"

#include <memory>
#include <vector>

#include <fmt/format.h>

#include "platform/Error.h"

namespace qz {

namespace {

// From the area under the stroked ring.
bool runsClockwise(const OGRCurve& ring) {
    const std::unique_ptr<OGRLineString> line(ring.CurveToLine());
    const double x0 = line->getX(0);
    double doubledArea = 0;
    for (int i = 0; i + 1 < line->getNumPoints(); ++i) {
        doubledArea += (line->getX(i) - x0) * line->getY(i + 1) - (line->getX(i + 1) - x0) * line->getY(i);
    }
    return doubledArea < 0;
}

void append(OGRCompoundCurve& ring, std::unique_ptr<OGRCurve> piece) {
    if (ring.addCurveDirectly(piece.get()) != OGRERR_NONE) {
        throw PlatformError("A ring with arcs can't be turned round for a file geodatabase.");
    }
    static_cast<void>(piece.release());
}

// Curves of a ring are simple ones or a sequence of such.
void reverse(OGRCurve& ring) {
    if (auto* simple = dynamic_cast<OGRSimpleCurve*>(&ring)) {
        simple->reversePoints();
        return;
    }
    auto& compound = dynamic_cast<OGRCompoundCurve&>(ring);
    std::vector<std::unique_ptr<OGRCurve>> pieces;
    while (compound.getNumCurves() > 0) {
        pieces.emplace_back(compound.stealCurve(compound.getNumCurves() - 1));
    }
    for (std::unique_ptr<OGRCurve>& piece : pieces) {
        reverse(*piece);
        append(compound, std::move(piece));
    }
}

bool isMisjudged(const OGRCurve& ring) {
    return (ring.isClockwise() != 0) != runsClockwise(ring);
}

// Starts the ring at its second piece.
void rotate(OGRCompoundCurve& ring) {
    std::unique_ptr<OGRCurve> first(ring.stealCurve(0));
    append(ring, std::move(first));
}

// Whether the ring, or the ring turned round, is judged rightly; it is then that way round.
bool turnedRightly(OGRCurve& ring) {
    if (!isMisjudged(ring)) {
        return true;
    }
    reverse(ring);
    return !isMisjudged(ring);
}

void prepareRing(OGRCurve& ring) {
    if (!ring.hasCurveGeometry() || turnedRightly(ring)) {
        return;
    }
    auto* compound = dynamic_cast<OGRCompoundCurve*>(&ring);
    for (int i = 1; compound != nullptr && i < compound->getNumCurves(); ++i) {
        rotate(*compound);
        if (turnedRightly(ring)) {
            return;
        }
    }
    OGRPoint start;
    ring.StartPoint(&start);
    throw PlatformError(
        fmt::format("The ring with arcs that starts at ({}, {}) can't be written to a file geodatabase.", start.getX(),
                    start.getY()));
}

} // namespace

void prepareCurvedRings(OGRGeometry& shape) {
    if (auto* collection = dynamic_cast<OGRGeometryCollection*>(&shape)) {
        for (OGRGeometry* part : *collection) {
            prepareCurvedRings(*part);
        }
    } else if (auto* polygon = dynamic_cast<OGRCurvePolygon*>(&shape)) {
        for (OGRCurve* ring : *polygon) {
            prepareRing(*ring);
        }
    }
}

} // namespace qz
