#include "common/QZFeatureClass.h"

#include <algorithm>

#include <fmt/format.h>

#include "common/NumberText.h"
#include "common/Numbers.h"
#include "platform/Error.h"

namespace qz {

namespace {

const Field* findField(const FeatureClass& featureClass, const std::string& name) {
    const Schema& schema = featureClass.schema();
    const auto index = schema.findField(name);
    return index ? &schema.fields[*index] : nullptr;
}

const ShapeDefinition* shapeOf(const FeatureClass& featureClass) {
    const auto& shape = featureClass.schema().shape;
    return shape ? &*shape : nullptr;
}

Dictionary limits(const RangeDomain& range) {
    Dictionary entries;
    entries.add(std::int32_t{1}, range.minimum);
    entries.add(std::int32_t{2}, range.maximum);
    return entries;
}

Dictionary namesByCode(const CodedValueDomain& domain) {
    Dictionary entries;
    for (const auto& [code, name] : domain.codes) {
        if (!entries.exists(code)) {
            entries.add(code, name);
        }
    }
    return entries;
}

bool isWithin(const Value& value, const Value& minimum, const Value& maximum) {
    if (const auto* date = std::get_if<DateTime>(&value)) {
        const auto* from = std::get_if<DateTime>(&minimum);
        const auto* to = std::get_if<DateTime>(&maximum);
        return from && to && *from <= *date && *date <= *to;
    }
    if (!isNumeric(value) || !isNumeric(minimum) || !isNumeric(maximum)) {
        return false;
    }
    return toDouble(minimum) <= toDouble(value) && toDouble(value) <= toDouble(maximum);
}

bool isSubtypeCode(const Subtypes& subtypes, const Value& value) {
    if (!isNumeric(value)) {
        return false;
    }
    const std::int32_t code = toInteger32(toDouble(value));
    return std::any_of(subtypes.codes.begin(), subtypes.codes.end(),
                       [code](const auto& subtype) { return subtype.first == code; });
}

// A text that reads as a date counts as the date.
Value dateOrSelf(const Value& value) {
    const auto* text = std::get_if<std::string>(&value);
    const auto date = text ? readDate(*text) : std::nullopt;
    return date ? Value(*date) : value;
}

FieldType typeOf(const NewField& field) {
    static constexpr std::pair<const char*, FieldType> kinds[] = {{"str", FieldType::string},
                                                                  {"dbl", FieldType::doubleFloat},
                                                                  {"lng", FieldType::integer},
                                                                  {"small", FieldType::smallInteger}};
    for (const auto& [kind, type] : kinds) {
        if (field.kind == kind) {
            return type;
        }
    }
    throw PlatformError(fmt::format("The field {} can't be added: \"{}\" is none of the kinds str, dbl, lng, small.",
                                    field.name, field.kind));
}

bool isCopied(const Field& field) {
    switch (field.type) {
    case FieldType::objectId:
    case FieldType::geometry:
    case FieldType::guid:
    case FieldType::globalId:
        return false;
    default:
        return true;
    }
}

} // namespace

std::string QZ_GetFCType(const FeatureClass& featureClass) {
    const Workspace& workspace = featureClass.workspace();
    if (workspace.type() != WorkspaceType::fileSystem) {
        return "Geodatabase";
    }
    return workspace.datasetCategory() == "Shapefile Feature Class" ? "Shapefile" : "Coverage";
}

WorkspaceOfClass QZ_GetWorkspaceFromFC(const FeatureClass& featureClass) {
    Workspace& workspace = featureClass.workspace();
    return {workspace, workspace.isDirectory() ? "shp" : "gdb"};
}

std::optional<std::int32_t> QZ_HasSubtypes(const FeatureClass& featureClass) {
    const auto& subtypes = featureClass.schema().subtypes;
    return subtypes && QZ_GetFCType(featureClass) == "Geodatabase" ? std::optional(subtypes->defaultCode)
                                                                   : std::nullopt;
}

bool QZ_FCHasZ(const FeatureClass& featureClass) {
    const ShapeDefinition* shape = shapeOf(featureClass);
    return shape && shape->hasZ;
}

bool QZ_FCHasM(const FeatureClass& featureClass) {
    const ShapeDefinition* shape = shapeOf(featureClass);
    return shape && shape->hasM;
}

std::optional<FieldDomain> QZ_GetFieldDomain(const FeatureClass& featureClass, const std::string& name) {
    const Field* field = findField(featureClass, name);
    if (!field || !field->domain) {
        return std::nullopt;
    }
    if (const auto* range = std::get_if<RangeDomain>(&field->domain->rule)) {
        return FieldDomain{"range", limits(*range)};
    }
    if (const auto* coded = std::get_if<CodedValueDomain>(&field->domain->rule)) {
        return FieldDomain{"cvd", namesByCode(*coded)};
    }
    return FieldDomain{"string", {}};
}

bool QZ_ValidateFieldValue(const FeatureClass& featureClass, const std::string& name, const Value& value) {
    const Schema& schema = featureClass.schema();
    if (QZ_HasSubtypes(featureClass) && schema.findField(name) == schema.findField(schema.subtypes->field)) {
        return isSubtypeCode(*schema.subtypes, value);
    }
    const auto domain = QZ_GetFieldDomain(featureClass, name);
    if (domain && domain->kind == "range") {
        return isWithin(dateOrSelf(value), *domain->entries.find(std::int32_t{1}),
                        *domain->entries.find(std::int32_t{2}));
    }
    return !domain || domain->kind != "cvd" || domain->entries.exists(value);
}

void QZ_AddField(FeatureClass& featureClass, const NewField& added) {
    if (findField(featureClass, added.name)) {
        return;
    }
    Field field;
    field.name = added.name;
    field.alias = added.name;
    field.type = typeOf(added);
    if (field.type == FieldType::string) {
        field.length = added.length;
    } else if (field.type == FieldType::doubleFloat) {
        field.precision = added.length;
        field.scale = added.scale;
    }
    if (!isNull(added.defaultValue)) {
        field.defaultValue = added.defaultValue;
    }
    featureClass.addField(field);
}

Dictionary QZ_FieldMatchingDic(const Feature& source, const FeatureClass& target) {
    Dictionary matching;
    const auto& fields = source.schema().fields;
    for (std::size_t i = 0; i < fields.size(); ++i) {
        const auto index = target.schema().findField(fields[i].name);
        if (!index || !isCopied(fields[i])) {
            continue;
        }
        const Field& field = target.schema().fields[*index];
        const Value& value = source.value(i);
        if (field.editable && !isNull(value) && checkValue(field, value)) {
            matching.set(static_cast<std::int32_t>(*index), value);
        }
    }
    return matching;
}

} // namespace qz
