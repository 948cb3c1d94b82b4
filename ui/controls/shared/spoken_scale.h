// How the whole numbers of a control are told to assistive technology: in the unit that a person
// reads.
#pragma once

#include <cstdint>

#include "dsp/truncation.h"

namespace ui {

struct SpokenScale {
  double (*toSpoken)(std::int32_t value) = [](std::int32_t value) -> double { return value; };
  // The nearest value; any number may come, and any may come out.
  std::int32_t (*fromSpoken)(double spoken) = dsp::TruncateToInt32;
};

}  // namespace ui
