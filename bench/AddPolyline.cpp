// Adding one line to a network of many: the new line crosses two others, and all are cut. The cost must not grow with
// the network.

#include <stdexcept>

#include <benchmark/benchmark.h>

#include "bench/MemoryLayer.h"

namespace {

using namespace qz;

// A grid of streets 10 m apart, cut at their crossings.
std::vector<Geometry> streets(std::int64_t count) {
    std::vector<Geometry> lines;
    for (std::int64_t i = 0; i < count; ++i) {
        const double x = 500000 + 10 * static_cast<double>(i / 2 % 20), y = 5500000 + 10 * static_cast<double>(i / 40);
        Polyline line;
        line.paths.emplace_back(std::vector<XY>{{x, y}, i % 2 == 0 ? XY{x + 10, y} : XY{x, y + 10}});
        lines.emplace_back(std::move(line));
    }
    return lines;
}

void addOne(benchmark::State& state) {
    bench::MemoryLayer layer(streets(state.range(0)));
    Polyline line;
    line.spatialReference = layer.reference;
    line.paths.emplace_back(std::vector<XY>{{500023, 5500007}, {500032, 5500013}});
    for (auto _ : state) {
        layer.workspace->startEditOperation();
        std::int32_t expected = 0;
        if (!layer.component.QZ_AddPolyline(*layer.layer, line, layer.refresh, expected, true, "Node", false,
                                            layer.host) ||
            layer.featureClass().count() != state.range(0) + 5) {
            throw std::runtime_error("the line was not noded");
        }
        layer.workspace->abortEditOperation();
    }
}

BENCHMARK(addOne)->RangeMultiplier(10)->Range(1'000, 1'000'000)->Unit(benchmark::kMicrosecond);

} // namespace
