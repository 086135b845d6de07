#include "topology/FaceTrace.h"

#include <algorithm>
#include <numeric>

namespace qz {

namespace {

std::uint32_t rootOf(std::vector<std::uint32_t>& parents, std::uint32_t place) {
    while (parents[place] != place) {
        parents[place] = parents[parents[place]];
        place = parents[place];
    }
    return place;
}

} // namespace

FaceTrace::FaceTrace(const LinkedNetwork& network, const StageProgress& progress)
    : network_(network), isUsed_(network.edgeCount()), leaving_(network.places(), network.placeCount()) {
    for (std::size_t edge = 0; edge < isUsed_.size(); ++edge) {
        isUsed_[edge] = network.placeOf(static_cast<EdgeEnd>(2 * edge)) != Groups::none;
    }
    QZ_RemoveAllDangles();
    sortDepartures();
    QZ_FixNotClosed();
    traceRings(progress);
    findParts();
}

// Removes edges with a free end until there is none.
void FaceTrace::QZ_RemoveAllDangles() {
    std::vector<std::uint32_t> degrees(network_.placeCount());
    std::vector<std::uint32_t> free;
    for (std::uint32_t place = 0; place < degrees.size(); ++place) {
        degrees[place] = static_cast<std::uint32_t>(leaving_[place].size());
        if (degrees[place] == 1) {
            free.push_back(place);
        }
    }
    while (!free.empty()) {
        const std::uint32_t place = free.back();
        free.pop_back();
        for (const EdgeEnd halfEdge : leaving_[place]) {
            if (isUsed_[edgeOf(halfEdge)]) {
                isUsed_[edgeOf(halfEdge)] = false;
                const std::uint32_t other = network_.placeOf(otherEnd(halfEdge));
                if (--degrees[other] == 1) {
                    free.push_back(other);
                }
            }
        }
    }
}

// The used half-edges of each place, in the order of their directions.
void FaceTrace::sortDepartures() {
    std::vector<std::uint32_t> places(network_.places().begin(), network_.places().end());
    for (EdgeEnd halfEdge = 0; halfEdge < places.size(); ++halfEdge) {
        if (!isUsed_[edgeOf(halfEdge)]) {
            places[halfEdge] = Groups::none;
        }
    }
    leaving_ = Groups(places, network_.placeCount());
    DepartureOrder order(network_);
    for (std::size_t place = 0; place < leaving_.size(); ++place) {
        order.sort(leaving_[place]);
    }
    linkHalfEdges();
}

// The sharpest turn to the right: the first half-edge counter-clockwise from the way back.
void FaceTrace::linkHalfEdges() {
    next_.assign(halfEdgeCount(), Groups::none);
    for (std::size_t place = 0; place < leaving_.size(); ++place) {
        EdgeEnd first = Groups::none;
        EdgeEnd last = Groups::none;
        for (const EdgeEnd halfEdge : std::as_const(leaving_)[place]) {
            if (!isUsed_[edgeOf(halfEdge)]) {
                continue;
            }
            if (first == Groups::none) {
                first = halfEdge;
            } else {
                next_[otherEnd(last)] = halfEdge;
            }
            last = halfEdge;
        }
        if (first != Groups::none) {
            next_[otherEnd(last)] = first;
        }
    }
}

std::vector<std::uint32_t> FaceTrace::courseNumbers() const {
    std::vector<std::uint32_t> numbers(halfEdgeCount(), Groups::none);
    std::uint32_t count = 0;
    for (EdgeEnd start = 0; start < numbers.size(); ++start) {
        if (next_[start] != Groups::none && numbers[start] == Groups::none) {
            for (EdgeEnd at = start; numbers[at] == Groups::none; at = next_[at]) {
                numbers[at] = count;
            }
            ++count;
        }
    }
    return numbers;
}

// Removes the edges that a course runs along back and forth: it does not close to a ring there. Lines that cross
// without a node can make more of these with every round.
void FaceTrace::QZ_FixNotClosed() {
    for (bool anyRemoved = true; anyRemoved;) {
        anyRemoved = false;
        const std::vector<std::uint32_t> numbers = courseNumbers();
        for (std::size_t edge = 0; edge < isUsed_.size(); ++edge) {
            if (isUsed_[edge] && numbers[2 * edge] == numbers[2 * edge + 1]) {
                isUsed_[edge] = false;
                anyRemoved = true;
            }
        }
        if (anyRemoved) {
            linkHalfEdges();
        }
    }
}

void FaceTrace::traceRings(const StageProgress& progress) {
    onRing_.assign(network_.placeCount(), 0);
    std::vector<bool> isWalked(halfEdgeCount());
    std::vector<EdgeEnd> course;
    for (EdgeEnd start = 0; start < halfEdgeCount(); ++start) {
        if (!isReversed(start)) {
            progress(edgeOf(start), network_.edgeCount());
        }
        if (next_[start] == Groups::none || isWalked[start]) {
            continue;
        }
        course.clear();
        for (EdgeEnd at = start; !isWalked[at]; at = next_[at]) {
            isWalked[at] = true;
            course.push_back(at);
        }
        splitIntoRings(course);
    }
}

// Whenever the course comes back to a place, what it walked since is a ring.
void FaceTrace::splitIntoRings(const std::vector<EdgeEnd>& course) {
    std::vector<std::uint32_t> numbers;
    std::vector<EdgeEnd> walked;
    const auto closeRing = [&](std::size_t from) {
        const auto first = walked.begin() + static_cast<std::ptrdiff_t>(from);
        std::for_each(first, walked.end(), [&](EdgeEnd halfEdge) { onRing_[network_.placeOf(halfEdge)] = 0; });
        numbers.push_back(static_cast<std::uint32_t>(rings_.size()));
        addRing({first, walked.end()});
        walked.erase(first, walked.end());
    };
    for (const EdgeEnd halfEdge : course) {
        std::size_t& passed = onRing_[network_.placeOf(halfEdge)];
        if (passed != 0) {
            closeRing(passed - 1);
        }
        walked.push_back(halfEdge);
        passed = walked.size();
    }
    closeRing(0);
    courses_.append(numbers);
}

void FaceTrace::addRing(std::vector<EdgeEnd> ring) {
    std::ranges::rotate(ring, std::ranges::min_element(ring));
    rings_.append(ring);
}

void FaceTrace::findParts() {
    parts_.resize(network_.placeCount());
    std::iota(parts_.begin(), parts_.end(), 0U);
    for (EdgeEnd start = 0; start < halfEdgeCount(); start += 2) {
        if (isUsed_[edgeOf(start)]) {
            const std::uint32_t from = rootOf(parts_, network_.placeOf(start));
            const std::uint32_t to = rootOf(parts_, network_.placeOf(otherEnd(start)));
            parts_[std::max(from, to)] = std::min(from, to);
        }
    }
    for (std::uint32_t place = 0; place < parts_.size(); ++place) {
        parts_[place] = parts_[parts_[place]]; // smaller ones are settled
    }
}

std::uint32_t FaceTrace::partOf(std::size_t ring) const {
    return parts_[network_.placeOf(rings_[ring].front())];
}

} // namespace qz
