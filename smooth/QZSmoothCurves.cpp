#include "smooth/QZSmoothCurves.h"

#include <algorithm>
#include <cmath>

namespace qz {

namespace {

Vertex operator*(const Vertex& v, double factor) {
    return {v.x * factor, v.y * factor, v.z * factor, v.m * factor};
}

Vertex operator+(const Vertex& a, const Vertex& b) {
    return {a.x + b.x, a.y + b.y, a.z + b.z, a.m + b.m};
}

constexpr Vertex origin{0, 0, 0, 0};

// Adds control points, each with its weight.
class WeightedSum {
public:
    void add(const Vertex& point, double weight) {
        sum_ = sum_ + point * weight;
        weights_ += weight;
    }
    [[nodiscard]] Vertex mean() const { return sum_ * (1 / weights_); }

private:
    Vertex sum_ = origin;
    double weights_ = 0;
};

// Weights that are smaller than the largest by this factor don't count in a double.
constexpr double negligible = 1e-20;

// The quotients of neighbouring binomial coefficients, C(n, j + 1) / C(n, j), and their inverses.
struct BinomialSteps {
    std::vector<double> up;
    std::vector<double> down;

    explicit BinomialSteps(std::size_t degree) {
        for (std::size_t j = 0; j < degree; ++j) {
            up.push_back(static_cast<double>(degree - j) / static_cast<double>(j + 1));
            down.push_back(1 / up.back());
        }
    }
};

Vertex bezierAt(const std::vector<Vertex>& control, const BinomialSteps& steps, double t) {
    const std::size_t n = steps.up.size();
    const auto peak = std::min(n, static_cast<std::size_t>(static_cast<double>(n + 1) * t));
    const double ratio = t / (1 - t), inverse = (1 - t) / t;
    WeightedSum sum;
    sum.add(control[peak], 1);
    double weight = 1;
    for (std::size_t j = peak; j < n && weight > negligible; ++j) {
        weight *= steps.up[j] * ratio;
        sum.add(control[j + 1], weight);
    }
    weight = 1;
    for (std::size_t j = peak; j > 0 && weight > negligible; --j) {
        weight *= steps.down[j - 1] * inverse;
        sum.add(control[j - 1], weight);
    }
    return sum.mean();
}

// The knots of a uniform open B-spline.
struct Knots {
    std::int32_t order;
    std::int32_t last; // number of the last control point

    [[nodiscard]] double operator[](std::int32_t j) const { return std::clamp(j - order + 1, 0, last - order + 2); }
};

// The points whose weights are not 0 are those from `first` on, as many as the order.
Vertex splineAt(const std::vector<Vertex>& control, const Knots& knots, double t, std::vector<double>& basis) {
    const std::int32_t k = knots.order;
    const std::int32_t span = std::min(static_cast<std::int32_t>(std::floor(t)) + k - 1, knots.last);
    basis.assign(static_cast<std::size_t>(k), 0.0);
    basis[0] = 1;
    for (std::int32_t o = 2; o <= k; ++o) { // basis[i] belongs to the point span - o + 1 + i
        double carried = 0;
        for (std::int32_t i = 0; i < o - 1; ++i) {
            const std::int32_t j = span - o + 2 + i;
            const double share = basis[static_cast<std::size_t>(i)] / (knots[j + o - 1] - knots[j]);
            basis[static_cast<std::size_t>(i)] = carried + (knots[j + o - 1] - t) * share;
            carried = (t - knots[j]) * share;
        }
        basis[static_cast<std::size_t>(o - 1)] = carried;
    }
    Vertex sum = origin;
    for (std::int32_t i = 0; i < k; ++i) {
        sum = sum + control[static_cast<std::size_t>(span - k + 1 + i)] * basis[static_cast<std::size_t>(i)];
    }
    return sum;
}

// sinh(a) / sinh(b) for 0 <= a <= b, 0 < b.
double sinhQuotient(double a, double b) {
    return std::exp(a - b) * std::expm1(-2 * a) / std::expm1(-2 * b);
}

// b / sinh(b)
double overSinh(double b) {
    return -2 * b * std::exp(-b) / std::expm1(-2 * b);
}

double coth(double b) {
    return -(1 + std::exp(-2 * b)) / std::expm1(-2 * b);
}

// What the curve bends at each control point, by the square of the tension: 0 at both ends. A tridiagonal system whose
// matrix has `side` beside and `middle` on its diagonal.
std::vector<Vertex> bends(const std::vector<Vertex>& control, double step, double side, double middle) {
    const std::size_t n = control.size() - 1;
    std::vector<Vertex> bend(n + 1, origin);
    std::vector<double> upper(n + 1, 0.0);
    for (std::size_t j = 1; j < n; ++j) {
        const Vertex second = control[j + 1] + control[j] * -2 + control[j - 1];
        const double pivot = middle - side * upper[j - 1];
        upper[j] = side / pivot;
        bend[j] = (second * (1 / step) + bend[j - 1] * -side) * (1 / pivot);
    }
    for (std::size_t j = n - 1; j > 0; --j) {
        bend[j] = bend[j] + bend[j + 1] * -upper[j];
    }
    return bend;
}

template <typename CurveAt>
std::vector<Vertex> sampled(const std::vector<Vertex>& control, std::int32_t count, CurveAt curveAt) {
    std::vector<Vertex> points;
    points.reserve(static_cast<std::size_t>(count) + 1);
    points.push_back(control.front());
    for (std::int32_t i = 1; i < count; ++i) {
        points.push_back(curveAt(static_cast<double>(i)));
    }
    points.push_back(control.back());
    return points;
}

} // namespace

std::vector<Vertex> QZ_SmoothBZ(const std::vector<Vertex>& control, std::int32_t count) {
    const BinomialSteps steps(control.size() - 1);
    return sampled(control, count, [&](double i) { return bezierAt(control, steps, i / count); });
}

std::vector<Vertex> QZ_SmoothBS(const std::vector<Vertex>& control, std::int32_t order, std::int32_t count) {
    const Knots knots{order, static_cast<std::int32_t>(control.size()) - 1};
    const double range = knots.last - order + 2;
    std::vector<double> basis;
    return sampled(control, count, [&](double i) { return splineAt(control, knots, range * i / count, basis); });
}

std::vector<Vertex> QZ_SmoothTS(const std::vector<Vertex>& control, double tension, std::int32_t count) {
    const auto n = static_cast<double>(control.size() - 1);
    const double step = 1 / n, stiffness = tension * step;
    const double side = n * (1 - overSinh(stiffness));
    const double middle = 2 * (tension * coth(stiffness) - n);
    const std::vector<Vertex> bend = bends(control, step, side, middle);
    return sampled(control, count, [&](double i) {
        const double u = i / count;
        const double k = std::min(std::floor(n * u) + 1, n);
        const auto segment = static_cast<std::size_t>(k);
        const double after = n * (k / n - u), before = n * (u - (k - 1) / n);
        const auto pull = [&](double part) { return sinhQuotient(stiffness * part, stiffness) - part; };
        return control[segment - 1] * after + bend[segment - 1] * pull(after) + control[segment] * before +
               bend[segment] * pull(before);
    });
}

} // namespace qz
