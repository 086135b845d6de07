#include "attributes/QZAttributeTransfer.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <optional>

#include <fmt/format.h>

#include "attributes/QZAttributeRules.h"
#include "common/ErrorExit.h"
#include "common/NumberText.h"
#include "common/Numbers.h"
#include "common/ValueArithmetic.h"
#include "platform/Error.h"

namespace qz {

namespace {

std::optional<std::size_t> editableField(const Schema& schema, const std::string& name) {
    const auto index = schema.findField(name);
    return index && schema.fields[*index].editable ? index : std::nullopt;
}

AttributeRule ruleOf(const Dictionary& rules, const Value& field) {
    const std::string text = toText(*rules.find(field));
    if (auto rule = AttributeRule::parsed(text)) {
        return std::move(*rule);
    }
    throw PlatformError(fmt::format("The rule \"{}\" of the field {} is not made of split rule, pair field and union "
                                    "rule.",
                                    text, toText(field)));
}

bool isEmptyText(const Value& value) {
    const auto* text = std::get_if<std::string>(&value);
    return text && text->empty();
}

bool isInteger(const Field& field) {
    return field.type == FieldType::smallInteger || field.type == FieldType::integer;
}

// A field and its pair in a piece and in the line it comes from.
struct RangeFields {
    std::size_t start;
    std::size_t end;
};

// How one kind of range is counted off.
struct AddressNumbers {
    using Number = std::int32_t;
    static Number read(const Value& value) { return toInteger32(toDouble(value)); }
    static Number inRange(double number) { return toInteger32(number); }
    // Even, so that odd and even house numbers stay on their sides of the street.
    static Number count(Number range, double share) {
        const double raw = range * share;
        return toInteger32(raw - toInteger32(raw) % 2);
    }
};
struct ContinuousNumbers {
    using Number = double;
    static Number read(const Value& value) { return toDouble(value); }
    static Number inRange(double number) { return number; }
    static Number count(Number range, double share) { return range * share; }
};

// Counts a piece's stretch off the range and moves the running total on. Sums are exact in doubles for 32-bit integers.
template <typename Numbers>
void writeStretch(FeatureBuffer& buffer, const Feature& source, const RangeFields& fields, const PieceOfLine& piece,
                  double gap, double& total) {
    using Number = typename Numbers::Number;
    const Number from = Numbers::read(source.value(fields.start));
    const Number to = Numbers::read(source.value(fields.end));
    if (total == 0) {
        total = from;
    }
    const double direction = from < to ? 1 : -1;
    const Number count =
        Numbers::count(Numbers::inRange(std::abs(static_cast<double>(to) - static_cast<double>(from))), piece.share);
    const Number start = Numbers::inRange(total);
    const Number end = piece.isLast ? to : Numbers::inRange(start + direction * count);
    buffer.setValue(fields.start, start);
    buffer.setValue(fields.end, end);
    const double next = start + direction * (count + gap);
    const bool beyond = gap != 0 && direction * (next - to) > 0;
    total = Numbers::inRange(beyond ? to : next);
}

void writeRange(FeatureBuffer& buffer, const Feature& source, const AttributeRule& rule, const RangeFields& fields,
                const PieceOfLine& piece, bool bOver, double& total) {
    const Value& from = source.value(fields.start);
    if (isEmptyText(from)) {
        buffer.setValue(fields.start, from);
        return;
    }
    const Value& to = source.value(fields.end);
    if (!isNumeric(from) || !isNumeric(to)) {
        buffer.setValue(fields.start, from);
        buffer.setValue(fields.end, to);
        return;
    }
    if (rule.split == "Range Address") {
        writeStretch<AddressNumbers>(buffer, source, fields, piece, bOver ? 0 : 2, total);
        return;
    }
    const auto& schema = buffer.schema();
    const bool stepped = !bOver && isInteger(schema.fields[fields.start]) && isInteger(schema.fields[fields.end]);
    writeStretch<ContinuousNumbers>(buffer, source, fields, piece, stepped ? 1 : 0, total);
}

Value emptyValueOf(const Field& field) {
    return field.type == FieldType::string ? Value(std::string()) : freshValue(field);
}

RangeFields rangeFieldsOf(const Schema& schema, std::size_t field, const AttributeRule& rule) {
    const auto pair = schema.findField(rule.pair);
    if (!pair) {
        throw PlatformError(
            fmt::format("{} has no field {}, the pair of {}.", schema.name, rule.pair, schema.fields[field].name));
    }
    return {field, *pair};
}

// Nothing when the kept value stays.
std::optional<Value> mergedNumber(const std::string& rule, const Value& merged, const Value& kept) {
    if (rule == "First" || (rule == "Maximum" && isLess(kept, merged)) || (rule == "Minimum" && isLess(merged, kept))) {
        return merged;
    }
    if (rule == "Sum") {
        return sum(merged, kept);
    }
    return rule == "Average" ? std::optional(mean(merged, kept)) : std::nullopt;
}

std::optional<Value> mergedValue(const Field& field, const std::string& rule, const Value& merged, const Value& kept) {
    if (field.isNumeric()) {
        return mergedNumber(rule, merged, kept);
    }
    return field.type == FieldType::string && rule == "First" ? std::optional(merged) : std::nullopt;
}

} // namespace

RangeTotals::RangeTotals(const Dictionary& rules) {
    for (const Value& field : rules.keys()) {
        totals_.emplace(toText(field), 0);
    }
}

void writeSplitValues(FeatureBuffer& buffer, const Feature& source, const Dictionary& rules, const PieceOfLine& piece,
                      bool bOver, RangeTotals& totals) {
    const Schema& schema = buffer.schema();
    for (const Value& key : rules.keys()) {
        const std::string name = toText(key);
        const auto field = editableField(schema, name);
        if (!field) {
            continue;
        }
        const AttributeRule rule = ruleOf(rules, key);
        if (rule.split == "Empty") {
            buffer.setValue(*field, emptyValueOf(schema.fields[*field]));
        } else if (rule.split == "Copy") {
            buffer.setValue(*field, source.value(*field));
        } else if (rule.split == "Proportion") {
            buffer.setValue(*field, times(source.value(*field), piece.share));
        } else {
            writeRange(buffer, source, rule, rangeFieldsOf(schema, *field, rule), piece, bOver, totals.of(name));
        }
    }
}

bool QZ_MergeAttributes(const FeatureClass& featureClass, const Dictionary& rules, const Feature& merged,
                        Feature& kept) {
    return withErrorExit("", false, [&] {
        const Schema& schema = featureClass.schema();
        for (const Value& key : rules.keys()) {
            if (const auto field = editableField(schema, toText(key))) {
                const std::string rule = ruleOf(rules, key).unite;
                if (auto value = mergedValue(schema.fields[*field], rule, merged.value(*field), kept.value(*field))) {
                    kept.setValue(*field, *value);
                }
            }
        }
        return true;
    });
}

} // namespace qz
