// Feeds bytes to the readers of what users and files bring: shapes as text and binary, numbers, dates, rules, and the
// values of parameters. Each gives a value or says in a PlatformError what it expected; what it gives comes back the
// same when it is written and read again. The entry is that of libFuzzer; a fault leaves it as an exception.

#include <cstdint>
#include <fstream>
#include <stdexcept>
#include <string>

#include <unistd.h>

#include "attributes/QZAttributeRules.h"
#include "common/NumberText.h"
#include "host/run/ArgumentReader.h"
#include "host/run/DataSets.h"
#include "platform/Error.h"
#include "platform/geometry/WellKnown.h"

namespace qz {
namespace {

void require(bool holds, const char* what) {
    if (!holds) {
        throw std::logic_error(what);
    }
}

template <typename Read> void expectValueOrRefusal(Read read) {
    try {
        read();
    } catch (const PlatformError& refusal) {
        require(*refusal.what() != '\0', "a refusal without a description");
    }
}

void readShapes(std::string_view text, std::span<const std::uint8_t> bytes) {
    expectValueOrRefusal([&] {
        const std::string once = toWkt(geometryFromWkt(text));
        require(toWkt(geometryFromWkt(once)) == once, "text of a shape changed");
    });
    expectValueOrRefusal([&] { static_cast<void>(collectionFromWkt(text)); });
    expectValueOrRefusal([&] {
        const auto once = toWkb(geometryFromWkb(bytes));
        require(toWkb(geometryFromWkb(once)) == once, "binary of a shape changed");
    });
}

void readValues(const std::string& text) {
    expectValueOrRefusal([&] { static_cast<void>(toNumber(text)); });
    expectValueOrRefusal([&] {
        if (const auto date = readDate(text)) {
            require(readDate(toText(*date)) == date, "a date changed");
        }
    });
    expectValueOrRefusal([&] { static_cast<void>(readEnvelope(text)); });
    expectValueOrRefusal([&] { static_cast<void>(readIds(text)); });
    expectValueOrRefusal([&] { static_cast<void>(readDictionary(text)); });
    expectValueOrRefusal([&] { static_cast<void>(splitPlace(text)); });
}

void readRules(const std::string& text) {
    if (const auto rule = AttributeRule::parsed(text)) {
        require(rule->text() == text, "a rule changed");
    }
    const std::string path = "/tmp/qz-readers-" + std::to_string(getpid()) + ".qza";
    std::ofstream(path, std::ios::binary) << text;
    static_cast<void>(QZ_AttRulesDicFromFile(path));
    unlink(path.c_str());
}

} // namespace
} // namespace qz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    qz::readShapes(text, {data, size});
    qz::readValues(text);
    qz::readRules(text);
    return 0;
}
