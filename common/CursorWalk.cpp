#include "common/CursorWalk.h"

#include "common/Numbers.h"

namespace qz {

WalkProgress::WalkProgress(Application& application, std::int32_t expected, std::string text)
    : progressor_(application.statusBar().stepProgressor()), expected_(expected), text_(std::move(text)) {
    progressor_.setRange(1, checkedSum(expected, 1));
    progressor_.setStepValue(toInteger32(expected / 100.0));
}

void WalkProgress::advance(std::int32_t counter) {
    if (expected_ <= counter) {
        return;
    }
    progressor_.setPosition(counter);
    progressor_.setMessage(text_ + std::to_string(counter));
    progressor_.step();
    progressor_.show();
}

void WalkProgress::hide() {
    progressor_.hide();
}

std::string collectingText(const FeatureClass& featureClass) {
    const auto& shape = featureClass.schema().shape;
    return shape && shape->kind == GeometryKind::polygon ? "Collecting polygons: " : "Collecting polylines: ";
}

} // namespace qz
