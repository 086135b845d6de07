#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "platform/data/overlay/EditedTable.h"

namespace qz {

// The steps of an edit session, operation by operation, for undo and redo. Undoing an operation puts every row back
// into the state it had before, the last step first; redoing the other way round.
class EditLog {
public:
    void begin();
    // Puts the row into the state, remembering the one it had.
    void apply(EditedTable& table, ObjectId id, std::optional<EditedRow> state);
    // Ends the operation. One without steps leaves no trace and gives false; any other makes what was undone before
    // unreachable.
    bool commit();
    void abort();
    [[nodiscard]] bool isOpen() const noexcept { return open_.has_value(); }

    // False when there is nothing left.
    bool undo();
    bool redo();
    void clear();

private:
    struct Step {
        ObjectId id;
        // Before the step, or after it when the step is undone; nothing: as stored. Apart, since most steps of large
        // operations add rows.
        std::unique_ptr<EditedRow> otherState;
    };
    // Steps on one table that follow each other.
    struct TableSteps {
        EditedTable* table;
        std::vector<Step> steps;
    };
    using Operation = std::vector<TableSteps>;

    [[nodiscard]] static std::unique_ptr<EditedRow> exchange(EditedTable& table, ObjectId id,
                                                             std::optional<EditedRow> state);
    static void swapState(EditedTable& table, Step& step);
    static void rollBack(Operation& operation);
    static void rollForward(Operation& operation);

    std::optional<Operation> open_;
    std::vector<Operation> done_;
    std::vector<Operation> undone_;
};

} // namespace qz
