#include "common/QZInsertFeature.h"

#include <string>

#include "common/ErrorExit.h"
#include "common/ValueArithmetic.h"
#include "platform/Error.h"
#include "platform/geometry/Measures.h"

namespace qz {

namespace {

double lengthOf(const Geometry& geometry) {
    if (const auto* polyline = geometry.getIf<Polyline>()) {
        return length(*polyline);
    }
    const auto* polygon = geometry.getIf<Polygon>();
    return polygon ? perimeter(*polygon) : 0;
}

double areaOf(const Geometry& geometry) {
    const auto* polygon = geometry.getIf<Polygon>();
    return polygon ? area(*polygon) : 0;
}

double ratio(double part, double whole) {
    return whole == 0 ? 1 : part / whole;
}

double shareOf(const Geometry& geometry, const std::optional<Geometry>& source) {
    if (!source) {
        return 1;
    }
    switch (geometry.kind()) {
    case GeometryKind::polyline:
        return ratio(lengthOf(geometry), lengthOf(*source));
    case GeometryKind::polygon:
        return ratio(areaOf(geometry), areaOf(*source));
    default:
        return 1;
    }
}

Geometry insertedShape(const Geometry& geometry, const std::optional<Geometry>& source) {
    const auto* point = geometry.getIf<Point>();
    if (!point || !source || source->kind() != GeometryKind::multipoint) {
        return geometry;
    }
    Multipoint multipoint;
    static_cast<GeometryTraits&>(multipoint) = *point;
    multipoint.vertices = {point->vertex};
    return multipoint;
}

bool isCopied(const Field& field) {
    return field.name != "QZ_ID" && field.type != FieldType::objectId && field.type != FieldType::geometry &&
           field.editable;
}

bool isProportional(const Field& field, const Dictionary* rules) {
    const Value* rule = field.isNumeric() && rules ? rules->find(field.name) : nullptr;
    const std::string text = rule ? toText(*rule) : "";
    return text.substr(0, text.find('|')) == "Proportion";
}

void copyValues(FeatureBuffer& buffer, const Feature& source, double share, const Dictionary* rules) {
    const auto& fields = source.schema().fields;
    for (std::size_t i = 0; i < fields.size(); ++i) {
        if (isCopied(fields[i])) {
            const Value& value = source.value(i);
            buffer.setValue(i, isProportional(fields[i], rules) ? times(value, share) : value);
        }
    }
}

} // namespace

bool QZ_InsertFeature(FeatureCursor& insertCursor, FeatureBuffer& buffer, const Feature* source,
                      const Geometry& geometry, const Dictionary* updateDic) {
    return withErrorExit(" insert feature", false, [&] {
        if (!source) {
            throw PlatformError("Object variable not set: there is no feature to copy from");
        }
        buffer.setShape(insertedShape(geometry, source->shape()));
        copyValues(buffer, *source, shareOf(geometry, source->shape()), updateDic);
        insertCursor.insert(buffer);
        return true;
    });
}

} // namespace qz
