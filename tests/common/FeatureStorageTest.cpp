#include <sstream>

#include <gtest/gtest.h>

#include "common/ApplicationReference.h"
#include "common/QZFeatureClass.h"
#include "common/QZFeatureMethods.h"
#include "common/QZFeatureStorage.h"
#include "common/QZInsertFeature.h"
#include "host/HeadlessHost.h"
#include "host/RefreshAreaRecord.h"
#include "platform/Error.h"
#include "platform/app/Services.h"
#include "tests/support/MemoryData.h"

namespace qz {
namespace {

using test::field;
using test::MemoryData;

std::shared_ptr<const Domain> domain(decltype(Domain::rule) rule) {
    return std::make_shared<Domain>(Domain{"d", std::move(rule)});
}

// Points with a field of every kind. KIND holds subtypes.
Schema wellSchema() {
    Schema schema = test::roadSchema();
    schema.name = "wells";
    schema.shape->kind.reset();
    Field depth = field("DEPTH", FieldType::doubleFloat);
    depth.domain = domain(RangeDomain{0.0, 100.0});
    Field state = field("STATE", FieldType::smallInteger);
    state.domain =
        domain(CodedValueDomain{{{std::int16_t{1}, "dry"}, {std::int16_t{2}, "wet"}, {std::int16_t{1}, "again"}}});
    Field name = field("NAME", FieldType::string);
    name.length = 8;
    Field required = field("CLASS", FieldType::integer);
    required.nullable = false;
    required.defaultValue = std::int32_t{7};
    schema.fields = {name,
                     depth,
                     state,
                     field("BUILT", FieldType::date),
                     required,
                     field("KIND", FieldType::integer),
                     field("QZ_ID", FieldType::integer)};
    schema.subtypes = Subtypes{"KIND", 10, {{10, "drilled"}, {20, "dug"}}};
    return schema;
}

// Field indexes after the object id and the shape.
enum WellField : std::size_t { name = 2, depth, state, built, required, kind, qzId };

struct FeatureStorage : testing::Test {
    FeatureStorage() {
        services().showMessage = [this](const std::string& text) { messages.push_back(text); };
        setApplication(host);
    }

    // The values of the only new row, as texts.
    std::string stored(const Dictionary& values, WellField wanted) {
        EXPECT_TRUE(QZ_StoreFeature(Point({1, 2}), wells.featureClass(), false, &values));
        const auto ids = wells.featureClass().ids({});
        return toText(wells.featureClass().feature(ids.back())->value(wanted));
    }

    ScopedServices restored;
    std::vector<std::string> messages;
    std::ostringstream terminal;
    HeadlessHost host{terminal, false};
    RefreshAreaRecord refresh;
    MemoryData wells{wellSchema()};
};

Dictionary values(std::initializer_list<std::pair<const char*, Value>> entries) {
    Dictionary dictionary;
    for (const auto& [key, value] : entries) {
        dictionary.add(std::string(key), value);
    }
    return dictionary;
}
Value text(const char* content) {
    return std::string(content);
}

TEST_F(FeatureStorage, WritesWhatTheFieldTakes) {
    const struct {
        const char* field;
        Value given;
        WellField at;
        const char* stored;
        const char* message;
    } rows[] = {
        {"NAME", text("north"), name, "north", ""},
        {"name", 12.5, name, "12.5", ""},
        {"NAME", text("<Null>"), name, "null", ""},
        {"NOWHERE", 1.0, name, "null", ""},
        {"DEPTH", text(" 12.5 "), depth, "12.5", ""},
        {"DEPTH", text("12a"), depth, "null", "Invalid value for field: DEPTH"},
        {"DEPTH", 150.0, depth, "null", "Invalid value for field: DEPTH"},
        {"DEPTH", 100.0, depth, "100", ""},
        {"STATE", 2.0, state, "2", ""},
        {"STATE", text("2"), state, "null", "Invalid value for field: STATE"},
        {"STATE", 3.0, state, "null", "Invalid value for field: STATE"},
        {"BUILT", text("2024-05-17"), built, "2024-05-17", ""},
        {"BUILT", text("abc"), built, "null", ""},
        {"BUILT", 12.5, built, "null", ""},
        {"CLASS", text("<null>"), required, "7", ""},
        {"CLASS", text("12a"), required, "7", ""},
        {"KIND", text("<NULL>"), kind, "10", ""},
        {"KIND", text("20"), kind, "20", ""},
        {"KIND", 30.0, kind, "10", "Invalid value for field: KIND"},
        {"DEPTH", Value(), depth, "null", ""},
    };
    for (const auto& row : rows) {
        messages.clear();
        EXPECT_EQ(stored(values({{row.field, row.given}}), row.at), row.stored) << row.field << toText(row.given);
        EXPECT_EQ(messages, *row.message ? std::vector<std::string>{row.message} : std::vector<std::string>())
            << row.field << toText(row.given);
    }
    EXPECT_EQ(stored({}, kind), "10") << "a new feature gets the default subtype";
}

TEST_F(FeatureStorage, SavesEachFeatureUnlessTheCallerEdits) {
    const Dictionary none;
    EXPECT_TRUE(QZ_StoreFeature(Point({1, 2}), wells.featureClass(), false, &none));
    EXPECT_EQ(wells.workspace->saveCount(), 1);
    EXPECT_FALSE(wells.workspace->isBeingEdited());
    wells.workspace->startEditing();
    wells.workspace->startEditOperation();
    EXPECT_TRUE(QZ_StoreFeature(Point({3, 4}), wells.featureClass(), true, &none));
    wells.workspace->abortEditOperation();
    EXPECT_EQ(wells.featureClass().count(), 1) << "the caller's abort takes it back";
}

TEST_F(FeatureStorage, FailuresTellTheStageAndStoreNothing) {
    const Dictionary tooLong = values({{"NAME", text("longer than eight")}});
    EXPECT_FALSE(QZ_StoreFeature(Point({1, 2}), wells.featureClass(), false, &tooLong));
    const Dictionary tooLarge = values({{"QZ_ID", 3e9}});
    EXPECT_FALSE(QZ_StoreFeature(Point({1, 2}), wells.featureClass(), false, &tooLarge));
    wells.workspace->startEditing();
    EXPECT_FALSE(QZ_StoreFeature(Point({1, 2}), wells.featureClass(), false, nullptr));
    ASSERT_EQ(messages.size(), 3U);
    EXPECT_TRUE(messages[0].ends_with(" QZ_StoreFeature w=13")) << messages[0];
    EXPECT_TRUE(messages[1].ends_with(" QZ_StoreFeature w=13")) << messages[1];
    EXPECT_TRUE(messages[2].ends_with(" QZ_StoreFeature w=3")) << messages[2];
    EXPECT_EQ(wells.featureClass().count(), 0);
}

TEST_F(FeatureStorage, AddsPointsAtHeightZero) {
    FeatureLayer& layer = host.focusMap().addLayer("wells", wells.featureClass());
    EXPECT_TRUE(QZ_AddPointA(layer, Point({1, 2, 30, 40}), refresh, nullptr, false));
    EXPECT_EQ(wells.wkt(1), "POINT ZM (1 2 0 40)");
    EXPECT_EQ(refresh.count(), 1);
    wells.workspace->startEditing();
    EXPECT_FALSE(QZ_AddPointA(layer, Point({1, 2}), refresh, nullptr, false)) << "not stored, so the caller aborts";
    EXPECT_EQ(refresh.count(), 1);
}

TEST_F(FeatureStorage, PastesIntoEveryFeatureWithAShape) {
    wells.add("POINT ZM (0 0 0 0)", {text("a"), 1.0, Value(), Value(), std::int32_t{7}, std::int32_t{20}});
    wells.add("", {text("b"), 2.0});
    wells.add("POINT ZM (1 1 0 0)", {text("c"), 3.0});
    FeatureLayer& layer = host.focusMap().addLayer("wells", wells.featureClass());
    const Dictionary pasted = values({{"DEPTH", 55.0}});
    EXPECT_TRUE(QZ_PasteAttributes(layer, *wells.featureClass().update({}), refresh, &pasted, false));
    const auto value = [&](ObjectId id, WellField at) { return toText(wells.featureClass().feature(id)->value(at)); };
    EXPECT_EQ(value(1, depth) + value(2, depth) + value(3, depth), "55255");
    EXPECT_EQ(value(1, kind), "10") << "the default subtype is set before the values";
    EXPECT_EQ(value(1, name), "a");
    EXPECT_EQ(wells.workspace->saveCount(), 2) << "one session a feature";
    EXPECT_EQ(refresh.count(), 2);

    const Dictionary failing = values({{"DEPTH", 1.0}, {"NAME", text("longer than eight")}});
    EXPECT_FALSE(QZ_PasteAttributes(layer, *wells.featureClass().update({}), refresh, &failing, false));
    EXPECT_EQ(value(1, depth), "55");
    EXPECT_EQ(messages.size(), 1U) << "the failure is shown once";
}

TEST_F(FeatureStorage, DeletesFeaturesWithoutAShapeAsWell) {
    wells.add("POINT ZM (0 0 0 0)");
    wells.add("");
    wells.add("POINT ZM EMPTY");
    EXPECT_TRUE(QZ_QuickDelete(host, *wells.featureClass().search({}), 3, refresh));
    EXPECT_EQ(wells.featureClass().count(), 0);
    EXPECT_EQ(refresh.count(), 1);
    EXPECT_EQ(host.statusBar().stepProgressor().record().text, "Deleting features: 2");
}

struct ProportionCase {
    const char* source;
    const char* inserted;
    double ratio;
};

TEST_F(FeatureStorage, InsertScalesProportionalFields) {
    const ProportionCase rows[] = {
        {"LINESTRING ZM (0 0 0 0,10 0 0 0)", "LINESTRING ZM (0 0 0 0,4 0 0 0)", 0.4},
        {"LINESTRING ZM (1 1 0 0,1 1 0 0)", "LINESTRING ZM (0 0 0 0,4 0 0 0)", 1},
        {"POLYGON ZM ((0 0 0 0,0 2 0 0,2 2 0 0,2 0 0 0,0 0 0 0))",
         "POLYGON ZM ((0 0 0 0,0 1 0 0,1 1 0 0,1 0 0 0,0 0 0 0))", 0.25},
        {"LINESTRING ZM (0 0 0 0,10 0 0 0)", "POINT ZM (0 0 0 0)", 1},
        {"", "LINESTRING ZM (0 0 0 0,4 0 0 0)", 1},
    };
    const Dictionary rules = values({{"DEPTH", text("Proportion|None|Sum")}, {"CLASS", text("Copy|None|Sum")}});
    for (const ProportionCase& row : rows) {
        MemoryData data(wellSchema());
        data.add(row.source, {text("a"), 10.0, Value(), Value(), std::int32_t{9}, std::int32_t{20}, std::int32_t{5}});
        const CursorPtr cursor = data.featureClass().insert();
        const auto buffer = data.featureClass().createBuffer();
        const FeaturePtr source = data.featureClass().feature(1);
        ASSERT_TRUE(QZ_InsertFeature(*cursor, *buffer, source.get(), geometryFromWkt(row.inserted), &rules));
        const FeaturePtr copy = data.featureClass().feature(2);
        EXPECT_EQ(toText(copy->value(depth)), toText(Value(10 * row.ratio))) << row.source;
        EXPECT_EQ(toText(copy->value(name)) + toText(copy->value(required)), "a9");
        EXPECT_EQ(toText(copy->value(qzId)), "null") << "left as it is in a new row";
        EXPECT_EQ(toWkt(*copy->shape()), row.inserted);
    }
}

TEST_F(FeatureStorage, InsertPutsAPointIntoAMultipoint) {
    const ObjectId id = wells.add("MULTIPOINT ZM ((0 0 0 0),(1 1 1 1))");
    const CursorPtr cursor = wells.featureClass().insert();
    const auto buffer = wells.featureClass().createBuffer();
    const FeaturePtr source = wells.featureClass().feature(id);
    EXPECT_TRUE(QZ_InsertFeature(*cursor, *buffer, source.get(), geometryFromWkt("POINT ZM (5 6 7 8)"), nullptr));
    EXPECT_EQ(wells.wkt(id + 1), "MULTIPOINT ZM ((5 6 7 8))");
    EXPECT_FALSE(QZ_InsertFeature(*cursor, *buffer, nullptr, geometryFromWkt("POINT ZM (5 6 7 8)"), nullptr));
    EXPECT_TRUE(messages.at(0).ends_with(" insert feature"));
}

TEST_F(FeatureStorage, MatchesFieldsOfAnotherClassByName) {
    Schema schema = test::roadSchema();
    Field locked = field("DEPTH", FieldType::doubleFloat);
    locked.editable = false;
    schema.fields = {field("class", FieldType::string), locked, field("NAME", FieldType::integer),
                     field("BUILT", FieldType::date)};
    MemoryData target(schema);
    wells.add("POINT ZM (0 0 0 0)", {text("a"), 10.0, Value(), Value(), std::int32_t{9}});
    const Dictionary matching = QZ_FieldMatchingDic(*wells.featureClass().feature(1), target.featureClass());
    ASSERT_EQ(matching.count(), 1U) << "DEPTH is locked, \"a\" is no integer, BUILT is null";
    EXPECT_EQ(toText(*matching.find(std::int32_t{2})), "9");
}

TEST_F(FeatureStorage, DomainsAndSubtypesOfFields) {
    const auto range = QZ_GetFieldDomain(wells.featureClass(), "depth");
    ASSERT_TRUE(range);
    EXPECT_EQ(range->kind, "range");
    EXPECT_EQ(toText(*range->entries.find(std::int32_t{2})), "100");
    const auto coded = QZ_GetFieldDomain(wells.featureClass(), "STATE");
    ASSERT_TRUE(coded);
    EXPECT_EQ(coded->kind, "cvd");
    EXPECT_EQ(toText(*coded->entries.find(std::int32_t{1})), "dry") << "the first of equal codes";
    EXPECT_FALSE(QZ_GetFieldDomain(wells.featureClass(), "NAME"));
    EXPECT_EQ(QZ_HasSubtypes(wells.featureClass()), 10);
    EXPECT_EQ(QZ_GetFCType(wells.featureClass()), "Geodatabase");
    EXPECT_EQ(QZ_GetWorkspaceFromFC(wells.featureClass()).kind, "gdb");
    EXPECT_FALSE(QZ_ValidateFieldValue(wells.featureClass(), "STATE", DateTime{}));
}

TEST_F(FeatureStorage, AddsFieldsThatAreMissing) {
    const NewField rows[] = {
        {"Note", "str", 16}, {"Distance", "dbl", 12, 2}, {"Count", "lng", 0, 0, 3.0}, {"Few", "small"}};
    for (const NewField& row : rows) {
        QZ_AddField(wells.featureClass(), row);
        QZ_AddField(wells.featureClass(), row);
    }
    const auto& fields = wells.featureClass().schema().fields;
    ASSERT_EQ(fields.size(), 13U) << "a field that is there is not added again";
    EXPECT_EQ(fields[9].length, 16);
    EXPECT_EQ(fields[10].scale, 2);
    EXPECT_EQ(fields[12].type, FieldType::smallInteger);
    EXPECT_THROW(QZ_AddField(wells.featureClass(), {"X", "float"}), PlatformError);
}

} // namespace
} // namespace qz
