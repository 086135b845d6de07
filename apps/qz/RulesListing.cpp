#include "RulesListing.h"

#include <ostream>

#include <fmt/format.h>

#include "attributes/QZAttributeRules.h"

namespace qz {

namespace {

// "table" or "file".
std::string kindOfPlace(const AttributeRuleSources& sources) {
    return sources.place.substr(0, sources.place.find(' '));
}

std::string originOf(const AttributeRuleSources& sources, const Value& field, const std::string& rule) {
    const Value* read = sources.read ? sources.read->find(field) : nullptr;
    if (!read) {
        return "default";
    }
    return toText(*read) == rule ? kindOfPlace(sources)
                                 : fmt::format("corrected, the {} has {}", kindOfPlace(sources), toText(*read));
}

void listUnusedRules(std::ostream& out, const AttributeRuleSources& sources) {
    for (const Value& field : sources.read->keys()) {
        if (!sources.inForce.exists(field)) {
            out << fmt::format("    {:<20} without effect: no such field takes rules\n", toText(field));
        }
    }
}

} // namespace

void listAttributeRules(std::ostream& out, FeatureClass& featureClass) {
    const AttributeRuleSources sources = attributeRuleSources(featureClass);
    const char* state = !sources.exists ? " (none there)" : sources.read ? "" : " (can't be used)";
    out << fmt::format("  attribute rules: split|pair|union, from {}{}\n", sources.place, state);
    if (!sources.read) {
        out << fmt::format("    every field          {}  default\n", AttributeRule().text());
        return;
    }
    for (const Value& field : sources.inForce.keys()) {
        const std::string rule = toText(*sources.inForce.find(field));
        out << fmt::format("    {:<20} {}  {}\n", toText(field), rule, originOf(sources, field, rule));
    }
    listUnusedRules(out, sources);
}

} // namespace qz
