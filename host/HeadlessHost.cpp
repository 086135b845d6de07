#include "host/HeadlessHost.h"

#include "platform/app/Services.h"

namespace qz {

namespace {

class TerminalDialog final : public ProgressDialog {
public:
    // Only goesOn() tells that the user wants to stop.
    explicit TerminalDialog(TerminalLine& line) : line_(line), progressor_(line, [] {}) { progressor_.show(); }
    ~TerminalDialog() override { line_.clear(); }

    void setTitle(const std::string& title) override { title_ = title; }
    void setDescription(const std::string& text) override;
    [[nodiscard]] StepProgressor& progressor() override { return progressor_; }
    [[nodiscard]] bool goesOn() override;
    void close() override { progressor_.hide(); }

private:
    TerminalLine& line_;
    HeadlessProgressor progressor_;
    std::string title_;
    bool cancelled_ = false;
};

void TerminalDialog::setDescription(const std::string& text) {
    progressor_.setMessage(title_.empty() ? text : title_ + ": " + text);
}

bool TerminalDialog::goesOn() {
    if (!cancelled_ && services().interruptRequested && services().interruptRequested()) {
        cancelled_ = true;
        if (services().interruptTaken) {
            services().interruptTaken();
        }
    }
    return !cancelled_;
}

} // namespace

Editor* HeadlessHost::findEditor(std::string_view identifier) {
    return identifier == "esriEditor.Editor" ? &editor_ : nullptr;
}

std::unique_ptr<ProgressDialog> HeadlessHost::createProgressDialog() {
    return std::make_unique<TerminalDialog>(statusBar_.line());
}

} // namespace qz
