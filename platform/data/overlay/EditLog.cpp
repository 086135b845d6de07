#include "platform/data/overlay/EditLog.h"

#include <ranges>
#include <utility>

namespace qz {

void EditLog::begin() {
    open_.emplace();
}

void EditLog::apply(EditedTable& table, ObjectId id, std::optional<EditedRow> state) {
    std::unique_ptr<EditedRow> before = exchange(table, id, std::move(state));
    if (open_->empty() || open_->back().table != &table) {
        open_->push_back({&table, {}});
    }
    open_->back().steps.push_back({id, std::move(before)});
}

bool EditLog::commit() {
    const bool changed = !open_->empty();
    if (changed) {
        done_.push_back(std::move(*open_));
        undone_.clear();
    }
    open_.reset();
    return changed;
}

void EditLog::abort() {
    rollBack(*open_);
    open_.reset();
}

bool EditLog::undo() {
    if (done_.empty()) {
        return false;
    }
    rollBack(done_.back());
    undone_.push_back(std::move(done_.back()));
    done_.pop_back();
    return true;
}

bool EditLog::redo() {
    if (undone_.empty()) {
        return false;
    }
    rollForward(undone_.back());
    done_.push_back(std::move(undone_.back()));
    undone_.pop_back();
    return true;
}

void EditLog::clear() {
    open_.reset();
    done_.clear();
    undone_.clear();
}

std::unique_ptr<EditedRow> EditLog::exchange(EditedTable& table, ObjectId id, std::optional<EditedRow> state) {
    auto before = table.exchange(id, std::move(state));
    return before ? std::make_unique<EditedRow>(std::move(*before)) : nullptr;
}

void EditLog::swapState(EditedTable& table, Step& step) {
    std::optional<EditedRow> state;
    if (step.otherState) {
        state = std::move(*step.otherState);
    }
    step.otherState = exchange(table, step.id, std::move(state));
}

void EditLog::rollBack(Operation& operation) {
    for (TableSteps& part : operation | std::views::reverse) {
        for (Step& step : part.steps | std::views::reverse) {
            swapState(*part.table, step);
        }
    }
}

void EditLog::rollForward(Operation& operation) {
    for (TableSteps& part : operation) {
        for (Step& step : part.steps) {
            swapState(*part.table, step);
        }
    }
}

} // namespace qz
