#include "smooth/QZSmoothCurves.h"

#include <cmath>
#include <random>

#include <gtest/gtest.h>

namespace qz::test {
namespace {

using Points = std::vector<Vertex>;

// The formulas of the three curves as they are written in textbooks, in x only.

double plainBezier(const Points& control, double t) {
    const std::size_t n = control.size() - 1;
    double sum = 0, binomial = 1;
    for (std::size_t j = 0; j <= n; ++j) {
        const auto power = static_cast<double>(j), rest = static_cast<double>(n - j);
        sum += binomial * std::pow(t, power) * std::pow(1 - t, rest) * control[j].x;
        binomial *= rest / (power + 1);
    }
    return sum;
}

double plainSpline(const Points& control, int order, double t) {
    const int n = static_cast<int>(control.size()) - 1;
    const auto knot = [&](int j) {
        return static_cast<double>(j < order ? 0 : j <= n ? j - order + 1 : n - order + 2);
    };
    std::vector<double> basis;
    for (int j = 0; j < n + order; ++j) {
        basis.push_back(knot(j) <= t && t < knot(j + 1) ? 1 : 0);
    }
    const auto quotient = [](double a, double b) { return b == 0 ? 0 : a / b; };
    for (int o = 2; o <= order; ++o) {
        for (int j = 0; j + o < n + order + 1; ++j) {
            const auto i = static_cast<std::size_t>(j);
            basis[i] = quotient((t - knot(j)) * basis[i], knot(j + o - 1) - knot(j)) +
                       quotient((knot(j + o) - t) * basis[i + 1], knot(j + o) - knot(j + 1));
        }
    }
    double sum = 0;
    for (std::size_t j = 0; j < control.size(); ++j) {
        sum += basis[j] * control[j].x;
    }
    return sum;
}

std::vector<double> plainTension(const Points& control, double tension, int count) {
    const std::size_t n = control.size() - 1;
    const double h = 1 / static_cast<double>(n);
    const double a = 1 / h - tension / std::sinh(tension * h);
    const double b = tension * std::cosh(tension * h) / std::sinh(tension * h) - 1 / h;
    std::vector<double> z(n + 1, 0.0), upper(n + 1, 0.0);
    for (std::size_t j = 1; j < n; ++j) {
        const double right = tension * tension * (control[j + 1].x - 2 * control[j].x + control[j - 1].x) / h;
        const double pivot = 2 * b - a * upper[j - 1];
        upper[j] = a / pivot;
        z[j] = (right - a * z[j - 1]) / pivot;
    }
    for (std::size_t j = n - 1; j > 0; --j) {
        z[j] -= upper[j] * z[j + 1];
    }
    std::vector<double> curve{control.front().x};
    for (int i = 1; i < count; ++i) {
        const double u = static_cast<double>(i) / count;
        const double k = std::min(std::floor(static_cast<double>(n) * u) + 1, static_cast<double>(n));
        const auto s = static_cast<std::size_t>(k);
        const double d1 = k * h - u, d2 = u - (k - 1) * h, square = tension * tension;
        curve.push_back((control[s - 1].x - z[s - 1] / square) * d1 / h +
                        z[s - 1] / square * std::sinh(tension * d1) / std::sinh(tension * h) +
                        (control[s].x - z[s] / square) * d2 / h +
                        z[s] / square * std::sinh(tension * d2) / std::sinh(tension * h));
    }
    curve.push_back(control.back().x);
    return curve;
}

Points randomPoints(std::size_t count, unsigned seed) {
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> place(0, 1000);
    Points points;
    for (std::size_t i = 0; i < count; ++i) {
        points.push_back({500000 + place(random), 5500000 + place(random), place(random), place(random)});
    }
    return points;
}

constexpr double closeness = 1e-6; // of an extent of 1000

TEST(SmoothCurves, FollowTheirFormulas) {
    for (const std::size_t size : {2U, 3U, 7U, 30U, 100U}) {
        const Points control = randomPoints(size, static_cast<unsigned>(size));
        const int count = 3 * static_cast<int>(size);
        const Points bezier = QZ_SmoothBZ(control, count);
        ASSERT_EQ(bezier.size(), static_cast<std::size_t>(count) + 1);
        for (int i = 1; i < count; ++i) {
            EXPECT_NEAR(bezier[static_cast<std::size_t>(i)].x, plainBezier(control, static_cast<double>(i) / count),
                        closeness);
        }
        for (const int order : {2, 3, 4, 7}) {
            if (order > static_cast<int>(size)) {
                continue;
            }
            const Points spline = QZ_SmoothBS(control, order, count);
            const double range = static_cast<double>(size) - order + 1;
            for (int i = 1; i < count; ++i) {
                EXPECT_NEAR(spline[static_cast<std::size_t>(i)].x, plainSpline(control, order, range * i / count),
                            closeness);
            }
        }
        for (const double tension : {1.0, 5.0, 40.0, 300.0}) {
            const Points curve = QZ_SmoothTS(control, tension, count);
            const std::vector<double> plain = plainTension(control, tension, count);
            for (std::size_t i = 0; i < plain.size(); ++i) {
                EXPECT_NEAR(curve[i].x, plain[i], 1e-5) << size << ", " << tension << ", " << i;
            }
        }
    }
}

TEST(SmoothCurves, StayRightWhereThePlainArithmeticFails) {
    const Points many = randomPoints(5000, 1);
    for (const Vertex& point : QZ_SmoothBZ(many, 500)) {
        EXPECT_TRUE(point.x >= 500000 && point.x <= 501000 && point.y >= 5500000 && point.y <= 5501000);
    }
    // On a straight line the curve is the line, in equal steps.
    Points straight;
    for (int i = 0; i <= 3000; ++i) {
        straight.push_back({1.0 * i, 2.0 * i, 0, 0});
    }
    const Points line = QZ_SmoothBZ(straight, 30);
    for (std::size_t i = 0; i < line.size(); ++i) {
        EXPECT_NEAR(line[i].x, 100.0 * static_cast<double>(i), 1e-7);
    }
    // A large tension gives the line through the points.
    const Points corner{{0, 0, 0, 0}, {10, 0, 0, 0}, {10, 10, 0, 0}, {20, 10, 0, 0}, {20, 0, 0, 0}};
    const Points tight = QZ_SmoothTS(corner, 30000, 40);
    for (const Vertex& point : tight) {
        const bool onLine = std::abs(point.y) < 1e-2 || std::abs(point.y - 10) < 1e-2 ||
                            std::abs(point.x - 10) < 1e-2 || std::abs(point.x - 20) < 1e-2;
        EXPECT_TRUE(onLine) << point.x << " " << point.y;
    }
}

TEST(SmoothCurves, PassThroughWhatTheyShould) {
    const Points control = randomPoints(9, 4);
    const Points tension = QZ_SmoothTS(control, 3, 80);
    for (std::size_t i = 0; i < control.size(); ++i) {
        EXPECT_NEAR(tension[10 * i].x, control[i].x, 1e-8);
        EXPECT_NEAR(tension[10 * i].z, control[i].z, 1e-8);
    }
    for (const Points& curve : {QZ_SmoothBZ(control, 80), QZ_SmoothBS(control, 3, 80), tension}) {
        EXPECT_EQ(curve.front().xy(), control.front().xy());
        EXPECT_EQ(curve.back().xy(), control.back().xy());
    }
}

} // namespace
} // namespace qz::test
