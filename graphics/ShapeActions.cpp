#include "graphics/ShapeActions.h"

#include <algorithm>
#include <array>
#include <span>
#include <string_view>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "common/InReference.h"
#include "platform/Error.h"
#include "platform/geometry/Buffer.h"

namespace qz {

namespace {

struct Action {
    std::string_view word;
    std::string_view operation;
    bool adds;
};

constexpr std::array<Action, 5> actions{{{"Add", "Add", true},
                                         {"Split", "Split", false},
                                         {"Split & Add", "Split", true},
                                         {"Erase", "Erase", false},
                                         {"Erase & Add", "Erase", true}}};
constexpr std::size_t actionsOfLines = 3;

NetworkAction actionOf(const std::string& word, std::span<const Action> known, bool bOver) {
    const auto action = std::ranges::find(known, word, &Action::word);
    if (action == known.end()) {
        std::vector<std::string_view> words(known.size());
        std::ranges::transform(known, words.begin(), &Action::word);
        throw PlatformError(fmt::format("'{}' is no action here; use one of: {}.", word, fmt::join(words, ", ")));
    }
    return {.bAdd = action->adds, .sAction = std::string(action->operation), .bOver = bOver};
}

} // namespace

NetworkAction lineActionOf(const std::string& word, bool bOver) {
    return actionOf(word, std::span(actions).first(actionsOfLines), bOver);
}

NetworkAction outlineActionOf(const std::string& word, bool bOver) {
    return actionOf(word, actions, bOver);
}

Polygon bufferToAdd(const Polyline& line, const SpatialReference& reference, double distance) {
    if (!(distance > 0)) {
        throw PlatformError(fmt::format("Lines can't be buffered by {}; the distance has to be above 0.", distance));
    }
    return buffer(inReference(line, reference), distance);
}

} // namespace qz
