#include "cogo/QZCogoFields.h"

#include <fmt/format.h>

#include "common/ErrorExit.h"
#include "common/QZFeatureClass.h"
#include "platform/Error.h"

namespace qz {

namespace {

constexpr int linearWidth = 12;
constexpr int angularWidth = 8;

void requireDecimals(const char* kind, std::int32_t decimals, int width) {
    const int most = width - 2; // a digit and the decimal mark stand before them
    if (decimals < 0 || decimals > most) {
        throw PlatformError(
            fmt::format("{} fields of {} characters can't have {} decimals. Give a number from 0 to {}.", kind, width,
                        decimals, most));
    }
}

NewField number(const char* name, int width, std::int32_t decimals) {
    return {.name = name, .kind = "dbl", .length = width, .scale = decimals};
}

NewField text(const char* name, int length) {
    return {.name = name, .kind = "str", .length = length};
}

} // namespace

bool QZ_AddCogoFields(FeatureLayer& layer, std::int32_t linearDecimals, std::int32_t angularDecimals) {
    return withErrorExit(" QZ_AddCogoFields", false, [&] {
        requireDecimals("Linear", linearDecimals, linearWidth);
        requireDecimals("Angular", angularDecimals, angularWidth);
        const auto linear = [&](const char* name) { return number(name, linearWidth, linearDecimals); };
        const NewField fields[] = {
            text("Direction", 16), linear("Distance"), number("Delta", angularWidth, angularDecimals),
            linear("Radius"),      linear("Tangent"),  linear("ArcLength"),
            text("Side", 2),       linear("XStart"),   linear("YStart")};
        for (const NewField& field : fields) {
            QZ_AddField(layer.featureClass(), field);
        }
        return true;
    });
}

} // namespace qz
