#include "host/HeadlessEditor.h"

#include <algorithm>

#include <fmt/format.h>

namespace qz {

void HeadlessEditor::startEditing(Workspace& workspace) {
    if (current_ != nullptr && current_->isInEditOperation()) {
        throw PlatformError(
            fmt::format("An edit operation is open in \"{}\": stop or abort it first.", current_->path()));
    }
    if (std::find(workspaces_.begin(), workspaces_.end(), &workspace) == workspaces_.end()) {
        workspace.startEditing();
        workspaces_.push_back(&workspace);
    }
    current_ = &workspace;
}

void HeadlessEditor::stopEditing(bool save) {
    while (!workspaces_.empty()) {
        workspaces_.front()->stopEditing(save);
        workspaces_.erase(workspaces_.begin());
    }
    current_ = nullptr;
    done_.clear();
    undone_.clear();
}

void HeadlessEditor::startOperation() {
    requireEditing("start");
    if (current_ != nullptr) {
        current_->startEditOperation();
    }
}

void HeadlessEditor::stopOperation(const std::string& name) {
    requireEditing("stop");
    if (current_ != nullptr && current_->stopEditOperation()) {
        done_.push_back({name, current_});
        undone_.clear();
    }
}

void HeadlessEditor::abortOperation() {
    requireEditing("abort");
    if (current_ != nullptr) {
        current_->abortEditOperation();
    }
}

bool HeadlessEditor::undo() {
    if (done_.empty() || !done_.back().workspace->undo()) {
        return false;
    }
    undone_.push_back(std::move(done_.back()));
    done_.pop_back();
    return true;
}

bool HeadlessEditor::redo() {
    if (undone_.empty() || !undone_.back().workspace->redo()) {
        return false;
    }
    done_.push_back(std::move(undone_.back()));
    undone_.pop_back();
    return true;
}

std::vector<std::string> HeadlessEditor::operationNames() const {
    std::vector<std::string> names;
    for (const Operation& operation : done_) {
        names.push_back(operation.name);
    }
    return names;
}

void HeadlessEditor::requireEditing(const char* action) const {
    if (!isEditing()) {
        throw PlatformError(
            fmt::format("There is no edit operation to {}: nothing is being edited; start editing first.", action));
    }
}

} // namespace qz
