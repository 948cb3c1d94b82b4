// Maps between the value that a control stands for and the position of its thumb or pointer, which
// runs from 0 to `travel`. Both directions truncate unless said otherwise, and nothing is clamped
// but to the range of the integers: a value or position outside the range comes out outside it.
#pragma once

#include <cstdint>
#include <limits>

namespace ui {

struct LinearMap {
  std::int32_t minValue = 0;
  std::int32_t maxValue = 100;
  std::int32_t travel = 0;

  // The distance to `minValue` times `travel` is formed in 32 bits and wraps around beyond them.
  std::int32_t Position(std::int32_t value) const;
  std::int32_t Value(std::int32_t position) const;
  // Where 0 lies; negative below the range.
  std::int32_t ZeroPosition() const;
};

struct LogarithmicMap {
  double logMin = -std::numeric_limits<double>::infinity();
  double logMax = 2.0;
  std::int32_t travel = 0;

  std::int32_t Position(std::int32_t value) const;
  // Rounds to the nearest value.
  std::int32_t Value(std::int32_t position) const;
};

}  // namespace ui
