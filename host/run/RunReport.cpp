#include "host/run/RunReport.h"

#include <cmath>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "platform/geometry/WellKnown.h"

namespace qz {

namespace {

using Json = nlohmann::ordered_json;

Json number(double value) {
    return std::isfinite(value) ? Json(value) : Json(nullptr);
}

// The double with the fewest digits that is this single: 0.1, not 0.10000000149.
Json shortest(float value) {
    return std::isfinite(value) ? Json::parse(fmt::format("{}", value)) : Json(nullptr);
}

Json json(const Value& value) {
    return std::visit(
        [&value](const auto& content) -> Json {
            using Content = std::decay_t<decltype(content)>;
            if constexpr (std::is_same_v<Content, std::monostate>) {
                return nullptr;
            } else if constexpr (std::is_same_v<Content, float>) {
                return shortest(content);
            } else if constexpr (std::is_same_v<Content, double>) {
                return number(content);
            } else if constexpr (std::is_integral_v<Content> || std::is_same_v<Content, std::string>) {
                return content;
            } else {
                return toText(value);
            }
        },
        value);
}

Json json(const Envelope& envelope) {
    if (envelope.isEmpty()) {
        return nullptr;
    }
    return Json::array({envelope.xMin, envelope.yMin, envelope.xMax, envelope.yMax});
}

Json json(const Dictionary& dictionary) {
    Json object = Json::object();
    for (const Value& key : dictionary.keys()) {
        object[toText(key)] = json(*dictionary.find(key));
    }
    return object;
}

template <typename Content>
concept Shape = std::is_same_v<Content, Point> || std::is_base_of_v<Multipoint, Content> ||
    std::is_same_v<Content, Polyline> || std::is_same_v<Content, Polygon> || std::is_same_v<Content, Geometry> ||
    std::is_same_v<Content, GeometryCollection>;

Json json(const Argument& argument) {
    return std::visit(
        [](const auto& content) -> Json {
            using Content = std::decay_t<decltype(content)>;
            if constexpr (Shape<Content>) {
                return toWkt(content);
            } else if constexpr (std::is_same_v<Content, double>) {
                return number(content);
            } else if constexpr (std::is_arithmetic_v<Content> || std::is_same_v<Content, std::string>) {
                return content;
            } else if constexpr (std::is_same_v<Content, Envelope> || std::is_same_v<Content, Dictionary>) {
                return json(content);
            } else if constexpr (std::is_same_v<Content, SpatialReference>) {
                return content.text();
            } else {
                return nullptr;
            }
        },
        argument);
}

Json json(const Result& result) {
    return std::visit(
        [](const auto& content) -> Json {
            using Content = std::decay_t<decltype(content)>;
            if constexpr (std::is_same_v<Content, std::monostate>) {
                return nullptr;
            } else if constexpr (Shape<Content>) {
                return toWkt(content);
            } else {
                return content;
            }
        },
        result);
}

Json values(const FeatureRecord& record, const Schema& schema) {
    Json object = Json::object();
    for (std::size_t field = 0; field < schema.fields.size(); ++field) {
        if (field != schema.objectIdField && field != schema.shapeField) {
            object[schema.fields[field].name] = json(record.values[field]);
        }
    }
    return object;
}

Json rows(const std::vector<RecordPtr>& records, const Schema* schema) {
    Json list = Json::array();
    for (const RecordPtr& record : records) {
        list.push_back({{"id", record->id},
                        {"wkt", record->shape ? Json(toWkt(*record->shape)) : Json(nullptr)},
                        {"values", values(*record, *schema)}});
    }
    return list;
}

Json graphics(const std::vector<GraphicElement>& elements) {
    Json list = Json::array();
    for (const GraphicElement& element : elements) {
        list.push_back({{"name", element.name}, {"kind", nameOf(element.kind)}, {"wkt", toWkt(element.geometry)}});
    }
    return list;
}

Json drawings(const std::vector<Drawing>& painted) {
    Json list = Json::array();
    for (const Drawing& drawing : painted) {
        list.push_back({{"kind", drawing.kind}, {"wkt", toWkt(drawing.geometry)}});
    }
    return list;
}

Json parameters(const std::vector<std::pair<std::string, Argument>>& named) {
    Json object = Json::object();
    for (const auto& [name, argument] : named) {
        object[name] = json(argument);
    }
    return object;
}

} // namespace

bool RunReport::succeeded() const noexcept {
    if (interrupted || !refusal.empty()) {
        return false;
    }
    const bool* flag = std::get_if<bool>(&result);
    return flag ? *flag : !std::holds_alternative<std::monostate>(result);
}

nlohmann::ordered_json toJson(const RunReport& report) {
    Json object{{"method", report.method}, {"result", json(report.result)}};
    if (const auto* nodes = std::get_if<NodePoints>(&report.result)) {
        object["ids"] = nodes->ids;
    }
    object.update({{"parameters", parameters(report.parameters)},
                   {"messages", report.messages},
                   {"inserted", rows(report.changes.inserted, report.schema)},
                   {"updated", rows(report.changes.updated, report.schema)},
                   {"deleted", report.changes.deleted},
                   {"graphics", graphics(report.graphics)},
                   {"drawings", drawings(report.drawings)},
                   {"refresh", {{"count", report.refreshCount}, {"extent", json(report.refreshExtent)}}},
                   {"progress",
                    {{"maximum", report.progress.maximum},
                     {"step", report.progress.step},
                     {"positions", report.progress.positions},
                     {"text", report.progress.text}}},
                   {"saved", report.saved},
                   {"seconds", report.seconds}});
    return object;
}

} // namespace qz
