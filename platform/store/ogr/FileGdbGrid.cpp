#include "platform/store/ogr/FileGdbGrid.h"

#include <array>
#include <memory>

#include <cpl_conv.h>
#include <cpl_minixml.h>

namespace qz {

namespace {

struct GridOption {
    const char* element; // in the definition of the layer
    const char* option;  // of GDAL's layer creation
};

constexpr std::array<GridOption, 10> gridOptions{{{"XOrigin", "XORIGIN"},
                                                  {"YOrigin", "YORIGIN"},
                                                  {"XYScale", "XYSCALE"},
                                                  {"ZOrigin", "ZORIGIN"},
                                                  {"ZScale", "ZSCALE"},
                                                  {"MOrigin", "MORIGIN"},
                                                  {"MScale", "MSCALE"},
                                                  {"XYTolerance", "XYTOLERANCE"},
                                                  {"ZTolerance", "ZTOLERANCE"},
                                                  {"MTolerance", "MTOLERANCE"}}};

struct DestroyXml {
    void operator()(CPLXMLNode* node) const { CPLDestroyXMLNode(node); }
};
using XmlPtr = std::unique_ptr<CPLXMLNode, DestroyXml>;

XmlPtr layerDefinition(GDALDataset& dataset, const std::string& layer) {
    const QuietErrors errors;
    const std::string xml = queryText(dataset, "GetLayerDefinition " + layer);
    return XmlPtr(xml.empty() ? nullptr : CPLParseXMLString(xml.c_str()));
}

CPLXMLNode* spatialReferenceOf(CPLXMLNode* definition) {
    return definition == nullptr ? nullptr : CPLSearchXMLNode(definition, "=SpatialReference");
}

double number(CPLXMLNode* node, const char* element, double otherwise) {
    const char* text = CPLGetXMLValue(node, element, nullptr);
    return text == nullptr ? otherwise : CPLAtof(text);
}

double resolution(double scale) {
    return scale > 0 ? 1 / scale : 0;
}

} // namespace

std::optional<CoordinateGrid> fileGdbGrid(GDALDataset& dataset, const std::string& layer) {
    const XmlPtr definition = layerDefinition(dataset, layer);
    CPLXMLNode* reference = spatialReferenceOf(definition.get());
    if (reference == nullptr || number(reference, "XYScale", 0) <= 0) {
        return std::nullopt;
    }
    return CoordinateGrid{.xOrigin = number(reference, "XOrigin", 0),
                          .yOrigin = number(reference, "YOrigin", 0),
                          .xyResolution = resolution(number(reference, "XYScale", 0)),
                          .xyTolerance = number(reference, "XYTolerance", 0.001),
                          .zOrigin = number(reference, "ZOrigin", 0),
                          .zResolution = resolution(number(reference, "ZScale", 0)),
                          .mOrigin = number(reference, "MOrigin", 0),
                          .mResolution = resolution(number(reference, "MScale", 0))};
}

std::vector<std::string> fileGdbGridOptions(GDALDataset& dataset, const std::string& layer) {
    const XmlPtr definition = layerDefinition(dataset, layer);
    CPLXMLNode* reference = spatialReferenceOf(definition.get());
    std::vector<std::string> options;
    for (const GridOption& option : gridOptions) {
        const char* text = reference == nullptr ? nullptr : CPLGetXMLValue(reference, option.element, nullptr);
        if (text != nullptr) {
            options.push_back(std::string(option.option) + "=" + text);
        }
    }
    return options;
}

} // namespace qz
