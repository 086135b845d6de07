#include "polygon/QZUpdateShared.h"

#include <charconv>
#include <cmath>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <fmt/format.h>

#include "common/ErrorExit.h"
#include "common/FeatureShapes.h"
#include "common/InReference.h"
#include "common/NumberText.h"
#include "platform/Error.h"

namespace qz {

namespace {

enum class Step { point = 1, shapes = 2, store = 3 };

Vertex movedTo(XY place, Vertex vertex) {
    vertex.x = place.x;
    vertex.y = place.y;
    return vertex;
}

void moveEnds(Polyline& line, const std::string& ends, XY place) {
    const bool movesStart = ends == "f" || ends == "ft";
    const bool movesEnd = ends == "t" || ends == "ft";
    if (!movesStart && !movesEnd) {
        throw PlatformError(fmt::format("\"{}\" doesn't tell the ends of a line: it should be f, t or ft", ends));
    }
    Path& first = line.paths.front();
    Path& last = line.paths.back();
    const Vertex moved = movedTo(place, movesStart ? first.front() : last.back());
    if (movesStart) {
        first.setVertex(0, moved);
    }
    if (movesEnd) {
        last.setVertex(last.vertexCount() - 1, moved);
    }
}

struct RingPlace {
    std::size_t ring = 0;
    std::size_t vertex = 0;
};

std::optional<std::size_t> indexIn(std::string_view digits) {
    std::size_t index = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), index);
    const bool isWhole = error == std::errc() && end == digits.data() + digits.size();
    return isWhole ? std::optional(index) : std::nullopt;
}

RingPlace ringPlaceOf(const std::string& text) {
    const std::size_t bar = text.find('|');
    const auto ring = indexIn(std::string_view(text).substr(0, bar));
    const auto vertex = bar == std::string::npos ? std::nullopt : indexIn(std::string_view(text).substr(bar + 1));
    if (!ring || !vertex) {
        throw PlatformError(fmt::format("\"{}\" doesn't tell a vertex: it should be ring|vertex, as 0|3", text));
    }
    return {*ring, *vertex};
}

void moveVertex(Path& ring, std::size_t index, XY place) {
    const std::size_t last = ring.vertexCount() - 1;
    const Vertex moved = movedTo(place, ring.vertex(index));
    const bool closes = ring.isClosed() && (index == 0 || index == last);
    // In one go, so that a full circle isn't broken up.
    std::size_t visited = 0;
    ring.transform([&](Vertex& vertex) {
        if (visited == index || (closes && (visited == 0 || visited == last))) {
            vertex = moved;
        }
        ++visited;
    });
}

void moveRingVertex(Polygon& polygon, const std::string& item, XY place) {
    const RingPlace at = ringPlaceOf(item);
    if (at.ring >= polygon.rings.size()) {
        throw PlatformError(fmt::format("There is no ring {}: the polygon has {}", at.ring, polygon.rings.size()));
    }
    Path& ring = polygon.rings[at.ring];
    if (at.vertex >= ring.vertexCount()) {
        throw PlatformError(
            fmt::format("There is no vertex {}: ring {} has {}", at.vertex, at.ring, ring.vertexCount()));
    }
    moveVertex(ring, at.vertex, place);
}

FeaturePtr featureNamed(const Value& key, FeatureClass& featureClass) {
    constexpr double endOfExactIntegers = 0x1p53;
    const double number = toDouble(key);
    const bool isId = std::abs(number) < endOfExactIntegers && number == std::floor(number);
    FeaturePtr feature = isId ? featureClass.feature(static_cast<ObjectId>(number)) : nullptr;
    if (!hasShape(feature.get())) {
        throw PlatformError("There is no such feature with a shape");
    }
    return feature;
}

// Calls `move(shape, item, place)` for the shape of every feature, and then stores them all.
template <typename Shape, typename Move>
void moveShared(FeatureClass& featureClass, const Point& point, const Dictionary& dictionary, Step& step, Move move) {
    if (point.isEmpty()) {
        throw PlatformError("The new place is an empty point.");
    }
    const XY place = inReference(point, featureClass.spatialReference()).vertex.xy();
    step = Step::shapes;
    std::vector<FeaturePtr> features;
    for (const Value& key : dictionary.keys()) {
        try {
            const FeaturePtr feature = featureNamed(key, featureClass);
            Shape shape = feature->shape()->template as<Shape>();
            move(shape, toText(*dictionary.find(key)), place);
            feature->setShape(std::move(shape));
            features.push_back(feature);
        } catch (const PlatformError& error) {
            throw PlatformError(
                fmt::format("Feature {} of {}: {}.", toText(key), featureClass.schema().name, error.what()));
        }
    }
    step = Step::store;
    for (const FeaturePtr& feature : features) {
        feature->store();
    }
}

} // namespace

bool QZ_UpdateShared(FeatureClass& featureClass, const Point& point, const Dictionary& dictionary) {
    return withSteppedExit(" QZ_UpdateShared w= ", Step::point, false, [&](Step& step) {
        moveShared<Polyline>(featureClass, point, dictionary, step, moveEnds);
        return true;
    });
}

bool QZ_UpdateSharedPolygon(FeatureClass& featureClass, const Point& point, const Dictionary& dictionary) {
    return withSteppedExit(" QZ_UpdateSharedPolygon w= ", Step::point, false, [&](Step& step) {
        moveShared<Polygon>(featureClass, point, dictionary, step, moveRingVertex);
        return true;
    });
}

} // namespace qz
