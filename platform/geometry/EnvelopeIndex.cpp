#include "platform/geometry/EnvelopeIndex.h"

#include <iterator>
#include <utility>

namespace qz {

namespace {

constexpr std::uint32_t curveSide = 1U << 16U;

// The place of a cell along the Hilbert curve that fills a square of 65536 x 65536 cells: quadrant by quadrant, from
// the largest down, with the square turned so that every quadrant is run through alike.
std::uint32_t hilbertPlace(std::uint32_t x, std::uint32_t y) noexcept {
    std::uint32_t place = 0;
    for (std::uint32_t side = curveSide / 2; side > 0; side /= 2) {
        const bool right = (x & side) != 0;
        const bool upper = (y & side) != 0;
        place += side * side * (right ? (upper ? 2U : 3U) : (upper ? 1U : 0U));
        if (!upper) {
            if (right) {
                x = curveSide - 1 - x;
                y = curveSide - 1 - y;
            }
            std::swap(x, y);
        }
    }
    return place;
}

std::uint32_t cellOf(double value, double low, double extent) noexcept {
    const double cell = (value - low) / extent * (curveSide - 1);
    return cell > 0 ? static_cast<std::uint32_t>(std::min(cell, static_cast<double>(curveSide - 1))) : 0;
}

struct Place {
    std::uint32_t onCurve;
    std::uint32_t item;

    friend auto operator<=>(const Place&, const Place&) = default;
};

std::vector<Place> placesOnCurve(std::span<const Envelope> envelopes) {
    Envelope extent;
    for (const Envelope& envelope : envelopes) {
        extent.expandToInclude(envelope);
    }
    std::vector<Place> places;
    places.reserve(envelopes.size());
    for (std::size_t i = 0; i < envelopes.size(); ++i) {
        if (!envelopes[i].isEmpty()) {
            const XY centre = envelopes[i].centre();
            places.push_back({hilbertPlace(cellOf(centre.x, extent.xMin, extent.width()),
                                           cellOf(centre.y, extent.yMin, extent.height())),
                              static_cast<std::uint32_t>(i)});
        }
    }
    std::ranges::sort(places);
    return places;
}

// Runs shorter than this are looked through one by one.
constexpr std::size_t smallestRun = 64;

} // namespace

PackedEnvelopeTree::PackedEnvelopeTree(std::span<const Envelope> envelopes) {
    std::vector<Envelope> lowest;
    lowest.reserve(envelopes.size());
    items_.reserve(envelopes.size());
    for (const Place& place : placesOnCurve(envelopes)) {
        lowest.push_back(envelopes[place.item]);
        items_.push_back(place.item);
    }
    levels_.push_back(std::move(lowest));
    while (levels_.back().size() > nodeSize) {
        addLevel();
    }
}

void PackedEnvelopeTree::addLevel() {
    const std::vector<Envelope>& below = levels_.back();
    std::vector<Envelope> level((below.size() + nodeSize - 1) / nodeSize);
    for (std::size_t i = 0; i < below.size(); ++i) {
        Envelope& node = level[i / nodeSize];
        node = node.isEmpty() ? below[i]
                              : Envelope{std::min(node.xMin, below[i].xMin), std::min(node.yMin, below[i].yMin),
                                         std::max(node.xMax, below[i].xMax), std::max(node.yMax, below[i].yMax)};
    }
    levels_.push_back(std::move(level));
}

bool EnvelopeIndex::counts(const Entry& entry) const {
    const auto found = current_.find(entry.key);
    return found != current_.end() && found->second == entry.insertion;
}

void EnvelopeIndex::insert(std::int64_t key, const Envelope& envelope) {
    current_[key] = ++insertions_;
    recent_.push_back({key, insertions_, envelope});
    ++entries_;
    if (recent_.size() >= smallestRun) {
        packRecent();
        dropStale();
    }
}

void EnvelopeIndex::remove(std::int64_t key) {
    current_.erase(key);
    dropStale();
}

// Takes in the runs that are no larger than what has gathered, so that sizes at least double from run to run.
void EnvelopeIndex::packRecent() {
    std::vector<Entry> gathered = std::exchange(recent_, {});
    while (!runs_.empty() && runs_.back().entries.size() <= gathered.size()) {
        std::ranges::copy(runs_.back().entries, std::back_inserter(gathered));
        runs_.pop_back();
    }
    addRun(std::move(gathered));
}

// Builds everything anew once most of it no longer counts.
void EnvelopeIndex::dropStale() {
    if (entries_ <= 2 * current_.size() + smallestRun) {
        return;
    }
    std::vector<Entry> gathered = std::exchange(recent_, {});
    for (const Run& run : runs_) {
        std::ranges::copy(run.entries, std::back_inserter(gathered));
    }
    runs_.clear();
    addRun(std::move(gathered));
}

void EnvelopeIndex::addRun(std::vector<Entry> entries) {
    entries_ -= std::erase_if(entries, [this](const Entry& entry) { return !counts(entry); });
    if (entries.empty()) {
        return;
    }
    std::vector<Envelope> envelopes;
    envelopes.reserve(entries.size());
    std::ranges::transform(entries, std::back_inserter(envelopes), &Entry::envelope);
    runs_.push_back({std::move(entries), PackedEnvelopeTree(envelopes)});
}

std::vector<std::int64_t> EnvelopeIndex::query(const Envelope& window) const {
    std::vector<std::int64_t> keys;
    const auto take = [&](const Entry& entry) {
        if (counts(entry)) {
            keys.push_back(entry.key);
        }
    };
    for (const Entry& entry : recent_) {
        if (entry.envelope.intersects(window)) {
            take(entry);
        }
    }
    for (const Run& run : runs_) {
        run.tree.query(window, [&](std::size_t index) { take(run.entries[index]); });
    }
    std::ranges::sort(keys);
    return keys;
}

} // namespace qz
