#pragma once

#include <ogrsf_frmts.h>

#include "town_plan.h"

namespace town {

// Each writes its layer; they throw std::runtime_error with GDAL's words when that fails.
void writeDomains(GDALDataset& dataset);
void writeStreets(GDALDataset& dataset, const std::vector<Street>& streets, Dice& dice);
void writeStreetRules(GDALDataset& dataset);
void writeParcels(GDALDataset& dataset, const std::vector<Parcel>& parcels, Dice& dice);
void writeSurveyLines(GDALDataset& dataset, const std::vector<SurveyLine>& lines);
// The stations of the lines, some of them taken twice.
void writeSurveyPoints(GDALDataset& dataset, const std::vector<SurveyLine>& lines);
void writeBuildings(GDALDataset& dataset, const std::vector<Building>& buildings);

} // namespace town
