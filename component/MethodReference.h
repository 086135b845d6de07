#pragma once

#include <string>
#include <vector>

#include "component/MethodTable.h"

namespace qz {

using MethodSelection = std::vector<const MethodInfo*>;

// All methods for an empty name. Throws UsageError for a name that there is no method of.
[[nodiscard]] MethodSelection selectMethods(const std::string& name);

// The method table for readers: one method in full with its parameters, or several as a list.
[[nodiscard]] std::string methodsAsText(const MethodSelection& methods);
// An object for one method, an array for several.
[[nodiscard]] std::string methodsAsJson(const MethodSelection& methods);
[[nodiscard]] std::string methodsAsMarkdown(const MethodSelection& methods);

} // namespace qz
