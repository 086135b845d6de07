#include "host/HeadlessStatusBar.h"

#include <algorithm>

#include <fmt/format.h>

#include "platform/app/Services.h"

namespace qz {

namespace {

constexpr int barWidth = 30;
constexpr std::chrono::milliseconds redrawInterval{50};

std::string bar(int percent) {
    const int filled = percent * barWidth / 100;
    return fmt::format("[{:=<{}}{:<{}}]", "", filled, "", barWidth - filled);
}

} // namespace

void HeadlessProgressor::setRange(std::int32_t minimum, std::int32_t maximum) {
    minimum_ = minimum;
    position_ = minimum;
    record_.maximum = maximum;
}

void HeadlessProgressor::setPosition(std::int32_t position) {
    position_ = position;
    ++record_.positions;
    positionJustSet_ = true;
}

void HeadlessProgressor::step() {
    beforeStep_();
    position_ += record_.step;
    if (!positionJustSet_) {
        ++record_.positions;
    }
    positionJustSet_ = false;
    if (record_.shown) {
        drawWhenDue();
    }
}

void HeadlessProgressor::show() {
    if (!record_.shown) {
        record_.shown = true;
        draw(services().clock());
    }
}

void HeadlessProgressor::hide() {
    record_.shown = false;
    ++record_.hideCount;
    line_.clear();
}

void HeadlessProgressor::reset() {
    line_.clear();
    record_ = {};
    minimum_ = 0;
    position_ = 0;
    positionJustSet_ = false;
}

int HeadlessProgressor::percent() const noexcept {
    const std::int64_t range = std::int64_t{record_.maximum} - minimum_;
    if (range <= 0) {
        return 0;
    }
    return static_cast<int>(std::clamp<std::int64_t>((position_ - minimum_) * 100 / range, 0, 100));
}

void HeadlessProgressor::drawWhenDue() {
    const Time now = services().clock();
    const bool clockWasSetBack = now < drawnAt_;
    if (percent() != drawnPercent_ || now - drawnAt_ >= redrawInterval || clockWasSetBack) {
        draw(now);
    }
}

void HeadlessProgressor::draw(Time now) {
    drawnAt_ = now;
    drawnPercent_ = percent();
    line_.show(fmt::format("{} {:>3} % {}", bar(drawnPercent_), drawnPercent_, record_.text));
}

void HeadlessStatusBar::setMessage(const std::string& text) {
    message_ = text;
    if (!progressor_.record().shown) {
        line_.show(text);
    }
}

} // namespace qz
