#include "host/ogr/GraphicsReading.h"

#include <filesystem>

#include <ogrsf_frmts.h>

#include "host/GraphicsFile.h"
#include "host/ogr/GraphicsFormat.h"
#include "platform/geometry/Project.h"
#include "platform/geometry/ogr/OgrGeometry.h"
#include "platform/geometry/ogr/OgrSpatialReference.h"
#include "platform/geometry/ogr/QuietGdal.h"

namespace qz {

namespace {

GDALDatasetUniquePtr open(const std::string& path, const GraphicsFormat& format) {
    const QuietGdal gdal;
    GDALAllRegister();
    const char* const drivers[] = {format.driver, nullptr};
    GDALDatasetUniquePtr dataset(GDALDataset::Open(path.c_str(), GDAL_OF_VECTOR | GDAL_OF_READONLY, drivers));
    if (!dataset) {
        throw DataError("Can't read the graphics file \"" + path + "\": " +
                        (gdal.message().empty() ? "it is no " + std::string(format.driver) : gdal.message()) + ".");
    }
    return dataset;
}

[[noreturn]] void refuseOtherContent(const std::string& path, const std::string& found) {
    throw UsageError("\"" + path + "\" holds " + found +
                     ", which writing graphics would destroy; name a file of its own for the graphics.");
}

void checkFields(const std::string& path, const OGRFeatureDefn& definition) {
    for (int i = 0; i < definition.GetFieldCount(); ++i) {
        const std::string name = definition.GetFieldDefn(i)->GetNameRef();
        // GeoJSON readers give an "id" member of features as a field.
        if (name != nameField && name != kindField && name != selectedField && name != "id") {
            refuseOtherContent(path, "a field \"" + name + "\"");
        }
    }
}

// Nothing for a file without layers.
OGRLayer* graphicsLayer(const std::string& path, const GraphicsFormat& format, GDALDataset& dataset) {
    OGRLayer* result = nullptr;
    for (OGRLayer* layer : dataset.GetLayers()) {
        // A GeoJSON file is one layer, often without a name.
        if (format.keepsArcs && std::string(layer->GetName()) != graphicsLayerName) {
            refuseOtherContent(path, std::string("a layer \"") + layer->GetName() + "\"");
        }
        checkFields(path, *layer->GetLayerDefn());
        result = layer;
    }
    return result;
}

GraphicKind kindOfShape(const Geometry& geometry) {
    switch (geometry.kind()) {
    case GeometryKind::point:
    case GeometryKind::multipoint:
        return GraphicKind::marker;
    case GeometryKind::polyline:
        return GraphicKind::line;
    case GeometryKind::polygon:
        return GraphicKind::fill;
    }
    return GraphicKind::marker;
}

GraphicKind kindNamed(const std::string& text, const std::string& path) {
    for (const GraphicKind kind : {GraphicKind::marker, GraphicKind::line, GraphicKind::fill}) {
        if (text == nameOf(kind)) {
            return kind;
        }
    }
    throw DataError("The graphics file \"" + path + "\" has an element of the unknown kind \"" + text +
                    "\"; the kinds are \"marker\", \"line\" and \"fill\".");
}

// Empty for a field that is missing or null.
std::string textOf(const OGRFeature& feature, const char* field) {
    const int index = feature.GetFieldIndex(field);
    return index < 0 || !feature.IsFieldSetAndNotNull(index) ? std::string() : feature.GetFieldAsString(index);
}

bool isTrue(const OGRFeature& feature, const char* field) {
    const int index = feature.GetFieldIndex(field);
    return index >= 0 && feature.IsFieldSetAndNotNull(index) && feature.GetFieldAsInteger(index) != 0;
}

GraphicElement elementOf(const OGRFeature& feature, Geometry geometry, const std::string& path) {
    GraphicElement element;
    element.name = textOf(feature, nameField);
    const std::string kind = textOf(feature, kindField);
    element.kind = kind.empty() ? kindOfShape(geometry) : kindNamed(kind, path);
    element.selected = isTrue(feature, selectedField);
    element.geometry = std::move(geometry);
    return element;
}

SpatialReference referenceOf(OGRLayer& layer) {
    const OGRSpatialReference* reference = layer.GetSpatialRef();
    return reference == nullptr ? SpatialReference::unknown() : fromOgr(reference);
}

std::vector<GraphicElement> readElements(OGRLayer& layer, const std::string& path, const SpatialReference& target) {
    std::vector<GraphicElement> elements;
    const SpatialReference reference = referenceOf(layer);
    for (const auto& feature : layer) {
        const OGRGeometry* shape = feature->GetGeometryRef();
        if (shape == nullptr) {
            continue;
        }
        Geometry geometry = fromOgr(*shape);
        geometry.traits().spatialReference = reference;
        project(geometry, target);
        elements.push_back(elementOf(*feature, std::move(geometry), path));
    }
    return elements;
}

} // namespace

void requireGraphicsOnly(const std::string& path) {
    const GraphicsFormat& format = graphicsFormatOf(path);
    if (std::filesystem::exists(path)) {
        const GDALDatasetUniquePtr dataset = open(path, format);
        (void)graphicsLayer(path, format, *dataset);
    }
}

void readGraphics(const std::string& path, HeadlessMap& map) {
    const GraphicsFormat& format = graphicsFormatOf(path);
    if (!std::filesystem::exists(path)) {
        return;
    }
    const GDALDatasetUniquePtr dataset = open(path, format);
    const QuietGdal gdal;
    if (OGRLayer* layer = graphicsLayer(path, format, *dataset)) {
        for (GraphicElement& element : readElements(*layer, path, map.spatialReference())) {
            map.activeView().graphics().add(std::move(element));
        }
    }
}

} // namespace qz
