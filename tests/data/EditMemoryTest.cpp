// What edits are kept in, against plain containers.

#include <map>
#include <random>

#include <gtest/gtest.h>

#include "platform/data/FieldValues.h"
#include "platform/data/overlay/EditedRows.h"

namespace qz::test {
namespace {

TEST(FieldValues, AreThoseOfAPlainArray) {
    std::mt19937 random(5);
    for (int round = 0; round < 300; ++round) {
        FieldValues values;
        std::vector<Value> plain;
        for (int step = 0; step < 12; ++step) {
            Value value;
            if (random() % 2) {
                value = static_cast<std::int32_t>(random());
            }
            switch (random() % 4) {
            case 0:
                plain.push_back(value);
                values.push_back(value);
                break;
            case 1:
                plain.resize(random() % 8);
                values.resize(plain.size());
                break;
            default:
                if (!plain.empty()) {
                    const std::size_t field = random() % plain.size();
                    plain[field] = value;
                    values[field] = value;
                }
            }
            ASSERT_EQ(values.size(), plain.size());
            for (std::size_t i = 0; i < plain.size(); ++i) {
                ASSERT_EQ(std::as_const(values)[i], plain[i]) << round << " " << step << " " << i;
            }
        }
    }
}

EditedRow rowOf(ObjectId id, bool isNew) {
    auto record = std::make_shared<FeatureRecord>();
    record->id = id;
    return {.record = std::move(record), .changedValues = nullptr, .isNew = isNew, .shapeChanged = false};
}

// Ids around 0, apart from each other and in runs.
TEST(EditedRows, AreThoseOfAPlainMap) {
    std::mt19937 random(6);
    EditedRows rows;
    std::map<ObjectId, bool> plain;
    for (int step = 0; step < 4000; ++step) {
        const ObjectId id =
            (static_cast<ObjectId>(random() % 3) - 1) * 1'000'000 + static_cast<ObjectId>(random() % 50);
        const auto known = plain.find(id);
        const EditedRow* found = rows.find(id);
        ASSERT_EQ(found != nullptr, known != plain.end());
        const bool isNew = random() % 2;
        const bool removes = random() % 2;
        const auto before = rows.exchange(id, removes ? std::nullopt : std::optional(rowOf(id, isNew)));
        ASSERT_EQ(before.has_value(), known != plain.end());
        if (before) {
            EXPECT_EQ(before->record->id, id);
            EXPECT_EQ(before->isNew, known->second);
        }
        removes ? static_cast<void>(plain.erase(id)) : static_cast<void>(plain.insert_or_assign(id, isNew));
        ASSERT_EQ(rows.empty(), plain.empty());
    }
    std::vector<ObjectId> expected;
    for (const auto& [id, isNew] : plain) {
        expected.push_back(id);
    }
    std::vector<ObjectId> seen;
    rows.forEach([&](ObjectId id, const EditedRow& row) {
        seen.push_back(id);
        EXPECT_EQ(row.record->id, id);
    });
    EXPECT_EQ(seen, expected);
    EXPECT_GT(seen.size(), 50U);
}

} // namespace
} // namespace qz::test
