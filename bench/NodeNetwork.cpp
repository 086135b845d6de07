// Cutting every line of a layer where it meets others, attributes by the rules, beside GEOS noding the bare lines.
// Grows with the number of lines: short ones of 10 vertices that cross about two others each, and a street grid in
// which every line crosses half of the lines. One split in a large layer costs the same as in a small one.

#include <cmath>
#include <random>
#include <stdexcept>

#include <benchmark/benchmark.h>

#include "bench/MemoryLayer.h"
#include "platform/geometry/geos/GeosGeometry.h"

namespace {

using namespace qz;

using Lines = std::vector<std::vector<XY>>;

// Wandering lines 50 m long; so many on a square that each crosses about two others.
Lines wanderingLines(std::int64_t count) {
    std::mt19937 random(5);
    const double side = 25 * std::sqrt(static_cast<double>(count));
    std::uniform_real_distribution<double> place(0, side);
    std::uniform_real_distribution<double> turn(-0.4, 0.4);
    Lines lines;
    for (std::int64_t i = 0; i < count; ++i) {
        XY at{500000 + place(random), 5500000 + place(random)};
        double heading = place(random);
        std::vector<XY> line{at};
        for (int step = 0; step < 9; ++step) {
            heading += turn(random);
            at = {at.x + 5 * std::cos(heading), at.y + 5 * std::sin(heading)};
            line.push_back(at);
        }
        lines.push_back(std::move(line));
    }
    return lines;
}

Lines streetGrid(std::int64_t count) {
    Lines lines;
    const double length = 10.0 * static_cast<double>(count / 2 + 1);
    for (std::int64_t i = 1; i <= count / 2; ++i) {
        const double offset = 10.0 * static_cast<double>(i);
        lines.push_back({{500000 + offset, 5500000}, {500000 + offset + 3, 5500000 + length}});
        lines.push_back({{500000, 5500000 + offset}, {500000 + length, 5500000 + offset + 2}});
    }
    return lines;
}

std::vector<Geometry> shapesOf(const Lines& lines) {
    std::vector<Geometry> shapes;
    for (const auto& line : lines) {
        Polyline polyline;
        polyline.paths.emplace_back(line);
        shapes.emplace_back(std::move(polyline));
    }
    return shapes;
}

void node(benchmark::State& state, const Lines& lines) {
    bench::MemoryLayer streets(shapesOf(lines));
    for (auto _ : state) {
        streets.workspace->startEditOperation();
        const CursorPtr cursor = streets.featureClass().update({});
        if (!streets.component.QZ_SelectAndIntersectRun(*streets.layer, *cursor, 0, streets.refresh, 0.001, false,
                                                        streets.host)) {
            throw std::runtime_error("nothing was cut");
        }
        state.PauseTiming();
        state.counters["pieces"] = static_cast<double>(streets.featureClass().count());
        streets.workspace->abortEditOperation();
        state.ResumeTiming();
    }
}

void nodeWithGeos(benchmark::State& state, const Lines& lines) {
    const GEOSContextHandle_t handle = GeosContext::ofThread().handle();
    std::vector<GEOSGeometry*> parts;
    for (const auto& line : lines) {
        GEOSCoordSequence* sequence = GEOSCoordSeq_create_r(handle, static_cast<unsigned>(line.size()), 2);
        for (unsigned i = 0; i < line.size(); ++i) {
            GEOSCoordSeq_setXY_r(handle, sequence, i, line[i].x, line[i].y);
        }
        parts.push_back(GEOSGeom_createLineString_r(handle, sequence));
    }
    GEOSGeometry* const all =
        GEOSGeom_createCollection_r(handle, GEOS_MULTILINESTRING, parts.data(), static_cast<unsigned>(parts.size()));
    for (auto _ : state) {
        GEOSGeometry* const noded = GEOSNode_r(handle, all);
        state.counters["pieces"] = GEOSGetNumGeometries_r(handle, noded);
        GEOSGeom_destroy_r(handle, noded);
    }
    GEOSGeom_destroy_r(handle, all);
}

void nodeWandering(benchmark::State& state) {
    node(state, wanderingLines(state.range(0)));
}
void geosWandering(benchmark::State& state) {
    nodeWithGeos(state, wanderingLines(state.range(0)));
}
void nodeGrid(benchmark::State& state) {
    node(state, streetGrid(state.range(0)));
}
void geosGrid(benchmark::State& state) {
    nodeWithGeos(state, streetGrid(state.range(0)));
}

// One line of the layer, cut in its middle.
void splitOne(benchmark::State& state) {
    bench::MemoryLayer streets(shapesOf(wanderingLines(state.range(0))));
    FeatureFilter one;
    one.ids = std::vector<ObjectId>{state.range(0) / 2};
    for (auto _ : state) {
        streets.workspace->startEditOperation();
        const CursorPtr cursor = streets.featureClass().search(one);
        if (!streets.component.QZ_SplitInPoint2(*streets.layer, *cursor, nullptr, streets.refresh, "Middle", 0, {}, {},
                                                nullptr, streets.host, false, 0)) {
            throw std::runtime_error("the line was not cut");
        }
        streets.workspace->abortEditOperation();
    }
}

BENCHMARK(nodeWandering)->RangeMultiplier(10)->Range(1'000, 1'000'000)->Unit(benchmark::kMillisecond);
BENCHMARK(geosWandering)->RangeMultiplier(10)->Range(1'000, 100'000)->Unit(benchmark::kMillisecond);
BENCHMARK(nodeGrid)->Arg(200)->Arg(2'000)->Unit(benchmark::kMillisecond);
BENCHMARK(geosGrid)->Arg(200)->Arg(2'000)->Unit(benchmark::kMillisecond);
BENCHMARK(splitOne)->Arg(1'000)->Arg(1'000'000)->Unit(benchmark::kMicrosecond);

} // namespace
