#include "platform/topology/ClusterNoding.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <tuple>

#include <fmt/format.h>

#include "platform/Error.h"
#include "platform/geometry/Orientation.h"
#include "platform/geometry/SegmentChains.h"
#include "platform/geometry/SegmentIntersection.h"
#include "platform/geometry/Vectors.h"
#include "platform/topology/ClusterCentres.h"
#include "platform/topology/NumberSort.h"

namespace qz {

namespace {

// A segment in the direction in which tests are made, so that both copies of one that two paths share get the same
// answers bit for bit.
struct Piece {
    XY a;
    XY b;

    Piece(XY from, XY to) : a(precedes(to, from) ? to : from), b(precedes(to, from) ? from : to) {}
    [[nodiscard]] bool endsAt(XY p) const { return p == a || p == b; }
    [[nodiscard]] double squaredLength() const { return dot(b - a, b - a); }
    // Whether both parts of the piece are shorter than it when it is led through p.
    [[nodiscard]] bool isShortenedBy(XY p) const {
        const double whole = squaredLength();
        return dot(p - a, p - a) < whole && dot(b - p, b - p) < whole;
    }
    [[nodiscard]] double ratioOf(XY p) const { return dot(p - a, b - a) / squaredLength(); }
    friend bool operator==(const Piece&, const Piece&) = default;
};

bool passes(const Piece& piece, XY p, double tolerance) {
    const XY along = piece.b - piece.a, offset = p - piece.a;
    const double whole = piece.squaredLength(), part = dot(offset, along), area = cross(along, offset);
    return part > 0 && part < whole && area * area <= tolerance * tolerance * whole && piece.isShortenedBy(p);
}

bool areApart(const Piece& piece, XY p, XY q) {
    return areOpposite(turn(piece.a, piece.b, p), turn(piece.a, piece.b, q));
}

// Inside of both. Those that share an end don't, and would be the slowest to tell.
bool cross(const Piece& s, const Piece& t) {
    return !s.endsAt(t.a) && !s.endsAt(t.b) && areApart(s, t.a, t.b) && areApart(t, s.a, s.b);
}

struct SegmentOf {
    std::size_t path = 0;
    std::size_t segment = 0;

    friend auto operator<=>(const SegmentOf&, const SegmentOf&) = default;
};

// A vertex that a segment is to be led through.
struct Split {
    SegmentOf at;
    double ratio = 0; // along the path
    XY place;

    friend bool operator==(const Split&, const Split&) = default;
};

bool comesBefore(const Split& a, const Split& b) {
    if (a.at != b.at) {
        return a.at < b.at;
    }
    return a.ratio != b.ratio ? a.ratio < b.ratio : precedes(a.place, b.place);
}

struct Crossing {
    std::array<SegmentOf, 2> segments;
    XY place;
};

// Rounds of splitting end: a segment is only ever replaced by shorter ones, between places of a finite set - vertices,
// and crossings, which are new places only where no other is within the tolerance, in an area that doesn't grow, or
// where coordinates, of which there are finitely many, give no other choice. So the descending list of all lengths
// gets smaller with each split, in an order without infinite descent.
class ClusterNoder {
public:
    ClusterNoder(std::vector<Path> paths, double tolerance)
        : paths_(std::move(paths)), tolerance_(tolerance), centres_(tolerance) {}

    std::vector<Path> run(const std::vector<XY>& first) {
        std::ranges::for_each(first, [this](XY place) { centreOf(place); });
        for (Path& path : paths_) {
            path = clustered(path);
        }
        isOpen_.assign(paths_.size(), true);
        while (round()) {
        }
        return std::move(paths_);
    }

private:
    // Every vertex at the centre it belongs to, each once in a row. Empty when it is one place.
    Path clustered(const Path& path) {
        Path result;
        result.reserve(path.vertexCount());
        for (std::size_t i = 0; i < path.vertexCount(); ++i) {
            Vertex vertex = path.vertex(i);
            const XY centre = centreOf(vertex.xy());
            vertex.x = centre.x;
            vertex.y = centre.y;
            if (result.isEmpty() || !(result.xy().back() == centre)) {
                result.addVertex(vertex);
            }
        }
        return result.vertexCount() > 1 ? result : Path();
    }

    XY centreOf(XY p) {
        if (const auto centre = centres_.nearest(p)) {
            return *centre;
        }
        centres_.add(p);
        return p;
    }

    [[nodiscard]] Piece pieceAt(const SegmentOf& at) const {
        const std::span<const XY> xy = paths_[at.path].xy();
        return {xy[at.segment], xy[at.segment + 1]};
    }

    // False when nothing was split. Only what the round before changed is looked at, with all that is near it.
    bool round() {
        splits_.clear();
        crossings_.clear();
        std::vector<const Path*> paths;
        std::vector<std::size_t> numbers;
        for (std::size_t i = 0; i < paths_.size(); ++i) {
            if (!paths_[i].isEmpty()) {
                paths.push_back(&paths_[i]);
                numbers.push_back(i);
            }
        }
        const SegmentChains chains(paths);
        const auto isOpen = [&](std::size_t path) { return isOpen_[numbers[path]]; };
        chains.forEachClosePair(tolerance_, isOpen, [&](const SegmentChain& s, const SegmentChain& t) {
            see({numbers[s.path], s.first}, {numbers[t.path], t.first});
            return true;
        });
        sortSplits();
        addCrossings();
        return apply();
    }

    void see(const SegmentOf& s, const SegmentOf& t) {
        const Piece one = pieceAt(s), other = pieceAt(t);
        if (one == other) {
            return;
        }
        const bool met = leadThroughEnds(s, one, other) | leadThroughEnds(t, other, one);
        if (!met && cross(one, other)) {
            crossings_.push_back({{s, t}, crossingOf(one, other)});
        }
    }

    bool leadThroughEnds(const SegmentOf& at, const Piece& piece, const Piece& other) {
        bool any = false;
        for (const XY end : {other.a, other.b}) {
            if (!piece.endsAt(end) && passes(piece, end, tolerance_)) {
                addSplit(at, piece, end);
                any = true;
            }
        }
        return any;
    }

    void addSplit(const SegmentOf& at, const Piece& piece, XY place) {
        const double ratio = piece.ratioOf(place);
        const bool isTurned = !(paths_[at.path].xy()[at.segment] == piece.a);
        splits_.push_back({at, isTurned ? 1 - ratio : ratio, place});
    }

    static XY crossingOf(const Piece& s, const Piece& t) {
        Contacts contacts;
        findContacts({s.a, s.b}, {t.a, t.b}, {}, contacts);
        return contacts.points.empty() ? s.a : contacts.points.front().position;
    }

    void sortSplits() {
        const auto pathOf = [](const Split& split) { return split.at.path; };
        splits_ = sortedByNumber(std::span<const Split>(splits_), paths_.size(), pathOf);
        for (auto first = splits_.begin(); first != splits_.end();) {
            const auto last = endOfPath(first);
            std::sort(first, last, [](const Split& a, const Split& b) { return comesBefore(a, b); });
            first = last;
        }
        const auto twice = std::ranges::unique(splits_);
        splits_.erase(twice.begin(), twice.end());
    }

    // The end of the splits of one path.
    [[nodiscard]] std::vector<Split>::iterator endOfPath(std::vector<Split>::iterator first) {
        return std::find_if(first, splits_.end(), [&](const Split& split) { return split.at.path != first->at.path; });
    }

    [[nodiscard]] bool isSplit(const SegmentOf& at) const {
        const auto found = std::ranges::lower_bound(splits_, at, {}, &Split::at);
        return found != splits_.end() && found->at == at;
    }

    // Those of segments that no vertex comes near. Crossings that two copies of a segment have are one place.
    void addCrossings() {
        std::erase_if(crossings_, [this](const Crossing& crossing) {
            return isSplit(crossing.segments[0]) || isSplit(crossing.segments[1]);
        });
        PlaceNumbers known;
        std::vector<XY> centres;
        for (const Crossing& crossing : crossings_) {
            const std::size_t number = known.add(crossing.place);
            if (number == centres.size()) {
                centres.push_back(nodeFor(crossing));
            }
            for (const SegmentOf& at : crossing.segments) {
                const Piece piece = pieceAt(at);
                if (!piece.endsAt(centres[number]) && piece.isShortenedBy(centres[number])) {
                    addSplit(at, piece, centres[number]);
                }
            }
        }
        if (!crossings_.empty()) {
            sortSplits();
        }
    }

    // A centre within the tolerance, else the nearest of the four ends, of those through which both can be led; else
    // the crossing itself.
    XY nodeFor(const Crossing& crossing) {
        const Piece s = pieceAt(crossing.segments[0]), t = pieceAt(crossing.segments[1]);
        const auto fits = [&](XY place) {
            return (s.endsAt(place) || s.isShortenedBy(place)) && (t.endsAt(place) || t.isShortenedBy(place));
        };
        const auto centre = centres_.nearest(crossing.place);
        if (centre && fits(*centre)) {
            return *centre;
        }
        if (centre) {
            std::array<XY, 4> ends{s.a, s.b, t.a, t.b};
            std::ranges::sort(ends, {}, [&](XY end) { return dot(end - crossing.place, end - crossing.place); });
            const auto end = std::ranges::find_if(ends, fits);
            if (end != ends.end() && dot(*end - crossing.place, *end - crossing.place) <= 4 * tolerance_ * tolerance_) {
                return *end;
            }
        }
        centres_.add(crossing.place);
        return crossing.place;
    }

    bool apply() {
        isOpen_.assign(paths_.size(), false);
        for (auto first = splits_.begin(); first != splits_.end();) {
            const std::size_t path = first->at.path;
            const auto last = endOfPath(first);
            paths_[path] = split(paths_[path], {first, last});
            isOpen_[path] = true;
            first = last;
        }
        return !splits_.empty();
    }

    static Path split(const Path& path, std::span<const Split> splits) {
        Path result;
        result.reserve(path.vertexCount() + splits.size());
        auto next = splits.begin();
        for (std::size_t i = 0; i < path.vertexCount(); ++i) {
            result.addVertex(path.vertex(i));
            const auto end = std::find_if(next, splits.end(), [&](const Split& s) { return s.at.segment != i; });
            for (const Split& split : allShortened(path, {next, end})) {
                result.addVertex(vertexAt(path, split));
            }
            next = end;
        }
        return result;
    }

    // Of several vertices in one segment all, if each stretch between them is shorter than the segment; else the one
    // nearest to it.
    static std::span<const Split> allShortened(const Path& path, std::span<const Split> splits) {
        if (splits.size() < 2) {
            return splits;
        }
        const Piece whole(path.xy()[splits.front().at.segment], path.xy()[splits.front().at.segment + 1]);
        const auto isLong = [&](const Split& a, const Split& b) {
            return a.place == b.place || !(dot(b.place - a.place, b.place - a.place) < whole.squaredLength());
        };
        if (std::ranges::adjacent_find(splits, isLong) == splits.end()) {
            return splits;
        }
        const auto nearest = std::ranges::min_element(splits, {}, [&](const Split& split) {
            return std::tuple(std::abs(qz::cross(whole.b - whole.a, split.place - whole.a)), split.place.x,
                              split.place.y);
        });
        return {nearest, 1};
    }

    static Vertex vertexAt(const Path& path, const Split& split) {
        const Vertex from = path.vertex(split.at.segment), to = path.vertex(split.at.segment + 1);
        return {split.place.x, split.place.y, std::lerp(from.z, to.z, split.ratio),
                std::lerp(from.m, to.m, split.ratio)};
    }

    std::vector<Path> paths_;
    double tolerance_;
    ClusterCentres centres_;
    std::vector<bool> isOpen_; // changed in the round before
    std::vector<Split> splits_;
    std::vector<Crossing> crossings_;
};

// Some units in the last place of the largest coordinate.
double leastTolerance(const std::vector<Path>& paths) {
    double largest = 0;
    for (const Path& path : paths) {
        for (const XY p : path.xy()) {
            largest = std::max({largest, std::abs(p.x), std::abs(p.y)});
        }
    }
    return std::max(8 * std::numeric_limits<double>::epsilon() * largest, std::numeric_limits<double>::min());
}

} // namespace

std::vector<Path> clusterNoded(std::vector<Path> paths, double tolerance, const std::vector<XY>& first) {
    if (!(tolerance >= 0) || !std::isfinite(tolerance)) {
        throw PlatformError(fmt::format("The cluster tolerance must be 0 or more, and it is {}.", tolerance));
    }
    const double usable = std::max(tolerance, leastTolerance(paths));
    return ClusterNoder(std::move(paths), usable).run(first);
}

} // namespace qz
