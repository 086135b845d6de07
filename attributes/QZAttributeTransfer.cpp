#include "attributes/QZAttributeTransfer.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <initializer_list>
#include <iterator>
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

void writeRange(FeatureBuffer& buffer, const Feature& source, const SplitRules::Rule& rule, const PieceOfLine& piece,
                bool bOver, double& total) {
    const RangeFields fields{rule.field, rule.pair};
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
    if (rule.kind == SplitRules::Kind::addressRange) {
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

SplitRules::Kind kindOf(const std::string& rule) {
    static constexpr std::pair<const char*, SplitRules::Kind> words[] = {
        {"Copy", SplitRules::Kind::copy},
        {"Empty", SplitRules::Kind::empty},
        {"Proportion", SplitRules::Kind::proportion},
        {"Range Address", SplitRules::Kind::addressRange},
    };
    for (const auto& [word, kind] : words) {
        if (rule == word) {
            return kind;
        }
    }
    return SplitRules::Kind::continuousRange;
}

bool isRange(SplitRules::Kind kind) {
    return kind == SplitRules::Kind::addressRange || kind == SplitRules::Kind::continuousRange;
}

std::size_t pairOf(const Schema& schema, std::size_t field, const std::string& name) {
    const auto pair = schema.findField(name);
    if (!pair) {
        throw PlatformError(
            fmt::format("{} has no field {}, the pair of {}.", schema.name, name, schema.fields[field].name));
    }
    return *pair;
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

bool isOneOf(const std::string& rule, std::initializer_list<const char*> words) {
    return std::ranges::any_of(words, [&](const char* word) { return rule == word; });
}

bool goesAlongChain(const Field& field, const std::string& rule) {
    return field.isNumeric() ? isOneOf(rule, {"First", "Last", "Maximum", "Minimum", "Sum", "Average"})
                             : field.type == FieldType::string && isOneOf(rule, {"First", "Last"});
}

Value valueAlongChain(const Field& field, std::size_t index, const std::string& rule,
                      std::span<const ChainMember> chain) {
    Value value = chain.front().feature->value(index);
    for (const ChainMember& member : chain.subspan(1)) {
        const Value& next = member.feature->value(index);
        value = mergedValue(field, rule, value, next).value_or(next);
    }
    return value;
}

// What the ends of lines have in the fields of a range, in the direction of the merged line.
class ChainRange {
public:
    ChainRange(const RangeFields& fields, std::span<const ChainMember> alongLine)
        : begin_(alongLine.front().feature->value(alongLine.front().isReversed ? fields.end : fields.start)),
          end_(alongLine.back().feature->value(alongLine.back().isReversed ? fields.start : fields.end)) {
        const auto addTo = [this, &fields](const ChainMember& member) {
            all_.push_back(member.feature->value(fields.start));
            all_.push_back(member.feature->value(fields.end));
        };
        std::ranges::for_each(alongLine, addTo);
        if (std::ranges::all_of(all_, isNumeric)) {
            widen();
        }
    }

    [[nodiscard]] const Value& begin() const noexcept { return begin_; }
    [[nodiscard]] const Value& end() const noexcept { return end_; }

private:
    void widen() {
        const auto [least, most] = std::ranges::minmax_element(all_, isLess);
        const bool isDescending = isLess(end_, begin_);
        begin_ = isDescending ? *most : *least;
        end_ = isDescending ? *least : *most;
    }

    Value begin_;
    Value end_;
    std::vector<Value> all_;
};

} // namespace

SplitRules::SplitRules(const Dictionary& rules, const Schema& schema) {
    for (const Value& key : rules.keys()) {
        if (const auto field = editableField(schema, toText(key))) {
            const AttributeRule rule = ruleOf(rules, key);
            const Kind kind = kindOf(rule.split);
            rules_.push_back({*field, kind, isRange(kind) ? pairOf(schema, *field, rule.pair) : 0});
        }
    }
    // Ranges come last: a pair field has a rule of its own, "Copy" by default, that must not undo them.
    std::ranges::stable_partition(rules_, [](const Rule& rule) { return !isRange(rule.kind); });
}

void writeSplitValues(FeatureBuffer& buffer, const Feature& source, const SplitRules& rules, const PieceOfLine& piece,
                      bool bOver, RangeTotals& totals) {
    for (std::size_t i = 0; i < rules.all().size(); ++i) {
        const SplitRules::Rule& rule = rules.all()[i];
        switch (rule.kind) {
        case SplitRules::Kind::copy:
            buffer.setValue(rule.field, source.value(rule.field));
            break;
        case SplitRules::Kind::empty:
            buffer.setValue(rule.field, emptyValueOf(buffer.schema().fields[rule.field]));
            break;
        case SplitRules::Kind::proportion:
            buffer.setValue(rule.field, times(source.value(rule.field), piece.share));
            break;
        case SplitRules::Kind::addressRange:
        case SplitRules::Kind::continuousRange:
            writeRange(buffer, source, rule, piece, bOver, totals[i]);
            break;
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

void writeChainValues(const Dictionary& rules, std::span<const ChainMember> chain,
                      std::span<const ChainMember> alongLine) {
    Feature& kept = *chain.front().feature;
    const Schema& schema = kept.schema();
    using Values = std::vector<std::pair<std::size_t, Value>>;
    Values values; // the kept one's own are read until all are known
    Values ranges; // come last: a pair field has a rule of its own that must not undo them
    for (const Value& key : rules.keys()) {
        const auto field = editableField(schema, toText(key));
        if (!field) {
            continue;
        }
        const AttributeRule rule = ruleOf(rules, key);
        if (goesAlongChain(schema.fields[*field], rule.unite)) {
            values.emplace_back(*field, valueAlongChain(schema.fields[*field], *field, rule.unite, chain));
        } else if (rule.unite == "Null") {
            values.emplace_back(*field, Value());
        } else if (isOneOf(rule.unite, {"Range Address", "Range Continuous"})) {
            const std::size_t pair = pairOf(schema, *field, rule.pair);
            const ChainRange range({*field, pair}, alongLine);
            ranges.emplace_back(*field, range.begin());
            ranges.emplace_back(pair, range.end());
        }
    }
    std::ranges::move(ranges, std::back_inserter(values));
    for (auto& [field, value] : values) {
        kept.setValue(field, std::move(value));
    }
}

} // namespace qz
