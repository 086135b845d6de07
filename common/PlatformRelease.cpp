#include "common/PlatformRelease.h"

#include <charconv>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/app/Services.h"

namespace qz {

namespace {

std::vector<std::string_view> splitAtPoints(std::string_view text) {
    std::vector<std::string_view> parts;
    for (std::size_t end = text.find('.'); end != std::string_view::npos; end = text.find('.')) {
        parts.push_back(text.substr(0, end));
        text.remove_prefix(end + 1);
    }
    parts.push_back(text);
    return parts;
}

std::optional<int> wholeNumber(std::string_view text) {
    int number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc{} && end == text.data() + text.size() ? std::optional(number) : std::nullopt;
}

} // namespace

bool QZ_PlatformAtLeast92() {
    const std::string release = services().platformRelease.value_or("xxx");
    const std::vector<std::string_view> parts = splitAtPoints(release);
    if (parts.size() < 3) {
        return false;
    }
    const std::optional<int> major = wholeNumber(parts[0]);
    const std::optional<int> minor = wholeNumber(parts[1]);
    if (!major || !minor) {
        return false;
    }
    return *major == 9 ? *minor >= 2 : *major >= 10;
}

} // namespace qz
