#include "cogo/QZCogoInverse.h"

#include <cmath>
#include <numbers>
#include <utility>
#include <vector>

#include <fmt/format.h>

#include "cogo/QZDirections.h"
#include "common/CursorWalk.h"
#include "common/ErrorExit.h"
#include "common/QZPlane.h"
#include "common/SegmentPath.h"
#include "platform/app/Services.h"
#include "platform/geometry/Measures.h"

namespace qz {

namespace {

using NamedValues = std::vector<std::pair<const char*, Value>>;

double degrees(double radians) {
    return radians * 180 / std::numbers::pi;
}

bool isKnown(const DirectionFormat& format) {
    return !QZ_FormatDirection(0, format.type, format.unit, format.decimals).empty();
}

Value directionText(double polarDegrees, const DirectionFormat& format) {
    return QZ_FormatDirection(polarDegrees, format.type, format.unit, format.decimals);
}

NamedValues valuesOf(const ArcCogo& arc, const DirectionFormat& format) {
    return {{"Direction", directionText(arc.direction, format)},
            {"Distance", arc.distance},
            {"Delta", arc.delta},
            {"Radius", arc.radius},
            {"Tangent", arc.tangent},
            {"ArcLength", arc.arcLength},
            {"Side", arc.side}};
}

// An arc whose circle can't be told is taken for straight.
NamedValues courseOf(const CurveSegment& segment, double tolerance, const DirectionFormat& format) {
    const auto& circle = segment.circle();
    if (circle && !circle->isFlat()) {
        return valuesOf(QZ_ArcCogo(*circle, segment.start(), segment.end(), tolerance), format);
    }
    return {{"Direction", directionText(QZ_LineAngle(segment.start(), segment.end()), format)},
            {"Distance", segment.length()}};
}

NamedValues endsOf(const CurveSegment& segment) {
    return {{"XStart", segment.start().x},
            {"YStart", segment.start().y},
            {"XEnd", segment.end().x},
            {"YEnd", segment.end().y}};
}

void copyValues(FeatureBuffer& buffer, const Feature& source) {
    const auto& fields = source.schema().fields;
    for (std::size_t i = 0; i < fields.size(); ++i) {
        const Field& field = fields[i];
        if (field.type == FieldType::objectId || field.type == FieldType::geometry || !field.editable) {
            continue;
        }
        if (const auto target = buffer.schema().findField(field.name)) {
            buffer.setValue(*target, source.value(i));
        }
    }
}

// Those that the buffer has fields for.
void setValues(FeatureBuffer& buffer, const NamedValues& values) {
    for (const auto& [name, value] : values) {
        if (const auto field = buffer.schema().findField(name)) {
            buffer.setValue(*field, value);
        }
    }
}

Polyline lineOf(const Path& path, std::size_t segment, const GeometryTraits& traits) {
    Polyline line;
    static_cast<GeometryTraits&>(line) = traits;
    line.paths = {segmentPath(path, segment)};
    return line;
}

class SegmentInsertion {
public:
    SegmentInsertion(FeatureClass& featureClass, const DirectionFormat& format)
        : cursor_(featureClass.insert()), buffer_(featureClass.createBuffer()), format_(format) {}

    // Whether all segments that have a length could be stored.
    bool insertSegmentsOf(const Feature& source, const Polyline& line) {
        bool allStored = true;
        for (const Path& path : line.paths) {
            forEachSegment(path, [&](std::size_t index, const CurveSegment& segment) {
                if (segment.length() > 0) {
                    const Polyline only = lineOf(path, index, line);
                    const bool stored = QZ_InsertInversedFeature(*cursor_, *buffer_, source, only, segment, format_);
                    allStored = allStored && stored;
                }
            });
        }
        return allStored;
    }

private:
    CursorPtr cursor_;
    std::unique_ptr<FeatureBuffer> buffer_;
    const DirectionFormat& format_;
};

} // namespace

double QZ_LineAngle(XY start, XY end) {
    return degrees(std::atan2(end.y - start.y, end.x - start.x));
}

ArcCogo QZ_ArcCogo(const CircularArc& arc, XY start, XY end, double tolerance) {
    const bool isHalfCircle = std::abs(std::abs(arc.sweep) - std::numbers::pi) * arc.radius <= tolerance;
    return {.direction = QZ_LineAngle(start, end),
            .distance = QZ_Distance2D(start.x, start.y, end.x, end.y),
            .delta = degrees(arc.sweep),
            .radius = arc.radius,
            .tangent = isHalfCircle ? 0 : std::tan(arc.sweep / 2) * arc.radius,
            .arcLength = arc.length(),
            .side = arc.sweep > 0 ? "L" : "R"};
}

bool QZ_InsertInversedFeature(FeatureCursor& insertCursor, FeatureBuffer& buffer, const Feature& source,
                              const Geometry& shape, const CurveSegment& segment, const DirectionFormat& format) {
    enum class Step { course = 1, attributes = 2, geometry = 3, values = 4, insert = 5 };
    return withSteppedExit(" QZ_InsertInversedFeature w=", Step::course, false, [&](Step& step) {
        if (shape.kind() != GeometryKind::polyline && shape.kind() != GeometryKind::polygon) {
            showMessage("Incorrect geometry type");
            return false;
        }
        const NamedValues course = courseOf(segment, shape.spatialReference().grid().xyTolerance, format);
        step = Step::attributes;
        copyValues(buffer, source);
        step = Step::geometry;
        buffer.setShape(shape);
        step = Step::values;
        setValues(buffer, course);
        setValues(buffer, endsOf(segment));
        step = Step::insert;
        insertCursor.insert(buffer);
        return true;
    });
}

bool QZ_CogoInverse(Application& application, FeatureLayer& layer, FeatureCursor& cursor, std::int32_t expected,
                    RefreshArea& refresh, const DirectionFormat& format) {
    enum class Step { prepare = 1, walk = 2 };
    return withSteppedExit(" QZ_CogoInverse w=", Step::prepare, false, [&](Step& step) {
        if (!isKnown(format)) {
            showMessage(fmt::format("Directions can't be written as \"{}\" in \"{}\". Types are North Azimuth, South "
                                    "Azimuth, Polar and Quadrant Bearing; units are Radians, Decimal Degrees, Degrees "
                                    "Minutes Seconds, Gradians and Gons.",
                                    format.type, format.unit));
            return false;
        }
        SegmentInsertion insertion(layer.featureClass(), format);
        bool allStored = true;
        step = Step::walk;
        walkShapes(application, cursor, expected, collectingText(layer.featureClass()),
                   [&](Feature& feature, const Geometry& shape) {
                       const Polyline line = shape.as<Polyline>();
                       if (length(line) <= 0) {
                           return;
                       }
                       refresh.add(line);
                       allStored = insertion.insertSegmentsOf(feature, line) && allStored;
                       feature.remove();
                   });
        return allStored;
    });
}

} // namespace qz
