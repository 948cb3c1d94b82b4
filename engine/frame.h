#pragma once

#include <cstddef>

namespace engine {

// Left and right sample of one moment, side by side in one register: whatever is done to both takes
// the time of one.
struct Frame {
  using Lanes __attribute__((vector_size(2 * sizeof(double)))) = double;

  Lanes lanes{};

  friend Frame operator+(Frame a, Frame b) { return {a.lanes + b.lanes}; }
  friend Frame operator-(Frame a, Frame b) { return {a.lanes - b.lanes}; }
  friend Frame operator*(Frame a, Frame b) { return {a.lanes * b.lanes}; }
};

inline Frame MakeFrame(double left, double right) {
  return {Frame::Lanes{left, right}};
}

inline Frame Both(double value) {
  return MakeFrame(value, value);
}

inline Frame Swapped(Frame frame) {
  return MakeFrame(frame.lanes[1], frame.lanes[0]);
}

// Sound is worked on in blocks of so many frames, counted from the start of the stream, so that the
// result does not depend on how many frames the server asks for at once.
inline constexpr std::size_t kBlockFrames = 256;

}  // namespace engine
