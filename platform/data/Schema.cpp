#include "platform/data/Schema.h"

#include <algorithm>

namespace qz {

namespace {

char lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool equalIgnoringCase(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) { return lower(x) == lower(y); });
}

} // namespace

std::optional<std::size_t> Schema::findField(std::string_view fieldName) const {
    const auto found = std::find_if(fields.begin(), fields.end(),
                                    [&](const Field& field) { return equalIgnoringCase(field.name, fieldName); });
    if (found == fields.end()) {
        return std::nullopt;
    }
    return static_cast<std::size_t>(found - fields.begin());
}

} // namespace qz
