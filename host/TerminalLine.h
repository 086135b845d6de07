#pragma once

#include <iosfwd>
#include <string>

namespace qz {

// The last line of a terminal, overwritten in place. Into a pipe or a file nothing is written.
class TerminalLine {
public:
    TerminalLine(std::ostream& stream, bool isTerminal) : stream_(stream), isTerminal_(isTerminal) {}
    ~TerminalLine() { clear(); }
    TerminalLine(const TerminalLine&) = delete;
    TerminalLine& operator=(const TerminalLine&) = delete;

    [[nodiscard]] bool isTerminal() const noexcept { return isTerminal_; }
    // Replaces the line. UTF-8; what goes beyond 79 characters is left out, since a wrapped line can't be overwritten.
    void show(const std::string& text);
    // Leaves the line empty with the cursor at its start.
    void clear();

private:
    std::ostream& stream_;
    bool isTerminal_;
    bool isEmpty_ = true;
};

} // namespace qz
