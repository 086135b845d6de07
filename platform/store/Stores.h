#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/data/FeatureSource.h"

namespace qz {

enum class OpenMode { read, edit };

// Opens a GeoPackage (.gpkg), a shapefile (.shp, or a folder of them), a file geodatabase (.gdb) or a PostGIS database
// ("PG:…"). A save that was killed is completed or rolled back first, whatever the mode. Only schemas are read.
// With OpenMode::edit a store that can't be saved to opens all the same; FeatureStore::refusalToSave says why.
// Throws DataError that names the path: missing, no known format, unreadable, locked by another program.
[[nodiscard]] std::unique_ptr<FeatureStore> openStore(const std::string& path, OpenMode mode);

// Opens a copy of the data for editing; the data named stay untouched. The copy appears at `output`, whole, with the
// first save; when none is made nothing is left. A file geodatabase is written as a new one with all its tables.
// Throws DataError when `output` exists, its ending is not that of the format, or its folder can't be written to.
[[nodiscard]] std::unique_ptr<FeatureStore> openCopy(const std::string& path, const std::string& output);

// What a format can hold and how it is saved to, for qz info and for the documentation.
struct FormatCapabilities {
    std::string format;  // "GeoPackage", ...
    std::string endings; // ".gpkg"
    bool editedInPlace = false;
    bool z = false;
    bool m = false;
    bool arcs = false;
    bool nulls = false;
    bool undefinedM = false;
    bool domains = false;
    std::string save;     // one sentence: how a save is made whole
    std::string refusals; // one sentence: what is refused
};
[[nodiscard]] const std::vector<FormatCapabilities>& formatCapabilities();
// Of an open store.
[[nodiscard]] const FormatCapabilities& capabilitiesOf(const FeatureStore& store);

} // namespace qz
