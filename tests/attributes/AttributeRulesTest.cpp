#include <fstream>
#include <sstream>

#include <gtest/gtest.h>

#include "attributes/QZAttributeRules.h"
#include "common/ApplicationReference.h"
#include "host/HeadlessHost.h"
#include "platform/app/Services.h"
#include "tests/host/ScratchFolder.h"
#include "tests/support/MemoryData.h"

namespace qz {
namespace {

using test::field;

Schema streetSchema() {
    Schema schema = test::roadSchema();
    schema.name = "streets";
    schema.fields = {field("NAME", FieldType::string), field("LENGTH", FieldType::doubleFloat),
                     field("FROM_L", FieldType::integer), field("TO_L", FieldType::integer),
                     field("PHOTO", FieldType::blob)};
    return schema;
}

Schema ruleTableSchema() {
    Schema schema;
    schema.name = "streets_QZAttributeRules";
    schema.classId = 2;
    schema.fields = {field("FieldName", FieldType::string), field("SplitRule", FieldType::string),
                     field("PairField", FieldType::string), field("UnionRule", FieldType::string)};
    return schema;
}

// Streets in memory, with a rule table of the given rows.
struct Streets : testing::Test {
    Streets() {
        services().showMessage = [this](const std::string& text) { messages.push_back(text); };
        auto made = std::make_unique<MemoryStore>();
        made->addTable(streetSchema());
        table = &made->addTable(ruleTableSchema());
        workspace = std::make_unique<OverlayWorkspace>(std::move(made));
        host.focusMap().addLayer("Main streets", *workspace->table("streets"));
        setApplication(host);
    }

    void addRule(const Value& fieldName, const Value& split, const Value& pair, const Value& unite) {
        table->add(std::nullopt, {fieldName, split, pair, unite});
    }
    void addRule(const char* fieldName, const char* split, const char* pair, const char* unite) {
        addRule(Value(std::string(fieldName)), std::string(split), std::string(pair), std::string(unite));
    }
    [[nodiscard]] FeatureClass& streets() { return *workspace->table("streets"); }

    ScopedServices restored;
    std::vector<std::string> messages;
    std::ostringstream terminal;
    HeadlessHost host{terminal, false};
    MemoryTable* table = nullptr;
    std::unique_ptr<OverlayWorkspace> workspace;
};

std::string ruleOf(const std::optional<Dictionary>& rules, const char* name) {
    const Value* rule = rules ? rules->find(std::string(name)) : nullptr;
    return rule ? toText(*rule) : "none";
}

std::vector<std::string> fieldsOf(const std::optional<Dictionary>& rules) {
    std::vector<std::string> names;
    for (const Value& key : rules.value().keys()) {
        names.push_back(toText(key));
    }
    return names;
}

const std::string defaultRule = "Copy|None|First";

TEST_F(Streets, RowsOfTheTableBecomeRules) {
    addRule("LENGTH", "Proportion", "None", "Sum");
    addRule("LENGTH", "Empty", "None", "Last");
    addRule("NAME", "Shrink", "None", "Average");
    addRule(Value(), std::string("Empty"), Value(), Value());
    addRule(Value(std::string("TO_L")), Value(), Value(), std::string("Maximum"));
    const auto rules = QZ_GetVerifiedAttDictionary("Main streets");
    EXPECT_EQ(fieldsOf(rules), (std::vector<std::string>{"NAME", "LENGTH", "FROM_L", "TO_L"})) << "in field order";
    EXPECT_EQ(ruleOf(rules, "LENGTH"), "Proportion|None|Sum") << "the first row counts";
    EXPECT_EQ(ruleOf(rules, "NAME"), defaultRule) << "words that a table can't have";
    EXPECT_EQ(ruleOf(rules, "FROM_L"), defaultRule);
    EXPECT_EQ(ruleOf(rules, "TO_L"), "Copy||Maximum");
    EXPECT_TRUE(messages.empty());
}

TEST_F(Streets, NoUsableTableGivesTheDefaults) {
    EXPECT_EQ(ruleOf(QZ_GetVerifiedAttDictionary("Main streets"), "LENGTH"), defaultRule) << "no rows";
    Schema without = ruleTableSchema();
    without.fields.pop_back();
    MemoryStore store;
    auto made = std::make_unique<MemoryStore>();
    made->addTable(without).add(std::nullopt, {std::string("LENGTH"), std::string("Empty"), std::string("None")});
    OverlayWorkspace other(std::move(made));
    EXPECT_FALSE(QZ_AttRulesDicFromTable(*other.table(without.name))) << "a column is missing";
    EXPECT_FALSE(QZ_GetAttRules("No such layer"));
    EXPECT_TRUE(messages.at(0).ends_with("QZ_GetVerifiedAttDictionary")) << messages.at(0);
}

TEST_F(Streets, VerificationReplacesWhatCannotWork) {
    const struct {
        const char* read;
        const char* verified;
    } rows[] = {
        {"Range Address|TO_L|Range Address", "Range Address|TO_L|Range Address"},
        {"Range Address|to_l|Sum", "Range Address|to_l|Sum"},
        {"Range Address|NOWHERE|Range Address", "Copy|None|First"},
        {"Range Continuous|None|Range Continuous", "Copy|None|First"},
        {"Copy|NOWHERE|Range Address", "Copy|None|First"},
        {"Copy|NOWHERE|Sum", "Copy|NOWHERE|Sum"},
        {"None|None|Average", "Copy|None|Average"},
        {"proportion|None|sum", "Copy|None|First"},
        {"Proportion|None", "Copy|None|First"},
        {"Proportion|None|Sum|Sum", "Copy|None|First"},
        {"", "Copy|None|First"},
        {"Empty||Concatenate", "Empty||First"},
    };
    for (const auto& row : rows) {
        Dictionary read;
        read.add(std::string("FROM_L"), std::string(row.read));
        EXPECT_EQ(ruleOf(QZ_VerifyAttDic(streets(), read), "FROM_L"), row.verified) << row.read;
    }
}

TEST_F(Streets, PairFieldsAreLeftToTheFieldThatTakesThemAlong) {
    addRule("FROM_L", "Range Address", "TO_L", "Range Address");
    EXPECT_EQ(fieldsOf(QZ_GetAttRules("Main streets")), (std::vector<std::string>{"NAME", "LENGTH", "FROM_L", "TO_L"}))
        << "TO_L has a default rule, which has no pair";
    addRule("TO_L", "Range Address", "FROM_L", "Range Address");
    EXPECT_EQ(fieldsOf(QZ_GetAttRules("Main streets")), (std::vector<std::string>{"NAME", "LENGTH", "FROM_L"}));
    addRule("LENGTH", "Copy", "LENGTH", "Sum");
    EXPECT_EQ(fieldsOf(QZ_GetAttRules("Main streets")), (std::vector<std::string>{"NAME", "FROM_L"}))
        << "a field that is its own pair";
}

TEST(AttributeRuleFile, LinesOfFourItemsBecomeRules) {
    const ScratchFolder folder;
    const std::string path = folder.file("streets.qza");
    std::ofstream(path, std::ios::binary) << "\xEF\xBB\xBFLENGTH,Proportion,None,Sum\r\n"
                                             "LENGTH,Empty,None,Last\n"
                                             "NAME,Copy,None\n"
                                             "NAME,Copy,None,First,\n"
                                             "\n"
                                             "FROM_L,Nonsense,,Average";
    const auto rules = QZ_AttRulesDicFromFile(path);
    EXPECT_EQ(fieldsOf(rules), (std::vector<std::string>{"LENGTH", "FROM_L"}));
    EXPECT_EQ(ruleOf(rules, "LENGTH"), "Proportion|None|Sum");
    EXPECT_EQ(ruleOf(rules, "FROM_L"), "Nonsense||Average") << "words are not tested yet";
    EXPECT_FALSE(QZ_AttRulesDicFromFile(folder.file("other.qza")));
}

} // namespace
} // namespace qz
