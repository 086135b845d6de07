// Feeds small shapes of any form to the geometry operations: every result has to be finite and simple, areas have to
// add up, or the operation says in a PlatformError why there is no result. The entry is that of libFuzzer; a fault
// leaves it as an exception, which ends a fuzzer.

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <iterator>
#include <limits>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>

#include "platform/geometry/Boundary.h"
#include "platform/geometry/Buffer.h"
#include "platform/geometry/Curve.h"
#include "platform/geometry/CurvePosition.h"
#include "platform/geometry/Cut.h"
#include "platform/geometry/Measures.h"
#include "platform/geometry/Offset.h"
#include "platform/geometry/Relations.h"
#include "platform/geometry/Reshape.h"
#include "platform/geometry/SetOperations.h"
#include "platform/geometry/Simplify.h"
#include "platform/geometry/SubCurve.h"
#include "platform/geometry/WellKnown.h"

namespace qz {
namespace {

// Mostly a small grid, so that shapes meet in vertices and run along each other; then what only just isn't on it, and
// what no map has.
constexpr double coordinates[] = {0,        1,         2,        3,        4,     5,  6,     7,    8,       9,
                                  10,       0,         2,        4,        6,     8,  2.5,   4.75, 1.0 / 3, 7.1,
                                  4 + 1e-9, 6 - 1e-12, 2 + 1e-4, 8 - 5e-5, 5.001, -3, 100.3, -0.0, 1e-12};
constexpr double oddCoordinates[] = {1e-300,   1e5, 1e7 + 0.3, 1.7e308, std::numeric_limits<double>::infinity(),
                                     undefined};
constexpr double distances[] = {0.5, -0.5, 1, -1, 2, -3, 0, 0.01, 1e-5, -20};

// Arcs take a tenth of the strokes of the usual grid.
constexpr CoordinateGrid coarseGrid{.xyResolution = 0.01, .xyTolerance = 0.1};

// Shapes out of bytes; zeros when there are none left.
class ShapeReader {
public:
    explicit ShapeReader(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}

    unsigned below(unsigned limit) {
        if (bytes_.empty()) {
            return 0;
        }
        const unsigned value = bytes_.front();
        bytes_ = bytes_.subspan(1);
        return value % limit;
    }

    double distance() { return distances[below(std::size(distances))]; }

    Geometry shape(bool polygon, const SpatialReference& reference) {
        odd_ = below(16) == 15;
        const unsigned form = below(8);
        GeometryTraits traits;
        traits.spatialReference = reference;
        traits.zAware = (form & 1U) != 0;
        traits.mAware = (form & 2U) != 0;
        return polygon ? Geometry(polygonWith(traits)) : Geometry(polylineWith(traits));
    }

    Path path(bool closed) {
        Path path;
        for (unsigned left = below(9); left > 0; --left) {
            if (!path.isEmpty() && below(4) == 0) {
                const Vertex middle = vertex();
                addArc(path, middle, vertex());
            } else {
                path.addVertex(vertex());
            }
        }
        if (closed && !path.isEmpty() && !path.isClosed()) {
            path.addVertex(path.front());
        }
        return path;
    }

private:
    double coordinate() {
        const unsigned place = below(64);
        if (odd_ && place >= 60) {
            return oddCoordinates[below(std::size(oddCoordinates))];
        }
        return coordinates[place % std::size(coordinates)];
    }

    Vertex vertex() {
        const double x = coordinate();
        const double y = coordinate();
        const unsigned height = below(4);
        return {x, y, height == 0 ? undefined : height, height == 1 ? undefined : height};
    }

    void addArc(Path& path, const Vertex& middle, const Vertex& end) {
        // Circles between the two have so many strokes that one input would take the time of thousands; beyond, they
        // are refused.
        const auto arc = arcThrough(path.back().xy(), middle.xy(), end.xy());
        if (arc && (arc->radius < 1000 || arc->radius > 1e8)) {
            path.addArc(middle, end, below(2) == 0 ? ArcSense::clockwise : ArcSense::counterClockwise);
        } else {
            path.addVertex(end);
        }
    }

    Polygon polygonWith(const GeometryTraits& traits) {
        Polygon polygon;
        static_cast<GeometryTraits&>(polygon) = traits;
        for (unsigned left = 1 + below(3); left > 0; --left) {
            polygon.rings.push_back(path(below(8) != 7));
        }
        return polygon;
    }

    Polyline polylineWith(const GeometryTraits& traits) {
        Polyline line;
        static_cast<GeometryTraits&>(line) = traits;
        for (unsigned left = 1 + below(2); left > 0; --left) {
            line.paths.push_back(path(below(8) == 7));
        }
        return line;
    }

    std::span<const std::uint8_t> bytes_;
    bool odd_ = false;
};

struct Fault : std::logic_error {
    using std::logic_error::logic_error;
};

std::string textOf(const Geometry& geometry) {
    try {
        return toWkt(geometry);
    } catch (const PlatformError& error) {
        return error.what();
    }
}

// Runs operations on a shape or two, which a fault is told with.
class Examination {
public:
    Examination(const Geometry& first, const Geometry& second) : first_(first), second_(second) {}

    // The result, or nothing when the operation said why there is none.
    template <typename Operation>
    auto run(const char* name, Operation operation) const -> std::optional<decltype(operation())> {
        try {
            auto result = operation();
            check(name, result);
            return result;
        } catch (const Fault&) {
            throw;
        } catch (const PlatformError& error) {
            require(name, *error.what() != '\0', "an error without description");
        } catch (const std::exception& error) {
            fail(name, error.what());
        }
        return {};
    }

    void requireNear(const char* name, double value, double expected, double slack) const {
        if (!(std::abs(value - expected) <= slack)) {
            fail(name, std::to_string(value) + " instead of " + std::to_string(expected));
        }
    }

private:
    [[noreturn]] void fail(const char* name, const std::string& what) const {
        throw Fault(std::string(name) + ": " + what + "\n" + textOf(first_) + "\n" + textOf(second_));
    }

    void require(const char* name, bool holds, const char* what) const {
        if (!holds) {
            fail(name, what);
        }
    }

    void check(const char* name, const Geometry& result) const {
        forEachVertex(result, [&](const Vertex& vertex) {
            require(name, isFinite(vertex.xy()), "coordinates that are not finite");
        });
        if (const auto* polygon = result.getIf<Polygon>()) {
            if (!isSimple(*polygon)) {
                fail(name, "a polygon that is not simple: " + toWkt(result));
            }
        }
    }

    void check(const char* name, const std::optional<CutPieces>& pieces) const {
        if (pieces) {
            check(name, Geometry(pieces->left));
            check(name, Geometry(pieces->right));
        }
    }

    void check(const char* name, const std::optional<Vertex>& vertex) const {
        require(name, !vertex || isFinite(vertex->xy()), "a place that is not finite");
    }

    void check(const char* name, const std::optional<CurvePosition>& position) const {
        require(name, !position || std::isfinite(position->distanceAlong), "a distance that is not finite");
    }

    void check(const char* /*name*/, bool /*relation*/) const {}

    const Geometry& first_;
    const Geometry& second_;
};

struct Combination {
    std::optional<Geometry> common;
    std::optional<Geometry> rest;
    std::optional<Geometry> all;
};

// Outlines may move by the resolution where they meet; products of coordinates are rounded.
double areaSlack(const Polygon& a, const Polygon& b) {
    Envelope box = a.envelope();
    box.expandToInclude(b.envelope());
    const double reach = std::max({-box.xMin, box.xMax, -box.yMin, box.yMax});
    const double resolution = a.spatialReference.grid().xyResolution;
    return resolution * (perimeter(a) + perimeter(b)) + 0x1p-40 * reach * reach;
}

void requireAreasAddUp(const Examination& examination, const Geometry& a, const Geometry& b,
                       const Combination& combination) {
    const auto first = examination.run("simplify, first", [&] { return simplified(a); });
    const auto second = examination.run("simplify, second", [&] { return simplified(b); });
    if (!first || !second || !combination.common || first->isEmpty() || second->isEmpty()) {
        return;
    }
    const auto& one = first->as<Polygon>();
    const auto& other = second->as<Polygon>();
    const double slack = areaSlack(one, other);
    const double common = area(combination.common->as<Polygon>());
    if (combination.rest) {
        examination.requireNear("area of the difference", area(combination.rest->as<Polygon>()), area(one) - common,
                                slack);
    }
    if (combination.all) {
        examination.requireNear("area of the union", area(combination.all->as<Polygon>()),
                                area(one) + area(other) - common, slack);
    }
}

void combine(const Examination& examination, const Geometry& a, const Geometry& b) {
    examination.run("intersection, points", [&] { return intersection(a, b, ResultDimension::points); });
    examination.run("intersection, lines", [&] { return intersection(a, b, ResultDimension::lines); });
    const Combination combination{
        .common = examination.run("intersection, areas", [&] { return intersection(a, b, ResultDimension::areas); }),
        .rest = examination.run("difference", [&] { return difference(a, b); }),
        .all = examination.run("union", [&] { return unionOf(a, b); })};
    examination.run("difference, other way", [&] { return difference(b, a); });
    examination.run("intersects", [&] { return intersects(a, b); });
    examination.run("within", [&] { return within(a, b); });
    if (a.kind() == GeometryKind::polygon && b.kind() == GeometryKind::polygon) {
        requireAreasAddUp(examination, a, b, combination);
    }
}

// Nothing when the path changes nothing, since what is left as it is may be of any form.
Geometry reshaped(Geometry geometry, const Path& path) {
    auto* polygon = geometry.getIf<Polygon>();
    const bool changed =
        polygon != nullptr ? reshape(*polygon, path, 0.001) : reshape(geometry.as<Polyline>(), path, 0.001);
    return changed ? geometry : Geometry(geometry.kind());
}

void walk(const Examination& examination, const Geometry& geometry) {
    const Polygon* polygon = geometry.getIf<Polygon>();
    const Curve curve = polygon != nullptr ? Curve(*polygon) : Curve(geometry.as<Polyline>());
    examination.run("sub-curve", [&] {
        return Geometry(polygon != nullptr ? subCurve(*polygon, 0.2, 0.7)
                                           : subCurve(geometry.as<Polyline>(), 0.2, 0.7));
    });
    examination.run("point at a ratio", [&] { return pointAtRatio(curve, 0.4); });
    examination.run("position", [&] { return positionOf({3, 4}, curve); });
    examination.run("position on the extended", [&] { return positionOnExtended({3, 4}, curve); });
}

void runParallel(const Examination& examination, const Geometry& geometry, double distance, int options) {
    const Polygon* polygon = geometry.getIf<Polygon>();
    const Polyline line = polygon != nullptr ? boundary(*polygon) : geometry.as<Polyline>();
    examination.run("offset", [&] { return Geometry(offset(line, distance, options)); });
    examination.run("buffer", [&] { return Geometry(buffer(geometry, distance)); });
}

} // namespace
} // namespace qz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace qz;
    ShapeReader reader({data, size});
    const unsigned kinds = reader.below(8);
    const SpatialReference reference =
        reader.below(4) == 0 ? SpatialReference() : SpatialReference::unknown(coarseGrid);
    const double distance = reader.distance();
    const int options = static_cast<int>(reader.below(16));
    const Geometry a = reader.shape(kinds != 0, reference);
    const Geometry b = reader.shape(kinds > 1 && kinds % 2 == 0, reference);
    const Path path = reader.path(false);
    Polyline line;
    line.spatialReference = reference;
    line.paths.push_back(path);
    const Geometry drawn = line;

    combine(Examination(a, b), a, b);
    const Examination withPath(a, drawn);
    withPath.run("simplify", [&] { return simplified(a); });
    withPath.run("reshape", [&] { return reshaped(a, path); });
    if (const auto* polygon = a.getIf<Polygon>()) {
        withPath.run("cut", [&] { return cut(*polygon, line); });
    }
    walk(withPath, a);
    runParallel(withPath, a, distance, options);
    return 0;
}
