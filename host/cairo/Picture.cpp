#include "host/Picture.h"

#include "host/cairo/MapPanel.h"

namespace qz {

struct BeforeAfterPicture::Impl {
    Canvas canvas;
    PixelRect before;
    PixelRect after;
};

BeforeAfterPicture::BeforeAfterPicture(const std::string& path, const PictureOptions& options)
    : impl_(std::make_unique<Impl>(Impl{Canvas(path, 2 * options.width, options.height),
                                        {0, 0, static_cast<double>(options.width), static_cast<double>(options.height)},
                                        {static_cast<double>(options.width), 0, static_cast<double>(options.width),
                                         static_cast<double>(options.height)}})) {}

BeforeAfterPicture::~BeforeAfterPicture() = default;

void BeforeAfterPicture::drawBefore(HeadlessMap& map, const Highlight& highlight) {
    drawMapPanel(impl_->canvas, impl_->before, map, highlight, "Before");
}

void BeforeAfterPicture::drawAfter(HeadlessMap& map, const Highlight& highlight) {
    drawMapPanel(impl_->canvas, impl_->after, map, highlight, "After");
}

void BeforeAfterPicture::save() {
    impl_->canvas.save();
}

void writePicture(const std::string& path, HeadlessMap& map, const Highlight& highlight,
                  const PictureOptions& options) {
    Canvas canvas(path, options.width, options.height);
    const PixelRect sheet{0, 0, static_cast<double>(options.width), static_cast<double>(options.height)};
    drawMapPanel(canvas, sheet, map, highlight, "");
    canvas.save();
}

} // namespace qz
