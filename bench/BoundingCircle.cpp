// The smallest circle around the vertices of a line, beside GEOS's: points in any order, and a spiral outwards, the
// worst order for constructions that take one point after the other.

#include <cmath>
#include <random>

#include <benchmark/benchmark.h>

#include "graphics/BoundingShapes.h"
#include "platform/geometry/geos/GeosGeometry.h"

namespace {

using namespace qz;

Geometry lineThrough(std::vector<XY> places) {
    Polyline line;
    line.paths.emplace_back(std::move(places));
    return line;
}

Geometry anyOrder(std::int64_t count) {
    std::mt19937 random(1);
    std::uniform_real_distribution<double> place(0, 1000);
    std::vector<XY> places;
    for (std::int64_t i = 0; i < count; ++i) {
        const double x = place(random);
        places.push_back({x, place(random)});
    }
    return lineThrough(std::move(places));
}

Geometry spiral(std::int64_t count) {
    std::vector<XY> places;
    for (std::int64_t i = 0; i < count; ++i) {
        const double turn = 0.1 * static_cast<double>(i), radius = 1 + 0.01 * static_cast<double>(i);
        places.push_back({radius * std::cos(turn), radius * std::sin(turn)});
    }
    return lineThrough(std::move(places));
}

void boundingCircle(benchmark::State& state, Geometry (*shape)(std::int64_t)) {
    const Geometry line = shape(state.range(0));
    for (auto _ : state) {
        benchmark::DoNotOptimize(QZ_MinBoundingCircle(line)->radius);
    }
}

void boundingCircleWithGeos(benchmark::State& state, Geometry (*shape)(std::int64_t)) {
    const GEOSContextHandle_t handle = GeosContext::ofThread().handle();
    const GeosGeometryPtr line = toGeos(shape(state.range(0)));
    for (auto _ : state) {
        double radius = 0;
        const GeosGeometryPtr circle(GEOSMinimumBoundingCircle_r(handle, line.get(), &radius, nullptr));
        benchmark::DoNotOptimize(radius);
    }
}

void sizes(benchmark::internal::Benchmark* bench) {
    bench->RangeMultiplier(10)->Range(1'000, 1'000'000)->Unit(benchmark::kMillisecond);
}

BENCHMARK_CAPTURE(boundingCircle, any_order, anyOrder)->Apply(sizes);
BENCHMARK_CAPTURE(boundingCircleWithGeos, any_order, anyOrder)->Apply(sizes);
BENCHMARK_CAPTURE(boundingCircle, spiral, spiral)->Apply(sizes);
BENCHMARK_CAPTURE(boundingCircleWithGeos, spiral, spiral)->Apply(sizes);

} // namespace
