// Overlaps and gaps of a pavement of parcels of 12 segments, and taking its parcels apart, beside the same with GEOS:
// an STR tree and pairwise intersections; the union of all taken from its envelope. One parcel in nine lies a little
// off its place (second argument 1), or all were digitised on their own, so that no border is shared (0).

#include <cmath>
#include <stdexcept>

#include <benchmark/benchmark.h>

#include "bench/MemoryLayer.h"
#include "platform/geometry/geos/GeosGeometry.h"
#include "tests/topology/DirtyPavement.h"

namespace {

using namespace qz;

std::vector<Geometry> parcels(const benchmark::State& state) {
    const int size = static_cast<int>(std::sqrt(static_cast<double>(state.range(0))));
    const bool isMostlyClean = state.range(1) == 1;
    std::vector<Path> rings = isMostlyClean ? test::cleanRings(size, 1) : test::dirtyRings(size, 0.2, 1);
    std::vector<Geometry> shapes;
    for (std::size_t i = 0; i < rings.size(); ++i) {
        if (isMostlyClean && i % 9 == 0) {
            rings[i].transform([](Vertex& vertex) { vertex.x += 0.3; });
        }
        Polygon polygon;
        polygon.rings.push_back(std::move(rings[i]));
        shapes.emplace_back(std::move(polygon));
    }
    return shapes;
}

void drawOverlaps(benchmark::State& state) {
    bench::MemoryLayer layer(parcels(state));
    const Envelope extent = layer.featureClass().extent();
    const auto count = static_cast<std::int32_t>(state.range(0));
    for (auto _ : state) {
        layer.host.focusMap().activeView().display().clear();
        if (!layer.component.QZ_DrawOverlaps(*layer.layer, count, layer.refresh, &extent, {}, layer.host)) {
            throw std::runtime_error("the overlaps were not found");
        }
    }
    state.counters["overlaps"] = static_cast<double>(layer.host.focusMap().activeView().display().drawings().size());
}

void takeApart(benchmark::State& state) {
    bench::MemoryLayer layer(parcels(state));
    layer.layer->selection().select(layer.featureClass().ids({}));
    const auto count = static_cast<std::int32_t>(state.range(0));
    for (auto _ : state) {
        layer.workspace->startEditOperation();
        if (!layer.component.QZ_IntersectSelectedPolygons(*layer.layer, count, layer.refresh, nullptr, layer.host)) {
            throw std::runtime_error("the parcels were not taken apart");
        }
        state.PauseTiming();
        state.counters["overlaps"] = static_cast<double>(layer.featureClass().count() - state.range(0));
        layer.workspace->abortEditOperation();
        state.ResumeTiming();
    }
}

void drawGaps(benchmark::State& state) {
    bench::MemoryLayer layer(parcels(state));
    const Envelope extent = layer.featureClass().extent().expandedBy(100, 100);
    for (auto _ : state) {
        layer.host.focusMap().activeView().display().clear();
        Envelope window = extent;
        if (!layer.component.QZ_DrawGaps(*layer.layer, &window, layer.refresh, {}, false, "", layer.host)) {
            throw std::runtime_error("the gaps were not found");
        }
    }
    state.counters["gaps"] = static_cast<double>(layer.host.focusMap().activeView().display().drawings().size());
}

struct GeosParcels {
    explicit GeosParcels(const std::vector<Geometry>& shapes) {
        for (const Geometry& shape : shapes) {
            polygons.push_back(toGeos(shape));
        }
    }
    GEOSContextHandle_t handle = GeosContext::ofThread().handle();
    std::vector<GeosGeometryPtr> polygons;
};

void overlapsWithGeos(benchmark::State& state) {
    GeosParcels parcelsOfGeos(parcels(state));
    const GEOSContextHandle_t handle = parcelsOfGeos.handle;
    struct Query {
        GEOSContextHandle_t handle;
        const GeosGeometryPtr* polygon;
        double overlaps;
    };
    Query query{handle, nullptr, 0};
    for (auto _ : state) {
        GEOSSTRtree* tree = GEOSSTRtree_create_r(handle, 10);
        for (GeosGeometryPtr& polygon : parcelsOfGeos.polygons) {
            GEOSSTRtree_insert_r(handle, tree, polygon.get(), &polygon);
        }
        query.overlaps = 0;
        for (const GeosGeometryPtr& polygon : parcelsOfGeos.polygons) {
            query.polygon = &polygon;
            GEOSSTRtree_query_r(
                handle, tree, polygon.get(),
                [](void* item, void* data) {
                    auto& asked = *static_cast<Query*>(data);
                    const auto* other = static_cast<const GeosGeometryPtr*>(item);
                    if (other >= asked.polygon) {
                        return;
                    }
                    const GeosGeometryPtr common(GEOSIntersection_r(asked.handle, asked.polygon->get(), other->get()));
                    double area = 0;
                    GEOSArea_r(asked.handle, common.get(), &area);
                    asked.overlaps += area > 0 ? 1 : 0;
                },
                &query);
        }
        GEOSSTRtree_destroy_r(handle, tree);
    }
    state.counters["overlaps"] = query.overlaps;
}

void gapsWithGeos(benchmark::State& state) {
    GeosParcels parcelsOfGeos(parcels(state));
    const GEOSContextHandle_t handle = parcelsOfGeos.handle;
    const GeosGeometryPtr all = collect(std::move(parcelsOfGeos.polygons), GEOS_MULTIPOLYGON);
    for (auto _ : state) {
        const GeosGeometryPtr covered(GEOSUnaryUnion_r(handle, all.get()));
        const GeosGeometryPtr extent(GEOSEnvelope_r(handle, all.get()));
        const GeosGeometryPtr gaps(GEOSDifference_r(handle, extent.get(), covered.get()));
        state.counters["gaps"] = GEOSGetNumGeometries_r(handle, gaps.get());
    }
}

void sizes(benchmark::internal::Benchmark* benchmark, std::int64_t largest) {
    for (std::int64_t count = 1'000; count <= largest; count *= 10) {
        for (const std::int64_t isMostlyClean : {1, 0}) {
            benchmark->Args({count, isMostlyClean});
        }
    }
    benchmark->Unit(benchmark::kMillisecond);
}

BENCHMARK(drawOverlaps)->Apply([](auto* benchmark) { sizes(benchmark, 1'000'000); });
BENCHMARK(takeApart)->Apply([](auto* benchmark) { sizes(benchmark, 100'000); });
BENCHMARK(overlapsWithGeos)->Apply([](auto* benchmark) { sizes(benchmark, 100'000); });
BENCHMARK(drawGaps)->Apply([](auto* benchmark) { sizes(benchmark, 1'000'000); });
BENCHMARK(gapsWithGeos)->Apply([](auto* benchmark) { sizes(benchmark, 100'000); });

} // namespace
