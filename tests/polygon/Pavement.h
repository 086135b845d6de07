#pragma once

#include <random>
#include <regex>
#include <string>
#include <vector>

#include <fmt/format.h>

#include "tests/support/StreetsFixture.h"

namespace qz::test {

// A layer of polygons, with the fields and rules of Streets.
struct Parcels : Streets {
    Parcels() : Streets(GeometryKind::polygon) {}

    [[nodiscard]] Geometry shape(const std::string& wkt) const {
        Geometry shape = geometryFromWkt(wkt);
        shape.traits().spatialReference = reference;
        return shape;
    }
    [[nodiscard]] Polyline sketch(const std::string& wkt) const { return shape(wkt).as<Polyline>(); }
    [[nodiscard]] Polygon area(const std::string& wkt) const { return shape(wkt).as<Polygon>(); }
    // shapes() of polygons without heights and measures, where they are undefined or 0.
    [[nodiscard]] Rows flatShapes() {
        Rows rows = shapes();
        for (std::string& row : rows) {
            row = std::regex_replace(row, std::regex(" ZM|( 0| NaN) NaN(?=[,)])"), "");
        }
        return rows;
    }
    bool split(const std::string& wkt) { return component.QZ_SplitPolygonRun(*layer, sketch(wkt), refresh, host); }
    bool splitOnly(ObjectId id, const std::string& wkt) {
        return component.QZ_SplitPolygon2(*layer, static_cast<double>(id), sketch(wkt), refresh, host);
    }
};

// A layer that takes single parts only.
struct SingleParts : Streets {
    SingleParts() {
        Schema schema = roadSchema();
        schema.shape->kind = GeometryKind::polygon;
        schema.shape->allowsMultipart = false;
        schema.shape->spatialReference = reference;
        data = std::make_unique<MemoryData>(std::move(schema));
        layer = &host.focusMap().addLayer("roads", data->featureClass());
    }
    std::unique_ptr<MemoryData> data;
};

// A pavement of quadrilaterals with random corners.
inline void addPavement(Parcels& parcels, std::mt19937& random, int size) {
    std::uniform_real_distribution<double> jitter(-0.3, 0.3);
    std::vector<XY> corners;
    for (int i = 0; i < size * size; ++i) {
        corners.push_back({500000 + i % size + jitter(random), 5600000.0 + i / size + jitter(random)});
    }
    const auto corner = [&](int x, int y) { return corners[static_cast<std::size_t>(y * size + x)]; };
    for (int y = 0; y + 1 < size; ++y) {
        for (int x = 0; x + 1 < size; ++x) {
            const XY ring[] = {corner(x, y), corner(x, y + 1), corner(x + 1, y + 1), corner(x + 1, y), corner(x, y)};
            std::string text;
            for (const XY place : ring) {
                text += fmt::format("{}{} {}", text.empty() ? "" : ",", place.x, place.y);
            }
            parcels.add("POLYGON ((" + text + "))");
        }
    }
}

} // namespace qz::test
