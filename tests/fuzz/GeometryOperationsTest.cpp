#include <cstdint>
#include <cstdlib>
#include <exception>
#include <random>
#include <vector>

#include <gtest/gtest.h>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

unsigned long numberFromEnvironment(const char* name, unsigned long otherwise) {
    const char* text = std::getenv(name);
    return text == nullptr ? otherwise : std::strtoul(text, nullptr, 10);
}

std::vector<std::uint8_t> randomBytes(unsigned long seed) {
    std::mt19937 random(static_cast<std::mt19937::result_type>(seed));
    std::vector<std::uint8_t> bytes(10 + random() % 110);
    for (std::uint8_t& byte : bytes) {
        byte = static_cast<std::uint8_t>(random() >> 24U);
    }
    return bytes;
}

// QZ_FUZZ_RUNS inputs, the first with the number QZ_FUZZ_FIRST, which with one run repeats an input that failed.
TEST(GeometryOperations, GiveASimpleResultOrSayWhyNot) {
    const unsigned long first = numberFromEnvironment("QZ_FUZZ_FIRST", 0);
    const unsigned long runs = numberFromEnvironment("QZ_FUZZ_RUNS", 1000);
    for (unsigned long run = first; run < first + runs; ++run) {
        const std::vector<std::uint8_t> bytes = randomBytes(run);
        try {
            LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
        } catch (const std::exception& fault) {
            ADD_FAILURE() << "input " << run << ": " << fault.what();
        }
    }
}

} // namespace
