#include "platform/geometry/WellKnown.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <memory>
#include <optional>

#include <fmt/format.h>

#include "platform/geometry/ogr/OgrGeometry.h"
#include "platform/geometry/ogr/QuietGdal.h"

namespace qz {

namespace {

// GDAL reads no text for an undefined number. While a text is read this number, which is no height on earth, stands for
// it.
constexpr double undefinedInText = std::numeric_limits<double>::lowest();

std::optional<double> numberIn(std::string_view token) {
    double number = 0;
    const char* end = token.data() + token.size();
    const auto [stop, error] = std::from_chars(token.data(), end, number);
    return error == std::errc() && stop == end ? std::optional(number) : std::nullopt;
}

// Passes every run of characters between the separators of well-known text through `rewrite`.
template <typename Rewrite> std::string rewriteTokens(std::string_view text, Rewrite rewrite) {
    constexpr std::string_view separators = " \t\r\n(),";
    std::string result;
    result.reserve(text.size());
    while (!text.empty()) {
        const std::size_t length = std::min(text.find_first_of(separators), text.size());
        result += rewrite(text.substr(0, length));
        const std::size_t next = std::min(text.find_first_not_of(separators, length), text.size());
        result += text.substr(length, next - length);
        text.remove_prefix(next);
    }
    return result;
}

std::string markUndefined(std::string_view token) {
    const auto number = numberIn(token);
    return number && std::isnan(*number) ? fmt::format("{}", undefinedInText) : std::string(token);
}

void restoreUndefined(Vertex& vertex) {
    for (double* value : {&vertex.x, &vertex.y, &vertex.z, &vertex.m}) {
        if (*value == undefinedInText) {
            *value = undefined;
        }
    }
}

// All numbers of a geometry, in the order of its text.
class NumbersInOrder : public OGRDefaultConstGeometryVisitor {
public:
    using OGRDefaultConstGeometryVisitor::visit;

    void visit(const OGRPoint* point) override {
        if (point->IsEmpty()) {
            return;
        }
        numbers_.push_back(point->getX());
        numbers_.push_back(point->getY());
        if (point->Is3D()) {
            numbers_.push_back(point->getZ());
        }
        if (point->IsMeasured()) {
            numbers_.push_back(point->getM());
        }
    }

    // Takes them out one by one. GDAL leaves out what is not finite, so that it can't be told which number is whose.
    [[nodiscard]] double next() {
        if (next_ == numbers_.size()) {
            throw PlatformError("A geometry with a coordinate that is not finite has no well-known text.");
        }
        return numbers_[next_++];
    }

private:
    std::vector<double> numbers_;
    std::size_t next_ = 0;
};

std::string textOf(double number) {
    return std::isnan(number) ? "NaN" : fmt::format("{}", number);
}

// GDAL writes the text; its numbers are replaced, since it has no shortest form for them and drops the zeros at the end
// of an exponent (1E-10 becomes 1E-1).
std::string textOf(const OGRGeometry& geometry) {
    OGRWktOptions options;
    options.variant = wkbVariantIso;
    NumbersInOrder numbers;
    geometry.accept(&numbers);
    return rewriteTokens(geometry.exportToWkt(options), [&numbers](std::string_view token) {
        return numberIn(token) ? textOf(numbers.next()) : std::string(token);
    });
}

[[noreturn]] void failText(std::string_view wkt, const std::string& problem) {
    constexpr std::size_t shown = 200;
    const std::string quoted = wkt.size() > shown ? std::string(wkt.substr(0, shown)) + "…" : std::string(wkt);
    throw PlatformError(fmt::format("'{}' is no well-known text of a geometry: {}.", quoted, problem));
}

std::string problemOf(OGRErr error, const std::string& complaint) {
    if (error == OGRERR_UNSUPPORTED_GEOMETRY_TYPE) {
        return "POINT, MULTIPOINT, LINESTRING, CIRCULARSTRING, COMPOUNDCURVE, MULTILINESTRING, MULTICURVE, POLYGON, "
               "CURVEPOLYGON, MULTIPOLYGON or MULTISURFACE is expected at the beginning";
    }
    return complaint.empty() ? "coordinates are expected as in LINESTRING Z (0 0 1,10 5 2), with all brackets closed"
                             : complaint;
}

std::unique_ptr<OGRGeometry> readText(std::string_view wkt) {
    const QuietGdal quiet;
    const std::string text = rewriteTokens(wkt, markUndefined);
    const char* rest = text.c_str();
    OGRGeometry* read = nullptr;
    const OGRErr error = OGRGeometryFactory::createFromWkt(&rest, nullptr, &read);
    std::unique_ptr<OGRGeometry> geometry(read);
    if (error != OGRERR_NONE || !geometry) {
        failText(wkt, problemOf(error, quiet.message()));
    }
    const std::string_view trailing(rest);
    if (const std::size_t start = trailing.find_first_not_of(" \t\r\n"); start != std::string_view::npos) {
        failText(wkt, fmt::format("its end is expected where '{}' begins", trailing.substr(start)));
    }
    return geometry;
}

// The first place whose x or y is no number.
std::optional<XY> unusablePlace(const Geometry& geometry) {
    std::optional<XY> place;
    forEachVertex(geometry, [&place](const Vertex& vertex) {
        if (!place && !isFinite(vertex.xy())) {
            place = vertex.xy();
        }
    });
    return place;
}

bool isEmptyPoint(const Geometry& geometry, const OGRGeometry& source) {
    return geometry.kind() == GeometryKind::point && source.IsEmpty();
}

Geometry fromText(const OGRGeometry& source, std::string_view wkt) {
    Geometry geometry = fromOgr(source);
    transformVertices(geometry, restoreUndefined);
    if (const auto place = unusablePlace(geometry); place && !isEmptyPoint(geometry, source)) {
        failText(wkt, fmt::format("x and y have to be numbers, but ({}, {}) was found", place->x, place->y));
    }
    return geometry;
}

} // namespace

std::string toWkt(const Geometry& geometry) {
    return textOf(*toOgr(geometry));
}

std::string toWkt(const GeometryCollection& collection) {
    OGRGeometryCollection target;
    for (const Geometry& geometry : collection.geometries) {
        target.addGeometryDirectly(toOgr(geometry).release());
    }
    return textOf(target);
}

Geometry geometryFromWkt(std::string_view wkt) {
    return fromText(*readText(wkt), wkt);
}

GeometryCollection collectionFromWkt(std::string_view wkt) {
    const std::unique_ptr<OGRGeometry> source = readText(wkt);
    if (wkbFlatten(source->getGeometryType()) != wkbGeometryCollection) {
        failText(wkt, "GEOMETRYCOLLECTION is expected at the beginning");
    }
    GeometryCollection collection;
    for (const OGRGeometry* member : *source->toGeometryCollection()) {
        collection.geometries.push_back(fromText(*member, wkt));
    }
    return collection;
}

std::vector<std::uint8_t> toWkb(const Geometry& geometry) {
    const std::unique_ptr<OGRGeometry> source = toOgr(geometry);
    std::vector<std::uint8_t> wkb(source->WkbSize());
    if (source->exportToWkb(wkbNDR, wkb.data(), wkbVariantIso) != OGRERR_NONE) {
        throw PlatformError(fmt::format("A {} can't be written as well-known binary.", nameOf(geometry.kind())));
    }
    return wkb;
}

Geometry geometryFromWkb(std::span<const std::uint8_t> wkb) {
    const QuietGdal quiet;
    OGRGeometry* read = nullptr;
    std::size_t used = 0;
    const OGRErr error = OGRGeometryFactory::createFromWkb(wkb.data(), nullptr, &read, wkb.size(), wkbVariantIso, used);
    const std::unique_ptr<OGRGeometry> source(read);
    if (error != OGRERR_NONE || !source || used != wkb.size()) {
        throw PlatformError(fmt::format("{} bytes are no well-known binary of a geometry.", wkb.size()));
    }
    Geometry geometry = fromOgr(*source);
    if (const auto place = unusablePlace(geometry); place && !isEmptyPoint(geometry, *source)) {
        throw PlatformError(
            fmt::format("Well-known binary of {} bytes: x and y have to be numbers, but ({}, {}) was found.",
                        wkb.size(), place->x, place->y));
    }
    return geometry;
}

} // namespace qz
