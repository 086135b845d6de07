#include "platform/store/Stores.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <optional>

#include <unistd.h>

#include <fmt/format.h>

#include "platform/store/ogr/AsideFolder.h"
#include "platform/store/ogr/FileGdbStore.h"
#include "platform/store/ogr/FileTools.h"
#include "platform/store/ogr/GpkgStore.h"
#include "platform/store/ogr/PostgisStore.h"
#include "platform/store/ogr/ShapefileStore.h"

namespace qz {

namespace {

bool hasEnding(const std::filesystem::path& path, const char* ending) {
    const std::filesystem::path file = path.has_filename() ? path : path.parent_path();
    return EQUAL(file.extension().c_str(), ending);
}

bool holdsShapefiles(const std::filesystem::path& folder) {
    return !shapefilesIn(folder).empty() || !attributeTablesIn(folder).empty();
}

std::optional<StoreFormat> formatOf(const std::string& path) {
    if (STARTS_WITH_CI(path.c_str(), "PG:")) {
        return StoreFormat::postgis;
    }
    if (std::filesystem::is_directory(path)) {
        if (hasEnding(path, ".gdb")) {
            return StoreFormat::fileGeodatabase;
        }
        return holdsShapefiles(path) ? std::optional(StoreFormat::shapefile) : std::nullopt;
    }
    if (hasEnding(path, ".gpkg")) {
        return StoreFormat::geoPackage;
    }
    return hasEnding(path, ".shp") || hasEnding(path, ".dbf") ? std::optional(StoreFormat::shapefile) : std::nullopt;
}

StoreFormat requireFormat(const std::string& path) {
    if (!STARTS_WITH_CI(path.c_str(), "PG:")) {
        if (!std::filesystem::exists(path)) {
            throw DataError(fmt::format("{} does not exist.", path));
        }
        if (access(path.c_str(), R_OK) != 0) {
            throw DataError(fmt::format("{} can't be read: permission denied.", path));
        }
    }
    if (const auto format = formatOf(path)) {
        return *format;
    }
    throw DataError(fmt::format("{} is none of the known formats: GeoPackage (.gpkg), shapefile (.shp, or a folder of "
                                "them), file geodatabase (.gdb), PostGIS (PG:…).",
                                path));
}

// Folders of shapefiles are completed themselves, files and geodatabases beside which saves were prepared in their
// folder.
void completeInterruptedSaves(const std::filesystem::path& folder) {
    if (isWritable(folder) && needsRecovery(folder)) {
        const FolderLock lock(folder);
        recoverFolder(folder);
    }
}

std::filesystem::path folderOfSaves(const std::string& path, StoreFormat format) {
    return format == StoreFormat::shapefile && std::filesystem::is_directory(path) ? std::filesystem::path(path)
                                                                                   : folderOf(path);
}

std::unique_ptr<FeatureStore> openShapefiles(const std::string& path, OpenMode mode) {
    // Nobody puts files in place while they are opened.
    const FolderLock lock(folderOfSaves(path, StoreFormat::shapefile));
    return std::make_unique<ShapefileStore>(path, mode);
}

std::unique_ptr<FeatureStore> openFormat(const std::string& path, StoreFormat format, OpenMode mode) {
    switch (format) {
    case StoreFormat::geoPackage:
        return std::make_unique<GpkgStore>(path, mode);
    case StoreFormat::shapefile:
        return openShapefiles(path, mode);
    case StoreFormat::fileGeodatabase:
        return std::make_unique<FileGdbStore>(path);
    case StoreFormat::postgis:
        break;
    }
    return std::make_unique<PostgisStore>(path, mode);
}

void requireNewOutput(const std::string& output, const FormatCapabilities& format) {
    if (std::filesystem::exists(output)) {
        throw DataError(fmt::format("{} exists; name an output that doesn't.", output));
    }
    if (!hasEnding(output, format.endings.c_str())) {
        throw DataError(fmt::format("{} must end in {}, as the data do.", output, format.endings));
    }
    const std::filesystem::path folder = folderOf(output);
    if (!std::filesystem::is_directory(folder)) {
        throw DataError(fmt::format("The folder {} does not exist.", folder.string()));
    }
    if (!isWritable(folder)) {
        throw DataError(fmt::format("The folder {} can't be written to.", folder.string()));
    }
}

} // namespace

std::unique_ptr<FeatureStore> openStore(const std::string& path, OpenMode mode) {
    const StoreFormat format = requireFormat(path);
    if (format != StoreFormat::postgis) {
        completeInterruptedSaves(folderOfSaves(path, format));
    }
    return openFormat(path, format, mode);
}

std::unique_ptr<FeatureStore> openCopy(const std::string& path, const std::string& output) {
    const StoreFormat format = requireFormat(path);
    if (format == StoreFormat::postgis) {
        throw DataError(fmt::format("{} is a database on a server; no copy of it is made.", path));
    }
    completeInterruptedSaves(folderOfSaves(path, format));
    requireNewOutput(output, rulesOf(format).capabilities);
    completeInterruptedSaves(folderOf(output));
    switch (format) {
    case StoreFormat::geoPackage:
        return std::make_unique<GpkgStore>(path, output);
    case StoreFormat::fileGeodatabase:
        return std::make_unique<FileGdbStore>(path, output);
    default:
        break;
    }
    if (!hasEnding(path, ".shp")) {
        throw DataError(fmt::format("{} is a folder; name the shapefile in it to be copied.", path));
    }
    return std::make_unique<ShapefileStore>(path, output);
}

const std::vector<FormatCapabilities>& formatCapabilities() {
    static const std::vector<FormatCapabilities> all{
        rulesOf(StoreFormat::geoPackage).capabilities, rulesOf(StoreFormat::shapefile).capabilities,
        rulesOf(StoreFormat::fileGeodatabase).capabilities, rulesOf(StoreFormat::postgis).capabilities};
    return all;
}

const FormatCapabilities& capabilitiesOf(const FeatureStore& store) {
    static const FormatCapabilities memory{.format = "Memory",
                                           .endings = "",
                                           .editedInPlace = true,
                                           .z = true,
                                           .m = true,
                                           .arcs = true,
                                           .nulls = true,
                                           .undefinedM = true,
                                           .domains = true,
                                           .save = "The rows are exchanged at once.",
                                           .refusals = "Nothing."};
    const auto& all = formatCapabilities();
    const auto found = std::ranges::find_if(all, [&](const FormatCapabilities& format) {
        return store.datasetCategory().starts_with(format.format) ||
               (format.format == "File geodatabase" && store.datasetCategory().starts_with("File Geodatabase"));
    });
    return found == all.end() ? memory : *found;
}

} // namespace qz
