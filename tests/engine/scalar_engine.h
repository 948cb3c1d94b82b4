// The ten bands in the plainest form: one channel, one sample, one section after the other.
#pragma once

#include <span>
#include <vector>

#include "engine/sound_design.h"

namespace engine {

class ScalarBands {
 public:
  explicit ScalarBands(const SoundDesign& design)
      : stride_(design.stride), sections_(design.Bands().begin(), design.Bands().end()) {
    inputs_.resize(sections_.size(), std::vector<double>(2 * stride_));
    outputs_ = inputs_;
  }

  double Next(double x) {
    for (std::size_t i = 0; i < sections_.size(); ++i) {
      const Section& c = sections_[i];
      double* const in = &inputs_[i][at_];
      double* const out = &outputs_[i][at_];
      // The older of the two lies behind the one that will be written over.
      const std::size_t older = at_ < stride_ ? stride_ : 0;
      const double y = c.gain * (x + c.b1 * inputs_[i][at_ % stride_ + older] + c.b2 * *in) -
                       c.a1 * outputs_[i][at_ % stride_ + older] - c.a2 * *out;
      *in = x;
      *out = y;
      x = y;
    }
    at_ = at_ + 1 == 2 * stride_ ? 0 : at_ + 1;
    return x;
  }

 private:
  std::size_t stride_;
  std::size_t at_ = 0;
  std::vector<Section> sections_;
  // Of each section, as many frames back as its delays reach: a ring.
  std::vector<std::vector<double>> inputs_;
  std::vector<std::vector<double>> outputs_;
};

}  // namespace engine
