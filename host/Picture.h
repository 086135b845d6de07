#pragma once

#include <memory>
#include <string>
#include <vector>

#include "host/HeadlessMap.h"

namespace qz {

struct PictureOptions {
    int width = 1200; // pixels
    int height = 900;
};

// Shapes that a run changed, in the map's spatial reference.
struct Highlight {
    std::vector<Geometry> before;
    std::vector<Geometry> after;
};

// Draws the visible part of the map to a PNG or SVG file, by its ending: layers, the first one on top, then graphics,
// then what was painted on the display, then the changes: shapes before dashed and thin, shapes after strong, with
// arrow heads along lines. Around it a frame, a scale bar and a legend. Arcs are drawn as arcs. Only features in view
// are read. The file is replaced as a whole. Throws UsageError for another ending, DataError when it can't be written.
void writePicture(const std::string& path, HeadlessMap& map, const Highlight& highlight,
                  const PictureOptions& options = {});

// Two such pictures side by side, titled "Before" and "After", each of the size in the options. The map is drawn as it
// is when each half is asked for; its view should not change between the two.
class BeforeAfterPicture {
public:
    explicit BeforeAfterPicture(const std::string& path, const PictureOptions& options = {.width = 900, .height = 800});
    ~BeforeAfterPicture();

    void drawBefore(HeadlessMap& map, const Highlight& highlight = {});
    void drawAfter(HeadlessMap& map, const Highlight& highlight);
    void save();

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

} // namespace qz
