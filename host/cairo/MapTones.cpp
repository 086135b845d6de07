#include "host/cairo/MapTones.h"

#include <array>

namespace qz {

namespace {

struct Tone {
    Color fill;
    Color outline;
    Color line; // of lines and points, which need more contrast than areas
};

constexpr std::array<Tone, 6> tones{{
    {{236, 229, 210}, {184, 168, 130}, {96, 108, 124}},
    {{220, 232, 211}, {142, 168, 126}, {140, 98, 62}},
    {{214, 227, 240}, {118, 150, 184}, {46, 112, 140}},
    {{242, 221, 214}, {190, 140, 124}, {112, 84, 140}},
    {{228, 221, 238}, {148, 132, 180}, {74, 122, 76}},
    {{210, 233, 230}, {110, 164, 156}, {160, 122, 30}},
}};

} // namespace

Symbol layerSymbol(std::size_t layer) {
    const Tone& tone = tones[layer % tones.size()];
    return {.marker = {.color = tone.line, .size = 4.5},
            .line = {.color = tone.line, .width = 1.1},
            .fill = {.color = tone.fill, .outline = {.color = tone.outline, .width = 0.6}}};
}

} // namespace qz
