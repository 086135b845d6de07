#include "component/MethodRow.h"

namespace qz {

ParameterName byValue(ParameterName parameter) {
    parameter.byValue = true;
    return parameter;
}

ParameterName optional(ParameterName parameter) {
    parameter.optional = true;
    return parameter;
}

ParameterName defaulted(ParameterName parameter, Argument value) {
    parameter.optional = true;
    parameter.defaultValue = std::move(value);
    return parameter;
}

ParameterName output(ParameterName parameter) {
    parameter.use = ParameterUse::output;
    return parameter;
}

ParameterName noEffect(ParameterName parameter) {
    parameter.use = ParameterUse::noEffect;
    return parameter;
}

ParameterName updateCursor(ParameterName parameter) {
    parameter.use = ParameterUse::updateCursor;
    return parameter;
}

MethodInfo withOwnOperation(MethodInfo row) {
    row.ownsOperation = true;
    return row;
}

std::vector<MethodInfo> numbered(std::vector<MethodInfo> rows) {
    int order = 0;
    for (MethodInfo& row : rows) {
        row.order = ++order;
    }
    return rows;
}

} // namespace qz
