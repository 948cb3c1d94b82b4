#pragma once

#include <complex>

namespace engine {

// A second-order section H(z) = gain (1 + b1 z^-1 + b2 z^-2) / (1 + a1 z^-1 + a2 z^-2). A fresh one
// lets everything pass. Its gain stands apart, since a cascade needs to apply only the product.
struct Section {
  double gain = 1.0;
  double b1 = 0.0;
  double b2 = 0.0;
  double a1 = 0.0;
  double a2 = 0.0;

  bool operator==(const Section&) const = default;
};

// At a point of the unit circle, `delay` being z^-1.
inline std::complex<double> Response(const Section& section, std::complex<double> delay) {
  return section.gain * (1.0 + delay * (section.b1 + delay * section.b2)) /
         (1.0 + delay * (section.a1 + delay * section.a2));
}

}  // namespace engine
