#include "platform/store/ogr/StorableCheck.h"

#include <cmath>
#include <limits>
#include <memory>

#include <cpl_conv.h>
#include <cpl_string.h>
#include <fmt/format.h>

namespace qz {

namespace {

// Object ids are 32-bit numbers where users see them.
constexpr ObjectId largestId = std::numeric_limits<std::int32_t>::max();

class RowRefusal {
public:
    RowRefusal(const Schema& schema, const FormatRules& rules, ObjectId id)
        : prefix_(fmt::format("The row {} can't be stored in {} ({}): ", id, schema.name, rules.capabilities.format)) {}

    void unless(bool holds, const std::string& why) const {
        if (!holds) {
            throw PlatformError(prefix_ + why + ".");
        }
    }

private:
    std::string prefix_;
};

std::size_t partCount(const Geometry& shape) {
    if (const auto* polyline = shape.getIf<Polyline>()) {
        return polyline->paths.size();
    }
    std::size_t exteriorRings = 0;
    if (const auto* polygon = shape.getIf<Polygon>()) {
        for (const Path& ring : polygon->rings) {
            double doubledArea = 0;
            const auto xy = ring.xy();
            for (std::size_t i = 0; i + 1 < xy.size(); ++i) {
                doubledArea += (xy[i + 1].x - xy[i].x) * (xy[i + 1].y + xy[i].y - 2 * xy[0].y);
            }
            exteriorRings += doubledArea > 0 ? 1 : 0;
        }
    }
    return exteriorRings;
}

// What the heights and measures of a shape are, arcs' middle points included.
struct CoordinateFindings {
    bool finite = true; // x and y; z and m where they are defined
    bool definedZ = false;
    bool undefinedZ = false;
    bool definedM = false;
    bool undefinedM = false;
    Vertex firstNotFinite;
};

bool definedButNotFinite(double value) {
    return std::isinf(value);
}

CoordinateFindings findingsOf(const Geometry& shape) {
    CoordinateFindings findings;
    const bool zAware = shape.traits().zAware;
    const bool mAware = shape.traits().mAware;
    Geometry copy = shape;
    transformVertices(copy, [&](Vertex& vertex) {
        const bool finite = isFinite(vertex.xy()) && !(zAware && definedButNotFinite(vertex.z)) &&
                            !(mAware && definedButNotFinite(vertex.m));
        if (!finite && findings.finite) {
            findings.finite = false;
            findings.firstNotFinite = vertex;
        }
        const bool hasZ = zAware && !std::isnan(vertex.z);
        const bool hasM = mAware && !std::isnan(vertex.m);
        findings.definedZ |= hasZ;
        findings.undefinedZ |= !hasZ;
        findings.definedM |= hasM;
        findings.undefinedM |= !hasM;
    });
    return findings;
}

bool arcMiddlesHaveZm(const Geometry& shape) {
    const auto found = [&](const std::vector<Path>& paths) {
        for (const Path& path : paths) {
            for (const ArcSegment& arc : path.arcs()) {
                if ((shape.traits().zAware && !std::isnan(arc.middle.z)) ||
                    (shape.traits().mAware && !std::isnan(arc.middle.m))) {
                    return true;
                }
            }
        }
        return false;
    };
    if (const auto* polyline = shape.getIf<Polyline>()) {
        return found(polyline->paths);
    }
    const auto* polygon = shape.getIf<Polygon>();
    return polygon != nullptr && found(polygon->rings);
}

void checkCoordinates(const ShapeDefinition& definition, const FormatRules& rules, const Geometry& shape,
                      const RowRefusal& refuse) {
    const CoordinateFindings found = findingsOf(shape);
    const Vertex& bad = found.firstNotFinite;
    refuse.unless(found.finite,
                  fmt::format("the coordinate ({}, {}, {}, {}) is not finite", bad.x, bad.y, bad.z, bad.m));
    if (!definition.kind) {
        return;
    }
    refuse.unless(definition.hasZ || !found.definedZ, "the layer holds no heights (z), and the shape has some");
    refuse.unless(definition.hasM || !found.definedM, "the layer holds no measures (m), and the shape has some");
    refuse.unless(!definition.hasZ || rules.holdsUndefinedZ || !found.undefinedZ,
                  "the format holds no undefined heights (z), and the shape has some");
    refuse.unless(!definition.hasM || rules.capabilities.undefinedM || !found.undefinedM,
                  "the format holds no undefined measures (m), and the shape has some");
}

void checkShape(const ShapeDefinition& definition, const FormatRules& rules, const Geometry& shape,
                const RowRefusal& refuse) {
    refuse.unless(!definition.kind || *definition.kind == shape.kind(),
                  fmt::format("it is a {}, the layer holds shapes of the kind {}", nameOf(shape.kind()),
                              definition.kind ? nameOf(*definition.kind) : ""));
    if (shape.isEmpty()) {
        refuse.unless(definition.allowsEmpty, "the shape is empty, which the format can't tell from a null shape");
        return;
    }
    refuse.unless(definition.allowsMultipart || partCount(shape) <= 1,
                  fmt::format("the shape has {} parts, the layer holds shapes of one part", partCount(shape)));
    refuse.unless(definition.allowsArcs || !hasArcs(shape), "the layer holds no arcs, and the shape has some");
    refuse.unless(rules.keepsArcMiddleZm || !arcMiddlesHaveZm(shape),
                  "the format loses heights and measures of the middle of an arc");
    checkCoordinates(definition, rules, shape, refuse);
}

std::string encodingOf(OGRLayer& layer) {
    const char* encoding = layer.GetMetadataItem("SOURCE_ENCODING", "SHAPEFILE");
    return encoding == nullptr ? "" : encoding;
}

std::string recoded(const std::string& text, const std::string& from, const std::string& to) {
    const QuietErrors errors;
    const std::unique_ptr<char, decltype(&VSIFree)> result(CPLRecode(text.c_str(), from.c_str(), to.c_str()), VSIFree);
    return result.get();
}

bool isAscii(const std::string& text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

void checkBytes(const Field& field, const std::string& text, OGRLayer& layer, const RowRefusal& refuse) {
    std::string stored = text;
    if (!isAscii(text)) {
        const std::string encoding = encodingOf(layer);
        if (!encoding.empty() && encoding != CPL_ENC_UTF8) {
            stored = recoded(text, CPL_ENC_UTF8, encoding);
            refuse.unless(recoded(stored, encoding, CPL_ENC_UTF8) == text,
                          fmt::format("the text \"{}\" of the field {} can't be written in the encoding {}", text,
                                      field.name, encoding));
        }
    }
    refuse.unless(field.length <= 0 || std::cmp_less_equal(stored.size(), field.length),
                  fmt::format("the text \"{}\" takes {} bytes, the field {} holds {}", text, stored.size(), field.name,
                              field.length));
    refuse.unless(text.find('\0') == std::string::npos,
                  fmt::format("the text of the field {} has a zero byte", field.name));
}

void checkValue(const Field& field, const Value& value, const FormatRules& rules, OGRLayer& layer,
                const RowRefusal& refuse) {
    if (isNull(value)) {
        refuse.unless(!field.refusesNull, fmt::format("the field {} must have a value", field.name));
        return;
    }
    if (const auto* text = std::get_if<std::string>(&value); text != nullptr && rules.textWidthInBytes) {
        checkBytes(field, *text, layer, refuse);
    }
}

} // namespace

void checkStorable(const Schema& schema, const FormatRules& rules, OGRLayer& layer, const FeatureRecord& record) {
    const RowRefusal refuse(schema, rules, record.id);
    refuse.unless(record.id >= 0 && record.id <= largestId, fmt::format("object ids end at {}", largestId));
    if (record.shape) {
        refuse.unless(schema.shape.has_value(), "the table has no shapes");
        checkShape(*schema.shape, rules, *record.shape, refuse);
    }
    for (std::size_t i = schema.shapeField ? 2 : 1; i < record.values.size(); ++i) {
        checkValue(schema.fields[i], record.values[i], rules, layer, refuse);
    }
}

} // namespace qz
