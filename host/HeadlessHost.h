#pragma once

#include <iosfwd>
#include <memory>
#include <string_view>

#include "host/HeadlessEditor.h"
#include "host/HeadlessMap.h"
#include "host/HeadlessStatusBar.h"
#include "platform/app/Application.h"

namespace qz {

// An application without windows: one map, one editor, a status line.
class HeadlessHost final : public Application {
public:
    // The status line is drawn on `terminal`, which must outlive the host, if it `isTerminal`; else nothing is written.
    explicit HeadlessHost(std::ostream& terminal, bool isTerminal) : statusBar_(terminal, isTerminal) {}

    [[nodiscard]] HeadlessStatusBar& statusBar() override { return statusBar_; }
    [[nodiscard]] HeadlessMap& focusMap() override { return map_; }
    [[nodiscard]] HeadlessEditor& editor() noexcept { return editor_; }
    [[nodiscard]] Editor* findEditor(std::string_view identifier) override;
    // Its bar takes the place of the status line. An interrupt is its cancel button.
    [[nodiscard]] std::unique_ptr<ProgressDialog> createProgressDialog() override;

private:
    HeadlessStatusBar statusBar_;
    HeadlessMap map_;
    HeadlessEditor editor_;
};

} // namespace qz
