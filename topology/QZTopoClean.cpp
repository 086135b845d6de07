#include "topology/QZTopoClean.h"

#include <algorithm>
#include <array>
#include <optional>
#include <set>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "common/ErrorExit.h"
#include "common/FeatureCopies.h"
#include "common/NumberText.h"
#include "platform/Error.h"
#include "platform/app/Services.h"
#include "platform/geometry/Boundary.h"
#include "platform/geometry/InteriorPoint.h"
#include "platform/geometry/Measures.h"
#include "platform/topology/TopologyGraph.h"
#include "topology/CancellableWalk.h"

namespace qz {

namespace {

// The edges that a feature runs along, in the order of its parts or rings.
using FeatureEdges = std::vector<Polyline>;

// What a feature becomes. Nothing: it stays as it is. An empty list: it is not larger than the tolerance.
using Rebuilt = std::optional<std::vector<Geometry>>;

struct CleaningTexts {
    const char* title;
    const char* collecting;
    const char* analyzing;
    const char* elements;
    const char* storingTitle;
    const char* failure;
    const char* label;
    const char* storeLabel;
};

constexpr CleaningTexts polygonTexts{
    "Karvex ==> Clean Polygons", "Collecting geometries...",     "Analyzing polygons...", " elements processed",
    "Karvex ==> Clean polygons", "Could not clean the polygons", " QZ_TopoCleanPg",       "QZ_TopoGetCleanPg w="};
constexpr CleaningTexts polylineTexts{
    "Karvex ==> Clean Polylines", "Collecting polylines...",       "Analyzing polylines...", " Polylines processed",
    "Karvex ==> Clean polylines", "Could not clean the polylines", " QZ_TopoCleanPl",        "QZ_TopoGetCleanPl w="};

GeometryTraits traitsOf(const TopologyGraph& graph, std::size_t feature) {
    return graph.originalShape(feature).traits();
}

Polyline lineAlong(const TopologyGraph& graph, const TopologyGraph::PathEdges& path,
                   const TopologyGraph::EdgeUse& use) {
    Polyline line;
    static_cast<GeometryTraits&>(line) = traitsOf(graph, path.feature);
    line.paths.push_back(graph.along(path, use));
    return line;
}

// The rings of a polygon, each as the edges around it.
std::vector<FeatureEdges> QZ_GetPolygonEdges(const TopologyGraph& graph, std::size_t feature) {
    std::vector<FeatureEdges> rings;
    for (const TopologyGraph::PathEdges& path : graph.pathsOf(feature)) {
        FeatureEdges& ring = rings.emplace_back();
        for (const TopologyGraph::EdgeUse& use : path.uses) {
            ring.push_back(lineAlong(graph, path, use));
        }
    }
    return rings;
}

// The edges along a line, each once.
FeatureEdges QZ_GetPolylineEdges(const TopologyGraph& graph, std::size_t feature) {
    FeatureEdges edges;
    std::set<std::size_t> known;
    for (const TopologyGraph::PathEdges& path : graph.pathsOf(feature)) {
        for (const TopologyGraph::EdgeUse& use : path.uses) {
            if (known.insert(use.edge).second) {
                edges.push_back(lineAlong(graph, path, use));
            }
        }
    }
    return edges;
}

// Centroid, area and perimeter: the same for polygons that are the same.
std::string QZ_PolygonSignature(const Polygon& polygon) {
    const XY centre = centroid(polygon).value().vertex.xy();
    return fmt::format("{}|{}|{:.10f}|{:.10f}", defaultText(centre.x), defaultText(centre.y), area(polygon),
                       perimeter(polygon));
}

// A polygon of rings, an exterior one before its holes, each joined from its edges.
Polygon QZ_PolygonFromPolygonColl(const std::vector<FeatureEdges>& rings) {
    Polygon polygon;
    static_cast<GeometryTraits&>(polygon) = rings.front().front();
    for (const FeatureEdges& edges : rings) {
        Path& ring = polygon.rings.emplace_back(edges.front().paths.front());
        for (const Polyline& edge : std::span(edges).subspan(1)) {
            ring.append(edge.paths.front());
        }
    }
    return polygon;
}

// A feature of one part that fell apart becomes several, each once; one that had more stays together.
std::vector<Geometry> QZ_PolygonsFromEdges(const TopologyGraph& graph, std::size_t feature, bool allowsMultipart) {
    const std::vector<FeatureEdges> rings = QZ_GetPolygonEdges(graph, feature);
    if (rings.empty()) {
        return {};
    }
    const Polygon rebuilt = QZ_PolygonFromPolygonColl(rings);
    const bool hadParts = exploded(graph.originalShape(feature)).size() > 1;
    if (hadParts && allowsMultipart) {
        return {rebuilt};
    }
    std::vector<Geometry> parts = exploded(rebuilt);
    if (parts.size() > 1) {
        std::set<std::string> signatures;
        std::erase_if(parts, [&](const Geometry& part) {
            return !signatures.insert(QZ_PolygonSignature(part.as<Polygon>())).second;
        });
    }
    return parts;
}

// Classes of any kind may hold other shapes, too: one is an error, before anything is stored.
template <typename Shape> void require(const TopologyGraph& graph, std::size_t feature) {
    static_cast<void>(graph.originalShape(feature).as<Shape>());
}

Rebuilt rebuiltPolygon(const TopologyGraph& graph, std::size_t feature, bool allowsMultipart) {
    require<Polygon>(graph, feature);
    return graph.isUnchanged(feature) ? Rebuilt() : QZ_PolygonsFromEdges(graph, feature, allowsMultipart);
}

Rebuilt rebuiltPolyline(const TopologyGraph& graph, std::size_t feature, bool) {
    require<Polyline>(graph, feature);
    FeatureEdges edges = QZ_GetPolylineEdges(graph, feature);
    if (graph.isUnchanged(feature) && edges.size() == 1) {
        return std::nullopt;
    }
    return Rebuilt(std::in_place, edges.begin(), edges.end());
}

// "Copy" for every field that can be copied.
Dictionary copyRules(const FeatureClass& featureClass) {
    Dictionary rules;
    for (const Field& field : featureClass.schema().fields) {
        if (field.editable && field.type != FieldType::objectId && field.type != FieldType::geometry) {
            rules.set(field.name, std::string("Copy"));
        }
    }
    return rules;
}

void tellVanished(const std::vector<ObjectId>& ids, double dFuzzy) {
    constexpr std::size_t most = 20;
    if (ids.empty()) {
        return;
    }
    const std::span<const ObjectId> listed = std::span(ids).first(std::min(ids.size(), most));
    showMessage(fmt::format("Deleted, not being larger than {}: {} features: {}{}", defaultText(dFuzzy), ids.size(),
                            fmt::join(listed, ", "), ids.size() > most ? ", ..." : ""));
}

// One class on its way through cleaning.
class Cleaning {
public:
    using Rebuild = Rebuilt (*)(const TopologyGraph&, std::size_t, bool);

    Cleaning(FeatureClass& featureClass, double dFuzzy, Application& application, const CleaningTexts& texts)
        : class_(featureClass), dFuzzy_(dFuzzy), application_(application), texts_(texts),
          rules_(copyRules(featureClass)) {}

    bool run(Rebuild rebuild) {
        Editor* const editor = application_.findEditor("esriEditor.Editor");
        if (!editor || !editor->isEditing()) {
            return false;
        }
        if (class_.count() == 0) {
            showMessage("No features found in the current layer. Exiting");
            return false;
        }
        FeatureClass* const classes[] = {&class_};
        const TopologyGraph graph = build(classes);
        if (!analyze(graph, rebuild)) {
            showMessage(std::string(texts_.failure) + texts_.label);
            return false;
        }
        return storeIn(*editor, graph);
    }

private:
    TopologyGraph build(std::span<FeatureClass* const> classes) {
        const auto dialog = application_.createProgressDialog();
        dialog->setTitle(texts_.title);
        dialog->setDescription(texts_.collecting);
        dialog->progressor().setRange(0, 2);
        dialog->progressor().setStepValue(1);
        TopologyGraph graph(classes, nullptr, dFuzzy_);
        dialog->progressor().step();
        dialog->close();
        return graph;
    }

    // False when nothing is left of any feature.
    bool analyze(const TopologyGraph& graph, Rebuild rebuild) {
        rebuilt_.resize(graph.featureCount());
        std::size_t kept = 0;
        const bool allowsMultipart = class_.schema().shape->allowsMultipart;
        walkCancellable(application_, {texts_.title, texts_.analyzing, texts_.elements}, graph.featureCount(),
                        [&](std::size_t feature) {
                            rebuilt_[feature] = rebuild(graph, feature, allowsMultipart);
                            kept += rebuilt_[feature] && rebuilt_[feature]->empty() ? 0 : 1;
                        });
        return kept > 0;
    }

    bool storeIn(Editor& editor, const TopologyGraph& graph) {
        editor.startOperation();
        const bool stored =
            withSteppedExit(texts_.storeLabel, Step::store, false, [&](Step& step) { return store(graph, step); });
        if (stored) {
            editor.stopOperation(texts_.label + 1); // without the blank in front
            application_.focusMap().activeView().refresh();
        } else {
            editor.abortOperation();
        }
        return stored;
    }

    enum class Step { store = 1, tell = 2 };

    // By ascending object id, which is the order of the graph.
    [[nodiscard]] FeatureFilter rebuiltFeatures(const TopologyGraph& graph) const {
        FeatureFilter filter;
        filter.ids.emplace();
        for (std::size_t feature = 0; feature < graph.featureCount(); ++feature) {
            if (rebuilt_[feature]) {
                filter.ids->push_back(graph.feature(feature).id);
            }
        }
        return filter;
    }

    // Replaces every feature that was rebuilt.
    bool store(const TopologyGraph& graph, Step& step) {
        const CursorPtr sources = class_.update(rebuiltFeatures(graph));
        FeatureCopies copies(class_, &rules_);
        std::vector<ObjectId> vanished;
        bool stored = true;
        walkCancellable(application_, {texts_.storingTitle, "Storing features...", " Features processed"},
                        graph.featureCount(), [&](std::size_t feature) {
                            const Rebuilt& shapes = rebuilt_[feature];
                            if (!shapes || !stored) {
                                return;
                            }
                            const FeaturePtr source = sources->next();
                            stored = std::ranges::all_of(
                                *shapes, [&](const Geometry& shape) { return copies.insert(shape, source.get()); });
                            if (stored) {
                                sources->remove();
                            }
                            if (shapes->empty()) {
                                vanished.push_back(graph.feature(feature).id);
                            }
                        });
        step = Step::tell;
        tellVanished(vanished, dFuzzy_);
        return stored;
    }

    FeatureClass& class_;
    double dFuzzy_;
    Application& application_;
    const CleaningTexts& texts_;
    Dictionary rules_;
    std::vector<Rebuilt> rebuilt_; // by feature
};

} // namespace

bool QZ_TopoCleanPg(FeatureClass& featureClass, double dFuzzy, Application& application) {
    return withErrorExit(polygonTexts.label, false,
                         [&] { return Cleaning(featureClass, dFuzzy, application, polygonTexts).run(rebuiltPolygon); });
}

bool QZ_TopoCleanPl(FeatureClass& featureClass, double dFuzzy, Application& application) {
    return withErrorExit(polylineTexts.label, false, [&] {
        return Cleaning(featureClass, dFuzzy, application, polylineTexts).run(rebuiltPolyline);
    });
}

} // namespace qz
