#pragma once

#include <algorithm>
#include <charconv>
#include <optional>
#include <string_view>

namespace qz {

// Reading texts the same way in every locale.

[[nodiscard]] inline std::string_view withoutOuterBlanks(std::string_view text) {
    const auto first = text.find_first_not_of(' ');
    return first == std::string_view::npos ? std::string_view()
                                           : text.substr(first, text.find_last_not_of(' ') - first + 1);
}

// "+3" as "3"; "+-3" stays, which is no number.
[[nodiscard]] inline std::string_view withoutPlusSign(std::string_view text) {
    return text.starts_with('+') && !text.starts_with("+-") ? text.substr(1) : text;
}

// The whole text as a number with "." as its decimal mark; nothing when it is anything else, or out of range.
template <typename Number> [[nodiscard]] std::optional<Number> readWhole(std::string_view text) {
    Number number{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc{} && end == text.data() + text.size() ? std::optional(number) : std::nullopt;
}

// Letters of ASCII only, as names of fields and words of rules are made of; other bytes stay as they are.
[[nodiscard]] constexpr char upperCase(char letter) noexcept {
    return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
}
[[nodiscard]] inline bool equalIgnoringCase(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return upperCase(x) == upperCase(y); });
}

} // namespace qz
