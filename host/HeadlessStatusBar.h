#pragma once

#include <chrono>
#include <cstdint>
#include <string>

#include "host/TerminalLine.h"
#include "platform/app/Application.h"
#include "platform/app/Services.h"

namespace qz {

// What a progressor was told since the last reset.
struct ProgressRecord {
    std::int32_t maximum = 0;
    std::int32_t step = 0;
    // How often it moved; setting a position and stepping right after it is one move.
    std::int64_t positions = 0;
    std::string text; // the last one
    bool shown = false;
    int hideCount = 0;
};

// Draws text, bar and percentage on a terminal while it is shown, and keeps a record for the report. Drawn again with
// each new percentage, else at most 20 times a second. Before every step the user may be asked whether to go on.
class HeadlessProgressor final : public StepProgressor {
public:
    // `beforeStep`: by default stops the run when the user wants to.
    explicit HeadlessProgressor(TerminalLine& line, void (*beforeStep)() = checkInterrupt)
        : line_(line), beforeStep_(beforeStep) {}

    void setRange(std::int32_t minimum, std::int32_t maximum) override;
    void setStepValue(std::int32_t step) override { record_.step = step; }
    void setPosition(std::int32_t position) override;
    void setMessage(const std::string& text) override { record_.text = text; }
    void step() override;
    void show() override;
    void hide() override;

    [[nodiscard]] const ProgressRecord& record() const noexcept { return record_; }
    void reset();

private:
    using Time = std::chrono::system_clock::time_point;

    [[nodiscard]] int percent() const noexcept;
    void drawWhenDue();
    void draw(Time now);

    TerminalLine& line_;
    void (*beforeStep_)();
    ProgressRecord record_;
    std::int32_t minimum_ = 0;
    std::int64_t position_ = 0;
    bool positionJustSet_ = false;
    int drawnPercent_ = 0;
    Time drawnAt_;
};

// A status line: the message, or the progressor's bar while that is shown.
class HeadlessStatusBar final : public StatusBar {
public:
    HeadlessStatusBar(std::ostream& terminal, bool isTerminal) : line_(terminal, isTerminal), progressor_(line_) {}

    [[nodiscard]] HeadlessProgressor& stepProgressor() override { return progressor_; }
    void setMessage(const std::string& text) override;

    // The last one.
    [[nodiscard]] const std::string& message() const noexcept { return message_; }
    [[nodiscard]] TerminalLine& line() noexcept { return line_; }

private:
    TerminalLine line_;
    HeadlessProgressor progressor_;
    std::string message_;
};

} // namespace qz
