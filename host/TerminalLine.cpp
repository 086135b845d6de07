#include "host/TerminalLine.h"

#include <ostream>

namespace qz {

namespace {

constexpr std::size_t widestLine = 79;
constexpr const char* startOfLine = "\r";
constexpr const char* eraseToEndOfLine = "\x1b[K";

bool startsCharacter(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U;
}

std::string firstCharacters(const std::string& text, std::size_t limit) {
    std::size_t characters = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (startsCharacter(text[i]) && ++characters > limit) {
            return text.substr(0, i);
        }
    }
    return text;
}

} // namespace

void TerminalLine::show(const std::string& text) {
    if (isTerminal_) {
        stream_ << startOfLine << firstCharacters(text, widestLine) << eraseToEndOfLine << std::flush;
        isEmpty_ = false;
    }
}

void TerminalLine::clear() {
    if (!isEmpty_) {
        stream_ << startOfLine << eraseToEndOfLine << std::flush;
        isEmpty_ = true;
    }
}

} // namespace qz
