#include "host/run/HostArguments.h"

#include <algorithm>

#include <fmt/format.h>

#include "common/Numbers.h"
#include "component/ArgumentKinds.h"
#include "host/run/ArgumentReader.h"
#include "host/run/InterruptibleCursor.h"
#include "platform/Error.h"

namespace qz {

namespace {

bool isOneOf(const std::string& name, std::initializer_list<const char*> names) {
    return std::any_of(names.begin(), names.end(), [&](const char* candidate) { return name == candidate; });
}

const std::string* findGiven(const RunRequest& request, const std::string& name) {
    for (const auto& [parameter, text] : request.parameters) {
        if (parameter == name) {
            return &text;
        }
    }
    return nullptr;
}

} // namespace

HostArguments::HostArguments(const MethodInfo& method, const RunRequest& request, HeadlessHost& host, RunLayer data,
                             RunLayer source)
    : method_(method), request_(request), host_(host), data_(std::move(data)), source_(std::move(source)) {
    rejectUnknownParameters();
    for (const ParameterInfo& parameter : method.parameters) {
        const std::string* text = findGiven(request, parameter.name);
        values_.push_back(text ? given(parameter, *text) : supplied(parameter));
        if (isNothing(values_.back()) && (parameter.isRequired() || (text && !parameter.mayBeAbsent))) {
            rejectMissing(parameter);
        }
    }
}

void HostArguments::rejectUnknownParameters() const {
    std::vector<std::string> names;
    for (const ParameterInfo& parameter : method_.parameters) {
        names.push_back(parameter.name);
    }
    for (const auto& [name, text] : request_.parameters) {
        if (!method_.findParameter(name)) {
            throw UsageError(fmt::format("{} has no parameter --{}; did you mean --{}?", method_.name, name,
                                         nearestName(name, names)));
        }
    }
}

void HostArguments::rejectMissing(const ParameterInfo& parameter) const {
    switch (parameter.kind) {
    case ParameterKind::featureCursor:
        throw UsageError(fmt::format("{} needs {}, a {}: name the layer with --data and select features with --fid, "
                                     "--where, --bbox or --all.",
                                     method_.name, parameter.name, nameOf(parameter.kind)));
    case ParameterKind::featureLayer:
    case ParameterKind::featureClass:
    case ParameterKind::featureBuffer:
        throw UsageError(fmt::format("{} needs {}, a {}: name it with {} PATH:LAYER.", method_.name, parameter.name,
                                     nameOf(parameter.kind), parameter.name == "pSourceLayer" ? "--source" : "--data"));
    default:
        throw UsageError(
            fmt::format("{} needs --{}, a value of kind {}.", method_.name, parameter.name, nameOf(parameter.kind)));
    }
}

Argument HostArguments::given(const ParameterInfo& parameter, const std::string& text) {
    if (parameter.kind == ParameterKind::feature) {
        return text == "null" ? Argument() : feature(parameter, text);
    }
    auto value = readArgument(method_, parameter, text, host_.focusMap().spatialReference());
    if (!value) {
        throw UsageError(fmt::format("--{} of {} is a {}, which the host supplies; leave it out.", parameter.name,
                                     method_.name, nameOf(parameter.kind)));
    }
    return std::move(*value);
}

Argument HostArguments::layerOf(const RunLayer& layer) const {
    return layer.layer ? Argument(layer.layer) : Argument();
}

Argument HostArguments::supplied(const ParameterInfo& parameter) {
    switch (parameter.kind) {
    case ParameterKind::featureLayer:
        return layerOf(parameter.name == "pSourceLayer" ? source_ : data_);
    case ParameterKind::featureClass:
        return data_.layer ? Argument(&data_.layer->featureClass()) : Argument();
    case ParameterKind::featureCursor:
        return parameter.name == "pInsertFeatureCursor" ? insertCursor() : selectionCursor(parameter);
    case ParameterKind::featureBuffer:
        return insertBuffer();
    case ParameterKind::feature:
        return data_.selected.empty() ? Argument() : Argument(cursorRow(data_.selected.front()));
    case ParameterKind::polygon:
        return parameter.name == "pPg" ? selectedPolygon() : Argument();
    case ParameterKind::activeView:
        return static_cast<ActiveView*>(&host_.focusMap().activeView());
    case ParameterKind::application:
        return static_cast<Application*>(&host_);
    case ParameterKind::refreshArea:
        return static_cast<RefreshArea*>(&refreshArea_);
    case ParameterKind::display:
        return static_cast<Display*>(&host_.focusMap().activeView().display());
    case ParameterKind::spatialReference:
        return parameter.name == "pMapSRef" || !data_.layer ? host_.focusMap().spatialReference()
                                                            : data_.layer->featureClass().spatialReference();
    default:
        return fallback(parameter);
    }
}

Argument HostArguments::selectedPolygon() {
    if (data_.selected.empty()) {
        return {};
    }
    const FeaturePtr row = cursorRow(data_.selected.front());
    const bool isPolygon = row->shape() && row->shape()->getIf<Polygon>();
    return isPolygon ? Argument(row->shape()->as<Polygon>()) : Argument();
}

// Of the selected features; without a cursor over them `lCount` is that of the graphics.
std::size_t HostArguments::countFor(const ParameterInfo& parameter) const {
    const bool takesFeatures =
        std::ranges::any_of(method_.parameters, [](const auto& p) { return p.kind == ParameterKind::featureCursor; });
    return parameter.name == "lCount" && !takesFeatures ? host_.focusMap().activeView().graphics().elements().size()
                                                        : data_.selected.size();
}

Argument HostArguments::fallback(const ParameterInfo& parameter) {
    if (isOneOf(parameter.name, {"fCount", "lCount"}) && data_.layer && parameter.isRequired()) {
        return toInteger32(static_cast<double>(countFor(parameter)));
    }
    if (parameter.name == "sSourceLayerName" && source_.layer) {
        return source_.layer->name();
    }
    if (parameter.defaultValue) {
        return *parameter.defaultValue;
    }
    const bool isSymbol = parameter.kind == ParameterKind::symbol || parameter.kind == ParameterKind::fillSymbol ||
                          parameter.kind == ParameterKind::arrowMarkerSymbol;
    const bool isNeutral = !parameter.isRequired() && !parameter.mayBeAbsent;
    return isSymbol || isNeutral ? neutralArgument(parameter.kind) : Argument();
}

Argument HostArguments::selectionCursor(const ParameterInfo& parameter) {
    if (!data_.layer || !data_.selectionGiven) {
        return {};
    }
    if (!selectionCursor_) {
        FeatureFilter filter;
        filter.ids = data_.selected;
        FeatureClass& featureClass = data_.layer->featureClass();
        const bool writes = parameter.use == ParameterUse::updateCursor;
        selectionCursor_ =
            std::make_unique<InterruptibleCursor>(writes ? featureClass.update(filter) : featureClass.search(filter));
    }
    return selectionCursor_.get();
}

Argument HostArguments::insertCursor() {
    if (!data_.layer) {
        return {};
    }
    insertCursor_ = data_.layer->featureClass().insert();
    return insertCursor_.get();
}

Argument HostArguments::insertBuffer() {
    if (!data_.layer) {
        return {};
    }
    buffer_ = data_.layer->featureClass().createBuffer();
    return buffer_.get();
}

Argument HostArguments::feature(const ParameterInfo& parameter, const std::string& text) {
    if (!data_.layer) {
        throw UsageError(fmt::format("--{} is a feature of the layer named with --data.", parameter.name));
    }
    const std::vector<ObjectId> ids = readIds(text);
    if (ids.size() != 1) {
        throw UsageError(fmt::format("--{} is one object id, not '{}'.", parameter.name, text));
    }
    return cursorRow(ids.front());
}

// A method that writes a feature through an update cursor needs the cursor to stand on it.
FeaturePtr HostArguments::cursorRow(ObjectId id) {
    const auto cursor = std::find_if(method_.parameters.begin(), method_.parameters.end(),
                                     [](const auto& parameter) { return parameter.use == ParameterUse::updateCursor; });
    FeatureClass& featureClass = data_.layer->featureClass();
    if (cursor != method_.parameters.end() && data_.selectionGiven) {
        static_cast<void>(selectionCursor(*cursor));
        while (FeaturePtr row = selectionCursor_->next()) {
            if (row->objectId() == id) {
                return row;
            }
        }
        throw UsageError(fmt::format("The feature {} is not among those selected.", id));
    }
    FeaturePtr row = featureClass.feature(id);
    if (!row) {
        throw UsageError(fmt::format("{} has no feature {}.", featureClass.schema().name, id));
    }
    return row;
}

std::vector<std::pair<std::string, Argument>> HostArguments::reported() const {
    std::vector<std::pair<std::string, Argument>> named;
    for (std::size_t i = 0; i < values_.size(); ++i) {
        const ParameterInfo& parameter = method_.parameters[i];
        const bool isPlain = parameter.kind <= ParameterKind::text;
        if (isPlain || parameter.writtenBack) {
            named.emplace_back(parameter.name, values_[i]);
        }
    }
    return named;
}

} // namespace qz
