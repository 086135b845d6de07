#include "platform/store/ogr/DatasetStore.h"

#include <algorithm>
#include <utility>

#include <fmt/format.h>

namespace qz {

namespace {

bool collectGroup(const GDALGroup& group, const std::string& path, const std::string& layer, std::string& found) {
    const auto names = group.GetVectorLayerNames();
    if (std::find(names.begin(), names.end(), layer) != names.end()) {
        found = path;
        return true;
    }
    const auto groups = group.GetGroupNames();
    return std::any_of(groups.begin(), groups.end(), [&](const std::string& name) {
        const auto inner = group.OpenGroup(name);
        return inner && collectGroup(*inner, name, layer, found);
    });
}

// The group of layers that a file geodatabase keeps the layer in.
std::string featureDatasetOf(GDALDataset& dataset, const FormatRules& rules, const std::string& layer) {
    const QuietErrors errors;
    std::string found;
    const auto root = rules.format == StoreFormat::fileGeodatabase ? dataset.GetRootGroup() : nullptr;
    if (root) {
        collectGroup(*root, "", layer, found);
    }
    return found;
}

} // namespace

std::vector<OGRLayer*> layersOf(GDALDataset& dataset) {
    std::vector<OGRLayer*> layers;
    for (int i = 0; i < dataset.GetLayerCount(); ++i) {
        layers.push_back(dataset.GetLayer(i));
    }
    std::stable_partition(layers.begin(), layers.end(),
                          [](OGRLayer* layer) { return layer->GetGeomType() != wkbNone; });
    return layers;
}

DatasetStore::DatasetStore(const FormatRules& rules, std::string path, DatasetPtr dataset)
    : rules_(rules), path_(std::move(path)), category_(rules.datasetCategory), dataset_(std::move(dataset)) {}

std::vector<std::string> DatasetStore::tableNames() {
    const QuietErrors errors;
    std::vector<std::string> names;
    for (OGRLayer* layer : layersOf(*dataset_)) {
        names.emplace_back(layer->GetName());
    }
    return names;
}

OgrTable* DatasetStore::findTable(const std::string& name) {
    if (const auto known = tables_.find(name); known != tables_.end()) {
        return known->second.get();
    }
    const QuietErrors errors;
    for (int i = 0; i < dataset_->GetLayerCount(); ++i) {
        OGRLayer* layer = dataset_->GetLayer(i);
        if (name == layer->GetName()) {
            const TableIdentity identity{i + 1, featureDatasetOf(*dataset_, rules_, name)};
            return tables_.emplace(name, std::make_unique<OgrTable>(rules_, *dataset_, *layer, identity))
                .first->second.get();
        }
    }
    return nullptr;
}

OgrTable& DatasetStore::existingTable(const std::string& name) {
    if (OgrTable* table = findTable(name)) {
        return *table;
    }
    throw DataError(fmt::format("{} has no table {}.", path_, name));
}

DatasetPtr DatasetStore::replaceDataset(DatasetPtr dataset) {
    const QuietErrors errors;
    for (const auto& [name, table] : tables_) {
        OGRLayer* layer = dataset->GetLayerByName(name.c_str());
        if (layer == nullptr) {
            throw DataError(fmt::format("{} has no table {} any more.", path_, name));
        }
        table->attach(*dataset, *layer);
    }
    return std::exchange(dataset_, std::move(dataset));
}

void DatasetStore::forgetRows() {
    for (const auto& [name, table] : tables_) {
        table->forgetRows();
    }
}

} // namespace qz
