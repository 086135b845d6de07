#include <algorithm>
#include <map>
#include <random>

#include <gtest/gtest.h>

#include "platform/geometry/EnvelopeIndex.h"

namespace qz {
namespace {

class Envelopes {
public:
    explicit Envelopes(unsigned seed) : random_(seed) {}

    // Mostly small ones, now and then a point, a huge one or an empty one.
    Envelope next() {
        const int kind = std::uniform_int_distribution<int>(0, 19)(random_);
        if (kind == 0) {
            return {};
        }
        const double side = kind == 1 ? 0 : (kind == 2 ? 500 : 10);
        const double x = place_(random_);
        const double y = place_(random_);
        return {x, y, x + side * unit_(random_), y + side * unit_(random_)};
    }
    std::int64_t key(std::int64_t count) { return std::uniform_int_distribution<std::int64_t>(0, count - 1)(random_); }

private:
    std::mt19937 random_;
    std::uniform_real_distribution<double> place_{-1000, 1000};
    std::uniform_real_distribution<double> unit_{0, 1};
};

std::vector<std::size_t> found(const PackedEnvelopeTree& tree, const Envelope& window) {
    std::vector<std::size_t> indexes;
    tree.query(window, [&indexes](std::size_t index) { indexes.push_back(index); });
    std::ranges::sort(indexes);
    return indexes;
}

std::vector<std::size_t> foundOneByOne(const std::vector<Envelope>& envelopes, const Envelope& window) {
    std::vector<std::size_t> indexes;
    for (std::size_t i = 0; i < envelopes.size(); ++i) {
        if (envelopes[i].intersects(window)) {
            indexes.push_back(i);
        }
    }
    return indexes;
}

TEST(PackedEnvelopeTree, FindsWhatASearchOneByOneFinds) {
    for (const std::size_t size : {0U, 1U, 15U, 16U, 17U, 255U, 256U, 257U, 4097U, 20000U}) {
        Envelopes source(static_cast<unsigned>(size));
        std::vector<Envelope> envelopes(size);
        std::ranges::generate(envelopes, [&source] { return source.next(); });
        const PackedEnvelopeTree tree(envelopes);
        std::size_t hits = 0;
        for (int i = 0; i < 100; ++i) {
            const Envelope window = source.next();
            const std::vector<std::size_t> expected = foundOneByOne(envelopes, window);
            ASSERT_EQ(found(tree, window), expected) << size;
            hits += expected.size();
        }
        EXPECT_TRUE(size < 255 || hits > 0);
    }
}

TEST(PackedEnvelopeTree, TakesEqualAndCollinearEnvelopes) {
    const std::vector<Envelope> same(1000, Envelope{5, 5, 5, 5});
    EXPECT_EQ(found(PackedEnvelopeTree(same), {5, 5, 6, 6}).size(), 1000U);
    std::vector<Envelope> row;
    for (int i = 0; i < 1000; ++i) {
        row.push_back({i + 0.0, 0, i + 0.5, 0});
    }
    EXPECT_EQ(found(PackedEnvelopeTree(row), {10.5, -1, 12, 1}), (std::vector<std::size_t>{10, 11, 12}));
}

TEST(EnvelopeIndex, FollowsInsertionsReplacementsAndRemovals) {
    Envelopes source(11);
    EnvelopeIndex index;
    std::map<std::int64_t, Envelope> oracle;
    std::size_t hits = 0;
    for (int step = 0; step < 30000; ++step) {
        // Grows for a while, then shrinks to nothing.
        const std::int64_t key = source.key(3000);
        if (step < 20000 && step % 3 != 0) {
            const Envelope envelope = source.next();
            index.insert(key, envelope);
            oracle[key] = envelope;
        } else {
            index.remove(key);
            oracle.erase(key);
        }
        ASSERT_EQ(index.size(), oracle.size());
        if (step % 37 != 0) {
            continue;
        }
        const Envelope window = source.next();
        std::vector<std::int64_t> expected;
        for (const auto& [present, envelope] : oracle) {
            if (envelope.intersects(window)) {
                expected.push_back(present);
            }
        }
        ASSERT_EQ(index.query(window), expected) << step;
        hits += expected.size();
    }
    EXPECT_GT(hits, 1000U);
}

} // namespace
} // namespace qz
