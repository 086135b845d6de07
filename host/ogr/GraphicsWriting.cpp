#include "host/GraphicsFile.h"

#include <ogrsf_frmts.h>

#include "host/ogr/GraphicsFormat.h"
#include "host/ogr/GraphicsReading.h"
#include "platform/geometry/Project.h"
#include "platform/geometry/ogr/OgrGeometry.h"
#include "platform/geometry/ogr/OgrSpatialReference.h"
#include "platform/geometry/ogr/QuietGdal.h"

namespace qz {

namespace {

constexpr int wgs84 = 4326;

// Makes one file; every failure names the file that the user asked for.
class GraphicsWriter {
public:
    GraphicsWriter(const std::string& target, const GraphicsFormat& format) : target_(target), format_(format) {}

    void write(const std::string& path, const SpatialReference& mapReference,
               const std::vector<GraphicElement>& elements);

private:
    [[noreturn]] void fail(const QuietGdal& gdal) const;
    void require(bool succeeded) const;
    [[nodiscard]] SpatialReference fileReference(const SpatialReference& mapReference) const;
    [[nodiscard]] OGRLayer& createLayer(GDALDataset& dataset, const SpatialReference& reference) const;
    void addField(OGRLayer& layer, const char* name, OGRFieldType type, OGRFieldSubType subtype) const;
    void addElement(OGRLayer& layer, const GraphicElement& element, const SpatialReference& reference) const;
    // A file that is cut short shows when its last bytes are written.
    void close(GDALDatasetUniquePtr dataset) const;
    [[nodiscard]] std::unique_ptr<OGRGeometry> shapeOf(Geometry geometry, const SpatialReference& reference) const;

    const std::string& target_;
    const GraphicsFormat& format_;
    QuietGdal gdal_;
};

void GraphicsWriter::fail(const QuietGdal& gdal) const {
    throw DataError("Can't write the graphics file \"" + target_ + "\": " + gdal.message() + ".");
}

void GraphicsWriter::require(bool succeeded) const {
    if (!succeeded) {
        fail(gdal_);
    }
}

SpatialReference GraphicsWriter::fileReference(const SpatialReference& mapReference) const {
    const bool isNameless = !mapReference.isNone() && !mapReference.isUnknown() && mapReference.factoryCode() == 0;
    return format_.needsKnownReference && isNameless ? SpatialReference::fromEpsg(wgs84) : mapReference;
}

void GraphicsWriter::addField(OGRLayer& layer, const char* name, OGRFieldType type, OGRFieldSubType subtype) const {
    OGRFieldDefn field(name, type);
    field.SetSubType(subtype);
    require(layer.CreateField(&field) == OGRERR_NONE);
}

OGRLayer& GraphicsWriter::createLayer(GDALDataset& dataset, const SpatialReference& reference) const {
    // GDAL takes a counted reference of its own.
    auto* spatialReference = const_cast<OGRSpatialReference*>(ogrReference(reference));
    OGRLayer* layer = dataset.CreateLayer(graphicsLayerName, spatialReference, wkbUnknown, nullptr);
    require(layer != nullptr);
    addField(*layer, nameField, OFTString, OFSTNone);
    addField(*layer, kindField, OFTString, OFSTNone);
    addField(*layer, selectedField, OFTInteger, OFSTBoolean);
    return *layer;
}

std::unique_ptr<OGRGeometry> GraphicsWriter::shapeOf(Geometry geometry, const SpatialReference& reference) const {
    project(geometry, reference);
    std::unique_ptr<OGRGeometry> shape = toOgr(geometry);
    return format_.keepsArcs ? std::move(shape) : std::unique_ptr<OGRGeometry>(shape->getLinearGeometry());
}

void GraphicsWriter::addElement(OGRLayer& layer, const GraphicElement& element,
                                const SpatialReference& reference) const {
    OGRFeature feature(layer.GetLayerDefn());
    feature.SetField(nameField, element.name.c_str());
    feature.SetField(kindField, nameOf(element.kind));
    feature.SetField(selectedField, element.selected ? 1 : 0);
    feature.SetGeometryDirectly(shapeOf(element.geometry, reference).release());
    require(layer.CreateFeature(&feature) == OGRERR_NONE);
}

void GraphicsWriter::write(const std::string& path, const SpatialReference& mapReference,
                           const std::vector<GraphicElement>& elements) {
    GDALAllRegister();
    GDALDriver* driver = GetGDALDriverManager()->GetDriverByName(format_.driver);
    require(driver != nullptr);
    GDALDatasetUniquePtr dataset(driver->Create(path.c_str(), 0, 0, 0, GDT_Unknown, nullptr));
    require(dataset != nullptr);
    const SpatialReference reference = fileReference(mapReference);
    OGRLayer& layer = createLayer(*dataset, reference);
    // One transaction: a GeoPackage would else sync to disk with every element.
    const bool hasTransactions = dataset->StartTransaction() == OGRERR_NONE;
    for (const GraphicElement& element : elements) {
        addElement(layer, element, reference);
    }
    require(!hasTransactions || dataset->CommitTransaction() == OGRERR_NONE);
    close(std::move(dataset));
}

void GraphicsWriter::close(GDALDatasetUniquePtr dataset) const {
    const QuietGdal gdal;
    dataset.reset();
    if (!gdal.message().empty()) {
        fail(gdal);
    }
}

} // namespace

std::unique_ptr<ReplacedFile> writeGraphicsAside(const std::string& path, const HeadlessMap& map) {
    const GraphicsFormat& format = graphicsFormatOf(path);
    requireGraphicsOnly(path);
    auto file = std::make_unique<ReplacedFile>(path);
    GraphicsWriter(path, format)
        .write(file->asidePath(), map.spatialReference(), map.activeView().graphics().elements());
    return file;
}

void writeGraphics(const std::string& path, const HeadlessMap& map) {
    writeGraphicsAside(path, map)->complete();
}

} // namespace qz
