#include "platform/geometry/Determinant.h"

#include <array>
#include <cmath>
#include <cstddef>

namespace qz {

namespace {

// Half a unit in the last place of 1.
constexpr double roundOff = 0x1p-53;
// Bounds the error of the plain determinant relative to the sum of its two products (Shewchuk, section 4.1).
constexpr double filterBound = (3 + 16 * roundOff) * roundOff;

struct Sum {
    double high;
    double low;
};

// high + low == a + b exactly (Knuth).
Sum twoSum(double a, double b) noexcept {
    const double high = a + b;
    const double fromB = high - a;
    return {high, (a - (high - fromB)) + (b - fromB)};
}

// A sum kept exactly as numbers that do not overlap, by ascending magnitude.
class Expansion {
public:
    // Shewchuk's GROW-EXPANSION with elimination of zeros.
    void add(double value) noexcept {
        std::size_t kept = 0;
        for (std::size_t i = 0; i < size_; ++i) {
            const Sum sum = twoSum(value, terms_[i]);
            value = sum.high;
            if (sum.low != 0) {
                terms_[kept++] = sum.low;
            }
        }
        if (value != 0) {
            terms_[kept++] = value;
        }
        size_ = kept;
    }

    void addProduct(double a, double b) noexcept {
        const double product = a * b;
        add(std::fma(a, b, -product));
        add(product);
    }

    [[nodiscard]] double estimate() const noexcept {
        double sum = 0;
        for (std::size_t i = 0; i < size_; ++i) {
            sum += terms_[i];
        }
        return sum;
    }

private:
    std::array<double, 12> terms_{}; // six products of two terms each
    std::size_t size_ = 0;
};

double exactDeterminant(XY a, XY b, XY c) noexcept {
    Expansion sum;
    sum.addProduct(a.x, b.y);
    sum.addProduct(-a.y, b.x);
    sum.addProduct(b.x, c.y);
    sum.addProduct(-b.y, c.x);
    sum.addProduct(c.x, a.y);
    sum.addProduct(-c.y, a.x);
    return sum.estimate();
}

} // namespace

double orientationDeterminant(XY a, XY b, XY c) noexcept {
    const double left = (a.x - c.x) * (b.y - c.y);
    const double right = (a.y - c.y) * (b.x - c.x);
    const double determinant = left - right;
    if (std::abs(determinant) > filterBound * (std::abs(left) + std::abs(right))) {
        return determinant;
    }
    return exactDeterminant(a, b, c);
}

} // namespace qz
