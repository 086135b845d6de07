#pragma once

#include <cstdint>
#include <string>

#include "common/FeatureShapes.h"
#include "platform/app/Application.h"
#include "platform/app/Services.h"

namespace qz {

// The status bar's progress while a method walks its features. The bar's range is 1 to expected + 1 and its step a
// hundredth of `expected`, rounded half to even; once `expected` features were counted it stands still.
class WalkProgress {
public:
    // `text` is followed directly by the counter: "Flipping polylines: ". Throws PlatformError for a count that has no
    // successor.
    WalkProgress(Application& application, std::int32_t expected, std::string text);

    // After a feature was dealt with, `counter` of them before it.
    void advance(std::int32_t counter);
    void hide();

private:
    StepProgressor& progressor_;
    std::int32_t expected_;
    std::string text_;
};

// "Collecting polygons: " for a class of polygons, else "Collecting polylines: ".
[[nodiscard]] std::string collectingText(const FeatureClass& featureClass);

// The frame of a method that walks a cursor: calls `process(FeaturePtr)` for every feature, and moves the progress. The
// user can stop it before each one. The progress is hidden after the last one; it stays when `process` throws.
template <typename Process>
void walkFeatures(Application& application, FeatureCursor& cursor, std::int32_t expected, const std::string& text,
                  Process process) {
    WalkProgress progress(application, expected, text);
    std::int32_t counter = 0;
    for (FeaturePtr feature = cursor.next(); feature; feature = cursor.next(), ++counter) {
        checkInterrupt();
        process(feature);
        progress.advance(counter);
    }
    progress.hide();
}

// Calls `process(FeaturePtr)` for every feature that has a shape which is neither null nor empty, without progress.
template <typename Process> void forEachShaped(FeatureCursor& cursor, Process process) {
    for (FeaturePtr feature = cursor.next(); feature; feature = cursor.next()) {
        checkInterrupt();
        if (hasShape(*feature)) {
            process(feature);
        }
    }
}

// The frame of walkFeatures with `process(feature, shape)` for those that have a shape which is neither null nor empty.
template <typename Process>
void walkShapes(Application& application, FeatureCursor& cursor, std::int32_t expected, const std::string& text,
                Process process) {
    walkFeatures(application, cursor, expected, text, [&process](const FeaturePtr& feature) {
        if (hasShape(*feature)) {
            process(*feature, *feature->shape());
        }
    });
}

} // namespace qz
