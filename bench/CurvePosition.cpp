// What positions along a long line cost: cutting it at many places in one walk against one sub-curve after the other,
// the nearest place to a point against GEOS (GEOSProject), generalizing against GEOSSimplify. Grows with the number of
// vertices; the line wanders, so that its segments are short for the whole.

#include <cmath>
#include <memory>
#include <random>
#include <stdexcept>
#include <vector>

#include <benchmark/benchmark.h>
#include <geos_c.h>

#include "platform/geometry/CurveIndex.h"
#include "platform/geometry/CurvePosition.h"
#include "platform/geometry/Generalize.h"
#include "platform/geometry/Measures.h"
#include "platform/geometry/SubCurve.h"

namespace {

using namespace qz;

Path wanderingLine(std::int64_t vertices) {
    std::mt19937 random(1);
    std::uniform_real_distribution<double> turn(-0.5, 0.5);
    std::vector<XY> xy;
    XY at{500000, 5500000};
    double heading = 0;
    for (std::int64_t i = 0; i < vertices; ++i) {
        xy.push_back(at);
        heading += turn(random);
        at = {at.x + 10 * std::cos(heading), at.y + 10 * std::sin(heading)};
    }
    return Path(std::move(xy));
}

// Spread over the extent of the line, always the same.
std::vector<XY> pointsAround(const Path& path, std::size_t count) {
    std::mt19937 random(2);
    const Envelope extent = path.envelope();
    std::uniform_real_distribution<double> x(extent.xMin, extent.xMax);
    std::uniform_real_distribution<double> y(extent.yMin, extent.yMax);
    std::vector<XY> points;
    for (std::size_t i = 0; i < count; ++i) {
        points.push_back({x(random), y(random)});
    }
    return points;
}

constexpr std::size_t pointCount = 256;

std::vector<double> evenRatios(std::int64_t count) {
    std::vector<double> ratios;
    for (std::int64_t i = 1; i <= count; ++i) {
        ratios.push_back(static_cast<double>(i) / static_cast<double>(count + 1));
    }
    return ratios;
}

// A GEOS line or point, freed with its context.
class GeosShape {
public:
    explicit GeosShape(std::span<const XY> xy) : context_(GEOS_init_r()) {
        GEOSCoordSequence* sequence =
            GEOSCoordSeq_copyFromBuffer_r(context_, &xy[0].x, static_cast<unsigned>(xy.size()), 0, 0);
        shape_ = xy.size() == 1 ? GEOSGeom_createPoint_r(context_, sequence)
                                : GEOSGeom_createLineString_r(context_, sequence);
    }
    ~GeosShape() {
        GEOSGeom_destroy_r(context_, shape_);
        GEOS_finish_r(context_);
    }
    GeosShape(const GeosShape&) = delete;
    GeosShape& operator=(const GeosShape&) = delete;

    [[nodiscard]] GEOSContextHandle_t context() const { return context_; }
    [[nodiscard]] const GEOSGeometry* get() const { return shape_; }

private:
    GEOSContextHandle_t context_;
    GEOSGeometry* shape_ = nullptr;
};

void splitAtOnce(benchmark::State& state) {
    const Path path = wanderingLine(state.range(0));
    const std::vector<double> ratios = evenRatios(state.range(0) / 10);
    for (auto _ : state) {
        const std::vector<Path> pieces = splitAtRatios(path, ratios);
        if (pieces.size() != ratios.size() + 1) {
            state.SkipWithError("pieces are missing");
        }
    }
}

void splitOneByOne(benchmark::State& state) {
    Polyline line;
    line.paths.push_back(wanderingLine(state.range(0)));
    std::vector<double> ratios = evenRatios(state.range(0) / 10);
    ratios.push_back(1);
    for (auto _ : state) {
        double from = 0;
        for (const double to : ratios) {
            benchmark::DoNotOptimize(subCurve(line, from, to));
            from = to;
        }
    }
}

template <typename Locate> void locate(benchmark::State& state, const Path& path, Locate position) {
    const std::vector<XY> points = pointsAround(path, pointCount);
    const double total = length(path);
    for (auto _ : state) {
        for (const XY p : points) {
            const double along = position(p);
            if (!(along >= 0 && along <= total)) {
                state.SkipWithError("a position is off the line");
            }
        }
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(points.size()));
}

void nearestByWalk(benchmark::State& state) {
    const Path path = wanderingLine(state.range(0));
    locate(state, path, [&path](XY p) { return positionOf(p, path)->distanceAlong; });
}

void nearestByIndex(benchmark::State& state) {
    const Path path = wanderingLine(state.range(0));
    const CurveIndex index(path);
    locate(state, path, [&index](XY p) { return index.positionOf(p)->distanceAlong; });
}

void buildIndex(benchmark::State& state) {
    const Path path = wanderingLine(state.range(0));
    for (auto _ : state) {
        benchmark::DoNotOptimize(CurveIndex(path).length());
    }
}

void nearestWithGeos(benchmark::State& state) {
    const Path path = wanderingLine(state.range(0));
    const GeosShape line(path.xy());
    std::vector<std::unique_ptr<GeosShape>> points;
    for (const XY p : pointsAround(path, pointCount)) {
        points.push_back(std::make_unique<GeosShape>(std::span(&p, 1)));
    }
    std::size_t next = 0;
    locate(state, path,
           [&](XY) { return GEOSProject_r(line.context(), line.get(), points[next++ % pointCount]->get()); });
}

// The positions that the two compared find are the same ones.
[[maybe_unused]] const bool positionsAgree = [] {
    const Path path = wanderingLine(1000);
    const GeosShape line(path.xy());
    for (const XY p : pointsAround(path, pointCount)) {
        const GeosShape point(std::span(&p, 1));
        const double along = GEOSProject_r(line.context(), line.get(), point.get());
        if (std::abs(along - positionOf(p, path)->distanceAlong) > 1e-6) {
            throw std::runtime_error("GEOS finds another position");
        }
    }
    return true;
}();

void generalizeLine(benchmark::State& state) {
    Polyline line;
    line.paths.push_back(wanderingLine(state.range(0)));
    for (auto _ : state) {
        Polyline result = line;
        generalize(result, 5);
        benchmark::DoNotOptimize(result.paths.front().vertexCount());
    }
}

void simplifyWithGeos(benchmark::State& state) {
    const GeosShape line(wanderingLine(state.range(0)).xy());
    for (auto _ : state) {
        GEOSGeometry* result = GEOSSimplify_r(line.context(), line.get(), 5);
        benchmark::DoNotOptimize(result);
        GEOSGeom_destroy_r(line.context(), result);
    }
}

BENCHMARK(splitAtOnce)->RangeMultiplier(10)->Range(1000, 100000)->Unit(benchmark::kMicrosecond);
BENCHMARK(splitOneByOne)->RangeMultiplier(10)->Range(1000, 10000)->Unit(benchmark::kMicrosecond);
BENCHMARK(nearestByWalk)->RangeMultiplier(10)->Range(100, 100000)->Unit(benchmark::kMicrosecond);
BENCHMARK(nearestByIndex)->RangeMultiplier(10)->Range(100, 100000)->Unit(benchmark::kMicrosecond);
BENCHMARK(buildIndex)->RangeMultiplier(10)->Range(100, 100000)->Unit(benchmark::kMicrosecond);
BENCHMARK(nearestWithGeos)->RangeMultiplier(10)->Range(100, 100000)->Unit(benchmark::kMicrosecond);
BENCHMARK(generalizeLine)->RangeMultiplier(10)->Range(100, 100000)->Unit(benchmark::kMicrosecond);
BENCHMARK(simplifyWithGeos)->RangeMultiplier(10)->Range(100, 100000)->Unit(benchmark::kMicrosecond);

} // namespace
