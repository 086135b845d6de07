#include <gtest/gtest.h>

#include "attributes/QZAttributeTransfer.h"
#include "platform/Error.h"
#include "platform/app/Services.h"
#include "tests/support/MemoryData.h"

namespace qz {
namespace {

using test::field;
using test::MemoryData;

// A class with the fields A and B of a type, and the values of them that pieces get.
class Pieces {
public:
    Pieces(FieldType type, const Value& a, const Value& b) : data_(schema(type)) { data_.add("", {a, b}); }

    // "a-b" of every piece, in order.
    std::vector<std::string> split(const char* ruleOfA, const std::vector<double>& shares, bool bOver) {
        Dictionary dictionary;
        dictionary.add(std::string("A"), std::string(ruleOfA));
        if (std::string(ruleOfA).starts_with("Range")) {
            dictionary.add(std::string("B"), std::string("Copy|None|First")); // as it is by default
        }
        const SplitRules rules(dictionary, data_.featureClass().schema());
        RangeTotals totals(rules.all().size());
        const FeaturePtr source = data_.featureClass().feature(1);
        std::vector<std::string> texts;
        for (std::size_t i = 0; i < shares.size(); ++i) {
            const auto buffer = data_.featureClass().createBuffer();
            writeSplitValues(*buffer, *source, rules, {shares[i], i + 1 == shares.size()}, bOver, totals);
            texts.push_back(toText(buffer->value(2)) + "-" + toText(buffer->value(3)));
        }
        return texts;
    }

private:
    static Schema schema(FieldType type) {
        Schema made = test::roadSchema();
        made.fields = {field("A", type), field("B", type)};
        return made;
    }

    MemoryData data_;
};

using Texts = std::vector<std::string>;
Value text(const char* content) {
    return std::string(content);
}

TEST(SplitValues, AddressRangesAreCountedOffEvenly) {
    const struct {
        double from;
        double to;
        std::vector<double> shares;
        bool bOver;
        Texts pieces;
    } rows[] = {
        {101, 199, {0.25, 0.25, 0.5}, false, {"101-125", "127-151", "153-199"}},
        {101, 199, {0.25, 0.25, 0.5}, true, {"101-125", "125-149", "149-199"}},
        {200, 100, {0.5, 0.5}, false, {"200-150", "148-100"}},
        {0, 100, {0.37, 0.63}, true, {"0-36", "36-100"}},
        {1, 9, {1}, false, {"1-9"}},
        {7, 7, {0.5, 0.5}, false, {"7-7", "7-7"}},
        {1, 5, {0.2, 0.2, 0.2, 0.2, 0.2}, false, {"1-1", "3-3", "5-5", "5-5", "5-5"}}, // the range runs out of numbers
        {-9, -1, {0.5, 0.5}, false, {"-9--5", "-3--1"}},
        {4, -4, {0.5, 0.25, 0.25}, true, {"4-0", "4-2", "2--4"}}, // a range that arrives at 0 starts over
        {2147483647, 2147483640, {0.5, 0.5}, false, {"2147483647-2147483643", "2147483641-2147483640"}},
    };
    for (const auto& row : rows) {
        Pieces numbers(FieldType::integer, row.from, row.to);
        EXPECT_EQ(numbers.split("Range Address|B|Sum", row.shares, row.bOver), row.pieces) << row.from;
    }
    Pieces texts(FieldType::string, text("101"), text("199"));
    EXPECT_EQ(texts.split("Range Address|B|Sum", {0.25, 0.75}, false), (Texts{"101-125", "127-199"}));
}

TEST(SplitValues, AHundredPiecesFollowEachOtherWithoutGap) {
    Pieces numbers(FieldType::integer, 1.0, 2001.0);
    const Texts pieces = numbers.split("Range Address|B|Sum", std::vector<double>(100, 0.01), true);
    for (std::size_t i = 1; i < pieces.size(); ++i) {
        const std::string end = pieces[i - 1].substr(pieces[i - 1].find('-') + 1);
        EXPECT_EQ(pieces[i].substr(0, pieces[i].find('-')), end);
    }
    EXPECT_EQ(pieces.back(), "1981-2001");
}

TEST(SplitValues, ContinuousRangesStepOnIntegersOnly) {
    Pieces doubles(FieldType::doubleFloat, 0.0, 10.0);
    EXPECT_EQ(doubles.split("Range Continuous|B|Sum", {0.3, 0.7}, false), (Texts{"0-3", "3-10"}));
    EXPECT_EQ(doubles.split("Range Continuous|B|Sum", {0.3, 0.7}, true), (Texts{"0-3", "3-10"}));
    Pieces integers(FieldType::integer, 0.0, 10.0);
    EXPECT_EQ(integers.split("Range Continuous|B|Sum", {0.3, 0.7}, false), (Texts{"0-3", "4-10"}));
    EXPECT_EQ(integers.split("Range Continuous|B|Sum", {0.3, 0.7}, true), (Texts{"0-3", "3-10"}));
    Pieces descending(FieldType::smallInteger, 10.0, 1.0);
    EXPECT_EQ(descending.split("Range Continuous|B|Sum", {0.5, 0.5}, false), (Texts{"10-6", "4-1"})) << "5.5 and 4.5";
}

TEST(SplitValues, RangesWithoutNumbersAreCopied) {
    Pieces words(FieldType::string, text("12a"), text("20"));
    EXPECT_EQ(words.split("Range Address|B|Sum", {0.5, 0.5}, false), (Texts{"12a-20", "12a-20"}));
    Pieces empty(FieldType::string, text(""), text("20"));
    EXPECT_EQ(empty.split("Range Address|B|Sum", {1}, false), (Texts{"-20"})) << "the pair keeps its own rule";
    Pieces null(FieldType::integer, Value(), 20.0);
    EXPECT_EQ(null.split("Range Continuous|B|Sum", {1}, false), (Texts{"null-20"}));
}

TEST(SplitValues, SharesCopiesAndEmptyValues) {
    const struct {
        FieldType type;
        Value source;
        const char* rule;
        const char* piece;
    } rows[] = {
        {FieldType::doubleFloat, 10.0, "Proportion|None|Sum", "3.33-null"},
        {FieldType::integer, 10.0, "Proportion|None|Sum", "3-null"},
        {FieldType::integer, 7.5, "Proportion|None|Sum", "3-null"},
        {FieldType::integer, Value(), "Proportion|None|Sum", "null-null"},
        {FieldType::string, text("10"), "Proportion|None|Sum", "3.33-null"},
        {FieldType::string, text("oak"), "Copy|None|Sum", "oak-null"},
        {FieldType::string, text("oak"), "Empty|None|Sum", "-null"},
        {FieldType::integer, 10.0, "Empty|None|Sum", "null-null"},
    };
    for (const auto& row : rows) {
        Pieces pieces(row.type, row.source, Value());
        EXPECT_EQ(pieces.split(row.rule, {0.333}, false), Texts{row.piece}) << row.rule << toText(row.source);
    }
    EXPECT_THROW(Pieces(FieldType::string, text("oak"), Value()).split("Proportion|None|Sum", {0.5}, false),
                 PlatformError);
    EXPECT_THROW(Pieces(FieldType::doubleFloat, 3e9, 4e9).split("Range Address|B|Sum", {0.5}, false), PlatformError)
        << "addresses are 32-bit integers";
    EXPECT_THROW(Pieces(FieldType::integer, -2147483648.0, 2147483647.0).split("Range Address|B|Sum", {0.5}, false),
                 PlatformError);
}

struct MergeRow {
    FieldType type;
    const char* rule;
    Value merged;
    Value kept;
    const char* result;
};

TEST(MergedValues, FollowTheUnionRule) {
    const MergeRow rows[] = {
        {FieldType::integer, "First", 10.0, 30.0, "10"},
        {FieldType::integer, "Last", 10.0, 30.0, "30"},
        {FieldType::integer, "Maximum", 10.0, 30.0, "30"},
        {FieldType::integer, "Maximum", 30.0, 10.0, "30"},
        {FieldType::integer, "Minimum", 10.0, 30.0, "10"},
        {FieldType::integer, "Sum", 10.0, 30.0, "40"},
        {FieldType::integer, "Average", 10.0, 30.0, "20"},
        {FieldType::integer, "Average", 10.0, 11.0, "10"},
        {FieldType::integer, "Average", 10.0, 13.0, "12"},
        {FieldType::doubleFloat, "Average", 10.0, 11.0, "10.5"},
        {FieldType::integer, "Range Address", 1.0, 2.0, "2"},
        {FieldType::integer, "Sum", Value(), 30.0, "null"},
        {FieldType::integer, "Average", 10.0, Value(), "null"},
        {FieldType::integer, "Maximum", 10.0, Value(), "null"},
        {FieldType::integer, "Minimum", Value(), 30.0, "30"},
        {FieldType::integer, "First", Value(), 30.0, "null"},
        {FieldType::string, "First", text("a"), text("b"), "a"},
        {FieldType::string, "Last", text("a"), text("b"), "b"},
        {FieldType::string, "Concatenate", text("a"), text("b"), "b"},
        {FieldType::date, "First", DateTime{.year = 2020}, DateTime{.year = 2024}, "2024-01-01"},
    };
    for (const MergeRow& row : rows) {
        Schema schema = test::roadSchema();
        schema.fields = {field("A", row.type)};
        MemoryData data(schema);
        data.add("", {row.merged});
        data.add("", {row.kept});
        Dictionary rules;
        rules.add(std::string("A"), std::string("Copy|None|") + row.rule);
        const FeaturePtr kept = data.featureClass().feature(2);
        EXPECT_TRUE(QZ_MergeAttributes(data.featureClass(), rules, *data.featureClass().feature(1), *kept));
        EXPECT_EQ(toText(kept->value(2)), row.result) << row.rule << toText(row.merged) << toText(row.kept);
    }
}

TEST(MergedValues, ASumOutOfRangeIsAnErrorAndNoOtherNumber) {
    const ScopedServices restored;
    std::string message;
    services().showMessage = [&](const std::string& shown) { message = shown; };
    Schema schema = test::roadSchema();
    schema.fields = {field("A", FieldType::smallInteger)};
    MemoryData data(schema);
    data.add("", {32767.0});
    data.add("", {1.0});
    Dictionary rules;
    rules.add(std::string("A"), std::string("Copy|None|Sum"));
    const FeaturePtr kept = data.featureClass().feature(2);
    EXPECT_FALSE(QZ_MergeAttributes(data.featureClass(), rules, *data.featureClass().feature(1), *kept));
    EXPECT_EQ(toText(kept->value(2)), "1");
    EXPECT_NE(message.find("32768"), std::string::npos) << message;
}

} // namespace
} // namespace qz
