#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/store/ogr/OgrTable.h"

namespace qz {

// A store whose tables are layers of one data set of GDAL.
class DatasetStore : public FeatureStore {
public:
    [[nodiscard]] const std::string& path() const override { return path_; }
    [[nodiscard]] WorkspaceType workspaceType() const override { return rules_.workspaceType; }
    [[nodiscard]] const std::string& datasetCategory() const override { return category_; }
    [[nodiscard]] std::vector<std::string> tableNames() override;
    [[nodiscard]] FeatureSource* table(const std::string& name) override { return findTable(name); }

protected:
    // `path`: as users know the store; the data may be read elsewhere until the first save.
    DatasetStore(const FormatRules& rules, std::string path, DatasetPtr dataset);

    [[nodiscard]] const FormatRules& rules() const { return rules_; }
    [[nodiscard]] GDALDataset& dataset() { return *dataset_; }
    [[nodiscard]] OgrTable* findTable(const std::string& name);
    // Throws DataError when there is none of that name.
    [[nodiscard]] OgrTable& existingTable(const std::string& name);
    // Goes on with another data set; tables that were handed out stay valid. Gives back the former one.
    DatasetPtr replaceDataset(DatasetPtr dataset);
    void forgetRows();

private:
    const FormatRules& rules_;
    std::string path_;
    std::string category_;
    DatasetPtr dataset_;
    std::map<std::string, std::unique_ptr<OgrTable>> tables_;
};

// The layers of a data set that hold users' rows, in the order of the store, those without shapes last.
[[nodiscard]] std::vector<OGRLayer*> layersOf(GDALDataset& dataset);

} // namespace qz
