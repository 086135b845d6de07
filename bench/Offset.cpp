// Offsets and buffers of one line and of one ring, beside GEOS, which gives strokes in the place of arcs, offsets of
// one part and neither z nor arcs. Grows with the number of vertices; the bends of the line are tighter than the
// distance here and there, so that loops have to be taken out.

#include <cmath>
#include <numbers>
#include <random>
#include <stdexcept>

#include <benchmark/benchmark.h>

#include "platform/geometry/Buffer.h"
#include "platform/geometry/Offset.h"
#include "platform/geometry/geos/GeosGeometry.h"

namespace {

using namespace qz;

constexpr double distance = 2;
constexpr int strokesPerQuadrant = 8;

// A walk that keeps its general direction.
Polyline winding(std::int64_t vertices) {
    std::mt19937 random(1);
    std::uniform_real_distribution<double> bend(-1.2, 1.2);
    std::vector<XY> xy{{0, 0}};
    for (std::int64_t i = 1; i < vertices; ++i) {
        const double heading = bend(random);
        xy.push_back({xy.back().x + std::cos(heading), xy.back().y + std::sin(heading)});
    }
    Polyline line;
    line.paths.emplace_back(std::move(xy));
    return line;
}

Polygon jaggedRing(std::int64_t vertices) {
    std::mt19937 random(2);
    const double size = static_cast<double>(vertices) / 6;
    std::uniform_real_distribution<double> radius(size - 1, size + 1);
    std::vector<XY> xy;
    for (std::int64_t i = 0; i < vertices; ++i) {
        const double angle = -2 * std::numbers::pi * static_cast<double>(i) / static_cast<double>(vertices);
        const double r = radius(random);
        xy.push_back({r * std::cos(angle), r * std::sin(angle)});
    }
    xy.push_back(xy.front());
    Polygon polygon;
    polygon.rings.emplace_back(std::move(xy));
    return polygon;
}

void requireAny(bool isEmpty) {
    if (isEmpty) {
        throw std::runtime_error("the result is empty");
    }
}

void offsets(benchmark::State& state, int options) {
    const Polyline line = winding(state.range(0));
    for (auto _ : state) {
        requireAny(offset(line, distance, options).isEmpty());
    }
}

void roundedOffset(benchmark::State& state) {
    offsets(state, offsetSimple | offsetRounded);
}

void pointedOffset(benchmark::State& state) {
    offsets(state, offsetSimple | offsetMitered);
}

void geosOffset(benchmark::State& state, int joinStyle) {
    const GeosGeometryPtr line = toGeos(winding(state.range(0)));
    const GEOSContextHandle_t handle = GeosContext::ofThread().handle();
    for (auto _ : state) {
        const GeosGeometryPtr result(
            GEOSOffsetCurve_r(handle, line.get(), -distance, strokesPerQuadrant, joinStyle, 10));
        requireAny(GEOSisEmpty_r(handle, result.get()) != 0);
    }
}

void roundedOffsetByGeos(benchmark::State& state) {
    geosOffset(state, GEOSBUF_JOIN_ROUND);
}

void pointedOffsetByGeos(benchmark::State& state) {
    geosOffset(state, GEOSBUF_JOIN_MITRE);
}

void buffers(benchmark::State& state, const Geometry& shape) {
    for (auto _ : state) {
        requireAny(buffer(shape, distance).isEmpty());
    }
}

void geosBuffers(benchmark::State& state, const Geometry& shape) {
    const GeosGeometryPtr source = toGeos(shape);
    const GEOSContextHandle_t handle = GeosContext::ofThread().handle();
    for (auto _ : state) {
        const GeosGeometryPtr result(GEOSBuffer_r(handle, source.get(), distance, strokesPerQuadrant));
        requireAny(GEOSisEmpty_r(handle, result.get()) != 0);
    }
}

void lineBuffer(benchmark::State& state) {
    buffers(state, winding(state.range(0)));
}

void lineBufferByGeos(benchmark::State& state) {
    geosBuffers(state, winding(state.range(0)));
}

void ringBuffer(benchmark::State& state) {
    buffers(state, jaggedRing(state.range(0)));
}

void ringBufferByGeos(benchmark::State& state) {
    geosBuffers(state, jaggedRing(state.range(0)));
}

void sizes(benchmark::internal::Benchmark* benchmark) {
    benchmark->RangeMultiplier(10)->Range(100, 10000)->Unit(benchmark::kMillisecond);
}

BENCHMARK(roundedOffset)->Apply(sizes);
BENCHMARK(roundedOffsetByGeos)->Apply(sizes);
BENCHMARK(pointedOffset)->Apply(sizes);
BENCHMARK(pointedOffsetByGeos)->Apply(sizes);
BENCHMARK(lineBuffer)->Apply(sizes);
BENCHMARK(lineBufferByGeos)->Apply(sizes);
BENCHMARK(ringBuffer)->Apply(sizes);
BENCHMARK(ringBufferByGeos)->Apply(sizes);

} // namespace
