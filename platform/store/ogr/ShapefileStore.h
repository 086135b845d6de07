#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/store/ogr/AsideFolder.h"
#include "platform/store/ogr/OgrTable.h"
#include "platform/store/ogr/ShapefileParts.h"

namespace qz {

class ShapefileWriter;
class SaveProgress;

// A folder of shapefiles and attribute tables, seen through one of them or as a whole. A save writes copies of the
// changed files aside and renames all of them into place behind one marker.
class ShapefileStore final : public FeatureStore {
public:
    // `path`: a .shp, a .dbf or a folder.
    ShapefileStore(const std::string& path, OpenMode mode);
    // Reads the shapefile `source` until the first save makes `output` of it. Its table has the name of the output, and
    // is found by that of the source too.
    ShapefileStore(const std::string& source, const std::string& output);

    [[nodiscard]] const std::string& path() const override { return path_; }
    [[nodiscard]] WorkspaceType workspaceType() const override { return rules_.workspaceType; }
    [[nodiscard]] const std::string& datasetCategory() const override { return category_; }
    [[nodiscard]] std::vector<std::string> tableNames() override;
    [[nodiscard]] FeatureSource* table(const std::string& name) override;
    [[nodiscard]] std::string pathBeside(const std::string& table, const std::string& ending) const override;
    [[nodiscard]] std::string refusalToSave() const override;
    [[nodiscard]] bool savesSingleRowsCheaply() const override { return false; }
    void save(const ChangeSet& changes, const SaveObserver& observer) override;
    void addField(const std::string& table, const Field& field) override;

private:
    struct OpenTable {
        ShapefileParts parts;
        std::vector<FileSignature> signatures;
        DatasetPtr dataset;
        std::unique_ptr<OgrTable> table;
    };
    // What a save puts in place.
    struct Swap {
        std::vector<std::string> files;
        std::vector<std::string> obsolete;
    };

    [[nodiscard]] std::optional<ShapefileParts> partsOf(const std::string& name) const;
    // The name of the table that is asked for by its name here or in the source.
    [[nodiscard]] std::string ownName(const std::string& asked) const;
    [[nodiscard]] OpenTable* openTable(const std::string& asked);
    [[nodiscard]] OpenTable& existingTable(const std::string& name);
    // What is written to each table beside its changes.
    using AlsoWrite = std::function<void(ShapefileWriter& writer)>;
    void saveWith(const ChangeSet& changes, const SaveObserver& observer, const AlsoWrite& alsoWrite);
    void writeAside(OpenTable& table, const TableChanges& changes, SaveProgress& progress, const AsideFolder& aside,
                    const AlsoWrite& alsoWrite, Swap& swap);
    void copyAside(const std::filesystem::path& file, const ShapefileParts& parts, SaveProgress& progress,
                   const AsideFolder& aside, Swap& swap) const;
    void requireNew(const Swap& swap) const;
    void requireUnchanged(const OpenTable& table) const;
    void reopen(OpenTable& table);
    [[nodiscard]] std::string nameInOutput(const std::filesystem::path& part, const ShapefileParts& parts) const;

    const FormatRules& rules_;
    std::string path_;
    std::string category_;
    OpenMode mode_;
    std::filesystem::path folder_;                // that is saved to
    std::filesystem::path seenThrough_;           // the file given; empty for a folder
    std::optional<std::filesystem::path> source_; // until the copy is made
    std::string sourceName_;                      // of a copy, also when it is made
    std::map<std::string, OpenTable> tables_;
};

} // namespace qz
