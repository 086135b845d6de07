#include "platform/app/Application.h"

namespace qz {

FeatureLayer* Map::findLayer(std::string_view name) {
    for (FeatureLayer* layer : layers()) {
        if (layer->name() == name) {
            return layer;
        }
    }
    return nullptr;
}

} // namespace qz
