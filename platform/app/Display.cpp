#include "platform/app/Display.h"

namespace qz {

const char* nameOf(GraphicKind kind) noexcept {
    switch (kind) {
    case GraphicKind::marker:
        return "marker";
    case GraphicKind::line:
        return "line";
    case GraphicKind::fill:
        return "fill";
    }
    return "";
}

} // namespace qz
