#include "ui/controls/shared/value_map.h"

#include <cmath>

#include "ui/controls/shared/pixel_math.h"

namespace ui {
namespace {

double Extent(const LinearMap& map) {
  return static_cast<double>(map.maxValue) - map.minValue;
}

}  // namespace

std::int32_t LinearMap::Position(std::int32_t value) const {
  const std::int32_t product = WrappingMultiply(WrappingSubtract(value, minValue), travel);
  return dsp::TruncateToInt32(product / Extent(*this));
}

std::int32_t LinearMap::Value(std::int32_t position) const {
  return dsp::TruncateToInt32(Extent(*this) * position / travel + minValue);
}

std::int32_t LinearMap::ZeroPosition() const {
  return dsp::TruncateToInt32(-(WrappingMultiply(travel, minValue) / Extent(*this)));
}

std::int32_t LogarithmicMap::Position(std::int32_t value) const {
  const double logValue = std::log10(static_cast<double>(value));
  return dsp::TruncateToInt32((logValue - logMin) * travel / (logMax - logMin));
}

std::int32_t LogarithmicMap::Value(std::int32_t position) const {
  const double exponent = (logMax - logMin) * position / travel + logMin;
  return dsp::TruncateToInt32(std::pow(10.0, exponent) + 0.5);
}

}  // namespace ui
