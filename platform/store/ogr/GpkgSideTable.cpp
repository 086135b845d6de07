#include "platform/store/ogr/GpkgSideTable.h"

#include <fmt/format.h>

#include "platform/Error.h"

namespace qz {

namespace {

constexpr const char* tableName = "qz_schema";

// A row: which field, what of it, and the code and text that go with it.
struct Fact {
    std::string field;
    std::string property;
    std::optional<std::int32_t> code;
    std::string text;
};

[[noreturn]] void refuse(const Schema& schema, const Fact& fact, const char* why) {
    throw DataError(fmt::format("The table {} has a row for {} that can't be understood (field \"{}\", property "
                                "\"{}\"): {}. Correct or delete it.",
                                tableName, schema.name, fact.field, fact.property, why));
}

std::size_t fieldOf(const Schema& schema, const Fact& fact) {
    const auto index = schema.findField(fact.field);
    if (!index) {
        refuse(schema, fact, "there is no such field");
    }
    return *index;
}

std::int32_t codeOf(const Schema& schema, const Fact& fact) {
    if (!fact.code) {
        refuse(schema, fact, "it needs a code");
    }
    return *fact.code;
}

Subtypes& subtypesBy(Schema& schema, const Fact& fact) {
    const std::string& name = schema.fields[fieldOf(schema, fact)].name;
    if (!schema.subtypes) {
        schema.subtypes.emplace();
        schema.subtypes->field = name;
    }
    if (schema.subtypes->field != name) {
        refuse(schema, fact, "the subtypes of a table are all of one field");
    }
    return *schema.subtypes;
}

void apply(Schema& schema, const Fact& fact) {
    if (fact.property == "subtype") {
        subtypesBy(schema, fact).codes.emplace_back(codeOf(schema, fact), fact.text);
    } else if (fact.property == "default subtype") {
        subtypesBy(schema, fact).defaultCode = codeOf(schema, fact);
    } else if (fact.property == "not editable") {
        schema.fields[fieldOf(schema, fact)].editable = false;
    } else if (fact.property == "feature dataset") {
        schema.featureDataset = fact.text;
    } else {
        refuse(schema, fact, "known are subtype, default subtype, not editable and feature dataset");
    }
}

Fact factIn(OGRFeature& row) {
    Fact fact{row.GetFieldAsString(0), row.GetFieldAsString(1), std::nullopt, row.GetFieldAsString(3)};
    if (row.IsFieldSetAndNotNull(2)) {
        fact.code = row.GetFieldAsInteger(2);
    }
    return fact;
}

} // namespace

void completeFromSideTable(GDALDataset& dataset, Schema& schema) {
    if (dataset.GetLayerByName(tableName) == nullptr) {
        return;
    }
    forEachRow(dataset,
               fmt::format("SELECT field_name, property, code, text FROM {} WHERE table_name = {} ORDER BY rowid",
                           tableName, quotedText(schema.name)),
               [&](OGRFeature& row) { apply(schema, factIn(row)); });
}

} // namespace qz
