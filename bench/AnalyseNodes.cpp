// The ends of lines, and duplicate lines, of a whole layer, beside a walk over the layer that touches every shape.

#include <cmath>
#include <limits>

#include <benchmark/benchmark.h>

#include "bench/MemoryLayer.h"

namespace {

using namespace qz;

constexpr std::int32_t anyNumber = std::numeric_limits<std::int32_t>::max();

// Streets of five vertices around the cells of a square grid; every tenth is there twice.
std::vector<Geometry> streets(std::int64_t count) {
    const auto columns = static_cast<std::int64_t>(std::sqrt(static_cast<double>(count) / 2)) + 1;
    std::vector<Geometry> lines;
    for (std::int64_t i = 0; i < count; ++i) {
        const std::int64_t cell = (i % 10 == 9 ? i - 2 : i) / 2;
        const double x = 500000 + 80 * static_cast<double>(cell % columns);
        const double y = 5500000 + 80 * static_cast<double>(cell / columns);
        std::vector<XY> places;
        for (int k = 0; k < 5; ++k) {
            places.push_back(i % 2 == 0 ? XY{x + 20 * k, y + k % 2} : XY{x + k % 2, y + 20 * k});
        }
        Polyline line;
        line.paths.emplace_back(std::move(places));
        lines.emplace_back(std::move(line));
    }
    return lines;
}

void readLayer(benchmark::State& state) {
    bench::MemoryLayer layer(streets(state.range(0)));
    for (auto _ : state) {
        const CursorPtr cursor = layer.featureClass().search({});
        double sum = 0;
        for (FeaturePtr line = cursor->next(); line; line = cursor->next()) {
            for (const XY place : line->shape()->as<Polyline>().paths.front().xy()) {
                sum += place.x;
            }
        }
        benchmark::DoNotOptimize(sum);
    }
}

void analyseNodes(benchmark::State& state) {
    bench::MemoryLayer layer(streets(state.range(0)));
    ActiveView& view = layer.host.focusMap().activeView();
    bool checked = false;
    for (auto _ : state) {
        const auto nodes = layer.component.QZ_AnalyseNodes(view, *layer.layer, layer.reference, "All", "all", true,
                                                           anyNumber, checked);
        state.counters["nodes"] = static_cast<double>(nodes.value().ids.size());
    }
}

void findDuplicates(benchmark::State& state) {
    bench::MemoryLayer layer(streets(state.range(0)));
    ActiveView& view = layer.host.focusMap().activeView();
    bool checked = false;
    for (auto _ : state) {
        const auto lines = layer.component.QZ_FindDupPolylines(view, layer.featureClass(), layer.reference, "All",
                                                               0.001, anyNumber, checked);
        state.counters["lines"] = static_cast<double>(lines.value().geometries.size());
    }
}

BENCHMARK(readLayer)->RangeMultiplier(10)->Range(1'000, 1'000'000)->Unit(benchmark::kMillisecond);
BENCHMARK(analyseNodes)->RangeMultiplier(10)->Range(1'000, 1'000'000)->Unit(benchmark::kMillisecond);
BENCHMARK(findDuplicates)->RangeMultiplier(10)->Range(1'000, 1'000'000)->Unit(benchmark::kMillisecond);

} // namespace
