#include "platform/data/Schema.h"

#include <algorithm>

#include "platform/data/PlainText.h"

namespace qz {

std::optional<std::size_t> Schema::findField(std::string_view fieldName) const {
    const auto found = std::find_if(fields.begin(), fields.end(),
                                    [&](const Field& field) { return equalIgnoringCase(field.name, fieldName); });
    if (found == fields.end()) {
        return std::nullopt;
    }
    return static_cast<std::size_t>(found - fields.begin());
}

} // namespace qz
