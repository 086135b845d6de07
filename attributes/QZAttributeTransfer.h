#pragma once

#include <map>
#include <string>

#include "common/Dictionary.h"
#include "platform/data/FeatureClass.h"

namespace qz {

// The values that the pieces of a split line get, and those of merged features, by the rules of QZAttributeRules.h.

// Where the ranges of the next piece of a line start, by field. Made anew for each line; the pieces are then written in
// their order along it.
class RangeTotals {
public:
    explicit RangeTotals(const Dictionary& rules);

    // 0 until a piece was written. A range that arrives at 0 starts over.
    [[nodiscard]] double& of(const std::string& field) { return totals_[field]; }

private:
    std::map<std::string, double> totals_;
};

struct PieceOfLine {
    double share = 1;    // of the length of the line
    bool isLast = false; // ends where the line ends
};

// Writes what the rules give a piece: for "Copy" the source's value, for "Empty" an empty text or, in other fields, no
// value, for "Proportion" the value times the share (null stays null). A range from a field to its pair is divided
// among the pieces: "Range Address" in 32-bit integers of even counts, "Range Continuous" as it falls. The next piece
// starts where this one ends; with `bOver` false one step after it, 2 for addresses, 1 for continuous ranges of
// integers; there a start never goes beyond the source's range. The last piece ends with that range. A range from an
// empty text copies it, one that is not numeric copies both values. Fields that the buffer doesn't have, or that can't
// be edited, are passed over. Throws PlatformError for values that can't be calculated with or that the field can't
// hold.
void writeSplitValues(FeatureBuffer& buffer, const Feature& source, const Dictionary& rules, const PieceOfLine& piece,
                      bool bOver, RangeTotals& totals);

// Writes into `kept` what it must carry after `merged` was merged into it; the caller stores it. Numeric fields by
// "First" (the merged feature's value), "Last" (the kept one's), "Sum", "Average", "Minimum" or "Maximum"; with null on
// a side "Sum" and "Average" are null, and "Minimum" and "Maximum" keep the kept value. Text fields by "First", or they
// keep their value as all others do.
// A failure is reported with its description and gives false; values written before it stay.
[[nodiscard]] bool QZ_MergeAttributes(const FeatureClass& featureClass, const Dictionary& rules, const Feature& merged,
                                      Feature& kept);

} // namespace qz
