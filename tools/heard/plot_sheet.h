// The panel's curve of several settings and what was heard of each, in one picture.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "dsp/eq_model.h"
#include "platform/drawing.h"

namespace heard {

struct Heard {
  double frequency;  // Hz
  double gain;       // dB
};

struct SettingPlot {
  std::u16string name;
  std::vector<float> values;     // kParameterCount
  std::vector<Heard> equalizer;  // with the knobs at rest
  std::vector<Heard> whole;      // as stored
};

// Where what is heard of the equalizer lies farthest from what it is compared with, and by how many
// dB.
struct WorstDifferences {
  Heard drawn;    // from the panel's picture, which is evaluated in single precision
  Heard filters;  // from the magnitude of the same filters in double precision
};
WorstDifferences FindWorstDifferences(const SettingPlot& plot);

// Needs a user-interface session. Two plots side by side.
platform::Bitmap DrawSheet(const std::vector<SettingPlot>& plots);

}  // namespace heard
