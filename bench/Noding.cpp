// Finding where segments meet, beside GEOSNode, which also breaks the lines. Grows with the number of segments: random
// lines of ten vertices, and one line that holds them all.

#include <cmath>
#include <random>
#include <stdexcept>

#include <benchmark/benchmark.h>

#include "platform/geometry/Noding.h"
#include "platform/geometry/geos/GeosGeometry.h"

namespace {

using namespace qz;

// The area grows with the segments, so that crossings per segment stay the same.
Polyline randomLines(std::int64_t segments, std::int64_t segmentsPerLine) {
    std::mt19937 random(1);
    std::uniform_real_distribution<double> place(0, std::sqrt(static_cast<double>(segments)) * 10);
    std::uniform_real_distribution<double> step(-5, 5);
    Polyline lines;
    for (std::int64_t i = 0; i < segments / segmentsPerLine; ++i) {
        std::vector<XY> xy{{place(random), place(random)}};
        XY heading{step(random), step(random)};
        for (std::int64_t vertex = 0; vertex < segmentsPerLine; ++vertex) {
            heading = {heading.x + step(random) / 5, heading.y + step(random) / 5};
            xy.push_back({xy.back().x + heading.x, xy.back().y + heading.y});
        }
        lines.paths.emplace_back(std::move(xy));
    }
    return lines;
}

void nodesOfShortLines(benchmark::State& state) {
    const Geometry lines = randomLines(state.range(0), 10);
    const std::vector<const Path*> paths = pathsOf(lines);
    std::size_t found = 0;
    for (auto _ : state) {
        found = 0;
        for (const std::vector<Node>& nodes : nodesOf(paths)) {
            found += nodes.size();
        }
        if (found == 0) {
            throw std::runtime_error("no node was found");
        }
    }
    state.counters["nodes"] = static_cast<double>(found);
}

void nodesOfLongLines(benchmark::State& state) {
    const Geometry lines = randomLines(state.range(0), 1000);
    const std::vector<const Path*> paths = pathsOf(lines);
    for (auto _ : state) {
        benchmark::DoNotOptimize(nodesOf(paths));
    }
}

void nodesByGeos(benchmark::State& state) {
    const GeosGeometryPtr lines = toGeos(randomLines(state.range(0), 10));
    for (auto _ : state) {
        const GeosGeometryPtr noded(GEOSNode_r(GeosContext::ofThread().handle(), lines.get()));
        benchmark::DoNotOptimize(noded.get());
    }
}

void sizes(benchmark::internal::Benchmark* benchmark) {
    benchmark->RangeMultiplier(10)->Range(1000, 1000000)->Unit(benchmark::kMillisecond);
}

BENCHMARK(nodesOfShortLines)->Apply(sizes);
BENCHMARK(nodesOfLongLines)->Apply(sizes);
BENCHMARK(nodesByGeos)->Apply(sizes);

} // namespace
