#include "platform/data/Field.h"

#include <limits>
#include <string>

#include <gtest/gtest.h>

#include "platform/Error.h"

namespace qz {
namespace {

Field typed(FieldType type) {
    Field field;
    field.name = "F";
    field.type = type;
    return field;
}

Field sized(FieldType type, int precision, int scale) {
    Field field = typed(type);
    field.precision = precision;
    field.scale = scale;
    return field;
}

Field text(int length) {
    Field field = typed(FieldType::string);
    field.length = length;
    return field;
}

Field wide() {
    Field field = typed(FieldType::integer);
    field.wideInteger = true;
    return field;
}

Field dateOnly() {
    Field field = typed(FieldType::date);
    field.dateOnly = true;
    return field;
}

Field required(FieldType type) {
    Field field = typed(type);
    field.nullable = false;
    field.refusesNull = true;
    return field;
}

TEST(Field, ConvertsToItsType) {
    const struct {
        const char* name;
        Field field;
        Value given;
        Value held;
    } rows[] = {
        {"half rounds to the even integer", typed(FieldType::integer), 2.5, std::int32_t{2}},
        {"odd half rounds up", typed(FieldType::integer), 3.5, std::int32_t{4}},
        {"negative half rounds to even", typed(FieldType::integer), -2.5, std::int32_t{-2}},
        {"numeric text", typed(FieldType::integer), std::string(" 12 "), std::int32_t{12}},
        {"a double of a third", typed(FieldType::smallInteger), 3.33, std::int16_t{3}},
        {"64 bits keep every digit", wide(), std::string("9007199254740993"), std::int64_t{9007199254740993}},
        {"single precision", typed(FieldType::single), 0.1, 0.1F},
        {"number of a width is rounded to its scale", sized(FieldType::doubleFloat, 8, 2), 3.14159, 3.14},
        {"decimals that a double doesn't have need no room", sized(FieldType::doubleFloat, 24, 15), 288332267.53857,
         288332267.53857},
        {"number becomes text", text(0), std::int32_t{12}, std::string("12")},
        {"text of the very length, in characters", text(4), std::string("Öröö"), std::string("Öröö")},
        {"ISO date", typed(FieldType::date), std::string("2024-02-29T13:45:30"),
         DateTime{.year = 2024, .month = 2, .day = 29, .hour = 13, .minute = 45, .second = 30}},
        {"null stays null", typed(FieldType::integer), Value(), Value()},
        {"text becomes an identifier", typed(FieldType::guid), std::string("{1}"), Guid{"{1}"}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_TRUE(identical(convertedTo(row.field, row.given), row.held))
            << toText(convertedTo(row.field, row.given));
        EXPECT_TRUE(checkValue(row.field, row.given));
    }
}

TEST(Field, RefusesWhatItCannotHold) {
    const struct {
        const char* name;
        Field field;
        Value given;
    } rows[] = {
        {"above 16 bits", typed(FieldType::smallInteger), std::int32_t{32768}},
        {"above 32 bits", typed(FieldType::integer), 2147483648.0},
        {"above 64 bits", wide(), 1e19},
        {"not a number", typed(FieldType::doubleFloat), std::numeric_limits<double>::quiet_NaN()},
        {"beyond single precision", typed(FieldType::single), 1e300},
        {"letters behind digits", typed(FieldType::integer), std::string("12a")},
        {"empty text as a number", typed(FieldType::doubleFloat), std::string()},
        {"too wide a number", sized(FieldType::doubleFloat, 6, 2), 12345.678},
        {"too wide an integer", sized(FieldType::integer, 3, 0), std::int32_t{-123}},
        {"text too long", text(3), std::string("road")},
        {"no date", typed(FieldType::date), std::string("2023-02-29")},
        {"a number is no date", typed(FieldType::date), 12.5},
        {"time of day in a plain date", dateOnly(), std::string("2024-05-17T01:00:00")},
        {"null where a value must be", required(FieldType::integer), Value()},
        {"blob as text", typed(FieldType::string), Blob{1, 2}},
        {"the object id", typed(FieldType::objectId), std::int32_t{1}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_THROW(static_cast<void>(convertedTo(row.field, row.given)), PlatformError);
        EXPECT_FALSE(checkValue(row.field, row.given));
    }
}

TEST(Field, RefusalNamesFieldValueAndLimit) {
    try {
        static_cast<void>(convertedTo(text(3), std::string("road")));
        FAIL() << "accepted";
    } catch (const PlatformError& error) {
        EXPECT_STREQ(error.what(),
                     "The value road can't be stored in the field F: it has 4 characters, the field holds 3.");
    }
}

TEST(Field, FreshValueIsNullElseDefaultElseZero) {
    Field notNull = required(FieldType::integer);
    EXPECT_EQ(freshValue(typed(FieldType::integer)), Value());
    EXPECT_EQ(freshValue(notNull), Value(std::int32_t{0}));
    notNull.defaultValue = std::int32_t{7};
    EXPECT_EQ(freshValue(notNull), Value(std::int32_t{7}));
    EXPECT_EQ(freshValue(required(FieldType::string)), Value(std::string()));
}

} // namespace
} // namespace qz
