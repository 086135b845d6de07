#include "platform/store/ogr/FileGdbWriter.h"

#include <algorithm>

#include <cpl_string.h>
#include <fmt/format.h>

#include "platform/store/ogr/CurvedRings.h"
#include "platform/store/ogr/FileGdbGrid.h"
#include "platform/store/ogr/LayerWalk.h"
#include "platform/store/ogr/OgrSchema.h"
#include "platform/store/ogr/RowWriter.h"

namespace qz {

namespace {

DatasetPtr createGeodatabase(const std::filesystem::path& target) {
    const QuietErrors errors;
    DatasetPtr dataset(ogrDriver("OpenFileGDB").Create(target.c_str(), 0, 0, 0, GDT_Unknown, nullptr));
    if (!dataset) {
        throw DataError(fmt::format("The file geodatabase {} can't be made: {}.", target.string(), errors.text()));
    }
    return dataset;
}

bool isLengthOfShape(const OGRFieldDefn& field) {
    return EQUAL(field.GetNameRef(), "Shape_Length");
}

bool isAreaOfShape(const OGRFieldDefn& field) {
    return EQUAL(field.GetNameRef(), "Shape_Area");
}

double lengthOf(const OGRGeometry& shape) {
    if (const auto* collection = dynamic_cast<const OGRGeometryCollection*>(&shape)) {
        double sum = 0;
        for (int i = 0; i < collection->getNumGeometries(); ++i) {
            sum += lengthOf(*collection->getGeometryRef(i));
        }
        return sum;
    }
    if (const auto* polygon = dynamic_cast<const OGRCurvePolygon*>(&shape)) {
        double sum = 0;
        for (const OGRCurve* ring : *polygon) {
            sum += ring->get_Length();
        }
        return sum;
    }
    const auto* curve = dynamic_cast<const OGRCurve*>(&shape);
    return curve == nullptr ? 0 : curve->get_Length();
}

// The format keeps measures of the shape beside it; they follow the shape.
void measureShape(OGRFeature& feature) {
    const OGRGeometry* shape = feature.GetGeometryRef();
    for (int i = 0; i < feature.GetFieldCount(); ++i) {
        const OGRFieldDefn& field = *feature.GetFieldDefnRef(i);
        if (isLengthOfShape(field)) {
            feature.SetField(i, shape == nullptr ? 0 : lengthOf(*shape));
        } else if (isAreaOfShape(field)) {
            feature.SetField(i,
                             shape == nullptr ? 0 : OGR_G_Area(OGRGeometry::ToHandle(const_cast<OGRGeometry*>(shape))));
        }
    }
}

const RecordChange* changeOf(const TableChanges& changes, ObjectId id) {
    const auto at =
        std::ranges::lower_bound(changes.updates, id, {}, [](const RecordChange& change) { return change.record->id; });
    return at != changes.updates.end() && at->record->id == id ? &*at : nullptr;
}

void apply(const RecordChange& change, const OgrRecordMapper& mapper, OGRFeature& row) {
    mapper.setChangedValues(row, change);
    if (change.shapeChanged) {
        mapper.setShape(row, *change.record);
        measureShape(row);
    }
}

void createRow(RowWriter& rows, OGRFeature& feature) {
    if (OGRGeometry* shape = feature.GetGeometryRef(); shape != nullptr && shape->hasCurveGeometry()) {
        prepareCurvedRings(*shape);
    }
    rows.create(feature);
}

} // namespace

FileGdbWriter::FileGdbWriter(const std::filesystem::path& target, GDALDataset& source, SaveProgress& progress)
    : source_(source), target_(createGeodatabase(target)), progress_(progress) {
    copyDomains();
}

void FileGdbWriter::copyDomains() {
    for (const std::string& name : source_.GetFieldDomainNames(nullptr)) {
        const QuietErrors errors;
        const OGRFieldDomain* domain = source_.GetFieldDomain(name);
        std::string reason;
        if (domain != nullptr && !target_->AddFieldDomain(std::unique_ptr<OGRFieldDomain>(domain->Clone()), reason)) {
            throw DataError(fmt::format("The domain {} can't be written to a new file geodatabase: {}{}.", name, reason,
                                        errors.text()));
        }
    }
}

OGRLayer& FileGdbWriter::createLayer(OgrTable& table) {
    const QuietErrors errors;
    const Schema& schema = table.schema();
    CPLStringList options;
    options.SetNameValue("FID", schema.fields[0].name.c_str());
    if (schema.shapeField) {
        options.SetNameValue("GEOMETRY_NAME", schema.fields[*schema.shapeField].name.c_str());
        for (const std::string& option : fileGdbGridOptions(source_, schema.name)) {
            options.AddString(option.c_str());
        }
    }
    if (!schema.featureDataset.empty()) {
        options.SetNameValue("FEATURE_DATASET", schema.featureDataset.c_str());
    }
    OGRLayer* layer = target_->CreateLayer(schema.name.c_str(), table.layer().GetSpatialRef(),
                                           table.layer().GetGeomType(), options.List());
    if (layer == nullptr) {
        throw DataError(
            fmt::format("The table {} can't be made in a new file geodatabase: {}.", schema.name, errors.text()));
    }
    const OGRFeatureDefn& definition = *table.layer().GetLayerDefn();
    for (int i = 0; i < definition.GetFieldCount(); ++i) {
        copyField(*layer, *definition.GetFieldDefn(i));
    }
    return *layer;
}

void FileGdbWriter::copyField(OGRLayer& layer, const OGRFieldDefn& field) {
    const QuietErrors errors;
    OGRFieldDefn copy(&field);
    if (layer.CreateField(&copy, FALSE) != OGRERR_NONE) {
        throw DataError(fmt::format("The field {} of {} can't be made in a new file geodatabase: {}.",
                                    field.GetNameRef(), layer.GetName(), errors.text()));
    }
}

void FileGdbWriter::copyTable(OgrTable& table, const TableChanges& changes) {
    OGRLayer& layer = createLayer(table);
    RowWriter rows(layer, table.mapper());
    walkLayer(table.layer(), WalkContent::everything, {}, [&](OGRFeature& stored) {
        const ObjectId id = stored.GetFID();
        if (std::ranges::binary_search(changes.deletes, id)) {
            progress_.beforeRecord();
            return;
        }
        correctOldDates(stored);
        OGRFeature copy(layer.GetLayerDefn());
        copy.SetFrom(&stored, TRUE);
        copy.SetFID(id);
        if (const RecordChange* change = changeOf(changes, id)) {
            progress_.beforeRecord();
            apply(*change, table.mapper(), copy);
        }
        createRow(rows, copy);
    });
    for (const RecordPtr& record : changes.inserts) {
        progress_.beforeRecord();
        OGRFeature feature(layer.GetLayerDefn());
        table.mapper().setAll(feature, *record);
        measureShape(feature);
        createRow(rows, feature);
    }
}

void FileGdbWriter::addField(const std::string& table, const Field& field) {
    createField(*target_->GetLayerByName(table.c_str()), field);
}

void FileGdbWriter::close() {
    const QuietErrors errors;
    const std::string path = target_->GetDescription();
    target_.reset();
    if (errors.any()) {
        throw DataError(fmt::format("{} can't be written: {}.", path, errors.text()));
    }
}

} // namespace qz
