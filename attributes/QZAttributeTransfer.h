#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "common/Dictionary.h"
#include "platform/data/FeatureClass.h"

namespace qz {

// The values that the pieces of a split line get, and those of merged features, by the rules of QZAttributeRules.h.

// The split rules of a dictionary, made ready for many pieces of a class: those of its editable fields.
class SplitRules {
public:
    enum class Kind { copy, empty, proportion, addressRange, continuousRange };
    struct Rule {
        std::size_t field = 0;
        Kind kind = Kind::copy;
        std::size_t pair = 0; // of a range
    };

    // Throws PlatformError for a rule that isn't made of three items, and for a range without its pair field.
    SplitRules(const Dictionary& rules, const Schema& schema);

    [[nodiscard]] const std::vector<Rule>& all() const noexcept { return rules_; }

private:
    std::vector<Rule> rules_;
};

// Where the ranges of the next piece of a line start, one a rule. Made anew for each line; the pieces are then written
// in their order along it. 0 until a piece was written; a range that arrives at 0 starts over.
using RangeTotals = std::vector<double>;

struct PieceOfLine {
    double share = 1;    // of the length of the line
    bool isLast = false; // ends where the line ends
};

// Writes what the rules give a piece: for "Copy" the source's value, for "Empty" an empty text or, in other fields, no
// value, for "Proportion" the value times the share (null stays null). A range from a field to its pair is divided
// among the pieces, whatever rule the pair has itself: "Range Address" in 32-bit integers of even counts, "Range
// Continuous" as it falls. The next piece starts where this one ends; with `bOver` false one step after it, 2 for
// addresses, 1 for continuous ranges of integers; there a start never goes beyond the source's range. The last piece
// ends with that range. A range from an empty text copies it, one that is not numeric copies both values. Throws
// PlatformError for values that can't be calculated with or that the field can't hold.
void writeSplitValues(FeatureBuffer& buffer, const Feature& source, const SplitRules& rules, const PieceOfLine& piece,
                      bool bOver, RangeTotals& totals);

// Writes into `kept` what it must carry after `merged` was merged into it; the caller stores it. Numeric fields by
// "First" (the merged feature's value), "Last" (the kept one's), "Sum", "Average", "Minimum" or "Maximum"; with null on
// a side "Sum" and "Average" are null, and "Minimum" and "Maximum" keep the kept value. Text fields by "First", or they
// keep their value as all others do.
// A failure is reported with its description and gives false; values written before it stay.
[[nodiscard]] bool QZ_MergeAttributes(const FeatureClass& featureClass, const Dictionary& rules, const Feature& merged,
                                      Feature& kept);

// A line of a chain that is merged into one.
struct ChainMember {
    FeaturePtr feature;
    bool isReversed = false; // runs against the merged line
};

// Writes into the first feature of a chain what the union rules give for all of them together; the caller stores it.
// `chain`: in the order by which "First" and "Last" go. `alongLine`: the same in the order along the merged line.
//
//   numbers   "First", "Last", "Maximum", "Minimum", "Sum", and "Average" as the running mean of pairs
//   texts     "First", "Last"
//   both      "Null"; a range ("Range Address", "Range Continuous") from the field to its pair: from where the first
//             line along the merged one begins to where the last one ends, widened to cover all between; where one of
//             the ends is no number they are taken as they are
//
// Null among the values counts as in QZ_MergeAttributes. Other fields and rules keep the first feature's value. Throws
// PlatformError and DataError for values that can't be combined or that the field can't hold.
void writeChainValues(const Dictionary& rules, std::span<const ChainMember> chain,
                      std::span<const ChainMember> alongLine);

} // namespace qz
