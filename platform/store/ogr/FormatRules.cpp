#include "platform/store/ogr/FormatRules.h"

#include <array>

namespace qz {

namespace {

FormatRules geoPackage() {
    return {.format = StoreFormat::geoPackage,
            .driver = "GPKG",
            .datasetCategory = "GeoPackage Feature Class",
            .workspaceType = WorkspaceType::localDatabase,
            .capabilities = {.format = "GeoPackage",
                             .endings = ".gpkg",
                             .editedInPlace = true,
                             .z = true,
                             .m = true,
                             .arcs = true,
                             .nulls = true,
                             .undefinedM = true,
                             .domains = true,
                             .save = "One transaction of the database with a write-ahead log; the file is put back "
                                     "into a single one when it is closed.",
                             .refusals = "Coordinates that are not finite, shapes of another kind than the layer's, "
                                         "several parts in a layer of single parts, arcs in a layer of straight lines, "
                                         "heights and measures in a layer without them, and files that another program "
                                         "changed meanwhile."},
            .filtersByIdFast = true,
            .sqlConditions = true,
            .holdsUndefinedZ = true,
            .holdsEmptyShapes = true,
            .keepsArcMiddleZm = true,
            .registersClasses = true};
}

FormatRules shapefile() {
    return {.format = StoreFormat::shapefile,
            .driver = "ESRI Shapefile",
            .datasetCategory = "Shapefile Feature Class",
            .workspaceType = WorkspaceType::fileSystem,
            .capabilities = {.format = "Shapefile",
                             .endings = ".shp",
                             .editedInPlace = true,
                             .z = true,
                             .m = true,
                             .arcs = false,
                             .nulls = false,
                             .undefinedM = true,
                             .domains = false,
                             .save = "The changed files are written aside and renamed into place together; a marker "
                                     "lets the next opening finish renames that were interrupted.",
                             .refusals = "Arcs, undefined heights, empty shapes, times of day, text that is too long "
                                         "for its field or not in its encoding, and files that another program changed "
                                         "meanwhile."},
            .singlePartKindsHoldParts = true,
            .textWidthInBytes = true};
}

FormatRules fileGeodatabase() {
    return {.format = StoreFormat::fileGeodatabase,
            .driver = "OpenFileGDB",
            .datasetCategory = "File Geodatabase Feature Class",
            .workspaceType = WorkspaceType::localDatabase,
            .capabilities = {.format = "File geodatabase",
                             .endings = ".gdb",
                             .editedInPlace = false,
                             .z = true,
                             .m = true,
                             .arcs = true,
                             .nulls = true,
                             .undefinedM = false,
                             .domains = true,
                             .save = "A whole new geodatabase is written aside and renamed into place.",
                             .refusals = "Every save without an output of its own, undefined heights and measures, "
                                         "heights and measures on the middle of an arc, empty shapes."},
            .singlePartKindsHoldParts = true,
            .registersClasses = true};
}

FormatRules postgis() {
    return {.format = StoreFormat::postgis,
            .driver = "PostgreSQL",
            .datasetCategory = "PostGIS Feature Class",
            .workspaceType = WorkspaceType::remoteDatabase,
            .capabilities = {.format = "PostGIS",
                             .endings = "PG:",
                             .editedInPlace = true,
                             .z = true,
                             .m = true,
                             .arcs = true,
                             .nulls = true,
                             .undefinedM = true,
                             .domains = false,
                             .save = "One transaction of the database.",
                             .refusals = "Coordinates that are not finite, shapes of another kind than the layer's, "
                                         "several parts in a layer of single parts, arcs in a layer of straight lines, "
                                         "heights and measures in a layer without them."},
            .filtersByIdFast = true,
            .sqlConditions = true,
            .holdsUndefinedZ = true,
            .holdsEmptyShapes = true,
            .keepsArcMiddleZm = true,
            .registersClasses = true};
}

} // namespace

const FormatRules& rulesOf(StoreFormat format) {
    static const std::array<FormatRules, 4> rules{geoPackage(), shapefile(), fileGeodatabase(), postgis()};
    return rules[static_cast<std::size_t>(format)];
}

} // namespace qz
