#include "RunOptions.h"

#include <algorithm>
#include <charconv>
#include <span>

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "component/MethodTable.h"
#include "host/run/ArgumentReader.h"
#include "platform/Error.h"

namespace qz {

namespace {

using Json = nlohmann::ordered_json;

struct RunOption {
    const char* name;
    const char* value; // nothing for a flag
    const char* help;
    void (*apply)(RunRequest& request, const std::string& text);
};

std::uint32_t readSeed(const std::string& text) {
    std::uint32_t seed = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), seed);
    if (error != std::errc{} || end != text.data() + text.size()) {
        throw UsageError(fmt::format("--seed is a whole number from 0 to 4294967295, not '{}'.", text));
    }
    return seed;
}

constexpr RunOption runOptions[] = {
    {"data", "PATH[:LAYER]", "The layer worked on", [](RunRequest& r, const std::string& t) { r.data = t; }},
    {"source", "PATH[:LAYER]", "The second layer", [](RunRequest& r, const std::string& t) { r.source = t; }},
    {"fid", "3,7", "Select features by object id",
     [](RunRequest& r, const std::string& t) { r.selection.ids = readIds(t); }},
    {"where", "SQL", "Select features by a condition",
     [](RunRequest& r, const std::string& t) { r.selection.where = t; }},
    {"bbox", "x,y,x,y", "Select features that intersect a box",
     [](RunRequest& r, const std::string& t) { r.selection.bounds = readEnvelope(t); }},
    {"all", nullptr, "Select all features", [](RunRequest& r, const std::string&) { r.selection.all = true; }},
    {"source-fid", "3,7", "Select features of the second layer",
     [](RunRequest& r, const std::string& t) { r.sourceSelection.ids = readIds(t); }},
    {"source-where", "SQL", "Select features of the second layer",
     [](RunRequest& r, const std::string& t) { r.sourceSelection.where = t; }},
    {"source-all", nullptr, "Select all features of the second layer",
     [](RunRequest& r, const std::string&) { r.sourceSelection.all = true; }},
    {"map-crs", "EPSG:n", "Spatial reference of the map; default: the layer's",
     [](RunRequest& r, const std::string& t) { r.mapReference = t; }},
    {"extent", "x,y,x,y", "Visible bounds of the view; default: the full extent",
     [](RunRequest& r, const std::string& t) { r.extent = readEnvelope(t); }},
    {"graphics", "FILE", "Graphics of the map, read before and written after (.gpkg, .geojson)",
     [](RunRequest& r, const std::string& t) { r.graphicsPath = t; }},
    {"picture", "FILE", "Picture of the map after the run, changes highlighted (.png, .svg)",
     [](RunRequest& r, const std::string& t) { r.picturePath = t; }},
    {"before-after", "FILE", "The map before and after the run, side by side (.png, .svg)",
     [](RunRequest& r, const std::string& t) { r.beforeAfterPath = t; }},
    {"output", "PATH", "Work on a copy; the data named stay untouched",
     [](RunRequest& r, const std::string& t) { r.outputPath = t; }},
    {"dry-run", nullptr, "Run and report, save nothing", [](RunRequest& r, const std::string&) { r.dryRun = true; }},
    {"report", "FILE", "JSON report of the run (- for standard output)",
     [](RunRequest& r, const std::string& t) { r.reportPath = t; }},
    {"locale", "NAME", "Number format, such as de_DE.UTF-8",
     [](RunRequest& r, const std::string& t) { r.localeName = t; }},
    {"seed", "N", "Seed of random numbers", [](RunRequest& r, const std::string& t) { r.seed = readSeed(t); }},
};

std::vector<std::string> keyNames() {
    std::vector<std::string> names{"run", "parameters"};
    for (const RunOption& option : runOptions) {
        names.emplace_back(option.name);
    }
    return names;
}

const RunOption& findOption(const std::string& name) {
    const auto found = std::find_if(std::begin(runOptions), std::end(runOptions),
                                    [&](const RunOption& option) { return name == option.name; });
    if (found == std::end(runOptions)) {
        throw UsageError(
            fmt::format("There is no option \"{}\"; did you mean \"{}\"?", name, nearestName(name, keyNames())));
    }
    return *found;
}

std::string joined(const Json& list) {
    std::string text;
    for (const Json& item : list) {
        text += (text.empty() ? "" : ",") + item.dump();
    }
    return text;
}

// Lists are lists of numbers, as for ids and envelopes.
std::string asText(const Json& value) {
    if (value.is_string()) {
        return value.get<std::string>();
    }
    return value.is_array() ? joined(value) : value.dump();
}

void applyKey(RunRequest& request, const std::string& key, const Json& value) {
    const RunOption& option = findOption(key);
    if (option.value == nullptr && !value.is_boolean()) {
        throw UsageError(fmt::format("\"{}\" is true or false, not {}.", key, value.dump()));
    }
    if (option.value != nullptr || value.get<bool>()) {
        option.apply(request, asText(value));
    }
}

void applyParameters(RunRequest& request, const Json& parameters) {
    if (!parameters.is_object()) {
        throw UsageError(fmt::format("\"parameters\" is an object of names and values, not {}.", parameters.dump()));
    }
    for (const auto& [name, value] : parameters.items()) {
        request.parameters.emplace_back(name, asText(value));
    }
}

} // namespace

void addRunOptions(CLI::App& command, RunRequest& request) {
    for (const RunOption& option : runOptions) {
        const std::string flag = std::string("--") + option.name;
        if (option.value == nullptr) {
            command.add_flag_callback(
                flag, [&request, &option] { option.apply(request, {}); }, option.help);
            continue;
        }
        command
            .add_option_function<std::string>(
                flag, [&request, &option](const std::string& text) { option.apply(request, text); }, option.help)
            ->type_name(option.value);
    }
}

void addParameters(RunRequest& request, const std::vector<std::string>& words) {
    for (std::size_t i = 0; i < words.size(); ++i) {
        const std::string& word = words[i];
        if (!word.starts_with("--")) {
            throw UsageError(fmt::format("'{}' stands alone: parameters are given as --NAME VALUE.", word));
        }
        const std::size_t equals = word.find('=');
        if (equals != std::string::npos) {
            request.parameters.emplace_back(word.substr(2, equals - 2), word.substr(equals + 1));
        } else if (++i < words.size()) {
            request.parameters.emplace_back(word.substr(2), words[i]);
        } else {
            throw UsageError(fmt::format("{} has no value.", word));
        }
    }
}

RunRequest requestFromJson(const Json& line) {
    RunRequest request;
    for (const auto& [key, value] : line.items()) {
        if (key == "run") {
            request.method = asText(value);
        } else if (key == "parameters") {
            applyParameters(request, value);
        } else {
            applyKey(request, key, value);
        }
    }
    return request;
}

} // namespace qz
