#include "attributes/QZAttributeRules.h"

#include <array>
#include <filesystem>
#include <fstream>
#include <span>

#include <fmt/format.h>

#include "common/ApplicationReference.h"
#include "common/ErrorExit.h"
#include "platform/Error.h"
#include "platform/data/PlainText.h"

namespace qz {

namespace {

using Words = std::span<const std::string_view>;

constexpr std::array<std::string_view, 4> splitRules{"Proportion", "Empty", "Range Continuous", "Range Address"};
constexpr std::array<std::string_view, 6> tableUnionRules{
    "Sum", "Last", "Minimum", "Maximum", "Range Continuous", "Range Address"};
constexpr std::array<std::string_view, 7> unionRules{
    "Sum", "Last", "Minimum", "Maximum", "Average", "Range Continuous", "Range Address"};

std::string knownOr(const std::string& word, Words known, const char* otherwise) {
    return std::find(known.begin(), known.end(), word) != known.end() ? word : otherwise;
}

bool isRange(const std::string& rule) {
    return rule == "Range Continuous" || rule == "Range Address";
}

// Empty items count; an empty text has none.
std::vector<std::string> split(std::string_view text, char separator) {
    std::vector<std::string> items;
    while (!text.empty()) {
        const std::size_t end = text.find(separator);
        items.emplace_back(text.substr(0, end));
        if (end == std::string_view::npos) {
            break;
        }
        text.remove_prefix(end + 1);
        if (text.empty()) {
            items.emplace_back();
        }
    }
    return items;
}

void addFirst(Dictionary& rules, const std::string& field, const AttributeRule& rule) {
    if (!rules.exists(field)) {
        rules.add(field, rule.text());
    }
}

bool hasRule(const Field& field) {
    return field.type < FieldType::objectId;
}

// Calls `see(field)` for the fields that rules are for.
template <typename See> void forEachRuledField(const FeatureClass& featureClass, See see) {
    for (const Field& field : featureClass.schema().fields) {
        if (hasRule(field)) {
            see(field);
        }
    }
}

// A range rule needs its pair field; one without falls back, and forgets a pair that the class doesn't have.
void verifyRange(std::string& rule, std::string& pair, const char* fallback, const FeatureClass& featureClass) {
    if (!isRange(rule)) {
        return;
    }
    if (pair == "None") {
        rule = fallback;
    } else if (!featureClass.schema().findField(pair)) {
        rule = fallback;
        pair = "None";
    }
}

AttributeRule verified(AttributeRule rule, const FeatureClass& featureClass) {
    rule.split = knownOr(rule.split, splitRules, "Copy");
    verifyRange(rule.split, rule.pair, "Copy", featureClass);
    rule.unite = knownOr(rule.unite, unionRules, "First");
    verifyRange(rule.unite, rule.pair, "First", featureClass);
    return rule;
}

std::optional<AttributeRule> ruleOf(const Dictionary& rules, const std::string& field) {
    const Value* text = rules.find(field);
    return text ? AttributeRule::parsed(toText(*text)) : std::nullopt;
}

// The columns of a rule table.
struct RuleColumns {
    std::size_t field;
    std::size_t split;
    std::size_t pair;
    std::size_t unite;
};

std::optional<RuleColumns> ruleColumnsOf(const Schema& schema) {
    const auto field = schema.findField("FieldName");
    const auto split = schema.findField("SplitRule");
    const auto pair = schema.findField("PairField");
    const auto unite = schema.findField("UnionRule");
    if (!field || !split || !pair || !unite) {
        return std::nullopt;
    }
    return RuleColumns{*field, *split, *pair, *unite};
}

std::string textOrEmpty(const Value& value) {
    return isNull(value) ? std::string() : toText(value);
}

AttributeRule ruleInRow(const Feature& row, const RuleColumns& columns) {
    return {knownOr(textOrEmpty(row.value(columns.split)), splitRules, "Copy"), textOrEmpty(row.value(columns.pair)),
            knownOr(textOrEmpty(row.value(columns.unite)), tableUnionRules, "First")};
}

// Files written on other systems end their lines with a carriage return, and may begin with a byte order mark.
void readLines(std::istream& file, Dictionary& rules) {
    std::string line;
    for (bool first = true; std::getline(file, line); first = false) {
        if (first && line.starts_with("\xEF\xBB\xBF")) {
            line.erase(0, 3);
        }
        if (line.ends_with('\r')) {
            line.pop_back();
        }
        if (const auto items = split(line, ','); items.size() == 4) {
            addFirst(rules, items[0], {items[1], items[2], items[3]});
        }
    }
}

FeatureClass& classOfLayer(const std::string& layerName) {
    FeatureLayer* layer = application().focusMap().findLayer(layerName);
    if (!layer) {
        throw PlatformError(fmt::format("The map has no layer {}.", layerName));
    }
    return layer->featureClass();
}

bool containsNone(std::string_view text) {
    for (std::size_t i = 0; i + 4 <= text.size(); ++i) {
        if (equalIgnoringCase(text.substr(i, 4), "NONE")) {
            return true;
        }
    }
    return false;
}

// Reads the place where the rules of a class are kept.
AttributeRuleSources readSources(FeatureClass& featureClass) {
    const Schema& schema = featureClass.schema();
    AttributeRuleSources sources;
    if (schema.featureDataset.empty() && schema.classId == -1) {
        const std::string path = featureClass.workspace().pathBeside(schema.name, ".qza");
        sources.place = "file " + path;
        sources.exists = std::filesystem::exists(path);
        sources.read = QZ_AttRulesDicFromFile(path);
    } else {
        const std::string name = schema.name + "_QZAttributeRules";
        FeatureClass* table = featureClass.workspace().table(name);
        sources.place = "table " + name;
        sources.exists = table != nullptr;
        sources.read = table ? QZ_AttRulesDicFromTable(*table) : std::nullopt;
    }
    return sources;
}

} // namespace

std::optional<AttributeRule> AttributeRule::parsed(std::string_view text) {
    auto items = qz::split(text, '|');
    if (items.size() != 3) {
        return std::nullopt;
    }
    return AttributeRule{std::move(items[0]), std::move(items[1]), std::move(items[2])};
}

std::optional<Dictionary> QZ_GetAttRules(const std::string& layerName) {
    const auto verifiedRules = QZ_GetVerifiedAttDictionary(layerName);
    if (!verifiedRules) {
        return std::nullopt;
    }
    Dictionary rules;
    Dictionary pairs;
    for (const Value& field : verifiedRules->keys()) {
        const Value& text = *verifiedRules->find(field);
        if (!containsNone(toText(text))) {
            pairs.set(AttributeRule::parsed(toText(text))->pair, "Pair");
            if (pairs.exists(field)) {
                continue;
            }
        }
        rules.add(field, text);
    }
    return rules;
}

std::optional<Dictionary> QZ_GetVerifiedAttDictionary(const std::string& layerName) {
    return withErrorExit("QZ_GetVerifiedAttDictionary", std::optional<Dictionary>(),
                         [&] { return std::optional(attributeRuleSources(classOfLayer(layerName)).inForce); });
}

std::optional<Dictionary> QZ_AttRulesDicFromTable(FeatureClass& table) {
    return withErrorExit(" QZ_AttRulesDicFromTable", std::optional<Dictionary>(), [&]() -> std::optional<Dictionary> {
        const auto columns = ruleColumnsOf(table.schema());
        if (!columns || table.count() == 0) {
            return std::nullopt;
        }
        Dictionary rules;
        const CursorPtr cursor = table.search({});
        for (FeaturePtr row = cursor->next(); row; row = cursor->next()) {
            if (const Value& field = row->value(columns->field); !isNull(field)) {
                addFirst(rules, toText(field), ruleInRow(*row, *columns));
            }
        }
        return rules;
    });
}

std::optional<Dictionary> QZ_AttRulesDicFromFile(const std::string& path) {
    return withErrorExit(" QZ_AttRulesDicFromFile", std::optional<Dictionary>(), [&]() -> std::optional<Dictionary> {
        if (!std::filesystem::exists(path)) {
            return std::nullopt;
        }
        std::ifstream file(path, std::ios::binary);
        if (!file) {
            throw DataError(fmt::format("The attribute rules in {} can't be read.", path));
        }
        Dictionary rules;
        readLines(file, rules);
        return rules;
    });
}

std::optional<Dictionary> QZ_VerifyAttDic(const FeatureClass& featureClass, const Dictionary& read) {
    return withErrorExit("QZ_CreateDefaultAttDic", std::optional<Dictionary>(), [&] {
        Dictionary rules;
        forEachRuledField(featureClass, [&](const Field& field) {
            const auto rule = ruleOf(read, field.name);
            rules.add(field.name, rule ? verified(*rule, featureClass).text() : AttributeRule().text());
        });
        return std::optional(rules);
    });
}

std::optional<Dictionary> QZ_CreateDefaultAttDic(const FeatureClass& featureClass) {
    return withErrorExit("QZ_CreateDefaultAttDic", std::optional<Dictionary>(), [&] {
        Dictionary rules;
        forEachRuledField(featureClass, [&](const Field& field) { rules.add(field.name, AttributeRule().text()); });
        return std::optional(rules);
    });
}

AttributeRuleSources attributeRuleSources(FeatureClass& featureClass) {
    AttributeRuleSources sources = readSources(featureClass);
    const auto rules =
        sources.read ? QZ_VerifyAttDic(featureClass, *sources.read) : QZ_CreateDefaultAttDic(featureClass);
    sources.inForce = rules.value_or(Dictionary());
    return sources;
}

} // namespace qz
