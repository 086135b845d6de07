#include "platform/store/ogr/OgrRecords.h"

#include <chrono>
#include <cmath>
#include <type_traits>
#include <utility>

#include <fmt/format.h>

#include "platform/geometry/ogr/OgrGeometry.h"

namespace qz {

namespace {

// OGR keeps seconds as float; stores keep milliseconds.
double wholeMilliseconds(float seconds) {
    return std::round(static_cast<double>(seconds) * 1000) / 1000;
}

DateTime dateOf(const OGRFeature& feature, int index) {
    DateTime date;
    float second = 0;
    feature.GetFieldAsDateTime(index, &date.year, &date.month, &date.day, &date.hour, &date.minute, &second,
                               &date.timeZone);
    date.second = wholeMilliseconds(second);
    return date;
}

DateTime oneSecondEarlier(const DateTime& date) {
    using namespace std::chrono;
    const sys_days day = year(date.year) / static_cast<int>(date.month) / date.day;
    const sys_seconds moment =
        day + hours(date.hour) + minutes(date.minute) + seconds(static_cast<int>(date.second)) - seconds(1);
    const year_month_day date2(floor<days>(moment));
    const hh_mm_ss time(moment - floor<days>(moment));
    return {.year = static_cast<int>(date2.year()),
            .month = static_cast<int>(static_cast<unsigned>(date2.month())),
            .day = static_cast<int>(static_cast<unsigned>(date2.day())),
            .hour = static_cast<int>(time.hours().count()),
            .minute = static_cast<int>(time.minutes().count()),
            .timeZone = date.timeZone,
            .second = static_cast<double>(time.seconds().count())};
}

Value blobValue(const OGRFeature& feature, int index) {
    int size = 0;
    // The function doesn't change the feature, though it isn't declared const.
    const GByte* bytes = const_cast<OGRFeature&>(feature).GetFieldAsBinary(index, &size);
    return Blob(bytes, bytes + size);
}

// Some formats let other programs put numbers into a column that its kind doesn't have: they stay as they are, so that
// they are refused where they would be copied, and not cut off.
Value integerValue(const Field& field, GIntBig number) {
    if (field.type == FieldType::smallInteger && std::in_range<std::int16_t>(number)) {
        return static_cast<std::int16_t>(number);
    }
    if (field.wideInteger || !std::in_range<std::int32_t>(number)) {
        return static_cast<std::int64_t>(number);
    }
    return static_cast<std::int32_t>(number);
}

void replaceUndefinedMeasures(Geometry& shape) {
    transformVertices(shape, [](Vertex& vertex) {
        if (std::isnan(vertex.m)) {
            vertex.m = shapefileNoData;
        }
    });
}

void restoreUndefinedMeasures(Geometry& shape) {
    transformVertices(shape, [](Vertex& vertex) {
        if (vertex.m < shapefileNoDataLimit) {
            vertex.m = undefined;
        }
    });
}

void setDate(OGRFeature& feature, int index, const DateTime& date) {
    feature.SetField(index, date.year, date.month, date.day, date.hour, date.minute, static_cast<float>(date.second),
                     date.timeZone);
}

} // namespace

void correctOldDates(OGRFeature& feature) {
    for (int i = 0; i < feature.GetFieldCount(); ++i) {
        const OGRFieldType type = feature.GetFieldDefnRef(i)->GetType();
        if ((type == OFTDateTime || type == OFTDate) && feature.IsFieldSetAndNotNull(i)) {
            if (const DateTime date = dateOf(feature, i); date.year < 1970) {
                setDate(feature, i, oneSecondEarlier(date));
            }
        }
    }
}

Value OgrRecordMapper::value(const OGRFeature& feature, int index) const {
    if (!feature.IsFieldSetAndNotNull(index)) {
        return {};
    }
    const Field& field = schema_.fields[firstAttribute() + static_cast<std::size_t>(index)];
    switch (field.type) {
    case FieldType::smallInteger:
    case FieldType::integer:
        return integerValue(field, feature.GetFieldAsInteger64(index));
    case FieldType::single:
        return static_cast<float>(feature.GetFieldAsDouble(index));
    case FieldType::doubleFloat:
        return feature.GetFieldAsDouble(index);
    case FieldType::date:
        return storedDate(feature, index);
    case FieldType::blob:
    case FieldType::raster:
        return blobValue(feature, index);
    case FieldType::guid:
    case FieldType::globalId:
        return Guid{feature.GetFieldAsString(index)};
    default:
        return std::string(feature.GetFieldAsString(index));
    }
}

Value OgrRecordMapper::storedDate(const OGRFeature& feature, int index) const {
    DateTime date = dateOf(feature, index);
    if (rules_.format == StoreFormat::fileGeodatabase) {
        date.timeZone = 0; // the format keeps none, GDAL says UTC
    }
    return date;
}

Geometry OgrRecordMapper::shapeOf(const OGRGeometry& stored, const OGRFeature& feature) const {
    try {
        return fromOgr(stored);
    } catch (const PlatformError& error) {
        throw PlatformError(fmt::format("The shape of the row {} of {} can't be read: {}", feature.GetFID(),
                                        schema_.name, error.what()));
    }
}

RecordPtr OgrRecordMapper::record(const OGRFeature& feature) const {
    auto record = std::make_shared<FeatureRecord>();
    record->id = feature.GetFID();
    record->values.resize(schema_.fields.size());
    for (int i = 0; i < feature.GetFieldCount(); ++i) {
        record->values[firstAttribute() + static_cast<std::size_t>(i)] = value(feature, i);
    }
    const OGRGeometry* stored = schema_.shape ? feature.GetGeometryRef() : nullptr;
    if (stored != nullptr) {
        record->shape = shapeOf(*stored, feature);
        GeometryTraits& traits = record->shape->traits();
        traits.spatialReference = schema_.shape->spatialReference;
        // GDAL shows no measures when all of them are undefined.
        traits.zAware = traits.zAware || schema_.shape->hasZ;
        traits.mAware = traits.mAware || schema_.shape->hasM;
        if (rules_.format == StoreFormat::shapefile && schema_.shape->hasM) {
            restoreUndefinedMeasures(*record->shape);
        }
    }
    return record;
}

void OgrRecordMapper::setAll(OGRFeature& feature, const FeatureRecord& record) const {
    feature.SetFID(record.id);
    for (std::size_t field = firstAttribute(); field < schema_.fields.size(); ++field) {
        setValue(feature, field, record.values[field]);
    }
    setShape(feature, record);
}

void OgrRecordMapper::setChangedValues(OGRFeature& feature, const RecordChange& change) const {
    for (std::size_t field = firstAttribute(); field < change.changedValues.size(); ++field) {
        if (change.changedValues[field]) {
            setValue(feature, field, change.record->values[field]);
        }
    }
}

void OgrRecordMapper::setShape(OGRFeature& feature, const FeatureRecord& record) const {
    if (!schema_.shape) {
        return;
    }
    if (!record.shape) {
        feature.SetGeometryDirectly(nullptr);
        return;
    }
    const ShapeDefinition& definition = *schema_.shape;
    const GeometryTraits& given = record.shape->traits();
    const bool asMultipart = definition.kind && definition.allowsMultipart && !rules_.singlePartKindsHoldParts;
    const bool measuresToReplace = rules_.format == StoreFormat::shapefile && definition.hasM;
    const bool mixed = !definition.kind;
    if (mixed || (given.zAware == definition.hasZ && given.mAware == definition.hasM && !measuresToReplace)) {
        feature.SetGeometryDirectly(toOgr(*record.shape, asMultipart).release());
        return;
    }
    Geometry shape = *record.shape;
    shape.traits().zAware = definition.hasZ;
    shape.traits().mAware = definition.hasM;
    if (measuresToReplace) {
        replaceUndefinedMeasures(shape);
    }
    feature.SetGeometryDirectly(toOgr(shape, asMultipart).release());
}

void OgrRecordMapper::setValue(OGRFeature& feature, std::size_t field, const Value& value) const {
    const int index = static_cast<int>(field - firstAttribute());
    std::visit(
        [&](const auto& content) {
            using Content = std::decay_t<decltype(content)>;
            if constexpr (std::is_same_v<Content, std::monostate>) {
                feature.SetFieldNull(index);
            } else if constexpr (std::is_same_v<Content, std::int64_t>) {
                feature.SetField(index, static_cast<GIntBig>(content));
            } else if constexpr (std::is_integral_v<Content>) {
                feature.SetField(index, static_cast<int>(content));
            } else if constexpr (std::is_floating_point_v<Content>) {
                feature.SetField(index, static_cast<double>(content));
            } else if constexpr (std::is_same_v<Content, std::string>) {
                feature.SetField(index, content.c_str());
            } else if constexpr (std::is_same_v<Content, DateTime>) {
                setDate(feature, index, content);
            } else if constexpr (std::is_same_v<Content, Blob>) {
                feature.SetField(index, static_cast<int>(content.size()), content.data());
            } else {
                feature.SetField(index, content.text.c_str());
            }
        },
        value);
}

} // namespace qz
