#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "common/Dictionary.h"
#include "platform/data/FeatureClass.h"

namespace qz {

// How each field of a layer gets its value when features are split, and when they are merged. A rule dictionary has a
// text for each field: split rule, pair field and union rule joined by "|", as in "Range Address|TO_ADDR|Range
// Address". Rule words and field names are compared to the letter; a pair field may be written in any letter case.
//
// Rules are kept in the table <class>_QZAttributeRules of the geodatabase, with the text fields FieldName, SplitRule,
// PairField and UnionRule; or beside file-based data in the file <dataset>.qza, whose lines hold the same four items
// separated by commas, without header, quotes or blanks. Reading them never stops an operation: what is missing or
// wrong gives the default "Copy|None|First".

struct AttributeRule {
    std::string split = "Copy";
    std::string pair = "None";
    std::string unite = "First";

    [[nodiscard]] std::string text() const { return split + '|' + pair + '|' + unite; }
    // Nothing for a text that is not of three items.
    [[nodiscard]] static std::optional<AttributeRule> parsed(std::string_view text);
};

// The rules that splitting and merging go by: those of the layer, without the fields that another field's rule takes
// along as its pair. The layer is the first of that name on the focus map. Nothing when there is none, or a failure was
// reported.
[[nodiscard]] std::optional<Dictionary> QZ_GetAttRules(const std::string& layerName);

// One valid rule for each numeric, text and date field, in field order. Nothing after a failure, which is reported.
[[nodiscard]] std::optional<Dictionary> QZ_GetVerifiedAttDictionary(const std::string& layerName);

// The rules as the table has them, unknown words replaced by "Copy" and "First"; the first row for a field counts.
// Nothing for a table without rows or without one of the four fields, and after a failure, which is reported.
[[nodiscard]] std::optional<Dictionary> QZ_AttRulesDicFromTable(FeatureClass& table);

// The rules as the file has them, words untested; the first line for a field counts and lines of another number of
// items don't. Nothing when there is no such file, and after a failure, which is reported.
[[nodiscard]] std::optional<Dictionary> QZ_AttRulesDicFromFile(const std::string& path);

// Every numeric, text and date field with its rule in `read`, or the default where there is none or a wrong one.
[[nodiscard]] std::optional<Dictionary> QZ_VerifyAttDic(const FeatureClass& featureClass, const Dictionary& read);

// Every numeric, text and date field with the default rule.
[[nodiscard]] std::optional<Dictionary> QZ_CreateDefaultAttDic(const FeatureClass& featureClass);

// Where the rules of a class would be kept, what was read there, and the rules in force.
struct AttributeRuleSources {
    std::string place; // "table <name>" or "file <path>"
    bool exists = false;
    std::optional<Dictionary> read; // nothing when it doesn't exist or can't be used
    Dictionary inForce;
};
// Throws PlatformError and DataError.
[[nodiscard]] AttributeRuleSources attributeRuleSources(FeatureClass& featureClass);

} // namespace qz
