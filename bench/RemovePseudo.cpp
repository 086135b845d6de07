// Merging lines at their pseudo nodes, with values by the rules, beside GEOS merging the bare lines. Streets of ten
// pieces each, every third piece running back.

#include <stdexcept>

#include <benchmark/benchmark.h>

#include "bench/MemoryLayer.h"
#include "platform/geometry/geos/GeosGeometry.h"

namespace {

using namespace qz;

std::vector<Geometry> pieces(std::int64_t count) {
    std::vector<Geometry> lines;
    for (std::int64_t i = 0; i < count; ++i) {
        const double y = 5500000 + 10 * static_cast<double>(i / 10), x = 500000 + 5 * static_cast<double>(i % 10);
        std::vector<XY> places{{x, y}, {x + 2, y + 1}, {x + 5, y}};
        if (i % 3 == 0) {
            std::swap(places.front(), places.back());
        }
        Polyline line;
        line.paths.emplace_back(std::move(places));
        lines.emplace_back(std::move(line));
    }
    return lines;
}

void removePseudo(benchmark::State& state) {
    bench::MemoryLayer layer(pieces(state.range(0)));
    for (auto _ : state) {
        layer.workspace->startEditOperation();
        const CursorPtr cursor = layer.featureClass().update({});
        if (!layer.component.QZ_RemovePseudo(*layer.layer, *cursor, -1, static_cast<std::int32_t>(state.range(0)),
                                             layer.refresh, nullptr, layer.host) ||
            layer.featureClass().count() != state.range(0) / 10) {
            throw std::runtime_error("the streets were not merged");
        }
        state.PauseTiming();
        layer.workspace->abortEditOperation();
        state.ResumeTiming();
    }
}

void mergeLinesWithGeos(benchmark::State& state) {
    const GEOSContextHandle_t handle = GeosContext::ofThread().handle();
    std::vector<GeosGeometryPtr> lines;
    for (const Geometry& line : pieces(state.range(0))) {
        lines.push_back(toGeos(line));
    }
    const GeosGeometryPtr all = collect(std::move(lines), GEOS_MULTILINESTRING);
    for (auto _ : state) {
        const GeosGeometryPtr merged(GEOSLineMerge_r(handle, all.get()));
        state.counters["lines"] = GEOSGetNumGeometries_r(handle, merged.get());
    }
}

BENCHMARK(removePseudo)->RangeMultiplier(10)->Range(1'000, 1'000'000)->Unit(benchmark::kMillisecond);
BENCHMARK(mergeLinesWithGeos)->RangeMultiplier(10)->Range(1'000, 1'000'000)->Unit(benchmark::kMillisecond);

} // namespace
