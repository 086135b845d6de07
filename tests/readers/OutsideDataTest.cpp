#include <cstdint>
#include <exception>
#include <random>
#include <string>

#include <gtest/gtest.h>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

// What is right but for a few bytes goes farther into the readers than any bytes would.
constexpr const char* seeds[] = {
    "POLYGON ZM ((0 0 1 2,0 10 1 2,10 10 1 NaN,0 0 1 2),(1 2 3 4,3 4 5 6,2 2 2 2,1 2 3 4))",
    "CURVEPOLYGON (COMPOUNDCURVE ((0 0,0 10),CIRCULARSTRING (0 10,2 5,0 0)))",
    "MULTILINESTRING M ((0 0 5,1 1 6),(2 2 7,3 3 8))",
    "GEOMETRYCOLLECTION (POINT (1 2),LINESTRING (0 0,1e5 -2.5E-3))",
    "FROM_L,Range Address,TO_L,Range Address\nLENGTH,Proportion,None,Sum\n",
    "Range Address|TO_L|First",
    "2024-05-17T13:45:06.789+02:00",
    R"({"NAME": "High Street", "COUNT": 3, "DATE": null, "NESTED": [1, 2]})",
    "548000.5,5806000,548100,5806100.25",
    "3,7,12",
    "-1234.5e-7",
    "town.gpkg:streets",
};

TEST(OutsideData, IsReadOrRefused) {
    std::mt19937 random(11);
    for (int round = 0; round < 3000; ++round) {
        std::string text = seeds[random() % std::size(seeds)];
        for (unsigned changes = random() % 4; changes > 0; --changes) {
            const std::size_t at = random() % text.size();
            const char byte = static_cast<char>(random() % 256);
            switch (random() % 3) {
            case 0:
                text[at] = byte;
                break;
            case 1:
                text.insert(at, 1 + random() % 3, byte);
                break;
            default:
                text.erase(at, 1 + random() % 5);
                text += text.empty() ? "x" : "";
            }
        }
        try {
            LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(text.data()), text.size());
        } catch (const std::exception& fault) {
            ADD_FAILURE() << text << ": " << fault.what();
        }
    }
}

} // namespace
