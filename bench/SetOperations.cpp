// Set operations, cuts and relations beside GEOS called directly on the same shapes. Grows with the number of vertices
// of two noisy rings that overlap widely, and with the number of polygons united.

#include <cmath>
#include <numbers>
#include <random>
#include <stdexcept>

#include <benchmark/benchmark.h>

#include "platform/geometry/Cut.h"
#include "platform/geometry/Relations.h"
#include "platform/geometry/SetOperations.h"
#include "platform/geometry/geos/GeosGeometry.h"

namespace {

using namespace qz;

constexpr double fullTurn = 2 * std::numbers::pi;

Polygon noisyRing(std::int64_t vertices, XY centre, unsigned seed) {
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> radius(95, 100);
    std::vector<XY> xy;
    for (std::int64_t i = 0; i < vertices; ++i) {
        const double angle = -fullTurn * static_cast<double>(i) / static_cast<double>(vertices);
        const double r = radius(random);
        xy.push_back({centre.x + r * std::cos(angle), centre.y + r * std::sin(angle)});
    }
    xy.push_back(xy.front());
    Polygon polygon;
    polygon.rings.emplace_back(std::move(xy));
    return polygon;
}

Polygon first(const benchmark::State& state) {
    return noisyRing(state.range(0), {5e6, 5e6}, 1);
}

Polygon second(const benchmark::State& state) {
    return noisyRing(state.range(0), {5e6 + 20, 5e6 + 10}, 2);
}

GEOSContextHandle_t handle() {
    return GeosContext::ofThread().handle();
}

void consume(benchmark::State& state, const Geometry& result) {
    if (result.isEmpty()) {
        throw std::runtime_error("nothing came out");
    }
    benchmark::DoNotOptimize(result);
    state.SetComplexityN(state.range(0));
}

void consume(benchmark::State& state, GEOSGeometry* result) {
    if (result == nullptr || GEOSisEmpty_r(handle(), result) != 0) {
        throw std::runtime_error("nothing came out");
    }
    GEOSGeom_destroy_r(handle(), result);
    state.SetComplexityN(state.range(0));
}

void intersectionOfQz(benchmark::State& state) {
    const Geometry a = first(state), b = second(state);
    for (auto _ : state) {
        consume(state, intersection(a, b, ResultDimension::areas));
    }
}

void intersectionOfGeos(benchmark::State& state) {
    const GeosGeometryPtr a = toGeos(first(state)), b = toGeos(second(state));
    for (auto _ : state) {
        consume(state, GEOSIntersection_r(handle(), a.get(), b.get()));
    }
}

void unionOfQz(benchmark::State& state) {
    const Geometry a = first(state), b = second(state);
    for (auto _ : state) {
        consume(state, unionOf(a, b));
    }
}

void unionOfGeos(benchmark::State& state) {
    const GeosGeometryPtr a = toGeos(first(state)), b = toGeos(second(state));
    for (auto _ : state) {
        consume(state, GEOSUnion_r(handle(), a.get(), b.get()));
    }
}

void differenceOfQz(benchmark::State& state) {
    const Geometry a = first(state), b = second(state);
    for (auto _ : state) {
        consume(state, difference(a, b));
    }
}

void differenceOfGeos(benchmark::State& state) {
    const GeosGeometryPtr a = toGeos(first(state)), b = toGeos(second(state));
    for (auto _ : state) {
        consume(state, GEOSDifference_r(handle(), a.get(), b.get()));
    }
}

Polyline lineThrough(const Polygon& polygon) {
    const Envelope box = polygon.envelope();
    Polyline line;
    line.paths.emplace_back(std::vector<XY>{{box.xMin - 1, box.yMin - 3}, {box.xMax + 2, box.yMax + 1}});
    return line;
}

void cutOfQz(benchmark::State& state) {
    const Polygon polygon = first(state);
    const Polyline line = lineThrough(polygon);
    for (auto _ : state) {
        consume(state, cut(polygon, line).value().left);
    }
}

// Noding of outline and line, then the faces: what a user of GEOS would do, without telling left from right.
void cutOfGeos(benchmark::State& state) {
    const Polygon polygon = first(state);
    const GeosGeometryPtr area = toGeos(polygon), line = toGeos(lineThrough(polygon));
    for (auto _ : state) {
        const GeosGeometryPtr outline(GEOSBoundary_r(handle(), area.get()));
        const GeosGeometryPtr noded(GEOSUnion_r(handle(), outline.get(), line.get()));
        const GEOSGeometry* lines[] = {noded.get()};
        consume(state, GEOSPolygonize_r(handle(), lines, 1));
    }
}

// The second ring shrunk about its centre, so that it lies within the first.
Polygon inner(const benchmark::State& state) {
    Polygon polygon = noisyRing(state.range(0), {5e6, 5e6}, 2);
    polygon.rings.front().transform([](Vertex& vertex) {
        vertex.x = 5e6 + 0.9 * (vertex.x - 5e6);
        vertex.y = 5e6 + 0.9 * (vertex.y - 5e6);
    });
    return polygon;
}

void expect(benchmark::State& state, bool expected, bool found) {
    if (found != expected) {
        throw std::runtime_error("the relation is another");
    }
    state.SetComplexityN(state.range(0));
}

void intersectsOfQz(benchmark::State& state) {
    const Geometry a = first(state), b = second(state);
    for (auto _ : state) {
        expect(state, true, intersects(a, b));
    }
}

void intersectsOfGeos(benchmark::State& state) {
    const GeosGeometryPtr a = toGeos(first(state)), b = toGeos(second(state));
    for (auto _ : state) {
        expect(state, true, GEOSIntersects_r(handle(), a.get(), b.get()) == 1);
    }
}

void withinOfQz(benchmark::State& state) {
    const Geometry a = inner(state), b = first(state);
    for (auto _ : state) {
        expect(state, true, within(a, b));
    }
}

void withinOfGeos(benchmark::State& state) {
    const GeosGeometryPtr a = toGeos(inner(state)), b = toGeos(first(state));
    for (auto _ : state) {
        expect(state, true, GEOSWithin_r(handle(), a.get(), b.get()) == 1);
    }
}

void touchesOfQz(benchmark::State& state) {
    const Geometry a = first(state), b = second(state);
    for (auto _ : state) {
        expect(state, false, touches(a, b));
    }
}

void touchesOfGeos(benchmark::State& state) {
    const GeosGeometryPtr a = toGeos(first(state)), b = toGeos(second(state));
    for (auto _ : state) {
        expect(state, false, GEOSTouches_r(handle(), a.get(), b.get()) == 1);
    }
}

// Small squares all over the ring, each tested against it once it is ready.
std::vector<Geometry> squares() {
    std::mt19937 random(3);
    std::uniform_real_distribution<double> place(5e6 - 120, 5e6 + 120);
    std::vector<Geometry> result;
    for (int i = 0; i < 100; ++i) {
        const double x = place(random), y = place(random);
        result.emplace_back(rectangle({x, y, x + 3, y + 3}, {}));
    }
    return result;
}

void preparedOfQz(benchmark::State& state) {
    const PreparedRelation relation(first(state), SpatialRelation::intersects);
    const std::vector<Geometry> tested = squares();
    for (auto _ : state) {
        for (const Geometry& square : tested) {
            benchmark::DoNotOptimize(relation.holdsFor(square));
        }
    }
}

void preparedOfGeos(benchmark::State& state) {
    const GeosGeometryPtr search = toGeos(first(state));
    const GeosPreparedPtr prepared(GEOSPrepare_r(handle(), search.get()));
    std::vector<GeosGeometryPtr> tested;
    for (const Geometry& square : squares()) {
        tested.push_back(toGeos(square));
    }
    for (auto _ : state) {
        for (const GeosGeometryPtr& square : tested) {
            benchmark::DoNotOptimize(GEOSPreparedIntersects_r(handle(), prepared.get(), square.get()));
        }
    }
}

std::vector<Geometry> manyPolygons(std::int64_t count) {
    std::vector<Geometry> polygons;
    const auto columns = static_cast<std::int64_t>(std::sqrt(static_cast<double>(count)));
    for (std::int64_t i = 0; i < count; ++i) {
        const XY centre{5e6 + 150 * static_cast<double>(i % columns), 5e6 + 150 * static_cast<double>(i / columns)};
        polygons.push_back(noisyRing(20, centre, static_cast<unsigned>(i)));
    }
    return polygons;
}

void unionOfManyOfQz(benchmark::State& state) {
    const std::vector<Geometry> polygons = manyPolygons(state.range(0));
    for (auto _ : state) {
        consume(state, unionOf(polygons));
    }
}

void unionOfManyOfGeos(benchmark::State& state) {
    std::vector<GeosGeometryPtr> parts;
    for (const Geometry& polygon : manyPolygons(state.range(0))) {
        parts.push_back(toGeos(polygon));
    }
    const GeosGeometryPtr all = collect(std::move(parts), GEOS_MULTIPOLYGON);
    for (auto _ : state) {
        consume(state, GEOSUnaryUnion_r(handle(), all.get()));
    }
}

void sizes(benchmark::internal::Benchmark* benchmark) {
    benchmark->Arg(100)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
}

BENCHMARK(intersectionOfQz)->Apply(sizes);
BENCHMARK(intersectionOfGeos)->Apply(sizes);
BENCHMARK(unionOfQz)->Apply(sizes);
BENCHMARK(unionOfGeos)->Apply(sizes);
BENCHMARK(differenceOfQz)->Apply(sizes);
BENCHMARK(differenceOfGeos)->Apply(sizes);
BENCHMARK(cutOfQz)->Apply(sizes);
BENCHMARK(cutOfGeos)->Apply(sizes);
BENCHMARK(intersectsOfQz)->Apply(sizes);
BENCHMARK(intersectsOfGeos)->Apply(sizes);
BENCHMARK(withinOfQz)->Apply(sizes);
BENCHMARK(withinOfGeos)->Apply(sizes);
BENCHMARK(touchesOfQz)->Apply(sizes);
BENCHMARK(touchesOfGeos)->Apply(sizes);
BENCHMARK(preparedOfQz)->Apply(sizes);
BENCHMARK(preparedOfGeos)->Apply(sizes);
BENCHMARK(unionOfManyOfQz)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(unionOfManyOfGeos)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);

} // namespace
