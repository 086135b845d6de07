#include "host/run/RunSession.h"

#include <algorithm>
#include <chrono>
#include <ostream>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "component/MKQZGenFunRun.h"
#include "host/GraphicsFile.h"
#include "host/Picture.h"
#include "host/ReplacedFile.h"
#include "host/run/ResultPainting.h"
#include "platform/app/Services.h"
#include "platform/geometry/Project.h"

namespace qz {

namespace {

void requireAll(const std::vector<ObjectId>& wanted, const std::vector<ObjectId>& found, const Schema& schema) {
    for (const ObjectId id : wanted) {
        if (!std::binary_search(found.begin(), found.end(), id)) {
            throw UsageError(fmt::format("{} has no feature {}.", schema.name, id));
        }
    }
}

std::vector<ObjectId> select(FeatureClass& featureClass, const SelectionRequest& request) {
    if (!request.isGiven()) {
        return {};
    }
    FeatureFilter filter;
    if (request.ids) {
        filter.ids = request.ids;
        requireAll(*request.ids, featureClass.ids(filter), featureClass.schema());
    }
    filter.where = request.where.value_or("");
    if (request.bounds) {
        filter.shape = rectangle(*request.bounds, featureClass.spatialReference());
        filter.relation = SpatialRelation::intersects;
    }
    return featureClass.ids(filter);
}

void requirePictureEnding(const std::string& path) {
    const std::string ending = lowerCaseEnding(path);
    if (!path.empty() && ending != ".png" && ending != ".svg") {
        throw UsageError(fmt::format("The picture {} must end in .png or .svg.", path));
    }
}

// What a run leaves beside the data, so that it doesn't fail when these are saved.
void requireWritablePlaces(const RunRequest& request) {
    const std::string& graphics = request.dryRun ? std::string() : request.graphicsPath;
    const std::string& report = request.reportPath == "-" ? std::string() : request.reportPath;
    for (const std::string& path : {request.picturePath, request.beforeAfterPath, graphics, report}) {
        if (!path.empty()) {
            requireWritablePlace(path);
        }
    }
}

NumberLocale localeNamed(const std::string& name) {
    try {
        return NumberLocale::named(name);
    } catch (const PlatformError& error) {
        throw UsageError(error.what());
    }
}

// Whether the method saves each feature by itself.
bool savesByItself(const RunRequest& request) {
    return std::any_of(request.parameters.begin(), request.parameters.end(), [](const auto& parameter) {
        return parameter.first == "bEditing" && parameter.second == "false";
    });
}

SpatialReference referenceOf(const std::string& text) {
    if (text.empty()) {
        return {};
    }
    try {
        return SpatialReference::fromText(text);
    } catch (const PlatformError& error) {
        throw UsageError(error.what());
    }
}

std::vector<Geometry> inMapReference(std::vector<Geometry> shapes, const SpatialReference& reference) {
    for (Geometry& shape : shapes) {
        project(shape, reference);
    }
    return shapes;
}

} // namespace

// The services of one run: notices go to a stream and into the report, locale and seed are those of the request.
class RunSession::RunServices {
public:
    RunServices(const RunRequest& request, std::ostream& stream, TerminalLine& progress, RunReport& report) {
        services().showMessage = [&stream, &progress, &report](const std::string& text) {
            progress.clear();
            stream << text << std::endl;
            report.messages.push_back(text);
        };
        if (!request.localeName.empty()) {
            services().locale = localeNamed(request.localeName);
        }
        if (request.seed) {
            services().randomSeed = request.seed;
        }
    }

private:
    ScopedServices restored_;
};

struct RunSession::Layers {
    RunLayer data;
    RunLayer source;
    OverlayClass* featureClass = nullptr; // of the layer worked on; nothing without one
    OverlayWorkspace* workspace = nullptr;
};

// Sees what changes from its making on.
class RunSession::RunWatch {
public:
    RunWatch(const Layers& layers, HeadlessMap& map, bool keepShapes)
        : layers_(layers), savesBefore_(saves()), graphicsMark_(map.activeView().graphics().mark()) {
        if (layers.workspace) {
            recorder_ = std::make_unique<ChangeRecorder>(*layers.workspace, *layers.featureClass, keepShapes);
        }
    }

    void tell(RunReport& report, const HostArguments& arguments, HeadlessHost& host) const {
        if (recorder_ && report.succeeded()) {
            report.schema = &layers_.featureClass->schema();
            report.changes = recorder_->changes();
        }
        report.parameters = arguments.reported();
        report.graphics = host.focusMap().activeView().graphics().addedSince(graphicsMark_);
        report.drawings = host.focusMap().activeView().display().drawings();
        report.refreshCount = arguments.refreshArea().count();
        report.refreshExtent = arguments.refreshArea().extent();
        report.progress = host.statusBar().stepProgressor().record();
    }

    [[nodiscard]] bool wasSaved() const { return saves() > savesBefore_; }

private:
    [[nodiscard]] int saves() const { return layers_.workspace ? layers_.workspace->saveCount() : 0; }

    const Layers& layers_;
    int savesBefore_;
    std::size_t graphicsMark_;
    std::unique_ptr<ChangeRecorder> recorder_;
};

RunSession::RunSession(HeadlessHost& host, std::ostream& messages, SessionOptions options)
    : host_(host), messages_(messages), options_(options),
      dataSets_(options.dryRun, [](std::size_t, std::size_t) { checkInterrupt(); }) {}

RunLayer RunSession::openLayer(const std::string& place, const std::string& output, const SelectionRequest& selection) {
    if (place.empty()) {
        return {};
    }
    const OpenLayer opened = dataSets_.open(place, output);
    HeadlessMap& map = host_.focusMap();
    const std::string& name = opened.featureClass->schema().name;
    FeatureLayer& layer = map.addLayer(map.findLayer(name) ? name + " 2" : name, *opened.featureClass);
    RunLayer result{&layer, select(*opened.featureClass, selection), selection.isGiven()};
    layer.selection().select(result.selected);
    return result;
}

void RunSession::setUpMap(const RunRequest& request) {
    HeadlessMap& map = host_.focusMap();
    map.clearLayers();
    map.setSpatialReference(referenceOf(request.mapReference));
    map.setVisibleBounds(request.extent.value_or(Envelope()));
    map.activeView().display().clear();
    host_.statusBar().stepProgressor().reset();
}

void RunSession::loadGraphics(const std::string& path) {
    if (path.empty() || path == graphicsPath_) {
        return;
    }
    putGraphicsAside();
    HeadlessGraphics& graphics = host_.focusMap().activeView().graphics();
    graphics = HeadlessGraphics();
    const auto edited = graphicsAside_.find(path);
    readGraphics(edited == graphicsAside_.end() ? path : edited->second->asidePath(), host_.focusMap());
    if (edited != graphicsAside_.end()) {
        graphicsAside_.erase(edited);
    }
    graphicsPath_ = path;
}

void RunSession::putGraphicsAside() {
    if (!graphicsPath_.empty() && !options_.dryRun) {
        graphicsAside_[graphicsPath_] = writeGraphicsAside(graphicsPath_, host_.focusMap());
    }
}

void RunSession::saveAll(OverlayWorkspace* workspace) {
    putGraphicsAside();
    host_.editor().stopEditing(true);
    if (workspace) {
        workspace->saveDirectWrites();
    }
    for (const auto& [path, file] : graphicsAside_) {
        file->complete();
    }
    graphicsAside_.clear();
}

void RunSession::startEditing(OverlayWorkspace& workspace, bool withOperation) {
    // Data that can't be saved to are still good for methods that only read: the first write is refused.
    if (!options_.dryRun && !workspace.store().refusalToSave().empty()) {
        return;
    }
    host_.editor().startEditing(workspace);
    if (withOperation) {
        host_.editor().startOperation();
    }
}

void RunSession::endOperation(OverlayWorkspace& workspace, const RunReport& report) {
    if (!workspace.isInEditOperation()) {
        return;
    }
    if (report.succeeded()) {
        host_.editor().stopOperation(report.method);
    } else {
        host_.editor().abortOperation();
    }
}

void RunSession::perform(const MethodInfo& method, HostArguments& arguments, OverlayWorkspace* workspace,
                         RunReport& report) {
    const bool inOperation = workspace && !savesByItself(arguments.request());
    host_.editor().setCountsAsEditing(workspace != nullptr);
    if (inOperation) {
        startEditing(*workspace, !method.ownsOperation);
    }
    MKQZGenFunRun component;
    const auto start = std::chrono::steady_clock::now();
    report.result = invoke(component, method.name, arguments.values());
    report.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    report.interrupted = services().interruptRequested && services().interruptRequested();
    report.refusal = workspace ? workspace->refusal() : std::string();
    if (inOperation) {
        endOperation(*workspace, report);
    }
}

void RunSession::finish(OverlayWorkspace* workspace, const RunReport& report) {
    if (options_.keepsEditing) {
        return;
    }
    if (report.succeeded()) {
        saveAll(workspace);
        return;
    }
    host_.editor().stopEditing(false);
    if (workspace) {
        workspace->discardDirectWrites();
    }
}

RunSession::Layers RunSession::openLayers(const RunRequest& request) {
    Layers layers;
    layers.data = openLayer(request.data, request.outputPath, request.selection);
    layers.source = openLayer(request.source, {}, request.sourceSelection);
    if (layers.data.layer) {
        layers.featureClass = static_cast<OverlayClass*>(&layers.data.layer->featureClass());
        layers.workspace = static_cast<OverlayWorkspace*>(&layers.featureClass->workspace());
    }
    return layers;
}

std::vector<Geometry> RunSession::selectedShapes(const Layers& layers) {
    std::vector<Geometry> shapes;
    if (layers.data.layer) {
        const CursorPtr cursor = layers.data.layer->selection().search();
        for (FeaturePtr row = cursor->next(); row; row = cursor->next()) {
            if (row->shape()) {
                shapes.push_back(*row->shape());
            }
        }
    }
    return inMapReference(std::move(shapes), host_.focusMap().spatialReference());
}

const MethodInfo& RunSession::runnableMethod(const RunRequest& request) const {
    const MethodInfo& method = findMethod(request.method);
    requirePictureEnding(request.picturePath);
    requirePictureEnding(request.beforeAfterPath);
    requireWritablePlaces(request);
    if (options_.keepsEditing && savesByItself(request)) {
        throw UsageError("bEditing false saves each feature by itself, which a script doesn't: use qz run.");
    }
    return method;
}

RunReport RunSession::run(const RunRequest& request) {
    const MethodInfo& method = runnableMethod(request);
    RunReport report;
    report.method = method.name;
    const RunServices servicesOfRun(request, messages_, host_.statusBar().line(), report);
    setUpMap(request);
    const Layers layers = openLayers(request);
    loadGraphics(request.graphicsPath);
    HostArguments arguments(method, request, host_, layers.data, layers.source);

    std::optional<BeforeAfterPicture> beforeAfter;
    if (!request.beforeAfterPath.empty()) {
        beforeAfter.emplace(request.beforeAfterPath);
        beforeAfter->drawBefore(host_.focusMap(), {selectedShapes(layers), {}});
    }
    const bool isPictured = !request.picturePath.empty() || beforeAfter;
    const RunWatch watch(layers, host_.focusMap(), isPictured);
    perform(method, arguments, layers.workspace, report);
    watch.tell(report, arguments, host_);
    finish(layers.workspace, report);
    report.saved = watch.wasSaved();
    if (isPictured) {
        paintResult(report.result, host_.focusMap());
    }
    if (report.succeeded()) {
        writePictures(request, report, beforeAfter ? &*beforeAfter : nullptr);
    }
    return report;
}

void RunSession::writePictures(const RunRequest& request, const RunReport& report, BeforeAfterPicture* beforeAfter) {
    try {
        if (!request.picturePath.empty()) {
            writePicture(request.picturePath, host_.focusMap(), highlight(report));
        }
        if (beforeAfter) {
            beforeAfter->drawAfter(host_.focusMap(), highlight(report));
            beforeAfter->save();
        }
    } catch (const DataError& error) {
        const bool hasGraphics = !graphicsPath_.empty() && !options_.dryRun && !options_.keepsEditing;
        throw DataError(report.saved || hasGraphics ? fmt::format("{} The edits are saved.", error.what())
                                                    : error.what());
    }
}

Highlight RunSession::highlight(const RunReport& report) {
    const SpatialReference& reference = host_.focusMap().spatialReference();
    return {inMapReference(report.changes.shapesBefore, reference),
            inMapReference(report.changes.shapesAfter, reference)};
}

int RunSession::undo(int steps) {
    int done = 0;
    while (done < steps && host_.editor().undo()) {
        ++done;
    }
    return done;
}

int RunSession::redo(int steps) {
    int done = 0;
    while (done < steps && host_.editor().redo()) {
        ++done;
    }
    return done;
}

void RunSession::save() {
    saveAll(nullptr);
}

void RunSession::discard() {
    host_.editor().stopEditing(false);
    graphicsPath_.clear();
    graphicsAside_.clear();
}

} // namespace qz
