#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "platform/data/Value.h"

namespace qz {

// The numbers are those that attribute rules and field dictionaries know.
enum class FieldType {
    smallInteger = 0,
    integer = 1,
    single = 2,
    doubleFloat = 3,
    string = 4,
    date = 5,
    objectId = 6,
    geometry = 7,
    blob = 8,
    raster = 9,
    guid = 10,
    globalId = 11
};

// "small integer", "integer", "single", "double", "text", "date", ...
[[nodiscard]] const char* nameOf(FieldType type) noexcept;

// Limits included.
struct RangeDomain {
    Value minimum;
    Value maximum;
};

struct CodedValueDomain {
    std::vector<std::pair<Value, std::string>> codes; // code and name, in the order of the store
};

// A rule that neither lists values nor bounds them, such as a text pattern.
struct OtherDomain {
    std::string description;
};

struct Domain {
    std::string name;
    std::variant<RangeDomain, CodedValueDomain, OtherDomain> rule;
};

struct Field {
    std::string name;
    std::string alias; // the name when the store has none
    FieldType type = FieldType::string;
    int length = 0;           // of text, in characters; 0: unlimited
    int precision = 0;        // of a number: total characters with sign and decimal mark; 0: unlimited
    int scale = 0;            // of a number with `precision`: digits after the decimal mark
    bool nullable = true;     // whether editors may set null
    bool refusesNull = false; // whether the store has no place for null at all
    bool editable = true;
    bool wideInteger = false; // an integer that the store keeps in 64 bits
    bool dateOnly = false;    // a date without a time of day
    std::optional<Value> defaultValue;
    std::shared_ptr<const Domain> domain;

    [[nodiscard]] bool isNumeric() const noexcept { return type <= FieldType::doubleFloat; }
};

// The value as the field holds it. Integers are rounded half to even; numeric text becomes a number; numbers of a field
// with `precision` are rounded to its scale. Text is never shortened, a number never wrapped around.
// Throws PlatformError that names field and value when it can't be held: text too long, a number out of range or too
// wide, text that is no number or no date, a number that is not finite, null in a field that refuses it.
[[nodiscard]] Value convertedTo(const Field& field, const Value& value);

// Whether the field's type holds the value; domains play no part.
[[nodiscard]] bool checkValue(const Field& field, const Value& value);

// What a field of a new row holds until something is written: null when it is nullable, else its default, else 0, an
// empty text, or 1899-12-30 where a date must have a value.
[[nodiscard]] Value freshValue(const Field& field);

} // namespace qz
