// Pasting a value into every feature of a GeoPackage, saved feature by feature, beside the same updates made with GDAL
// in a transaction each; and one spatial search. Grows with the number of features.

#include <filesystem>
#include <sstream>

#include <benchmark/benchmark.h>
#include <fmt/format.h>
#include <ogrsf_frmts.h>

#include "common/ApplicationReference.h"
#include "common/QZFuzzyTolerance.h"
#include "common/QZSpatialSearch.h"
#include "component/MKQZGenFunRun.h"
#include "host/HeadlessHost.h"
#include "host/RefreshAreaRecord.h"
#include "platform/data/overlay/OverlayClass.h"
#include "platform/store/Stores.h"

namespace {

using namespace qz;
namespace fs = std::filesystem;

const fs::path folder = fs::temp_directory_path() / "qz-bench-paste";

struct CloseDataset {
    void operator()(GDALDataset* dataset) const { GDALClose(dataset); }
};
using DatasetPtr = std::unique_ptr<GDALDataset, CloseDataset>;

void addPoint(OGRLayer& layer, std::int64_t number) {
    OGRFeature feature(layer.GetLayerDefn());
    feature.SetField(0, "before");
    OGRPoint point(500000 + static_cast<double>(number % 1000) * 10, 5500000 + static_cast<double>(number / 1000) * 10);
    feature.SetGeometry(&point);
    if (layer.CreateFeature(&feature) != OGRERR_NONE) {
        throw std::runtime_error("a point can't be written");
    }
}

// A layer of so many points on a lattice of 10 m, 1,000 a row; made once.
fs::path layerOf(std::int64_t count) {
    fs::create_directories(folder);
    const fs::path path = folder / fmt::format("points-{}.gpkg", count);
    if (!fs::exists(path)) {
        GDALAllRegister();
        const DatasetPtr dataset(
            GetGDALDriverManager()->GetDriverByName("GPKG")->Create(path.c_str(), 0, 0, 0, GDT_Unknown, nullptr));
        OGRSpatialReference reference;
        reference.importFromEPSG(25832);
        OGRLayer& layer = *dataset->CreateLayer("points", &reference, wkbPoint);
        OGRFieldDefn field("NAME", OFTString);
        layer.CreateField(&field);
        dataset->StartTransaction();
        for (std::int64_t number = 0; number < count; ++number) {
            addPoint(layer, number);
        }
        dataset->CommitTransaction();
    }
    return path;
}

// The layer opened for editing by the component, under a map.
struct OpenPoints {
    explicit OpenPoints(const fs::path& path)
        : workspace(openStore(path, OpenMode::edit)), points(*workspace.table("points")),
          layer(host.focusMap().addLayer("points", points)) {}

    std::ostringstream terminal;
    HeadlessHost host{terminal, false};
    OverlayWorkspace workspace;
    FeatureClass& points;
    FeatureLayer& layer;
};

void pasteSavingEach(benchmark::State& state) {
    OpenPoints open(layerOf(state.range(0)));
    MKQZGenFunRun component;
    RefreshAreaRecord refresh;
    Dictionary values;
    values.add(std::string("NAME"), std::string("after"));
    for (auto _ : state) {
        const CursorPtr cursor = open.points.update({});
        if (!component.QZ_PasteAttributes(open.layer, *cursor, refresh, &values, false, open.host)) {
            throw std::runtime_error("pasting failed");
        }
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void gdalTransactionEach(benchmark::State& state) {
    GDALAllRegister();
    const DatasetPtr dataset(GDALDataset::Open(layerOf(state.range(0)).c_str(), GDAL_OF_VECTOR | GDAL_OF_UPDATE));
    OGRLayer& layer = *dataset->GetLayer(0);
    for (auto _ : state) {
        for (GIntBig id = 1; id <= state.range(0); ++id) {
            dataset->StartTransaction();
            const std::unique_ptr<OGRFeature> feature(layer.GetFeature(id));
            feature->SetField(0, "after");
            if (layer.SetFeature(feature.get()) != OGRERR_NONE || dataset->CommitTransaction() != OGRERR_NONE) {
                throw std::runtime_error("updating failed");
            }
        }
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

// 100 features, whatever the size of the layer.
void spatialSearch(benchmark::State& state) {
    OpenPoints open(layerOf(state.range(0)));
    const Geometry window = rectangle({500000, 5500000, 500095, 5500095}, open.points.spatialReference());
    for (auto _ : state) {
        std::int64_t found = 0;
        const CursorPtr cursor = QZ_FindFeaturesSpatialy(window, open.points, {}, "Intersects", "");
        while (cursor->next()) {
            ++found;
        }
        if (found == 0) {
            throw std::runtime_error("nothing was found");
        }
    }
}

void fuzzyTolerance(benchmark::State& state) {
    OpenPoints open(layerOf(state.range(0)));
    setApplication(open.host);
    for (auto _ : state) {
        benchmark::DoNotOptimize(QZ_CalcFuzzyToleranceFC(open.points));
    }
}

BENCHMARK(pasteSavingEach)->Arg(1'000)->Arg(10'000)->Unit(benchmark::kMillisecond)->Iterations(1)->UseRealTime();
BENCHMARK(gdalTransactionEach)->Arg(1'000)->Arg(10'000)->Unit(benchmark::kMillisecond)->Iterations(1)->UseRealTime();
BENCHMARK(spatialSearch)->Arg(1'000)->Arg(100'000)->Arg(1'000'000)->Unit(benchmark::kMicrosecond);
BENCHMARK(fuzzyTolerance)->Arg(1'000)->Arg(100'000)->Arg(1'000'000)->Unit(benchmark::kMicrosecond);

} // namespace
