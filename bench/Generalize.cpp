// Generalizing, densifying and smoothing a layer of lines of 100 vertices, beside GEOS simplifying and densifying the
// bare lines. Smoothing has no peer there; it makes four points for each vertex.

#include <cmath>
#include <random>
#include <stdexcept>

#include <benchmark/benchmark.h>

#include "bench/MemoryLayer.h"
#include "platform/geometry/geos/GeosGeometry.h"

namespace {

using namespace qz;

std::vector<Geometry> wanderingLines(std::int64_t count) {
    std::mt19937 random(5);
    std::uniform_real_distribution<double> place(0, 100000), turn(-0.5, 0.5);
    std::vector<Geometry> lines;
    for (std::int64_t i = 0; i < count; ++i) {
        XY at{500000 + place(random), 5500000 + place(random)};
        double heading = place(random);
        std::vector<XY> line{at};
        for (int step = 1; step < 100; ++step) {
            heading += turn(random);
            at = {at.x + 5 * std::cos(heading), at.y + 5 * std::sin(heading)};
            line.push_back(at);
        }
        Polyline polyline;
        polyline.paths.emplace_back(std::move(line));
        lines.emplace_back(std::move(polyline));
    }
    return lines;
}

// Calls `run(layer, cursor)` in an operation that is taken back.
template <typename Run> void edit(benchmark::State& state, Run run) {
    bench::MemoryLayer layer(wanderingLines(state.range(0)));
    const auto count = static_cast<std::int32_t>(state.range(0));
    for (auto _ : state) {
        layer.workspace->startEditOperation();
        const CursorPtr cursor = layer.featureClass().update({});
        if (!run(layer, *cursor, count)) {
            throw std::runtime_error("the lines were not edited");
        }
        state.PauseTiming();
        layer.workspace->abortEditOperation();
        state.ResumeTiming();
    }
}

void generalizeLayer(benchmark::State& state) {
    edit(state, [](bench::MemoryLayer& layer, FeatureCursor& cursor, std::int32_t count) {
        return layer.component.QZ_Generalize(cursor, 1, layer.reference, layer.reference, count, layer.refresh,
                                             layer.host);
    });
}

void densifyLayer(benchmark::State& state) {
    edit(state, [](bench::MemoryLayer& layer, FeatureCursor& cursor, std::int32_t count) {
        return layer.component.QZ_Densify(cursor, "Normal", 2, 0, layer.reference, layer.reference, count,
                                          layer.refresh, layer.host);
    });
}

void smooth(benchmark::State& state, const char* curve) {
    edit(state, [&](bench::MemoryLayer& layer, FeatureCursor& cursor, std::int32_t count) {
        return layer.component.QZ_SmoothRun(layer.featureClass(), cursor, curve, 4, 3, count, layer.refresh,
                                            layer.reference, layer.host);
    });
}

template <typename Run> void editWithGeos(benchmark::State& state, Run run) {
    std::vector<GeosGeometryPtr> lines;
    for (const Geometry& line : wanderingLines(state.range(0))) {
        lines.push_back(toGeos(line));
    }
    for (auto _ : state) {
        for (const GeosGeometryPtr& line : lines) {
            benchmark::DoNotOptimize(GeosGeometryPtr(run(GeosContext::ofThread().handle(), line.get())));
        }
    }
}

void simplifyOfGeos(benchmark::State& state) {
    editWithGeos(state,
                 [](GEOSContextHandle_t handle, const GEOSGeometry* line) { return GEOSSimplify_r(handle, line, 1); });
}

void densifyOfGeos(benchmark::State& state) {
    editWithGeos(state,
                 [](GEOSContextHandle_t handle, const GEOSGeometry* line) { return GEOSDensify_r(handle, line, 2); });
}

void sizes(benchmark::internal::Benchmark* benchmark) {
    benchmark->Arg(1'000)->Arg(100'000)->Unit(benchmark::kMillisecond);
}

BENCHMARK(generalizeLayer)->Apply(sizes);
BENCHMARK(simplifyOfGeos)->Apply(sizes);
BENCHMARK(densifyLayer)->Apply(sizes);
BENCHMARK(densifyOfGeos)->Apply(sizes);
BENCHMARK_CAPTURE(smooth, bezier, "Bezier")->Apply(sizes);
BENCHMARK_CAPTURE(smooth, bSpline, "bSpline")->Apply(sizes);
BENCHMARK_CAPTURE(smooth, tSpline, "tSpline")->Apply(sizes);

} // namespace
