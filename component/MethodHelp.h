#pragma once

#include <string_view>

namespace qz {

// What a method does, for people at the command line.
struct MethodHelp {
    std::string_view method;
    std::string_view purpose; // one or a few sentences
    std::string_view example; // the options of `qz run <method>` on the sample town
};

[[nodiscard]] MethodHelp helpFor(std::string_view method) noexcept;

} // namespace qz
