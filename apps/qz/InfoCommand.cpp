#include <iostream>
#include <memory>

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <fmt/ranges.h>

#include "Commands.h"
#include "RulesListing.h"
#include "host/run/DataSets.h"
#include "platform/Error.h"
#include "platform/app/Services.h"
#include "platform/store/Stores.h"

namespace qz {

namespace {

constexpr const char* examples =
    R"(Shows the layers of a data set with fields, domains, subtypes, counts, extents, spatial references and attribute
rules, and what its format can hold. A save that was killed is completed or rolled back first.
Examples:
  qz info roads.gpkg
  qz info roads.gpkg:streets)";

std::string describe(const Value& value) {
    const bool isText = std::holds_alternative<std::string>(value);
    return isText ? fmt::format("\"{}\"", toText(value)) : toText(value);
}

std::string describe(const Domain& domain) {
    if (const auto* range = std::get_if<RangeDomain>(&domain.rule)) {
        return fmt::format("{}: {} to {}", domain.name, describe(range->minimum), describe(range->maximum));
    }
    if (const auto* coded = std::get_if<CodedValueDomain>(&domain.rule)) {
        std::vector<std::string> codes;
        for (const auto& [code, name] : coded->codes) {
            codes.push_back(fmt::format("{} = {}", describe(code), name));
        }
        return fmt::format("{}: {}", domain.name, fmt::join(codes, ", "));
    }
    return fmt::format("{}: {}", domain.name, std::get<OtherDomain>(domain.rule).description);
}

std::string typeOf(const Field& field) {
    std::string text = field.wideInteger ? "64-bit integer" : nameOf(field.type);
    if (field.dateOnly) {
        text += " without time";
    }
    if (field.length > 0) {
        text += fmt::format("({})", field.length);
    } else if (field.precision > 0) {
        text += fmt::format("({},{})", field.precision, field.scale);
    }
    return text;
}

void showField(const Field& field) {
    std::vector<std::string> notes{typeOf(field)};
    if (!field.nullable) {
        notes.emplace_back("not nullable");
    }
    if (!field.editable) {
        notes.emplace_back("not editable");
    }
    if (field.defaultValue) {
        notes.push_back("default " + describe(*field.defaultValue));
    }
    if (field.alias != field.name && !field.alias.empty()) {
        notes.push_back(fmt::format("alias \"{}\"", field.alias));
    }
    std::cout << fmt::format("    {:<20} {}\n", field.name, fmt::join(notes, ", "));
    if (field.domain) {
        std::cout << fmt::format("    {:<20} domain {}\n", "", describe(*field.domain));
    }
}

std::string shapesOf(const ShapeDefinition& shape) {
    std::string text(shape.kind ? nameOf(*shape.kind) : "shapes of any kind");
    text += shape.hasZ ? ", z" : "";
    text += shape.hasM ? ", m" : "";
    const bool isOfPoints = shape.kind == GeometryKind::point || shape.kind == GeometryKind::multipoint;
    text += shape.allowsArcs && !isOfPoints ? ", arcs" : "";
    text += shape.allowsMultipart ? ", several parts" : "";
    return text;
}

void showSubtypes(const Subtypes& subtypes) {
    std::cout << fmt::format("    subtypes by {}, default {}\n", subtypes.field, subtypes.defaultCode);
    for (const auto& [code, name] : subtypes.codes) {
        std::cout << fmt::format("      {} = {}\n", code, name);
    }
}

void showExtent(FeatureClass& table) {
    const Envelope extent = table.extent();
    const SpatialReference& reference = table.spatialReference();
    std::cout << fmt::format("  spatial reference  {}{}\n", reference.text(),
                             reference.factoryCode() != 0 ? fmt::format(" ({})", reference.name()) : "");
    if (!extent.isEmpty()) {
        std::cout << fmt::format("  extent  {}, {} to {}, {}\n", extent.xMin, extent.yMin, extent.xMax, extent.yMax);
    }
}

void showTable(FeatureClass& table) {
    const Schema& schema = table.schema();
    std::cout << fmt::format("\n{}  {}, {} rows\n", schema.name, schema.shape ? shapesOf(*schema.shape) : "table",
                             table.count());
    if (!schema.featureDataset.empty()) {
        std::cout << fmt::format("  feature dataset  {}\n", schema.featureDataset);
    }
    if (schema.shape) {
        showExtent(table);
    }
    std::cout << "  fields\n";
    for (const Field& field : schema.fields) {
        showField(field);
    }
    if (schema.subtypes) {
        showSubtypes(*schema.subtypes);
    }
    if (schema.shape) {
        listAttributeRules(std::cout, table);
    }
}

void showFormat(OverlayWorkspace& workspace) {
    const FormatCapabilities& format = capabilitiesOf(workspace.store());
    std::vector<const char*> holds;
    const std::pair<bool, const char*> rows[] = {{format.z, "z"},
                                                 {format.m, "m"},
                                                 {format.arcs, "arcs"},
                                                 {format.nulls, "nulls"},
                                                 {format.undefinedM, "undefined m"},
                                                 {format.domains, "domains"}};
    for (const auto& [can, what] : rows) {
        if (can) {
            holds.push_back(what);
        }
    }
    std::cout << fmt::format("{}\n  format   {}\n  holds    {}\n  save     {}\n  refuses  {}\n", workspace.path(),
                             format.format, fmt::join(holds, ", "), format.save, format.refusals);
}

ExitStatus showInfo(const std::string& place) {
    const auto [path, layer] = splitPlace(place);
    OverlayWorkspace workspace(openStore(path, OpenMode::read));
    const std::vector<std::string> names = workspace.tableNames();
    if (!layer.empty() && !workspace.table(layer)) {
        throw DataError(fmt::format("{} has no layer {}; its layers are {}.", path, layer, fmt::join(names, ", ")));
    }
    const ScopedServices restored;
    services().showMessage = [](const std::string& text) { std::cerr << text << std::endl; };
    showFormat(workspace);
    for (const std::string& name : names) {
        if (layer.empty() || name == layer) {
            showTable(*workspace.table(name));
        }
    }
    return ExitStatus::done;
}

} // namespace

void addInfoCommand(CLI::App& app, ExitStatus& status) {
    CLI::App* command = app.add_subcommand("info", "Show the layers of a data set");
    command->footer(examples);
    auto place = std::make_shared<std::string>();
    command->add_option("DATA", *place, "PATH or PATH:LAYER")->required();
    command->callback([place, &status] { status = withExitStatus([&] { return showInfo(*place); }); });
}

} // namespace qz
