#include "platform/store/ogr/OgrSchema.h"

#include <algorithm>
#include <cmath>

#include <fmt/format.h>

#include "platform/geometry/ogr/OgrSpatialReference.h"
#include "platform/store/ogr/FileGdbGrid.h"
#include "platform/store/ogr/GpkgSideTable.h"
#include "platform/store/ogr/OgrDomains.h"

namespace qz {

namespace {

// Coordinates of an unknown reference that stay within this bound look like degrees: a turn and some margin.
constexpr double largestDegrees = 400;

FieldType typeOfText(OGRFieldSubType subtype) {
    return subtype == OFSTUUID ? FieldType::guid : FieldType::string;
}

FieldType typeOf(const OGRFieldDefn& definition) {
    const OGRFieldSubType subtype = definition.GetSubType();
    switch (definition.GetType()) {
    case OFTInteger:
        return subtype == OFSTInt16 || subtype == OFSTBoolean ? FieldType::smallInteger : FieldType::integer;
    case OFTInteger64:
        return FieldType::integer;
    case OFTReal:
        return subtype == OFSTFloat32 ? FieldType::single : FieldType::doubleFloat;
    case OFTDate:
    case OFTDateTime:
        return FieldType::date;
    case OFTBinary:
        return FieldType::blob;
    case OFTString:
        return typeOfText(subtype);
    default:
        return FieldType::string;
    }
}

// Times of day and lists are shown as text; what is stored can't be made from such text again.
bool isShownOnly(OGRFieldType type) {
    return type == OFTTime || type == OFTIntegerList || type == OFTInteger64List || type == OFTRealList ||
           type == OFTStringList;
}

// File geodatabases keep length and area of the shape in fields of their own.
bool isMaintainedByFormat(const OGRFieldDefn& definition, StoreFormat format) {
    return format == StoreFormat::fileGeodatabase &&
           (EQUAL(definition.GetNameRef(), "Shape_Length") || EQUAL(definition.GetNameRef(), "Shape_Area"));
}

// GDAL gives a default as SQL writes it: a number, or a text in single quotes. Functions have no fixed value.
std::optional<Value> defaultValue(const Field& field, const char* sql) {
    if (sql == nullptr) {
        return std::nullopt;
    }
    std::string text(sql);
    if (text.size() >= 2 && text.front() == '\'' && text.back() == '\'') {
        const std::string inner = text.substr(1, text.size() - 2);
        text.clear();
        for (std::size_t i = 0; i < inner.size(); ++i) {
            text += inner[i];
            i += inner.compare(i, 2, "''") == 0 ? 1 : 0;
        }
        if (field.type == FieldType::date) {
            std::replace(text.begin(), text.end(), '/', '-');
        }
    } else if (!field.isNumeric()) {
        return std::nullopt;
    }
    try {
        return convertedTo(field, text);
    } catch (const PlatformError&) {
        return std::nullopt;
    }
}

std::string nameOr(const char* name, const char* otherwise) {
    return name != nullptr && *name != '\0' ? name : otherwise;
}

Field namedField(const std::string& name, FieldType type) {
    Field field;
    field.name = name;
    field.alias = name;
    field.type = type;
    return field;
}

Field fieldOf(const OGRFieldDefn& definition, GDALDataset& dataset, const FormatRules& rules) {
    const OGRFieldType type = definition.GetType();
    Field field = namedField(definition.GetNameRef(), typeOf(definition));
    field.alias = nameOr(definition.GetAlternativeNameRef(), definition.GetNameRef());
    const bool numeric = type == OFTInteger || type == OFTInteger64 || type == OFTReal;
    field.length = type == OFTString ? definition.GetWidth() : 0;
    field.precision = numeric && rules.format == StoreFormat::shapefile ? definition.GetWidth() : 0;
    field.scale = field.precision > 0 ? definition.GetPrecision() : 0;
    field.wideInteger = type == OFTInteger64;
    field.dateOnly = type == OFTDate;
    field.refusesNull = definition.IsNullable() == 0;
    field.nullable = rules.capabilities.nulls && !field.refusesNull;
    field.editable = !isShownOnly(type) && !isMaintainedByFormat(definition, rules.format);
    field.defaultValue = defaultValue(field, definition.GetDefault());
    field.domain = domainOf(dataset, definition, field);
    return field;
}

Field objectIdField(OGRLayer& layer) {
    Field field = namedField(nameOr(layer.GetFIDColumn(), "FID"), FieldType::objectId);
    field.nullable = false;
    field.refusesNull = true;
    field.editable = false;
    return field;
}

Field shapeField(OGRLayer& layer) {
    return namedField(nameOr(layer.GetGeometryColumn(), "Shape"), FieldType::geometry);
}

std::optional<GeometryKind> kindOf(OGRwkbGeometryType type) {
    const OGRwkbGeometryType flat = wkbFlatten(type);
    if (flat == wkbPoint) {
        return GeometryKind::point;
    }
    if (flat == wkbMultiPoint) {
        return GeometryKind::multipoint;
    }
    if (OGR_GT_IsSubClassOf(flat, wkbCurve) || OGR_GT_IsSubClassOf(flat, wkbMultiCurve)) {
        return GeometryKind::polyline;
    }
    if (OGR_GT_IsSubClassOf(flat, wkbSurface) || OGR_GT_IsSubClassOf(flat, wkbMultiSurface)) {
        return GeometryKind::polygon;
    }
    return std::nullopt;
}

bool declaredStraight(OGRwkbGeometryType type) {
    const OGRwkbGeometryType flat = wkbFlatten(type);
    return flat == wkbLineString || flat == wkbMultiLineString || flat == wkbPolygon || flat == wkbMultiPolygon;
}

bool declaredSingle(OGRwkbGeometryType type) {
    return kindOf(type).has_value() && !OGR_GT_IsSubClassOf(wkbFlatten(type), wkbGeometryCollection);
}

bool looksLikeDegrees(OGRLayer& layer) {
    OGREnvelope extent;
    return layer.GetExtent(&extent, FALSE) == OGRERR_NONE && extent.MinX >= -largestDegrees &&
           extent.MaxX <= largestDegrees;
}

SpatialReference referenceOf(GDALDataset& dataset, OGRLayer& layer, const FormatRules& rules) {
    SpatialReference reference = fromOgr(layer.GetSpatialRef());
    if (reference.isNone() || reference.isUnknown()) {
        reference =
            SpatialReference::unknown(looksLikeDegrees(layer) ? CoordinateGrid::forDegrees() : CoordinateGrid{});
    }
    if (rules.format == StoreFormat::fileGeodatabase) {
        if (const auto grid = fileGdbGrid(dataset, layer.GetName())) {
            return reference.withGrid(*grid);
        }
    }
    return reference;
}

ShapeDefinition shapeDefinition(GDALDataset& dataset, OGRLayer& layer, const FormatRules& rules) {
    const OGRwkbGeometryType type = layer.GetGeomType();
    ShapeDefinition shape;
    shape.kind = kindOf(type);
    shape.hasZ = OGR_GT_HasZ(type) != 0;
    shape.hasM = OGR_GT_HasM(type) != 0;
    shape.allowsMultipart = rules.singlePartKindsHoldParts || !declaredSingle(type);
    shape.allowsArcs = rules.capabilities.arcs && (rules.singlePartKindsHoldParts || !declaredStraight(type));
    shape.allowsEmpty = rules.holdsEmptyShapes;
    shape.allowsUndefinedZ = rules.holdsUndefinedZ;
    shape.spatialReference = referenceOf(dataset, layer, rules);
    return shape;
}

OGRFieldType ogrTypeOf(const Field& field) {
    switch (field.type) {
    case FieldType::smallInteger:
    case FieldType::integer:
        return field.wideInteger ? OFTInteger64 : OFTInteger;
    case FieldType::single:
    case FieldType::doubleFloat:
        return OFTReal;
    case FieldType::date:
        return field.dateOnly ? OFTDate : OFTDateTime;
    case FieldType::blob:
    case FieldType::raster:
        return OFTBinary;
    default:
        return OFTString;
    }
}

OGRFieldSubType ogrSubtypeOf(FieldType type) {
    switch (type) {
    case FieldType::smallInteger:
        return OFSTInt16;
    case FieldType::single:
        return OFSTFloat32;
    case FieldType::guid:
    case FieldType::globalId:
        return OFSTUUID;
    default:
        return OFSTNone;
    }
}

void setDefault(OGRFieldDefn& definition, const Field& field) {
    if (field.defaultValue && !isNull(*field.defaultValue)) {
        const std::string text = toText(*field.defaultValue);
        definition.SetDefault(field.isNumeric() ? text.c_str() : quotedText(text).c_str());
    }
}

} // namespace

Schema schemaOf(GDALDataset& dataset, OGRLayer& layer, const FormatRules& rules, std::int32_t classId,
                const std::string& featureDataset) {
    const QuietErrors errors;
    Schema schema;
    schema.name = layer.GetName();
    schema.fields.push_back(objectIdField(layer));
    schema.objectIdField = 0;
    if (layer.GetGeomType() != wkbNone) {
        schema.fields.push_back(shapeField(layer));
        schema.shapeField = 1;
        schema.shape = shapeDefinition(dataset, layer, rules);
    }
    const OGRFeatureDefn& definition = *layer.GetLayerDefn();
    for (int i = 0; i < definition.GetFieldCount(); ++i) {
        schema.fields.push_back(fieldOf(*definition.GetFieldDefn(i), dataset, rules));
    }
    schema.classId = rules.registersClasses ? classId : -1;
    schema.featureDataset = featureDataset;
    if (rules.format == StoreFormat::geoPackage) {
        completeFromSideTable(dataset, schema);
    }
    return schema;
}

void createField(OGRLayer& layer, const Field& field) {
    const QuietErrors errors;
    OGRFieldDefn definition(field.name.c_str(), ogrTypeOf(field));
    definition.SetSubType(ogrSubtypeOf(field.type));
    definition.SetWidth(field.type == FieldType::string ? field.length : field.precision);
    definition.SetPrecision(field.scale);
    definition.SetNullable(field.refusesNull ? 0 : 1);
    if (!field.alias.empty() && field.alias != field.name) {
        definition.SetAlternativeName(field.alias.c_str());
    }
    setDefault(definition, field);
    if (layer.CreateField(&definition, FALSE) != OGRERR_NONE) {
        throw DataError(
            fmt::format("The field {} can't be added to {}: {}.", field.name, layer.GetName(), errors.text()));
    }
}

} // namespace qz
