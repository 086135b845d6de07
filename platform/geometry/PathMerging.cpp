#include "platform/geometry/PathMerging.h"

#include <algorithm>
#include <deque>
#include <optional>
#include <unordered_map>

#include "platform/geometry/XYHash.h"

namespace qz {

namespace {

struct PathEnd {
    std::size_t path = 0;
    bool isStart = true;
};

class PathMerger {
public:
    explicit PathMerger(std::vector<Path> paths) : paths_(std::move(paths)), isUsed_(paths_.size(), false) {
        for (std::size_t i = 0; i < paths_.size(); ++i) {
            ends_[paths_[i].xy().front()].push_back({i, true});
            ends_[paths_[i].xy().back()].push_back({i, false});
        }
    }

    std::vector<Path> run() {
        std::vector<Path> merged;
        for (std::size_t i = 0; i < paths_.size(); ++i) {
            if (!isUsed_[i]) {
                merged.push_back(chainThrough(i));
            }
        }
        return merged;
    }

private:
    struct Link {
        std::size_t path = 0;
        bool isReversed = false;
    };

    // The other end at a place where exactly two meet, not yet part of a result.
    [[nodiscard]] std::optional<PathEnd> partner(XY place) const {
        const std::vector<PathEnd>& here = ends_.at(place);
        if (here.size() != 2) {
            return std::nullopt;
        }
        for (const PathEnd& end : here) {
            if (!isUsed_[end.path]) {
                return end;
            }
        }
        return std::nullopt;
    }

    Path chainThrough(std::size_t first) {
        std::deque<Link> chain{{first, false}};
        isUsed_[first] = true;
        for (XY place = paths_[first].xy().back(); const auto next = partner(place);) {
            chain.push_back({next->path, !next->isStart});
            isUsed_[next->path] = true;
            place = next->isStart ? paths_[next->path].xy().back() : paths_[next->path].xy().front();
        }
        for (XY place = paths_[first].xy().front(); const auto next = partner(place);) {
            chain.push_front({next->path, next->isStart});
            isUsed_[next->path] = true;
            place = next->isStart ? paths_[next->path].xy().back() : paths_[next->path].xy().front();
        }
        return joined(chain);
    }

    Path joined(const std::deque<Link>& chain) {
        Path result;
        for (const Link& link : chain) {
            Path& path = paths_[link.path];
            if (link.isReversed) {
                path.reverse();
            }
            if (result.isEmpty()) {
                result = std::move(path);
            } else {
                result.append(path);
            }
        }
        return result;
    }

    std::vector<Path> paths_;
    std::vector<bool> isUsed_;
    std::unordered_map<XY, std::vector<PathEnd>, XYHash> ends_;
};

} // namespace

std::vector<Path> mergedPaths(std::vector<Path> paths) {
    std::erase_if(paths, [](const Path& path) { return path.isEmpty(); });
    return PathMerger(std::move(paths)).run();
}

} // namespace qz
