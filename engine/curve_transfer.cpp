#include "engine/curve_transfer.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>
#include <vector>

namespace engine {
namespace {

using Complex = std::complex<double>;

constexpr std::size_t kUnknowns = 2 * CurveTransfer::kSections;
using Row = std::array<double, kUnknowns + 1>;

// Where u is met exactly, in parts of the highest frequency. There the errors between them are of
// one size at 44.1 kHz.
constexpr std::array<double, kUnknowns> kNodes = {0.2201, 0.5719, 0.7845, 0.9039, 0.9681, 0.9966};

double SquaredTangent(double frequency, double sampleRate) {
  const double tangent = std::tan(std::numbers::pi * frequency / sampleRate);
  return tangent * tangent;
}

// Gauss elimination; the last column is the right-hand side.
std::array<double, kUnknowns> SolveLinear(std::array<Row, kUnknowns> rows) {
  for (std::size_t i = 0; i < kUnknowns; ++i) {
    const auto pivot = std::max_element(
        rows.begin() + static_cast<std::ptrdiff_t>(i), rows.end(),
        [i](const Row& a, const Row& b) { return std::abs(a[i]) < std::abs(b[i]); });
    std::swap(rows[i], *pivot);
    for (std::size_t r = 0; r < kUnknowns; ++r) {
      if (r == i) continue;
      const double factor = rows[r][i] / rows[i][i];
      for (std::size_t c = i; c <= kUnknowns; ++c) rows[r][c] -= factor * rows[i][c];
    }
  }
  std::array<double, kUnknowns> x{};
  for (std::size_t i = 0; i < kUnknowns; ++i) x[i] = rows[i][kUnknowns] / rows[i][i];
  return x;
}

// The roots of c0 + c1 x + c2 x^2, infinity told by a pair (1, 0), as pairs (numerator,
// denominator).
std::array<std::pair<Complex, Complex>, 2> QuadraticRoots(double c0, double c1, double c2) {
  const Complex root = std::sqrt(Complex(c1 * c1 - 4.0 * c0 * c2));
  const Complex q = -0.5 * (c1 < 0.0 ? c1 - root : c1 + root);
  if (q == 0.0) {
    return c2 == 0.0 ? std::array{std::pair(Complex(1.0), Complex(0.0)),
                                  std::pair(Complex(1.0), Complex(0.0))}
                     : std::array{std::pair(Complex(0.0), Complex(1.0)),
                                  std::pair(Complex(0.0), Complex(1.0))};
  }
  return {std::pair(q, Complex(c2)), std::pair(Complex(c0), q)};
}

// A polynomial in the bilinear transform's s for b0 + b1 z^-1 + b2 z^-2.
std::array<double, 3> ToAnalog(double b0, double b1, double b2) {
  return {b0 + b1 + b2, 2.0 * (b0 - b2), b0 - b1 + b2};
}

// |c0 + c1 s + c2 s^2|^2 where -s^2 is u.
double SquaredMagnitude(const std::array<double, 3>& c, double u) {
  const double even = c[0] - c[2] * u;
  return even * even + c[1] * c[1] * u;
}

}  // namespace

CurveTransfer::CurveTransfer(double sampleRate) {
  const double highest = std::min(20000.0, 20000.0 / 44100.0 * sampleRate);
  std::array<Row, kUnknowns> equations{};
  for (std::size_t i = 0; i < kUnknowns; ++i) {
    const double frequency = kNodes[i] * highest;
    const double t = SquaredTangent(frequency, sampleRate);
    const double u = SquaredTangent(frequency, dsp::kSampleRate);
    double power = t;
    for (std::size_t k = 0; k < kSections; ++k, power *= t) {
      equations[i][k] = power / u;
      equations[i][kSections + k] = -power;
    }
    equations[i][kUnknowns] = 1.0;
  }
  const auto solution = SolveLinear(equations);
  std::copy_n(solution.begin(), kSections, p_.begin());
  std::copy_n(solution.begin() + kSections, kSections, q_.begin());
}

double CurveTransfer::Ratio(double t) const {
  return t * (p_[0] + t * (p_[1] + t * p_[2])) / (1.0 + t * (q_[0] + t * (q_[1] + t * q_[2])));
}

// The t for which u is numerator / denominator, by the method of Weierstrass (Durand, Kerner).
std::array<Complex, CurveTransfer::kSections> CurveTransfer::Solve(Complex numerator,
                                                                   Complex denominator) const {
  const Complex leading = denominator * p_[2] - numerator * q_[2];
  const Complex c2 = (denominator * p_[1] - numerator * q_[1]) / leading;
  const Complex c1 = (denominator * p_[0] - numerator * q_[0]) / leading;
  const Complex c0 = -numerator / leading;
  std::array<Complex, kSections> x = {Complex(-0.4, 0.9), Complex(-0.65, -0.72), Complex(0.9, 0.3)};
  const double radius = 1.0 + std::max({std::abs(c0), std::abs(c1), std::abs(c2)});
  for (Complex& root : x) root *= radius;
  for (int round = 0; round < 200; ++round) {
    double moved = 0.0;
    for (std::size_t i = 0; i < kSections; ++i) {
      const Complex others = (x[i] - x[(i + 1) % kSections]) * (x[i] - x[(i + 2) % kSections]);
      const Complex step = (c0 + x[i] * (c1 + x[i] * (c2 + x[i]))) / others;
      x[i] -= step;
      moved = std::max(moved, std::abs(step) - 1e-15 * std::abs(x[i]));
    }
    if (moved <= 0.0) break;
  }
  return x;
}

// The factors whose squared magnitude is that of `polynomial` at the frequencies that t stands for,
// with roots in the left half plane alone.
std::array<CurveTransfer::Factor, CurveTransfer::kSections> CurveTransfer::Factorize(
    const std::array<double, 3>& polynomial) const {
  std::vector<Factor> factors;
  std::vector<double> real;
  for (const auto& [top, bottom] : QuadraticRoots(polynomial[0], polynomial[1], polynomial[2])) {
    for (const Complex t : Solve(-top * top, bottom * bottom)) {
      const Complex s = -std::sqrt(-t);
      if (std::abs(s.imag()) <= 1e-9 * std::abs(s)) {
        real.push_back(s.real());
      } else if (s.imag() > 0.0) {
        factors.push_back({-2.0 * s.real(), std::norm(s)});
      }
    }
  }
  std::ranges::sort(real);
  for (std::size_t i = 0; i + 1 < real.size(); i += 2) {
    factors.push_back({-real[i] - real[i + 1], real[i] * real[i + 1]});
  }
  std::ranges::sort(factors, {}, &Factor::constant);
  std::array<Factor, kSections> result{};
  std::copy_n(factors.begin(), std::min(factors.size(), kSections), result.begin());
  return result;
}

std::array<Section, CurveTransfer::kSections> CurveTransfer::operator()(
    const dsp::BiquadCoefficients& filter) const {
  std::array<Section, kSections> sections;
  if (filter == dsp::BiquadCoefficients{}) {
    return sections;
  }
  const auto top = ToAnalog(filter.b0, filter.b1, filter.b2);
  const auto bottom = ToAnalog(1.0, filter.a1, filter.a2);
  const auto zeros = Factorize(top);
  const auto poles = Factorize(bottom);
  // The delay at a quarter of the rate, where t is 1.
  const Complex delay(0.0, -1.0);
  double magnitude = 1.0;
  for (std::size_t i = 0; i < kSections; ++i) {
    const double b0 = 1.0 + zeros[i].linear + zeros[i].constant;
    const double a0 = 1.0 + poles[i].linear + poles[i].constant;
    sections[i] = {.gain = 1.0,
                   .b1 = 2.0 * (zeros[i].constant - 1.0) / b0,
                   .b2 = (1.0 - zeros[i].linear + zeros[i].constant) / b0,
                   .a1 = 2.0 * (poles[i].constant - 1.0) / a0,
                   .a2 = (1.0 - poles[i].linear + poles[i].constant) / a0};
    magnitude *= std::abs(Response(sections[i], delay));
  }
  const double u = Ratio(1.0);
  sections[0].gain = std::sqrt(SquaredMagnitude(top, u) / SquaredMagnitude(bottom, u)) / magnitude;
  return sections;
}

}  // namespace engine
