#pragma once

#include <filesystem>

#include "platform/store/ogr/OgrTable.h"
#include "platform/store/ogr/SaveProgress.h"

namespace qz {

// Writes a new file geodatabase from a stored one and the changes to it.
class FileGdbWriter {
public:
    FileGdbWriter(const std::filesystem::path& target, GDALDataset& source, SaveProgress& progress);

    // All rows of the table that are not deleted, with the changes.
    void copyTable(OgrTable& table, const TableChanges& changes);
    void addField(const std::string& table, const Field& field);
    // Writes everything out. Throws DataError when something could not be written.
    void close();

private:
    void copyDomains();
    [[nodiscard]] OGRLayer& createLayer(OgrTable& table);
    void copyField(OGRLayer& layer, const OGRFieldDefn& field);

    GDALDataset& source_;
    DatasetPtr target_;
    SaveProgress& progress_;
};

} // namespace qz
