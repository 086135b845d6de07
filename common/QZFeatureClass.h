#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "common/Dictionary.h"
#include "platform/data/FeatureClass.h"

namespace qz {

// What every writer asks about a class. Field names are found in any letter case.

// "Geodatabase", "Shapefile", or "Coverage" for other data kept in files.
[[nodiscard]] std::string QZ_GetFCType(const FeatureClass& featureClass);

struct WorkspaceOfClass {
    Workspace& workspace;
    std::string kind; // "shp" for a directory of files, "gdb" for any other
};
[[nodiscard]] WorkspaceOfClass QZ_GetWorkspaceFromFC(const FeatureClass& featureClass);

// The code of the default subtype; nothing when the class has no subtypes, as no class kept in files has.
[[nodiscard]] std::optional<std::int32_t> QZ_HasSubtypes(const FeatureClass& featureClass);

[[nodiscard]] bool QZ_FCHasZ(const FeatureClass& featureClass);
[[nodiscard]] bool QZ_FCHasM(const FeatureClass& featureClass);

struct FieldDomain {
    std::string kind;   // "range", "cvd" for coded values, "string" for any other rule
    Dictionary entries; // "range": 1 the minimum, 2 the maximum; "cvd": names by code, the first of equal codes
};
// Nothing when there is no such field, or it has no domain.
[[nodiscard]] std::optional<FieldDomain> QZ_GetFieldDomain(const FeatureClass& featureClass, const std::string& name);

// Whether subtypes and domains let the field have the value. The subtype field holds codes of subtypes only. A range
// is tested with numbers, numeric texts and dates; codes are equal by kind and value: the text "1" is not the code 1.
[[nodiscard]] bool QZ_ValidateFieldValue(const FeatureClass& featureClass, const std::string& name, const Value& value);

struct NewField {
    std::string name;
    std::string kind;        // "str", "dbl", "lng" or "small"
    int length = 0;          // of a text, in characters; of a double its precision, in characters; 0: unlimited
    int scale = 0;           // of a double with a precision: digits after the decimal mark
    Value defaultValue = {}; // null: none
};
// Does nothing when the class has a field of that name. Throws PlatformError for another kind, DataError when the store
// can't add it.
void QZ_AddField(FeatureClass& featureClass, const NewField& field);

// Index of a target field to the value it takes over from the source's field of the same name: of every field but the
// object id, the shape and identifiers, whose value is not null and fits an editable target field.
[[nodiscard]] Dictionary QZ_FieldMatchingDic(const Feature& source, const FeatureClass& target);

} // namespace qz
