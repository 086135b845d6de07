#include "town_layers.h"

#include <cmath>
#include <memory>
#include <stdexcept>

namespace town {

namespace {

void require(bool succeeded) {
    if (!succeeded) {
        throw std::runtime_error(CPLGetLastErrorMsg());
    }
}

struct FieldPlan {
    const char* name;
    OGRFieldType type;
    int width = 0;
    const char* domain = "";
    OGRFieldSubType subtype = OFSTNone;
};

OGRLayer& createLayer(GDALDataset& dataset, const char* name, OGRwkbGeometryType type,
                      const std::vector<FieldPlan>& fields) {
    OGRSpatialReference utm32;
    require(utm32.importFromEPSG(25832) == OGRERR_NONE);
    OGRLayer* layer = dataset.CreateLayer(name, type == wkbNone ? nullptr : &utm32, type, nullptr);
    require(layer != nullptr);
    for (const FieldPlan& plan : fields) {
        OGRFieldDefn field(plan.name, plan.type);
        field.SetWidth(plan.width);
        field.SetSubType(plan.subtype);
        field.SetDomainName(plan.domain);
        require(layer->CreateField(&field) == OGRERR_NONE);
    }
    return *layer;
}

void addFeature(OGRLayer& layer, OGRFeature& feature, std::unique_ptr<OGRGeometry> shape) {
    require(feature.SetGeometryDirectly(shape.release()) == OGRERR_NONE);
    require(layer.CreateFeature(&feature) == OGRERR_NONE);
}

using Codes = std::vector<std::array<const char*, 2>>; // code and name

void addCodedDomain(GDALDataset& dataset, const char* name, const Codes& codes) {
    std::vector<OGRCodedValue> values;
    for (const auto& [code, text] : codes) {
        values.push_back({CPLStrdup(code), CPLStrdup(text)});
    }
    std::string reason;
    require(dataset.AddFieldDomain(
        std::make_unique<OGRCodedFieldDomain>(name, "", OFTString, OFSTNone, std::move(values)), reason));
}

void addSpeedDomain(GDALDataset& dataset) {
    OGRField least{};
    OGRField greatest{};
    least.Integer = 5;
    greatest.Integer = 130;
    std::string reason;
    require(dataset.AddFieldDomain(
        std::make_unique<OGRRangeFieldDomain>("max_speed", "km/h", OFTInteger, OFSTInt16, least, true, greatest, true),
        reason));
}

const char* nameOf(StreetClass kind) {
    switch (kind) {
    case StreetClass::residential:
        return "residential";
    case StreetClass::main:
        return "main";
    case StreetClass::ring:
        return "ring";
    case StreetClass::rural:
        return "rural";
    case StreetClass::lane:
        return "lane";
    }
    return "";
}

int speedOn(StreetClass kind) {
    switch (kind) {
    case StreetClass::residential:
        return 30;
    case StreetClass::main:
        return 50;
    case StreetClass::ring:
        return 70;
    case StreetClass::rural:
        return 100;
    case StreetClass::lane:
        return 10;
    }
    return 0;
}

const char* surfaceOf(StreetClass kind, Dice& dice) {
    const bool isUnusual = dice.below(6) == 0;
    switch (kind) {
    case StreetClass::lane:
        return "COB";
    case StreetClass::rural:
        return isUnusual ? "GRV" : "ASP";
    case StreetClass::residential:
        return isUnusual ? "COB" : "ASP";
    case StreetClass::main:
    case StreetClass::ring:
        return isUnusual ? "CON" : "ASP";
    }
    return "";
}

std::unique_ptr<OGRLineString> lineOf(const std::vector<Place>& places) {
    auto line = std::make_unique<OGRLineString>();
    for (const Place& p : places) {
        line->addPoint(p.x, p.y);
    }
    return line;
}

double roundedTo(double value, double unit) {
    return std::round(value / unit) * unit;
}

// House numbers: odd on the left, even on the right, one for about ten metres on either side.
void setNumbers(OGRFeature& feature, const Street& street, double length) {
    const int pairs = static_cast<int>(length / 10);
    feature.SetField("FROM_L", street.firstNumber);
    feature.SetField("TO_L", street.firstNumber + 2 * pairs);
    feature.SetField("FROM_R", street.firstNumber + 1);
    feature.SetField("TO_R", street.firstNumber + 1 + 2 * pairs);
}

void setBuilt(OGRFeature& feature, const char* field, int firstYear, int lastYear, Dice& dice) {
    const int year = firstYear + static_cast<int>(dice.below(static_cast<std::size_t>(lastYear - firstYear + 1)));
    feature.SetField(field, year, 1 + static_cast<int>(dice.below(12)), 1 + static_cast<int>(dice.below(28)));
}

void fillStreet(OGRFeature& feature, const Street& street, std::size_t index, Dice& dice) {
    const double length = lengthOf(street.line);
    feature.SetField("name", street.name.c_str());
    feature.SetField("class", nameOf(street.kind));
    setNumbers(feature, street, length);
    feature.SetField("LENGTH_M", roundedTo(length, 0.01));
    feature.SetField("SURFACE", surfaceOf(street.kind, dice));
    feature.SetField("MAXSPEED", speedOn(street.kind));
    setBuilt(feature, "BUILT", 1890, 2019, dice);
    // What the town's office never learned.
    const std::array<const char*, 4> unknownFields{"BUILT", "SURFACE", "MAXSPEED", "TO_R"};
    if (index % 17 == 5) {
        feature.SetFieldNull(feature.GetFieldIndex(unknownFields[index % unknownFields.size()]));
    }
}

std::unique_ptr<OGRGeometry> shapeOf(const Parcel& parcel) {
    auto ring = std::make_unique<OGRCompoundCurve>();
    Place last = parcel.corners.back().end;
    const auto addCurve = [&ring](std::unique_ptr<OGRSimpleCurve> curve, std::initializer_list<Place> places) {
        for (const Place& p : places) {
            curve->addPoint(p.x, p.y);
        }
        require(ring->addCurveDirectly(curve.release()) == OGRERR_NONE);
    };
    for (const Corner& corner : parcel.corners) {
        addCurve(std::make_unique<OGRLineString>(), {last, corner.begin});
        if (corner.isRounded) {
            addCurve(std::make_unique<OGRCircularString>(), {corner.begin, corner.middle, corner.end});
        }
        last = corner.end;
    }
    auto polygon = std::make_unique<OGRCurvePolygon>();
    require(polygon->addRingDirectly(ring.release()) == OGRERR_NONE);
    if (polygon->hasCurveGeometry(TRUE)) {
        return polygon;
    }
    return std::unique_ptr<OGRGeometry>(OGRGeometryFactory::forceTo(polygon.release(), wkbPolygon));
}

std::string parcelId(std::size_t index) {
    const std::string number = std::to_string(index + 1);
    return "EB-" + std::string(4 - number.size(), '0') + number;
}

const std::array<const char*, 16> owners{
    "Anna Becker",     "J. & M. Holt", "Priya Nair",         "Lars Eriksen",  "Ellerbrook Dairy", "St. Mary's Parish",
    "Tomasz Nowak",    "Ruth O'Neill", "Carla Moretti",      "H. Vogel",      "Westfield Homes",  "Ines Duarte",
    "Peter Lindqvist", "Mei Tanaka",   "Town of Ellerbrook", "Samuel Adeyemi"};

void fillParcel(OGRFeature& feature, const Parcel& parcel, std::size_t index, double area, Dice& dice) {
    constexpr std::array<const char*, 8> uses{"RES", "RES", "RES", "RES", "RES", "COM", "COM", "PUB"};
    const std::string owner = parcel.isOpenSpace ? "Town of Ellerbrook" : owners[dice.below(owners.size())];
    feature.SetField("PARCEL_ID", parcelId(index).c_str());
    feature.SetField("OWNER", owner.c_str());
    feature.SetField("AREA_M2", roundedTo(area, 0.01));
    feature.SetField("LANDUSE", parcel.isOpenSpace ? "PRK" : uses[dice.below(uses.size())]);
    setBuilt(feature, "ASSESSED", 2015, 2023, dice);
    if (index % 41 == 7) {
        feature.SetFieldNull(feature.GetFieldIndex("ASSESSED"));
    }
}

void addStations(OGRSimpleCurve& curve, const std::vector<SurveyPoint>& stations, std::size_t first, std::size_t last) {
    for (std::size_t i = first; i <= last; ++i) {
        const SurveyPoint& station = stations[i];
        curve.addPoint(station.at.x, station.at.y, station.height, station.chainage);
    }
}

std::unique_ptr<OGRGeometry> shapeOf(const SurveyLine& line) {
    auto compound = std::make_unique<OGRCompoundCurve>();
    bool isStraight = true;
    for (std::size_t i = 0; i + 1 < line.stations.size(); i += isStraight ? 2 : 1) {
        std::unique_ptr<OGRSimpleCurve> curve;
        if (isStraight) {
            curve = std::make_unique<OGRLineString>();
        } else {
            curve = std::make_unique<OGRCircularString>();
        }
        addStations(*curve, line.stations, i, i + (isStraight ? 1 : 2));
        require(compound->addCurveDirectly(curve.release()) == OGRERR_NONE);
        isStraight = !isStraight;
    }
    return compound;
}

} // namespace

void writeDomains(GDALDataset& dataset) {
    addCodedDomain(dataset, "surface",
                   {{"ASP", "asphalt"}, {"CON", "concrete"}, {"COB", "cobbles"}, {"GRV", "gravel"}});
    addCodedDomain(dataset, "land_use",
                   {{"RES", "housing"}, {"COM", "trade"}, {"PUB", "public building"}, {"PRK", "park"}});
    addSpeedDomain(dataset);
}

void writeStreets(GDALDataset& dataset, const std::vector<Street>& streets, Dice& dice) {
    OGRLayer& layer = createLayer(dataset, "streets", wkbLineString,
                                  {{"name", OFTString, 40},
                                   {"class", OFTString, 12},
                                   {"FROM_L", OFTInteger},
                                   {"TO_L", OFTInteger},
                                   {"FROM_R", OFTInteger},
                                   {"TO_R", OFTInteger},
                                   {"LENGTH_M", OFTReal},
                                   {"SURFACE", OFTString, 20, "surface"},
                                   {"MAXSPEED", OFTInteger, 0, "max_speed", OFSTInt16},
                                   {"BUILT", OFTDate}});
    for (std::size_t i = 0; i < streets.size(); ++i) {
        OGRFeature feature(layer.GetLayerDefn());
        fillStreet(feature, streets[i], i, dice);
        addFeature(layer, feature, lineOf(streets[i].line));
    }
}

void writeStreetRules(GDALDataset& dataset) {
    constexpr std::array<const char*, 4> columns{"FieldName", "SplitRule", "PairField", "UnionRule"};
    const std::vector<std::array<const char*, 4>> rules{{"FROM_L", "Range Address", "TO_L", "Range Address"},
                                                        {"FROM_R", "Range Address", "TO_R", "Range Address"},
                                                        {"LENGTH_M", "Proportion", "None", "Sum"},
                                                        {"MAXSPEED", "Copy", "None", "Minimum"}};
    std::vector<FieldPlan> fields;
    for (const char* column : columns) {
        fields.push_back({column, OFTString, 40});
    }
    OGRLayer& layer = createLayer(dataset, "streets_QZAttributeRules", wkbNone, fields);
    for (const auto& rule : rules) {
        OGRFeature feature(layer.GetLayerDefn());
        for (std::size_t i = 0; i < columns.size(); ++i) {
            feature.SetField(columns[i], rule[i]);
        }
        require(layer.CreateFeature(&feature) == OGRERR_NONE);
    }
}

void writeParcels(GDALDataset& dataset, const std::vector<Parcel>& parcels, Dice& dice) {
    OGRLayer& layer = createLayer(dataset, "parcels", wkbCurvePolygon,
                                  {{"PARCEL_ID", OFTString, 12},
                                   {"OWNER", OFTString, 40},
                                   {"AREA_M2", OFTReal},
                                   {"LANDUSE", OFTString, 8, "land_use"},
                                   {"ASSESSED", OFTDate}});
    for (std::size_t i = 0; i < parcels.size(); ++i) {
        std::unique_ptr<OGRGeometry> shape = shapeOf(parcels[i]);
        const double area = shape->toSurface()->get_Area();
        OGRFeature feature(layer.GetLayerDefn());
        fillParcel(feature, parcels[i], i, area, dice);
        addFeature(layer, feature, std::move(shape));
    }
}

void writeSurveyPoints(GDALDataset& dataset, const std::vector<SurveyLine>& lines) {
    OGRLayer& layer =
        createLayer(dataset, "survey_points", wkbPoint25D, {{"CODE", OFTString, 12}, {"STATION", OFTInteger}});
    const auto add = [&layer](const SurveyLine& line, std::size_t station) {
        OGRFeature feature(layer.GetLayerDefn());
        feature.SetField("CODE", line.code.c_str());
        feature.SetField("STATION", static_cast<int>(station));
        const SurveyPoint& taken = line.stations[station];
        addFeature(layer, feature, std::make_unique<OGRPoint>(taken.at.x, taken.at.y, taken.height));
    };
    for (std::size_t i = 0; i < lines.size(); ++i) {
        for (std::size_t station = 0; station < lines[i].stations.size(); ++station) {
            add(lines[i], station);
        }
        if (i % 4 == 1) {
            add(lines[i], 1);
        }
    }
}

void writeBuildings(GDALDataset& dataset, const std::vector<Building>& buildings) {
    OGRLayer& layer = createLayer(dataset, "buildings", wkbPolygon, {{"STOREYS", OFTInteger}});
    for (std::size_t i = 0; i < buildings.size(); ++i) {
        auto ring = std::make_unique<OGRLinearRing>();
        for (const Place& corner : buildings[i].corners) {
            ring->addPoint(corner.x, corner.y);
        }
        ring->closeRings();
        auto polygon = std::make_unique<OGRPolygon>();
        require(polygon->addRingDirectly(ring.release()) == OGRERR_NONE);
        OGRFeature feature(layer.GetLayerDefn());
        feature.SetField("STOREYS", 1 + static_cast<int>(i % 3));
        addFeature(layer, feature, std::move(polygon));
    }
}

void writeSurveyLines(GDALDataset& dataset, const std::vector<SurveyLine>& lines) {
    OGRLayer& layer = createLayer(dataset, "survey_lines", wkbCompoundCurveZM, {{"CODE", OFTString, 12}});
    for (const SurveyLine& line : lines) {
        OGRFeature feature(layer.GetLayerDefn());
        feature.SetField("CODE", line.code.c_str());
        addFeature(layer, feature, shapeOf(line));
    }
}

} // namespace town
