#include "platform/store/ogr/ShapefileParts.h"

#include <algorithm>

#include <cpl_port.h>

namespace qz {

namespace {

// ".SHP" in a folder of files with capital names.
bool hasEnding(const std::filesystem::path& file, const std::string& ending) {
    const std::string name = file.filename().string();
    return name.size() > ending.size() && EQUAL(name.c_str() + name.size() - ending.size(), ending.c_str());
}

std::vector<std::filesystem::path> filesWithEnding(const std::filesystem::path& folder, const std::string& ending) {
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        if (entry.is_regular_file() && entry.path().has_stem() && hasEnding(entry.path(), ending)) {
            files.push_back(entry.path());
        }
    }
    std::ranges::sort(files);
    return files;
}

const std::vector<std::string>& rowEndings() {
    static const std::vector<std::string> endings{".shp", ".shx", ".dbf", ".prj", ".cpg"};
    return endings;
}

const std::vector<std::string>& foreignIndexEndings() {
    static const std::vector<std::string> endings{".sbn", ".sbx", ".fbn", ".fbx", ".ain", ".aih"};
    return endings;
}

// Descriptions, styles and what this library keeps beside the data.
const std::vector<std::string>& otherEndings() {
    static const std::vector<std::string> endings{".qpj", ".cst", ".shp.xml", ".qmd", ".qml", ".sld", ".qza"};
    return endings;
}

} // namespace

ShapefileParts::ShapefileParts(const std::filesystem::path& file)
    : main_(std::filesystem::absolute(file).lexically_normal()) {}

std::vector<std::filesystem::path> ShapefileParts::existing(const std::vector<std::string>& endings) const {
    std::vector<std::filesystem::path> files;
    for (const std::string& ending : endings) {
        std::string capitals = ending;
        std::ranges::transform(capitals, capitals.begin(),
                               [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c; });
        for (const std::string& spelling : {ending, capitals}) {
            const std::filesystem::path file = folder() / (name() + spelling);
            if (std::filesystem::exists(file)) {
                files.push_back(file);
            }
        }
    }
    return files;
}

std::vector<std::filesystem::path> ShapefileParts::allButIndexes() const {
    std::vector<std::string> endings = rowEndings();
    endings.insert(endings.end(), otherEndings().begin(), otherEndings().end());
    return existing(endings);
}

std::vector<std::filesystem::path> ShapefileParts::withRows() const {
    return existing(rowEndings());
}

std::vector<std::filesystem::path> ShapefileParts::foreignIndexes() const {
    return existing(foreignIndexEndings());
}

std::filesystem::path ShapefileParts::spatialIndex() const {
    return folder() / (name() + ".qix");
}

std::vector<FileSignature> ShapefileParts::signatures() const {
    std::vector<FileSignature> signatures;
    for (const std::filesystem::path& file : existing({".shp", ".shx", ".dbf"})) {
        signatures.push_back(signatureOf(file));
    }
    return signatures;
}

std::vector<ShapefileParts> shapefilesIn(const std::filesystem::path& folder) {
    const auto files = filesWithEnding(folder, ".shp");
    return {files.begin(), files.end()};
}

std::vector<ShapefileParts> attributeTablesIn(const std::filesystem::path& folder) {
    std::vector<std::string> withShapes;
    for (const ShapefileParts& parts : shapefilesIn(folder)) {
        withShapes.push_back(parts.name());
    }
    std::vector<ShapefileParts> tables;
    for (const std::filesystem::path& file : filesWithEnding(folder, ".dbf")) {
        if (std::ranges::find(withShapes, file.stem().string()) == withShapes.end()) {
            tables.emplace_back(file);
        }
    }
    return tables;
}

} // namespace qz
