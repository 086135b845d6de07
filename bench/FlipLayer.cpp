// What flipping costs, beside GDAL alone: one feature of a layer against opening it and updating that feature with
// GDAL, all of them against a plain copy of the layer as ogr2ogr makes it. Grows with the number of features, 10
// vertices and 3 values each.

#include <filesystem>
#include <sstream>

#include <benchmark/benchmark.h>
#include <fmt/format.h>
#include <gdal_utils.h>
#include <ogrsf_frmts.h>

#include "component/MKQZGenFunRun.h"
#include "host/HeadlessHost.h"
#include "host/RefreshAreaRecord.h"
#include "platform/data/overlay/OverlayClass.h"
#include "platform/store/Stores.h"

namespace {

using namespace qz;
namespace fs = std::filesystem;

const fs::path folder = fs::temp_directory_path() / "qz-bench-flip";

void addLine(OGRLayer& layer, std::int64_t number) {
    OGRFeature feature(layer.GetLayerDefn());
    feature.SetField(0, "Some Street");
    feature.SetField(1, static_cast<int>(number % 5));
    feature.SetField(2, 0.1 * static_cast<double>(number));
    OGRLineString line;
    const double x = 500000 + static_cast<double>(number % 1000) * 100;
    const double y = 5500000 + static_cast<double>(number / 1000) * 100;
    for (int vertex = 0; vertex < 10; ++vertex) {
        line.addPoint(x + vertex * 9.125, y + vertex * 37 % 11);
    }
    feature.SetGeometry(&line);
    if (layer.CreateFeature(&feature) != OGRERR_NONE) {
        throw std::runtime_error("a line can't be written");
    }
}

// A layer of so many lines; made once.
fs::path layerOf(std::int64_t count) {
    fs::create_directories(folder);
    const fs::path path = folder / fmt::format("lines-{}.gpkg", count);
    if (fs::exists(path)) {
        return path;
    }
    auto* dataset =
        GetGDALDriverManager()->GetDriverByName("GPKG")->Create(path.c_str(), 0, 0, 0, GDT_Unknown, nullptr);
    OGRSpatialReference reference;
    reference.importFromEPSG(25832);
    OGRLayer& layer = *dataset->CreateLayer("lines", &reference, wkbLineString);
    OGRFieldDefn fields[] = {{"NAME", OFTString}, {"LANES", OFTInteger}, {"LENGTH_M", OFTReal}};
    for (OGRFieldDefn& field : fields) {
        layer.CreateField(&field);
    }
    dataset->StartTransaction();
    for (std::int64_t number = 0; number < count; ++number) {
        addLine(layer, number);
    }
    dataset->CommitTransaction();
    GDALClose(dataset);
    return path;
}

// A copy to work on.
fs::path workingCopy(std::int64_t count) {
    const fs::path path = folder / "work.gpkg";
    fs::copy_file(layerOf(count), path, fs::copy_options::overwrite_existing);
    return path;
}

bool flip(const fs::path& path, const FeatureFilter& filter) {
    std::ostringstream terminal;
    HeadlessHost host(terminal, false);
    RefreshAreaRecord refresh;
    OverlayWorkspace workspace(openStore(path, OpenMode::edit));
    workspace.startEditing();
    workspace.startEditOperation();
    const CursorPtr cursor = workspace.table("lines")->search(filter);
    const bool done = MKQZGenFunRun().QZ_Flip(*cursor, 1000, refresh, host);
    workspace.stopEditOperation();
    workspace.stopEditing(done);
    return done && refresh.count() > 0;
}

void flipOne(benchmark::State& state) {
    const fs::path path = workingCopy(state.range(0));
    FeatureFilter filter;
    filter.ids = std::vector<ObjectId>{state.range(0) / 2};
    for (auto _ : state) {
        if (!flip(path, filter)) {
            state.SkipWithError("nothing was flipped");
        }
    }
}

void updateOneWithGdal(benchmark::State& state) {
    const fs::path path = workingCopy(state.range(0));
    for (auto _ : state) {
        auto* dataset = GDALDataset::FromHandle(
            GDALOpenEx(path.c_str(), GDAL_OF_VECTOR | GDAL_OF_UPDATE, nullptr, nullptr, nullptr));
        OGRLayer& layer = *dataset->GetLayerByName("lines");
        const std::unique_ptr<OGRFeature> feature(layer.GetFeature(state.range(0) / 2));
        feature->GetGeometryRef()->toLineString()->reversePoints();
        if (layer.SetFeature(feature.get()) != OGRERR_NONE) {
            state.SkipWithError("nothing was written");
        }
        GDALClose(dataset);
    }
}

void flipAll(benchmark::State& state) {
    for (auto _ : state) {
        state.PauseTiming();
        const fs::path path = workingCopy(state.range(0));
        state.ResumeTiming();
        if (!flip(path, {})) {
            state.SkipWithError("nothing was flipped");
        }
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void copyWithGdal(benchmark::State& state) {
    const fs::path source = layerOf(state.range(0));
    const fs::path target = folder / "copy.gpkg";
    for (auto _ : state) {
        state.PauseTiming();
        fs::remove(target);
        state.ResumeTiming();
        GDALDatasetH from = GDALOpenEx(source.c_str(), GDAL_OF_VECTOR, nullptr, nullptr, nullptr);
        GDALDatasetH to = GDALVectorTranslate(target.c_str(), nullptr, 1, &from, nullptr, nullptr);
        if (to == nullptr) {
            state.SkipWithError("nothing was copied");
        }
        GDALClose(to);
        GDALClose(from);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

[[maybe_unused]] const bool driversRegistered = [] {
    GDALAllRegister();
    return true;
}();

BENCHMARK(flipOne)->RangeMultiplier(10)->Range(1000, 1000000)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(updateOneWithGdal)->RangeMultiplier(10)->Range(1000, 1000000)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(flipAll)->RangeMultiplier(10)->Range(1000, 1000000)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(copyWithGdal)->RangeMultiplier(10)->Range(1000, 1000000)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace
