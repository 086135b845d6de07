#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "platform/store/ogr/FileTools.h"

namespace qz {

// The files of one shapefile, or of a lone attribute table: "roads.shp", "roads.dbf", ...
class ShapefileParts {
public:
    // `file`: the .shp, or the .dbf of a table without shapes.
    explicit ShapefileParts(const std::filesystem::path& file);

    [[nodiscard]] const std::filesystem::path& main() const { return main_; }
    [[nodiscard]] std::filesystem::path folder() const { return main_.parent_path(); }
    [[nodiscard]] std::string name() const { return main_.stem().string(); }

    // Existing files that belong to it, by ending and name.
    [[nodiscard]] std::vector<std::filesystem::path> allButIndexes() const;
    // Those that GDAL needs to read or write rows; indexes are not among them.
    [[nodiscard]] std::vector<std::filesystem::path> withRows() const;
    // Indexes of other programs, which no longer fit after a change of shapes.
    [[nodiscard]] std::vector<std::filesystem::path> foreignIndexes() const;
    [[nodiscard]] std::filesystem::path spatialIndex() const; // whether or not there is one

    [[nodiscard]] std::vector<FileSignature> signatures() const;

private:
    [[nodiscard]] std::vector<std::filesystem::path> existing(const std::vector<std::string>& endings) const;

    std::filesystem::path main_;
};

// The shapefiles of a folder, then its attribute tables without shapes, each by name.
[[nodiscard]] std::vector<ShapefileParts> shapefilesIn(const std::filesystem::path& folder);
[[nodiscard]] std::vector<ShapefileParts> attributeTablesIn(const std::filesystem::path& folder);

} // namespace qz
