#pragma once

#include <string>
#include <vector>

#include "platform/app/Application.h"

namespace qz {

// Edits one or several workspaces in one session, with one stack of undo steps over all of them.
class HeadlessEditor final : public Editor {
public:
    // Takes the workspace into the session, and makes it the one that operations begin in from here on. Throws
    // PlatformError while an operation is open, DataError for data that can't be saved to.
    void startEditing(Workspace& workspace);
    // Ends the session of every workspace. Each is saved whole or not at all; throws DataError at the first that can't
    // be saved, and those not saved are then still being edited. Without a session nothing happens.
    void stopEditing(bool save);

    // A session is open, or the editor counts as editing.
    [[nodiscard]] bool isEditing() const override { return current_ != nullptr || countsAsEditing_; }
    // The one that operations begin in.
    [[nodiscard]] Workspace* editWorkspace() override { return current_; }
    // For methods that refuse to work without an editor, in runs where nothing is undone: operations then begin and end
    // without a trace as long as no session is open.
    void setCountsAsEditing(bool counts) noexcept { countsAsEditing_ = counts; }

    // These throw PlatformError when the editor is not editing.
    void startOperation() override;
    void stopOperation(const std::string& name) override;
    void abortOperation() override;

    // The operations that undo takes back, the oldest first. Operations that changed nothing are not among them.
    [[nodiscard]] std::vector<std::string> operationNames() const;
    // False when there is nothing to undo or redo, or no session.
    bool undo();
    bool redo();

private:
    struct Operation {
        std::string name;
        Workspace* workspace;
    };
    void requireEditing(const char* action) const;

    std::vector<Workspace*> workspaces_;
    Workspace* current_ = nullptr;
    bool countsAsEditing_ = false;
    std::vector<Operation> done_;
    std::vector<Operation> undone_; // the one undone last at the end
};

} // namespace qz
