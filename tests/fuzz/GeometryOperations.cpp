// Feeds small shapes of any form to the geometry operations: every result has to be finite and simple, or the operation
// says in a PlatformError why there is none. The entry is that of libFuzzer; a fault leaves it as an exception, which
// ends a fuzzer.

#include <cmath>
#include <cstdint>
#include <iterator>
#include <limits>
#include <span>
#include <stdexcept>
#include <string>

#include "platform/geometry/Curve.h"
#include "platform/geometry/CurvePosition.h"
#include "platform/geometry/Cut.h"
#include "platform/geometry/Measures.h"
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
                                  4 + 1e-9, 6 - 1e-12, 2 + 1e-4, 8 - 5e-5, 5.001, -3, 100.3, -0.0, 1e-300};
constexpr double oddCoordinates[] = {1e5, 1e7 + 0.3, 1.7e308, std::numeric_limits<double>::infinity(), undefined};

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

    Geometry shape(bool polygon) {
        odd_ = below(16) == 15;
        const unsigned form = below(8);
        GeometryTraits traits;
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

    template <typename Operation> void run(const char* name, Operation operation) const {
        try {
            check(name, operation());
        } catch (const Fault&) {
            throw;
        } catch (const PlatformError& error) {
            require(name, *error.what() != '\0', "an error without description");
        } catch (const std::exception& error) {
            fail(name, error.what());
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

void combine(const Examination& examination, const Geometry& a, const Geometry& b) {
    examination.run("intersection, points", [&] { return intersection(a, b, ResultDimension::points); });
    examination.run("intersection, lines", [&] { return intersection(a, b, ResultDimension::lines); });
    examination.run("intersection, areas", [&] { return intersection(a, b, ResultDimension::areas); });
    examination.run("union", [&] { return unionOf(a, b); });
    examination.run("difference", [&] { return difference(a, b); });
    examination.run("difference, other way", [&] { return difference(b, a); });
    examination.run("intersects", [&] { return intersects(a, b); });
    examination.run("within", [&] { return within(a, b); });
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

} // namespace
} // namespace qz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace qz;
    ShapeReader reader({data, size});
    const unsigned kinds = reader.below(8);
    const Geometry a = reader.shape(kinds != 0);
    const Geometry b = reader.shape(kinds > 1 && kinds % 2 == 0);
    const Path path = reader.path(false);
    Polyline line;
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
    return 0;
}
