#include "dsp/biquad.h"

#include <cmath>
#include <limits>

// Values that describe no filter divide by zero and take roots of negative numbers on the way to
// coefficients that are not finite. That is well defined only in this arithmetic.
static_assert(std::numeric_limits<double>::is_iec559 && std::numeric_limits<float>::is_iec559);

namespace dsp {
namespace {

constexpr double kTwoPi = 6.283185307179586;
constexpr double kPi = 3.141592653589793;
constexpr double kSqrt2 = 1.414213562373096;

struct DoubleCoefficients {
  double a1 = 0.0;
  double a2 = 0.0;
  double b0 = 1.0;
  double b1 = 0.0;
  double b2 = 0.0;
};

// An all-pass based peak. Dividing the cut's bandwidth by its gain makes it the boost's inverse.
DoubleCoefficients DesignPeaking(double omega, double gain, double q) {
  if (gain == 1.0) {
    return {};
  }
  const double t = gain < 1.0 ? omega / (2.0 * gain * q) : omega / (2.0 * q);
  const double beta = -0.5 * (1.0 - t) / (1.0 + t);
  const double c = std::cos(omega) * (0.5 - beta);
  const double h = (0.5 * beta + 0.25) * (gain - 1.0) + 0.5;
  return {.a1 = -2.0 * c,
          .a2 = -2.0 * beta,
          .b0 = 2.0 * h,
          .b1 = -2.0 * c,
          .b2 = 2.0 * (0.5 - h - beta)};
}

DoubleCoefficients DesignLowPass(double omega) {
  const double cosine = std::cos(omega);
  const double alpha = std::sin(omega) / kSqrt2;
  const double d = 1.0 + alpha;
  const double b0 = 0.5 * (1.0 - cosine) / d;
  return {.a1 = -2.0 * cosine / d,
          .a2 = (1.0 - alpha) / d,
          .b0 = b0,
          .b1 = (1.0 - cosine) / d,
          .b2 = b0};
}

DoubleCoefficients DesignHighPass(double omega) {
  const double cosine = std::cos(omega);
  const double alpha = std::sin(omega) / kSqrt2;
  const double d = 1.0 + alpha;
  const double b0 = 0.5 * (1.0 + cosine) / d;
  return {.a1 = -2.0 * cosine / d,
          .a2 = (1.0 - alpha) / d,
          .b0 = b0,
          .b1 = (-1.0 - cosine) / d,
          .b2 = b0};
}

// What both shelves are made of: the corner warped for the bilinear transform, its square, and the
// damping.
struct Shelf {
  double k;
  double k2;
  double r;
};

// The cut's gain turned into the boost that it undoes. The division is single precision.
double InverseGain(float gain) {
  return 1.0F / gain;
}

DoubleCoefficients DesignLowShelving(const Shelf& shelf, float singleGain) {
  const auto [k, k2, r] = shelf;
  const double gain = singleGain;
  if (gain > 1.0) {
    const double d = 1.0 + r * k + k2;
    const double s = std::sqrt(gain) * r * k;
    return {.a1 = 2.0 * (k2 - 1.0) / d,
            .a2 = (1.0 - r * k + k2) / d,
            .b0 = (1.0 + s + gain * k2) / d,
            .b1 = 2.0 * (gain * k2 - 1.0) / d,
            .b2 = (1.0 - s + gain * k2) / d};
  }
  if (gain < 1.0) {
    const double v = InverseGain(singleGain);
    const double s = std::sqrt(v) * r * k;
    const double d = 1.0 + s + v * k2;
    return {.a1 = 2.0 * (v * k2 - 1.0) / d,
            .a2 = (1.0 - s + v * k2) / d,
            .b0 = (1.0 + r * k + k2) / d,
            .b1 = 2.0 * (k2 - 1.0) / d,
            .b2 = (1.0 - r * k + k2) / d};
  }
  return {};
}

DoubleCoefficients DesignHighShelving(const Shelf& shelf, float singleGain) {
  const auto [k, k2, r] = shelf;
  const double gain = singleGain;
  const double d = 1.0 + r * k + k2;
  if (gain > 1.0) {
    const double s = std::sqrt(gain) * r * k;
    return {.a1 = 2.0 * (k2 - 1.0) / d,
            .a2 = (1.0 - r * k + k2) / d,
            .b0 = (gain + s + k2) / d,
            .b1 = 2.0 * (k2 - gain) / d,
            .b2 = (gain - s + k2) / d};
  }
  if (gain < 1.0) {
    const double v = InverseGain(singleGain);
    const double u = std::sqrt(v);
    const double d1 = v + u * r * k + k2;
    const double w = r * k / u;
    const double d2 = 1.0 + w + k2 / v;  // d1 / v: both halves share one normalisation
    return {.a1 = 2.0 * (k2 / v - 1.0) / d2,
            .a2 = (1.0 - w + k2 / v) / d2,
            .b0 = d / d1,
            .b1 = 2.0 * (k2 - 1.0) / d1,
            .b2 = (1.0 - r * k + k2) / d1};
  }
  return {};
}

Shelf MakeShelf(double frequency, double q, double sampleRate) {
  const double k = std::tan(frequency * kPi / sampleRate);
  return {.k = k, .k2 = k * k, .r = 1.0 / q};
}

DoubleCoefficients Design(FilterType type, float frequency, float gain, float q, float sampleRate) {
  const double omega = static_cast<double>(frequency) * kTwoPi / sampleRate;
  switch (type) {
    case FilterType::Peaking:
      return DesignPeaking(omega, gain, q);
    case FilterType::LowPass:
      return DesignLowPass(omega);
    case FilterType::HighPass:
      return DesignHighPass(omega);
    case FilterType::LowShelving:
      return DesignLowShelving(MakeShelf(frequency, q, sampleRate), gain);
    case FilterType::HighShelving:
      break;
  }
  return DesignHighShelving(MakeShelf(frequency, q, sampleRate), gain);
}

}  // namespace

std::optional<BiquadCoefficients> DesignBiquad(std::int32_t type, float frequency, float gain,
                                               float q, float sampleRate) {
  const auto filter = FilterTypeFromCode(type);
  if (!filter) {
    return std::nullopt;
  }
  const DoubleCoefficients exact = Design(*filter, frequency, gain, q, sampleRate);
  return BiquadCoefficients{.a1 = static_cast<float>(exact.a1),
                            .a2 = static_cast<float>(exact.a2),
                            .b0 = static_cast<float>(exact.b0),
                            .b1 = static_cast<float>(exact.b1),
                            .b2 = static_cast<float>(exact.b2)};
}

void UpdateBandCoefficients(ConstParameterValues values, int band, CoefficientTable& table) {
  const EqBand fields = GetBand(values, band);
  const auto designed =
      DesignBiquad(TypeCode(fields), fields.frequency, fields.gain, fields.q, kSampleRate);
  if (designed) {
    table[static_cast<std::size_t>(band - 1)] = *designed;
  }
}

void UpdateBandCoefficients(ConstParameterValues values, CoefficientTable& table) {
  for (int band = 1; band <= kBandCount; ++band) {
    UpdateBandCoefficients(values, band, table);
  }
}

}  // namespace dsp
