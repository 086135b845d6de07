// Writes the sample town "Ellerbrook" as a GeoPackage, the same bytes on every run.

#include <cstdio>
#include <exception>
#include <stdexcept>

#include "town_layers.h"

namespace {

void writeTown(const char* path) {
    // A GeoPackage records when it was written.
    CPLSetConfigOption("OGR_CURRENT_DATE", "2024-05-17T12:00:00.000Z");
    GDALAllRegister();
    VSIUnlink(path);
    GDALDriver* driver = GetGDALDriverManager()->GetDriverByName("GPKG");
    const GDALDatasetUniquePtr dataset(driver == nullptr ? nullptr
                                                         : driver->Create(path, 0, 0, 0, GDT_Unknown, nullptr));
    if (!dataset) {
        throw std::runtime_error(CPLGetLastErrorMsg());
    }
    town::Dice dice(20240517);
    const town::Plan plan = town::drawPlan(dice);
    town::writeDomains(*dataset);
    town::writeStreets(*dataset, plan.streets, dice);
    town::writeParcels(*dataset, plan.parcels, dice);
    town::writeSurveyLines(*dataset, plan.surveyLines);
    town::writeStreetRules(*dataset);
    town::writeSurveyPoints(*dataset, plan.surveyLines);
    town::Dice buildingDice(20240518);
    town::writeBuildings(*dataset, town::drawBuildings(plan.parcels, buildingDice));
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fputs("Usage: make_town PATH.gpkg\n", stderr);
        return 2;
    }
    try {
        writeTown(argv[1]);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "Can't write %s: %s\n", argv[1], error.what());
        return 1;
    }
    return 0;
}
