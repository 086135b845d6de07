#include "platform/store/ogr/LayerWalk.h"

#include <cpl_string.h>
#include <fmt/format.h>
#include <fmt/ranges.h>

#include "platform/Error.h"

namespace qz {

namespace {

CPLStringList ignoredFields(OGRLayer& layer, WalkContent content) {
    CPLStringList ignored;
    if (content == WalkContent::nothing || content == WalkContent::attributes) {
        ignored.AddString("OGR_GEOMETRY");
    }
    if (content == WalkContent::nothing || content == WalkContent::shapes) {
        const OGRFeatureDefn& definition = *layer.GetLayerDefn();
        for (int i = 0; i < definition.GetFieldCount(); ++i) {
            ignored.AddString(definition.GetFieldDefn(i)->GetNameRef());
        }
    }
    return ignored;
}

class FilteredWalk {
public:
    FilteredWalk(OGRLayer& layer, WalkContent content) : layer_(layer) {
        if (content != WalkContent::everything) {
            layer_.SetIgnoredFields(const_cast<const char**>(ignoredFields(layer, content).List()));
        }
        layer_.ResetReading();
    }
    ~FilteredWalk() {
        const QuietErrors errors;
        layer_.SetAttributeFilter(nullptr);
        layer_.SetIgnoredFields(nullptr);
        layer_.ResetReading();
    }
    FilteredWalk(const FilteredWalk&) = delete;
    FilteredWalk& operator=(const FilteredWalk&) = delete;

private:
    OGRLayer& layer_;
};

std::string conditionRefused(OGRLayer& layer, const std::string& condition, const QuietErrors& errors) {
    const std::string id = layer.GetFIDColumn();
    std::vector<std::string> fields{id.empty() ? "FID" : id};
    OGRFeatureDefn& definition = *layer.GetLayerDefn();
    for (int i = 0; i < definition.GetFieldCount(); ++i) {
        fields.emplace_back(definition.GetFieldDefn(i)->GetNameRef());
    }
    // SQLite's words don't get through: GDAL only repeats the statement.
    const bool isTold = !errors.text().starts_with("failed to prepare SQL");
    return fmt::format("The condition {} can't be evaluated on {}{}{}; its fields are {}.", condition, layer.GetName(),
                       isTold ? ": " : "", isTold ? errors.text() : "", fmt::join(fields, ", "));
}

} // namespace

void walkLayer(OGRLayer& layer, WalkContent content, const std::string& condition,
               const std::function<void(OGRFeature&)>& row) {
    const QuietErrors errors;
    const FilteredWalk walk(layer, content);
    const bool accepted = condition.empty() || layer.SetAttributeFilter(condition.c_str()) == OGRERR_NONE;
    while (accepted && !errors.any()) {
        const OgrFeaturePtr feature(layer.GetNextFeature());
        if (!feature) {
            break;
        }
        row(*feature);
    }
    if (errors.any() && !condition.empty()) {
        throw UsageError(conditionRefused(layer, condition, errors));
    }
    if (errors.any() || !accepted) {
        throw DataError(fmt::format("The rows of {} can't be read: {}.", layer.GetName(), errors.text()));
    }
}

} // namespace qz
